#!/usr/bin/env bash
# Sets up, builds and starts a sample host: the CHIP-8 emulator on its bundled
# two-player game (default), or `scripts/run.sh testcard`.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/build.sh build
case "${1:-chip8}" in
  testcard) exec build/examples/testcard/lumivex-testcard ;;
  chip8)
    if [ -x build/examples/chip8/lumivex-chip8 ]; then
      rom=$(ls examples/chip8/games/*.ch8 2>/dev/null | head -n 1)
      exec build/examples/chip8/lumivex-chip8 ${rom:+"$rom"}
    fi
    exec build/examples/testcard/lumivex-testcard ;;
  *) echo "usage: scripts/run.sh [chip8|testcard]" >&2; exit 2 ;;
esac
