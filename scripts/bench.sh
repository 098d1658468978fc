#!/usr/bin/env bash
# Runs the benchmarks and prints their figures: the engine's walks against the plainest
# ones (in a prefix of their own, build/x86_64/bench-prefix), then start-up time to a
# visible main window (tools/bench.sh).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" x86_64 lumenor-engine-bench lumenor-scan-page-bench lumenor-bench lumenor lumenor-cli >/dev/null
"$root/tools/wine/run-in-prefix.sh" "$root/build/x86_64/bench-prefix" \
  "$root/build/x86_64/bin/lumenor-engine-bench.exe" "$@"
xvfb-run -a -s "-screen 0 1280x1024x24" "$root/tools/wine/run-in-prefix.sh" "$root/build/x86_64/bench-prefix" \
  "$root/build/x86_64/bin/lumenor-scan-page-bench.exe"
"$root/tools/bench.sh" 5
