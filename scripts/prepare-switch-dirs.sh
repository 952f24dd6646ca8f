#!/usr/bin/env bash
# The folders the program expects on the switch: session files and the CLI
# work folder. Off the switch they are made here. The session folder is the
# user's who serves the program (this one: make run starts lighttpd as it),
# 0700; the program refuses a folder of another user or one that group or
# others may write, and this script does not take over one someone else made.
set -euo pipefail
sudo=""
[ "$(id -u)" -ne 0 ] && command -v sudo >/dev/null && sudo="sudo"
session=/tmp/session
mkdir -m 0700 "$session" 2>/dev/null || true
if [ -L "$session" ] || [ ! -d "$session" ] || [ "$(stat -c %u "$session")" != "$(id -u)" ]; then
  echo "prepare-switch-dirs: $session is not a folder of $(id -un) ($(stat -c '%F of %U' "$session")); remove it first" >&2
  exit 1
fi
chmod 0700 "$session"
$sudo mkdir -p /mnt/application/quill/tmp
$sudo chmod 1777 /mnt/application/quill/tmp 2>/dev/null || true
