#!/usr/bin/env bash
# Builds everything and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
ctest --test-dir build --output-on-failure -j"$(nproc)"
