#!/usr/bin/env bash
# Sets everything up and runs the whole test suite: the debug build, then the same suite under
# AddressSanitizer + UndefinedBehaviorSanitizer. Slow soak and fuzz runs carry their own labels
# and stay out of this default set.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh

presets=(debug sanitize)
[[ $# -gt 0 ]] && presets=("$@")
for preset in "${presets[@]}"; do
  echo "== $preset build"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
  echo "== $preset tests"
  ctest --preset "$preset" --label-exclude 'soak|fuzz' -j2
done
