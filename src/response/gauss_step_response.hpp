// Stress and strain of one integration point at one time step, the scalars derived from them,
// their peaks, and the 24-byte work-file records that carry them. Vectors are in the order
// x, y, z, xy; the xy strain is the engineering shear.
#pragma once

#include <array>

#include "element/small_matrix.hpp"

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
