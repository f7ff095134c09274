#include "linalg/fourier_transform.hpp"

#include <fftw3.h>

#include <mutex>

namespace {
// The FFTW planner is not thread-safe; execution of a finished plan is.
std::mutex& PlannerMutex() {
    static std::mutex m;
    return m;
}

struct PlanPair {
    fftw_plan aligned;    // SIMD codelets; for arrays with the planning array's alignment
    fftw_plan unaligned;  // any array
    int alignment;
};

PlanPair MakePlans(int n, int sign) {
    auto* scratch = static_cast<fftw_complex*>(fftw_malloc(sizeof(fftw_complex) * (n > 0 ? n : 1)));
    PlanPair p;
    p.aligned = fftw_plan_dft_1d(n, scratch, scratch, sign, FFTW_ESTIMATE);
    p.unaligned = fftw_plan_dft_1d(n, scratch, scratch, sign, FFTW_ESTIMATE | FFTW_UNALIGNED);
    p.alignment = fftw_alignment_of(reinterpret_cast<double*>(scratch));
    fftw_free(scratch);
    return p;
}

void Execute(const void* plans, std::complex<double>* data) {
    const auto* p = static_cast<const PlanPair*>(plans);
    auto* d = reinterpret_cast<fftw_complex*>(data);
    const bool sameAlignment = fftw_alignment_of(reinterpret_cast<double*>(data)) == p->alignment;
    fftw_execute_dft(sameAlignment ? p->aligned : p->unaligned, d, d);
}

void Destroy(void* plans) {
    auto* p = static_cast<PlanPair*>(plans);
    fftw_destroy_plan(p->aligned);
    fftw_destroy_plan(p->unaligned);
    delete p;
}
}  // namespace

FourierTransform::FourierTransform(size_t length) : length_(length) {
    std::lock_guard<std::mutex> lock(PlannerMutex());
    const int n = static_cast<int>(length);
    forwardPlan_ = new PlanPair(MakePlans(n, FFTW_FORWARD));
    backwardPlan_ = new PlanPair(MakePlans(n, FFTW_BACKWARD));
}

FourierTransform::~FourierTransform() {
    std::lock_guard<std::mutex> lock(PlannerMutex());
    Destroy(forwardPlan_);
    Destroy(backwardPlan_);
}

void FourierTransform::Forward(std::complex<double>* data) const {
    Execute(forwardPlan_, data);
    const double scale = 1.0 / static_cast<double>(length_);
    for (size_t i = 0; i < length_; ++i) data[i] *= scale;
}

void FourierTransform::Backward(std::complex<double>* data) const {
    Execute(backwardPlan_, data);
}
