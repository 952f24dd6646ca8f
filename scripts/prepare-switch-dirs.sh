#!/usr/bin/env bash
# The folders the program expects on the switch: session files and the CLI
# work folder. Off the switch they are made here.
set -euo pipefail
sudo=""
[ "$(id -u)" -ne 0 ] && command -v sudo >/dev/null && sudo="sudo"
$sudo mkdir -p /tmp/session /mnt/application/quill/tmp
$sudo chmod 1777 /tmp/session /mnt/application/quill/tmp 2>/dev/null || true
