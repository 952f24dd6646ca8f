"""Timelines read through the program: each event kind shows in its route
at the moment the clock reaches it and not before, with the clock paused
and advanced instead of waited for; bad timelines are refused in one line
and leave the running switch as it was."""

import json
import os
import subprocess
import tempfile

from harness import OPEN_SIM, Sim, SimTestCase, cgi, command, main

WRAP = 1 << 32
UPLINK_BYTES_PER_SEC = 120000  # port 1's received traffic in the default scenario


def E(at, event, port, **fields):
    return dict(at=at, event=event, port=port, **fields)


def write(doc):
    fd, path = tempfile.mkstemp(suffix=".json")
    with os.fdopen(fd, "w") as f:
        f.write(doc if isinstance(doc, str) else json.dumps(doc))
    return path


def near_wrap(v):
    return WRAP - 5 * UPLINK_BYTES_PER_SEC <= v < WRAP


def R(name, events, route, key, before, after, at=10, setup=()):
    """One event kind: `route`'s `key` reads `before` just before `at` seconds and `after` at `at`; a
    callable checks instead of comparing."""
    return name, events, route, key, before, after, at, setup


RECOVER_BPDU = ("PUT", "if/ddisable-auto-recovery-cause", {"cause": "bpduguard", "mode": "enable"})
EVENTS = [
    R("link down", [E(10, "link-down", 1)], "if/link-state?ifNum=1", "linkState", "up", "down"),
    R("link up", [E(10, "link-up", 4)], "if/link-state?ifNum=4", "linkState", "down", "up"),
    R("transceiver removed", [E(10, "transceiver-removed", 25)], "if/link-state?ifNum=25", "linkState", "up", "down"),
    R("transceiver inserted", [E(10, "transceiver-inserted", 26, media="copper")], "if/active-media-type?ifNum=26",
      "mediaType", "fiber", "copper"),
    R("D-Disable trip", [E(10, "ddisable", 2, cause="bpduguard")], "if/opr-state?ifNum=2", "val",
      "port_enable", "port_diag_disable"),
    R("D-Disable recovery one interval later", [E(10, "ddisable", 2, cause="bpduguard")], "if/opr-state?ifNum=2",
      "val", "port_diag_disable", "port_enable", at=310, setup=[RECOVER_BPDU]),
    R("D-Disable countdown", [E(10, "ddisable", 2, cause="bpduguard")], "if/ddisable-auto-recovery-time-left",
      "timeLeft", 201, 200, at=110, setup=[RECOVER_BPDU]),
    R("PML violation, last address", [E(10, "pml-violation", 3, macs=["00:11:22:33:44:55", "00:11:22:33:44:66"],
                                        vlan=1)], "pml/intf-last-violation-addr?ifNum=3", "macAddr",
      "00:1B:21:3A:4F:92", "00:11:22:33:44:66"),
    R("PML violation on a port set to D-Disable", [E(10, "pml-violation", 3, macs=["00:11:22:33:44:55"], vlan=1)],
      "if/opr-state?ifNum=3", "val", "port_enable", "port_diag_disable"),
    R("counters reset", [E(10, "counters-reset", 1)], "if/in-octets?interface=1", "value", lambda v: v > 0, 0),
    R("counters wrap", [E(10, "counters-wrap", 1, inSeconds=5)], "if/in-octets?interface=1", "value", near_wrap,
      0, at=15),
    R("power reading", [E(10, "power", 4, milliwatts=700)], "green-pwr-estimates/intf-cur-pwr?intIfNum=4",
      "pwrConsumption", 95, 700),
    R("a power-saving sample every sample interval, without events", [],
      "green-pwr-sav-history/intf-next-entry?intIfNum=3&sampleNo=36", "sampleNo", 10023, 37, at=300),
]

# Every refusal the daemon makes is held in tests/unit/sim_timeline_test.cpp; these go through the ctl client
# reading a file.
BAD = [
    ("unknown port", {"timeline": [E(5, "link-down", 1), E(20, "link-up", 99)]},
     "timeline event 2 (at 20): unknown port 99"),
    ("broken JSON", '{"timeline": [\n  {"at": 5,, }]}', "timeline file: broken JSON at line 2, column 13"),
    ("a zero byte, which would hide what follows", '{"timeline": []}\n\0{}', "timeline file: a zero byte at line 2, column 1"),
]


class Timeline(SimTestCase):
    def setUp(self):
        super().setUp()
        self.sim.ctl("clock", "pause")

    def play(self, events):
        path = write({"timeline": events})
        self.sim.ctl("play", path)
        os.unlink(path)

    def read(self, route, key):
        """`key` of the reply's data, or the reply's code when it has none."""
        path, _, query = route.partition("?")
        r = self.request("GET", "/api/v2/interfaces/" + path, query)
        doc = json.loads(r.out.split(b"\r\n\r\n", 1)[1])
        if doc["resp"]["respCode"] != 0:
            return doc["resp"]["respCode"]
        return next(iter(v for k, v in doc.items() if k != "resp"))[key]

    def check(self, value, expected):
        if callable(expected):
            self.assertTrue(expected(value), value)
        else:
            self.assertEqual(value, expected)

    def test_each_event_shows_at_its_moment(self):
        for name, events, route, key, before, after, at, setup in EVENTS:
            with self.subTest(name):
                self.setUp()
                for method, path, body in setup:
                    self.assertIn(b'"respCode":\t0', self.request(method, "/api/v2/interfaces/" + path, body=body).out)
                self.play(events)
                self.sim.ctl("clock", "advance", at - 1)
                self.check(self.read(route, key), before)
                self.sim.ctl("clock", "advance", 1)
                self.check(self.read(route, key), after)

    def test_a_link_down_stops_its_counters(self):
        self.play([E(10, "link-down", 1), E(100, "link-up", 1)])
        self.sim.ctl("clock", "advance", 10)
        held = self.read("if/in-octets?interface=1", "value")
        self.sim.ctl("clock", "advance", 80)
        self.assertEqual(self.read("if/in-octets?interface=1", "value"), held)
        self.assertEqual(self.read("if/link-state?ifNum=1", "linkState"), "down")
        self.sim.ctl("clock", "advance", 20)
        self.assertEqual(self.read("if/in-octets?interface=1", "value"), held + 10 * UPLINK_BYTES_PER_SEC)

    def test_bad_timelines_are_refused_and_change_nothing(self):
        self.play([E(30, "link-down", 1)])
        for name, doc, line in BAD:
            with self.subTest(name):
                before = self.sim.ctl("dump").stdout
                path = write(doc)
                r = subprocess.run(command(OPEN_SIM, "ctl", "--socket", self.sim.socket, "play", path),
                                   capture_output=True, text=True)
                os.unlink(path)
                self.assertEqual((r.returncode, r.stderr), (2, "open-sim: " + line + "\n"))
                self.assertEqual(self.sim.ctl("dump").stdout, before)
        self.sim.ctl("clock", "advance", 30)
        self.assertEqual(self.read("if/link-state?ifNum=1", "linkState"), "down")

    def test_a_refused_clock_move_fails_through_the_client(self):
        r = subprocess.run(command(OPEN_SIM, "ctl", "--socket", self.sim.socket, "clock", "advance", "0x10"),
                           capture_output=True, text=True)
        self.assertEqual((r.returncode, r.stdout, r.stderr), (2, "", "open-sim: clock advance takes decimal seconds "
                                                                   "from 0 to 10000000000 (as 2.5), not \"0x10\"\n"))

    def test_a_scenario_with_a_bad_timeline_does_not_start(self):
        path = write({"timeline": [E(5, "link-down", 99)]})
        r = subprocess.run(command(OPEN_SIM, "serve", "--socket", path + ".sock", "--scenario", path),
                           capture_output=True, text=True, timeout=30)
        os.unlink(path)
        self.assertEqual((r.returncode, r.stderr), (1, "open-sim: timeline event 1 (at 5): unknown port 99\n"))


class Paused(SimTestCase):
    """`serve --paused`: the clock stands at zero through requests until the test moves it."""

    def test_the_clock_stands_at_zero_until_moved(self):
        sim = Sim(args=["--paused"])
        try:
            path = write({"timeline": [E(0.5, "link-down", 1)]})
            sim.ctl("play", path)
            os.unlink(path)
            r = cgi(sim, "GET", "/api/v2/interfaces/if/link-state", "ifNum=1", session=self.token)
            self.assertEqual(json.loads(r.out.split(b"\r\n\r\n", 1)[1])["if"]["linkState"], "up")
            self.assertEqual(sim.ctl("clock").stdout, b"paused 0.000\n")
            self.assertEqual(sim.ctl("clock", "next").stdout, b"0.500 link-down on port 1 (timeline event 1)\n")
            r = cgi(sim, "GET", "/api/v2/interfaces/if/link-state", "ifNum=1", session=self.token)
            self.assertEqual(json.loads(r.out.split(b"\r\n\r\n", 1)[1])["if"]["linkState"], "down")
        finally:
            sim.stop()


class ReadyScenarios(SimTestCase):
    """The scenarios built into open-sim, started by name."""

    def test_every_listed_scenario_starts(self):
        listed = subprocess.run(command(OPEN_SIM, "scenarios"), capture_output=True, text=True, check=True).stdout
        names = [line.split()[0] for line in listed.splitlines()]
        self.assertLessEqual({"default", "uplink-flap", "ddisable-recovery", "pml-violation"}, set(names))
        for name in names:
            with self.subTest(name):
                Sim(scenario=name).stop()

    def test_the_pml_violation_scenario_shuts_port_3_and_brings_it_back(self):
        sim = Sim(scenario="pml-violation")
        try:
            sim.ctl("clock", "pause")
            for advance, state in [(29, "port_enable"), (1, "port_diag_disable"), (119, "port_diag_disable"),
                                   (1, "port_enable")]:
                sim.ctl("clock", "advance", advance)
                r = cgi(sim, "GET", "/api/v2/interfaces/if/opr-state", "ifNum=3", session=self.token)
                self.assertEqual(json.loads(r.out.split(b"\r\n\r\n", 1)[1])["if"]["val"], state)
        finally:
            sim.stop()


if __name__ == "__main__":
    main()
