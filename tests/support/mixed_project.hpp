// A small project of one element of each kind: a 4-node square, an 8-node square beside it and
// a 6-node triangle on top of the 8-node one, sharing nodes, with an elastic gravel and a
// table-model clay, the base fixed and a self-weight file of one line a point (4 + 9 + 7).
#pragma once

#include <map>
#include <sstream>
#include <string>

#include "support/project_fixture.hpp"

// File name to text; a test changes one file before writing the project.
using ProjectFiles = std::map<std::string, std::string>;

inline ProjectFiles MixedProjectFiles(bool singleStep) {
    ProjectFiles files;
    files["Flag_VARNEK.inp"] = singleStep ? "20200101 500 1 1\n" : "20200101 500 1 0\n";
    files["input_VARNEK.inp"] = "c.dat\nwave.csv\nnodes.dat\nelements.dat\nmat.dat\nbc.dat\n";
    files["c.dat"] = "10\n0\n0.01\n0.05\n0.65\n3\n2\n";
    std::ostringstream wave;
    wave << "w,0.01,1\n";
    for (int k = 0; k <= 20; ++k) wave << k * 0.01 << "," << (k % 5) * 10.0 - 20.0 << "\n";
    files["wave.csv"] = wave.str();
    files["nodes.dat"] =
        "0 0\n1 0\n1 1\n0 1\n2 0\n2 1\n1.5 0\n2 0.5\n1.5 1\n1 0.5\n1.5 1.5\n1.25 1.25\n"
        "1.75 1.25\n";
    files["elements.dat"] = "0 4 1 0 1 2 3\n1 8 1 1 4 5 2 6 7 8 9\n1 6 1 5 10 2 11 8 12\n";
    files["mat.dat"] =
        "2\n5\n0.0019\n0.0019\n0\n80\n0.3\n0.03\n"
        "2\n0.0017\n0.0017\n0\n30\n0.4\n0.02\n3\n1e-6\n1e-4\n1e-2\n1\n0.8\n0.2\n2\n5\n15\n";
    files["bc.dat"] = "0 2 0 0\n1 2 0 0\n4 2 0 0\n6 2 0 0\n";
    std::string stress = "---- stress ----\n";
    for (int i = 0; i < 4 + 9 + 7; ++i) stress += std::to_string(i + 1) + " -1 -2 -1 0.1 0 0\n";
    files["output0.inp"] = stress;
    return files;
}

inline void WriteProject(const ProjectFolder& p, const ProjectFiles& files) {
    for (const auto& [name, text] : files) p.Write(name, text);
}

inline void WriteMixedProject(const ProjectFolder& p, bool singleStep) {
    WriteProject(p, MixedProjectFiles(singleStep));
}
