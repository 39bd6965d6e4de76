#!/usr/bin/env bash
# The web mirror under load, against the real program on the pty rig: 500
# readers on loopback, every one must get every caption (fan-out p99 under
# 50 ms); readers come and go 10,000 times (memory flat); a reader that stops
# reading is dropped and memory stays bounded. The sign's own latency with
# the 500 readers connected is the last run of pty_latency.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
build/bench/bench_mirror_load build/zelvan21 "${1:-500}" "${2:-200}" "${3:-10000}"
