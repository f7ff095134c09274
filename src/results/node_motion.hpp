// Node motion read back from the work files for a run of steps: displacement and acceleration,
// x and y, of every node.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

struct NodeMotion {
    double dispX = 0.0;  // m
    double dispY = 0.0;
    double accX = 0.0;  // m/s2
    double accY = 0.0;
};

class NodeMotionTable {
  public:
    // Steps firstStep .. firstStep + stepCount - 1 of every node, from two files of (x, y) f64
    // pairs holding stepStride records a node: "work_disp.dat" and "work_acc.dat" with the
    // wave's step count, or the maxima files "work_Mdisp.dat" and "work_Macc.dat" with 1.
    // A missing file or a short one gives zeros.
    NodeMotionTable(const std::string& dispPath, const std::string& accPath, size_t nodeCount,
                    uint64_t stepStride, uint64_t firstStep, uint64_t stepCount);

    // One step (step 0) held in memory, such as a static state: x, y of every node in disp (m)
    // and in acc (m/s2).
    NodeMotionTable(std::vector<double> disp, std::vector<double> acc)
        : firstStep_(0), stepCount_(1), disp_(std::move(disp)), acc_(std::move(acc)) {}

    // Motion of a node at an absolute step within the run held.
    NodeMotion At(size_t node, uint64_t step) const;

    // Steps that fit a memory budget for nodeCount nodes (at least 1).
    static uint64_t StepsWithin(size_t nodeCount, uint64_t budgetBytes);

  private:
    uint64_t firstStep_;
    uint64_t stepCount_;
    std::vector<double> disp_;  // node-major, (x, y) a step
    std::vector<double> acc_;
};
