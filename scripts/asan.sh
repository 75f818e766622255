#!/usr/bin/env bash
# Builds everything with AddressSanitizer and UndefinedBehaviorSanitizer and runs
# every test headless; any out-of-bounds access or undefined behaviour fails it.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build-asan -DLUMIVEX_ASAN=ON -DLUMIVEX_BUILD_BENCH=OFF -DCMAKE_BUILD_TYPE=Debug >/dev/null
cmake --build build-asan -j"$(nproc)"
export SDL_AUDIODRIVER=dummy QT_QPA_PLATFORM=xcb
export ASAN_OPTIONS="detect_leaks=0" UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
xvfb-run -a -s "-screen 0 1280x1024x24" ctest --test-dir build-asan --output-on-failure -j2 --timeout 600
