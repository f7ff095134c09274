#include "element/material.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "element/constant_operators.hpp"

namespace {

// The value of a cosine transition at the normalised strain x: `atZero` at x = 0, tending to
// `atInfinity` as x grows, with the shape constant beta.
double CosineTransition(double x, double beta, double atZero, double atInfinity) {
    return std::cos(std::numbers::pi * x / (beta + x)) * (atZero - atInfinity) / 2 +
           (atInfinity + atZero) / 2;
}

}  // namespace

void DAT_Material::UpdateModuli() {
    Gused = G;
    nuUsed = nu;
    hUsed = h;
    // This form keeps the amplitude of the complex modulus at G.
    Gstar = Complex(G * (1 - 2 * h * h), 2 * h * G * std::sqrt(1 - h * h));
    E = 2 * (1 + nu) * G;
    Estar = (2 * (1 + nu)) * Gstar;
    Kstar = (Estar / 3.0) / (1 - 2 * nu);
    Gdstar = (0.5 * Estar) / (1 + nu);
    LambdaStar = nu * (2.0 * Gstar) / (1 - 2 * nu);
    D = MakeDMatrix();
}

ComplexMatrix DAT_Material::MakeDMatrix() const {
    return ScaledSum(Kstar - (2.0 / 3.0) * Gdstar, gVolumeOperatorC, 2.0 * Gdstar, gDiagOperatorC);
}

double DAT_Elastic::CalcG(double) {
    return G0;
}

double DAT_Elastic::CalcH(double) {
    return hUsed;
}

double DAT_GHEmodel::CalcG(double strain) {
    const double referenceStrain = tauf / G0;
    const double x = strain / referenceStrain;
    const double C1 = isHyperbolic ? 1.0 : CosineTransition(x, beta1, C1at0, C1atInf);
    const double C2 = isHyperbolic ? 1.0 : CosineTransition(x, beta2, C2at0, C2atInf);
    return 1 / (std::fabs(x) / C2 + 1 / C1);
}

double DAT_GHEmodel::CalcH(double strain) {
    const double ratio = CalcG(strain);
    return hmax * std::pow(1 - ratio, hExponent);
}

double DAT_Othermoel::CalcG(double strain) {
    return TableLookup(strainTable, gTable, strain);
}

double DAT_Othermoel::CalcH(double strain) {
    return TableLookup(strainTable, hTable, strain);
}

double TableLookup(const std::vector<double>& strainTable, const std::vector<double>& values,
                   double strain) {
    const double floorValue = 0.0001;
    const size_t n = std::min(strainTable.size(), values.size());
    if (n < 2) return (n == 1 && values[0] >= 0.0) ? values[0] : floorValue;
    // The segment that begins at the first abscissa not below the strain; past the end, the
    // last segment. The value is extrapolated along that segment.
    size_t i = 0;
    while (i < n && strainTable[i] < strain) ++i;
    if (i + 1 >= n) i = n - 2;
    const double slope = (values[i + 1] - values[i]) / (strainTable[i + 1] - strainTable[i]);
    const double value = values[i] + slope * (strain - strainTable[i]);
    return value < 0.0 ? floorValue : value;
}

RealVector GaussStressFromStrain(const DAT_Material& material, const ComplexVector& strain,
                                 const CGauss& gaussPoint) {
    return Add(RealParts(Multiply(material.D, strain)), gaussPoint.stress);
}
