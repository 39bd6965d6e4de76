#!/usr/bin/env bash
# Builds the program and starts the demo: zelvan21 between a simulated decoder
# box and sign (two pseudo-terminals, a private settings file), with the sign
# preview open, the bundled news recording playing into the box and each
# caption the sign shows printed in this terminal. Without a display it all
# runs under a virtual X server. Arguments go to the demo (zelvan-demo --help).
#
#   bash scripts/run.sh --real-ports    the program alone, on the operator's own
#                                       ports and settings
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
if [ "${1:-}" = "--real-ports" ]; then
  shift
  cmd=(build/zelvan21 "$@")
else
  cmd=(build/zelvan-demo "$@")
fi
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  exec xvfb-run -a -s "-screen 0 1680x1050x24" "${cmd[@]}"
fi
exec "${cmd[@]}"
