"""A real HTTP request through lighttpd, as on the switch."""

import os
import shlex
import shutil
import socket
import subprocess
import tempfile
import time
import unittest
import urllib.error
import urllib.request

from harness import CGI, EXEC_WRAPPER, Sim, envelope, main, new_session

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


@unittest.skipUnless(shutil.which("lighttpd"), "lighttpd is not installed")
class ThroughLighttpd(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.sim = Sim()
        cls.dir = tempfile.mkdtemp(prefix="lighttpd-")
        cls.port = free_port()
        conf = subprocess.run([os.path.join(ROOT, "scripts", "lighttpd-conf.sh"), CGI, cls.dir, str(cls.port),
                               cls.sim.socket, "127.0.0.1", shlex.join(EXEC_WRAPPER)],
                              capture_output=True, text=True, check=True).stdout.strip()
        cls.server = subprocess.Popen(["lighttpd", "-D", "-f", conf])
        deadline = time.time() + 10
        while time.time() < deadline:
            try:
                socket.create_connection(("127.0.0.1", cls.port), timeout=0.2).close()
                break
            except OSError:
                time.sleep(0.05)

    @classmethod
    def tearDownClass(cls):
        cls.server.terminate()
        cls.server.wait(timeout=10)
        cls.sim.stop()

    def fetch(self, path, headers):
        req = urllib.request.Request("http://127.0.0.1:%d%s" % (self.port, path), headers=headers)
        try:
            with urllib.request.urlopen(req, timeout=30) as r:
                return r.status, r.headers.get("Content-Type"), r.read()
        except urllib.error.HTTPError as e:
            return e.code, e.headers.get("Content-Type"), e.read()

    def test_link_state_with_a_session(self):
        status, ctype, body = self.fetch("/api/v2/interfaces/if/link-state?ifNum=3", {"session": new_session()})
        self.assertEqual((status, ctype), (200, "application/json"))
        self.assertEqual(body, envelope(0, "if", {"linkState": "up"}))

    def test_no_session_is_forbidden(self):
        status, _, body = self.fetch("/api/v2/interfaces/if/link-state?ifNum=3", {})
        self.assertEqual((status, body), (403, b""))


if __name__ == "__main__":
    main()
