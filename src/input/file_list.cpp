// The file list of a project and the order in which the model's files are read.
#include <array>
#include <string>

#include "input/line_reader.hpp"
#include "input/model_readers.hpp"
#include "model/analysis_data.hpp"

namespace {
// The list has eighteen slots; only the first six name files that are read.
constexpr size_t kSlotCount = 18;
enum Slot { kConstants = 0, kWave = 1, kNodes = 2, kElements = 3, kMaterials = 4, kBoundary = 5 };
}  // namespace

void ReadFileList(CAnalysisData& analysis, const std::string& filelistPath,
                  const std::string& folder) {
    std::array<std::string, kSlotCount> slots;
    size_t next = 0;
    const std::string failure = "Filelist:Reading error\n" + filelistPath + "\n" + folder;
    // Every data line takes the next slot, an empty one too; the folder prefix is glued on as it
    // stands. Lines past the eighteenth have no slot and are passed over.
    const bool read = ReadDataLines(filelistPath, failure, [&](const std::string& line, int) {
        if (next < kSlotCount) slots[next++] = folder + line;
    });
    if (!read) return;

    ReadConstants(analysis, slots[kConstants]);
    ReadSeismic(analysis, slots[kWave]);
    ReadNodes(analysis, slots[kNodes]);
    ReadElements(analysis, slots[kElements], slots[kMaterials]);
    ReadBoundary(analysis, analysis.boundaryConds, slots[kBoundary]);
    AddIdleNodeBoundaries(analysis, analysis.boundaryConds);
}
