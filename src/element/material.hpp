// Soil materials: densities, secant shear modulus and damping, the complex moduli and the
// complex constitutive matrix of the frequency-domain analysis, and the strain-dependent curves.
#pragma once

#include <vector>

#include "element/point.hpp"
#include "linalg/small_matrix.hpp"

// The material models, by the code that names them in the material file. Any code other than
// these two names the table model.
enum class MaterialModel : int {
    kTable = 2,       // G/G0 and damping from a table against shear strain
    kHyperbolic = 4,  // generalised hyperbolic (GHE) model
    kElastic = 5,     // linear elastic: constant modulus and damping
};

class DAT_Material {
  public:
    MaterialModel type = MaterialModel::kTable;
    double rho1 = 0.0;
    double rho2 = 0.0;
    double value3 = 0.0;  // third field of a material record: the file keeps its place, unused
    double G0 = 0.0;
    Complex Gstar;
    double Gused = 0.0;
    double G = 0.0;
    double h = 0.0;
    double nu = 0.0;
    double hUsed = 0.0;
    double E = 0.0;
    Complex Estar;
    double nuUsed = 0.0;
    Complex Kstar;
    Complex Gdstar;
    Complex LambdaStar;
    ComplexMatrix D = ComplexMatrix(4, 4);

    virtual ~DAT_Material() = default;
    // Whether the modulus and damping follow the strain (every model but the elastic one).
    bool StrainDependent() const { return type != MaterialModel::kElastic; }
    // Modulus term at a shear strain (G/G0 for the strain-dependent models, G0 for elastic).
    virtual double CalcG(double strain) = 0;
    // Damping ratio at a shear strain.
    virtual double CalcH(double strain) = 0;
    // A deep copy of the same model.
    virtual DAT_Material* Clone() const = 0;

    // Makes G, h and nu the values in use and recomputes the complex moduli and D.
    void UpdateModuli();
    // (Kstar - 2/3 Gdstar) A + (2 Gdstar) B with the constant operators A and B.
    ComplexMatrix MakeDMatrix() const;
};

class DAT_Elastic : public DAT_Material {
  public:
    double CalcG(double strain) override;
    double CalcH(double strain) override;
    DAT_Material* Clone() const override { return new DAT_Elastic(*this); }
};

// Generalised hyperbolic (GHE) model: modulus ratio from the strength tauf and the C1, C2 curves.
class DAT_GHEmodel : public DAT_Material {
  public:
    double c = 0.0;
    double phi = 0.0;
    double tauf = 0.0;
    double strengthDivisor = 0.0;
    double C1at0 = 0.0;
    double C1atInf = 0.0;
    double C2at0 = 0.0;
    double C2atInf = 0.0;
    double beta1 = 0.0;
    double beta2 = 0.0;
    double hmax = 0.0;
    double hExponent = 0.0;
    bool isHyperbolic = false;

    double CalcG(double strain) override;
    double CalcH(double strain) override;
    DAT_Material* Clone() const override { return new DAT_GHEmodel(*this); }
};

// Table model: modulus ratio and damping ratio against strain, linear in the strain.
class DAT_Othermoel : public DAT_Material {
  public:
    std::vector<double> gTable;
    std::vector<double> hTable;  // fractions
    std::vector<double> strainTable;

    double CalcG(double strain) override;
    double CalcH(double strain) override;
    DAT_Material* Clone() const override { return new DAT_Othermoel(*this); }
};

// The table lookup of DAT_Othermoel on one column: segment beginning at the first abscissa not
// below the strain, floor 0.0001.
double TableLookup(const std::vector<double>& strainTable, const std::vector<double>& values,
                   double strain);

// Real part of D times the strain, plus the point's initial stress.
RealVector GaussStressFromStrain(const DAT_Material& material, const ComplexVector& strain,
                                 const CGauss& gaussPoint);
