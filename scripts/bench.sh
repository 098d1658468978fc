#!/usr/bin/env bash
# Runs the benchmarks and prints their figures: the engine's walks and the junk walk
# against the plainest ones (in a prefix of their own, build/x86_64/bench-prefix; the junk
# benchmark also fills the junk result page's list, on a private X screen), rows into the
# scan page's list and its scan against lumenor-cli's, the scan page with every entry of
# the community's winapp2.ini shown (when a copy lies beside the sources), the shred job
# against the plainest
# overwrite of the same bytes, the browser database erases against the plainest SQL doing
# the same, then start-up time to a visible main window (tools/bench.sh).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" x86_64 lumenor-engine-bench lumenor-junk-bench lumenor-scan-page-bench lumenor-community-page-bench lumenor-shred-bench lumenor-rules-bench \
  lumenor-browserdb-bench lumenor-bench lumenor lumenor-cli >/dev/null
"$root/tools/wine/run-in-prefix.sh" "$root/build/x86_64/bench-prefix" \
  "$root/build/x86_64/bin/lumenor-engine-bench.exe" "$@"
xvfb-run -a -s "-screen 0 1280x1024x24" "$root/tools/wine/run-in-prefix.sh" "$root/build/x86_64/bench-prefix" \
  "$root/build/x86_64/bin/lumenor-junk-bench.exe"
xvfb-run -a -s "-screen 0 1280x1024x24" "$root/tools/wine/run-in-prefix.sh" "$root/build/x86_64/bench-prefix" \
  "$root/build/x86_64/bin/lumenor-scan-page-bench.exe"
xvfb-run -a -s "-screen 0 1280x1024x24" "$root/tools/wine/run-in-prefix.sh" "$root/build/x86_64/bench-prefix" \
  "$root/build/x86_64/bin/lumenor-community-page-bench.exe"
"$root/tools/wine/run-in-prefix.sh" "$root/build/x86_64/bench-prefix" \
  "$root/build/x86_64/bin/lumenor-shred-bench.exe"
"$root/tools/wine/run-in-prefix.sh" "$root/build/x86_64/bench-prefix" \
  "$root/build/x86_64/bin/lumenor-rules-bench.exe"
"$root/tools/wine/run-in-prefix.sh" "$root/build/x86_64/bench-prefix" \
  "$root/build/x86_64/bin/lumenor-browserdb-bench.exe"
"$root/tools/bench.sh" 5
