#!/usr/bin/env bash
# Caption latency through the real program with its windows up on a virtual X
# server: decoder pty in, sign pty out. 500 captions each: written at once
# 100 ms apart, written at a 1200-baud decoder's pace, and written back to
# back; then written at once 100 ms apart with the decoder and the sign on
# loopback TCP, and again on ptys with the web mirror on and 500 readers
# following every caption. The sign preview is open and follows every frame.
# Target: p99 under 5 ms; under 2 ms written at once 100 ms apart (on ptys, on
# TCP and with the readers), under 3 ms at 1200 baud.
set -euo pipefail
cd "$(dirname "$0")/.."
n="${1:-500}"
run() { xvfb-run -a -s "-screen 0 1280x1024x24" build/bench/bench_pty_latency build/zelvan21 "$n" "$@" --sign-preview; }
run 100 all
run 100 1200
run 0 all
run 100 all --tcp
run 100 all --readers=500
