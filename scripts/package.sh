#!/usr/bin/env bash
# Builds what users download, into build/package/, for the version in res/version.h:
#   Lumenor-<version>-setup-x64.exe     per-user setup of the 64-bit programs (NSIS)
#   Lumenor-<version>-portable-x64.zip  lumenor.exe, lumenor-cli.exe, README.txt, LICENSE
#   Lumenor-<version>-portable-x86.zip  the same, 32-bit
#   SHA256SUMS                          their checksums, for sha256sum -c
# Works on a fresh Debian 12 machine: installs what is missing and builds both targets
# (only the two programs) first.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
out="$root/build/package"

"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" x86_64 lumenor lumenor-cli >/dev/null
"$root/scripts/build.sh" i686 lumenor lumenor-cli >/dev/null

version=$(sed -n 's/^#define LUMENOR_VERSION_TEXT "\(.*\)"$/\1/p' "$root/res/version.h")
if ! [[ "$version" =~ ^[0-9]+\.[0-9]+\.[0-9]+\.[0-9]+$ ]]; then
  echo "package: no version a.b.c.d in res/version.h (found '$version')" >&2
  exit 1
fi

# Every file in the packages carries the time of the last commit, so that packaging the
# same build twice gives the same zips: strip (through BFD) writes it into the programs'
# headers instead of the time of day, and touch sets it on every file.
epoch=${SOURCE_DATE_EPOCH:-$(git -C "$root" log -1 --format=%ct 2>/dev/null || date +%s)}
export SOURCE_DATE_EPOCH=$epoch TZ=UTC

staging=$(mktemp -d)
trap 'rm -rf "$staging"' EXIT

# stage ARCH DIR: the two programs of build/ARCH without their symbols, and the two texts
# with Windows line ends (Notepad before Windows 10 shows Unix ones as one long line).
stage() {
  local arch=$1 dir=$2 program
  mkdir -p "$dir"
  for program in lumenor.exe lumenor-cli.exe; do
    "$arch-w64-mingw32-strip" -o "$dir/$program" "$root/build/$arch/bin/$program"
  done
  sed -e "s/@VERSION@/$version/" -e 's/$/\r/' "$root/package/README.txt" >"$dir/README.txt"
  sed -e 's/$/\r/' "$root/LICENSE" >"$dir/LICENSE"
  touch -d "@$epoch" "$dir"/*
}

# zip_folder DIR ZIP: the files of DIR at the top of ZIP, without extra attributes.
zip_folder() {
  (cd "$1" && zip -q -X -9 "$2" lumenor.exe lumenor-cli.exe README.txt LICENSE)
}

rm -rf "$out"
mkdir -p "$out"
stage x86_64 "$staging/x64"
stage i686 "$staging/x86"

setup="Lumenor-$version-setup-x64.exe"
zip_folder "$staging/x64" "$out/Lumenor-$version-portable-x64.zip"
zip_folder "$staging/x86" "$out/Lumenor-$version-portable-x86.zip"
makensis -V2 -INPUTCHARSET UTF8 \
  -DVERSION="$version" \
  -DSTAGE_DIR="$staging/x64" \
  -DICON_FILE="$root/res/art/main.ico" \
  -DOUT_FILE="$out/$setup" \
  "$root/package/lumenor.nsi" >&2

(cd "$out" && sha256sum "$setup" "Lumenor-$version-portable-x64.zip" "Lumenor-$version-portable-x86.zip" >SHA256SUMS)
echo "package: $out"
ls -l "$out" | tail -n +2
