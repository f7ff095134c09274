// Small whole projects on disk, for the tests that run the program.
#pragma once

#include "support/project_fixture.hpp"

// A 4-node square, an 8-node square beside it and a 6-node triangle on top of the 8-node one,
// sharing nodes; the base is fixed. An elastic gravel and a table-model clay, equivalent-linear,
// no side treatment; 21 steps, lines 1 to 3.
void WriteMixedProject(const ProjectFolder& p, bool singleStep);

// A section three nodes wide and four high of 4-node elements, nodes row by row from the fixed
// base up; 64 steps of 0.01 s and lines 1 to 7 (up to 12 Hz).
struct SideProject {
    static constexpr int kColumns = 3, kRows = 4, kLines = 8;
    static constexpr int Node(int column, int row) { return row * kColumns + column; }

    int sideTreatment = 2;
    // With equivalent-linear iterations the top row of elements is a table-model clay,
    // else all are an elastic soil; three iterations at most.
    bool equivalentLinear = false;
    bool singleStep = false;

    // The run's files with a "$V" dashpot per side node and direction (right x 200, left x 201,
    // y 202), a base dashpot, side matrices and free-field columns; with transmitting sides, line
    // matrices that are i w times the dashpot terms of the right and the left column, plus zeros
    // at places that differ from line to line.
    void Write(const ProjectFolder& folder) const;
};
