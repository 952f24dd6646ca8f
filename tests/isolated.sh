#!/bin/sh
# Runs one suite in mount and PID namespaces of its own. The program's fixed paths (the session
# folder, the log and level files in /tmp, the CLI work folder) are fresh tmpfs folders there, so two
# suites can run at once and the host's /tmp is left as it was found; and when the suite ends, or is
# killed at its time-out, every simulator, responder and web server it started ends with it. The
# session folder is the suite's own user's, 0700: the program refuses one that others may write.
exec unshare --mount --pid --fork --kill-child --mount-proc --propagation private sh -c '
  set -e
  mount -t tmpfs -o mode=1777 tmpfs /tmp
  mount -t tmpfs -o mode=755 tmpfs /mnt
  mkdir -p -m 0700 /tmp/session
  mkdir -p /mnt/application/quill/tmp
  chmod 1777 /mnt/application/quill/tmp
  exec "$@"' isolated "$@"
