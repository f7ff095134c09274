// The free-field analysis of a project: the section as the dynamic analysis reads it, the two
// side columns and their responses, and the folder "output_ff/" that the dynamic analysis reads
// for its side treatments 0 and 1.
#pragma once

#include <string>

#include "freefield/column_analysis.hpp"
#include "freefield/side_column.hpp"
#include "model/analysis_data.hpp"
#include "model/side_treatment.hpp"

// Reads the model of the project in folder (a prefix with its trailing separator, or empty for
// the working directory) through its file list, as the dynamic analysis does.
void ReadSection(const std::string& folder, CAnalysisData& section);

// Then, as the dynamic analysis does: private materials for strain-dependent elements, the
// self-weight stresses of "output0.inp" (the strengths of the GHE model), the constraints and
// the equation numbers.
void PrepareSection(const std::string& folder, CAnalysisData& section);

struct FreeFieldResult {
    SideAnalysis right;
    SideAnalysis left;
};

// Finds both columns first, so that a fault of either edge ends the run before any solve, then
// solves the right column and the left one, each under a console heading.
FreeFieldResult AnalyseSides(const CAnalysisData& section, bool equivalentLinear);

// What the folder holds, for the console.
struct FolderSummary {
    int motionFiles = 0;
    int lineMatrixFiles = 0;
    double lineMatrixSeconds = 0.0;
};

// Writes the files that a treatment needs into "output_ff.partial/" of the project folder and
// renames that to "output_ff/", in place of an older one: the motions and the constant side
// matrices for treatments 0 and 1, and the matrices of every line from 1 for treatment 0. A
// folder that cannot be made or replaced ends the run with status 1.
FolderSummary WriteFreeFieldFolder(const std::string& folder, const CAnalysisData& section,
                                   const FreeFieldResult& result, SideTreatment treatment);
