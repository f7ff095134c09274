// Placeholder until this stage is built; replaced by the real implementation.
#include "element/material.hpp"
void DAT_Material::UpdateModuli() {}
ComplexMatrix DAT_Material::MakeDMatrix() const { return ComplexMatrix(4, 4); }
double DAT_Elastic::CalcG(double) { return G0; }
double DAT_Elastic::CalcH(double) { return hUsed; }
double DAT_GHEmodel::CalcG(double) { return 1.0; }
double DAT_GHEmodel::CalcH(double) { return 0.0; }
double DAT_Othermoel::CalcG(double) { return 1.0; }
double DAT_Othermoel::CalcH(double) { return 0.0; }
double TableLookup(const std::vector<double>&, const std::vector<double>&, double) { return 0.0; }
RealVector GaussStressFromStrain(const DAT_Material&, const ComplexVector&, const CGauss& p) { return p.stress; }
