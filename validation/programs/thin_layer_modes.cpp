// thin_layer_modes: the horizontal wavenumbers that the thin-layer transmitting boundary keeps
// for a layered column, as the free-field program computes them, for the validation manual.
//
// Reads the column from standard input, one line each, the layers from the top down:
//   layer <thickness m> <Vs m/s> <Poisson's ratio> <density> <damping ratio> <sublayers>
//         linear|quadratic
//   base rigid | base dashpots <x> <y>
//   frequency <Hz>      (any number of them)
// and prints for each frequency one line per mode: the frequency, Re k and Im k (1/m) of the
// outgoing wave u(x) = phi e^{-i k x}. The damping enters as the analysis takes it,
// G* = G (1 - 2 h^2 + 2 i h sqrt(1 - h^2)). Bad input: a message and status 2.
#include <cmath>
#include <complex>
#include <cstdio>
#include <exception>
#include <iostream>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "fem/thin_layer.hpp"

namespace {

int Fail(int line, const std::string& what) {
    std::cerr << "thin_layer_modes: standard input:" << line << ": " << what << "\n";
    return 2;
}

}  // namespace

int main() {
    std::vector<ColumnLayer> layers;
    ColumnBase base;
    std::vector<double> frequencies;
    std::string text;
    for (int line = 1; std::getline(std::cin, text); ++line) {
        std::istringstream in(text);
        std::string word;
        if (!(in >> word)) continue;
        if (word == "layer") {
            double thickness, vs, nu, density, h;
            int count;
            std::string kind;
            if (!(in >> thickness >> vs >> nu >> density >> h >> count >> kind) || count < 1 ||
                (kind != "linear" && kind != "quadratic"))
                return Fail(line, "a layer needs thickness, Vs, Poisson's ratio, density, "
                                  "damping, sublayers and linear|quadratic");
            const double g = density * vs * vs;
            const std::complex<double> gStar(g * (1.0 - 2.0 * h * h),
                                             2.0 * g * h * std::sqrt(1.0 - h * h));
            const auto interpolation =
                kind == "linear" ? LayerInterpolation::Linear : LayerInterpolation::Quadratic;
            for (int i = 0; i < count; ++i)
                layers.push_back({thickness / count, gStar, nu, density, interpolation});
        } else if (word == "base") {
            std::string kind;
            in >> kind;
            if (kind == "rigid") {
                base = ColumnBase{};
            } else if (kind != "dashpots" || !(in >> base.dashpotX >> base.dashpotY)) {
                return Fail(line, "the base is \"rigid\" or \"dashpots <x> <y>\"");
            } else {
                base.rigid = false;
            }
        } else if (word == "frequency") {
            double hz;
            if (!(in >> hz) || !(hz > 0.0)) return Fail(line, "a frequency above 0 Hz");
            frequencies.push_back(hz);
        } else {
            return Fail(line, "unknown line \"" + word + "\"");
        }
    }
    try {
        const ThinLayerColumn column(layers, base);
        for (const double hz : frequencies)
            for (const std::complex<double>& k : column.Wavenumbers(2.0 * std::numbers::pi * hz))
                std::printf("%.10g %.17g %.17g\n", hz, k.real(), k.imag());
    } catch (const std::exception& e) {
        std::cerr << "thin_layer_modes: " << e.what() << "\n";
        return 2;
    }
    return 0;
}
