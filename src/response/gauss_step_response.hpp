// Stress and strain of one integration point at one time step, the scalars derived from them,
// their peaks, and the 24-byte work-file records that carry them. Vectors are in the order
// x, y, z, xy; the xy strain is the engineering shear.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>

#include "linalg/small_matrix.hpp"

using Vector4 = std::array<double, 4>;
using WorkRecord = std::array<float, 6>;

// v[i] + d[i] ((v[0] + v[1] + v[2]) x -1/3) with d = (1, 1, 1, 0): the deviatoric part.
Vector4 Deviator4(const Vector4& v);

// A material's complex constitutive matrix D, held in fixed storage for the step loop.
struct ConstitutiveMatrix {
    Complex d[4][4] = {};

    ConstitutiveMatrix() = default;
    explicit ConstitutiveMatrix(const ComplexMatrix& D);  // a 4 x 4 matrix; other sizes read as 0
};

struct StepResponse {
    Vector4 stress{};  // s = Re(D strain) + initial stress
    Vector4 strain{};  // e = Re(strain), z always 0
    // The scalars, formed in double and narrowed at the end, as they are written.
    float mean = 0.0f;       // (s0 + s1 + s2) x -1/3
    float dev = 0.0f;        // sqrt(1/2) x norm of the stress deviator, shear counted twice
    float vol = 0.0f;        // e0 + e1 + e2
    float devStrain = 0.0f;  // sqrt(2) x norm of the strain deviator with tensor shear
};

// The response to the complex strain (ex, ey, 0, gxy): the stress is the real part of D times
// the complex strain, the imaginary parts included, plus the initial stress.
StepResponse EvaluateStep(const ConstitutiveMatrix& D, const Vector4& initialStress, Complex ex,
                          Complex ey, Complex gxy);

// Largest absolute values over the steps of one integration point: components in double, the
// four scalars over their narrowed values.
struct GaussPeaks {
    Vector4 strain{};
    Vector4 stress{};
    float mean = 0.0f;
    float dev = 0.0f;
    float vol = 0.0f;
    float devStrain = 0.0f;

    void Update(const StepResponse& r);
};

WorkRecord StressRecord(const StepResponse& r);  // s narrowed, mean, dev
WorkRecord StrainRecord(const StepResponse& r);  // e narrowed, vol, devStrain
WorkRecord MaxStressRecord(const GaussPeaks& p);
WorkRecord MaxStrainRecord(const GaussPeaks& p);

// Definitions: inline, as they run once for every step of every integration point.

namespace step_response_detail {

inline double SumOfSquares(const Vector4& d, double shearA, double shearB) {
    return d[0] * d[0] + d[1] * d[1] + d[2] * d[2] + shearA * shearB;
}

template <typename T>
inline void KeepLarger(T& peak, T value) {
    peak = std::max(peak, std::abs(value));
}

inline WorkRecord Record(const Vector4& v, float a, float b) {
    return {static_cast<float>(v[0]),
            static_cast<float>(v[1]),
            static_cast<float>(v[2]),
            static_cast<float>(v[3]),
            a,
            b};
}

}  // namespace step_response_detail

inline Vector4 Deviator4(const Vector4& v) {
    static constexpr double kUnitTrace[4] = {1.0, 1.0, 1.0, 0.0};
    const double m = (v[0] + v[1] + v[2]) * -0.3333333333333333;
    Vector4 d;
    for (int i = 0; i < 4; ++i) d[i] = v[i] + kUnitTrace[i] * m;
    return d;
}

inline ConstitutiveMatrix::ConstitutiveMatrix(const ComplexMatrix& D) {
    if (D.rows != 4 || D.cols != 4) return;
    for (uint32_t i = 0; i < 4; ++i)
        for (uint32_t j = 0; j < 4; ++j) d[i][j] = D(i, j);
}

inline StepResponse EvaluateStep(const ConstitutiveMatrix& D, const Vector4& initialStress,
                                 Complex ex, Complex ey, Complex gxy) {
    const Complex strain[4] = {ex, ey, Complex(0.0, 0.0), gxy};
    StepResponse r;
    for (int i = 0; i < 4; ++i) {
        // Real part of the row product, summed in ascending column order.
        double re = 0.0;
        for (int j = 0; j < 4; ++j)
            re += D.d[i][j].real() * strain[j].real() - D.d[i][j].imag() * strain[j].imag();
        r.stress[i] = re + initialStress[i];
        r.strain[i] = strain[i].real();
    }
    const Vector4& s = r.stress;
    const Vector4& e = r.strain;
    r.mean = static_cast<float>((s[0] + s[1] + s[2]) * -0.3333333333333333);
    const Vector4 ds = Deviator4(s);
    r.dev = static_cast<float>(
        std::sqrt(0.5) * std::sqrt(step_response_detail::SumOfSquares(ds, ds[3] * 2.0, ds[3])));
    r.vol = static_cast<float>(e[0] + e[1] + e[2]);
    const Vector4 de = Deviator4(e);
    r.devStrain = static_cast<float>(std::sqrt(2.0) * std::sqrt(step_response_detail::SumOfSquares(
                                                          de, de[3] * 0.5 * 2.0, de[3] * 0.5)));
    return r;
}

inline void GaussPeaks::Update(const StepResponse& r) {
    for (int i = 0; i < 4; ++i) {
        step_response_detail::KeepLarger(strain[i], r.strain[i]);
        step_response_detail::KeepLarger(stress[i], r.stress[i]);
    }
    step_response_detail::KeepLarger(mean, r.mean);
    step_response_detail::KeepLarger(dev, r.dev);
    step_response_detail::KeepLarger(vol, r.vol);
    step_response_detail::KeepLarger(devStrain, r.devStrain);
}

inline WorkRecord StressRecord(const StepResponse& r) {
    return step_response_detail::Record(r.stress, r.mean, r.dev);
}
inline WorkRecord StrainRecord(const StepResponse& r) {
    return step_response_detail::Record(r.strain, r.vol, r.devStrain);
}
inline WorkRecord MaxStressRecord(const GaussPeaks& p) {
    return step_response_detail::Record(p.stress, p.mean, p.dev);
}
inline WorkRecord MaxStrainRecord(const GaussPeaks& p) {
    return step_response_detail::Record(p.strain, p.vol, p.devStrain);
}
