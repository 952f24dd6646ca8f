"""The request frame through the real program: log lines, dispatch, hostile input and faults of the files
around it. Every row names the exact bytes printed, the OpEN calls made and the exit status."""

import os
import pathlib
import re
import subprocess
import tempfile
import time

import harness
from harness import (FORBIDDEN, JSON_HEADER, LEVEL_FILE, LOG_FILE, SimTestCase, cgi,
                     debug_logging, envelope, main, private_view, read_reply, set_reply)

IF = "/api/v2/interfaces/if"
NEXT = IF + "/ddisable-autorecovery-table-intf-next"  # a read that scans its number
INTERVAL = IF + "/ddisable-auto-recovery-interval"  # a change that applies one CLI line
CAUSE = IF + "/ddisable-auto-recovery-cause"
EXPAND = IF + "/intf-expandable-port-mode-supported"  # a read that looks its query up
EXPAND_CALL = "rpcclt_openapiIntfExpandablePortModeSupportedGet"
NEXT_4 = read_reply(0, "if", {"nextIfNum": 4})
UP = read_reply(0, "if", {"linkState": "up"})
APPLY = ["rpcclt_openapiTxtCfgCompress", "rpcclt_openapiTxtCfgApply"]
INTERVAL_300 = b'{"interval":300}'


def lines(*rows):
    """A whole log text: (level, tag, text) per message, "{n}" standing for a number, "{*}" for a line's rest."""
    day = r"(?:%s|%s)" % (time.strftime("%Y-%m-%d", time.localtime(time.time() - 60)), time.strftime("%Y-%m-%d"))
    return "".join(day + r" \d\d:\d\d:\d\d\.\d{3} " + re.escape("(%s): quill_cgi: [%s] %s" % row).replace(
        r"\{n\}", r"-?\d+").replace(r"\{\*\}", r"[^\n]*") for row in rows)


START = [("DEBUG", "initHandler:873", "Register RPC to OpEN success. (client name = interfaces_v2.cgi_{n})\n"),
         ("DEBUG", "initHandler:890", "Network OS Version = 4.2.1.7\n"),
         ("DEBUG", "initHandler:900", "Open API Version = 1.27.0.4\n")]
REFRESH = ("DEBUG", "checkSessionX:103", "Token update to file. (admin\n{n}\n{*})\r\n")
APPLY_LOG = ("DEBUG", "txtCfgApply:204", "inputName=/mnt/application/quill/tmp/quill_cmd_in_file.txt, outputName="
             "/mnt/application/quill/tmp/quill_cmd_out_file.txt\n")
APPLY_FAILED = ("ERROR", "cliModeCommandApply:441", "openapiTxtCfgApply failed for interface dot1p queue map")


class LogWatch:
    """What the program appends to its log at level 7 while the block runs (far from 1 MiB: no rotation)."""

    def __enter__(self):
        self.level = debug_logging()
        self.level.__enter__()
        self.start = os.path.getsize(LOG_FILE) if os.path.exists(LOG_FILE) else 0
        return self

    def __exit__(self, *exc):
        self.text = pathlib.Path(LOG_FILE).read_bytes()[self.start:].decode(errors="replace")
        self.level.__exit__(*exc)


class Frame(SimTestCase):
    def test_log_lines(self):
        # (set-up, method, path, query, body, exit status, reply, the lines after the start)
        rows = [
            ([], "GET", IF + "/link-state", "ifNum=3", None, 0, UP, START + [REFRESH]),
            (["fail rpcclt_openapiNetworkOSVersionGet -1", "fail rpcclt_openapiApiVersionGet -28"],
             "GET", IF + "/link-state", "ifNum=3", None, 0, UP,
             START[:1] + [("ERROR", "initHandler:892", "Network OS Version retrieve error\n"),
                          ("ERROR", "initHandler:902", "Open API Version retrieve error\n"), REFRESH]),
            (["fail openapiClientRegister -1"], "GET", NEXT, None, None, 255, b"",
             [("ERROR", "initHandler:870", "\nFailed to initialize RPC to OpEN. Exiting (result = -1)\n")]),
            (["fail rpcclt_openapiCliShowExecuteToFile -3"], "GET", INTERVAL, None, None, 0,
             read_reply(17002), START + [REFRESH, ("ERROR", "cliShowExecuteToFile:187",
                                                   "Execute show cmd faile, result:-3\r\n")]),
            (["fail rpcclt_openapiTxtCfgCompress -1"], "PUT", INTERVAL, None, INTERVAL_300, 0,
             set_reply(10000), START + [REFRESH, APPLY_LOG, ("ERROR", "txtCfgApply:211", "Bad return code trying to "
                                        "compress the configuration file. (result = -1)\n"), APPLY_FAILED]),
            (["fail openapiIfFirstGet -29"], "GET", IF + "/counters", None, None, 0,
             read_reply(0, "if", []), START + [REFRESH, ("ERROR", "swapiIfFirstGet:4031", "Bad return code trying "
                                                         "to get first physical interface. result = -29\r\n")]),
        ]
        for setup, method, path, query, body, status, reply, expected in rows:
            with self.subTest(path=path, setup=setup):
                self.sim.ctl("reset")
                for command in setup:
                    self.sim.ctl(*command.split())
                with LogWatch() as log:
                    r = self.request(method, path, query, body, fresh=True)
                self.assertEqual((r.out, r.status), (reply, status))
                self.assertRegex(log.text, "^" + lines(*expected) + r"\Z")

    def test_the_service_restarting_or_away(self):
        """After a restart a request registers first; while the service is away (18 s wait) it fails."""
        self.assertReply(self.request("GET", IF + "/link-state", "ifNum=3"), UP)
        for away in (False, True):
            self.sim.stop()
            if away:
                self.assertEqual(self.request("GET", IF + "/link-state", "ifNum=3"), harness.Result(b"", 255))
            type(self).sim = harness.Sim(path=self.sim.socket)
            self.assertReply(self.request("GET", IF + "/link-state", "ifNum=3"), UP)
            calls = [e["call"] for e in self.sim.journal()]
            self.assertEqual((calls[0], calls[4]), ("openapiClientRegister", "openapiIfLinkStateGet"))

    def test_a_session_changed_between_requests(self):
        """One responder after another request sees every change the login program makes to a session."""
        token = harness.new_session()
        get = lambda: self.request("GET", IF + "/link-state", "ifNum=3", session=token)  # noqa: E731
        for _ in range(3):  # read, written, then answered from what it read
            self.assertReply(get(), UP)
        harness.new_session("bob", "ro", token=token)
        self.assertEqual(self.request("PUT", INTERVAL, None, INTERVAL_300, session=token).out, FORBIDDEN)
        self.assertReply(get(), UP)
        os.unlink(os.path.join(harness.SESSION_DIR, token))
        self.assertEqual(get().out, FORBIDDEN)


NOT_VALID = set_reply(10003)
# (method, path, query, body, CGI variables, reply, calls made: names, or (name, inputs) pairs)
HOSTILE = [
    ("PUT", INTERVAL, None, INTERVAL_300, {"CONTENT_LENGTH": "9" * 40}, NOT_VALID, []),
    ("PUT", INTERVAL, None, INTERVAL_300, {"CONTENT_LENGTH": "16xyz"}, set_reply(0), APPLY),
    ("PUT", INTERVAL, None, b"[" * 100000, {}, NOT_VALID, []),
    ("PUT", INTERVAL, None, b'{"interval":1e999}', {}, set_reply(10000), APPLY),
    ("PUT", CAUSE, None, b'{"cause":"pml\\nreload","mode":"enable"}', {}, NOT_VALID, []),
    # An escaped NUL ends the cause: only the table's name reaches the CLI.
    ("PUT", CAUSE, None, b'{"cause":"pml\\u0000; reload","mode":"enable"}', {}, set_reply(0), APPLY),
    # queries: scans read the variable whole, lookups see its first 8192 characters
    ("GET", NEXT, "x" * 9000 + "&prevIfNum=3", None, {}, NEXT_4, ["openapiIfNextGet"]),
    ("GET", EXPAND, "x" * 8168 + "&expandPortMode=quad_40g", None, {},
     read_reply(0, "if", {"isExpandedModeSupported": "true"}), [(EXPAND_CALL, [4])]),
    ("GET", EXPAND, "x" * 8169 + "&expandPortMode=quad_40g", None, {},
     read_reply(0, "if", {"isExpandedModeSupported": "false"}), [(EXPAND_CALL, [0])]),
    ("GET", "x" * 2000, None, None, {}, b"Invalid request path '" + b"x" * 1023 + b"'\n", []),
    ("X" * 5000, NEXT, None, None, {}, b"", []),
]


# Sent after each hostile request: through one FastCGI responder, nothing of a request may reach the next.
AFTER = [
    ("GET", NEXT, None, None, {}, read_reply(0, "if", {"nextIfNum": 1}), ["openapiIfFirstGet"]),
    ("PUT", INTERVAL, None, None, {}, NOT_VALID, []),
    ("GET", NEXT, "prevIfNum=3", None, {"HTTP_SESSION": None}, FORBIDDEN, []),
]


class Hostile(SimTestCase):
    def test_requests(self):
        for n, (method, path, query, body, env, reply, calls) in enumerate(r for row in HOSTILE for r in [row] + AFTER):
            with self.subTest(n=n, method=method[:10], path=path[:60], query=(query or "")[:30],
                              body=(body or b"")[:30], env=str(env)[:40]):
                self.sim.ctl("reset")
                r = cgi(self.sim, method, path, query, body, session=self.token, env=env)
                self.assertEqual((r.out, r.status), (reply, 0))
                seen = self.sim.calls()
                self.assertEqual([(e["call"], e["in"]) if isinstance(c, tuple) else e["call"]
                                  for e, c in zip(seen, calls)] + seen[len(calls):], calls)


class Faults(SimTestCase):
    """Each fault lives in a private mount namespace of the processes under test."""

    def test_cli_work_folder(self):
        quill = "/mnt/application/quill"
        for script in ["mount -t tmpfs tmpfs " + quill, "mount -t tmpfs -o ro tmpfs " + harness.CLI_DIR,
                       "mount -t tmpfs tmpfs {q}; touch {q}/tmp".format(q=quill)]:
            sim = harness.Sim(wrap=private_view(script))
            inside = ["nsenter", "-t", str(sim.proc.pid), "-m", "--"]
            try:
                for method, path, body, reply, calls in [
                        ("GET", INTERVAL, None, read_reply(17002), ["rpcclt_openapiCliShowExecuteToFile"]),
                        ("PUT", INTERVAL, INTERVAL_300, set_reply(10000), [])]:
                    with self.subTest(script, path=path, method=method):
                        r = cgi(sim, method, path, None, body, session=self.token, wrap=inside)
                        self.assertEqual((r.out, r.status), (reply, 0))
                        self.assertEqual([e["call"] for e in sim.calls()], calls)
                        look = "cat {0} 2>/dev/null || ls -A {0}".format(harness.CLI_DIR)  # a file in its place, or not
                        self.assertEqual(subprocess.run(inside + ["sh", "-c", look], capture_output=True).stdout, b"")
            finally:
                sim.stop()

    def test_an_unwritable_log_sends_its_lines_to_standard_output(self):
        stamp = r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \(ERROR\): quill_cgi: "
        folder = tempfile.mkdtemp(prefix="log-fault-")
        for name, content in (("log", b""), ("level", b"6")):
            pathlib.Path(folder, name).write_bytes(content)
        wrap = private_view("touch {1} {2}; mount --bind {0}/log {1}; mount --bind {0}/level {2}; "
                            "mount -o remount,bind,ro {1}".format(folder, LOG_FILE, LEVEL_FILE))
        for session, method, path, body, pattern in [
                ("nobody", "GET", NEXT, None, stamp + re.escape("[httpdProcessRequest:236] 403 Forbidden\n" +
                                                                FORBIDDEN.decode())),
                (self.token, "PUT", INTERVAL, b'{"interval":10}', re.escape(JSON_HEADER.decode()) + stamp + re.escape(
                    "[txtCfgApply:216] Bad return code trying to apply the configuration. (result = -1)\n") + stamp +
                 re.escape("[%s] %s" % APPLY_FAILED[1:] + envelope(10000, newline=True).decode()))]:
            with self.subTest(path=path):
                r = cgi(self.sim, method, path, None, body, session=session, wrap=wrap)
                self.assertEqual(r.status, 0)
                self.assertRegex(r.out.decode(errors="replace"), "^" + pattern + r"\Z")
        self.assertEqual(pathlib.Path(folder, "log").read_bytes(), b"")


if __name__ == "__main__":
    main()
