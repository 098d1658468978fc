#!/usr/bin/env bash
# The whole test suite from a fresh Debian 12 machine: installs what is missing, builds
# the 64-bit and 32-bit programs, and runs every test under Wine and Xvfb, in a Wine
# prefix under build/x86_64/ whose Linux-root drive (z:) is removed before any test runs.
# The package tests build the setup and the zips first (scripts/package.sh, as the
# CTest fixture package_build) and install the setup in that prefix. Then the parsers
# are fuzzed natively (scripts/fuzz.sh): every corpus replayed, every harness fuzzed for
# LUMENOR_FUZZ_SECONDS (30 unless told; 0 replays only). clang-format and clang-tidy check
# the sources (scripts/check.sh); any finding fails the run.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" x86_64
"$root/scripts/build.sh" i686   # compiled and linked; Wine here runs only 64-bit programs

"$root/scripts/check.sh" --format
# clang-tidy takes one core for about ten minutes: it runs beside the tests and the fuzzers,
# which leave the second core idle, and the suite fails at the end if it found anything.
tidy_log="$root/build/check-tidy.log"
LUMENOR_TIDY_JOBS=1 "$root/scripts/check.sh" --tidy >"$tidy_log" 2>&1 &
tidy=$!
trap 'kill "$tidy" 2>/dev/null || true' EXIT

cd "$root/build/x86_64"
xvfb-run -a -s "-screen 0 1280x1024x24" \
  ctest --output-on-failure --no-tests=error --timeout 600 "$@"

"$root/scripts/fuzz.sh" --all "${LUMENOR_FUZZ_SECONDS:-30}"

if ! wait "$tidy"; then
  cat "$tidy_log"
  exit 1
fi
tail -n 1 "$tidy_log"
