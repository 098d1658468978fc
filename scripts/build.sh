#!/usr/bin/env bash
# Configures and builds Lumenor for one Windows target with MinGW-w64.
#   scripts/build.sh [x86_64|i686] [CMAKE-TARGET...]   (default x86_64, all) into build/<arch>/
# Extra CMake settings can be passed in LUMENOR_CMAKE_ARGS.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
target=${1:-x86_64}
[ $# -gt 0 ] && shift
case "$target" in
  x86_64|i686) ;;
  *) echo "build: unknown target '$target' (x86_64 or i686)" >&2; exit 2 ;;
esac
build_dir="$root/build/$target"

# shellcheck disable=SC2086
cmake -S "$root" -B "$build_dir" -G Ninja \
  -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-mingw-$target.cmake" \
  -DCMAKE_BUILD_TYPE=Release \
  -DLUMENOR_WARNINGS_AS_ERRORS=ON \
  ${LUMENOR_CMAKE_ARGS:-} >/dev/null
targets=()
for name in "$@"; do targets+=(--target "$name"); done
cmake --build "$build_dir" --parallel "$(nproc)" "${targets[@]}"
