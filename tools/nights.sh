#!/usr/bin/env bash
# Runs unattended nights in virtual time, one seed after the other, at low priority.
#   tools/nights.sh [count] [first seed]     100 nights from behind the last one done
#   tools/nights.sh 1 4711                   one night again
# VELORN_PRESET chooses the build (release; asan is slower and sees more). The last seed that went well stands
# in build/nights/last. Stops at a failing night, whose terminal and log are then in build/nights/output.
set -euo pipefail
cd "$(dirname "$0")/.."
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros
preset=${VELORN_PRESET:-release}
folder=build/nights
mkdir -p "$folder"
count=${1:-100}
first=${2:-$(($(cat "$folder/last" 2>/dev/null || echo 0) + 1))}
case $count$first in
  *[!0-9]*) echo "usage: $0 [count] [first seed]" >&2; exit 2 ;;
esac

[ -d "build/$preset" ] || cmake --preset "$preset" >"$folder/build" || { cat "$folder/build"; exit 1; }
cmake --build --preset "$preset" --target logic_tests >"$folder/build" 2>&1 || { cat "$folder/build"; exit 1; }

begun=$(date +%s)
result=0
VELORN_NIGHTS=$count VELORN_NIGHT_SEED=$first nice -n 19 "build/$preset/tests/logic_tests" \
  --gtest_filter='ALongSeries.*' 2>&1 | tee "$folder/output" | while IFS= read -r line; do
  case $line in
    "night "*" good") seed=${line#night }; echo "${seed% good}" >"$folder/last" ;;
    "night "*) echo "$line" ;;
  esac
done || result=$?
seconds=$(($(date +%s) - begun))
good=$(grep -ac '^night [0-9]* good$' "$folder/output" || true)
echo "$good nights in $seconds s: $(awk -v n="$good" -v s="$seconds" 'BEGIN { printf "%.2f", n / (s > 0 ? s : 1) }') a second"
if [ "$result" != 0 ] || [ "$good" != "$count" ]; then
  echo "night $((first + good)) failed; its terminal and log are in $folder/output. Again: $0 1 $((first + good))" >&2
  exit 1
fi
