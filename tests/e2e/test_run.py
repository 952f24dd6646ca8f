"""`make run`'s script: a busy port refused before anything starts; a run that ends with its parent."""

import contextlib
import os
import socket
import subprocess
import time
import unittest
import urllib.request

from harness import BUILD, EXEC_WRAPPER, SESSION_DIR, main

RUN_DEV = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "run-dev.sh")


def processes():
    """The commands running in this suite's PID namespace; a zombie (an unreaped orphan) runs nothing."""
    ps = subprocess.run(["ps", "-e", "-o", "stat=,comm="], capture_output=True, text=True, check=True).stdout
    return [comm for stat, comm in (row.split(None, 1) for row in ps.splitlines()) if stat[0] != "Z"]


def wait_for(condition, what, seconds=30):
    deadline = time.time() + seconds
    while not (result := condition()):
        if time.time() > deadline:
            raise AssertionError("%s within %d s" % (what, seconds))
        time.sleep(0.1)
    return result


def link_state(port, tokens):
    url = "http://127.0.0.1:%d/api/v2/interfaces/if/link-state?ifNum=3" % port
    with contextlib.suppress(OSError):
        for token in tokens:
            request = urllib.request.Request(url, headers={"session": token})
            with urllib.request.urlopen(request, timeout=30) as r:
                body = r.read()
            if b"linkState" in body:
                return body
    return b""


@unittest.skipIf(EXEC_WRAPPER, "make run serves this machine's own build")
class Run(unittest.TestCase):
    def start(self, port, fastcgi="", output=subprocess.PIPE):
        env = {k: v for k, v in os.environ.items() if k != "OPEN_SIM_SOCKET"} | {"PORT": str(port)}
        return subprocess.Popen(["bash", "-c", '"$0" "$1" & wait $!', RUN_DEV, BUILD],
                                env=env | {"FASTCGI": fastcgi}, stdout=output, stderr=output, text=True)

    def test_a_busy_port_is_said_in_one_line_and_nothing_starts(self):
        with socket.create_server(("127.0.0.1", 0)) as busy:
            parent = self.start(busy.getsockname()[1])
            out, err = parent.communicate(timeout=30)
        started = [p for p in processes() if p in ("open-sim", "lighttpd")]
        self.assertEqual((parent.returncode != 0, len(err.splitlines()), "in use" in err, out, started),
                         (True, 1, True, "", []), err)

    def test_a_run_serves_and_ends_with_its_parent(self):
        for fastcgi in ("", "1"):
            with self.subTest(fastcgi=fastcgi):
                with socket.create_server(("127.0.0.1", 0)) as probe:
                    port = probe.getsockname()[1]
                before = set(os.listdir(SESSION_DIR)) if os.path.isdir(SESSION_DIR) else set()
                parent = self.start(port, fastcgi, subprocess.DEVNULL)
                wait_for(lambda: len(set(os.listdir(SESSION_DIR)) - before) == 2, "two sessions written")
                admin = sorted(set(os.listdir(SESSION_DIR)) - before)
                self.assertIn(b'"linkState":\t"up"', wait_for(lambda: link_state(port, admin), "link-state"))
                parent.terminate()  # the parent alone (it stands for make, which passes no signal on)
                parent.wait(timeout=30)
                wait_for(lambda: not {"open-sim", "lighttpd", "interfaces_v2.c"} & set(processes())
                         and not set(os.listdir(SESSION_DIR)) - before,
                         "the simulator, lighttpd, the responders and the run's sessions gone")


if __name__ == "__main__":
    main()
