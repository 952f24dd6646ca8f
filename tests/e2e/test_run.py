"""`make run`'s script as a developer meets it: a busy port is said before anything starts; a run serves,
and when whatever started it goes away (make, which passes no signal on) the run takes its simulator, its web
server and its session files with it. And a suite that ctest kills at its time-out takes every process it
started with it."""

import contextlib
import os
import socket
import subprocess
import time
import unittest
import urllib.request

from harness import BUILD, EXEC_WRAPPER, SESSION_DIR, main

RUN_DEV = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "run-dev.sh")
ISOLATED = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "isolated.sh")


def processes():
    """The commands of every process running in this suite's PID namespace. The suite is its namespace's
    first process and reaps no orphan: an orphan that ended stays a zombie, which runs nothing."""
    rows = subprocess.run(["ps", "-e", "-o", "stat=,comm="], capture_output=True, text=True, check=True).stdout
    return [comm for stat, comm in (row.split(None, 1) for row in rows.splitlines()) if not stat.startswith("Z")]


def wait_for(condition, what, seconds=30):
    deadline = time.time() + seconds
    while not (result := condition()):
        if time.time() > deadline:
            raise AssertionError("%s within %d s" % (what, seconds))
        time.sleep(0.1)
    return result


def link_state(port, tokens):
    """link-state of port 3 with whichever of the run's sessions is the administrator's, once one answers."""
    with contextlib.suppress(OSError):
        for token in tokens:
            url = "http://127.0.0.1:%d/api/v2/interfaces/if/link-state?ifNum=3" % port
            request = urllib.request.Request(url, headers={"session": token})
            with urllib.request.urlopen(request, timeout=30) as r:
                body = r.read()
            if b"linkState" in body:
                return body
    return b""


@unittest.skipIf(EXEC_WRAPPER, "make run serves this machine's own build")
class Run(unittest.TestCase):
    def start(self, port, fastcgi="", output=subprocess.PIPE):
        """run-dev.sh under a parent shell that stands for make."""
        env = dict(os.environ, PORT=str(port), FASTCGI=fastcgi)
        env.pop("OPEN_SIM_SOCKET", None)
        return subprocess.Popen(["bash", "-c", '"$0" "$1" & wait $!', RUN_DEV, BUILD], env=env,
                                stdout=output, stderr=output, text=True)

    def test_a_busy_port_is_said_in_one_line_and_nothing_starts(self):
        with socket.create_server(("127.0.0.1", 0)) as busy:
            parent = self.start(busy.getsockname()[1])
            out, err = parent.communicate(timeout=30)
        self.assertEqual((parent.returncode != 0, len(err.strip().splitlines()), "in use" in err, out),
                         (True, 1, True, ""), err)
        self.assertEqual([p for p in processes() if p in ("open-sim", "lighttpd")], [])

    def test_a_run_serves_and_ends_with_its_parent(self):
        for fastcgi in ("", "1"):
            with self.subTest(fastcgi=fastcgi):
                probe = socket.create_server(("127.0.0.1", 0))
                port = probe.getsockname()[1]
                probe.close()
                before = set(os.listdir(SESSION_DIR)) if os.path.isdir(SESSION_DIR) else set()
                parent = self.start(port, fastcgi, subprocess.DEVNULL)
                wait_for(lambda: len(set(os.listdir(SESSION_DIR)) - before) == 2, "two sessions written")
                admin = sorted(set(os.listdir(SESSION_DIR)) - before)
                reply = wait_for(lambda: link_state(port, admin), "link-state served")
                self.assertIn(b'"linkState":\t"up"', reply)
                parent.terminate()  # the parent alone, as a TERM to make
                parent.wait(timeout=30)
                wait_for(lambda: not {"open-sim", "lighttpd", "interfaces_v2.c"} & set(processes())
                         and not set(os.listdir(SESSION_DIR)) - before,
                         "the simulator, lighttpd, the responders and the run's sessions gone")


class KilledSuite(unittest.TestCase):
    def test_a_suite_killed_leaves_nothing_running(self):
        suite = subprocess.Popen([ISOLATED, "sh", "-c", "sleep 1000 & echo $!; wait"], stdout=subprocess.PIPE,
                                 text=True)
        suite.stdout.readline()
        self.assertIn("sleep", processes())
        suite.kill()  # as ctest ends a suite at its time-out
        suite.wait(timeout=10)
        wait_for(lambda: "sleep" not in processes(), "the suite's own process gone")


if __name__ == "__main__":
    main()
