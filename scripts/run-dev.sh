#!/usr/bin/env bash
# make run: the simulated switch and lighttpd serving the API on
# 127.0.0.1:8080, until Ctrl-C. FASTCGI=1: through two FastCGI responders
# instead of a CGI process per request.
set -euo pipefail
build=${1:-build}
port=${PORT:-8080}
here=$(cd "$(dirname "$0")" && pwd)
rundir="$build/run"
socket=${OPEN_SIM_SOCKET:-/tmp/open-sim.sock}
"$here/prepare-switch-dirs.sh"
mkdir -p "$rundir"

new_session() {  # user [privilege]: writes a session file, prints its token
  local token
  token=$(head -c 12 /dev/urandom | od -An -tx1 | tr -d ' \n')
  { printf '%s\n%s\n' "$1" "$(cut -d. -f1 /proc/uptime)"; [ -n "${2:-}" ] && printf '%s\n' "$2"; } > "/tmp/session/$token"
  echo "$token"
}

pids=()
stop() {
  trap - INT TERM EXIT
  [ ${#pids[@]} -gt 0 ] && kill "${pids[@]}" 2>/dev/null || true
  wait 2>/dev/null || true
  echo "stopped"
}
trap stop INT TERM EXIT

"$build/platform/open-sim" serve --socket "$socket" ${SCENARIO:+--scenario "$SCENARIO"} &
pids+=($!)
for _ in $(seq 100); do [ -S "$socket" ] && break; sleep 0.05; done

conf=$("$here/lighttpd-conf.sh" "$build/interfaces_v2.cgi" "$rundir" "$port" "$socket")
lighttpd -D -f "$conf" &
pids+=($!)

admin=$(new_session admin)
viewer=$(new_session viewer ro)
"$here/explorer-site.sh" "$build" "$rundir/www" "$admin"
base="http://127.0.0.1:$port/api/v2/interfaces"
cat <<MSG

Serving $base against the simulated switch (socket $socket)${FASTCGI:+, two FastCGI responders}.
Administrator session: $admin    read-only session: $viewer

  curl -H 'session: $admin' '$base/if/link-state?ifNum=3'
  curl -X PUT -H 'session: $admin' -d '{"adminState":"disable"}' '$base/if/admin-state?ifNum=3'
  curl -i -X PUT -H 'session: $viewer' -d '{"adminState":"enable"}' '$base/if/admin-state?ifNum=3'

Explorer (Swagger UI, administrator session filled in): http://127.0.0.1:$port/api-docs/

Switch state: $build/platform/open-sim ctl --socket $socket dump | journal | set ... | fail ...
Ctrl-C stops both.
MSG
wait -n "${pids[@]}"
