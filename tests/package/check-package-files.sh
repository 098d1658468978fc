#!/usr/bin/env bash
# Checks the portable zips and the checksums in build/package/ (scripts/package.sh):
# the four files named for the version in res/version.h, each zip holding exactly the two
# programs, README.txt and LICENSE (never a winapp2.ini), the programs built for the zip's architecture and
# carrying the application manifest, the texts with Windows line ends.
#   check-package-files.sh
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
out="$root/build/package"
failures=0
fail() {
  echo "FAIL: $*" >&2
  failures=$((failures + 1))
}

version=$(sed -n 's/^#define LUMENOR_VERSION_TEXT "\(.*\)"$/\1/p' "$root/res/version.h")
[ -n "$version" ] || { echo "FAIL: no version in res/version.h" >&2; exit 1; }
setup="Lumenor-$version-setup-x64.exe"
zips=("Lumenor-$version-portable-x64.zip" "Lumenor-$version-portable-x86.zip")

expected_listing=$(printf '%s\n' "$setup" "${zips[@]}" SHA256SUMS | sort)
actual_listing=$(cd "$out" && ls -1 | sort)
[ "$actual_listing" = "$expected_listing" ] || fail "build/package/ holds: $(echo $actual_listing)"

summed=$(cd "$out" && awk '{print $2}' SHA256SUMS | sort)
[ "$summed" = "$(printf '%s\n' "$setup" "${zips[@]}" | sort)" ] || fail "SHA256SUMS lists: $(echo $summed)"
(cd "$out" && sha256sum --quiet -c SHA256SUMS) || fail "SHA256SUMS does not match the files"

# The PE header's machine field: 8664 for x64, 014c for x86.
machine_of() {
  local offset
  offset=$(od -An -tu4 -j60 -N4 "$1" | tr -d ' ')
  od -An -tx2 -j$((offset + 4)) -N2 "$1" | tr -d ' '
}

unpacked=$(mktemp -d)
trap 'rm -rf "$unpacked"' EXIT
for zip in "${zips[@]}"; do
  case "$zip" in
    *-x64.zip) machine=8664 tools=x86_64 ;;
    *-x86.zip) machine=014c tools=i686 ;;
  esac
  # The community rules are the Winapp2 project's, under their own licence: a user
  # downloads them, no package holds them.
  if unzip -Z1 "$out/$zip" | grep -qi 'winapp2'; then fail "$zip holds a winapp2.ini"; fi
  entries=$(unzip -Z1 "$out/$zip" | sort | tr '\n' ' ')
  [ "$entries" = "LICENSE README.txt lumenor-cli.exe lumenor.exe " ] || fail "$zip holds: $entries"
  dir="$unpacked/${zip%.zip}"
  mkdir -p "$dir"
  unzip -q "$out/$zip" -d "$dir"
  for program in lumenor.exe lumenor-cli.exe; do
    [ "$(machine_of "$dir/$program")" = "$machine" ] || fail "$zip: $program is not for machine $machine"
    resources=$("$tools-w64-mingw32-windres" -i "$dir/$program" -O rc 2>/dev/null || true)
    for setting in 'Microsoft.Windows.Common-Controls' 'level=""asInvoker""' '>true</longPathAware>' \
      '>true</gdiScaling>' "The Lumenor authors. MIT License" "\"$version\""; do
      grep -qF -- "$setting" <<<"$resources" || fail "$zip: $program lacks $setting in its resources"
    done
  done
  for text in README.txt LICENSE; do
    lines=$(wc -l <"$dir/$text")
    crlf=$(grep -c $'\r$' "$dir/$text" || true)
    [ "$lines" -gt 0 ] && [ "$lines" = "$crlf" ] || fail "$zip: $text has lines without Windows line ends"
  done
  diff -q <(tr -d '\r' <"$dir/LICENSE") "$root/LICENSE" >/dev/null || fail "$zip: LICENSE differs from the repository's"
  grep -q "MIT License" "$dir/LICENSE" || fail "$zip: LICENSE is not the MIT licence"
  for phrase in "Lumenor $version" "setting.ini, beside lumenor.exe" "lumenor-cli scan" "lumenor-cli erase"; do
    grep -qF "$phrase" "$dir/README.txt" || fail "$zip: README.txt does not say \"$phrase\""
  done
done

if [ "$failures" -gt 0 ]; then
  echo "$failures failure(s)" >&2
  exit 1
fi
echo "package files: all checks passed"
