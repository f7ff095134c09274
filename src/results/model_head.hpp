// The head of a result model file, up to and including the node block: sizes, steps, the fixed
// material and coupling blocks, the elements and the nodes. Everything but the steps line and
// the node motion is the same in every file of a run, so it is formatted once.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/analysis_data.hpp"
#include "results/node_motion.hpp"
#include "results/text_buffer.hpp"

class ModelFileHead {
  public:
    explicit ModelFileHead(const CAnalysisData& analysis);

    // Sizes, steps, materials, coupling, elements and the node banner. The steps line begins
    // with firstValue: the file's step number, or the step count in the file of maxima.
    void AppendBlocks(TextBuffer& out, int64_t firstValue) const;
    // The node lines at one step: number, coordinates, displacement, two zeros, acceleration in
    // cm/s2.
    void AppendNodes(TextBuffer& out, const NodeMotionTable& motion, uint64_t step) const;

    size_t NodeCount() const { return nodeEnds_.size(); }

  private:
    std::string leading_;    // sizes block and the steps banner
    std::string stepsTail_;  // rest of the steps line after its first value
    std::string trailing_;   // materials, coupling, elements, node banner
    std::string nodeText_;   // "number x y " of every node, one after the other
    std::vector<size_t> nodeEnds_;
};

// The wave's step count, 0 when there is no wave.
int WaveStepCount(const CAnalysisData& analysis);
