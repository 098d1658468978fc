#!/usr/bin/env bash
# Runs lumenor.exe under Wine on a private Xvfb screen, walks every tab, the help page
# and the notification-area menu, and saves a PNG of the screen after each step into
# build/<arch>/screenshots/.
#   tools/screenshots.sh [x86_64]        (build first: scripts/build.sh x86_64)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
arch=${1:-x86_64}
build="$root/build/$arch"
out="$build/screenshots"
runner="$root/tools/wine/run-in-prefix.sh"
prefix="$build/wineprefix"

if ! command -v import >/dev/null || ! command -v Xvfb >/dev/null; then
  sudo_cmd=""
  [ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
  $sudo_cmd apt-get install -y -q --no-install-recommends imagemagick xvfb >/dev/null
fi
[ -x "$build/bin/lumenor.exe" ] && [ -x "$build/bin/lumenor-driver.exe" ] ||
  { echo "screenshots: build first (scripts/build.sh $arch)" >&2; exit 1; }

mkdir -p "$out"
rm -f "$out"/*.png
display=":$((90 + RANDOM % 50))"
Xvfb "$display" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
xvfb_pid=$!
export DISPLAY=$display
app_pid=""
cleanup() {
  if [ -n "$app_pid" ]; then kill "$app_pid" 2>/dev/null || true; fi
  WINEPREFIX="$prefix" wineserver -k 2>/dev/null || true
  kill "$xvfb_pid" 2>/dev/null || true
}
trap cleanup EXIT
sleep 1

"$runner" "$prefix" --prepare
# A fresh settings file each time, so the window opens as on a first start.
rm -f "$prefix/drive_c/lumenor/setting.ini"

drive() { "$runner" "$prefix" "$build/bin/lumenor-driver.exe" "$@"; }
shot() { import -window root "$out/$1.png"; echo "screenshots: $out/$1.png"; }

"$runner" "$prefix" "$build/bin/lumenor.exe" &
app_pid=$!
sleep 1.0
shot 00-splash
drive wait sleep:800
shot 01-scan
drive command:20001 sleep:600
shot 02-junk
drive command:20003 sleep:600
shot 03-shredder
drive command:20002 sleep:600
shot 04-settings
drive command:20004 sleep:600
shot 05-help
drive command:20000 sleep:400 tray-menu sleep:800
shot 06-tray-menu
drive escape sleep:300 command:20007
wait "$app_pid" || true
app_pid=""
