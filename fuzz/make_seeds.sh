#!/usr/bin/env bash
# Writes the seed corpora of the fuzz targets from the built-in examples, with a built
# tervale-cli, into OUT/<target>/ (beside the hand-written seeds of fuzz/seeds/).
# Usage: fuzz/make_seeds.sh path/to/tervale-cli OUT
set -euo pipefail
cli=$(realpath "${1:?tervale-cli}")
here="$(cd "$(dirname "$0")" && pwd)"
seeds=${2:?output folder}
mkdir -p "$seeds"
ex() { # kind number target file
  mkdir -p "$seeds/$3"
  "$cli" example "$1" "$2" -o "$seeds/$3/$4" >/dev/null 2>&1 || echo "no example $1 $2" >&2
}
ex flash 1 flash_file example1.dat
ex flash 2 flash_file example2.dat
ex column 1 column_file example1.dat
# Result.dat of the first example solved: the case followed by its results.
run=$(mktemp -d)
"$cli" example column 1 -o "$run/case.dat" 2>/dev/null
(cd "$run" && "$cli" --data-dir . column case.dat >/dev/null 2>&1) || true
cp "$run/Result.dat" "$seeds/column_file/Result.dat" 2>/dev/null || echo "no column result" >&2
rm -rf "$run"
ex batch 1 batch_file example1.dat
ex batch 1 batch_state example1.dat
# A real converged state: the second example's run writes B_Calc_2.dat.
run=$(mktemp -d)
"$cli" example batch 2 -o "$run/case.dat" 2>/dev/null
(cd "$run" && "$cli" --data-dir . batch case.dat >/dev/null 2>&1) || true
cp "$run/B_Calc_2.dat" "$seeds/batch_state/B_Calc_2.dat" 2>/dev/null || echo "no converged batch state" >&2
rm -rf "$run"
ex vle 1 vle_file example1.dat
ex vle 2 vle_file example2.dat
ex purecomp 1 purecomp_json example1.json
ex unifac 1 unifac_json example1.json
ex unifac 2 unifac_json example2.json
ex antoine 1 antoine_json example1.json
# The record codec on its own reads the case files too.
mkdir -p "$seeds/field_reader"
cp "$seeds/flash_file/example1.dat" "$seeds/field_reader/flash1.dat"
cp "$seeds/vle_file/example1.dat" "$seeds/field_reader/vle1.dat"
# The property database's seed files: the head of each (header and first rows), as the whole
# files would slow every execution down.
mkdir -p "$seeds/seed_csv"
for f in "$here"/../data/property-seed/*.csv; do
  head -c 4096 "$f" > "$seeds/seed_csv/$(basename "$f")"
done
