#include "freefield/transmitting_matrices.hpp"

#include "base/run_stop.hpp"

int WriteLineMatrixFiles(const std::string&, const CAnalysisData&, const SideAnalysis&,
                         const SideAnalysis&) {
    StopOnBadModel(
        "side treatment 0: the matrices of the transmitting boundary cannot be computed by this "
        "build yet; --treatment 1 writes the free-field motions and the constant side matrices");
}
