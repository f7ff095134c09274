// The input acceleration record after resampling and padding.
#pragma once

#include <vector>

class CSeismicWave {
  public:
    int id = 0;
    double timeStep = 0.0;
    std::vector<double> acc;    // resampled acceleration (m/s2), padded to a power of two P
    std::vector<double> spare;  // empty
    int sampleCount = 0;        // length before padding
};
