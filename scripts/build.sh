#!/usr/bin/env bash
# Configures and builds the program, the tests and the benchmarks in build/ (Release).
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build
