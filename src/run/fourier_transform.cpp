#include "run/fourier_transform.hpp"

#include <fftw3.h>

#include <mutex>
#include <vector>

namespace {
// The FFTW planner is not thread-safe; execution of a finished plan is.
std::mutex& PlannerMutex() {
    static std::mutex m;
    return m;
}
}  // namespace

FourierTransform::FourierTransform(size_t length) : length_(length) {
    std::lock_guard<std::mutex> lock(PlannerMutex());
    std::vector<std::complex<double>> scratch(length ? length : 1);
    auto* p = reinterpret_cast<fftw_complex*>(scratch.data());
    const int n = static_cast<int>(length);
    // Unaligned plans so that any caller's array may be transformed.
    forwardPlan_ = fftw_plan_dft_1d(n, p, p, FFTW_FORWARD, FFTW_ESTIMATE | FFTW_UNALIGNED);
    backwardPlan_ = fftw_plan_dft_1d(n, p, p, FFTW_BACKWARD, FFTW_ESTIMATE | FFTW_UNALIGNED);
}

FourierTransform::~FourierTransform() {
    std::lock_guard<std::mutex> lock(PlannerMutex());
    fftw_destroy_plan(static_cast<fftw_plan>(forwardPlan_));
    fftw_destroy_plan(static_cast<fftw_plan>(backwardPlan_));
}

void FourierTransform::Forward(std::complex<double>* data) const {
    auto* p = reinterpret_cast<fftw_complex*>(data);
    fftw_execute_dft(static_cast<fftw_plan>(forwardPlan_), p, p);
    const double scale = 1.0 / static_cast<double>(length_);
    for (size_t i = 0; i < length_; ++i) data[i] *= scale;
}

void FourierTransform::Backward(std::complex<double>* data) const {
    auto* p = reinterpret_cast<fftw_complex*>(data);
    fftw_execute_dft(static_cast<fftw_plan>(backwardPlan_), p, p);
}
