#!/usr/bin/env bash
# Runs lumenor.exe under Wine on a private Xvfb screen and saves one PNG per page and
# dialog, cut to its window, into build/<arch>/screenshots/:
#   96dpi-*   the splash, every tab, the help page and the notification-area menu (opened
#             with the cursor inside the window, so that it shows within it); the scan
#             workflow; the junk page's two sub-pages before and after a junk scan of a
#             seeded folder on E:; then the shredder with files listed, its question
#             before shredding, and mid-shred;
#   144dpi-*  the main pages again, in a prefix of their own set to 144 dots per inch,
#             where dialog units are half as large again;
#   styled-*  the main pages and the scan workflow again at 96, in a prefix of their own
#             with Wine's "Light" visual style on, as the common controls draw them on
#             Windows.
#   tools/screenshots.sh [x86_64]        (build first: scripts/build.sh x86_64)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
arch=${1:-x86_64}
build="$root/build/$arch"
out="$build/screenshots"
runner="$root/tools/wine/run-in-prefix.sh"

if ! command -v import >/dev/null || ! command -v Xvfb >/dev/null; then
  sudo_cmd=""
  [ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
  $sudo_cmd apt-get install -y -q --no-install-recommends imagemagick xvfb >/dev/null
fi
[ -x "$build/bin/lumenor.exe" ] && [ -x "$build/bin/lumenor-driver.exe" ] && [ -x "$build/bin/lumenor-demo-seed.exe" ] ||
  { echo "screenshots: build first (scripts/build.sh $arch)" >&2; exit 1; }

mkdir -p "$out"
rm -f "$out"/*.png
display=":$((90 + RANDOM % 50))"
Xvfb "$display" -screen 0 1600x1200x24 -nolisten tcp >/dev/null 2>&1 &
xvfb_pid=$!
export DISPLAY=$display
app_pid=""
prefix=""
cleanup() {
  if [ -n "$app_pid" ]; then kill "$app_pid" 2>/dev/null || true; fi
  if [ -n "$prefix" ]; then WINEPREFIX="$prefix" wineserver -k 2>/dev/null || true; fi
  kill "$xvfb_pid" 2>/dev/null || true
}
trap cleanup EXIT
sleep 1

drive() { "$runner" "$prefix" "$build/bin/lumenor-driver.exe" "$@"; }
# shot NAME [GEOMETRY]: the screen, or the part of it that GEOMETRY (WxH+X+Y) gives.
shot() {
  if [ -n "${2:-}" ]; then
    import -window root -crop "$2" +repage "$out/$1.png"
  else
    import -window root "$out/$1.png"
  fi
  echo "screenshots: $out/$1.png"
}
page() {
  drive "command:$2" sleep:600
  shot "$1" "$(drive geometry | tr -d '\r')"
}

# Turns on the visual style that Wine ships (what winecfg's "Light" theme sets); without
# one, Wine's common controls 6 draw without styles.
use_light_style() {
  local key='HKCU\Software\Microsoft\Windows\CurrentVersion\ThemeManager' setting name value
  for setting in 'ThemeActive=1' 'DllName=C:\windows\resources\themes\light\light.msstyles' \
    'ColorName=Blue' 'SizeName=NormalSize'; do
    name=${setting%%=*}
    value=${setting#*=}
    WINEPREFIX="$prefix" wine reg add "$key" /v "$name" /d "$value" /f >/dev/null 2>&1 ||
      { echo "screenshots: could not turn on the Light style in $prefix" >&2; exit 1; }
  done
  WINEPREFIX="$prefix" wineserver --wait || true
}

# The privacy scan as a user goes through it, on traces seeded in the prefix (and enough
# temporary files for the scan to be seen under way): the default selection scanned, the
# page mid-scan and with its results, the cookies to keep with the hosts that scan found,
# the erase dialog at its end, the one-click dialog.
seed_traces() {
  "$runner" "$prefix" "$build/bin/lumenor-demo-seed.exe" >/dev/null
  local temp
  for temp in "$prefix"/drive_c/users/*/Temp; do
    mkdir -p "$temp/screenshot-bulk"
    (cd "$temp/screenshot-bulk" && for dir in $(seq 1 40); do
      mkdir -p "d$dir" && (cd "d$dir" && touch $(seq -f "f%g.tmp" 1 500))
    done)
  done
}
scan_workflow() {
  local name=$1
  drive page-command:10000:15102 sleep:300 page-command:10000:15001 sleep:700
  shot "$name-01b-scan-running" "$(drive geometry | tr -d '\r')"
  drive sleep:6000
  shot "$name-01c-scan-results" "$(drive geometry | tr -d '\r')"
  drive page-command:10000:15004 sleep:1000
  shot "$name-01c2-cookies-to-keep" "$(drive dialog-geometry:10021 | tr -d '\r')"
  drive dialog-command:10021:2 sleep:300
  drive page-command:10000:15003 sleep:4000
  shot "$name-01d-erase-dialog" "$(drive dialog-geometry:1028 | tr -d '\r')"
  drive dialog-command:1028:1028 sleep:500
  drive command:20002 sleep:400 page-command:1044:1044 sleep:1200
  shot "$name-01e-one-click-dialog" "$(drive dialog-geometry:10010 | tr -d '\r')"
  drive dialog-command:10010:2 sleep:300 command:20000 sleep:300
}

# Files for the shredder to list, in the prefix's C:\shred-demo\: a large one first, so
# that the shred is still at it when the picture is taken.
shred_demo_files="holiday-video.mov tax-return-2023.pdf passwords.txt diary.docx bank-statements.xlsx"
seed_shred_demo() {
  local folder="$1/drive_c/shred-demo"
  rm -rf "$folder"
  mkdir -p "$folder"
  head -c $((384 * 1024 * 1024)) /dev/zero > "$folder/holiday-video.mov"
  head -c 182437 /dev/urandom > "$folder/tax-return-2023.pdf"
  printf 'bank: hunter2\nmail: correct horse battery staple\n' > "$folder/passwords.txt"
  head -c 48213 /dev/urandom > "$folder/diary.docx"
  head -c 96754 /dev/urandom > "$folder/bank-statements.xlsx"
}

# The shredder: the demo files handed over as another program would, the question before
# shredding, and the Thorough method at work; then Stop.
shredder_shots() {
  local dpi=$1 name steps=()
  seed_shred_demo "$prefix"
  for name in $shred_demo_files; do steps+=("copydata:C:\\shred-demo\\$name"); done
  drive command:20003 sleep:300 "${steps[@]}" sleep:600
  shot "${dpi}dpi-07-shredder-rows" "$(drive geometry | tr -d '\r')"
  drive click:1053 sleep:200 click:15009 sleep:800
  shot "${dpi}dpi-08-shred-question" "$(drive geometry | tr -d '\r')"
  drive answer-yes sleep:1500
  shot "${dpi}dpi-09-shredding" "$(drive geometry | tr -d '\r')"
  drive click:15009 sleep:1500
  rm -rf "$prefix/drive_c/shred-demo"
}

# A few junk files (and ordinary ones) for the junk page's scan, on the scratch disk E:.
seed_junk() {
  local folder="$prefix/scratch-drives/e/junk-demo"
  rm -rf "$folder"
  mkdir -p "$folder/Reports/old" "$folder/Build"
  for file in "~WRL0003.tmp" "Budget.xls.bak" "setup.\$\$\$" "notes.txt" "Reports/draft.TMP" "Reports/~report.doc" \
    "Reports/old/letter.ab~" "Reports/old/readme" "Build/app.tmp" "Build/cache.swp" "Build/main.c"; do
    head -c $((RANDOM % 200000 + 1000)) /dev/zero >"$folder/$file"
  done
}

# The junk page's result page before a scan, then both sub-pages after one.
junk_pages() {
  local dpi=$1
  seed_junk
  drive junk-tab:1 sleep:500
  shot "${dpi}dpi-02a-junk-results-before" "$(drive geometry | tr -d '\r')"
  drive junk-tab:0 sleep:300 'junk-scan:E:\junk-demo' sleep:1500
  shot "${dpi}dpi-02b-junk-results-after" "$(drive geometry | tr -d '\r')"
  drive junk-tab:0 sleep:500
  shot "${dpi}dpi-02c-junk-setup-after" "$(drive geometry | tr -d '\r')"
}

# One run of the program in prefix $1 at $2 dots per inch; with "all", also the splash,
# the help page, the menu and the shredder at work.
session() {
  prefix=$1
  local dpi=$2 what=$3
  export LUMENOR_LOG_PIXELS=$dpi
  "$runner" "$prefix" --prepare
  if [ "$what" = styled ]; then use_light_style; fi
  # A fresh settings file each time, so the window opens as on a first start.
  rm -f "$prefix/drive_c/lumenor/setting.ini"
  if [ "$what" != pages ]; then
    seed_traces
  fi
  "$runner" "$prefix" "$build/bin/lumenor.exe" &
  app_pid=$!
  if [ "$what" = all ]; then
    sleep 1.0
    shot "${dpi}dpi-00-splash" "$(drive splash-geometry | tr -d '\r')"
  fi
  drive wait sleep:800
  local name=${dpi}dpi
  if [ "$what" = styled ]; then name=styled; fi
  shot "$name-01-scan" "$(drive geometry | tr -d '\r')"
  if [ "$what" != pages ]; then
    scan_workflow "$name"
  fi
  page "$name-02-junk" 20001
  if [ "$what" = all ]; then
    junk_pages "$dpi"
  fi
  page "$name-03-shredder" 20003
  page "$name-04-settings" 20002
  page "$name-05-help" 20004
  if [ "$what" = all ]; then
    drive command:20000 sleep:400 tray-menu sleep:800
    shot "${dpi}dpi-06-tray-menu" "$(drive geometry | tr -d '\r')"
    drive escape sleep:300
    shredder_shots "$dpi"
  fi
  drive command:20007
  wait "$app_pid" || true
  app_pid=""
  WINEPREFIX="$prefix" wineserver -k 2>/dev/null || true
}

session "$build/screenshot-prefix" 96 all
session "$build/wineprefix-144dpi" 144 pages
session "$build/wineprefix-styled" 96 styled
