#!/usr/bin/env bash
# Installs what building and testing Lumenor on Debian 12 needs: CMake and Ninja, the
# MinGW-w64 cross compilers (posix threading), GoogleTest's sources, Wine and Xvfb, clang
# with libFuzzer and the sanitizers' runtimes (and llvm-symbolizer) for the native fuzz
# harnesses, and what packaging needs: NSIS for the setup program, zip and unzip.
# Does nothing when everything is already there.
set -euo pipefail

packages=(
  cmake ninja-build
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix binutils-mingw-w64
  googletest
  wine wine64
  xvfb xauth
  clang libclang-rt-14-dev llvm
  nsis zip unzip
)

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "install-deps: run as root or install sudo" >&2; exit 1; }
  sudo=sudo
fi
echo "install-deps: installing ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
