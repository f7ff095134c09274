// VARNEK: two-dimensional seismic ground-response analysis in the frequency domain.
// The program takes no command line; it finds its project through "config_VARNEK.txt" in the
// current working directory. Started by an MPI launcher, it is one rank of a job that shares
// the frequency lines of the analysis.
#include "base/ranks.hpp"
#include "run/run_control.hpp"

int main(int argc, char** argv) {
    ranks::Start(&argc, &argv);
    const int status = RunProgram();
    ranks::Finish();
    return status;
}
