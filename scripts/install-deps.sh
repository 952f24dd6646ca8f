#!/usr/bin/env bash
# Installs what building, testing and serving need, from Debian's packages,
# when it is not there yet.
set -euo pipefail

packages=(g++ cmake make python3 libcjson-dev libgtest-dev lighttpd curl)
# "fuzz": what `make fuzz` needs besides, clang and its libFuzzer runtime.
[ "${1:-}" = "fuzz" ] && packages+=(clang-14 libclang-rt-14-dev)
missing=()
for p in "${packages[@]}"; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "installing: ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "need root to install: ${missing[*]}" >&2; exit 1; }
  sudo="sudo"
fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -q
$sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
