#include "support/test_projects.hpp"

#include <cmath>
#include <complex>
#include <cstdio>
#include <map>
#include <numbers>
#include <sstream>

namespace {
template <typename... Args>
std::string Format(const char* format, Args... args) {
    char text[256];
    std::snprintf(text, sizeof text, format, args...);
    return text;
}
}  // namespace

void WriteMixedProject(const ProjectFolder& p, bool singleStep) {
    p.Write("Flag_VARNEK.inp", singleStep ? "20200101 500 1 1\n" : "20200101 500 1 0\n");
    p.Write("input_VARNEK.inp", "c.dat\nwave.csv\nnodes.dat\nelements.dat\nmat.dat\nbc.dat\n");
    p.Write("c.dat", "10\n0\n0.01\n0.05\n0.65\n3\n2\n");
    std::ostringstream wave;
    wave << "w,0.01,1\n";
    for (int k = 0; k <= 20; ++k) wave << k * 0.01 << "," << (k % 5) * 10.0 - 20.0 << "\n";
    p.Write("wave.csv", wave.str());
    p.Write("nodes.dat",
            "0 0\n1 0\n1 1\n0 1\n2 0\n2 1\n1.5 0\n2 0.5\n1.5 1\n1 0.5\n1.5 1.5\n1.25 1.25\n"
            "1.75 1.25\n");
    p.Write("elements.dat", "0 4 1 0 1 2 3\n1 8 1 1 4 5 2 6 7 8 9\n1 6 1 5 10 2 11 8 12\n");
    p.Write("mat.dat",
            "2\n5\n0.0019\n0.0019\n0\n80\n0.3\n0.03\n"
            "2\n0.0017\n0.0017\n0\n30\n0.4\n0.02\n3\n1e-6\n1e-4\n1e-2\n1\n0.8\n0.2\n2\n5\n15\n");
    p.Write("bc.dat", "0 2 0 0\n1 2 0 0\n4 2 0 0\n6 2 0 0\n");
    std::string stress = "---- stress ----\n";
    for (int i = 0; i < 4 + 9 + 7; ++i) stress += std::to_string(i + 1) + " -1 -2 -1 0.1 0 0\n";
    p.Write("output0.inp", stress);
}

void SideProject::Write(const ProjectFolder& folder) const {
    using Complex = std::complex<double>;
    std::map<std::string, std::string> files = {
        {"config_VARNEK.txt", folder.Root().string() + "/\n"},
        {"Flag_VARNEK.inp", Format("20200101 500 %d %d\n", equivalentLinear, singleStep)},
        {"input_VARNEK.inp",
         "constants.dat\nwave.csv\nnodes.dat\nelements.dat\nmaterials.dat\nboundary.dat\n"},
        {"constants.dat",
         Format("12\n0\n0.01\n0.05\n0.65\n%d\n%d\n", equivalentLinear ? 3 : 1, sideTreatment)},
        {"materials.dat",
         equivalentLinear ? "2\n5\n0.0018\n0.0018\n0\n50\n0.4\n0.03\n"
                            "2\n0.0017\n0.0017\n0\n30\n0.4\n0.02\n3\n1e-6\n1e-4\n1e-2\n1\n0.8\n"
                            "0.2\n2\n5\n15\n"
                          : "1\n5\n0.0018\n0.0018\n0\n50\n0.4\n0.03\n"},
        {"wave.csv", "wave,0,1\n"},
        {"output0.inp", "---- stress ----\n"},
        {"boundary.dat", Format("$VISCO 101 %d 1 0.5 0.01 0 5 10 5 %d %d %d\n", Node(1, 1),
                                Node(0, 1), Node(1, 1), Node(2, 1))},
        {"output_ff/RIGHTEmatrix.dat",
         Format("%d %d 0.125 -0.5\n", 2 * Node(2, 3), 2 * Node(2, 2))},
        {"output_ff/LEFTEmatrix.dat", Format("%d %d 0.25 0\n\n", 2 * Node(0, 2), 2 * Node(0, 2))}};
    for (int k = 0; k < 64; ++k)
        files["wave.csv"] +=
            Format("%.2f,%.6f\n", k * 0.01, 100.0 * std::sin(0.7 * k) * std::exp(-0.05 * k));
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kColumns; ++c) {
            files["nodes.dat"] += Format("%d %d\n", c, r);
            if (r == 0) files["boundary.dat"] += Format("%d 2 0 0\n", Node(c, 0));
            if (r + 1 == kRows || c + 1 == kColumns) continue;
            const int material = equivalentLinear && r + 2 == kRows ? 1 : 0;
            files["elements.dat"] += Format("%d 4 1 %d %d %d %d\n", material, Node(c, r),
                                            Node(c + 1, r), Node(c + 1, r + 1), Node(c, r + 1));
            for (int g = 0; g < 4; ++g)
                files["output0.inp"] += equivalentLinear ? "1 -3 -5 -3 0 0 0\n" : "1 0 0 0 0 0 0\n";
        }
    for (int r = 1; r < kRows; ++r)
        for (int side = 0; side < 2; ++side) {
            const int c = side == 0 ? kColumns - 1 : 0, node = Node(c, r);
            const int edges[3] = {Node(c, r - 1), node, r + 1 < kRows ? Node(c, r + 1) : -1};
            for (int d = 0; d < 2; ++d) {
                const Complex coefficient(d == 0 ? 0.3 : 0.6, d == 0 ? 0.02 : 0.0);
                files["boundary.dat"] += Format(
                    "$VISCO %d %d %d %.17g %.17g 0 5 10 5 %d %d %d\n", d == 1 ? 202 : 200 + side,
                    node, d, coefficient.real(), coefficient.imag(), edges[0], edges[1], edges[2]);
                for (int e = 0; e < 3 && edges[e] != -1 && sideTreatment == 0; ++e)
                    for (int i = 1; i < kLines; ++i) {
                        const Complex value = Complex(0.0, 2.0 * std::numbers::pi / 0.64 * i) *
                                              (coefficient * (e == 1 ? 10.0 : 5.0) / 30.0);
                        std::string& text = files[Format("output_ff/%cEMat%d.dat", "RL"[side], i)];
                        text += Format("%d %d %.17g %.17g\n", 2 * node + d, 2 * edges[e] + d,
                                       value.real(), value.imag());
                        if ((i + r + e) % 3 == 0)
                            text += Format("%d %d 0 0\n", 2 * node + d, 2 * edges[e] + 1 - d);
                    }
            }
            std::string& motion = files[Format("output_ff/%cFF_%d.dat", "RL"[side], r)];
            motion = std::to_string(node) + "\n";
            for (int i = 0; i < kLines; ++i)
                motion += Format("%.17g %.17g\n", 1.0 + 0.1 * r - 0.05 * i, 0.02 * i * (side == 0));
        }
    for (const auto& [name, text] : files) folder.Write(name, text);
}
