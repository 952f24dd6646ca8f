"""Port attributes, settings-page resources, port expansion and FEC:
exact replies, the OpEN calls behind them, and state kept by the switch."""

import json

from harness import SimTestCase, main, read_reply, set_reply

IF = "/api/v2/interfaces/if"
FAILURES = [(-22, 10003), (-28, 17002), (-29, 10023), (-1, 10000)]


def call(name, *inputs):
    return {"call": name, "in": list(inputs)}


class SingleAttributeReads(SimTestCase):
    def test_each_read_for_typical_ports(self):
        cases = [
            ("speed-mode", "ifNum=3", {"speed": "portctrl_portspeed_full_1000sx"}, call("rpcclt_openapiIfSpeedModeGet", 3)),
            ("duplex-mode", "ifNum=3", {"duplex_mode": "full"}, call("rpcclt_openapiIfDuplexModeGet", 3)),
            ("duplex", "ifNum=3", {"duplex_mode": "full"}, call("openapiIfDuplexGet", 3)),
            ("duplex", "ifNum=4", {"duplex_mode": "unknown"}, call("openapiIfDuplexGet", 4)),
            ("ethernet-header-size", "ifNum=3", {"headerSize": 18}, call("rpcclt_openapiIfEthernetHeaderSizeGet", 3)),
            ("max-frame-size", "ifNum=3", {"maxFrameSize": 1518}, call("openapiIfMaxFrameSizeGet", 3)),
            ("max-frame-size", "ifNum=25", {"maxFrameSize": 9216}, call("openapiIfMaxFrameSizeGet", 25)),
            ("capabilities", "ifNum=3", {"portCapability": 0x101F}, call("rpcclt_openapiIfCapabilitiesGet", 3)),
            ("disable-reason", "ifNum=7", {"reason": "bpduguard"}, call("rpcclt_openapiIfDisableReasonGet", 7)),
            ("disable-reason", "ifNum=3", {"reason": "none"}, call("rpcclt_openapiIfDisableReasonGet", 3)),
            ("active-media-type", "ifNum=3", {"mediaType": "copper"}, call("rpcclt_openapiIfActiveMediaTypeGet", 3)),
            ("active-media-type", "ifNum=25", {"mediaType": "fiber"}, call("rpcclt_openapiIfActiveMediaTypeGet", 25)),
            ("pause-status", "ifNum=3", {"rxPauseAllowed": "true", "txPauseAllowed": "true"},
             call("rpcclt_openapiIfPauseStatusGet", 3)),
            ("pause-status", "ifNum=4", {"rxPauseAllowed": "false", "txPauseAllowed": "false"},
             call("rpcclt_openapiIfPauseStatusGet", 4)),
            ("special-port-type", "ifNum=21", {"specialType": "trunk_member"},
             call("rpcclt_openapiIfSpecialPortTypeGet", 21)),
            ("special-port-type", "ifNum=3", {"specialType": "normal"}, call("rpcclt_openapiIfSpecialPortTypeGet", 3)),
            ("exp-port-root-port", "ifNum=27", {"rootSlot": 0, "rootPort": 25},
             call("rpcclt_openapiIfExpPortRootPortGet", 27)),
            ("exp-port-oper-mode-lane-count", "ifNum=25", {"laneCount": 1},
             call("rpcclt_openapiIfExpPortOperModeLaneCountGet", 25)),
            ("exp-port-first-peer", "ifNum=25", {"peerIfNum": 26}, call("rpcclt_openapiIfExpPortFirstPeerGet", 25)),
            ("port-speed-lane-count", "ifNum=3", {"laneCount": 1}, call("rpcclt_openapiIfPortSpeedLaneCountGet", 3)),
            ("intf-expandable-port-next", "prevIfNum=0", {"nextIfNum": 25},
             call("rpcclt_openapiIntfExpandablePortNextGet", 0)),
            ("intf-expandable-port-next", "prevIfNum=26", {"nextIfNum": 27},
             call("rpcclt_openapiIntfExpandablePortNextGet", 26)),
            ("intf-expandable-port-mode-supported", "expandPortMode=quad_40g", {"isExpandedModeSupported": "true"},
             call("rpcclt_openapiIntfExpandablePortModeSupportedGet", 4)),
            ("intf-expandable-port-mode-supported", "expandPortMode=dual_25g", {"isExpandedModeSupported": "false"},
             call("rpcclt_openapiIntfExpandablePortModeSupportedGet", 7)),
            ("intf-expandable-port-mode-supported", "expandPortMode=Quad_40g", {"isExpandedModeSupported": "false"},
             call("rpcclt_openapiIntfExpandablePortModeSupportedGet", 0)),
            ("intf-expandable-port-mode-supported", "", {"isExpandedModeSupported": "false"},
             call("rpcclt_openapiIntfExpandablePortModeSupportedGet", 0)),
            ("intf-expandable-port-config-mode", "ifNum=25", {"expandPortMode": "single_25g"},
             call("rpcclt_openapiIntfExpandablePortConfigModeGet", 25)),
            ("intf-expandable-port-config-mode", "ifNum=3", {"expandPortMode": "none"},
             call("rpcclt_openapiIntfExpandablePortConfigModeGet", 3)),
            ("intf-expandable-port-oper-mode", "ifNum=26", {"expandPortMode": "single_25g"},
             call("rpcclt_openapiIntfExpandablePortOperModeGet", 26)),
            ("intf-expandable-mode-peers-get-by-mode", "ifNum=25",
             {"expandPortMode": "single_25g", "peerIntfs": "26,27,28", "peerCount": 3},
             call("rpcclt_openapiIntfExpandableModePeersGetByModeGet", 25)),
        ]
        for route, query, data, expected_call in cases:
            with self.subTest(route=route, query=query):
                self.assertReply(self.get(IF + "/" + route, query), read_reply(0, "if", data))
                self.assertEqual(self.sim.calls(), [expected_call])

    def test_mode_texts_outside_the_tables(self):
        self.sim.set("rpcclt_openapiIntfExpandablePortConfigModeGet", "25", 8)
        self.assertReply(self.get(IF + "/intf-expandable-port-config-mode", "ifNum=25"),
                         read_reply(0, "if", {"expandPortMode": "none"}))
        self.sim.set("rpcclt_openapiIfSpecialPortTypeGet", "3", 6)
        self.assertReply(self.get(IF + "/special-port-type", "ifNum=3"),
                         read_reply(0, "if", {"specialType": "service_port"}))

    def test_presets_show_when_the_switch_writes_nothing(self):
        self.sim.set("rpcclt_openapiIfSpeedModeGet", "3", [])
        self.assertReply(self.get(IF + "/speed-mode", "ifNum=3"),
                         read_reply(0, "if", {"speed": "portctrl_portspeed_unknown"}))
        self.sim.set("rpcclt_openapiIntfExpandableModePeersGetByModeGet", "25", [])
        self.assertReply(self.get(IF + "/intf-expandable-mode-peers-get-by-mode", "ifNum=25"),
                         read_reply(0, "if", {"expandPortMode": "none", "peerIntfs": "", "peerCount": 0}))

    def test_failures_map_to_reply_codes(self):
        routes = [
            ("speed-mode", "rpcclt_openapiIfSpeedModeGet"),
            ("duplex", "openapiIfDuplexGet"),
            ("max-frame-size", "openapiIfMaxFrameSizeGet"),
            ("capabilities", "rpcclt_openapiIfCapabilitiesGet"),
            ("pause-status", "rpcclt_openapiIfPauseStatusGet"),
            ("exp-port-root-port", "rpcclt_openapiIfExpPortRootPortGet"),
            ("intf-expandable-port-mode-supported", "rpcclt_openapiIntfExpandablePortModeSupportedGet"),
            ("intf-expandable-mode-peers-get-by-mode", "rpcclt_openapiIntfExpandableModePeersGetByModeGet"),
        ]
        for route, open_call in routes:
            for result, code in FAILURES:
                with self.subTest(route=route, result=result):
                    self.sim.fail(open_call, result)
                    self.assertReply(self.get(IF + "/" + route, "ifNum=25"), read_reply(code, "if"))

    def test_copper_ports_have_no_cage(self):
        for route in ["exp-port-root-port", "exp-port-first-peer", "intf-expandable-mode-peers-get-by-mode"]:
            with self.subTest(route=route):
                self.assertReply(self.get(IF + "/" + route, "ifNum=3"), read_reply(17002, "if"))
        self.assertReply(self.get(IF + "/capabilities", "ifNum=99"), read_reply(10023, "if"))


class SettingsPageReads(SimTestCase):
    def test_composite_handlers_serve_the_shared_names(self):
        cases = [
            ("admin-state", "ifNum=3", {"admin-state": "up"}, [call("openapiIfAdminStateGet", 3)]),
            ("auto-neg", "ifNum=3", {"auto-negotiate": "enable"}, [call("openapiIfAutoNegGet", 3)]),
            ("auto-neg", "ifNum=25", {"auto-negotiate": "disable"}, [call("openapiIfAutoNegGet", 25)]),
            ("speed", "ifNum=25",
             {"configured-speed": "unknown", "operational-speed": "25000", "speed-mode": "25000",
              "configured-duplex": "auto", "operational-duplex": "unknown"},
             [call("rpcclt_openapiIfSpeedModeGet", 25), call("rpcclt_openapiIfDuplexModeGet", 25)]),
            ("mtu-size", "ifNum=3", {"mtu": 0, "max-frame-size": 0, "ethernet-header-size": 18},
             [call("rpcclt_openapiIfEthernetHeaderSizeGet", 3)]),
            ("descr", "ifNum=1", {"description": "Uplink to core"}, [call("rpcclt_openapiIfDescrGet", 1)]),
            ("soft-shutdown-state", "ifNum=3", {"soft-shutdown": "disable"},
             [call("rpcclt_openapiIfSoftShutdownStateGet", 3)]),
            ("intf-fec-mode", "ifNum=25", {"fec-mode": "auto", "fec-oper": "rs"},
             [call("rpcclt_openapiIntfFECModeGet", 25)]),
            ("link-trap", "ifNum=3", {"link-trap": "enable"}, [call("rpcclt_openapiIfLinkTrapGet", 3)]),
            ("expandable-mode", "ifNum=25", {"expandable-config-mode": "1x25G", "expandable-oper-mode": "1x25G"},
             [call("rpcclt_openapiIntfExpandablePortConfigModeGet", 25),
              call("rpcclt_openapiIntfExpandablePortOperModeGet", 25)]),
            ("expandable-mode", "ifNum=3", {"expandable-config-mode": None, "expandable-oper-mode": None},
             [call("rpcclt_openapiIntfExpandablePortConfigModeGet", 3),
              call("rpcclt_openapiIntfExpandablePortOperModeGet", 3)]),
        ]
        for route, query, data, calls in cases:
            with self.subTest(route=route, query=query):
                self.assertReply(self.get(IF + "/" + route, query), read_reply(0, "if", data))
                self.assertEqual(self.sim.calls(), calls)

    def test_value_texts(self):
        cases = [
            ("openapiIfAutoNegGet", "3", 5, "auto-neg", {"auto-negotiate": "disable"}),
            ("openapiIfAdminStateGet", "3", 2, "admin-state", {"admin-state": "down"}),
            ("rpcclt_openapiIfSpeedModeGet", "3", 16, "speed",
             {"configured-speed": "unknown", "operational-speed": "unknown", "speed-mode": "unknown",
              "configured-duplex": "auto", "operational-duplex": "unknown"}),
            ("rpcclt_openapiIfSpeedModeGet", "3", 1, "speed",
             {"configured-speed": "unknown", "operational-speed": "auto", "speed-mode": "auto",
              "configured-duplex": "auto", "operational-duplex": "unknown"}),
            ("rpcclt_openapiIntfFECModeGet", "25", [5, 7], "intf-fec-mode", {"fec-mode": "rs-544", "fec-oper": "none"}),
            ("rpcclt_openapiIntfExpandablePortConfigModeGet", "25", 6, "expandable-mode",
             {"expandable-config-mode": "1x50G", "expandable-oper-mode": "1x25G"}),
            ("rpcclt_openapiIntfExpandablePortOperModeGet", "25", 15, "expandable-mode",
             {"expandable-config-mode": "1x25G", "expandable-oper-mode": "none"}),
        ]
        for open_call, key, value, route, data in cases:
            with self.subTest(call=open_call, value=value):
                self.sim.ctl("reset")
                self.sim.set(open_call, key, value)
                self.assertReply(self.get(IF + "/" + route, "ifNum=" + key), read_reply(0, "if", data))

    def test_missing_or_zero_port_is_refused_before_the_switch(self):
        reads = ["admin-state", "auto-neg", "speed", "mtu-size", "descr", "soft-shutdown-state", "intf-fec-mode",
                 "link-trap", "expandable-mode"]
        for route in reads:
            for query in [None, "ifNum=0", "ifNum=abc", "xifNum=3"]:
                with self.subTest(route=route, query=query):
                    self.assertReply(self.get(IF + "/" + route, query), read_reply(10003, "if"))
        for query in [None, "ifNum=0"]:
            self.assertReply(self.put(IF + "/expandable-mode", query, {"expandable-config-mode": "1x10G"}),
                             set_reply(10003))
        self.assertEqual(self.sim.calls(), [])

    def test_unsupported_resources_ignore_the_request(self):
        for route in ["encapsulation", "phy-properties"]:
            with self.subTest(route=route):
                self.assertReply(self.get(IF + "/" + route, "ifNum=3"), read_reply(17002, "if"))
                self.assertReply(self.get(IF + "/" + route), read_reply(17002, "if"))
                self.assertReply(self.put(IF + "/" + route, "ifNum=3", {"mode": 1}), set_reply(17002))
                self.assertReply(self.put(IF + "/" + route, None, "not json"), set_reply(17002))
        self.assertEqual(self.sim.calls(), [])

    def test_reported_failures(self):
        cases = [("admin-state", "openapiIfAdminStateGet"), ("auto-neg", "openapiIfAutoNegGet"),
                 ("intf-fec-mode", "rpcclt_openapiIntfFECModeGet")]
        for route, open_call in cases:
            for result, code in FAILURES:
                with self.subTest(route=route, result=result):
                    self.sim.fail(open_call, result)
                    self.assertReply(self.get(IF + "/" + route, "ifNum=25"), read_reply(code, "if"))
        self.sim.ctl("reset")
        self.assertReply(self.get(IF + "/intf-fec-mode", "ifNum=3"), read_reply(17002, "if"))

    def test_defaults_replace_failed_calls(self):
        speed_unknown = {"configured-speed": "unknown", "operational-speed": "unknown", "speed-mode": "unknown",
                         "configured-duplex": "auto", "operational-duplex": "unknown"}
        cases = [
            ("rpcclt_openapiIfSpeedModeGet", "speed", "ifNum=25", speed_unknown),
            ("rpcclt_openapiIfDuplexModeGet", "speed", "ifNum=25",
             dict(speed_unknown, **{"operational-speed": "25000", "speed-mode": "25000"})),
            ("rpcclt_openapiIfEthernetHeaderSizeGet", "mtu-size", "ifNum=3",
             {"mtu": 0, "max-frame-size": 0, "ethernet-header-size": 0}),
            ("rpcclt_openapiIfDescrGet", "descr", "ifNum=1", {"description": ""}),
            ("rpcclt_openapiIfSoftShutdownStateGet", "soft-shutdown-state", "ifNum=3", {"soft-shutdown": "disable"}),
            ("rpcclt_openapiIfLinkTrapGet", "link-trap", "ifNum=3", {"link-trap": "disable"}),
            ("rpcclt_openapiIntfExpandablePortConfigModeGet", "expandable-mode", "ifNum=25",
             {"expandable-config-mode": None, "expandable-oper-mode": "1x25G"}),
        ]
        for open_call, route, query, data in cases:
            with self.subTest(call=open_call):
                self.sim.ctl("reset")
                self.sim.set("rpcclt_openapiIfSoftShutdownStateGet", "3", 1)
                self.sim.fail(open_call, -1)
                self.assertReply(self.get(IF + "/" + route, query), read_reply(0, "if", data))

    def test_presets_when_the_switch_writes_nothing(self):
        cases = [
            ("rpcclt_openapiIfLinkTrapGet", "3", "link-trap", {"link-trap": "enable"}),
            ("rpcclt_openapiIntfFECModeGet", "25", "intf-fec-mode", {"fec-mode": "auto", "fec-oper": "auto"}),
            ("rpcclt_openapiIfEthernetHeaderSizeGet", "3", "mtu-size",
             {"mtu": 0, "max-frame-size": 0, "ethernet-header-size": 0}),
        ]
        for open_call, key, route, data in cases:
            with self.subTest(call=open_call):
                self.sim.set(open_call, key, [])
                self.assertReply(self.get(IF + "/" + route, "ifNum=" + key), read_reply(0, "if", data))


class Sets(SimTestCase):
    def test_body_values_reach_the_switch(self):
        long_text = "".join(chr(ord("a") + i % 26) for i in range(300))
        cases = [
            ("speed", 25, {"speed": "portctrl_portspeed_full_10gsx"}, "rpcclt_openapiIfSpeedSet", 10, 0),
            ("speed", 3, {"speed": "fast"}, "rpcclt_openapiIfSpeedSet", 20, 10003),
            ("speed", 3, {"speed": 7}, "rpcclt_openapiIfSpeedSet", 20, 10003),
            ("speed", 3, {}, "rpcclt_openapiIfSpeedSet", 20, 10003),
            ("auto-neg", 3, {"autoneg": 1}, "rpcclt_openapiIfAutoNegSet", 1, 0),
            ("auto-neg", 3, {"AUTONEG": 1.9}, "rpcclt_openapiIfAutoNegSet", 1, 0),
            ("auto-neg", 3, {"autoneg": -4}, "rpcclt_openapiIfAutoNegSet", 0, 0),
            ("auto-neg", 3, {"autoneg": "1"}, "rpcclt_openapiIfAutoNegSet", 0, 0),
            ("mtu-size", 3, {"mtu_size": 9000}, "rpcclt_openapiIfMtuSizeSet", 9000, 0),
            ("mtu-size", 3, {"mtu_size": 1e12}, "rpcclt_openapiIfMtuSizeSet", 4294967295, 10003),
            ("mtu-size-set-v2", 3, {"mtu_size": 1500}, "rpcclt_openapiIfMtuSizeSetV2", 1500, 0),
            ("max-frame-size", 3, {"maxFrameSize": 9216}, "rpcclt_openapiIfMaxFrameSizeSet", 9216, 0),
            ("max-frame-size", 3, {}, "rpcclt_openapiIfMaxFrameSizeSet", 0, 10003),
            ("soft-shutdown-state", 3, {"soft_shut": "enable"}, "rpcclt_openapiIfSoftShutdownStateSet", 1, 0),
            ("soft-shutdown-state", 3, {"soft_shut": 1}, "rpcclt_openapiIfSoftShutdownStateSet", 0, 0),
            ("admin-state", 3, {"adminState": "enable"}, "rpcclt_openapiIfAdminStateSet", 1, 0),
            ("admin-state", 3, {"adminState": "Enable"}, "rpcclt_openapiIfAdminStateSet", 0, 0),
            ("link-trap", 3, {"mode": "enable"}, "rpcclt_openapiIfLinkTrapSet", 1, 0),
            ("link-trap", 3, {"link-trap": "disable", "mode": "enable"}, "rpcclt_openapiIfLinkTrapSet", 0, 0),
            ("link-trap", 3, {"link-trap": True, "mode": "enable"}, "rpcclt_openapiIfLinkTrapSet", 0, 0),
            ("descr", 3, {"descrip": long_text}, "rpcclt_openapiIfDescrSet", {"size": 256, "text": long_text[:255]}, 0),
            ("descr", 3, {"descrip": 5}, "rpcclt_openapiIfDescrSet", {"size": 1, "text": ""}, 0),
            ("intf-expandable-port-mode", 25, {"expandPortMode": "single_10g"},
             "rpcclt_openapiIntfExpandablePortModeSet", 1, 0),
            ("intf-expandable-port-mode", 25, {"expandPortMode": "dual_25g"},
             "rpcclt_openapiIntfExpandablePortModeSet", 7, 10003),
            ("intf-expandable-port-mode", 3, {"expandPortMode": "single_10g"},
             "rpcclt_openapiIntfExpandablePortModeSet", 1, 17002),
            ("intf-fec-mode", 25, {"fecMode": "port_fec_rs_544"}, "rpcclt_openapiIntfFECModeSet", 5, 0),
            ("intf-fec-mode", 25, {"fecMode": "rs-544"}, "rpcclt_openapiIntfFECModeSet", 0, 0),
            ("intf-fec-mode", 25, {"fecMode": "port_fec_last"}, "rpcclt_openapiIntfFECModeSet", 15, 10003),
            ("intf-fec-mode", 3, {"fecMode": "port_fec_auto"}, "rpcclt_openapiIntfFECModeSet", 2, 17002),
            ("expandable-mode", 25, {"expandable-config-mode": "4X10g"},
             "rpcclt_openapiIntfExpandablePortModeSet", 1, 0),
            ("expandable-mode", 25, {"expandable-config-mode": "1x50G"},
             "rpcclt_openapiIntfExpandablePortModeSet", 0, 10003),
            ("expandable-mode", 25, {"expandable-config-mode": 3},
             "rpcclt_openapiIntfExpandablePortModeSet", 0, 10003),
        ]
        for route, port, body, open_call, value, code in cases:
            with self.subTest(route=route, body=body):
                self.assertReply(self.put(IF + "/" + route, "ifNum=%d" % port, body), set_reply(code))
                self.assertEqual(self.sim.calls(), [call(open_call, port, value)])

    def test_failures_of_sets_map_to_reply_codes(self):
        for result, code in FAILURES:
            with self.subTest(result=result):
                self.sim.fail("rpcclt_openapiIfAdminStateSet", result)
                self.assertReply(self.put(IF + "/admin-state", "ifNum=3", {"adminState": "enable"}), set_reply(code))
        self.assertReply(self.put(IF + "/link-trap", "ifNum=99", {"link-trap": "enable"}), set_reply(10023))

    def test_unparsable_bodies_are_refused_before_the_switch(self):
        routes = ["speed", "auto-neg", "mtu-size", "mtu-size-set-v2", "max-frame-size", "soft-shutdown-state",
                  "admin-state", "link-trap", "descr", "intf-expandable-port-mode", "intf-fec-mode",
                  "expandable-mode"]
        for route in routes:
            for body in ["not json", "{\"speed\": ", ""]:
                with self.subTest(route=route, body=body):
                    self.assertReply(self.put(IF + "/" + route, "ifNum=25", body), set_reply(10003))
        self.assertReply(self.put(IF + "/descr", "ifNum=3"), set_reply(10003))
        self.assertEqual(self.sim.calls(), [])


class RoundTrips(SimTestCase):
    def get_data(self, route, port):
        out = self.get(IF + "/" + route, "ifNum=%d" % port).out.decode()
        return json.loads(out.split("\r\n\r\n", 1)[1])["if"]

    def test_speed(self):
        self.assertReply(self.put(IF + "/speed", "ifNum=4", {"speed": "portctrl_portspeed_half_100tx"}), set_reply(0))
        self.assertEqual(self.get_data("speed-mode", 4), {"speed": "portctrl_portspeed_half_100tx"})
        self.assertEqual(self.get_data("speed", 4)["operational-speed"], "100")
        self.assertEqual(self.get_data("duplex-mode", 4), {"duplex_mode": "half"})
        self.assertEqual(self.get_data("auto-neg", 4), {"auto-negotiate": "disable"})
        self.assertReply(self.put(IF + "/speed", "ifNum=4", {"speed": "portctrl_portspeed_auto_neg"}), set_reply(0))
        self.assertEqual(self.get_data("auto-neg", 4), {"auto-negotiate": "enable"})
        # A copper port cannot run 25G.
        self.assertReply(self.put(IF + "/speed", "ifNum=4", {"speed": "portctrl_portspeed_full_25gsx"}),
                         set_reply(10003))
        self.assertEqual(self.get_data("speed-mode", 4), {"speed": "portctrl_portspeed_auto_neg"})

    def test_admin_state_and_soft_shutdown(self):
        self.put(IF + "/admin-state", "ifNum=5", {"adminState": "disable"})
        self.assertEqual(self.get_data("admin-state", 5), {"admin-state": "down"})
        self.put(IF + "/admin-state", "ifNum=5", {"adminState": "enable"})
        self.assertEqual(self.get_data("admin-state", 5), {"admin-state": "up"})
        self.put(IF + "/soft-shutdown-state", "ifNum=5", {"soft_shut": "enable"})
        self.assertEqual(self.get_data("soft-shutdown-state", 5), {"soft-shutdown": "enable"})

    def test_description_and_link_trap(self):
        self.put(IF + "/descr", "ifNum=6", {"descrip": "Printer, 2nd floor"})
        self.assertEqual(self.get_data("descr", 6), {"description": "Printer, 2nd floor"})
        self.put(IF + "/link-trap", "ifNum=6", {"mode": "disable"})
        self.assertEqual(self.get_data("link-trap", 6), {"link-trap": "disable"})

    def test_frame_sizes(self):
        self.put(IF + "/mtu-size", "ifNum=3", {"mtu_size": 9000})
        self.assertEqual(self.get_data("max-frame-size", 3), {"maxFrameSize": 9018})
        self.put(IF + "/max-frame-size", "ifNum=3", {"maxFrameSize": 2000})
        self.assertEqual(self.get_data("max-frame-size", 3), {"maxFrameSize": 2000})

    def test_fec(self):
        self.put(IF + "/intf-fec-mode", "ifNum=26", {"fecMode": "port_fec_rs_544"})
        self.assertEqual(self.get_data("intf-fec-mode", 26), {"fec-mode": "rs-544", "fec-oper": "rs-544"})
        self.put(IF + "/intf-fec-mode", "ifNum=26", {"fecMode": "port_fec_disable"})
        self.assertEqual(self.get_data("intf-fec-mode", 26), {"fec-mode": "none", "fec-oper": "none"})

    def test_expansion_mode_waits_for_a_reload(self):
        self.put(IF + "/intf-expandable-port-mode", "ifNum=25", {"expandPortMode": "quad_40g"})
        self.assertEqual(self.get_data("intf-expandable-port-config-mode", 25), {"expandPortMode": "quad_40g"})
        self.assertEqual(self.get_data("intf-expandable-port-oper-mode", 25), {"expandPortMode": "single_25g"})
        self.assertEqual(self.get_data("expandable-mode", 25),
                         {"expandable-config-mode": "1x40G", "expandable-oper-mode": "1x25G"})
        self.put(IF + "/expandable-mode", "ifNum=25", {"expandable-config-mode": "1X10G"})
        self.assertEqual(self.get_data("intf-expandable-port-config-mode", 25), {"expandPortMode": "single_10g"})
        self.assertEqual(self.get_data("intf-expandable-mode-peers-get-by-mode", 25),
                         {"expandPortMode": "single_10g", "peerIntfs": "26,27,28", "peerCount": 3})


if __name__ == "__main__":
    main()
