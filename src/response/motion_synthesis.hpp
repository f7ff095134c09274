// Time histories of nodal motion: each node's transfer spectra times the input spectrum,
// completed to a conjugate-symmetric spectrum and transformed back, streamed with their peaks
// to the node work files.
#pragma once

#include <cstddef>

#include "element/point.hpp"
#include "linalg/fourier_transform.hpp"
#include "linalg/small_matrix.hpp"
#include "model/analysis_data.hpp"

enum class MotionKind {
    Displacement,  // relative displacement in x and y, no mean
    Acceleration,  // absolute acceleration in x (input added), relative in y
};

// Fills the spectra X (x direction) and Y (y direction) of P lines for one node. Lines 1 to P/2
// come from the wave spectrum and the node's transfer spectra (missing entries count as zero);
// each line below P/2 gets its conjugate mirror at P - k, the top line P/2 none. Line 0 is the
// wave's mean for the x acceleration and zero otherwise.
void FillMotionSpectra(MotionKind kind, const ComplexVector& waveSpectrum, const CNode& node,
                       double timeStep, Complex* X, Complex* Y, size_t P);

// One node's time history: fills X and Y (P values each, overwritten), transforms them back and
// puts the real parts of the first `steps` samples as x, y pairs into series (2 steps values)
// and the largest absolute x and y into peaks (2 values).
void SynthesiseNodeMotion(MotionKind kind, const CAnalysisData& analysis, const CNode& node,
                          const FourierTransform& transform, Complex* X, Complex* Y, size_t steps,
                          double* series, double* peaks);

// Nodes are synthesised a block at a time, in parallel, while the block before is written.
constexpr size_t kMotionBlockBytes = size_t(16) << 20;

// Writes the series file and the maxima file of the kind ("work_disp.dat" and "work_Mdisp.dat",
// or "work_acc.dat" and "work_Macc.dat") for all nodes in list order. blockBytes bounds the
// series data held in memory per block.
void WriteMotionHistories(const CAnalysisData& analysis, MotionKind kind,
                          size_t blockBytes = kMotionBlockBytes);

// The displacement and the acceleration histories of every node into their work files.
void CalcDisplacementHistory(const CAnalysisData& analysis);
void CalcAccelerationHistory(const CAnalysisData& analysis);
