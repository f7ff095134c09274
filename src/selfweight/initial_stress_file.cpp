#include "selfweight/initial_stress_file.hpp"

#include <cstdio>

#include "base/platform.hpp"
#include "base/run_stop.hpp"
#include "results/model_head.hpp"
#include "results/node_motion.hpp"
#include "results/record_lines.hpp"
#include "results/text_buffer.hpp"

void WriteInitialStressFile(const CAnalysisData& analysis, const SelfWeightState& state,
                            const std::string& path) {
    const std::string partial = path + ".partial";
    std::FILE* file = std::fopen(partial.c_str(), "wb");
    if (file == nullptr) StopOnUnopenedFile(partial);
    {
        TextBuffer out(file);
        const ModelFileHead head(analysis);
        head.AppendBlocks(out, 0);
        // A static state: displacement, no acceleration.
        const NodeMotionTable motion(state.displacement,
                                     std::vector<double>(state.displacement.size(), 0.0));
        head.AppendNodes(out, motion, 0);
        AppendModelRecords(out, analysis, state.points);
    }
    const bool failed = std::ferror(file) != 0;
    if (std::fclose(file) != 0 || failed) {
        RemoveFile(partial);
        StopOnOutputFault("cannot write " + partial);
    }
    if (std::rename(partial.c_str(), path.c_str()) != 0) {
        RemoveFile(partial);
        StopOnOutputFault("cannot rename " + partial + " to " + path);
    }
}
