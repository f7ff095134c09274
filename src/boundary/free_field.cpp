// Placeholder until this stage is built; replaced by the real implementation.
#include "boundary/free_field.hpp"
void ReadFreeFieldFiles(std::vector<ComplexVector>&, const std::string&, const CAnalysisData&) {}
