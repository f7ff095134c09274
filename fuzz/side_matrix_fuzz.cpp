// A side-boundary matrix file of the free-field analysis ("RIGHTEmatrix.dat", "REMat<i>.dat"):
// entries "row column real imaginary" over the degrees of freedom.
#include "fuzz_support.hpp"
#include "input/e_matrix_file.hpp"
#include "input/transmitting_boundary.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return Exercise([&] {
        CAnalysisData analysis;
        ReadModel(analysis, FixedModelFiles());
        NumberEquationsForHarness(analysis);
        const std::string path = PutInput("sides/RIGHTEmatrix.dat", data, size);

        std::vector<EMatrixEntry> entries;
        if (ReadEMatrixEntries(path, analysis.equationMap, entries).status ==
            EMatrixFileOutcome::Status::kRead)
            MergeEqualEntries(entries);

        SparseComplexMatrix matrix;
        ReadFixedEMatrix(matrix, path, analysis);
        // The same text as both matrices of frequency line 1.
        PutInput("sides/REMat1.dat", data, size);
        PutInput("sides/LEMat1.dat", data, size);
        ReadFrequencyEMatrix(matrix, 1, HarnessFolder() + "sides/", analysis);
    });
}
