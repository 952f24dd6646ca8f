#!/usr/bin/env bash
# make run: the simulated switch and lighttpd serving the API on
# 127.0.0.1:$PORT (8080), until Ctrl-C or a TERM to make or to this script.
# FASTCGI=1: through FastCGI responders instead of a CGI process per request.
set -euo pipefail
build=${1:-build}
port=${PORT:-8080}
here=$(cd "$(dirname "$0")" && pwd)
# Found before anything starts: lighttpd would only fail after the banner.
if (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null; then
  echo "make run: port $port is in use; choose another with PORT=NNNN make run" >&2
  exit 1
fi
mkdir -p "$build/run"
rundir=$(cd "$build/run" && pwd)
# The run's own simulator: nothing else on the machine needs to be set up for it.
socket=${OPEN_SIM_SOCKET:-$rundir/open-sim.sock}
"$here/prepare-switch-dirs.sh"

sessions=()
new_session() {  # user [privilege]: writes a session file, 0600 as the program requires; prints its token
  local token
  token=$(head -c 12 /dev/urandom | od -An -tx1 | tr -d ' \n')
  umask 077
  { printf '%s\n%s\n' "$1" "$(cut -d. -f1 /proc/uptime)"; [ -n "${2:-}" ] && printf '%s\n' "$2"; } > "/tmp/session/$token"
  echo "$token"
}

pids=()
stop() {
  trap - INT TERM EXIT
  [ ${#pids[@]} -gt 0 ] && kill "${pids[@]}" 2>/dev/null || true
  wait 2>/dev/null || true
  for token in "${sessions[@]}"; do rm -f "/tmp/session/$token"; done
  echo "stopped"
}
trap stop INT TERM EXIT

"$build/platform/open-sim" serve --socket "$socket" ${SCENARIO:+--scenario "$SCENARIO"} &
pids+=($!)
for _ in $(seq 100); do [ -S "$socket" ] && break; sleep 0.05; done

conf=$("$here/lighttpd-conf.sh" "$build/interfaces_v2.cgi" "$rundir" "$port" "$socket")
# lighttpd stops its FastCGI responders when it stops.
lighttpd -D -f "$conf" &
pids+=($!)

admin=$(new_session admin)
viewer=$(new_session viewer ro)
sessions=("$admin" "$viewer")
"$here/explorer-site.sh" "$build" "$rundir/www" "$admin"
base="http://127.0.0.1:$port/api/v2/interfaces"
cat <<MSG

Serving $base against the simulated switch (socket $socket)${FASTCGI:+, through FastCGI responders}.
Administrator session: $admin    read-only session: $viewer

  curl -H 'session: $admin' '$base/if/link-state?ifNum=3'
  curl -X PUT -H 'session: $admin' -d '{"adminState":"disable"}' '$base/if/admin-state?ifNum=3'
  curl -i -X PUT -H 'session: $viewer' -d '{"adminState":"enable"}' '$base/if/admin-state?ifNum=3'

Explorer (Swagger UI, administrator session filled in): http://127.0.0.1:$port/api-docs/

Switch state: $build/platform/open-sim ctl --socket $socket dump | journal | set ... | fail ...
Ctrl-C stops both.
MSG
# make passes no signal on to its recipe's programs: a make that is gone
# ends the run as Ctrl-C would. So does a server that stopped.
parent=$PPID
alive() { for pid; do kill -0 "$pid" 2>/dev/null || return 1; done; }
while alive "$parent" "${pids[@]}"; do sleep 0.5; done
