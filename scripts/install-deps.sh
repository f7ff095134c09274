#!/usr/bin/env bash
# Installs every build and test dependency from Debian's packages.
# Idempotent: when everything is there already it only checks and returns.
set -euo pipefail
# clang, its runtime (libFuzzer and the sanitizers) and its OpenMP build the fuzz targets.
packages=(g++ cmake ninja-build libboost-dev libfftw3-dev libsuitesparse-dev libopenblas-dev
          libgtest-dev libgmock-dev liblapack-dev clang libclang-rt-14-dev libomp-dev
          libopenmpi-dev openmpi-bin python3-numpy python3-matplotlib python3-meshio python3-pytest)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi
SUDO=""
[ "$(id -u)" -eq 0 ] || SUDO=sudo
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
