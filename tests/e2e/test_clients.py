"""Clients generated from the API document work as generated: @hey-api/openapi-ts's client and
openapi-typescript's types with openapi-fetch, type-checked strictly, each reading and writing the simulated
switch through lighttpd with the session token passed as the generated code offers it."""

import json
import os
import shutil
import subprocess
import unittest

from harness import BUILD, ROUTE_DUMP, Lighttpd, Sim, command, main, new_session

HERE = os.path.dirname(os.path.abspath(__file__))
TOOLS = os.path.join(HERE, "..", "..", "node_modules", ".bin")
TSCONFIG = {"compilerOptions": {"strict": True, "target": "ES2022", "module": "commonjs",
                                "moduleResolution": "node10", "esModuleInterop": True, "outDir": "js",
                                "types": ["node"]},
            "files": ["calls.ts"]}
OK = {"respCode": 0, "respMsg": "Success", "status": "success"}


class GeneratedClients(unittest.TestCase):
    def test_a_read_and_a_write_through_each_client(self):
        work = os.path.join(os.path.abspath(BUILD), "clients")
        shutil.rmtree(work, ignore_errors=True)
        os.makedirs(work)
        document = os.path.join(work, "openapi.json")
        with open(document, "wb") as f:
            f.write(subprocess.run(command(ROUTE_DUMP, "--openapi"), capture_output=True, check=True).stdout)
        shutil.copy(os.path.join(HERE, "clients", "calls.ts"), work)
        with open(os.path.join(work, "tsconfig.json"), "w") as f:
            json.dump(TSCONFIG, f)
        for step in (["openapi-ts", "-i", document, "-o", "heyapi"], ["openapi-typescript", document, "-o", "schema.d.ts"],
                     ["tsc", "-p", "tsconfig.json"]):
            r = subprocess.run([os.path.join(TOOLS, step[0])] + step[1:], cwd=work, capture_output=True, text=True,
                               timeout=300)
            self.assertEqual(r.returncode, 0, "%s:\n%s%s" % (step[0], r.stdout, r.stderr))
        sim = Sim()
        web = Lighttpd(sim.socket)
        try:
            r = subprocess.run(["node", os.path.join(work, "js", "calls.js"), "http://127.0.0.1:%d" % web.port,
                                new_session()], capture_output=True, text=True, timeout=60,
                               env=dict(os.environ, NODE_PATH=os.path.join(HERE, "..", "..", "node_modules")))
        finally:
            web.stop()
            sim.stop()
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertEqual(json.loads(r.stdout), {
            "heyRead": {"if": {"linkState": "up"}, "resp": OK}, "heyWrite": {"resp": OK},
            "fetchRead": {"if": {"admin-state": "down"}, "resp": OK}, "fetchWrite": {"resp": OK},
            "after": {"if": {"admin-state": "up"}, "resp": OK}})


if __name__ == "__main__":
    main()
