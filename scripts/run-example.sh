#!/usr/bin/env bash
# Runs the bundled example project (examples/column) with build/varnek, after
# build/varnek-selfweight has made its initial stresses (output0.inp), tells where the results are
# and draws their report (scripts/varnek-report). The project is copied into a working folder
# first, so that the repository stays clean:
#   scripts/run-example.sh [working-folder]        (default: build/example-run)
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
program="$root/build/varnek"
selfweight="$root/build/varnek-selfweight"
if [ ! -x "$program" ] || [ ! -x "$selfweight" ]; then
  echo "build/varnek or build/varnek-selfweight is missing: run scripts/build.sh first" >&2
  exit 1
fi
work="$(mkdir -p "${1:-$root/build/example-run}" && cd "${1:-$root/build/example-run}" && pwd)"
project="$work/column/"
rm -rf "$project" "$work/a_start.dat" "$work/a_end.dat"
cp -r "$root/examples/column" "$work/"
# The program finds its project through the first line of config_VARNEK.txt in its working
# directory: the folder prefix, with its trailing "/".
printf '%s\n' "$project" > "$work/config_VARNEK.txt"

cd "$work"
# The self-weight analysis of the level column (geostatic stresses) replaces the copied
# output0.inp; the dynamic analysis starts from it.
"$selfweight" --method k0 < /dev/null
start=$(date +%s)
status=0
"$program" < /dev/null || status=$?
seconds=$(( $(date +%s) - start ))

if [ "$status" -ne 0 ] || [ ! -e "$work/a_end.dat" ]; then
  echo "The analysis did not finish (exit status $status); see the messages above." >&2
  exit 1
fi
steps=$(find "$project/output" -name 'output[0-9]*.inp' | wc -l)
echo
echo "Finished in ${seconds} s. Results in $project:"
echo "  output/output0.inp .. output$((steps - 1)).inp  result model of each time step ($(du -sh "$project/output" | cut -f1) in all)"
echo "  output/output_max.inp  largest absolute values over the record"
echo "  dyn/acc<n>.dat         acceleration history of node n (m/s2)"
echo "  dyn/femsig<n>.dat      stress history of element n (kPa, compression positive)"

echo
# The pictures, the summary page and the ParaView files of the example.
"$root/scripts/varnek-report" "$work"
