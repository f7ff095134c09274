#include "solve/line_system_chain.hpp"

#include "solve/line_vectors.hpp"

ChainLine FormLineByChain(const LineSystemTerms& terms, const SparseComplexMatrix& stiffness,
                          int line, double w) {
    ChainLine result;
    const SparseComplexMatrix V = Complex(0.0, w) * *terms.baseViscous;
    if (!terms.HasSideLoad()) {
        const SparseComplexMatrix M = (w * w) * *terms.mass;
        result.system = (stiffness - M) + V;
        return result;
    }
    const SparseComplexMatrix side = terms.side == SideTreatment::kTransmitting
                                         ? terms.lineMatrix(line)
                                         : Complex(0.0, w) * *terms.sideViscous;
    const SparseComplexMatrix L = side + *terms.sideStatic;
    result.boundaryLoad = L * (*terms.freeFieldMotion)[line];
    const SparseComplexMatrix M = Complex(-w * w, 0.0) * *terms.mass;
    result.system = ((stiffness + M) + V) + side;
    return result;
}

void SolveLineByChain(const LineSystemTerms& terms, const SparseComplexMatrix& stiffness, int line,
                      CAnalysisData& analysis) {
    ChainLine chain =
        FormLineByChain(terms, stiffness, line, LineCircularFrequency(line, terms.duration));
    std::vector<Complex> packed(FreeDofCount(analysis.dofFixed));
    if (packed.size() != chain.system.RowCount()) StopOnSolverFailure(SolveFailureMessage(-1));
    PackRightHandSide(*terms.inertiaLoad,
                      chain.boundaryLoad.size() != 0 ? chain.boundaryLoad.data.data() : nullptr,
                      analysis.equationMap, analysis.dofFixed, packed.data());
    const int status = chain.system.solve(packed.data());
    if (status != 0) StopOnSolverFailure(SolveFailureMessage(status));
    StoreLineSolution(packed.data(), analysis.dofFixed, line, analysis.nodes);
}
