// The dynamic system of all frequency lines of a run in one fixed pattern: the union of the
// patterns of every matrix that enters a line, with each matrix's entries mapped to their places
// once. The values of a line are then formed in a few passes over flat arrays, term after term
// in the order of the plain row-map arithmetic, so that they equal it bit for bit:
//   sides 0 and 1:  A = ((K + (-w^2, 0) M) + (0, w) V) + X,  load (X + S) U,
//                   X the side matrix of the line (0) or (0, w) times the side dashpots (1);
//   no sides:       A = (K - w^2 M) + (0, w) V, no load.
// Places of the union that a term does not have receive nothing from it.
#pragma once

#include <cstdint>
#include <vector>

#include "linalg/line_solver.hpp"
#include "linalg/sparse_complex_matrix.hpp"
#include "solve/line_system_terms.hpp"

// The per-line temporaries of one thread.
struct LineScratch {
    std::vector<Complex> side;  // X in the order of the side pattern
    std::vector<Complex> load;  // X + S in the order of the load pattern
};

class LineSystemPattern {
  public:
    // The terms (their matrices and functions) must outlive this object.
    LineSystemPattern(const LineSystemTerms& terms, const SparseComplexMatrix& stiffness);

    const CompressedPattern& System() const { return system_; }
    size_t EquationCount() const { return static_cast<size_t>(system_.size); }
    LineScratch MakeScratch() const;

    // Takes the values of the stiffness of an iteration; false (nothing taken) when its pattern
    // is not the one this object was built for.
    bool LoadStiffness(const SparseComplexMatrix& stiffness);

    // Values of the system of line i at circular frequency w, in the pattern's order, and, with
    // side treatment, the boundary load over the equations (boundaryLoad may be null without).
    // False when the side matrix of the line has an entry outside the pattern.
    bool FormLine(int line, double w, Complex* values, Complex* boundaryLoad,
                  LineScratch& scratch) const;

  private:
    // A matrix's entries in row and column order, with their places in a union pattern.
    struct MappedTerm {
        std::vector<int64_t> slot;
        std::vector<Complex> value;
    };
    static MappedTerm Map(const SparseComplexMatrix& matrix, const CompressedPattern& pattern);
    bool FormSide(int line, double w, std::vector<Complex>& side) const;

    LineSystemTerms terms_;
    CompressedPattern system_;
    CompressedPattern sidePattern_;  // X: the side dashpots (1) or all line matrices (0)
    CompressedPattern loadPattern_;  // X + S
    MappedTerm stiffness_, mass_, baseViscous_, sideInSystem_, sideInLoad_, sideStatic_;
};
