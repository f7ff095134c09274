// Placeholder until this stage is built; replaced by the real implementation.
#include "run/model_preparation.hpp"
void GivePrivateMaterials(CAnalysisData&) {}
void DispBoundary(CAnalysisData&) {}
void NumberEquations(CAnalysisData&) {}
