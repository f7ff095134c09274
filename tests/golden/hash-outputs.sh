#!/usr/bin/env bash
# Runs the bundled example and the reference projects with a build of the program and prints one
# hash per output file, console stream and exit status, so that two builds can be compared:
#   tests/golden/hash-outputs.sh [build-folder] > hashes.txt
# Results must stay byte-identical across changes that do not mean to alter them; compare with
#   diff <(tests/golden/hash-outputs.sh build) tests/golden/reference-hashes.txt
set -euo pipefail
root="$(cd "$(dirname "$0")/../.." && pwd)"
build="$(cd "${1:-$root/build}" && pwd)"
program="${VARNEK_PROGRAM:-$build/varnek}"
# A fixed folder: the program prints the project path, so the console hashes depend on it.
work="${VARNEK_GOLDEN_FOLDER:-/tmp/varnek-golden}"
rm -rf "$work" && mkdir -p "$work"
trap 'rm -rf "$work"' EXIT

python3 "$root/tests/golden/make_projects.py" "$work"
cp -r "$root/examples/column" "$work/column"
printf '%s\n' "$work/column/" > "$work/column/config_VARNEK.txt"

for project in $(cd "$work" && ls); do
  dir="$work/$project"
  status=0
  (cd "$dir" && "$program" < /dev/null > "$dir/.stdout" 2> "$dir/.stderr") || status=$?
  echo "$project status $status"
  (cd "$dir" && sha256sum .stdout .stderr) | sed "s|  |  $project/|"
  # Every result file, in a fixed order; the many step files of the example as one hash.
  (cd "$dir" && find dyn output -type f 2>/dev/null | LC_ALL=C sort | xargs -r cat | sha256sum) |
    sed "s|  -|  $project/dyn+output|"
  (cd "$dir" && find dyn output -type f 2>/dev/null | wc -l | sed "s|^|$project files |")
  (cd "$dir" && ls a_end.dat 2>/dev/null | sed "s|^|$project |") || true
  (cd "$dir" && ls work_* 2>/dev/null | sed "s|^|$project left |") || true
done
