#!/usr/bin/env bash
# Builds everything with AddressSanitizer and UndefinedBehaviorSanitizer in a
# build folder of its own (build-sanitize/) and runs every test there. Any
# report from either sanitizer fails the run.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
flags="-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined"
cmake -S . -B build-sanitize -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined" >/dev/null
cmake --build build-sanitize -j"$(nproc)"
# Qt's own allocations live as long as the process: leaks at exit are Qt's,
# not the program's, so leak checking stays off.
export ASAN_OPTIONS="detect_leaks=0:abort_on_error=1"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
ctest --test-dir build-sanitize --output-on-failure -j"$(nproc)"
