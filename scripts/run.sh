#!/usr/bin/env bash
# Builds the program and starts it. Without a display it runs under a virtual X server.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  exec xvfb-run -a -s "-screen 0 1280x1024x24" build/zelvan21
fi
exec build/zelvan21
