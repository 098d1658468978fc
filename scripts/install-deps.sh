#!/usr/bin/env bash
# Installs what building and testing Lumenor on Debian 12 needs: CMake and Ninja, the
# MinGW-w64 cross compilers (posix threading), GoogleTest's sources, nlohmann-json's
# headers, Wine and Xvfb, clang with libFuzzer and the sanitizers' runtimes (and
# llvm-symbolizer) for the native fuzz harnesses, clang-format and clang-tidy for the
# source checks, and what packaging needs: NSIS for the setup program, zip and unzip for
# the portable zips.
# Then fetches SQLite's source (third_party/sqlite/, which git ignores): Debian has no
# MinGW build of it, so it comes from the npm package better-sqlite3, which carries the
# official amalgamation, and is checked against the checksums in cmake/sqlite.sha256.
# Does nothing, and says nothing, when everything is already there.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

# The package whose deps/sqlite3/ holds SQLite 3.54.1. Changing it means new checksums.
sqlite_npm_package=better-sqlite3@13.2.0
sqlite_dir="$root/third_party/sqlite"
sqlite_checksums="$root/cmake/sqlite.sha256"

packages=(
  cmake ninja-build
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix binutils-mingw-w64
  googletest nlohmann-json3-dev
  wine wine64
  xvfb xauth
  clang libclang-rt-14-dev llvm
  clang-format clang-tidy
  nsis zip unzip
)

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
# npm may come from another Node.js package than Debian's (one that provides it), so the
# command is what counts.
command -v npm >/dev/null || missing+=(npm)

if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "install-deps: run as root or install sudo" >&2; exit 1; }
    sudo=sudo
  fi
  echo "install-deps: installing ${missing[*]}" >&2
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -qq
  $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

sqlite_in_place() {
  [ -f "$sqlite_dir/sqlite3.c" ] && [ -f "$sqlite_dir/sqlite3.h" ] &&
    (cd "$sqlite_dir" && sha256sum --check --quiet --strict "$sqlite_checksums" >/dev/null 2>&1)
}
sqlite_in_place && exit 0

echo "install-deps: fetching SQLite from npm ($sqlite_npm_package)" >&2
download=$(mktemp -d)
trap 'rm -rf "$download"' EXIT
if ! (cd "$download" && npm pack --quiet "$sqlite_npm_package" >npm.log 2>&1); then
  cat "$download/npm.log" >&2
  echo "install-deps: npm could not fetch $sqlite_npm_package" >&2
  exit 1
fi
tar -xzf "$download"/better-sqlite3-*.tgz -C "$download" package/deps/sqlite3/sqlite3.c package/deps/sqlite3/sqlite3.h
if ! (cd "$download/package/deps/sqlite3" && sha256sum --check --quiet --strict "$sqlite_checksums"); then
  echo "install-deps: SQLite's sources from $sqlite_npm_package do not match cmake/sqlite.sha256;" \
    "nothing was installed" >&2
  exit 1
fi
mkdir -p "$sqlite_dir"
mv "$download/package/deps/sqlite3/sqlite3.c" "$download/package/deps/sqlite3/sqlite3.h" "$sqlite_dir/"
