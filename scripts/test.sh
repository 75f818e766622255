#!/usr/bin/env bash
# Sets up, builds and runs every test headless: Xvfb for the windows and OpenGL,
# SDL's dummy audio driver for sound.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/build.sh build-test
export SDL_AUDIODRIVER=dummy
export QT_QPA_PLATFORM=xcb
xvfb-run -a -s "-screen 0 1280x1024x24" ctest --test-dir build-test --output-on-failure -j2 --timeout 300
