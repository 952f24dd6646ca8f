"""Faults of the files around the program: the CLI work folder missing,
read-only or not a folder; the log file unwritable; the level file holding
garbage. Each fault lives in a private mount namespace of the processes
under test, so the machine's own folders and files are never changed and
nothing needs restoring, even when a test fails."""

import os
import re
import subprocess
import tempfile
import unittest

import harness
from harness import FORBIDDEN, JSON_HEADER, SimTestCase, envelope, new_session, read_reply, set_reply

# Entering a mount namespace moves to its root: relative paths would not resolve.
harness.CGI = os.path.abspath(harness.CGI)
harness.OPEN_SIM = os.path.abspath(harness.OPEN_SIM)

IF = "/api/v2/interfaces/if"
QUILL = "/mnt/application/quill"
SHOW = "rpcclt_openapiCliShowExecuteToFile"
TIMEOUT = 60


def namespaces_usable():
    try:
        return subprocess.run(["unshare", "-m", "true"], capture_output=True, timeout=30).returncode == 0
    except OSError:
        return False


def private_view(script):
    """A command prefix that runs the next command after `script` in its own mount namespace."""
    return ["unshare", "-m", "sh", "-c", "set -e; %s; exec \"$0\" \"$@\"" % script]


CLI_FOLDER_FAULTS = [
    ("missing", "mount -t tmpfs tmpfs " + QUILL),
    ("read-only", "mount -t tmpfs -o ro tmpfs " + harness.CLI_DIR),
    ("a regular file", "mount -t tmpfs tmpfs {q} && touch {q}/tmp".format(q=QUILL)),
]

# (route, method, query, body, expected reply, calls the switch sees)
DDISABLE_ROUTES = [
    ("ddisable-auto-recovery-interval", "GET", None, None, read_reply(17002), [SHOW]),
    ("ddisable-auto-recovery-cause", "GET", "cause=pml", None, read_reply(17002), [SHOW]),
    ("ddisable-autorecovery-table-feature-list", "GET", None, None, read_reply(10000), [SHOW]),
    ("ddisable-auto-recovery-time-left", "GET", None, None, read_reply(10000), [SHOW]),
    ("ddisable-auto-recovery-interval", "PUT", None, {"interval": 600}, set_reply(10000), []),
    ("ddisable-auto-recovery-cause", "PUT", None, {"cause": "pml", "mode": "enable"}, set_reply(10000), []),
]


@unittest.skipUnless(namespaces_usable(), "needs private mount namespaces (unshare -m)")
class CliFolderFaults(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.token = new_session()

    def run_fault(self, label, script):
        sim = harness.Sim(wrap=private_view(script))
        try:
            inside = ["nsenter", "-t", str(sim.proc.pid), "-m", "--"]
            before = sim.dump()
            for route, method, query, body, expect, calls in DDISABLE_ROUTES:
                with self.subTest(fault=label, route=route, method=method):
                    r = harness.cgi(sim, method, IF + "/" + route, query, body, session=self.token,
                                    timeout=TIMEOUT, wrap=inside)
                    self.assertEqual((r.out, r.status), (expect, 0))
                    self.assertEqual([e["call"] for e in sim.calls()], calls)
                    self.assertEqual(sim.dump(), before)
                    self.assertEqual(self.left_behind(inside), "")
        finally:
            sim.stop()

    @staticmethod
    def left_behind(inside):
        """Whatever the folder (or the file in its place) holds, as the processes under test see it."""
        script = "if [ -d {d} ]; then ls -A {d}; else cat {d} 2>/dev/null || true; fi".format(d=harness.CLI_DIR)
        r = subprocess.run(inside + ["sh", "-c", script],
                           capture_output=True, timeout=TIMEOUT)
        return r.stdout.decode()

    def test_missing(self):
        self.run_fault(*CLI_FOLDER_FAULTS[0])

    def test_read_only(self):
        self.run_fault(*CLI_FOLDER_FAULTS[1])

    def test_regular_file(self):
        self.run_fault(*CLI_FOLDER_FAULTS[2])


STAMP = r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} "


def log_line(level, where, text):
    return STAMP + re.escape("(%s): quill_cgi: [%s] %s" % (level, where, text))


class LogFiles:
    """A private log file and level file, bound over the real paths for one process."""

    def __init__(self, level, writable_log=True):
        self.dir = tempfile.mkdtemp(prefix="log-fault-")
        self.log = os.path.join(self.dir, "log")
        self.level = os.path.join(self.dir, "level")
        open(self.log, "wb").close()
        with open(self.level, "wb") as f:
            f.write(level)
        binds = "mount --bind {log} {real_log} && mount --bind {level} {real_level}".format(
            log=self.log, real_log=harness.LOG_FILE, level=self.level, real_level=harness.LEVEL_FILE)
        if not writable_log:
            binds += " && mount -o remount,bind,ro " + harness.LOG_FILE
        self.wrap = private_view(binds)

    def read(self, which):
        with open(which, "rb") as f:
            return f.read()

    def remove(self):
        for p in (self.log, self.level):
            os.unlink(p)
        os.rmdir(self.dir)


@unittest.skipUnless(namespaces_usable(), "needs private mount namespaces (unshare -m)")
class LogFaults(SimTestCase):
    def setUp(self):
        super().setUp()
        self.host_level = self.read_host(harness.LEVEL_FILE)
        self.files = []

    def tearDown(self):
        for f in self.files:
            f.remove()
        # The machine's level file is never the one under test.
        self.assertEqual(self.read_host(harness.LEVEL_FILE), self.host_level)

    @staticmethod
    def read_host(path):
        try:
            with open(path, "rb") as f:
                return f.read()
        except FileNotFoundError:
            return None

    def private(self, level, writable_log=True):
        files = LogFiles(level, writable_log)
        self.files.append(files)
        return files

    def timed_out_session(self):
        # Older than any uptime by more than the lifetime.
        return new_session(stamp=-99999)

    def test_unwritable_log_sends_lines_to_standard_output(self):
        rows = [
            ("success logs nothing at level 6", b"6", dict(method="GET", path=IF + "/ddisable-reason-intf-next",
                                                           query="prevIfNum=3"),
             re.escape(read_reply(0, "if", {"nextIfNum": 4}).decode())),
            ("a refusal prints its line before the status", b"6",
             dict(method="GET", path=IF + "/ddisable-reason-intf-next", query="prevIfNum=3", session="nobody-here"),
             log_line("ERROR", "httpdProcessRequest:236", "403 Forbidden\n") + re.escape(FORBIDDEN.decode())),
            ("a failed apply prints its lines inside the reply", b"6",
             dict(method="PUT", path=IF + "/ddisable-auto-recovery-interval", body={"interval": 10}),
             re.escape(JSON_HEADER.decode())
             + log_line("ERROR", "txtCfgApply:216",
                        "Bad return code trying to apply the configuration. (result = -1)\n")
             + log_line("ERROR", "cliModeCommandApply:441", "openapiTxtCfgApply failed for interface dot1p queue map")
             + re.escape(envelope(10000, newline=True).decode())),
            ("level 7 adds the debug lines", b"7",
             dict(method="GET", path=IF + "/ddisable-reason-intf-next", query="prevIfNum=3", session="nobody-here"),
             log_line("DEBUG", "initHandler:873", "Register RPC to OpEN success. (client name = interfaces_v2.cgi_")
             + r"\d+\)\n" + log_line("DEBUG", "initHandler:890", "Network OS Version = ") + r"[^\n]*\n"
             + log_line("DEBUG", "initHandler:900", "Open API Version = ") + r"[\d.]+\n"
             + log_line("DEBUG", "checkSessionX:45", "/tmp/session/nobody-here file not exsits, ignore\n")
             + log_line("ERROR", "httpdProcessRequest:236", "403 Forbidden\n") + re.escape(FORBIDDEN.decode())),
        ]
        for label, level, request, pattern in rows:
            with self.subTest(label):
                files = self.private(level, writable_log=False)
                session = request.pop("session", self.token)
                r = harness.cgi(self.sim, session=session, timeout=TIMEOUT, wrap=files.wrap, **request)
                self.assertEqual(r.status, 0)
                self.assertRegex(r.out.decode(errors="replace"), "^" + pattern + r"\Z")
                self.assertEqual(files.read(files.log), b"")

    def test_level_file_garbage(self):
        # (label, level file bytes, levels whose lines appear, level file afterwards)
        rows = [
            ("not a digit", b"x", {"ERROR", "INFO"}, b"6\0\0\0"),
            ("empty", b"", {"ERROR", "INFO"}, b"6\0\0\0"),
            ("negative", b"-1", {"ERROR", "INFO"}, b"61\0\0"),
            ("leading blank", b" 7", {"ERROR", "INFO"}, b"67\0\0"),
            ("binary", b"\xff\x00\x01\x02\x03", {"ERROR", "INFO"}, b"6\x00\x01\x02"),
            ("huge number: its first digit counts", b"99999", {"ERROR", "INFO", "DEBUG"}, b"9999"),
            ("7", b"7\n", {"ERROR", "INFO", "DEBUG"}, b"7\n\0\0"),
            ("3", b"3", {"ERROR"}, b"3\0\0\0"),
            ("0", b"0", set(), b"0\0\0\0"),
        ]
        for label, content, levels, after in rows:
            with self.subTest(label):
                files = self.private(content)
                token = self.timed_out_session()
                r = harness.cgi(self.sim, "GET", IF + "/ddisable-reason-intf-next", "prevIfNum=3", session=token,
                                timeout=TIMEOUT, wrap=files.wrap)
                self.assertEqual((r.out, r.status), (FORBIDDEN, 0))
                log = files.read(files.log).decode(errors="replace")
                self.assertEqual(set(re.findall(r"\((ERROR|WARN|INFO|DEBUG)\): quill_cgi: ", log)), levels, log)
                if "INFO" in levels:
                    self.assertIn("[checkSessionX:86] Token timeout(", log)
                self.assertEqual(files.read(files.level), after)
                self.assertFalse(os.path.exists(os.path.join(harness.SESSION_DIR, token)))


if __name__ == "__main__":
    harness.main()
