// VARNEK: two-dimensional seismic ground-response analysis in the frequency domain.
// The program takes no command line; it finds its project through "config_VARNEK.txt" in the
// current working directory.
#include "run/run_control.hpp"

int main() {
    return RunProgram();
}
