#!/usr/bin/env bash
# How many captions of each recorded sample (tests/data/*.scc) read the same
# through this program's decoder as through FFmpeg's caption decoder, with the
# decoder as it is by default ("faithful") and with EDM leaving the write
# position alone ("broadcast"). A caption is compared on its letters and
# digits only. The two lists are matched in order as their longest common
# subsequence, so a caption missing on one side doesn't shift the rest.
# Installs Debian's ffmpeg when it is missing: only this comparison uses it.
#
# With --program the recordings also go through the real program, from a
# decoder pty to a sign pty, and the captions are read off the sign (about a
# minute for the news recording, each mode).
#
#   bench/compare_ffmpeg.sh [--program]
set -euo pipefail
cd "$(dirname "$0")/.."
program=false
[ "${1:-}" = --program ] && program=true
for tool in build/bench/flipcaptions build/bench/signcaptions build/zelvan21; do
  [ -x "$tool" ] || { echo "build first: cmake --build build (missing $tool)" >&2; exit 1; }
done
if ! command -v ffmpeg >/dev/null; then
  apt-get update -qq >/dev/null
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq ffmpeg >/dev/null
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# One caption a line, letters and digits only; empty captions dropped.
alnum() { LC_ALL=C tr -cd 'A-Za-z0-9\n' | grep -v '^$' || true; }
# The text of each SRT entry on one line, markup and placement tags removed.
srtCaptions() {
  tr -d '\r' | sed -e 's/<[^>]*>//g' -e 's/{[^}]*}//g' -e 's/\\[hNn]/ /g' |
    awk 'BEGIN { RS = ""; FS = "\n" } { t = ""; for (i = 3; i <= NF; i++) t = t " " $i; print t }'
}
agree() {
  diff -d --unchanged-line-format='%L' --old-line-format='' --new-line-format='' "$1" "$2" |
    wc -l || true
}

report() {
  printf '%-26s %-26s %4d of %4d agree (this decoder shows %d)\n' "$1" "$2" \
    "$(agree "$work/ffmpeg" "$3")" "$total" "$(wc -l <"$3")"
}

printf '%-26s %-26s %s\n' file mode "captions that agree with ffmpeg"
for scc in tests/data/*.scc; do
  name=$(basename "$scc")
  ffmpeg -v error -f scc -i "$scc" -f srt - | srtCaptions | alnum >"$work/ffmpeg"
  total=$(wc -l <"$work/ffmpeg")
  for mode in faithful broadcast; do
    flag=() ini=""
    [ "$mode" = broadcast ] && flag=(--broadcast) ini=$'[L21Decoder]\nEdmKeepsPosition=True\n'
    build/bench/flipcaptions "${flag[@]}" "$scc" | cut -f2 | alnum >"$work/$mode"
    report "$name" "$mode" "$work/$mode"
    if $program; then
      build/bench/signcaptions build/zelvan21 "$scc" "$ini" | alnum >"$work/sign-$mode"
      report "$name" "$mode, program to sign" "$work/sign-$mode"
    fi
  done
done
