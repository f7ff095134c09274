// Whole projects of a layered soil section on disk, for running the programs on them: 4-node
// cells on a regular grid, a soft table-model soil over a stiff elastic one, optionally a valley
// of softer soil in the middle, a rigid base or one on dashpots, side dashpots, the wave and a
// self-weight result. Used by the free-field benchmark and by the tests of whole runs.
#pragma once

#include <map>
#include <string>
#include <vector>

// File name (relative to the project folder) and text.
using ProjectFiles = std::map<std::string, std::string>;

struct LayeredProject {
    int columns = 6;            // cells across
    int layers = 8;             // cells down; the upper half soft, the lower half stiff
    double cellWidth = 4.0;     // m
    double cellHeight = 2.5;    // m
    int sideTreatment = 1;      // the seventh analysis constant
    bool equivalentLinear = false;
    std::string tolerance = "0.02";
    int iterationLimit = 6;
    int waveSamples = 200;      // at 0.01 s
    std::string cutoff = "15";  // Hz
    bool slanting = false;      // the left edge leans out as it rises
    bool sideDashpots = true;   // "$V" rows of codes 200 and 202 on the side nodes
    bool dashpotBase = false;   // base nodes on dashpots in x and y ("$V" of codes 101, 102)
    // A valley of soft elastic soil (Vs 100 m/s) in place of the upper soil: so many cells
    // across the middle of the section and layers down from the surface.
    int valleyColumns = 0;
    int valleyLayers = 0;

    // Nodes row by row from the base.
    int Node(int c, int r) const { return r * (columns + 1) + c; }

    // The project: run files, file list, constants, wave, nodes, elements, materials, boundary
    // conditions and "output0.inp".
    ProjectFiles Files() const;

    // The column of the section one cell wide with every node held in y and no side treatment:
    // its one-dimensional free field, computed by the dynamic analysis itself.
    ProjectFiles ColumnFiles() const;
    LayeredProject Column() const;
};

// Writes the files below folder, with "config_VARNEK.txt" naming folder as the project.
void WriteProject(const std::string& folder, const ProjectFiles& files);

// Absolute x acceleration of a node (from 0) at every step, from "dyn/acc<n+1>.dat" of folder.
std::vector<double> NodeAcceleration(const std::string& folder, int node);

// sqrt(sum (a - b)^2 / sum b^2) over the common length.
double RelativeRmsDifference(const std::vector<double>& a, const std::vector<double>& b);
