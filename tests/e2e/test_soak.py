"""Load through lighttpd on the loopback: 32 connections on one shared
administrator session, then checks of every reply, of what the switch kept,
of the session file and of the log. Also sessions ageing out mid-load, and
the switch service killed and started again under load.

SOAK_SECONDS sets the main run (default 60), SOAK_TIMEOUT_SECONDS the
time-out run (default 25)."""

import os
import shutil
import tempfile
import threading
import time
import unittest

import soak
from harness import MESSAGES, CLI_DIR, main, new_session, uptime
from soak import FORBIDDEN, JSON_TYPE, got

SOAK_SECONDS = float(os.environ.get("SOAK_SECONDS", "60"))
TIMEOUT_SECONDS = float(os.environ.get("SOAK_TIMEOUT_SECONDS", "25"))
# The CGI waits at most 18 s for the service; a longer outage shows both
# requests that give up and requests that the restart rescues.
KILL_AFTER = 3
DOWN_FOR = 21
UP_AFTER = 6
SLACK = 65536  # what other processes may append between a crossing and its rotation


def session_path(token):
    return os.path.join(soak.SESSION_DIR, token)


@unittest.skipUnless(shutil.which("lighttpd"), "lighttpd is not installed")
class SoakCase(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        os.makedirs(CLI_DIR, exist_ok=True)
        self.sim_dir = tempfile.mkdtemp(prefix="soak-sim-")
        self.sim = soak.OpenSim(os.path.join(self.sim_dir, "sim.sock"))
        self.server = soak.Lighttpd(self.sim.socket)
        self.admin = new_session()
        self.read_only = new_session("viewer", "ro")
        self.level = soak.LogLevel(7)
        self.log = soak.LogWatch()
        self.session_watch = soak.SessionWatch(self.admin)

    def tearDown(self):
        self.session_watch.finish()
        self.log.finish()
        self.level.restore()
        self.log.cleanup()
        self.server.stop()
        self.sim.stop()
        shutil.rmtree(self.sim_dir, ignore_errors=True)
        for token in (self.admin, self.read_only):
            if os.path.exists(session_path(token)):
                os.unlink(session_path(token))

    # --- checks every run shares ---------------------------------------------------------------------------------

    def finish_watches(self):
        self.session_watch.finish()
        self.log.finish()

    def check_no_hang(self, pairs):
        errors = [(req.kind, req.path, out.error) for req, out in pairs if out.error]
        self.assertEqual(errors, [], "requests without a reply within %d s" % soak.CLIENT_TIMEOUT)

    def check_shared_session(self, began):
        text = soak.read_session_locked(self.admin)
        parsed = soak.parse_session(text, self.admin)
        self.assertIsNotNone(parsed, "session file after the load: %r" % text)
        user, stamp, _ = parsed
        self.assertEqual(user, "admin")
        # sysinfo rounds the uptime up, /proc/uptime is read rounded down.
        self.assertTrue(began <= stamp <= uptime() + 1, (began, stamp, uptime()))
        self.assertEqual(self.session_watch.bad, [], "session file samples that do not parse")
        self.assertGreater(self.session_watch.samples, 0)

    def check_log(self):
        """Whole records only, and one rotation per 1 MiB crossing."""
        contents = self.log.contents()
        torn = [bad for data in contents for bad in soak.torn_records(data)]
        self.assertEqual(torn, [], "torn or interleaved log records")
        sizes = self.log.sizes()
        rotated, current = sizes[:-1], sizes[-1]
        rotations = len(rotated)
        early = [size for size in rotated if size <= soak.ROTATE_BYTES]
        self.assertEqual(early, [], "log generations rotated before reaching 1 MiB: a second rotation per crossing")
        late = [size for size in rotated if size > soak.ROTATE_BYTES + SLACK]
        self.assertEqual(late, [], "log generations far past 1 MiB before their rotation")
        self.assertLessEqual(current, soak.ROTATE_BYTES + SLACK)
        written = sum(len(data) for data in contents)
        crossings = sum(1 for size in rotated if size > soak.ROTATE_BYTES)
        self.assertEqual(rotations, crossings)
        return [("log bytes written", written), ("log records", sum(len(soak.RECORD_START.findall(d)) for d in contents)),
                ("log rotations (= 1 MiB crossings)", rotations), ("log generation sizes", sizes)]

    def check_sets(self, load, dump, since=0.0):
        """Every slot's last successful set (started at or after `since`) is what the switch holds."""
        wrong = []
        verified = 0
        for slot, (value, started) in load.last_set.items():
            if started < since:
                continue
            verified += 1
            stored = soak.stored_value(dump, slot)
            if stored != value:
                wrong.append((slot, value, stored))
        self.assertEqual(wrong, [], "sets the switch did not keep")
        return verified

    def check_journal(self, load, journal):
        """Every successful set reached the switch with the values sent."""
        self.assertLess(len(journal), 500000, "journal overflowed; shorten the run")
        seen = set()
        for e in journal:
            call, args = e["call"], e["in"]
            if call == "rpcclt_openapiIfDescrSet":
                seen.add(((args[0], "descr"), args[1]["text"]))
            elif call == "rpcclt_openapiIfMtuSizeSet":
                seen.add(((args[0], "mtu"), args[1]))
            elif call == "rpcclt_openapiIfAdminStateSet":
                seen.add(((args[0], "admin"), "enable" if args[1] == 1 else "disable"))
        missing = [(slot, value) for slot, value, _ in load.sets_ok if (slot, value) not in seen]
        self.assertEqual(missing, [], "successful sets missing from the journal")
        return len(load.sets_ok)


class MainRun(SoakCase):
    def test_shared_session_under_load(self):
        self.sim.ctl("journal", "--clear")
        began = uptime()
        load = soak.Load(self.server.port, self.admin, self.read_only)
        load.run(SOAK_SECONDS)
        self.finish_watches()
        pairs = load.outcomes
        self.check_no_hang(pairs)
        wrong = [(req.kind, req.method, req.path, req.headers, got(out)) for req, out in pairs if got(out) != req.expect]
        self.assertEqual(wrong[:5], [], "%d replies differ from what they must be" % len(wrong))
        verified = self.check_sets(load, self.sim.dump())
        in_journal = self.check_journal(load, self.sim.journal())
        self.check_shared_session(began)
        figures = self.check_log()
        counts = soak.tally(pairs, lambda req, out: "as expected" if got(out) == req.expect else "UNEXPECTED")
        soak.summary("main run: %g s, %d connections, one admin session" % (SOAK_SECONDS, soak.WORKERS), counts,
                     [("successful sets, all found in the journal", in_journal),
                      ("settings verified in the switch state", verified),
                      ("session file samples (all parseable)", self.session_watch.samples)] + figures)


class SessionTimeoutRun(SoakCase):
    def test_two_sessions_age_out_mid_load(self):
        now = uptime()
        # Their requests carry the refresh header, so nothing renews them;
        # they pass the 7200 s limit a third and two thirds into the run.
        first = int(TIMEOUT_SECONDS / 3)
        second = int(2 * TIMEOUT_SECONDS / 3)
        expiring = {"expire-admin": new_session("admin", stamp=expiring_stamp(now, first)),
                    "expire-rw": new_session("operator", "rw", stamp=expiring_stamp(now, second))}

        def extra(rng):
            kind = rng.choice(sorted(expiring))
            return soak.Request(kind, "GET", soak.IF + "link-state?ifNum=3", None,
                                {"session": expiring[kind], "refresh": "1"}, None)

        load = soak.Load(self.server.port, self.admin, self.read_only, extra)
        load.run(TIMEOUT_SECONDS)
        self.finish_watches()
        pairs = load.outcomes
        self.check_no_hang(pairs)
        answered = soak.ok_read({"linkState": "up"})
        for kind, token in expiring.items():
            mine = [out for req, out in pairs if req.kind == kind]
            self.assertTrue(all(got(out) in (answered, FORBIDDEN) for out in mine), kind)
            ok = [out for out in mine if got(out) == answered]
            refused = [out for out in mine if got(out) == FORBIDDEN]
            self.assertTrue(ok and refused, "%s: %d answered, %d refused" % (kind, len(ok), len(refused)))
            # Once refused, never answered again.
            first_refusal_end = min(out.end for out in refused)
            self.assertEqual([out for out in ok if out.start > first_refusal_end], [], kind)
            self.assertFalse(os.path.exists(session_path(token)), "%s: file not deleted" % kind)
        others = [(req.kind, req.path, got(out)) for req, out in pairs
                  if req.kind not in expiring and got(out) != req.expect]
        self.assertEqual(others[:5], [], "%d replies differ on the shared session" % len(others))
        verified = self.check_sets(load, self.sim.dump())
        self.check_shared_session(now)
        figures = self.check_log()
        timeouts = sum(data.count(b"[checkSessionX:86] Token timeout(")
                       for data in self.log.contents())
        self.assertGreaterEqual(timeouts, 2)

        def outcome(req, out):
            if req.kind in expiring:
                return "answered" if got(out) == answered else "403 after time-out"
            return "as expected" if got(out) == req.expect else "UNEXPECTED"

        soak.summary("time-out run: %g s, two sessions expiring at +%d s and +%d s" % (TIMEOUT_SECONDS, first, second),
                     soak.tally(pairs, outcome),
                     [("settings verified in the switch state", verified),
                      ("time-out log records", timeouts),
                      ("session file samples (all parseable)", self.session_watch.samples)] + figures)


class ServiceKillRun(SoakCase):
    def test_service_killed_and_restarted_under_load(self):
        began = uptime()
        load = soak.Load(self.server.port, self.admin, self.read_only)
        marks = {}

        def outage():
            time.sleep(KILL_AFTER)
            marks["kill"] = time.monotonic()
            load.forget_before = float("inf")
            self.sim.kill()
            time.sleep(DOWN_FOR)
            self.sim.start()
            marks["up"] = time.monotonic()
            load.forget_before = marks["up"]

        controller = threading.Thread(target=outage)
        controller.start()
        load.run(KILL_AFTER + DOWN_FOR + UP_AFTER)
        controller.join()
        self.finish_watches()
        pairs = load.outcomes
        self.check_no_hang(pairs)
        kill, up = marks["kill"], marks["up"]

        def outcome(req, out):
            if got(out) == req.expect:
                return "as expected"
            if out.end < kill or out.start > up + 1:
                return "UNEXPECTED"
            if out.status == 500 and out.start >= kill - 1 and out.end <= up + 1:
                return "500 service down"
            if out.status == 200 and out.ctype == JSON_TYPE and self.failure_envelope(out.body):
                return "failure envelope"
            if req.kind == "read" and out.status == 200 and out.start < up + 1:
                return "stale read across restart"
            return "UNEXPECTED"

        counts = soak.tally(pairs, outcome)
        unexpected = [(req.kind, req.path, out.start - kill, got(out)) for req, out in pairs
                      if outcome(req, out) == "UNEXPECTED"]
        self.assertEqual(unexpected[:5], [], "%d replies outside the failure behaviour" % len(unexpected))
        self.assertGreater(counts_of(counts, "500 service down"), 0, "no request outlasted the connectivity wait")
        after = [out for _, out in pairs if out.start > up + 1]
        self.assertTrue(after, "no traffic after the restart")
        verified = self.check_sets(load, self.sim.dump(), since=up)
        self.assertGreater(verified, 0)
        self.check_shared_session(began)
        figures = self.check_log()
        waits = sum(data.count(b"[initHandler:882] RPC call can fail until server starts") for data in self.log.contents())
        longest = max(out.end - out.start for _, out in pairs)
        soak.summary("kill run: open-sim killed at +%d s for %d s, lighttpd kept" % (KILL_AFTER, DOWN_FOR), counts,
                     [("requests started after the restart (all as expected)", len(after)),
                      ("settings set after the restart, verified", verified),
                      ("connectivity-wait warnings logged", waits),
                      ("longest request (s)", round(longest, 1))] + figures)

    @staticmethod
    def failure_envelope(body):
        return any(body in (soak.envelope(code, newline=True), soak.envelope(code, "if", None))
                   for code in MESSAGES if code)


def expiring_stamp(now, seconds_left):
    """A stored time stamp that passes the 7200 s limit after about `seconds_left`.
    On a machine up for less than two hours it is negative, which ages all the
    same; only 0 would mean "no time stamp", so it is stepped over."""
    stamp = now - 7200 + seconds_left
    return stamp + 1 if stamp == 0 else stamp


class LogRecordCheck(unittest.TestCase):
    """The checker the runs rely on: whole records pass, torn ones do not."""

    def test_records(self):
        p = b"2026-01-02 03:04:05.678 (DEBUG): quill_cgi: "
        e = b"2026-01-02 03:04:05.679 (ERROR): quill_cgi: "
        cases = [
            ("one line", p + b"[initHandler:873] Register RPC to OpEN success. (client name = x_1)\n", 0),
            ("refresh text spans lines", p + b"[checkSessionX:103] Token update to file. (admin\n12\ntok)\r\n", 0),
            ("unterminated message runs on", e + b"[cliModeCommandApply:441] openapiTxtCfgApply failed for interface "
             b"dot1p queue map" + e + b"[httpdProcessRequest:236] 403 Forbidden\n", 0),
            ("token with a line break", p + b"[checkSessionX:45] /tmp/session/a\nb file not exsits, ignore\n", 0),
            ("starts mid-line", b"ss = x_1)\n" + p + b"[httpdProcessRequest:236] 403 Forbidden\n", 1),
            ("two lines interleaved", p + b"[initHandler:873] Regis" + e + b"[httpdProcessRequest:236] 403\n", 1),
            ("cut short", p + b"[checkSessionX:103] Token update to file. (admin\n12\n", 1),
            ("a fragment after a record", p + b"[httpdProcessRequest:236] 403 Forbidden\n" + b"dden\n", 1),
            ("fragment inside a multi-line record", p + b"[checkSessionX:103] Token update to file. (admin\n12\n"
             b"tok)\r\nForbidden\n", 1),
            ("no tag", p + b"403 Forbidden\n", 1),
        ]
        for name, text, torn in cases:
            with self.subTest(name):
                self.assertEqual(len(soak.torn_records(text)), torn)


def counts_of(counts, outcome):
    return sum(n for (_, name), n in counts.items() if name == outcome)


if __name__ == "__main__":
    main()
