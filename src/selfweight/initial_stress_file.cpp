#include "selfweight/initial_stress_file.hpp"

#include <cstdio>

#include "base/output_file.hpp"
#include "base/platform.hpp"
#include "base/run_stop.hpp"
#include "results/model_head.hpp"
#include "results/node_motion.hpp"
#include "results/record_lines.hpp"
#include "results/text_buffer.hpp"

void WriteInitialStressFile(const CAnalysisData& analysis, const SelfWeightState& state,
                            const std::string& path) {
    const std::string partial = path + ".partial";
    // A stop while the file is written (no space, say) takes the partial file away with it.
    RemoveOnStop(partial);
    OutputFile file(partial, "wb");
    {
        TextBuffer out(&file);
        const ModelFileHead head(analysis);
        head.AppendBlocks(out, 0);
        // A static state: displacement, no acceleration.
        const NodeMotionTable motion(state.displacement,
                                     std::vector<double>(state.displacement.size(), 0.0));
        head.AppendNodes(out, motion, 0);
        AppendModelRecords(out, analysis, state.points);
    }
    file.Close();
    if (std::rename(partial.c_str(), path.c_str()) != 0) {
        RemoveFile(partial);
        StopOnOutputFault("cannot rename " + partial + " to " + path);
    }
}
