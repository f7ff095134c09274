// The steps between the model input and the solution: private materials for strain-dependent
// elements, the constraint marking and the equation numbering.
#pragma once

#include <string>

#include "model/analysis_data.hpp"

// Gives each element whose material is not elastic a deep copy of its own.
void GivePrivateMaterials(CAnalysisData& analysis);

// Marks fixed degrees of freedom in dofFixed from the boundary codes; an unknown code prints
// "DispBoundary ERROR" and ends the run with status 0.
void DispBoundary(CAnalysisData& analysis);

// equationMap and freeDofCount from dofFixed.
void NumberEquations(CAnalysisData& analysis);

// All of these after the model input, as the driver runs them: the degree-of-freedom arrays,
// private materials, the initial stresses of the self-weight result at selfWeightPath, the model
// check (a faulty model stops the run here, status 2), the constraints and the equation numbers.
void PrepareModel(CAnalysisData& analysis, const std::string& selfWeightPath);
