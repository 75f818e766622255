#!/usr/bin/env bash
# Configures and builds everything into build/ (or the folder given).
set -euo pipefail
cd "$(dirname "$0")/.."
dir="${1:-build}"
cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$dir" -j"$(nproc)"
