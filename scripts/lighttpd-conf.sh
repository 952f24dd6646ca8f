#!/usr/bin/env bash
# Writes a lighttpd configuration for the CGI: lighttpd-conf.sh CGI RUNDIR PORT SOCKET [BIND]
set -euo pipefail
cgi=$(readlink -f "$1") rundir=$(readlink -f "$2") port=$3 socket=$4 bind=${5:-127.0.0.1}
mkdir -p "$rundir/www"
sed -e "s|@CGI@|$cgi|" -e "s|@RUNDIR@|$rundir|g" -e "s|@PORT@|$port|" -e "s|@SOCKET@|$socket|" \
    -e "s|@BIND@|$bind|" "$(dirname "$0")/lighttpd.conf.in" > "$rundir/lighttpd.conf"
echo "$rundir/lighttpd.conf"
