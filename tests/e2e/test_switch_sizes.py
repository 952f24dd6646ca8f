"""The 52-port switch: every walk reaches every port, uplinks read 10G and carry traffic."""

import json

from harness import Sim, SimTestCase, cgi, main

PORTS = set(range(1, 53))
UPLINKS = range(49, 53)


def numbers(data, key="interface"):
    return {entry[key] for entry in data}


WALKS = [
    ("status of all ports", "if/status", "ifNum=0", lambda d: numbers(d) == PORTS),
    ("counters of all ports", "if/counters", None, lambda d: numbers(d) == PORTS),
    ("every interface's number", "if/num", "name=all", lambda d: PORTS <= numbers(d["interfaces"], "number")),
    ("uplinks at 10G", "if/status", "ifNum=0",
     lambda d: {e["operational-speed"] for e in d if e["interface"] in UPLINKS} == {"10000"}),
    ("a history walk on the last copper port", "green-pwr-sav-history/intf-next-entry", "intIfNum=48&sampleNo=30",
     lambda d: d["sampleNo"] == 31),
    ("the uplink that is up carries traffic", "if/in-octets", "interface=49", lambda d: d["value"] > 0),
]


class Switch52(SimTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.sim.stop()
        cls.sim = Sim(scenario="switch-52")

    def test_every_walk_reaches_every_port(self):
        for name, route, query, holds in WALKS:
            with self.subTest(name):
                r = cgi(self.sim, "GET", "/api/v2/interfaces/" + route, query, session=self.token)
                doc = json.loads(r.out.split(b"\r\n\r\n", 1)[1])
                self.assertEqual(doc["resp"]["respCode"], 0, r.out[:300])
                self.assertTrue(holds(next(v for k, v in doc.items() if k != "resp")), r.out[:300])


if __name__ == "__main__":
    main()
