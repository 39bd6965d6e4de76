#!/usr/bin/env bash
# The whole news recording written into the decoder's pty as fast as the line
# takes it, through the real program with its windows up on a virtual X
# server; the sign's bytes must equal what the logic alone sends. Target: the
# 59-minute recording through in under 3 seconds.
set -euo pipefail
cd "$(dirname "$0")/.."
xvfb-run -a -s "-screen 0 1280x1024x24" build/bench/bench_fast_sender build/zelvan21 "$@"
