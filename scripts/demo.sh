#!/usr/bin/env bash
# A short demonstration of the command line, for `make run` where the desktop program is not built.
set -euo pipefail
bin=${1:-build/bin}
out=$(mktemp -d)
echo "Tervale $("$bin/tervale-cli" --version) - command-line demonstration (files in $out)"
if "$bin/tervale-cli" example flash 1 -o "$out/flash.dat" >/dev/null 2>&1; then
  "$bin/tervale-cli" flash "$out/flash.dat" --calc flash --temp 90
else
  "$bin/tervale-cli" --help
fi
