#!/usr/bin/env bash
# Processor use of the program reading captions from video in real time, and
# whether the sign gets them byte for byte as from a decoder box: 1080p30 H.264
# in MP4 and MPEG-2 in a transport stream (decoded for their A/53 data), and a
# 608 caption track in MOV (read as packets). The videos are made from the
# first SECONDS (default 40) of the bundled news recording, with a moving
# picture at 6 Mbit/s. Targets: H.264 under 25% of one core, the 608 track
# under 2%.
#
#   bench/video_cpu.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-40}
for tool in build/bench/videoplay build/zelvan21; do
  [ -x "$tool" ] || { echo "build first: cmake --build build (missing $tool)" >&2; exit 1; }
done
rec=tests/data/news-2018-12-17-popon.scc
status=0
for kind in mp4 ts mov; do
  build/bench/videoplay build/zelvan21 "$rec" "$kind" 1920 1080 "$seconds" || status=1
done
exit "$status"
