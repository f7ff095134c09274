#!/usr/bin/env bash
# Builds the fuzz targets of the readers (clang, with AddressSanitizer and
# UndefinedBehaviorSanitizer) in build-fuzz/ and runs each for the given seconds (default 60),
# two at a time:
#   scripts/fuzz.sh [seconds] [target ...]
# Each target starts from its seeds in fuzz/corpus/<target>/ and from what earlier runs found
# (build-fuzz/corpus/<target>/). A crash, a hang (one input running over 30 s of wall time, with
# room for a busy machine), a sanitizer report or a leak leaves its input
# in build-fuzz/artifacts/<target>/ and makes the script fail; the log is
# build-fuzz/logs/<target>.log.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
shift || true
jobs="${VARNEK_FUZZ_JOBS:-2}"

CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1" -DVARNEK_FUZZ=ON -DVARNEK_TESTS=OFF \
  -DVARNEK_BENCH=OFF >/dev/null
cmake --build build-fuzz --target varnek_fuzz

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  targets=($(cd fuzz/corpus && ls))
fi

# The targets' files lie in memory, in a folder of this run.
TMPDIR="$(mktemp -d "$( [ -d /dev/shm ] && echo /dev/shm || echo /tmp )/varnek-fuzz.XXXXXX")"
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT
export ASAN_OPTIONS="halt_on_error=1:detect_leaks=1"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"

run_target() {
  local target="$1" work="build-fuzz/corpus/$1" artifacts="build-fuzz/artifacts/$1/"
  mkdir -p "$work" "$artifacts" build-fuzz/logs
  # Standard output and error of the readers are closed (-close_fd_mask=3); the fuzzer's own
  # report still reaches the log.
  if "build-fuzz/fuzz/fuzz_$target" "$work" "fuzz/corpus/$target" -max_total_time="$seconds" \
      -max_len=8192 -timeout=30 -rss_limit_mb=2048 -close_fd_mask=3 -print_final_stats=1 \
      -artifact_prefix="$artifacts" > "build-fuzz/logs/$target.log" 2>&1; then
    echo "$target: $(grep -m1 -o 'number_of_executed_units: [0-9]*' "build-fuzz/logs/$target.log" |
      cut -d' ' -f2) executions, no finding"
  else
    echo "$target: FINDING, see build-fuzz/logs/$target.log and $artifacts"
    return 1
  fi
}

failed=0
running=0
for target in "${targets[@]}"; do
  if [ "$running" -ge "$jobs" ]; then
    wait -n || failed=1
    running=$((running - 1))
  fi
  run_target "$target" &
  running=$((running + 1))
done
while [ "$running" -gt 0 ]; do
  wait -n || failed=1
  running=$((running - 1))
done
exit "$failed"
