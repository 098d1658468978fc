#!/usr/bin/env bash
# Runs the benchmarks under Wine in a prefix of their own (build/x86_64/bench-prefix)
# and prints their figures.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" x86_64 lumenor-engine-bench >/dev/null
"$root/tools/wine/run-in-prefix.sh" "$root/build/x86_64/bench-prefix" "$root/build/x86_64/bin/lumenor-engine-bench.exe"
