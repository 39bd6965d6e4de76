#!/usr/bin/env bash
# Caption latency through the real program with its windows up on a virtual X
# server: decoder pty in, sign pty out, 500 captions 100 ms apart, then 500
# back to back. Target: p99 under 5 ms.
set -euo pipefail
cd "$(dirname "$0")/.."
for gap in 100 0; do
  xvfb-run -a -s "-screen 0 1280x1024x24" build/bench/bench_pty_latency build/zelvan21 "${1:-500}" "$gap"
done
