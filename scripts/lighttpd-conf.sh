#!/usr/bin/env bash
# Writes a lighttpd configuration for the CGI:
#   [FASTCGI=1] lighttpd-conf.sh CGI RUNDIR PORT SOCKET [BIND [INTERPRETER]]
# INTERPRETER is a command line that starts the CGI, as an emulator does for a
# cross-built one. FASTCGI=1 serves the API from FastCGI responders instead of
# a CGI process per request.
set -euo pipefail
cgi=$(readlink -f "$1") rundir=$(readlink -f "$2") port=$3 socket=$4 bind=${5:-127.0.0.1}
here=$(dirname "$0")
mkdir -p "$rundir/www"
interpreter=""
if [ -n "${6:-}" ]; then
  # lighttpd runs "interpreter script" and has no room for the interpreter's own arguments.
  interpreter="$rundir/cgi-interpreter"
  printf '#!/bin/sh\nexec %s "$@"\n' "$6" > "$interpreter"
  chmod +x "$interpreter"
fi
fill() {
  sed -e "s|@CGI@|$cgi|" -e "s|@RUNDIR@|$rundir|g" -e "s|@PORT@|$port|" -e "s|@SOCKET@|$socket|" \
      -e "s|@BIND@|$bind|" -e "s|@INTERPRETER@|$interpreter|" -e "s|@COMMAND@|${interpreter:+$interpreter }$cgi|" "$1"
}
if [ -n "${FASTCGI:-}" ]; then
  { fill "$here/lighttpd.conf.in" | grep -v -e '^alias\.url' -e '^cgi\.assign'
    fill "$here/lighttpd-fastcgi.conf.in"; } > "$rundir/lighttpd.conf"
else
  fill "$here/lighttpd.conf.in" > "$rundir/lighttpd.conf"
fi
echo "$rundir/lighttpd.conf"
