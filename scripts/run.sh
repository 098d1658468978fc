#!/usr/bin/env bash
# The program's main job from a fresh Debian 12 machine: builds lumenor-cli, seeds the
# demo Wine prefix (build/x86_64/demo-prefix, no drive for the Linux root) with a
# realistic set of traces, and scans every item there.
#   scripts/run.sh                   seed, then: lumenor-cli scan --all
#   scripts/run.sh ARGUMENTS...      seed, then: lumenor-cli ARGUMENTS (erase --all, list, ...)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
prefix="$root/build/x86_64/demo-prefix"
bin="$root/build/x86_64/bin"

"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" x86_64 lumenor-cli lumenor-demo-seed >/dev/null

"$root/tools/wine/run-in-prefix.sh" "$prefix" "$bin/lumenor-demo-seed.exe"
[ $# -gt 0 ] || set -- scan --all
exec "$root/tools/wine/run-in-prefix.sh" "$prefix" "$bin/lumenor-cli.exe" "$@"
