"""Port MAC locking: modes and limits, address walks, static entries and
802.1Qci stream bindings, end to end against the simulated switch."""

import json

import harness
from harness import SimTestCase, read_reply, set_reply

P = "/api/v2/interfaces/pml/"


def mac(text):
    """An address descriptor as the switch receives it."""
    return {"size": 18, "text": text}


def pml(code=0, data=None):
    return read_reply(code, "pml", data)


class ModesAndLimits(SimTestCase):
    def check_read(self, method, route, query, data, call, inputs):
        r = getattr(self, method)(P + route, query)
        self.assertReply(r, pml(0, data))
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiPml" + call, "in": inputs}])

    def test_reads_render_every_shape(self):
        cases = [
            ("get", "global-admin-mode", None, {"adminMode": "enable"}, "GlobalAdminModeGet", []),
            ("get", "static-addr-global-count", None, {"count": 3}, "StaticAddrGlobalCountGet", []),
            ("get", "vlan-admin-mode", None, {"adminMode": "enable"}, "VlanAdminModeGet", []),
            ("get", "next-valid-intf", "ifNum=8", {"nextIfNum": 9}, "NextValidIntfGet", [8]),
            ("post", "intf-is-valid", "ifNum=3", {"isValid": "true"}, "IntfIsValid", [3]),
            ("post", "intf-is-valid", "ifNum=650", {"isValid": "false"}, "IntfIsValid", [650]),
            ("get", "intf-mode", "ifNum=2", {"mode": "enable"}, "IntfModeGet", [2]),
            ("get", "intf-mode", "ifNum=4", {"mode": "disable"}, "IntfModeGet", [4]),
            ("get", "intf-dynamic-limit", "ifNum=2", {"limit": 32}, "IntfDynamicLimitGet", [2]),
            ("get", "intf-static-limit", "ifNum=2", {"limit": 20}, "IntfStaticLimitGet", [2]),
            ("get", "intf-dynamic-max-limit", "ifNum=2", {"limit": 4096}, "IntfDynamicMaxLimitGet", [2]),
            ("get", "intf-static-max-limit", "ifNum=2", {"limit": 64}, "IntfStaticMaxLimitGet", [2]),
            ("get", "intf-static-count", "ifNum=2", {"limit": 1}, "IntfStaticCountGet", [2]),
            ("get", "intf-violation-trap-mode", "ifNum=2", {"trapMode": "enable"}, "IntfViolationTrapModeGet", [2]),
            ("get", "intf-violation-ddisable-mode", "ifNum=3", {"mode": "enable"},
             "IntfViolationDDisableModeGet", [3]),
            ("get", "intf-sticky-mode", "ifNum=5", {"stickyMode": "enable"}, "IntfStickyModeGet", [5]),
            ("get", "intf-trap-frequency", "ifNum=2", {"interval": 30}, "IntfTrapFrequencyGet", [2]),
            ("get", "intf-age-time", "ifNum=2", {"ageTime": 60}, "IntfAgeTimeGet", [2]),
            ("get", "intf-last-violation-addr", "ifNum=3", {"macAddr": "00:1B:21:3A:4F:92", "vlanId": 10},
             "IntfLastViolationAddrGet", [3]),
            ("get", "intf-last-violation-addr", "ifNum=4", {"macAddr": "", "vlanId": 0},
             "IntfLastViolationAddrGet", [4]),
            ("get", "intf-dynamic-learned-addr-count", "ifNum=1", {"count": 3}, "IntfDynamicLearnedAddrCountGet", [1]),
            ("get", "intf-static-learned-addr-count", "ifNum=8", {"count": 1}, "IntfStaticLearnedAddrCountGet", [8]),
            ("get", "static-addr-count-by-vlan", "vlanId=10", {"count": 1}, "StaticAddrCountByVlanGet", [10]),
            ("get", "vlan-dynamic-limit", "vlanId=10", {"limit": 256}, "VlanDynamicLimitGet", [10]),
            ("get", "vlan-operational-limit", "vlanId=10", {"limit": 256}, "VlanOperationalLimitGet", [10]),
            ("get", "vlan-operational-limit", "vlanId=1", {"limit": 0}, "VlanOperationalLimitGet", [1]),
            ("get", "vlan-violation-ddisable-mode", "vlanId=10", {"mode": "false"}, "VlanViolationDDisableModeGet",
             [10]),
            ("get", "vlan-violation-trap-mode", "vlanId=10", {"mode": "true"}, "VlanViolationTrapModeGet", [10]),
            ("get", "vlan-mode", "vlanId=10", {"mode": 1}, "VlanModeGet", [10]),
            ("get", "intf-vlan-dynamic-limit", "ifNum=2&vlanId=10", {"limit": 4096}, "IntfVlanDynamicLimitGet",
             [2, 10]),
            ("get", "intf-vlan-dynamic-learned-addr-count", "vlanId=10&ifNum=25", {"count": 2},
             "IntfVlanDynamicLearnedAddrCountGet", [25, 10]),
        ]
        for method, route, query, data, call, inputs in cases:
            with self.subTest(route=route, query=query):
                self.check_read(method, route, query, data, call, inputs)

    def test_names_match_only_at_a_field_start(self):
        self.check_read("get", "intf-mode", "xifNum=5&ifNum=7", {"mode": "disable"}, "IntfModeGet", [7])
        self.check_read("get", "intf-vlan-dynamic-limit", "ifNum=3&xvlanId=9&vlanId=1", {"limit": 4096},
                        "IntfVlanDynamicLimitGet", [3, 1])

    def test_only_exactly_one_reads_enable_or_true(self):
        self.sim.set("rpcclt_openapiPmlIntfModeGet", "6", [2])
        self.sim.set("rpcclt_openapiPmlIntfIsValid", "6", [2])
        self.sim.set("rpcclt_openapiPmlVlanViolationTrapModeGet", "1", [2])
        self.assertReply(self.get(P + "intf-mode", "ifNum=6"), pml(0, {"mode": "disable"}))
        self.assertReply(self.post(P + "intf-is-valid", "ifNum=6"), pml(0, {"isValid": "false"}))
        self.assertReply(self.get(P + "vlan-violation-trap-mode", "vlanId=1"), pml(0, {"mode": "false"}))

    def test_lockable_interfaces_walk_ends_with_not_found(self):
        self.assertReply(self.get(P + "next-valid-intf"), pml(0, {"nextIfNum": 1}))
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiPmlNextValidIntfGet", "in": [0]}])
        self.assertReply(self.get(P + "next-valid-intf", "ifNum=27"), pml(0, {"nextIfNum": 28}))
        self.assertReply(self.get(P + "next-valid-intf", "ifNum=28"), pml(10023))

    def test_unknown_interface_or_vlan_reads_not_found_under_the_group(self):
        self.assertReply(self.get(P + "intf-mode", "ifNum=650"), pml(10023))
        self.assertReply(self.get(P + "intf-static-count"), pml(10023))
        self.assertEqual(self.sim.calls()[-1], {"call": "rpcclt_openapiPmlIntfStaticCountGet", "in": [0]})
        self.assertReply(self.get(P + "vlan-dynamic-limit", "vlanId=99"), pml(10023))

    def test_write_keys_are_the_odd_ones_and_ignore_case(self):
        # (route, query, body, value sent, getter, reply after)
        cases = [
            ("intf-mode", "ifNum=4", {"INTFMODE": "enable"}, 1, "intf-mode", {"mode": "enable"}),
            ("intf-mode", "ifNum=2", {"intfMode": "Enable"}, 0, "intf-mode", {"mode": "disable"}),
            ("intf-mode", "ifNum=2", {"mode": "enable"}, 0, "intf-mode", {"mode": "disable"}),
            ("intf-sticky-mode", "ifNum=4", {"stickyMode": "enable"}, 0, "intf-sticky-mode",
             {"stickyMode": "disable"}),
            ("intf-sticky-mode", "ifNum=4", {"Sticky": "enable"}, 1, "intf-sticky-mode", {"stickyMode": "enable"}),
            ("intf-violation-trap-mode", "ifNum=4", {"trapMode": "enable"}, 1, "intf-violation-trap-mode",
             {"trapMode": "enable"}),
            ("intf-violation-ddisable-mode", "ifNum=3", {"mode": True}, 0, "intf-violation-ddisable-mode",
             {"mode": "disable"}),
            ("vlan-violation-trap-mode", "vlanId=10", {"mode": "enable"}, 0, "vlan-violation-trap-mode",
             {"mode": "false"}),
            ("vlan-violation-ddisable-mode", "vlanId=1", {"mode": "true"}, 1, "vlan-violation-ddisable-mode",
             {"mode": "true"}),
        ]
        for route, query, body, value, getter, after in cases:
            with self.subTest(route=route, body=body):
                self.sim.ctl("reset")
                self.assertReply(self.put(P + route, query, body), set_reply(0))
                number = int(query.split("=")[1])
                self.assertEqual([c["in"] for c in self.sim.calls()], [[number, value]])
                self.assertReply(self.get(P + getter, query), pml(0, after))

    def test_global_switches_clear_on_anything_but_enable(self):
        self.assertReply(self.put(P + "global-admin-mode", None, {}), set_reply(0))
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiPmlGlobalAdminModeSet", "in": [0]}])
        self.assertReply(self.get(P + "global-admin-mode"), pml(0, {"adminMode": "disable"}))
        self.sim.journal()
        self.assertReply(self.put(P + "vlan-admin-mode", None, {"adminmode": "enable"}), set_reply(0))
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiPmlVlanAdminModeSet", "in": [1]}])

    def test_numbers_are_truncated_and_saturated(self):
        cases = [({"limit": -5}, 0, 0), ({"limit": "5"}, 0, 0), ({"limit": 7.9}, 7, 0), ({"LIMIT": 100}, 100, 0),
                 ({"limit": 5000000000}, 4294967295, 10003), ({}, 0, 0), ({"limit": None}, 0, 0)]
        for body, sent, code in cases:
            with self.subTest(body=body):
                self.assertReply(self.put(P + "intf-dynamic-limit", "ifNum=6", body), set_reply(code))
                self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiPmlIntfDynamicLimitSet", "in": [6, sent]}])
        self.assertReply(self.get(P + "intf-dynamic-limit", "ifNum=6"), pml(0, {"limit": 0}))

    def test_numeric_settings_reach_the_switch_and_read_back(self):
        cases = [
            ("intf-static-limit", "ifNum=4", {"limit": 10}, [4, 10], {"limit": 10}),
            ("intf-trap-frequency", "ifNum=4", {"interval": 300}, [4, 300], {"interval": 300}),
            ("intf-age-time", "ifNum=4", {"ageTime": 15}, [4, 15], {"ageTime": 15}),
            ("vlan-dynamic-limit", "vlanId=1", {"limit": 100}, [1, 100], {"limit": 100}),
            ("vlan-mode", "vlanId=1", {"mode": 1}, [1, 1], {"mode": 1}),
            ("intf-vlan-dynamic-limit", "ifNum=4&vlanId=10", {"limit": 8}, [4, 10, 8], {"limit": 8}),
        ]
        for route, query, body, inputs, after in cases:
            with self.subTest(route=route):
                self.assertReply(self.put(P + route, query, body), set_reply(0))
                self.assertEqual([c["in"] for c in self.sim.calls()], [inputs])
                self.assertReply(self.get(P + route, query), pml(0, after))
                self.sim.journal()
        # VLAN 1 now has VLAN-based locking on: its limit is operational.
        self.assertReply(self.get(P + "vlan-operational-limit", "vlanId=1"), pml(0, {"limit": 100}))

    def test_out_of_range_values_are_refused_by_the_switch(self):
        self.assertReply(self.put(P + "intf-static-limit", "ifNum=4", {"limit": 65}), set_reply(10003))
        self.assertReply(self.put(P + "intf-age-time", "ifNum=4", {"ageTime": 1441}), set_reply(10003))
        self.assertReply(self.put(P + "vlan-mode", "vlanId=10", {"mode": 2}), set_reply(10003))
        self.assertReply(self.put(P + "intf-mode", "ifNum=650", {"intfMode": "enable"}), set_reply(10023))

    def test_unparsable_bodies_answer_invalid_argument_without_a_call(self):
        routes = [("put", r) for r in ("global-admin-mode", "vlan-admin-mode", "intf-mode", "intf-dynamic-limit",
                                       "intf-static-limit", "intf-violation-trap-mode", "intf-violation-ddisable-mode",
                                       "intf-sticky-mode", "intf-trap-frequency", "intf-age-time", "vlan-dynamic-limit",
                                       "vlan-violation-ddisable-mode", "vlan-violation-trap-mode", "vlan-mode",
                                       "intf-vlan-dynamic-limit", "dot1qci-stream")]
        routes += [("post", r) for r in ("intf-static-entry-get-next", "intf-dynamic-entry-get-next",
                                         "vlan-dynamic-entry-get-next", "intf-static-entry")]
        for method, route in routes:
            for body in ("", "{not json"):
                with self.subTest(route=route, body=body):
                    r = getattr(self, method)(P + route, "ifNum=2&vlanId=1", body)
                    self.assertReply(r, set_reply(10003))
                    self.assertEqual(self.sim.calls(), [])

    def test_platform_failures_map_to_codes(self):
        cases = [(-1, 10000), (-22, 10003), (-24, 10011), (-28, 17002), (-29, 10023), (-30, 10000), (5, 10000)]
        for result, code in cases:
            with self.subTest(result=result):
                self.sim.fail("rpcclt_openapiPmlIntfAgeTimeGet", result, 1)
                self.assertReply(self.get(P + "intf-age-time", "ifNum=2"), pml(code))
                self.sim.fail("rpcclt_openapiPmlIntfAgeTimeSet", result, 1)
                self.assertReply(self.put(P + "intf-age-time", "ifNum=2", {"ageTime": 5}), set_reply(code))
                self.sim.fail("rpcclt_openapiPmlIntfStaticEntryGetFirst", result, 1)
                self.assertReply(self.post(P + "intf-static-entry-get-first", "ifNum=2"), pml(code))
                self.sim.fail("rpcclt_openapiPmlDot1qciStreamDelete", result, 1)
                self.assertReply(self.delete(P + "dot1qci-stream", "ifNum=2"), set_reply(code))


class AddressEntries(SimTestCase):
    def add(self, port, vlan, body, code=0):
        self.assertReply(self.post(P + "intf-static-entry", "ifNum=%d&vlanId=%d" % (port, vlan), body),
                         set_reply(code))

    def walk(self, kind, port):
        """Every entry of a per-interface walk, until the switch says the end."""
        entries = []
        r = self.post(P + "intf-%s-entry-get-first" % kind, "ifNum=%d" % port)
        if r.out == pml(10023):
            return entries
        first = json.loads(r.out[len(harness.JSON_HEADER):])["pml"]
        entries.append(first)
        last = (first["macAddr"], first["vlanId"])
        while True:
            r = self.post(P + "intf-%s-entry-get-next" % kind, "ifNum=%d&vlanId=%d" % (port, last[1]),
                          {"macAddr": last[0]})
            if r.out == pml(10023):
                return entries
            nxt = json.loads(r.out[len(harness.JSON_HEADER):])["pml"]
            entries.append(nxt)
            last = (nxt["nextMacAddr"], nxt["nextVlanId"])

    def test_add_walk_delete_walk(self):
        self.add(4, 1, {"macAddr": "00:11:22:33:44:55", "sticky": "true"})
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiPmlIntfStaticEntryAdd",
                                             "in": [4, mac("00:11:22:33:44:55"), 1, 1]}])
        self.add(4, 10, {"MacAddr": "00:0A:95:9D:68:16", "sticky": "enable"})
        self.assertEqual(self.sim.calls()[0]["in"], [4, mac("00:0A:95:9D:68:16"), 10, 0])

        self.assertReply(self.post(P + "intf-static-entry-get-first", "ifNum=4"),
                         pml(0, {"macAddr": "00:0A:95:9D:68:16", "vlanId": 10, "isSticky": "false"}))
        self.assertReply(self.post(P + "intf-static-entry-get-next", "ifNum=4&vlanId=10", {"macAddr": "00:0A:95:9D:68:16"}),
                         pml(0, {"nextMacAddr": "00:11:22:33:44:55", "nextVlanId": 1, "isnextEntrySticky": "true"}))
        self.assertEqual(self.sim.calls()[-1], {"call": "rpcclt_openapiPmlIntfStaticEntryGetNext",
                                                "in": [4, mac("00:0A:95:9D:68:16"), 10]})
        self.assertReply(self.post(P + "intf-static-entry-get-next", "ifNum=4&vlanId=1", {"macAddr": "00:11:22:33:44:55"}),
                         pml(10023))
        self.assertReply(self.get(P + "intf-static-count", "ifNum=4"), pml(0, {"limit": 2}))
        self.sim.journal()

        self.assertReply(self.delete(P + "intf-static-entry", "ifNum=4&macAddr=00%3A11%3A22%3A33%3A44%3A55&vlanId=1"),
                         set_reply(0))
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiPmlIntfStaticEntryDelete",
                                             "in": [4, mac("00:11:22:33:44:55"), 1]}])
        self.assertEqual([e["macAddr"] for e in self.walk("static", 4)], ["00:0A:95:9D:68:16"])
        self.assertReply(self.delete(P + "intf-static-entry", "ifNum=4&vlanId=10&macAddr=00:0A:95:9D:68:16"),
                         set_reply(0))
        self.assertEqual(self.walk("static", 4), [])
        self.assertReply(self.post(P + "intf-static-entry-get-first", "ifNum=4"), pml(10023))

    def test_duplicates_missing_entries_and_full_ports(self):
        self.add(4, 1, {"macAddr": "00:11:22:33:44:55"})
        self.add(4, 1, {"macAddr": "00:11:22:33:44:55"}, 10011)
        self.add(6, 1, {"macAddr": "00:11:22:33:44:55"}, 10011)  # one port per address and VLAN
        self.assertReply(self.delete(P + "intf-static-entry", "ifNum=4&vlanId=10&macAddr=00:11:22:33:44:55"),
                         set_reply(10023))
        self.assertReply(self.put(P + "intf-static-limit", "ifNum=4", {"limit": 1}), set_reply(0))
        self.add(4, 1, {"macAddr": "00:11:22:33:44:66"}, 10000)
        self.add(4, 1, {"macAddr": "01:00:5E:00:00:01"}, 10003)  # multicast
        self.add(4, 4094, {"macAddr": "00:11:22:33:44:77"}, 10003)

    def test_empty_and_long_addresses_are_passed_on_unchecked(self):
        self.add(4, 7, {}, 10003)
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiPmlIntfStaticEntryAdd",
                                             "in": [4, mac(""), 7, 0]}])
        self.add(4, 1, {"macAddr": "00:11:22:33:44:55:66", "sticky": "true"})
        self.assertEqual(self.sim.calls()[0]["in"], [4, mac("00:11:22:33:44:55"), 1, 1])
        self.assertReply(self.delete(P + "intf-static-entry", "ifNum=4&vlanId=1&macAddr=%zz01"), set_reply(10003))
        self.assertEqual(self.sim.calls()[0]["in"], [4, mac(""), 1])
        # "%" before "&" eats "&v": the text ends at the 0 byte, vlanId still scans.
        self.assertReply(self.delete(P + "intf-static-entry", "ifNum=4&macAddr=ab%&vlanId=1"), set_reply(10003))
        self.assertEqual(self.sim.calls()[0]["in"], [4, mac("ab"), 1])

    def test_next_with_an_empty_body_object_asks_after_the_empty_address(self):
        self.assertReply(self.post(P + "intf-static-entry-get-next", "ifNum=2", {}),
                         pml(0, {"nextMacAddr": "3C:EC:EF:10:20:31", "nextVlanId": 1, "isnextEntrySticky": "false"}))
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiPmlIntfStaticEntryGetNext",
                                             "in": [2, mac(""), 0]}])

    def test_dynamic_walks(self):
        self.assertEqual(self.walk("dynamic", 1), [
            {"macAddr": "00:1A:2B:3C:4D:01", "vlanId": 1},
            {"nextMacAddr": "00:1A:2B:3C:4D:02", "nextVlanId": 1},
            {"nextMacAddr": "F4:8E:38:11:22:33", "nextVlanId": 10},
        ])
        self.assertReply(self.post(P + "vlan-dynamic-entry-get-first", "ifNum=25"),
                         pml(0, {"macAddr": "00:25:90:AA:BB:01", "vlanId": 10}))
        self.assertReply(self.post(P + "vlan-dynamic-entry-get-next", "ifNum=25", {"macAddr": "00:25:90:AA:BB:01"}),
                         pml(0, {"nextMacAddr": "00:25:90:AA:BB:02", "vlanId": 10}))
        self.assertEqual(self.sim.calls()[-1], {"call": "rpcclt_openapiPmlVlanDynamicEntryGetNext",
                                                "in": [25, mac("00:25:90:AA:BB:01")]})
        self.assertReply(self.post(P + "vlan-dynamic-entry-get-next", "ifNum=25", {"macAddr": "00:25:90:AA:BB:02"}),
                         pml(10023))

    def test_dynamic_to_static_move(self):
        self.assertReply(self.get(P + "intf-dynamic-learned-addr-count", "ifNum=25"), pml(0, {"count": 2}))
        self.assertReply(self.post(P + "intf-dynamic-to-static-move", "ifNum=25"), set_reply(0))
        self.assertEqual(self.sim.calls()[-1], {"call": "rpcclt_openapiPmlIntfDynamicToStaticMove", "in": [25]})
        self.assertReply(self.get(P + "intf-dynamic-learned-addr-count", "ifNum=25"), pml(0, {"count": 0}))
        self.assertReply(self.get(P + "intf-static-learned-addr-count", "ifNum=25"), pml(0, {"count": 2}))
        self.assertReply(self.get(P + "static-addr-global-count"), pml(0, {"count": 5}))
        self.assertEqual([(e.get("macAddr") or e["nextMacAddr"]) for e in self.walk("static", 25)],
                         ["00:25:90:AA:BB:01", "00:25:90:AA:BB:02"])
        self.assertEqual(self.walk("dynamic", 25), [])
        self.assertIn("00:25:90:AA:BB:02", json.dumps(self.sim.dump()["model"]["pml"]["static"]))

    def test_stream_bindings(self):
        seeded = "ifNum=2&vlanId=1&macAddr=3C%3AEC%3AEF%3A10%3A20%3A31"
        self.assertReply(self.get(P + "dot1qci-stream", seeded), pml(0, {"streamID": 12}))
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiPmlDot1qciStreamGet",
                                             "in": [2, mac("3C:EC:EF:10:20:31"), 1]}])

        self.assertReply(self.put(P + "dot1qci-stream", "ifNum=1&vlanId=10", {"macAddr": "F4:8E:38:11:22:33",
                                                                              "streamID": 40.5}), set_reply(0))
        self.assertEqual(self.sim.calls(), [{"call": "rpcclt_openapiPmlDot1qciStreamSet",
                                             "in": [1, mac("F4:8E:38:11:22:33"), 10, 40]}])
        bound = "ifNum=1&vlanId=10&macAddr=F4:8E:38:11:22:33"
        self.assertReply(self.get(P + "dot1qci-stream", bound), pml(0, {"streamID": 40}))
        self.assertReply(self.delete(P + "dot1qci-stream", bound + "&streamID=41"), set_reply(10003))
        self.assertReply(self.delete(P + "dot1qci-stream", bound + "&streamID=40"), set_reply(0))
        self.assertEqual(self.sim.calls()[-1]["in"], [1, mac("F4:8E:38:11:22:33"), 10, 40])
        self.assertReply(self.get(P + "dot1qci-stream", bound), pml(10023))
        self.assertReply(self.delete(P + "dot1qci-stream", bound + "&streamID=40"), set_reply(10023))
        # Only a locked address takes a stream.
        self.assertReply(self.put(P + "dot1qci-stream", "ifNum=1&vlanId=1", {"macAddr": "00:11:22:33:44:55",
                                                                             "streamID": 3}), set_reply(10023))

    def test_deleting_an_entry_unbinds_its_stream(self):
        seeded = "ifNum=2&vlanId=1&macAddr=3C:EC:EF:10:20:31"
        self.assertReply(self.delete(P + "intf-static-entry", seeded), set_reply(0))
        self.assertReply(self.get(P + "dot1qci-stream", seeded), pml(10023))

    def test_set_answers_reach_custom_calls(self):
        self.sim.set("rpcclt_openapiPmlIntfStaticEntryGetFirst", "9", ["AA:BB:CC:DD:EE:FF", 20, 2])
        self.assertReply(self.post(P + "intf-static-entry-get-first", "ifNum=9"),
                         pml(0, {"macAddr": "AA:BB:CC:DD:EE:FF", "vlanId": 20, "isSticky": "false"}))
        self.sim.set("rpcclt_openapiPmlStaticAddrGlobalCountGet", "", [7])
        self.assertReply(self.get(P + "static-addr-global-count"), pml(0, {"count": 7}))


if __name__ == "__main__":
    harness.main()
