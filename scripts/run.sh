#!/usr/bin/env bash
# The program's main job from a fresh Debian 12 machine: builds lumenor-cli and runs it
# under Wine in the demo prefix build/x86_64/demo-prefix (no drive for the Linux root).
#   scripts/run.sh [lumenor-cli arguments]      (default: list)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" x86_64 lumenor-cli >/dev/null

[ $# -gt 0 ] || set -- list
exec "$root/tools/wine/run-in-prefix.sh" "$root/build/x86_64/demo-prefix" \
  "$root/build/x86_64/bin/lumenor-cli.exe" "$@"
