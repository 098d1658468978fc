#!/usr/bin/env bash
# Static checks of the C++ sources:
#   scripts/check.sh --format   clang-format in check mode over every C++ file of the repository
#   scripts/check.sh --tidy     clang-tidy with .clang-tidy over every program source, compiled as
#                               the x86_64 build compiles it (build first: scripts/build.sh x86_64)
#   scripts/check.sh --deep     the same with Clang's static analyzer as well (slow: about 17 s a
#                               file against 5; run it by hand before a release)
#   scripts/check.sh            --format, then --tidy
# Each fails on any finding. LUMENOR_TIDY_JOBS sets how many files are checked at once
# (every core unless told).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

format=false
tidy=false
extra_checks=""
case "${1:-}" in
  --format) format=true ;;
  --tidy) tidy=true ;;
  --deep) tidy=true; extra_checks="clang-analyzer-*" ;;
  "") format=true; tidy=true ;;
  *) echo "usage: scripts/check.sh [--format|--tidy|--deep]" >&2; exit 2 ;;
esac

if $format; then
  mapfile -t files < <(git ls-files '*.cpp' '*.h' | grep -v '^third_party/')
  clang-format --dry-run -Werror "${files[@]}"
  echo "check: ${#files[@]} files formatted as .clang-format says"
fi

if $tidy; then
  database="$root/build/x86_64/compile_commands.json"
  [ -f "$database" ] || { echo "check: no $database: build first (scripts/build.sh x86_64)" >&2; exit 2; }
  # Clang finds MinGW's C headers by itself, but not the C++ library of the posix-thread
  # compiler the build uses: hand it the folders that compiler searches.
  compiler=x86_64-w64-mingw32-g++-posix
  args=(--quiet -p "$root/build/x86_64" --extra-arg=--target=x86_64-w64-mingw32)
  while read -r folder; do
    args+=("--extra-arg=-isystem$folder")
  done < <(echo | "$compiler" -xc++ -E -v - 2>&1 | sed -n '/#include <...> search starts here:/,/End of search list/p' |
    sed -n 's/^ \(.*\/include\/c++.*\)$/\1/p')
  [ -n "$extra_checks" ] && args+=("--checks=$extra_checks")
  product='^(app|base|browserdb|catalogue|cli|controls|engine|junk|rules|scan|settings|shred|update|xml)/'
  mapfile -t sources < <(git ls-files '*.cpp' | grep -E "$product")
  jobs=${LUMENOR_TIDY_JOBS:-$(nproc)}
  # xargs ends with 123 when any file has a finding; each finding is printed as it comes.
  if ! printf '%s\n' "${sources[@]}" | xargs -P "$jobs" -n 1 clang-tidy "${args[@]}" 2>/dev/null; then
    echo "check: clang-tidy found the faults above" >&2
    exit 1
  fi
  echo "check: ${#sources[@]} program sources pass clang-tidy"
fi
