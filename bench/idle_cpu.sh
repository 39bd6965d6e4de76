#!/usr/bin/env bash
# Processor use of the program with capture running and no input: starts it
# (offscreen, fresh settings, so it captures on the line-21 serial filter),
# lets the splash go, then reads its CPU time from /proc over 10 seconds.
# Target: under 2% of one core.
set -euo pipefail
bin=${1:-build/zelvan21}
cfg=$(mktemp -d)
trap 'kill "$pid" 2>/dev/null || true; rm -rf "$cfg"' EXIT
QT_QPA_PLATFORM=offscreen XDG_CONFIG_HOME="$cfg" "$bin" 2>/dev/null &
pid=$!
sleep 7
ticks() { awk '{print $14 + $15}' "/proc/$pid/stat"; }
hz=$(getconf CLK_TCK)
t0=$(ticks); s0=$(date +%s.%N)
sleep 10
t1=$(ticks); s1=$(date +%s.%N)
awk -v t="$((t1 - t0))" -v hz="$hz" -v s0="$s0" -v s1="$s1" \
  'BEGIN { printf "idle capture: %.2f%% of one core over %.1f s\n", 100 * t / hz / (s1 - s0), s1 - s0 }'
