"""The request frame through the real program: the road of one request,
sessions and privileges, registration with the service and its wait."""

import os
import re
import unittest

from harness import (FORBIDDEN, LEVEL_FILE, LOG_FILE, SESSION_DIR, SimTestCase, cgi, main, new_session, read_reply,
                     session_text, uptime)

IF = "/api/v2/interfaces/if"


class LogWatch:
    """What the program appends to its log file while the block runs."""

    def __enter__(self):
        with open(LEVEL_FILE, "r+b") as f:
            f.write(b"7")
        st = os.stat(LOG_FILE) if os.path.exists(LOG_FILE) else None
        self.start, self.inode = (st.st_size, st.st_ino) if st else (0, None)
        return self

    def __exit__(self, *exc):
        # The block may have crossed a rotation: its first lines are then at
        # the end of the rotated file, the rest in the new one.
        rotated = self.inode is not None and os.stat(LOG_FILE).st_ino != self.inode
        text = b""
        if rotated and os.path.exists(LOG_FILE + ".old") and os.stat(LOG_FILE + ".old").st_ino == self.inode:
            with open(LOG_FILE + ".old", "rb") as f:
                f.seek(self.start)
                text = f.read()
        with open(LOG_FILE, "rb") as f:
            f.seek(0 if rotated else self.start)
            text += f.read()
        self.text = text.decode(errors="replace")
        with open(LEVEL_FILE, "r+b") as f:
            f.write(b"6")


class RoadOfOneRequest(SimTestCase):
    def test_link_state_of_port_3(self):
        token = new_session()
        with LogWatch() as log:
            r = self.get(IF + "/link-state", "ifNum=3", session=token)
        self.assertReply(r, read_reply(0, "if", {"linkState": "up"}))
        journal = self.sim.journal()
        self.assertEqual([e["call"] for e in journal], [
            "openapiClientRegister", "rpcclt_openapiConnectivityCheck", "rpcclt_openapiNetworkOSVersionGet",
            "rpcclt_openapiApiVersionGet", "openapiIfLinkStateGet", "openapiClientTearDown"])
        self.assertRegex(journal[0]["in"][0], r"^interfaces_v2\.cgi_\d+$")
        self.assertEqual(journal[4]["in"], [3])
        self.assertRegex(session_text(token), r"^admin\n\d+\n" + token + "$")
        self.assertIn("(DEBUG): quill_cgi: [initHandler:873] Register RPC to OpEN success. (client name = "
                      "interfaces_v2.cgi_", log.text)
        self.assertIn("[initHandler:890] Network OS Version = 4.2.1.7\n", log.text)
        self.assertIn("[initHandler:900] Open API Version = 1.27.0.4\n", log.text)
        self.assertIn("[checkSessionX:103] Token update to file. (admin\n", log.text)

    def test_version_reads_that_fail_only_log(self):
        self.sim.fail("rpcclt_openapiNetworkOSVersionGet", -1)
        self.sim.fail("rpcclt_openapiApiVersionGet", -28)
        with LogWatch() as log:
            r = self.get(IF + "/link-state", "ifNum=4")
        self.assertReply(r, read_reply(0, "if", {"linkState": "down"}))
        self.assertIn("(ERROR): quill_cgi: [initHandler:892] Network OS Version retrieve error\n", log.text)
        self.assertIn("(ERROR): quill_cgi: [initHandler:902] Open API Version retrieve error\n", log.text)


class Sessions(SimTestCase):
    def test_who_may_call_what(self):
        old = uptime() - 7300
        cases = [
            # (description, session file lines or token, method, expect 403)
            ("admin GET", new_session(), "GET", False),
            ("read-only GET", new_session("viewer", "ro"), "GET", False),
            ("read-write GET", new_session("operator", "rw"), "GET", False),
            ("rwx reads as rw", new_session("operator", "rwx"), "GET", False),
            ("unknown privilege", new_session("operator", "xx"), "GET", True),
            ("timed out", new_session(stamp=old), "GET", True),
            ("never expires", new_session(stamp=0), "GET", False),
            ("missing file", "no-such-session", "GET", True),
            ("token with a slash", "../session/" + new_session(), "GET", True),
            ("empty token", "", "GET", True),
            ("600-character token", "t" * 600, "GET", True),
        ]
        for name, token, method, refused in cases:
            with self.subTest(name):
                r = cgi(self.sim, method, IF + "/link-state", "ifNum=1", session=token)
                self.assertEqual(r.status, 0)
                if refused:
                    self.assertEqual(r.out, FORBIDDEN)
                else:
                    self.assertEqual(r.out, read_reply(0, "if", {"linkState": "up"}))

    def test_no_session_header_is_refused_without_calling_the_switch(self):
        r = cgi(self.sim, "GET", IF + "/type", "ifNum=1")
        self.assertEqual((r.out, r.status), (FORBIDDEN, 0))
        self.assertEqual(self.sim.calls(), [])

    def test_refresh_rewrites_the_stamp_and_polling_does_not(self):
        token = new_session("operator", "rw", stamp=uptime() - 100)
        before = session_text(token)
        self.get(IF + "/type", "ifNum=1", session=token, refresh="1")
        self.assertEqual(session_text(token), before)
        self.get(IF + "/type", "ifNum=1", session=token)
        self.assertRegex(session_text(token), r"^operator\n(\d+)\nrw\n" + token + "$")
        stamp = int(session_text(token).split("\n")[1])
        self.assertGreaterEqual(stamp, uptime() - 2)

    def test_a_timed_out_session_is_deleted(self):
        token = new_session(stamp=uptime() - 7300)
        r = self.get(IF + "/type", "ifNum=1", session=token)
        self.assertEqual(r.out, FORBIDDEN)
        self.assertFalse(os.path.exists(os.path.join(SESSION_DIR, token)))


class Dispatch(SimTestCase):
    def test_unknown_routes_print_nothing(self):
        for path, method in [(IF + "/no-such-route", "GET"), (IF + "/NUM", "GET"), (IF + "/", "GET"),
                             (IF + "/cable-status", "GET"), (IF + "/link-state", "PATCH")]:
            with self.subTest(path=path, method=method):
                r = cgi(self.sim, method, path, "ifNum=1", session=self.token)
                self.assertEqual((r.out, r.status), (b"", 0))

    def test_methods_ignore_case(self):
        r = cgi(self.sim, "get", IF + "/link-state", "ifNum=1", session=self.token)
        self.assertEqual(r.out, read_reply(0, "if", {"linkState": "up"}))


class Registration(SimTestCase):
    def test_refused_registration_exits_255_with_nothing_printed(self):
        self.sim.fail("openapiClientRegister", -1)
        with LogWatch() as log:
            r = self.get(IF + "/link-state", "ifNum=1")
        self.assertEqual((r.out, r.status), (b"", 255))
        self.assertIn("(ERROR): quill_cgi: [initHandler:870] \nFailed to initialize RPC to OpEN. Exiting "
                      "(result = -1)\n", log.text)

    def test_service_that_answers_at_the_third_check(self):
        self.sim.fail("rpcclt_openapiConnectivityCheck", -1, 2)
        with LogWatch() as log:
            r = self.get(IF + "/link-state", "ifNum=2")
        self.assertReply(r, read_reply(0, "if", {"linkState": "up"}))
        warnings = re.findall(r"\(WARN\): quill_cgi: \[initHandler:882\] RPC call can fail until server starts. "
                              r"Keep trying \(result = -1\)\n", log.text)
        self.assertEqual(len(warnings), 2)

    def test_service_that_never_answers(self):
        # The one test that waits out the whole 18 seconds.
        self.sim.fail("rpcclt_openapiConnectivityCheck", -1)
        with LogWatch() as log:
            r = self.get(IF + "/link-state", "ifNum=2")
        self.assertEqual((r.out, r.status), (b"", 255))
        self.assertEqual(log.text.count("[initHandler:882] RPC call can fail until server starts."), 6)
        checks = [e for e in self.sim.journal() if e["call"] == "rpcclt_openapiConnectivityCheck"]
        self.assertEqual(len(checks), 7)


if __name__ == "__main__":
    main()
