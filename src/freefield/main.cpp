// varnek-freefield: the free-field analysis of a VARNEK project. It writes the side-boundary
// files ("output_ff/") that the dynamic analysis reads for its side treatments 0 and 1.
#include <string>
#include <vector>

#include "freefield/free_field_program.hpp"

int main(int argc, char** argv) {
    return RunFreeFieldProgram(std::vector<std::string>(argv + 1, argv + argc));
}
