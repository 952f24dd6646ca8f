"""Interface enumeration and identity routes: mappings, parameters and the
failure codes of every OpEN result."""

from harness import SimTestCase, main, read_reply

IF = "/api/v2/interfaces/if"


class Identity(SimTestCase):
    def test_default_switch(self):
        cases = [
            ("first", "ifType=0", {"firstIfNum": 1}, "openapiIfFirstGet", [0, ]),
            ("first", "ifType=2", {"firstIfNum": 650}, "openapiIfFirstGet", [2]),
            ("next", "ifNum=28&ifType=1", {"nextIfNum": 29}, "openapiIfNextGet", [1, 28]),
            ("next-changed", "ifNum=651", {"nextIfNum": 700, "delete_pending": 0}, "openapiIfNextChangedGet", [651]),
            ("name", "intf=25", {"intfName": "0/25"}, "openapiIfNameGet", [25]),
            ("type", "ifNum=650", {"ifType": "lag"}, "openapiIfTypeGet", [650]),
            ("type", "ifNum=700", {"ifType": "vlan"}, "openapiIfTypeGet", [700]),
            ("link-state", "ifNum=4", {"linkState": "down"}, "openapiIfLinkStateGet", [4]),
            ("opr-state", "ifNum=1", {"val": "port_enable"}, "openapiIfOprStateGet", [1]),
            ("opr-state", "ifNum=7", {"val": "port_diag_disable"}, "openapiIfOprStateGet", [7]),
            ("opr-state", "ifNum=9", {"val": "port_disable"}, "openapiIfOprStateGet", [9]),
            ("active-state", "interface=2", {"intfActiveState": 1}, "rpcclt_openapiIfActiveStateGet", [2]),
            ("last-change", "interface=1", {"value": 86437}, "rpcclt_openapiIfLastChangeGet", [1]),
            ("usm-db-if-index", "interface=3", {"ifIndex": 3}, "rpcclt_openapiusmDbIfIndexGet", [3]),
            ("config-id-mask-offset", "interface=5", {"maskOffset": 5}, "rpcclt_openapiConfigIdMaskOffsetGet", [5]),
            ("mac-addr-size", "ifNum=1", {"size": 18}, "rpcclt_openapiIfMacAddrSizeGet", [1]),
            ("mac-addr", "ifNum=26", {"mac_addr": "02:5A:10:00:00:1A"}, "rpcclt_openapiIfMacAddrGet", [26]),
            ("descr-size", "ifNum=1", {"size": 255}, "rpcclt_openapiIfDescrSizeGet", [1]),
        ]
        for route, query, data, call, inputs in cases:
            with self.subTest(route=route, query=query):
                self.assertReply(self.get(IF + "/" + route, query), read_reply(0, "if", data))
                self.assertEqual(self.sim.calls(), [{"call": call, "in": inputs}])

    def test_value_mappings(self):
        cases = [
            ("type", "openapiIfTypeGet", [7, 8, 6, 4, 5, 1, 99], "ifType",
             ["other", "any", "service_port", "loopback", "tunnel", "cpu", "other"]),
            ("link-state", "openapiIfLinkStateGet", [0, 1, 2], "linkState", ["up", "down", "down"]),
            ("opr-state", "openapiIfOprStateGet", [0, 1, 2, 3], "val",
             ["port_disable", "port_enable", "port_diag_disable", "port_disable"]),
        ]
        for route, call, values, key, texts in cases:
            for value, text in zip(values, texts):
                with self.subTest(route=route, value=value):
                    self.sim.set(call, "3", value)
                    self.assertReply(self.get(IF + "/" + route, "ifNum=3"), read_reply(0, "if", {key: text}))

    def test_open_results_become_reply_codes(self):
        for result, code in [(-22, 10003), (-24, 10011), (-28, 17002), (-29, 10023), (-1, 10000), (-30, 10000),
                             (5, 10000)]:
            with self.subTest(result=result):
                self.sim.fail("openapiIfTypeGet", result, 1)
                self.assertReply(self.get(IF + "/type", "ifNum=1"), read_reply(code, "if"))

    def test_success_without_outputs_uses_the_presets(self):
        self.sim.fail("openapiIfLinkStateGet", 0)
        self.assertReply(self.get(IF + "/link-state", "ifNum=1"), read_reply(0, "if", {"linkState": "down"}))
        self.sim.fail("openapiIfTypeGet", 0)
        self.assertReply(self.get(IF + "/type", "ifNum=1"), read_reply(0, "if", {"ifType": "phy"}))

    def test_parameters(self):
        cases = [
            # route, query, call inputs seen
            ("type", "a=1&ifNum=7&b=2", [7]),
            ("type", "ifNum=7x", [7]),
            ("type", "ifNum", [0]),
            ("type", "xifNum=5&ifNum=6", [6]),
            ("type", None, [0]),
            ("next", "ifNum=3", [0, 3]),
            ("name", "intfName=lag1&intf=5", [0]),  # the loose lookup takes intfName first
            ("active-state", "xinterface=4", [4]),
            ("usm-db-if-index", "xinterface=4", [0]),
        ]
        for route, query, inputs in cases:
            with self.subTest(route=route, query=query):
                self.get(IF + "/" + route, query)
                self.assertEqual([c["in"] for c in self.sim.calls()], [inputs])

    def test_a_walk_of_every_lag(self):
        seen, r = [], self.get(IF + "/first", "ifType=2")
        while r.out.endswith(b'"success"\n\t}\n}'):
            number = int(r.out.split(b'IfNum":\t')[1].split(b"\n")[0])
            seen.append(number)
            r = self.get(IF + "/next", "ifType=2&ifNum=%d" % number)
        self.assertEqual(seen, [650, 651])
        self.assertReply(r, read_reply(10023, "if"))


if __name__ == "__main__":
    main()
