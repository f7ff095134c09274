// The constant parts of the dynamic system of every frequency line, built once per run from the
// analysis object, and the terms of a line wired to them. The solution stage and the tests that
// check the frequency loop take their terms from here alike.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "input/transmitting_boundary.hpp"
#include "linalg/small_matrix.hpp"
#include "linalg/sparse_complex_matrix.hpp"
#include "model/analysis_data.hpp"
#include "solve/line_system_terms.hpp"
#include "solve/work_share.hpp"

class LineSystemParts {
  public:
    // Builds the inertia load and the mass matrix; with side treatment 0 or 1 reads the
    // free-field motion and the constant side matrices of freeFieldFolder; the base dashpots and,
    // with treatment 1, the side dashpots; with treatment 0, when some line will be solved, the
    // side matrices of the lines, kept in memory up to sideMatrixBudget bytes (those of the
    // share's lines only). The analysis' node spectra are made long enough for the syntheses.
    LineSystemParts(CAnalysisData& analysis, const std::string& freeFieldFolder,
                    uint64_t sideMatrixBudget, const WorkShare& share = {});
    LineSystemParts(const LineSystemParts&) = delete;
    LineSystemParts& operator=(const LineSystemParts&) = delete;

    // The terms point into this object, which must outlive their use.
    const LineSystemTerms& Terms() const { return terms_; }
    LineSystemTerms& Terms() { return terms_; }

  private:
    ComplexVector inertiaLoad_;
    SparseComplexMatrix mass_, baseViscous_, sideViscous_, sideStatic_;
    std::vector<ComplexVector> freeFieldMotion_;
    std::unique_ptr<FrequencyEMatrixStore> lineMatrices_;
    LineSystemTerms terms_;
};

// The side matrices of all lines are kept in memory up to a quarter of the physical memory:
// that leaves room for the factorisations of the worker threads, which dominate the rest.
uint64_t SideMatrixMemoryBudget();
