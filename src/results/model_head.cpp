#include "results/model_head.hpp"

namespace {

// The material block holds no real properties: the post-processor's format wants one fixed
// elastic record per material and four spare numbers.
void AppendMaterials(TextBuffer& out, int64_t materialCount) {
    out.Text("---- material constant ----\n").Integer(materialCount + 4).Char('\n');
    for (int64_t k = 1; k <= materialCount + 4; ++k) out.Integer(k).Text(" 2\n");
    for (int64_t k = 0; k < materialCount; ++k) out.Text("Elastic\n1.0000000\n0.0\n0.0\n0.0\n");
    // "Non" has no line end of its own: the first value follows on the same line.
    for (int k = 0; k < 4; ++k) out.Text("Non0.0000000\n0.0000000\n0.0000000\n0.0000000\n");
}

void AppendElements(TextBuffer& out, const std::vector<CElement>& elements) {
    out.Text("---- ie jelm ll ----\n");
    for (size_t e = 0; e < elements.size(); ++e) {
        const std::vector<int>& nodes = elements[e].nodes;
        const size_t n = nodes.size();
        if (n != 4 && n != 6 && n != 8) continue;  // no layout: the number is skipped
        out.Integer(static_cast<int64_t>(e) + 1).Char(' ').Integer(static_cast<int64_t>(n));
        out.Text(" 1 1");
        for (int node : nodes) out.Char(' ').Integer(int64_t{node} + 1);
        if (n == 4) out.Text(" 0 0 0 0");
        if (n == 6) out.Text(" 0 0");
        out.Text(" 1.00000\n");
    }
}

std::string Flat(const TextBuffer& text) {
    return std::string(text.View());
}

}  // namespace

int WaveStepCount(const CAnalysisData& analysis) {
    return analysis.seismicWaves.empty() ? 0 : analysis.SampleCount();
}

ModelFileHead::ModelFileHead(const CAnalysisData& analysis) {
    TextBuffer leading;
    leading.Text(" a--- ne np npar ----\n004\n");
    leading.Integer(static_cast<int64_t>(analysis.elements.size())).Char(' ');
    leading.Integer(static_cast<int64_t>(analysis.nodes.size())).Text(" 1\n");
    leading.Text("---- nstep0 nstep ite_limit tol ----\n");
    leading_ = Flat(leading);

    TextBuffer tail;
    tail.Char(' ').Integer(WaveStepCount(analysis)).Char(' ').Integer(analysis.iterationLimit);
    tail.Char(' ').Scientific(analysis.tolerance).Char('\n');
    stepsTail_ = Flat(tail);

    TextBuffer trailing;
    AppendMaterials(trailing, static_cast<int64_t>(analysis.materials.size()));
    trailing.Text("---- couple analysis data ----\n0.37e-07\n1.0000\n");
    AppendElements(trailing, analysis.elements);
    trailing.Text("---- node   x   y ----\n");
    trailing_ = Flat(trailing);

    TextBuffer nodes;
    nodeEnds_.reserve(analysis.nodes.size());
    for (size_t i = 0; i < analysis.nodes.size(); ++i) {
        nodes.Integer(static_cast<int64_t>(i) + 1).Char(' ').Fixed(analysis.nodes[i].x, 4);
        nodes.Char(' ').Fixed(analysis.nodes[i].y, 4).Char(' ');
        nodeEnds_.push_back(nodes.View().size());
    }
    nodeText_ = Flat(nodes);
}

void ModelFileHead::AppendBlocks(TextBuffer& out, int64_t firstValue) const {
    out.Text(leading_).Integer(firstValue).Text(stepsTail_).Text(trailing_);
}

void ModelFileHead::AppendNodes(TextBuffer& out, const NodeMotionTable& motion,
                                uint64_t step) const {
    size_t begin = 0;
    for (size_t i = 0; i < nodeEnds_.size(); ++i) {
        const NodeMotion m = motion.At(i, step);
        out.Text(std::string_view(nodeText_).substr(begin, nodeEnds_[i] - begin));
        out.Fixed(m.dispX, 4).Char(' ').Fixed(m.dispY, 4).Text(" 0.0000 0.0000 ");
        out.Fixed(m.accX * 100.0, 4).Char(' ').Fixed(m.accY * 100.0, 4).Text(" \n");
        begin = nodeEnds_[i];
    }
}
