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
# The program shows the project path on the console: the console is hashed with that folder
# replaced by a fixed word, so that any folder gives the same hashes.
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

python3 "$root/tests/golden/make_projects.py" "$work"
cp -r "$root/examples/column" "$work/column"
printf '%s\n' "$work/column/" > "$work/column/config_VARNEK.txt"

for project in $(cd "$work" && ls); do
  dir="$work/$project"
  status=0
  (cd "$dir" && "$program" < /dev/null > "$dir/.stdout" 2> "$dir/.stderr") || status=$?
  echo "$project status $status"
  for stream in stdout stderr; do
    sed "s|$work|WORK|g" "$dir/.$stream" | sha256sum | sed "s|  -|  $project/.$stream|"
  done
  # Every result file, in a fixed order; the many step files of the example as one hash.
  (cd "$dir" && find dyn output -type f 2>/dev/null | LC_ALL=C sort | xargs -r cat | sha256sum) |
    sed "s|  -|  $project/dyn+output|"
  (cd "$dir" && find dyn output -type f 2>/dev/null | wc -l | sed "s|^|$project files |")
  (cd "$dir" && ls a_end.dat 2>/dev/null | sed "s|^|$project |") || true
  (cd "$dir" && ls work_* 2>/dev/null | sed "s|^|$project left |") || true
done
