#include "results/node_motion.hpp"

#include <algorithm>

#include "results/work_file_reader.hpp"

namespace {
constexpr uint64_t kPairBytes = 2 * sizeof(double);

void ReadRuns(const std::string& path, size_t nodeCount, uint64_t stride, uint64_t first,
              uint64_t count, std::vector<double>& values) {
    values.assign(nodeCount * count * 2, 0.0);
    const WorkFileReader file(path);
    RequireOpen(file, path);
    for (size_t node = 0; node < nodeCount; ++node)
        file.ReadAt((node * stride + first) * kPairBytes, values.data() + node * count * 2,
                    count * kPairBytes);
}
}  // namespace

NodeMotionTable::NodeMotionTable(const std::string& dispPath, const std::string& accPath,
                                 size_t nodeCount, uint64_t stepStride, uint64_t firstStep,
                                 uint64_t stepCount)
    : firstStep_(firstStep), stepCount_(stepCount) {
    ReadRuns(dispPath, nodeCount, stepStride, firstStep, stepCount, disp_);
    ReadRuns(accPath, nodeCount, stepStride, firstStep, stepCount, acc_);
}

NodeMotion NodeMotionTable::At(size_t node, uint64_t step) const {
    const size_t i = (node * stepCount_ + (step - firstStep_)) * 2;
    if (step < firstStep_ || step - firstStep_ >= stepCount_ || i + 1 >= disp_.size()) return {};
    return {disp_[i], disp_[i + 1], acc_[i], acc_[i + 1]};
}

uint64_t NodeMotionTable::StepsWithin(size_t nodeCount, uint64_t budgetBytes) {
    const uint64_t perStep = std::max<uint64_t>(1, nodeCount * 2 * kPairBytes);
    return std::max<uint64_t>(1, budgetBytes / perStep);
}
