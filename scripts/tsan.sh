#!/usr/bin/env bash
# Builds with ThreadSanitizer and runs the tests of the frame slots, the blitting
# thread, the frame loop and the sound ring, which share memory between threads.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build-tsan -DLUMIVEX_TSAN=ON -DLUMIVEX_BUILD_EXAMPLES=OFF -DLUMIVEX_BUILD_BENCH=OFF \
  -DCMAKE_BUILD_TYPE=Debug >/dev/null
cmake --build build-tsan -j"$(nproc)" --target test_render test_shell test_sound
export TSAN_OPTIONS="halt_on_error=1" QT_QPA_PLATFORM=offscreen SDL_AUDIODRIVER=dummy
build-tsan/tests/video/test_render
build-tsan/tests/shell/test_shell
build-tsan/tests/sound/test_sound
