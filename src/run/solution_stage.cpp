#include "run/solution_stage.hpp"

#include <unistd.h>

#include <memory>
#include <vector>

#include "boundary/element_matrices.hpp"
#include "boundary/free_field.hpp"
#include "boundary/transmitting_boundary.hpp"
#include "boundary/viscous_boundary.hpp"
#include "run/equivalent_linear_iteration.hpp"
#include "run/frequency_loop.hpp"
#include "run/line_system_terms.hpp"
#include "run/line_vectors.hpp"

namespace {

// The side matrices of all lines are kept in memory up to a quarter of the physical memory:
// that leaves room for the factorisations of the worker threads, which dominate the rest.
uint64_t SideMatrixMemoryBudget() {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGE_SIZE);
    if (pages <= 0 || pageSize <= 0) return uint64_t{1} << 30;
    return static_cast<uint64_t>(pages) * static_cast<uint64_t>(pageSize) / 4;
}

}  // namespace

void RunSolution(CAnalysisData& analysis, const CRunControl& run,
                 const std::string& freeFieldFolder) {
    const size_t equations = static_cast<size_t>(analysis.freeDofCount);
    const int mode = analysis.sideBoundaryType;
    const bool withSides = mode == 0 || mode == 1;

    ComplexVector inertiaLoad(2 * analysis.nodes.size());
    AssembleInertiaLoad(analysis.elements.size(), analysis.nodes, analysis.elements, inertiaLoad);
    SparseComplexMatrix massMatrix(equations);
    AssembleMassMatrix(analysis.elements.size(), analysis.equationMap, analysis.nodes,
                       analysis.elements, massMatrix);

    std::vector<ComplexVector> freeFieldMotion(
        static_cast<size_t>(std::max(analysis.frequencyCount, 0)), ComplexVector(equations));
    if (withSides) ReadFreeFieldFiles(freeFieldMotion, freeFieldFolder, analysis);

    SparseComplexMatrix right(equations), left(equations);
    if (withSides) {
        ReadFixedEMatrix(right, freeFieldFolder + "RIGHTEmatrix.dat", analysis);
        ReadFixedEMatrix(left, freeFieldFolder + "LEFTEmatrix.dat", analysis);
    }
    const SparseComplexMatrix sideStaticMatrix = right + left;
    right = SparseComplexMatrix();
    left = SparseComplexMatrix();

    SparseComplexMatrix baseViscousMatrix, sideViscousMatrix(equations);
    AssembleViscousMatrix(baseViscousMatrix, analysis, false);
    if (mode == 1) AssembleViscousMatrix(sideViscousMatrix, analysis, true);

    const int paddedLength = analysis.seismicWaves.empty() ? 0 : analysis.PaddedLength();
    const double duration = paddedLength * analysis.timeStep;
    // The syntheses read every line up to the Nyquist one, solved or not.
    EnsureSpectrumLength(analysis.nodes, static_cast<size_t>(paddedLength / 2 + 1));

    LineSystemTerms terms;
    terms.sideBoundaryType = mode;
    terms.duration = duration;
    terms.mass = &massMatrix;
    terms.baseViscous = &baseViscousMatrix;
    terms.sideViscous = &sideViscousMatrix;
    terms.sideStatic = &sideStaticMatrix;
    terms.freeFieldMotion = &freeFieldMotion;
    terms.inertiaLoad = &inertiaLoad;
    // The side matrices of the lines are read only when some line will be solved.
    std::unique_ptr<FrequencyEMatrixStore> lineMatrices;
    if (mode == 0 && analysis.iterationLimit >= 1 && analysis.frequencyCount > 1) {
        lineMatrices = std::make_unique<FrequencyEMatrixStore>(freeFieldFolder, analysis,
                                                               SideMatrixMemoryBudget());
        terms.lineMatrixPattern = &lineMatrices->Pattern();
        const FrequencyEMatrixStore* store = lineMatrices.get();
        terms.lineMatrix = [store](int line) { return store->Line(line); };
        terms.lineValuesOverPattern = [store](int line, std::vector<Complex>& values) {
            store->LineOverPattern(line, values);
        };
    }

    FrequencyLoop loop(terms);
    RunEquivalentLinearIteration(analysis, run.equivalentLinear, loop);
}
