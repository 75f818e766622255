#!/usr/bin/env bash
# Installs the Debian packages Lumivex builds, runs and tests with (only those missing).
set -euo pipefail
packages=(cmake g++ pkg-config make qt6-base-dev qt6-base-dev-tools libqt6opengl6-dev qt6-image-formats-plugins
  libsdl2-dev zlib1g-dev libsndfile1-dev libgl1-mesa-dev libgl1-mesa-dri libgtest-dev libbenchmark-dev
  xvfb xauth xdotool imagemagick x11-utils)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
fi
