#!/usr/bin/env bash
# The program with the timecode board filter selected and the board quiet:
# starts it offscreen with fresh settings and a simulated board whose
# recording has an hour between its two words, lets it settle, then reads
# over 10 seconds from /proc its processor time and its voluntary context
# switches. The capture loop sleeps once a turn while it waits for the board,
# so each switch is one turn at least: the second figure is a floor for the
# polls a second.
# Targets: under 2% of one core; at least 200 polls a second.
set -euo pipefail
bin=${1:-build/zelvan21}
cfg=$(mktemp -d)
trap 'kill "$pid" "$signpid" 2>/dev/null || true; rm -rf "$cfg"' EXIT
mkdir -p "$cfg/Zelvan21"
# The sign: a pseudo-terminal whose frames are read and dropped, so the
# display's port opens and no message box waits for an operator.
python3 -c '
import os, pty, sys
m, s = pty.openpty()
print(os.ttyname(s), flush=True)
while True:
    os.read(m, 4096)
' >"$cfg/sign" &
signpid=$!
while [ ! -s "$cfg/sign" ]; do sleep 0.1; done
printf 'Scenarist_SCC V1.0\n\n00:00:00:00\t942c\n\n01:00:00:00\t942c\n' >"$cfg/quiet.scc"
printf '[Devices]\nCOM2=%s\n[General]\nInputFilterType=2\n[Board]\nRecording=%s\n' \
  "$(cat "$cfg/sign")" "$cfg/quiet.scc" >"$cfg/Zelvan21/Zelvan21.ini"
QT_QPA_PLATFORM=offscreen XDG_CONFIG_HOME="$cfg" "$bin" --no-splash 2>/dev/null &
pid=$!
sleep 3
ticks() { awk '{print $14 + $15}' "/proc/$pid/stat"; }
switches() { awk '/^voluntary_ctxt_switches/ {print $2}' "/proc/$pid/status"; }
hz=$(getconf CLK_TCK)
t0=$(ticks); c0=$(switches); s0=$(date +%s.%N)
sleep 10
t1=$(ticks); c1=$(switches); s1=$(date +%s.%N)
awk -v t="$((t1 - t0))" -v c="$((c1 - c0))" -v hz="$hz" -v s0="$s0" -v s1="$s1" 'BEGIN {
  printf "board selected, quiet: %.2f%% of one core over %.1f s\n", 100 * t / hz / (s1 - s0), s1 - s0
  printf "board polls: at least %.0f a second\n", c / (s1 - s0) }'
