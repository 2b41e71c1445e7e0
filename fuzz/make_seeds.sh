#!/usr/bin/env bash
# Writes the seed corpora of the fuzz targets from the built-in examples, with a built
# tervale-cli. Usage: fuzz/make_seeds.sh path/to/tervale-cli
set -euo pipefail
cli=${1:?tervale-cli}
here="$(cd "$(dirname "$0")" && pwd)"
seeds="$here/seeds"
ex() { # kind number target file
  mkdir -p "$seeds/$3"
  "$cli" example "$1" "$2" -o "$seeds/$3/$4" 2>/dev/null || echo "no example $1 $2" >&2
}
ex flash 1 flash_file example1.dat
ex flash 2 flash_file example2.dat
ex column 1 column_file example1.dat
ex batch 1 batch_file example1.dat
ex batch 1 batch_state example1.dat
ex vle 1 vle_file example1.dat
ex vle 2 vle_file example2.dat
ex purecomp 1 purecomp_json example1.json
ex unifac 1 unifac_json example1.json
ex unifac 2 unifac_json example2.json
ex antoine 1 antoine_json example1.json
mkdir -p "$seeds/unifac_par" "$seeds/field_reader" "$seeds/display_format" "$seeds/jet_like"
cp "$here/../data/UNIFAC.PAR" "$seeds/unifac_par/UNIFAC.PAR"
mkdir -p "$seeds/unifac_json" "$seeds/antoine_json"
cp "$here"/../data/examples/unifac-*.json "$seeds/unifac_json/"
cp "$here"/../data/examples/antoine-*.json "$seeds/antoine_json/"
cp "$seeds/flash_file/example1.dat" "$seeds/field_reader/flash1.dat" 2>/dev/null || true
cp "$seeds/vle_file/example1.dat" "$seeds/field_reader/vle1.dat" 2>/dev/null || true
printf '%s' '##.#000' > "$seeds/display_format/pattern1"
printf '%s' ' ###0.000' > "$seeds/display_format/pattern2"
printf '%s' '#.#000000E+##' > "$seeds/display_format/pattern3"
printf '%s' 'Meth*' > "$seeds/jet_like/pattern1"
printf '%s' '[!a-c]?#*ol' > "$seeds/jet_like/pattern2"
