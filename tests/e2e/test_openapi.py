"""The OpenAPI document route-dump prints: lint-clean, named for generators, true to the switch's ranges."""

import json
import os
import pathlib
import re
import subprocess
import tempfile
import urllib.parse

from harness import ROUTE_DUMP, SimTestCase, command, main

HERE = os.path.dirname(os.path.abspath(__file__))
CHECK = os.path.join(HERE, "openapi_check.mjs")
TOOLS = os.path.join(HERE, "..", "..", "node_modules", ".bin")
TAGS = {"green Ethernet", "EEE", "power estimates", "power-saving history", "interfaces", "MAC locking", "cable",
        "interface application"}


def unique_keys(pairs):
    """A JSON object whose keys are all different: a parser keeps only one of twins, a browser's YAML parser none."""
    keys = [k for k, _ in pairs]
    if len(set(keys)) != len(keys):
        raise ValueError("a key twice in one object: %s" % keys)
    return dict(pairs)


def ref(name):
    return {"$ref": "#/components/schemas/" + name}


def operations(document):
    for path, item in document["paths"].items():
        for method, op in item.items():
            yield method.upper(), path, op


def example_request(op):
    query = urllib.parse.urlencode([(p["name"], p["example"]) for p in op["parameters"] if "$ref" not in p],
                                   safe=":")
    body = op.get("requestBody", {}).get("content", {}).get("application/json", {}).get("example")
    return query or None, body


def ends_with_newline(description, code):
    return not (code == 0 and description.startswith("On success")) and "ending with a newline" in description


def check(document, replies):
    """Runs the validator over the document and the replies: (exit status, output)."""
    with tempfile.TemporaryDirectory() as d:
        paths = [os.path.join(d, "openapi.json"), os.path.join(d, "replies.json")]
        for path, value in zip(paths, (document, replies)):
            pathlib.Path(path).write_text(json.dumps(value))
        r = subprocess.run(["node", CHECK] + paths, capture_output=True, text=True, timeout=120)
    return r.returncode, r.stdout + r.stderr


def lint(printed):
    with tempfile.TemporaryDirectory() as d:
        path = os.path.join(d, "openapi.json")
        pathlib.Path(path).write_bytes(printed)
        redocly = subprocess.run([os.path.join(TOOLS, "redocly"), "lint", "--format=json", path],
                                 capture_output=True, text=True, timeout=120)
        report = os.path.join(d, "spectral.json")
        subprocess.run([os.path.join(TOOLS, "spectral"), "lint", "-r", os.path.join(HERE, "spectral.yaml"), "-f", "json",
                        "-o", report, path], capture_output=True, timeout=120)
        spectral = json.loads(pathlib.Path(report).read_text())
    found = [("redocly", p["ruleId"]) for p in json.loads(redocly.stdout)["problems"]]
    return found + [("spectral", p["code"]) for p in spectral]


class OpenApiDocument(SimTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.printed = subprocess.run(command(ROUTE_DUMP, "--openapi"), capture_output=True, check=True).stdout
        cls.document = json.loads(cls.printed, object_pairs_hook=unique_keys)

    def test_linters_find_nothing_in_the_document_as_printed(self):
        self.assertNotIn(b"\t", self.printed)  # YAML readers refuse tabs
        self.assertEqual(lint(self.printed), [])

    def test_every_reply_is_a_model_named_after_its_route(self):
        """A read's reply is STEMReply: STEMSuccess (STEM under the group) or FailureReply; every object and
        choice below is a model of its own, which generated clients name their types after."""
        schemas = self.document["components"]["schemas"]
        for method, path, op in operations(self.document):
            name = op["responses"]["200"]["content"]["application/json"]["schema"]["$ref"].rsplit("/", 1)[1]
            stem = re.sub("^[a-z]+", "", op["operationId"])
            # No session parameter: it would override the client's own session with each call's argument.
            self.assertEqual([p.get("$ref", p.get("name")) for p in op["parameters"] if p.get("in") != "query"],
                             ["#/components/parameters/Refresh"] if method == "GET" else [], op["operationId"])
            if name != stem + "Reply":
                self.assertIn(name, ("WriteReply", "UnsupportedFeatureReply"), op["operationId"])
                continue
            self.assertEqual(schemas[name]["oneOf"], [ref(stem + "Success"), ref("FailureReply")], name)
            success = schemas[stem + "Success"]["properties"]
            self.assertEqual(success.pop("resp"), ref("Resp0"), name)
            self.assertEqual(list(success.values()), [ref(stem)], name)

        def inline(schema, root):
            """Objects and choices below a model that are no models themselves; values without one type."""
            if isinstance(schema, list):
                return [x for s in schema for x in inline(s, False)]
            if not isinstance(schema, dict):
                return []
            found = [schema] if not root and (schema.get("type") == "object" or "oneOf" in schema) else []
            found += [schema] if "const" in schema or ("enum" in schema and "type" not in schema) else []
            found += [schema] if isinstance(schema.get("type"), list) else []  # a generator drops its null
            return found + [x for key, s in schema.items() if key != "enum" for x in inline(s, False)]
        self.assertEqual([(n, s) for n, model in schemas.items() for s in inline(model, True)], [])

    def code(self, method, path, query, body):
        out = self.request(method, path, query, body).out
        return json.loads(out.split(b"\r\n\r\n", 1)[1])["resp"]["respCode"]

    def test_the_switch_takes_each_body_range_and_refuses_just_outside_it(self):
        bounded = []
        for method, path, op in operations(self.document):
            media = op.get("requestBody", {}).get("content", {}).get("application/json", {})
            for key, schema in media.get("schema", {}).get("properties", {}).items():
                low, high = schema.get("minimum"), schema.get("maximum")
                if low is None or (low, high) == (0, 4294967295):
                    continue
                query, body = example_request(op)
                if self.code(method, path, query, body) != 0:
                    continue  # the example alone is refused (a stream on an address the port has not locked)
                bounded.append(op["operationId"])
                for value, taken in ((low, True), (high, True), (low - 1, False), (high + 1, False)):
                    if value < 0:
                        continue
                    code = self.code(method, path, query, dict(body, **{key: value}))
                    self.assertEqual(code == 0, taken, (op["operationId"], key, value, code))
        self.assertTrue({"putIfMaxFrameSize", "putPmlIntfAgeTime", "putInterfaceAppPortRgbLedColorBrightness",
                         "putGreenPwrSavHistoryEthrEeeLpiHistoryIntfSampleInterval",
                         "putIfDdisableAutoRecoveryInterval"} <= set(bounded), bounded)


if __name__ == "__main__":
    main()
