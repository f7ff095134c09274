#include "model/analysis_data.hpp"

void CAnalysisData::clear(int releaseTransform) {
    timeStep = 0.0;
    tolerance = 0.0;
    nodes.clear();
    elements.clear();
    boundaryConds.clear();
    seismicWaves.clear();
    dofFixed.clear();
    sources = ModelSources{};
    if (releaseTransform == 1) transformHandle.reset();
}
