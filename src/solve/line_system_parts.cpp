#include "solve/line_system_parts.hpp"

#include <unistd.h>

#include <algorithm>

#include "fem/element_matrices.hpp"
#include "fem/viscous_boundary.hpp"
#include "input/free_field.hpp"
#include "solve/line_vectors.hpp"

uint64_t SideMatrixMemoryBudget() {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGE_SIZE);
    if (pages <= 0 || pageSize <= 0) return uint64_t{1} << 30;
    return static_cast<uint64_t>(pages) * static_cast<uint64_t>(pageSize) / 4;
}

LineSystemParts::LineSystemParts(CAnalysisData& analysis, const std::string& freeFieldFolder,
                                 uint64_t sideMatrixBudget, const WorkShare& share) {
    const size_t equations = static_cast<size_t>(analysis.freeDofCount);
    const SideTreatment side = analysis.Sides();
    const bool withSides = side != SideTreatment::kNone;

    inertiaLoad_ = ComplexVector(2 * analysis.nodes.size());
    AssembleInertiaLoad(analysis.elements.size(), analysis.nodes, analysis.elements, inertiaLoad_);
    mass_ = SparseComplexMatrix(equations);
    AssembleMassMatrix(analysis.elements.size(), analysis.equationMap, analysis.nodes,
                       analysis.elements, mass_);

    freeFieldMotion_.assign(static_cast<size_t>(std::max(analysis.frequencyCount, 0)),
                            ComplexVector(equations));
    if (withSides) ReadFreeFieldFiles(freeFieldMotion_, freeFieldFolder, analysis);

    SparseComplexMatrix right(equations), left(equations);
    if (withSides) {
        ReadFixedEMatrix(right, freeFieldFolder + "RIGHTEmatrix.dat", analysis);
        ReadFixedEMatrix(left, freeFieldFolder + "LEFTEmatrix.dat", analysis);
    }
    sideStatic_ = right + left;

    sideViscous_ = SparseComplexMatrix(equations);
    AssembleViscousMatrix(baseViscous_, analysis, false);
    if (side == SideTreatment::kViscous) AssembleViscousMatrix(sideViscous_, analysis, true);

    const int paddedLength = analysis.seismicWaves.empty() ? 0 : analysis.PaddedLength();
    // The syntheses read every line up to the Nyquist one, solved or not.
    EnsureSpectrumLength(analysis.nodes, static_cast<size_t>(paddedLength / 2 + 1));

    terms_.side = side;
    terms_.duration = paddedLength * analysis.timeStep;
    terms_.mass = &mass_;
    terms_.baseViscous = &baseViscous_;
    terms_.sideViscous = &sideViscous_;
    terms_.sideStatic = &sideStatic_;
    terms_.freeFieldMotion = &freeFieldMotion_;
    terms_.inertiaLoad = &inertiaLoad_;
    // The side matrices of the lines are read only when some line will be solved.
    if (side == SideTreatment::kTransmitting && analysis.iterationLimit >= 1 &&
        analysis.frequencyCount > 1) {
        lineMatrices_ = std::make_unique<FrequencyEMatrixStore>(
            freeFieldFolder, analysis, sideMatrixBudget,
            [share](int line) { return share.OwnsLine(line); });
        terms_.lineMatrixPattern = &lineMatrices_->Pattern();
        const FrequencyEMatrixStore* store = lineMatrices_.get();
        terms_.lineMatrix = [store](int line) { return store->Line(line); };
        terms_.lineValuesOverPattern = [store](int line, std::vector<Complex>& values) {
            store->LineOverPattern(line, values);
        };
    }
}
