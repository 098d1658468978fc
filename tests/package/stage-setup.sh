#!/usr/bin/env bash
# Builds the packages from the current sources (scripts/package.sh) and copies the setup
# program into the test prefix as C:\lumenor-setup\<name>, where installer_tests runs it
# (the prefix has no drive for the Linux root, so a program inside cannot reach build/).
#   stage-setup.sh PREFIX
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
prefix=${1:?usage: stage-setup.sh PREFIX}

"$root/scripts/package.sh" >/dev/null
target="$prefix/drive_c/lumenor-setup"
rm -rf "$target"
mkdir -p "$target"
setups=("$root"/build/package/Lumenor-*-setup-x64.exe)
if [ ${#setups[@]} -ne 1 ] || [ ! -f "${setups[0]}" ]; then
  echo "stage-setup: expected one setup program in build/package/, found: ${setups[*]}" >&2
  exit 1
fi
cp "${setups[0]}" "$target/"
echo "stage-setup: C:\\lumenor-setup\\$(basename "${setups[0]}")"
