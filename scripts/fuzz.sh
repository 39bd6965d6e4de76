#!/usr/bin/env bash
# Builds the libFuzzer targets in build-fuzz/ (clang, AddressSanitizer and
# UndefinedBehaviorSanitizer) and runs each in turn for SECONDS (default 60),
# starting from its seeds in fuzz/corpus/<target>/. Prints, per target, the
# executions, the executions per second and the findings. What a run learns
# stays in build-fuzz/corpus/<target>/; an input that fails is kept in
# build-fuzz/findings/<target>/ and its log in build-fuzz/logs/.
# Usage: scripts/fuzz.sh [SECONDS] [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
shift || true

cmake -S . -B build-fuzz -DZELVAN_FUZZ=ON -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build-fuzz -j"$(nproc)" >/dev/null

if (($# == 0)); then
  set -- $(cd fuzz && ls *.cpp | grep -v '^replay\.cpp$' | sed 's/\.cpp$//')
fi

# A value from libFuzzer's closing statistics.
stat() { sed -n "s/^stat::$1: *//p" "$2" | tail -1; }

printf '%-16s %12s %8s %10s %9s\n' target executions exec/s exec/cpu-s findings
failed=0
for name in "$@"; do
  work=build-fuzz/corpus/$name findings=build-fuzz/findings/$name
  log=build-fuzz/logs/$name.log
  mkdir -p "$work" "$findings" build-fuzz/logs
  before=$(find "$findings" -type f | wc -l)
  seeds=()
  [[ -d fuzz/corpus/$name ]] && seeds=("fuzz/corpus/$name")
  # The file readers take whole files; the other targets read a list of steps,
  # of which 256 bytes hold about a hundred: longer inputs only slow each run.
  case $name in
    captionscript | rtf) max_len=4096 ;;
    *) max_len=256 ;;
  esac
  # The processor time too: on a shared machine the clock says little.
  cpu=$({ TIMEFORMAT=%U+%S; time build-fuzz/fuzz/fuzz_"$name" -max_total_time="$seconds" \
    -max_len="$max_len" -print_final_stats=1 -artifact_prefix="$findings/" \
    "$work" "${seeds[@]}" >"$log" 2>&1 || true; } 2>&1)
  # libFuzzer stops at the first input that fails.
  found=$(($(find "$findings" -type f | wc -l) - before))
  ((found == 0)) || failed=1
  runs=$(stat number_of_executed_units "$log")
  printf '%-16s %12s %8s %10s %9s\n' "$name" "$runs" "$(stat average_exec_per_sec "$log")" \
    "$(awk "BEGIN { printf \"%d\", ${runs:-0} / ($cpu + 0.001) }")" "$found"
done
exit "$failed"
