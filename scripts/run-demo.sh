#!/usr/bin/env bash
# Sets up, builds the release preset and runs the demo game with game/ as the working directory.
# Without a display it runs headless (SDL's offscreen driver) for 600 frames and exits; without a
# sound device OpenAL mixes into its null backend. Extra arguments go to grindle (see --help).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release

args=("$@")
if [[ -z "${DISPLAY:-}" && -z "${WAYLAND_DISPLAY:-}" ]]; then
  export SDL_VIDEODRIVER="${SDL_VIDEODRIVER:-offscreen}"
  if [[ " ${args[*]} " != *" --frames "* ]]; then
    args=(--frames 600 "${args[@]}")
  fi
fi
pulse_socket="${XDG_RUNTIME_DIR:-/nonexistent}/pulse/native"
if [[ ! -e /dev/snd && -z "${PULSE_SERVER:-}" && ! -S "$pulse_socket" ]]; then
  export ALSOFT_DRIVERS="${ALSOFT_DRIVERS:-null}"
fi

cd game
exec ../build/release/bin/grindle "${args[@]}"
