#!/usr/bin/env bash
# Start-up time of lumenor.exe to a visible main window, less the splash's one-second
# pause, under Wine on a private Xvfb screen.   tools/bench.sh [RUNS]   (build first)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="$root/build/x86_64"
[ -x "$build/bin/lumenor-bench.exe" ] || { echo "bench: build first (scripts/build.sh x86_64)" >&2; exit 1; }
rm -f "$build/wineprefix/drive_c/lumenor/setting.ini"
xvfb-run -a -s "-screen 0 1024x768x24" \
  "$root/tools/wine/run-in-prefix.sh" "$build/wineprefix" "$build/bin/lumenor-bench.exe" "${1:-5}"
