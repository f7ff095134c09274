// The soil section of the frequency-loop benchmarks, in memory: a structured section four times
// as wide as deep, its element matrices, dashpots on the side edges and the terms of its lines.
#pragma once

#include <vector>

#include "linalg/sparse_complex_matrix.hpp"
#include "model/analysis_data.hpp"
#include "solve/line_system_terms.hpp"

struct BenchModel {
    CAnalysisData analysis;
    ComplexVector inertiaLoad;
    SparseComplexMatrix stiffness, mass, baseViscous, sideViscous, sideStatic;
    std::vector<ComplexVector> freeFieldMotion;
    LineSystemTerms terms;
};

// A section of nodesPerElement-node elements (4 or 8; 6: triangles) of about this many
// equations, base fixed, dashpots on the side edges, a wave of 4,096 steps of 0.01 s and lines
// 1 to `lines`. Side treatment 2: base dashpots only; 1: the side dashpots also as viscous sides
// with a free-field load. Prints its sizes on standard output.
void BuildModel(BenchModel& m, int nodesPerElement, int equations, int lines, int mode);
