#include "response/gauss_step_response.hpp"

#include <algorithm>
#include <cmath>

namespace {

double SumOfSquares(const Vector4& d, double shearA, double shearB) {
    return d[0] * d[0] + d[1] * d[1] + d[2] * d[2] + shearA * shearB;
}

template <typename T>
void KeepLarger(T& peak, T value) {
    peak = std::max(peak, std::abs(value));
}

WorkRecord Record(const Vector4& v, float a, float b) {
    return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2]),
            static_cast<float>(v[3]), a, b};
}

}  // namespace

Vector4 Deviator4(const Vector4& v) {
    static constexpr double kUnitTrace[4] = {1.0, 1.0, 1.0, 0.0};
    const double m = (v[0] + v[1] + v[2]) * -0.3333333333333333;
    Vector4 d;
    for (int i = 0; i < 4; ++i) d[i] = v[i] + kUnitTrace[i] * m;
    return d;
}

ConstitutiveMatrix::ConstitutiveMatrix(const ComplexMatrix& D) {
    if (D.rows != 4 || D.cols != 4) return;
    for (uint32_t i = 0; i < 4; ++i)
        for (uint32_t j = 0; j < 4; ++j) d[i][j] = D(i, j);
}

StepResponse EvaluateStep(const ConstitutiveMatrix& D, const Vector4& initialStress, Complex ex,
                          Complex ey, Complex gxy) {
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
    r.dev = static_cast<float>(std::sqrt(0.5) * std::sqrt(SumOfSquares(ds, ds[3] * 2.0, ds[3])));
    r.vol = static_cast<float>(e[0] + e[1] + e[2]);
    const Vector4 de = Deviator4(e);
    r.devStrain = static_cast<float>(
        std::sqrt(2.0) * std::sqrt(SumOfSquares(de, de[3] * 0.5 * 2.0, de[3] * 0.5)));
    return r;
}

void GaussPeaks::Update(const StepResponse& r) {
    for (int i = 0; i < 4; ++i) {
        KeepLarger(strain[i], r.strain[i]);
        KeepLarger(stress[i], r.stress[i]);
    }
    KeepLarger(mean, r.mean);
    KeepLarger(dev, r.dev);
    KeepLarger(vol, r.vol);
    KeepLarger(devStrain, r.devStrain);
}

WorkRecord StressRecord(const StepResponse& r) { return Record(r.stress, r.mean, r.dev); }
WorkRecord StrainRecord(const StepResponse& r) { return Record(r.strain, r.vol, r.devStrain); }
WorkRecord MaxStressRecord(const GaussPeaks& p) { return Record(p.stress, p.mean, p.dev); }
WorkRecord MaxStrainRecord(const GaussPeaks& p) { return Record(p.strain, p.vol, p.devStrain); }
