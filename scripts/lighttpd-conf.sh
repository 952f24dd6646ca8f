#!/usr/bin/env bash
# Writes a lighttpd configuration for the CGI:
#   lighttpd-conf.sh CGI RUNDIR PORT SOCKET [BIND [INTERPRETER]]
# INTERPRETER is a command line that starts the CGI, as an emulator does for a
# cross-built one.
set -euo pipefail
cgi=$(readlink -f "$1") rundir=$(readlink -f "$2") port=$3 socket=$4 bind=${5:-127.0.0.1}
mkdir -p "$rundir/www"
interpreter=""
if [ -n "${6:-}" ]; then
  # lighttpd runs "interpreter script" and has no room for the interpreter's own arguments.
  interpreter="$rundir/cgi-interpreter"
  printf '#!/bin/sh\nexec %s "$@"\n' "$6" > "$interpreter"
  chmod +x "$interpreter"
fi
sed -e "s|@CGI@|$cgi|" -e "s|@RUNDIR@|$rundir|g" -e "s|@PORT@|$port|" -e "s|@SOCKET@|$socket|" \
    -e "s|@BIND@|$bind|" -e "s|@INTERPRETER@|$interpreter|" "$(dirname "$0")/lighttpd.conf.in" > "$rundir/lighttpd.conf"
echo "$rundir/lighttpd.conf"
