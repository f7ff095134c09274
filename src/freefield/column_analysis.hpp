// The one-dimensional free-field response of a side column: a model one element wide, every
// node held in y, with the materials of the edge elements, solved with the same wave, lines,
// complex moduli and equivalent-linear iteration as the section itself.
#pragma once

#include <boost/shared_ptr.hpp>
#include <vector>

#include "freefield/side_column.hpp"
#include "model/analysis_data.hpp"

// What holds the column at its bottom node, as the section holds its own base there.
struct SideBase {
    bool rigid = true;  // the bottom node is fixed in x
    // Otherwise dashpots per metre of base: the coefficients times the edge weights of the
    // section's base dashpot rows in that direction, summed and divided by the width they span.
    Complex dashpotPerLength;   // x
    Complex dashpotPerLengthY;  // y; 0 where the section has none
    bool fixedInY = false;      // the bottom node is fixed in y
};

// The base condition of the section at the column's bottom node: rigid where that node is fixed
// in x, else the section's base dashpots (codes 100 to 199) spread evenly along its base. A
// bottom node that is neither fixed in x nor on a base dashpot in x ends the run as a model that
// cannot be analysed.
SideBase FindColumnBase(const CAnalysisData& section, const SideColumn& column);

// The column model and the place of each edge node in it.
struct ColumnModel {
    CAnalysisData analysis;
    std::vector<int> edgeNodeAt;  // column node of each node of SideColumn::nodes, top down
};

// A column of the given width (m) whose levels are those of the edge nodes: elements of 4 nodes
// for 2-node layers and of 8 nodes for 3-node ones, each with a copy of its edge element's
// material (a private one where it follows the strain) and density selector. Every y is fixed;
// the bottom level is fixed in x on a rigid base or carries consistent dashpots. Constants,
// wave and spectrum are the section's; there is no side treatment.
void BuildColumnModel(const CAnalysisData& section, const SideColumn& column,
                      const SideBase& base, double width, ColumnModel& model);

// A layer of the column after its analysis: what the side matrices need of it.
struct LayerState {
    double thickness = 0.0;  // m
    double density = 0.0;    // as the element takes it
    Complex shearModulus;    // final strain-compatible G*
    double poissonRatio = 0.0;
};

struct ColumnResponse {
    // Per edge node (top down): the relative x displacement per unit base acceleration at lines
    // 0 .. frequencyCount-1, line 0 being 0.
    std::vector<std::vector<Complex>> motion;
    std::vector<LayerState> layers;  // top down
    SideBase base;
};

// Builds the column of the given edge, runs the solution on it (the iteration when
// equivalentLinear) and takes the motion of the edge nodes and the final layer moduli.
ColumnResponse SolveColumn(const CAnalysisData& section, const SideColumn& column,
                           bool equivalentLinear);

// A column and its response.
struct SideAnalysis {
    SideColumn column;
    ColumnResponse response;
};
