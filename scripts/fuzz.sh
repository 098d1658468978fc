#!/usr/bin/env bash
# Fuzzes the program's parsers and matchers natively (fuzz/): builds the harnesses with
# clang, libFuzzer, AddressSanitizer and UndefinedBehaviorSanitizer into build/fuzz/, then
#   scripts/fuzz.sh NAME [SECONDS]   fuzzes one harness (600 s unless told); a finding is
#                                    saved into fuzz/corpus/NAME/, where CI replays it
#   scripts/fuzz.sh --all [SECONDS]  replays every harness's corpus, then fuzzes each for
#                                    SECONDS (30 unless told; 0 replays only); fails on
#                                    any finding
#   scripts/fuzz.sh --list           the harnesses' names
# What the fuzzer finds to be new is kept in build/fuzz/work/NAME/ for the next run; the
# seed corpora in the repository stay small and are only ever added to by hand or by a
# finding.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="$root/build/fuzz"

usage() {
  echo "usage: scripts/fuzz.sh NAME [SECONDS] | --all [SECONDS] | --list" >&2
  exit 2
}
[ $# -ge 1 ] || usage
mode=$1
seconds=${2:-}
if [ -n "$seconds" ] && ! [[ "$seconds" =~ ^[0-9]+$ ]]; then usage; fi

# shellcheck disable=SC2086
cmake -S "$root/fuzz" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ ${LUMENOR_CMAKE_ARGS:-} >/dev/null
cmake --build "$build" --parallel "$(nproc)" >/dev/null
mapfile -t harnesses < "$build/fuzzers.txt"

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

# Runs every file of the harness's corpus once; false when any of them fails.
replay() {
  local name=$1 corpus="$root/fuzz/corpus/$1"
  [ -d "$corpus" ] || return 0
  local files=()
  mapfile -t files < <(find "$corpus" -type f | sort)
  [ ${#files[@]} -gt 0 ] || return 0
  "$build/bin/$name" "${files[@]}" >"$build/logs/$name.replay.log" 2>&1
}

# Fuzzes the harness for $2 seconds, findings into $3; false on a finding.
fuzz_for() {
  local name=$1 time=$2 findings=$3
  local work="$build/work/$name" options=()
  mkdir -p "$work" "$findings"
  [ -f "$root/fuzz/dictionaries/$name.dict" ] && options+=("-dict=$root/fuzz/dictionaries/$name.dict")
  "$build/bin/$name" "${options[@]}" -max_total_time="$time" -timeout=10 -rss_limit_mb=2048 \
    -artifact_prefix="$findings/" "$work" "$root/fuzz/corpus/$name" >"$build/logs/$name.fuzz.log" 2>&1
}

mkdir -p "$build/logs"
case "$mode" in
  --list)
    printf '%s\n' "${harnesses[@]}"
    ;;
  --all)
    seconds=${seconds:-30}
    failed=()
    for name in "${harnesses[@]}"; do
      if ! replay "$name"; then
        echo "fuzz: $name fails on its corpus (build/fuzz/logs/$name.replay.log):" >&2
        grep -E "property broken|ERROR|runtime error|Running:" "$build/logs/$name.replay.log" | tail -5 >&2
        failed+=("$name")
        continue
      fi
      rm -rf "$build/findings/$name"
      if [ "$seconds" -eq 0 ]; then
        echo "fuzz: $name replays its corpus cleanly"
      elif ! fuzz_for "$name" "$seconds" "$build/findings/$name"; then
        echo "fuzz: $name found a fault (build/fuzz/logs/$name.fuzz.log); the input is in build/fuzz/findings/$name/:" >&2
        grep -E "property broken|ERROR|runtime error" "$build/logs/$name.fuzz.log" | head -5 >&2
        echo "  fix it, and add the input to fuzz/corpus/$name/ so that every run replays it" >&2
        failed+=("$name")
      else
        echo "fuzz: $name clean after ${seconds}s ($(grep -Eo 'Done [0-9]+ runs' "$build/logs/$name.fuzz.log" | head -1))"
      fi
    done
    if [ ${#failed[@]} -gt 0 ]; then
      echo "fuzz: findings in ${failed[*]}" >&2
      exit 1
    fi
    ;;
  -*)
    usage
    ;;
  *)
    printf '%s\n' "${harnesses[@]}" | grep -qx -- "$mode" || { echo "fuzz: no harness '$mode' (scripts/fuzz.sh --list)" >&2; exit 2; }
    name=$mode
    seconds=${seconds:-600}
    replay "$name" || { echo "fuzz: $name fails on its corpus: build/fuzz/logs/$name.replay.log" >&2; exit 1; }
    findings="$build/findings/$name"
    rm -rf "$findings"
    if fuzz_for "$name" "$seconds" "$findings"; then
      echo "fuzz: $name clean after ${seconds}s ($(grep -Eo 'Done [0-9]+ runs' "$build/logs/$name.fuzz.log" | head -1))"
      exit 0
    fi
    mkdir -p "$root/fuzz/corpus/$name"
    for finding in "$findings"/*; do
      [ -f "$finding" ] || continue
      cp "$finding" "$root/fuzz/corpus/$name/"
      echo "fuzz: finding saved as fuzz/corpus/$name/$(basename "$finding")" >&2
    done
    grep -E "property broken|ERROR|runtime error" "$build/logs/$name.fuzz.log" | head -5 >&2
    echo "fuzz: log in build/fuzz/logs/$name.fuzz.log" >&2
    exit 1
    ;;
esac
