"""The API explorer of `make run` in headless Chromium calls the simulated switch and shows the replies."""

import json
import os
import shlex
import shutil
import subprocess
import unittest

from harness import BUILD, EXEC_WRAPPER, Lighttpd, Sim, main, new_session

HERE = os.path.dirname(os.path.abspath(__file__))
SITE = os.path.join(HERE, "..", "..", "scripts", "explorer-site.sh")


class Explorer(unittest.TestCase):
    def test_try_it_out_reads_and_writes_the_switch(self):
        if not shutil.which("chromium"):
            self.skipTest("Chromium is not installed and scripts/install-deps.sh browser could not install it")
        sim = Sim()
        web = Lighttpd(sim.socket)
        try:
            subprocess.run([SITE, BUILD, os.path.join(web.dir, "www"), new_session(), shlex.join(EXEC_WRAPPER)],
                           check=True)
            screenshot = os.path.join(os.path.abspath(BUILD), "explorer.png")
            r = subprocess.run(["node", os.path.join(HERE, "explorer.mjs"), "http://127.0.0.1:%d/api-docs/" % web.port,
                                screenshot], capture_output=True, text=True, timeout=180)
        finally:
            web.stop()
            sim.stop()
        self.assertEqual(r.returncode, 0, r.stderr)
        seen = json.loads(r.stdout)
        # nothing the page asks for on load fails, and nothing it runs complains
        self.assertEqual(seen["loadProblems"], [])
        shown = {step: json.loads(body) for step, body in seen["shown"].items()}
        self.assertIn("linkState", shown["linkState"]["if"])
        self.assertEqual(shown["before"]["if"], {"admin-state": "up"})
        self.assertEqual(shown["set"]["resp"]["respCode"], 0)
        self.assertEqual(shown["after"]["if"], {"admin-state": "down"})


if __name__ == "__main__":
    main()
