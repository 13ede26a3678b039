#!/usr/bin/env bash
# Installs every Debian package Grindle needs to build, test and run. Idempotent: when everything
# is already present it prints nothing and touches nothing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config git
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  libsdl2-dev libepoxy-dev libegl-dev libgl-dev libegl-mesa0 libgl1-mesa-dri libstb-dev libglm-dev
  fonts-dejavu-core
  libbullet-dev liblua5.2-dev lua5.2
  libopenal-dev libopenal1 libsndfile1-dev
  libassimp-dev
  xvfb xauth
  clang libclang-rt-14-dev
)

missing=()
for p in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
  [[ "$status" == "install ok installed" ]] || missing+=("$p")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "setup: installing ${missing[*]}"
sudo_cmd=()
[[ $(id -u) -eq 0 ]] || sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
