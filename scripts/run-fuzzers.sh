#!/usr/bin/env bash
# Builds the libFuzzer harnesses (the `fuzz` preset, clang) and runs each for MINUTES minutes
# (default 10), starting from the committed seeds in fuzz/seeds. New inputs collect under
# build/fuzz/corpus/<reader>; a crash, leak or timeout leaves its input in build/fuzz/findings and
# makes the script fail. Usage: scripts/run-fuzzers.sh [MINUTES] [fuzzer name filter]
set -euo pipefail
cd "$(dirname "$0")/.."
minutes="${1:-10}"
filter="${2:-}"

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j2

findings=build/fuzz/findings
mkdir -p "$findings"
failed=()
for pair in xml_reader:xml effect_file:effect model_file:model font_file:font; do
  name="fuzz_${pair%%:*}"
  seeds="${pair##*:}"
  [[ -z "$filter" || "$name" == *"$filter"* ]] || continue
  corpus="build/fuzz/corpus/$seeds"
  mkdir -p "$corpus"
  echo "== $name: $minutes minute(s)"
  if ! "build/fuzz/fuzz/$name" -max_total_time=$((minutes * 60)) -rss_limit_mb=2048 \
      -max_len=8192 -timeout=10 -artifact_prefix="$findings/$name-" \
      "$corpus" "fuzz/seeds/$seeds" 2>"build/fuzz/$name.log"; then
    failed+=("$name")
    tail -n 40 "build/fuzz/$name.log"
  fi
  grep -E "^Done" "build/fuzz/$name.log" || true
done
if [[ ${#failed[@]} -gt 0 ]]; then
  echo "findings in: ${failed[*]} (inputs under $findings)"
  exit 1
fi
echo "no findings"
