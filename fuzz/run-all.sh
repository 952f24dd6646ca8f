#!/usr/bin/env bash
# Runs every fuzz target of a libFuzzer build for a bounded time. New inputs and crashes stay under the
# build folder; a crash input worth keeping is copied to regressions/<name>/.
set -uo pipefail
build=${1:?build folder}
seconds=${2:-60}
here=$(cd "$(dirname "$0")" && pwd)
status=0
for source in "$here"/fuzz_*.cpp; do
  target=$(basename "$source" .cpp)
  name=${target#fuzz_}
  scratch="$build/fuzz-work/$name"
  mkdir -p "$scratch/corpus" "$scratch/artifacts"
  seeds=("$here/corpus/$name")
  [ -d "$here/regressions/$name" ] && seeds+=("$here/regressions/$name")
  echo "== $name: $seconds s"
  if ! "$build/fuzz/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
      -artifact_prefix="$scratch/artifacts/" "$scratch/corpus" "${seeds[@]}" 2>"$scratch/log"; then
    echo "!! $name failed; inputs in $scratch/artifacts, log $scratch/log"
    status=1
  fi
done
exit $status
