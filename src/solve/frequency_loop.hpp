// The frequency loop: for every line from 1 below frequencyCount, the dynamic system and its
// load, solved and stored as transfer functions in the node spectra. Lines are solved in
// parallel, each thread factorising its own lines; the pattern of the system and its ordering
// are found at the first pass and kept for the run, since neither changes between iterations.
// In a job of several ranks each rank solves the lines of its share only.
#pragma once

#include <memory>
#include <vector>

#include "linalg/line_solver.hpp"
#include "linalg/sparse_complex_matrix.hpp"
#include "model/analysis_data.hpp"
#include "solve/line_system_pattern.hpp"
#include "solve/line_system_terms.hpp"
#include "solve/work_share.hpp"

// Wall-clock seconds spent on one line.
struct LineTiming {
    int line = 0;
    double assembly = 0.0;       // values of the system and the right-hand side
    double factorisation = 0.0;  // numeric factorisation
    double solve = 0.0;          // solve and residual check
    double total = 0.0;          // the whole line, storing and console included
};

class FrequencyLoop {
  public:
    // The terms must outlive the loop.
    explicit FrequencyLoop(const LineSystemTerms& terms, WorkShare share = {})
        : terms_(terms), share_(share) {}

    // Solves every line of the share with this stiffness and leaves the solutions in dispX and
    // dispY of the nodes. A failed solve ends the run. With timings, records one entry per line
    // (in line order; lines of other shares stay empty).
    void Run(const SparseComplexMatrix& stiffness, CAnalysisData& analysis,
             std::vector<LineTiming>* timings = nullptr);

    // Finds the pattern and its ordering for this stiffness, unless those in use fit it already.
    // Run calls it; callers may call it first to time it apart.
    void Prepare(const SparseComplexMatrix& stiffness);

    // The pattern in use, once prepared.
    const LineSystemPattern* Pattern() const { return pattern_.get(); }

    const WorkShare& Share() const { return share_; }

  private:
    LineSystemTerms terms_;
    WorkShare share_;
    std::unique_ptr<LineSystemPattern> pattern_;
    std::unique_ptr<SymbolicAnalysis> symbolic_;
};
