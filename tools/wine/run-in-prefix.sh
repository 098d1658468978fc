#!/usr/bin/env bash
# Runs a program of the build under Wine inside a Wine prefix of the build's own, never
# ~/.wine. The prefix has no drive for the Linux root ("z:" is removed before anything
# runs), and every link under drive_c that leads out of the prefix (Wine links the user's
# Desktop, Documents, ... to the host's home) is replaced by an empty folder, so a program
# can reach only the prefix's C: drive and the scratch drives mapped below. Programs are copied to C:\lumenor\ and run from there, so each finds its
# "setting.ini" and its companions inside the prefix.
#
#   run-in-prefix.sh PREFIX --prepare            create (once) and check the prefix
#   run-in-prefix.sh PREFIX PROGRAM.exe [ARG...] prepare, then run PROGRAM with ARGs
#
# Scratch drives: D: is a CD-ROM and E: a fixed disk, each a folder under
# PREFIX/scratch-drives/, for tests that need more drives than C:.
#
# With LUMENOR_LINK_FIXTURES=1, folder links are laid out afresh on E: before the program
# runs, for tests that check that links are never followed (Windows code inside Wine
# cannot make them):
#   E:\link-fixtures\clean\top-link         -> E:\link-fixtures\targets\top\
#   E:\link-fixtures\clean\sub\nested-link  -> E:\link-fixtures\targets\nested\
#   E:\RECYCLER\bin-link                    -> E:\link-fixtures\targets\bin\
#   E:\link-fixtures\files\file-link.txt    -> E:\link-fixtures\targets\file\canary.txt
# each target holding a file canary.txt.
#
# With LUMENOR_LOG_PIXELS=N, the prefix's screen has N dots per inch (96 is Windows at
# 100 %, 144 at 150 %). Give such a prefix a path of its own: the setting stays with it.
set -euo pipefail

if [ $# -lt 2 ]; then
  echo "usage: $0 PREFIX --prepare | PREFIX PROGRAM.exe [ARG...]" >&2
  exit 2
fi

prefix=$(realpath -m "$1")
shift
export WINEPREFIX="$prefix"
export WINEARCH=win64
export WINEDEBUG="${WINEDEBUG:--all}"
# No Mono or Gecko installers, no desktop menu entries.
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml,winemenubuilder.exe=}"

readonly ready_mark="$prefix/.lumenor-ready"
readonly scratch_drives=("d:cdrom" "e:hd")

create_prefix() {
  echo "run-in-prefix: creating Wine prefix $prefix (once; this takes a while)" >&2
  rm -rf "$prefix"
  mkdir -p "$prefix"
  wineboot --init >/dev/null 2>&1 || true
  wineserver --wait
  [ -d "$prefix/drive_c/windows" ] || { echo "run-in-prefix: wineboot did not create $prefix" >&2; exit 1; }
  seal_prefix
  # Keep Wine from re-running its set-up (which could map the Linux root again).
  printf 'disable' > "$prefix/.update-timestamp"

  local entry letter type
  for entry in "${scratch_drives[@]}"; do
    letter=${entry%%:*}
    type=${entry#*:}
    mkdir -p "$prefix/scratch-drives/$letter"
    ln -sfn "../scratch-drives/$letter" "$prefix/dosdevices/$letter:"
    wine reg add 'HKLM\Software\Wine\Drives' /v "$letter:" /d "$type" /f >/dev/null 2>&1
  done
  wineserver --kill >/dev/null 2>&1 || true
  wineserver --wait || true
  touch "$ready_mark"
}

# Removes every way out of the prefix: the drive for the Linux root, and the links Wine
# makes from the user's Desktop, Documents, Downloads, Music, Pictures, Videos and
# Templates to the host's home folder, each replaced by an empty folder of the prefix.
# Refuses to go on if any is left.
seal_prefix() {
  remove_root_drive
  replace_links_out_of_prefix
}

remove_root_drive() {
  local link target
  for link in "$prefix"/dosdevices/*; do
    [ -L "$link" ] || continue
    target=$(realpath -m "$link")
    if [ "$target" = "/" ]; then
      rm -f "$link"
    fi
  done
  if [ -e "$prefix/dosdevices/z:" ] || [ -L "$prefix/dosdevices/z:" ]; then
    echo "run-in-prefix: could not remove $prefix/dosdevices/z:" >&2
    exit 1
  fi
}

# Every symbolic link under drive_c whose target lies outside the prefix.
links_out_of_prefix() {
  local link target
  while IFS= read -r -d '' link; do
    target=$(realpath -m "$link")
    case "$target" in
      "$prefix" | "$prefix"/*) ;;
      *) printf '%s\0' "$link" ;;
    esac
  done < <(find "$prefix/drive_c" -type l -print0)
}

replace_links_out_of_prefix() {
  local link
  while IFS= read -r -d '' link; do
    rm -f "$link"  # removes the link, never what it points to
    mkdir -p "$link"
  done < <(links_out_of_prefix)
  if [ -n "$(links_out_of_prefix | tr -d '\0')" ]; then
    echo "run-in-prefix: links out of $prefix/drive_c are left:" >&2
    links_out_of_prefix | tr '\0' '\n' >&2
    exit 1
  fi
}

prepare() {
  mkdir -p "$(dirname "$prefix")"
  exec 9>"$prefix.lock"
  flock 9
  [ -f "$ready_mark" ] || create_prefix
  seal_prefix
  # Xvfb runs no window manager, and Wine waits two seconds for one each time it hides a
  # window that a window manager would look after; such windows are left to Wine here.
  if [ ! -f "$prefix/.lumenor-unmanaged" ]; then
    wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1
    wineserver --wait || true
    touch "$prefix/.lumenor-unmanaged"
  fi
  set_log_pixels
  exec 9>&-
}

# Dialog units grow with the screen's dots per inch, as on a Windows machine with a
# larger text scale: tests of the layout run in a prefix set to another resolution.
set_log_pixels() {
  local dpi=${LUMENOR_LOG_PIXELS:-}
  [ -n "$dpi" ] || return 0
  if ! [[ "$dpi" =~ ^[1-9][0-9]{1,2}$ ]]; then
    echo "run-in-prefix: LUMENOR_LOG_PIXELS must be a number of dots per inch, not '$dpi'" >&2
    exit 2
  fi
  [ -f "$prefix/.lumenor-log-pixels-$dpi" ] && return 0
  wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$dpi" /f >/dev/null 2>&1 ||
    { echo "run-in-prefix: could not set LogPixels in $prefix" >&2; exit 1; }
  wineserver --wait || true
  rm -f "$prefix"/.lumenor-log-pixels-*
  touch "$prefix/.lumenor-log-pixels-$dpi"
}

# Copies the program and the other executables beside it into C:\lumenor\. A changed
# file is replaced by rename, so a copy that is still running keeps its own image.
install_programs() {
  local source_dir=$1 target_dir=$2 file name
  mkdir -p "$target_dir"
  for file in "$source_dir"/*.exe; do
    name=$(basename "$file")
    if ! cmp -s "$file" "$target_dir/$name"; then
      cp "$file" "$target_dir/.$name.$$"
      mv -f "$target_dir/.$name.$$" "$target_dir/$name"
    fi
  done
}

# Links point at absolute paths so they stay valid wherever Wine looks from. Removing
# the old ones with rm never follows them.
lay_out_link_fixtures() {
  local drive="$prefix/scratch-drives/e" name
  rm -rf "$drive/link-fixtures" "$drive/RECYCLER"
  mkdir -p "$drive/link-fixtures/clean/sub" "$drive/link-fixtures/files" "$drive/RECYCLER"
  for name in top nested bin file; do
    mkdir -p "$drive/link-fixtures/targets/$name"
    echo "canary $name" > "$drive/link-fixtures/targets/$name/canary.txt"
  done
  ln -s "$drive/link-fixtures/targets/top" "$drive/link-fixtures/clean/top-link"
  ln -s "$drive/link-fixtures/targets/nested" "$drive/link-fixtures/clean/sub/nested-link"
  ln -s "$drive/link-fixtures/targets/bin" "$drive/RECYCLER/bin-link"
  ln -s "$drive/link-fixtures/targets/file/canary.txt" "$drive/link-fixtures/files/file-link.txt"
}

if [ "$1" = "--prepare" ]; then
  prepare
  exit 0
fi

program=$(realpath "$1")
shift
prepare
install_dir="$prefix/drive_c/lumenor"
install_programs "$(dirname "$program")" "$install_dir"
if [ "${LUMENOR_LINK_FIXTURES:-0}" = 1 ]; then
  lay_out_link_fixtures
fi
cd "$install_dir"
exec wine "C:\\lumenor\\$(basename "$program")" "$@"
