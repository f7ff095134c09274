// The check of a model between its input and its analysis: everything that would give results
// that are not finite, silently zero or silently wrong is found here, before any folder is made
// and before any line is solved, and each fault is shown at its place.
#pragma once

#include <string>
#include <vector>

#include "model/analysis_data.hpp"

// One fault of the model: the file and line it stands on where a line is to blame, and what is
// wrong, with elements, nodes and materials numbered from 1 as the result files number them.
struct ModelFault {
    std::string path;  // empty where no file is to blame
    int line = 0;      // 0 where the file as a whole is to blame
    std::string text;

    // "path:line: text", "path: text" or "text".
    std::string Message() const;
};

// All faults of a model that has been read and has its self-weight stresses, in the order of
// its files: the analysis constants, the wave, the nodes, the materials, the elements, the
// boundary conditions and the self-weight stresses. Only numbers that the analysis uses are
// examined, and only materials that an element uses. Empty for a model that can be analysed.
std::vector<ModelFault> CheckModel(const CAnalysisData& analysis);

// The messages of the faults, in their order.
std::vector<std::string> FaultMessages(const std::vector<ModelFault>& faults);
