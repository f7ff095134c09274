// Rectangular soil sections on a regular grid, built in memory: nodes, elements of one kind, one
// elastic material, the base fixed and the equations numbered. Used by the physical checks of
// the solution and by the benchmarks.
#pragma once

#include <boost/shared_ptr.hpp>

#include "element/material.hpp"
#include "model/analysis_data.hpp"

struct SectionGrid {
    int nodesPerElement = 4;   // 4 or 8: quadrilaterals; 6: each cell split into two triangles
    int columns = 1;           // cells across
    int layers = 1;            // cells down
    double width = 1.0;        // m
    double depth = 1.0;        // m
    bool fixVertical = false;  // y fixed at every node (pure horizontal shear)
};

// An elastic material of shear modulus G (MPa), damping ratio h, Poisson's ratio nu and
// density rho (MPa s2/m2), with its complex moduli in use.
boost::shared_ptr<DAT_Material> ElasticMaterial(double G, double h, double nu, double rho);

// Fills nodes, elements, dofFixed, equationMap and freeDofCount. The base (y = 0) is
// fixed in x and y; nodes are numbered row by row from the base up.
void BuildStructuredMesh(const SectionGrid& grid, const boost::shared_ptr<DAT_Material>& material,
                         CAnalysisData& analysis);

// A section four times as wide as deep with about the given number of equations.
SectionGrid SectionWithEquations(int nodesPerElement, int equations);

// Index of the node at grid place (i, j) of the finer grid (twice the cells in each direction
// for 6- and 8-node elements, the cells themselves for 4-node ones).
int StructuredNode(const SectionGrid& grid, int i, int j);
