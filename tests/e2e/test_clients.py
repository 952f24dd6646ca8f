"""Clients generated with the first page's commands and set-up code compile with `tsc --strict` beside a
program (clients/) that reads, writes, narrows, polls and is refused a write through lighttpd."""

import json
import os
import pathlib
import re
import shutil
import subprocess
import unittest

from harness import BUILD, ROUTE_DUMP, SESSION_DIR, Lighttpd, Sim, command, main, new_session

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.join(HERE, "..", "..")
MODULES = os.path.join(ROOT, "node_modules")
TSCONFIG = {"compilerOptions": {"strict": True, "target": "ES2022", "module": "commonjs", "moduleResolution": "node10",
                                "esModuleInterop": True, "outDir": "js", "types": ["node"]}}
# What every program prints on the default switch (28 ports): a read-only session polls and is refused.
OUTCOME = {"linkState": "up", "wrote": "Success", "missing": 10023, "ports": list(range(1, 29)), "polled": "up",
           "refused": 403}


def page_sections():
    """{GENERATOR (clients/GENERATOR.ts drives it): (command, {file: text})} from each "#### GENERATOR" section."""
    notes = pathlib.Path(ROOT, "tools", "client_notes.md").read_text()
    sections = {}
    for section in re.split(r"^#### ", notes, flags=re.M)[1:]:
        blocks = re.findall(r"^```(\w+)\n(.*?)^```$", section.split("\n## ")[0], re.M | re.S)
        command = next(text.split() for kind, text in blocks if kind == "sh")
        files = {text.split("\n", 1)[0][3:]: text for kind, text in blocks if kind != "sh"}
        sections[re.sub(r"\W+", "_", section.split()[0]).strip("_")] = (command, files)
    return sections


def generator(argv):
    """`npx PACKAGE ARGS` as the package's own command: two of them install a command named "openapi"."""
    [script] = json.loads(pathlib.Path(MODULES, argv[1], "package.json").read_text())["bin"].values()
    return ["node", os.path.join(MODULES, argv[1], script)] + argv[2:]


class GeneratedClients(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.work = os.path.join(os.path.abspath(BUILD), "clients")
        shutil.rmtree(cls.work, ignore_errors=True)
        shutil.copytree(os.path.join(HERE, "clients"), cls.work)
        printed = subprocess.run(command(ROUTE_DUMP, "--openapi"), capture_output=True, check=True).stdout
        pathlib.Path(cls.work, "openapi.json").write_bytes(printed)
        sections = page_sections()
        files = [name + ".ts" for name in sections]
        pathlib.Path(cls.work, "tsconfig.json").write_text(json.dumps(dict(TSCONFIG, files=files)))
        for name, text in (item for _, files in sections.values() for item in files.items()):
            pathlib.Path(cls.work, name).write_text(text)
        # The generators take seconds each, most of it starting Node: side by side.
        cls.running = {name: subprocess.Popen(generator(argv), cwd=cls.work, stdout=subprocess.PIPE,
                                              stderr=subprocess.STDOUT, text=True)
                       for name, (argv, _) in sections.items()}
        cls.generated = {name: p.communicate(timeout=300)[0] for name, p in cls.running.items()}
        cls.compiled = subprocess.run([os.path.join(MODULES, ".bin", "tsc"), "-p", "tsconfig.json"], cwd=cls.work,
                                      capture_output=True, text=True, timeout=600)

    def test_each_generator_generates_and_its_program_compiles_strictly(self):
        self.assertEqual({name: p.returncode for name, p in self.running.items()}, dict.fromkeys(self.running, 0),
                         "\n".join(self.generated.values()))
        self.assertEqual(self.compiled.returncode, 0, self.compiled.stdout + self.compiled.stderr)

    def test_each_client_reads_writes_narrows_polls_and_is_refused(self):
        if self.compiled.returncode != 0:
            self.skipTest("the programs did not compile")
        sim = Sim()
        web = Lighttpd(sim.socket)
        env = dict(os.environ, NODE_PATH=MODULES)
        try:
            sessions = {name: (new_session(), new_session("viewer", "ro")) for name in self.generated}
            files = {name: pathlib.Path(SESSION_DIR, ro).read_text() for name, (_, ro) in sessions.items()}
            running = {name: subprocess.Popen(["node", os.path.join(self.work, "js", name + ".js"),
                                               "http://127.0.0.1:%d" % web.port, rw, ro],
                                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=env)
                       for name, (rw, ro) in sessions.items()}
            done = {name: p.communicate(timeout=120) + (p.returncode,) for name, p in running.items()}
        finally:
            web.stop()
            sim.stop()
        for name, (out, err, status) in done.items():
            with self.subTest(client=name):
                self.assertEqual(status, 0, err)
                self.assertEqual(json.loads(out), OUTCOME)
                # The poll sent "Refresh", the write was refused before any refresh: the file is as written.
                self.assertEqual(pathlib.Path(SESSION_DIR, sessions[name][1]).read_text(), files[name])


if __name__ == "__main__":
    main()
