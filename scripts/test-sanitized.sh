#!/usr/bin/env bash
# Builds the program and the test suite with AddressSanitizer and UndefinedBehaviorSanitizer in
# build-sanitize/ and runs the suite there. A report ends the process that meets it
# (-fno-sanitize-recover=all) with an exit status of its own, 86, so that no test that expects a
# run to stop can take a report for that stop; any report fails the suite.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build-sanitize -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1" -DVARNEK_SANITIZE=ON -DVARNEK_BENCH=OFF >/dev/null
cmake --build build-sanitize
cd build-sanitize
export ASAN_OPTIONS="halt_on_error=1:detect_leaks=1:exitcode=86"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1:exitcode=86"
# The runs under mpirun are left to the release build: Open MPI's runtime keeps allocations to
# the end of the process, which LeakSanitizer reports as leaks of the program.
ctest --output-on-failure -j "$(nproc)" -E '^MpiRun\.' < /dev/null
