"""Timelines through open-sim's own command line and the program: refusals reach the client and the shell, a
paused clock holds, and the built-in scenarios start and play out. What each event does to the switch is held
in the simulator's unit tests."""

import json
import os
import subprocess
import tempfile

from harness import OPEN_SIM, Sim, SimTestCase, cgi, command, main


def E(at, event, port, **fields):
    return dict(at=at, event=event, port=port, **fields)


def write(doc):
    fd, path = tempfile.mkstemp(suffix=".json")
    with os.fdopen(fd, "w") as f:
        f.write(doc if isinstance(doc, str) else json.dumps(doc))
    return path


# Every refusal the daemon makes is held in tests/unit/sim_timeline_test.cpp; these the ctl client makes
# itself, reading a file.
BAD = [
    ("a zero byte, which would hide what follows", '{"timeline": []}\n\0{}', "timeline file: a zero byte at line 2, column 1"),
    ("over the frame limit", " " * (64 << 20), "the file is too large to send: a request carries 64 MiB at most"),
]


class Timeline(SimTestCase):
    def test_a_refused_clock_move_fails_through_the_client(self):
        r = subprocess.run(command(OPEN_SIM, "ctl", "--socket", self.sim.socket, "clock", "advance", "0x10"),
                           capture_output=True, text=True)
        self.assertEqual((r.returncode, r.stdout, r.stderr), (2, "", "open-sim: clock advance takes decimal seconds "
                                                                   "from 0 to 10000000000 (as 2.5), not \"0x10\"\n"))

    def test_a_file_the_client_refuses_changes_nothing(self):
        self.sim.ctl("clock", "pause")
        before = self.sim.ctl("dump").stdout
        for name, doc, line in BAD:
            with self.subTest(name):
                path = write(doc)
                r = subprocess.run(command(OPEN_SIM, "ctl", "--socket", self.sim.socket, "play", path),
                                   capture_output=True, text=True)
                os.unlink(path)
                self.assertEqual((r.returncode, r.stderr), (2, "open-sim: " + line + "\n"))
        self.assertEqual(self.sim.ctl("dump").stdout, before)

    def test_a_scenario_with_a_bad_timeline_does_not_start(self):
        path = write({"timeline": [E(5, "link-down", 99)]})
        r = subprocess.run(command(OPEN_SIM, "serve", "--socket", path + ".sock", "--scenario", path),
                           capture_output=True, text=True, timeout=30)
        os.unlink(path)
        self.assertEqual((r.returncode, r.stderr), (1, "open-sim: timeline event 1 (at 5): unknown port 99\n"))

    def test_the_clock_stands_at_zero_until_moved(self):
        """`serve --paused`: the clock stands at zero through requests until the test moves it."""
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

    def test_every_built_in_scenario_starts_by_name(self):
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
