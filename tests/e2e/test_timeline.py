"""Timelines through open-sim's command line and the program; what each event does is the unit tests'."""

import json
import os
import subprocess
import tempfile

from harness import OPEN_SIM, Sim, SimTestCase, cgi, command, main


def write(doc):
    fd, path = tempfile.mkstemp(suffix=".json")
    with os.fdopen(fd, "w") as f:
        f.write(doc if isinstance(doc, str) else json.dumps(doc))
    return path


# The refusals the ctl client makes itself, reading a file (the daemon's are the unit tests').
BAD = [
    ("a zero byte, which would hide what follows", '{"timeline": []}\n\0{}', "timeline file: a zero byte at line 2, column 1"),
    ("over the frame limit", " " * (64 << 20), "the file is too large to send: a request carries 64 MiB at most"),
]


class Timeline(SimTestCase):
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
        path = write({"timeline": [{"at": 5, "event": "link-down", "port": 99}]})
        r = subprocess.run(command(OPEN_SIM, "serve", "--socket", path + ".sock", "--scenario", path),
                           capture_output=True, text=True, timeout=30)
        os.unlink(path)
        self.assertEqual((r.returncode, r.stderr), (1, "open-sim: timeline event 1 (at 5): unknown port 99\n"))

    def test_the_clock_stands_at_zero_until_moved(self):
        sim = Sim(args=["--paused"])
        try:
            path = write({"timeline": [{"at": 0.5, "event": "link-down", "port": 1}]})
            sim.ctl("play", path)
            os.unlink(path)
            cgi(sim, "GET", "/api/v2/interfaces/if/link-state", "ifNum=1", session=self.token)
            self.assertEqual(sim.ctl("clock").stdout, b"paused 0.000\n")
        finally:
            sim.stop()

    def test_every_built_in_scenario_starts_by_name(self):
        listed = subprocess.run(command(OPEN_SIM, "scenarios"), capture_output=True, text=True, check=True).stdout
        names = [line.split()[0] for line in listed.splitlines()]
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
