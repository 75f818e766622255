#!/usr/bin/env bash
# Installs the build into a scratch prefix, then builds a C host against the
# installed header and library with pkg-config and with find_package, and runs it.
set -euo pipefail
build="$1"; source="$2"
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null
libdir=$(dirname "$(find "$prefix" -name 'liblumivex.so' | head -n 1)")
export PKG_CONFIG_PATH="$libdir/pkgconfig"
cc -std=c11 -Wall -Werror "$source/consumer.c" $(pkg-config --cflags --libs lumivex) -o "$prefix/consumer"
LD_LIBRARY_PATH="$libdir" "$prefix/consumer"
mkdir -p "$prefix/cmake-host"
cat > "$prefix/cmake-host/CMakeLists.txt" <<CM
cmake_minimum_required(VERSION 3.16)
project(consumer C)
find_package(Lumivex REQUIRED)
add_executable(consumer $source/consumer.c)
target_link_libraries(consumer Lumivex::lumivex)
CM
cmake -S "$prefix/cmake-host" -B "$prefix/cmake-build" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$prefix/cmake-build" >/dev/null
LD_LIBRARY_PATH="$libdir" "$prefix/cmake-build/consumer"
nm -D --defined-only "$libdir/liblumivex.so" | awk '$2 == "T" {print $3}' | sort > "$prefix/exports"
expected="BuildBlitterTable KSAssert KSDisplayPlacard KSExecute KSGetMouse KSGetOutputPath KSHeadsUpAlert KSInit KSSetFrameRate KSSetFreezePath KSSetHardwareEnvironCRCs KSSetPathFileType KSSetProxyType KSSetVideoDimensions KSSetVideoDisplayDimensions KSTerm LVHandshake"
actual=$(tr '\n' ' ' < "$prefix/exports" | sed 's/ $//')
if [ "$actual" != "$expected" ]; then
  echo "exports differ:"; echo " expected: $expected"; echo " actual:   $actual"; exit 1
fi
echo "installed library, header, pkg-config and CMake package work; exports are exactly the public ones"
