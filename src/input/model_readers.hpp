// The readers of the model's files, each filling its part of the analysis object. The file list
// names the files and calls the others in their order.
#pragma once

#include <string>
#include <vector>

#include "model/analysis_data.hpp"

// Reads the file list at filelistPath and then, in order, the constants, the wave, the nodes,
// the elements with their materials and the boundary conditions; each path in the list is
// taken relative to folder (a prefix glued on as it stands).
void ReadFileList(CAnalysisData& analysis, const std::string& filelistPath,
                  const std::string& folder);

void ReadConstants(CAnalysisData& analysis, const std::string& path);
void ReadSeismic(CAnalysisData& analysis, const std::string& path);
void ReadNodes(CAnalysisData& analysis, const std::string& path);
void ReadElements(CAnalysisData& analysis, const std::string& elementPath,
                  const std::string& materialPath);
// Appends the materials of the file to list and, where recordLines is given, the lines of each
// record's numbers to it.
void ReadMaterials(MaterialList& list, const std::string& path,
                   std::vector<MaterialRecordLines>* recordLines = nullptr);
void ReadBoundary(CAnalysisData& analysis, ConditionList& conditions, const std::string& path);
// Fixes every node that no element uses, so that the system stays regular.
void AddIdleNodeBoundaries(CAnalysisData& analysis, ConditionList& conditions);
// The initial stresses of every integration point from the self-weight analysis' result.
void ReadSelfWeightStress(CAnalysisData& analysis, const std::string& path);
