"""Every route that serves, called once on the default simulated switch, held against every_route.txt (its
OpEN calls and exact reply) and its operation's schema and promised line end. After a deliberate change,
IF_UPDATE_REFERENCE=1 writes the reference anew, to be read through in the diff before it is committed."""

import json
import os
import pathlib
import re
import subprocess

from harness import ROUTE_DUMP, SimTestCase, command, main, served_routes
from test_openapi import TAGS, check, ends_with_newline

REFERENCE = os.path.join(os.path.dirname(__file__), "every_route.txt")
QUERY = ("ifNum=3&intIfNum=3&vlanId=10&unit=1&interface=3&intf=3&prevIfNum=2&remIndex=1&timestamp=1&ifType=0"
         "&macAddr=00:1B:21:3A:4F:92&streamID=5&name=0%2F3")
# Body values by input kind, once per keyword a route compares; hand-written routes get every key they read.
BODY_VALUES = {"body": 7, "body-text": "rs-544", "body-buffer": "00:1B:21:3A:4F:92"}
KEYWORDS = ["enable", "true"]
HAND_WRITTEN_BODY = {"interval": 300, "cause": "bpduguard", "mode": "enable", "timeRange": "work",
                     "expandable-config-mode": "2x50G"}
# What grows with time on the simulated switch: traffic and the age of the statistics.
FROZEN = {"rpcclt_openapi" + name + "Get": "1000" for name in
          "IfInOctets IfOutOctets IfInUcastPkts IfOutUcastPkts IfInDiscards IfOutDiscards IfInErrors IfOutErrors".split()}
FROZEN["rpcclt_openapixGreenEthrEeeTimeSinceLastStatsResetGet"] = "[1, 2, 3, 4]"


def work_file(match):
    """A CLI work file's descriptor, without the process number in its name."""
    return '"text": "%s"' % re.sub(r"_\d+", "_N", match.group(1))


def bodies_of(method, detail):
    if method in ("GET", "DELETE"):
        return [None]
    if detail == "hand-written":
        return [HAND_WRITTEN_BODY]
    inputs = [word.split(":", 1) for word in detail.split()[1:]]
    values = [dict(BODY_VALUES, **{"body-word": keyword}) for keyword in KEYWORDS]
    if "body-word" not in detail:
        values = values[:1]
    return [{key: v[kind] for kind, key in inputs if kind in v} for v in values]


class EveryRoute(SimTestCase):
    def transcript(self):
        """The transcript's text, and each reply as (method, path, reply bytes)."""
        lines, replies = [], []
        # The switch as it stands at load: what moves with the clock stays.
        self.sim.ctl("clock", "pause")
        for key, detail in served_routes():
            _, method, path, name = key.split()
            self.sim.ctl("reset")
            for call, value in FROZEN.items():
                self.sim.ctl("set", call, "*", value)
            lines.append(key)
            for body in bodies_of(method, detail):
                reply = self.request(method, path + "/" + name, QUERY, body)
                replies.append((method, path + "/" + name, reply.out.split(b"\r\n\r\n", 1)[1]))
                calls = re.sub(r'"size": \d+, "text": "(/[^"]*)"', work_file, json.dumps(self.sim.calls()))
                lines += ["  calls " + calls, "  reply " + json.dumps(reply.out.decode(errors="replace"))]
        return "\n".join(lines) + "\n", replies

    def test_every_route_answers_as_recorded_and_documented(self):
        got, replies = self.transcript()
        if os.environ.get("IF_UPDATE_REFERENCE"):
            pathlib.Path(REFERENCE).write_text(got)
        self.assertEqual(got, pathlib.Path(REFERENCE).read_text())
        document = json.loads(subprocess.run(command(ROUTE_DUMP, "--openapi"), capture_output=True, check=True).stdout)
        ops = {(method.upper(), path): op for path, item in document["paths"].items() for method, op in item.items()}
        # One operation per route that serves, each under a name and a tag of its own.
        self.assertEqual(set(ops), {(method, path) for method, path, _ in replies})
        names = {op["operationId"] for op in ops.values()}
        self.assertEqual((len(names), {t for op in ops.values() for t in op["tags"]}), (212, TAGS))
        checked = []
        for method, path, out in replies:
            op, reply = ops[method, path], json.loads(out)
            said, code = op["responses"]["200"]["description"], reply["resp"]["respCode"]
            with self.subTest(operation=op["operationId"], code=code):
                self.assertEqual(out.endswith(b"\n"), ends_with_newline(said, code), said)
            checked.append({"operationId": op["operationId"], "reply": reply})
        status, report = check(document, checked)
        self.assertEqual(status, 0, report)
        self.assertIn("%d of %d replies match" % (len(checked), len(checked)), report)


if __name__ == "__main__":
    main()
