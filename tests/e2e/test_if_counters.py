"""Interface counters, the counter and status summaries, counter resets,
the name lookup and the cable test, end to end against open-sim."""

import json
import os
import tempfile
import time

import harness
from harness import SimTestCase, read_reply, set_reply

IF = "/api/v2/interfaces/if"
CABLE = "/api/v2/interfaces/cable-status"

SINGLE_COUNTERS = [
    ("in-octets", "rpcclt_openapiIfInOctetsGet"),
    ("in-ucast-pkts", "rpcclt_openapiIfInUcastPktsGet"),
    ("in-discards", "rpcclt_openapiIfInDiscardsGet"),
    ("in-errors", "rpcclt_openapiIfInErrorsGet"),
    ("in-unknown-protos", "rpcclt_openapiIfInUnknownProtosGet"),
    ("out-octets", "rpcclt_openapiIfOutOctetsGet"),
    ("out-ucast-pkts", "rpcclt_openapiIfOutUcastPktsGet"),
    ("out-discards", "rpcclt_openapiIfOutDiscardsGet"),
    ("out-errors", "rpcclt_openapiIfOutErrorsGet"),
]

# Summary key -> the call it comes from, in reply order.
SUMMARY_COUNTERS = [
    ("total-bytes-received", "rpcclt_openapiIfInOctetsGet"),
    ("total-bytes-transmitted", "rpcclt_openapiIfOutOctetsGet"),
    ("unicast-packets-received", "rpcclt_openapiIfInUcastPktsGet"),
    ("unicast-packets-transmitted", "rpcclt_openapiIfOutUcastPktsGet"),
    ("total-receive-drops", "rpcclt_openapiIfInDiscardsGet"),
    ("total-transmit-drops", "rpcclt_openapiIfOutDiscardsGet"),
    ("total-packets-received-with-errors", "rpcclt_openapiIfInErrorsGet"),
    ("total-transmit-errors", "rpcclt_openapiIfOutErrorsGet"),
]

STATUS_CALLS = [
    "rpcclt_openapiIfSpeedModeGet", "rpcclt_openapiIfDuplexModeGet", "rpcclt_openapiIfEthernetHeaderSizeGet",
    "rpcclt_openapiIfDescrGet", "rpcclt_openapiIfSoftShutdownStateGet", "rpcclt_openapiIntfFECModeGet",
    "rpcclt_openapiIfLinkTrapGet", "rpcclt_openapiIntfExpandablePortConfigModeGet",
    "rpcclt_openapiIntfExpandablePortOperModeGet",
]

PHYSICAL = list(range(1, 29))


def status(ifNum, speed, header, descr, soft, fec, trap, config, oper):
    return {
        "interface": ifNum, "admin-state": "down", "link-state": "down", "auto-negotiate": "enable",
        "configured-speed": "unknown", "operational-speed": speed, "speed-mode": speed, "configured-duplex": "auto",
        "mtu": 0, "max-frame-size": 0, "ethernet-header-size": header, "description": descr, "soft-shutdown": soft,
        "fec-mode": fec, "link-trap": trap, "expandable-config-mode": config, "expandable-oper-mode": oper,
    }


def read_log():
    text = ""
    for name in (harness.LOG_FILE + ".old", harness.LOG_FILE):
        try:
            with open(name, errors="replace") as f:
                text += f.read()
        except FileNotFoundError:
            pass
    return text


class SingleCounters(SimTestCase):
    def test_each_route_reads_its_own_counter(self):
        for n, (route, call) in enumerate(SINGLE_COUNTERS):
            self.sim.set(call, "3", 1000 + n)
            self.assertReply(self.get(IF + "/" + route, "interface=3"), read_reply(0, "if", {"value": 1000 + n}))
            self.assertEqual(self.sim.calls(), [{"call": call, "in": [3]}], route)

    def test_interface_is_found_by_the_loose_lookup(self):
        self.sim.set("rpcclt_openapiIfOutErrorsGet", "7", 12)
        self.assertReply(self.get(IF + "/out-errors", "a=1&myinterface=7&interface=9"),
                         read_reply(0, "if", {"value": 12}))
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiIfOutErrorsGet", "in": [7]}])

    def test_failures_are_mapped_codes_under_the_group(self):
        cases = [(-22, 10003), (-28, 17002), (-29, 10023), (-1, 10000), (-30, 10000), (3, 10000)]
        for result, code in cases:
            self.sim.fail("rpcclt_openapiIfInErrorsGet", result, 1)
            self.assertReply(self.get(IF + "/in-errors", "interface=2"), read_reply(code, "if"))
        # No interface given: 0 reaches the switch, which knows no such port.
        self.assertReply(self.get(IF + "/in-discards", "ifNum=2"), read_reply(10023, "if"))
        self.assertReply(self.get(IF + "/out-octets", "interface=999"), read_reply(10023, "if"))

    def test_a_stored_value_overrides_the_traffic_model(self):
        self.sim.ctl("set", "rpcclt_openapiIfInOctetsGet", "3", "42")
        self.assertReply(self.get(IF + "/in-octets", "interface=3"), read_reply(0, "if", {"value": 42}))

    def test_counters_grow_with_traffic_and_clear_on_reset(self):
        def value(route, port):
            out = self.get(IF + "/" + route, "interface=%d" % port).out.decode()
            return json.loads(out.split("\r\n\r\n", 1)[1])["if"]["value"]

        first = value("in-octets", 1)
        self.assertGreater(first, 0)
        self.assertEqual(value("in-octets", 4), 0)  # no link, no traffic
        time.sleep(2.2)  # longer than the switch's statistics period
        self.assertGreater(value("in-octets", 1), first)

        self.assertReply(self.post(IF + "/counters/reset", "ifNum=1"), set_reply(0))
        self.assertEqual(self.sim.calls()[-1], {"call": "rpcclt_openapiInterfaceStatsReset", "in": [1]})
        for route, _ in SINGLE_COUNTERS:
            self.assertEqual(value(route, 1), 0, route)
        self.assertGreater(value("out-octets", 2), 0)

        self.assertReply(self.post(IF + "/all-counters/reset"), set_reply(0))
        self.assertEqual(self.sim.calls()[-1], {"call": "rpcclt_openapiResetAllInterfacesStats", "in": []})
        for port in (2, 3, 25):
            self.assertEqual(value("out-octets", port), 0, port)


class Resets(SimTestCase):
    def test_single_reset_needs_a_scanned_interface(self):
        for query in (None, "", "ifNum=0", "ifNum=", "xifNum=3", "ifnum=3"):
            self.assertReply(self.post(IF + "/counters/reset", query), set_reply(10003))
        self.assertEqual(self.sim.calls(), [])

    def test_reset_results_are_mapped(self):
        self.assertReply(self.post(IF + "/counters/reset", "ifNum=999"), set_reply(10023))
        self.sim.fail("rpcclt_openapiInterfaceStatsReset", -1)
        self.assertReply(self.post(IF + "/counters/reset", "a=b&ifNum=4"), set_reply(10000))
        self.sim.fail("rpcclt_openapiResetAllInterfacesStats", -28)
        self.assertReply(self.post(IF + "/all-counters/reset", "ifNum=4"), set_reply(17002))
        self.assertEqual(self.sim.calls(), [
            {"call": "rpcclt_openapiInterfaceStatsReset", "in": [999]},
            {"call": "rpcclt_openapiInterfaceStatsReset", "in": [4]},
            {"call": "rpcclt_openapiResetAllInterfacesStats", "in": []},
        ])


class CounterSummary(SimTestCase):
    def test_one_interface_in_key_order(self):
        expected = {"interface": 3}
        for n, (key, call) in enumerate(SUMMARY_COUNTERS):
            self.sim.set(call, "3", 100 * (n + 1))
            expected[key] = 100 * (n + 1)
        self.assertReply(self.get(IF + "/counters", "ifNum=3"), read_reply(0, "if", expected))
        self.assertEqual(self.sim.calls(), [{"call": c, "in": [3]} for _, c in SUMMARY_COUNTERS])

    def test_failing_counters_read_zero(self):
        for _, call in SUMMARY_COUNTERS:
            self.sim.set(call, "3", 7)
        self.sim.fail("rpcclt_openapiIfOutOctetsGet", -1)
        self.sim.fail("rpcclt_openapiIfInErrorsGet", -29)
        expected = {"interface": 3}
        for key, call in SUMMARY_COUNTERS:
            expected[key] = 0 if call in ("rpcclt_openapiIfOutOctetsGet", "rpcclt_openapiIfInErrorsGet") else 7
        self.assertReply(self.get(IF + "/counters", "ifNum=3"), read_reply(0, "if", expected))

    def test_all_physical_interfaces_without_or_with_zero_ifnum(self):
        for n, (_, call) in enumerate(SUMMARY_COUNTERS):
            self.sim.set(call, "*", n)
        expected = [dict([("interface", p)] + [(k, n) for n, (k, _) in enumerate(SUMMARY_COUNTERS)]) for p in PHYSICAL]
        for query in (None, "ifNum=0", "interface=5"):
            self.assertReply(self.get(IF + "/counters", query), read_reply(0, "if", expected))
        calls = self.sim.calls()
        self.assertEqual(calls[0], {"call": "openapiIfFirstGet", "in": [0]})
        self.assertEqual(calls[-1], {"call": "openapiIfNextGet", "in": [0, 28]})

    def test_no_first_interface_gives_an_empty_list_and_a_log_line(self):
        self.sim.fail("openapiIfFirstGet", -1)
        self.assertReply(self.get(IF + "/counters"), read_reply(0, "if", []))
        self.assertIn("[swapiIfFirstGet:4031] Bad return code trying to get first physical interface. result = -1",
                      read_log())


class StatusSummary(SimTestCase):
    def set_port(self, port, speed, header, descr, soft, fec, trap, config, oper):
        key = str(port)
        for call, value in zip(STATUS_CALLS, (speed, 1, header, descr, soft, fec, trap, config, oper)):
            self.sim.set(call, key, value)

    def test_one_interface_serves_the_late_status_route(self):
        self.set_port(26, 12, 22, "Storage array", 1, [4, 4], 1, 2, 7)
        self.assertReply(self.get(IF + "/status", "ifNum=26"),
                         read_reply(0, "if", status(26, "25000", 22, "Storage array", "enable", "rs", "enable",
                                                    "1x25G", "2x25G")))
        self.assertEqual(self.sim.calls(), [{"call": c, "in": [26]} for c in STATUS_CALLS])

    def test_failing_calls_fall_back(self):
        self.set_port(5, 16, 18, "Printer", 1, [4, 4], 1, 15, 0)
        self.assertReply(self.get(IF + "/status", "ifNum=5"),
                         read_reply(0, "if", status(5, "unknown", 18, "Printer", "enable", "rs", "enable", "none",
                                                    None)))
        for call in STATUS_CALLS:
            self.sim.fail(call, -1)
        # Speed preset to an unknown mode, FEC to auto; the rest read as off.
        self.assertReply(self.get(IF + "/status", "ifNum=5"),
                         read_reply(0, "if", status(5, "unknown", 0, "", "disable", "auto", "disable", None, None)))

    def test_all_physical_interfaces(self):
        self.sim.fail("openapiIfFirstGet", -1)
        self.assertReply(self.get(IF + "/status", "ifNum=0"), read_reply(0, "if", []))
        self.sim.ctl("reset")
        out = self.get(IF + "/status").out.decode()
        reply = json.loads(out.split("\r\n\r\n", 1)[1])
        self.assertEqual([s["interface"] for s in reply["if"]], PHYSICAL)


class NameLookup(SimTestCase):
    def lookup(self, query, entries):
        self.assertReply(self.get(IF + "/num", query), read_reply(0, "if", {"interfaces": entries}))

    def everything(self):
        return ([{"interface": "0/%d" % p, "number": p} for p in PHYSICAL] +
                [{"interface": "lag1", "number": 650}, {"interface": "lag2", "number": 651},
                 {"interface": "vlan1", "number": 700}, {"interface": "vlan10", "number": 701}])

    def test_all_lists_ports_lags_and_routing_vlans(self):
        for query in ("name=all", "name=ALL", "name=%41ll", None, "name=", "name=" + "x" * 128, "intfName=0%2F3"):
            self.lookup(query, self.everything())
        calls = self.sim.calls()
        vlan_calls = [c["in"][0] for c in calls if c["call"] == "rpcclt_openapiRtrVlanIntfIfNumGet"]
        self.assertEqual(vlan_calls, list(range(1, 4095)) * 7)

    def test_ports_without_unit_slot_port_are_left_out(self):
        self.sim.fail("rpcclt_openapiHashIntfUnitSlotPortGet", -1, 2)
        self.lookup("name=all", self.everything()[2:])

    def test_single_names(self):
        # The web pages encode "/" in the query: dispatch reads the route
        # name after the last "/" of the whole request URI.
        cases = [
            ("name=0%2F5", [{"interface": "0/5", "number": 5}]),
            ("a=1&name=0%2F28&b=2", [{"interface": "0/28", "number": 28}]),
            ("name=0%2f29", []),
            ("name=1%2F5", []),
            ("name=lag1", [{"interface": "lag1", "number": 650}]),
            ("name=lag3", [{"interface": "lag3", "number": 652}]),  # computed, not checked
            ("name=LAG2", [{"interface": "LAG2", "number": 651}]),
            ("name=lag0", []),
            ("name=vlan10", [{"interface": "vlan10", "number": 701}]),
            ("name=VLAN10", [{"interface": "VLAN10", "number": 701}]),
            ("name=vlan1", [{"interface": "vlan1", "number": 700}]),
            ("name=vlan20", []),
            ("name=vlan0", []),
            ("name=vlan4095", []),
            ("name=eth0", []),
        ]
        for query, entries in cases:
            self.lookup(query, entries)

    def test_vlan_calls_and_zero_numbers(self):
        self.sim.set("rpcclt_openapiRtrVlanIntfIfNumGet", "30", 0)
        self.lookup("name=vlan30", [{"interface": "vlan30", "number": 0}])
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiRtrVlanIntfIfNumGet", "in": [30]}])
        self.lookup("name=vlan4095", [])
        self.assertEqual(self.sim.calls(), [])

    def test_lag_without_any_lag(self):
        self.sim.fail("openapiIfFirstGet", -29)
        self.lookup("name=lag2", [])


class CableStatus(SimTestCase):
    def cable(self, query, code, data=None):
        self.assertReply(self.get(CABLE, query), read_reply(code, "cableStatus", data))

    def test_ports_of_the_default_switch(self):
        def result(status, known, shortest, longest, failure):
            return {"cableStatus": status, "lengthKnown": known, "shortestLength": shortest,
                    "longestLength": longest, "cableFailureLength": failure}

        self.cable("ifNum=1", 0, result("normal", 1, 30, 35, 0))
        self.cable("ifNum=4", 0, result("open", 0, 0, 0, 23))
        self.cable("ifNum=6", 0, result("nocable", 0, 0, 0, 0))
        for fibre in (25, 28):
            self.cable("ifNum=%d" % fibre, 0, result("untested", 0, 0, 0, 0))
        self.assertEqual(self.sim.calls()[0], {"call": "rpcclt_openapiCableStatusGet", "in": [1]})

    def test_failures(self):
        self.cable(None, 10023)
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiCableStatusGet", "in": [0]}])
        for result, code in ((-30, 10000), (-22, 10003), (-28, 17002)):
            self.sim.fail("rpcclt_openapiCableStatusGet", result, 1)
            self.cable("ifNum=3", code)

    def test_only_on_the_bare_path(self):
        out = self.get(IF + "/cable-status", "ifNum=1").out
        self.assertNotIn(b"cableStatus", out)
        self.assertEqual(self.sim.calls(), [])


if __name__ == "__main__":
    harness.main()
