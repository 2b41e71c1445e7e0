#!/usr/bin/env bash
# Runs every fuzz target of a build for N seconds from its seed corpus and prints one line of
# figures per target (also appended, with the date, to BUILD/results.md).
# Usage: fuzz/run.sh BUILD SECONDS [TARGET...]
# RUNS=N stops each target after N executions instead (SECONDS is then the upper bound);
# MAX_LEN=N sets the largest input (default 65536).
set -uo pipefail
build=${1:?build directory}
seconds=${2:-60}
shift 2 || true
here="$(cd "$(dirname "$0")" && pwd)"
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for b in "$build"/bin/fuzz_*; do targets+=("$(basename "$b")"); done
fi
limits=(-max_total_time="$seconds")
[ -n "${RUNS:-}" ] && limits+=(-runs="$RUNS")
status=0
echo "| target | seconds | executions | exec/s | coverage (cov/ft) | corpus | peak RSS MB | findings |" | tee -a "$build/results.md"
echo "|---|---|---|---|---|---|---|---|" | tee -a "$build/results.md"
for t in "${targets[@]}"; do
  corpus="$build/corpus/$t"
  mkdir -p "$corpus" "$build/artifacts/$t" "$build/logs"
  seeds=()
  for d in "$here/seeds/${t#fuzz_}" "$build/seeds/${t#fuzz_}"; do
    [ -d "$d" ] && seeds+=("$d")
  done
  # A log of its own per run: two runs of one target may go side by side.
  log="$build/logs/$t.$(date +%Y%m%d-%H%M%S).$$.log"
  start=$(date +%s)
  "$build/bin/$t" "${limits[@]}" -timeout=1 -rss_limit_mb=2048 -malloc_limit_mb=2048 \
    -max_len="${MAX_LEN:-65536}" -close_fd_mask=3 -print_final_stats=1 \
    -artifact_prefix="$build/artifacts/$t/" "$corpus" "${seeds[@]}" >"$log" 2>&1
  rc=$?
  elapsed=$(($(date +%s) - start))
  execs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | awk '{print $2}')
  rate=$(grep -o 'stat::average_exec_per_sec: *[0-9]*' "$log" | awk '{print $2}')
  cov=$(grep -E '^#[0-9]+' "$log" | tail -1 | grep -o 'cov: [0-9]* ft: [0-9]*' | tr -d 'a-z:' | awk '{print $1"/"$2}')
  rss=$(grep -o 'stat::peak_rss_mb: *[0-9]*' "$log" | awk '{print $2}')
  corp=$(ls "$corpus" | wc -l)
  findings="none"
  if [ $rc -ne 0 ]; then
    findings="exit $rc: $(grep -m1 -E 'ERROR|SUMMARY|timeout|out-of-memory' "$log" | cut -c1-80) (see $log)"
    status=1
  fi
  echo "| $t | $elapsed | ${execs:-?} | ${rate:-?} | ${cov:-?} | $corp | ${rss:-?} | $findings |" | tee -a "$build/results.md"
done
exit $status
