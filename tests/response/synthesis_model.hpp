// Small in-memory analyses for the synthesis tests: a wave with its spectrum and transform,
// nodes with transfer spectra, elements bound to real rules, shape functions and materials;
// and the readers of the binary work files the syntheses leave in the working directory.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "run/analysis_data.hpp"

// Moves into a folder for the lifetime of the object: the work files lie in the working
// directory.
class WorkingDirectory {
  public:
    explicit WorkingDirectory(const std::filesystem::path& folder);
    ~WorkingDirectory();
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

  private:
    std::filesystem::path previous_;
};

// Gives the analysis the wave samples (m/s2), zero-padded to P, its forward spectrum, the
// shared transform, the step dt and frequencyCount lines of analysis.
void SetWave(CAnalysisData& analysis, const std::vector<double>& samples, size_t P, double dt,
             int frequencyCount);

// Appends a node with zero spectra of P/2 + 1 lines.
int AddNode(CAnalysisData& analysis, double x, double y);

// Appends an element of 4, 6 or 8 nodes bound to the elastic material given (shared).
void AddElement(CAnalysisData& analysis, const std::vector<int>& nodes,
                const boost::shared_ptr<DAT_Material>& material);

// An elastic material whose D is the isotropic plane-strain matrix of the complex shear modulus
// G and Poisson's ratio nu, set directly: L + 2G on the normal diagonal, L = 2G nu / (1 - 2nu)
// off it, G for the engineering shear.
boost::shared_ptr<DAT_Material> ElasticMaterial(Complex G, double nu);

// A strip of elements along x, 4-node ones alone or 4-, 6- and 8-node ones in turn, each in a
// unit cell of its own.
void AddStrip(CAnalysisData& analysis, const std::vector<int>& nodeCounts,
              const boost::shared_ptr<DAT_Material>& material);

// The file read whole as little-endian values.
std::vector<double> ReadF64(const std::string& path);
std::vector<float> ReadF32(const std::string& path);
