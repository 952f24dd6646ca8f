"""Clients generated from the API document as printed work as generated: five TypeScript generators, each
client type-checked with `tsc --strict` beside a small program written on it (clients/), which reads, writes,
narrows a failure from a success and a port's object from every port's list without a cast, polls with
"Refresh" and is refused a write, against the simulated switch through lighttpd, with the session set once
for the client."""

import json
import os
import shutil
import subprocess
import unittest

from harness import BUILD, ROUTE_DUMP, SESSION_DIR, Lighttpd, Sim, command, main, new_session

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.join(HERE, "..", "..")
TOOLS = os.path.join(ROOT, "node_modules", ".bin")
# Program (clients/NAME.ts, its client generated into gen/NAME/) and the generator's command line.
GENERATORS = {
    "heyapi": ["openapi-ts", "-i", "openapi.json", "-o", "gen/heyapi"],
    "openapi_fetch": ["openapi-typescript", "openapi.json", "-o", "gen/openapi_fetch/schema.d.ts"],
    "swagger_typescript_api": ["swagger-typescript-api", "generate", "-p", "openapi.json", "-o", "gen/swagger_typescript_api"],
    "orval": ["orval", "-i", "openapi.json", "-o", "gen/orval/api.ts"],
    # Its enums would be named after keys such as "admin-state", which are no identifiers. Its command is
    # named "openapi", as redocly's is: which one node_modules/.bin holds depends on the install order.
    "openapi_typescript_codegen": ["openapi-typescript-codegen/bin/index.js", "-i", "openapi.json", "-o", "gen/openapi_typescript_codegen",
                                   "--useUnionTypes"],
}
TSCONFIG = {"compilerOptions": {"strict": True, "target": "ES2022", "module": "commonjs", "moduleResolution": "node10",
                                "esModuleInterop": True, "outDir": "js", "types": ["node"]},
            "files": [name + ".ts" for name in GENERATORS]}
# What every program prints: port 3 is up, the write succeeds, port 999 is no port, the default simulated
# switch has 28 physical ports, the read-only session may poll and may not write.
OUTCOME = {"linkState": "up", "wrote": "Success", "missing": 10023, "ports": list(range(1, 29)), "polled": "up",
           "refused": 403}


def tool(name):
    if name.endswith(".js"):
        return os.path.join(ROOT, "node_modules", name)
    return os.path.join(TOOLS, name)


class GeneratedClients(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.work = os.path.join(os.path.abspath(BUILD), "clients")
        shutil.rmtree(cls.work, ignore_errors=True)
        shutil.copytree(os.path.join(HERE, "clients"), cls.work)
        with open(os.path.join(cls.work, "openapi.json"), "wb") as f:
            f.write(subprocess.run(command(ROUTE_DUMP, "--openapi"), capture_output=True, check=True).stdout)
        with open(os.path.join(cls.work, "tsconfig.json"), "w") as f:
            json.dump(TSCONFIG, f)
        # The generators take seconds each, most of it starting Node: side by side.
        running = {name: subprocess.Popen([tool(argv[0])] + argv[1:], cwd=cls.work, stdout=subprocess.PIPE,
                                          stderr=subprocess.STDOUT, text=True)
                   for name, argv in GENERATORS.items()}
        cls.generated = {name: (p.wait(timeout=300), p.stdout.read()) for name, p in running.items()}
        for p in running.values():
            p.stdout.close()
        cls.compiled = subprocess.run([tool("tsc"), "-p", "tsconfig.json"], cwd=cls.work, capture_output=True,
                                      text=True, timeout=600)

    def test_each_generator_generates_and_its_program_compiles_strictly(self):
        for name, (status, output) in self.generated.items():
            self.assertEqual(status, 0, "%s:\n%s" % (name, output))
        self.assertEqual(self.compiled.returncode, 0, self.compiled.stdout + self.compiled.stderr)

    def test_each_client_reads_writes_narrows_polls_and_is_refused(self):
        if self.compiled.returncode != 0:
            self.skipTest("the programs did not compile")
        sim = Sim()
        web = Lighttpd(sim.socket)
        env = dict(os.environ, NODE_PATH=os.path.join(ROOT, "node_modules"))
        try:
            sessions = {name: (new_session(), new_session("viewer", "ro")) for name in GENERATORS}
            files = {name: self.session_file(ro) for name, (_, ro) in sessions.items()}
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
                # The poll sent "Refresh" and the refused write came before any refresh: the read-only
                # session's file is as the login wrote it.
                self.assertEqual(self.session_file(sessions[name][1]), files[name])

    @staticmethod
    def session_file(token):
        with open(os.path.join(SESSION_DIR, token)) as f:
            return f.read()


if __name__ == "__main__":
    main()
