#!/usr/bin/env bash
# Installs the dependencies, builds everything and runs the whole test suite; then the suite once
# more under the sanitizers, and each fuzz target of the readers for a few seconds.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh
cd build
ctest --output-on-failure -j "$(nproc)" < /dev/null
# The report tool's tests, with Debian's python3 (it has numpy, matplotlib and meshio).
cd ..
/usr/bin/python3 -m pytest -q tests/python
scripts/test-sanitized.sh
scripts/fuzz.sh 3
