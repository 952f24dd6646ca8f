"""Time ranges and port colour LEDs, end to end against the simulated switch."""

from harness import SimTestCase, main, read_reply, set_reply

APP = "/api/v2/interfaces/interface-app"
A = "interfaceApp"
CALL = "rpcclt_openapiInterfaceApp"
SUPPORT = CALL + "PortRGBLedColorSupportGet"


def support_call(ifNum):
    return {"call": SUPPORT, "in": [ifNum]}


class TimeRanges(SimTestCase):
    def test_set_then_get(self):
        self.assertReply(self.get(APP + "/time-range", "intIfNum=10"), read_reply(0, A, {"timeRange": "office-hours"}))
        self.assertReply(self.put(APP + "/time-range", "intIfNum=3", {"timeRange": "weekends"}), set_reply(0))
        self.assertEqual(self.sim.calls()[-1],
                         {"call": CALL + "TimeRangeSet", "in": [3, {"size": 9, "text": "weekends"}]})
        self.assertReply(self.get(APP + "/time-range", "intIfNum=3"), read_reply(0, A, {"timeRange": "weekends"}))

    def test_missing_or_mistyped_name_is_empty(self):
        for body in [{}, {"timeRange": 5}]:
            with self.subTest(body=body):
                self.assertReply(self.put(APP + "/time-range", "intIfNum=10", body), set_reply(0))
                self.assertEqual(self.sim.calls(), [{"call": CALL + "TimeRangeSet", "in": [10, {"size": 1, "text": ""}]}])
        self.assertReply(self.get(APP + "/time-range", "intIfNum=10"), read_reply(0, A, {"timeRange": ""}))

    def test_the_switch_judges_the_length(self):
        name = "n" * 600
        self.assertReply(self.put(APP + "/time-range", "intIfNum=3", {"timeRange": name}), set_reply(10003))
        self.assertEqual(self.sim.calls(), [{"call": CALL + "TimeRangeSet", "in": [3, {"size": 601, "text": name}]}])

    def test_failures(self):
        self.assertReply(self.put(APP + "/time-range", "intIfNum=3", "not json"), set_reply(10003))
        self.assertEqual(self.sim.calls(), [])
        self.assertReply(self.get(APP + "/time-range", "intIfNum=650"), read_reply(10023, A))
        self.assertReply(self.put(APP + "/time-range", "intIfNum=650", {"timeRange": "x"}), set_reply(10023))


class ColourLeds(SimTestCase):
    def test_support_is_reported_per_port(self):
        self.assertReply(self.get(APP + "/port-rgb-led-color-support", "ifNum=12"),
                         read_reply(0, A, {"isRGBLedColorSupported": "true"}))
        self.assertReply(self.get(APP + "/port-rgb-led-color-support", "ifNum=13"),
                         read_reply(0, A, {"isRGBLedColorSupported": "false"}))
        self.assertEqual(self.sim.calls(), [support_call(12), support_call(13)])

    def test_unsupported_port_stops_at_the_gate(self):
        cases = [
            ("GET", "port-rgb-led-color", None, read_reply(17002, A)),
            ("GET", "port-rgb-led-color-brightness", None, read_reply(17002, A)),
            ("PUT", "port-rgb-led-color", {"color": 1}, set_reply(17002)),
            ("PUT", "port-rgb-led-color-brightness", "not json", set_reply(17002)),
        ]
        for method, route, body, expected in cases:
            with self.subTest(method=method, route=route):
                if method == "GET":
                    result = self.get(APP + "/" + route, "ifNum=20")
                else:
                    result = self.put(APP + "/" + route, "ifNum=20", body)
                self.assertReply(result, expected)
                self.assertEqual(self.sim.calls(), [support_call(20)])

    def test_failed_support_question_is_unsupported(self):
        self.sim.fail(SUPPORT, -1)
        self.assertReply(self.get(APP + "/port-rgb-led-color", "ifNum=2"), read_reply(17002, A))
        self.assertEqual(self.sim.calls(), [support_call(2)])

    def test_colour_mode_asks_interface_one_whatever_the_unit(self):
        self.assertReply(self.get(APP + "/rgb-led-color-mode", "unit=1"), read_reply(0, A, {"mode": "enable"}))
        self.assertReply(self.get(APP + "/rgb-led-color-mode", "unit=5"), read_reply(10023, A))
        self.assertEqual(self.sim.calls(), [support_call(1), {"call": CALL + "RGBLedColorModeGet", "in": [1]},
                                            support_call(1), {"call": CALL + "RGBLedColorModeGet", "in": [5]}])
        self.sim.set(SUPPORT, "1", 0)
        for unit in ["unit=1", "unit=5", None]:
            with self.subTest(unit=unit):
                self.assertReply(self.get(APP + "/rgb-led-color-mode", unit), read_reply(17002, A))
                self.assertReply(self.put(APP + "/rgb-led-color-mode", unit, {"mode": "enable"}), set_reply(17002))
                self.assertEqual(self.sim.calls(), [support_call(1), support_call(1)])

    def test_colour_mode_set_then_get(self):
        cases = [({"mode": "disable"}, 0, "disable"), ({"mode": "Enable"}, 0, "disable"),
                 ({"mode": "enable"}, 1, "enable"), ({"mode": "true"}, 0, "disable")]
        for body, sent, reads in cases:
            with self.subTest(body=body):
                self.assertReply(self.put(APP + "/rgb-led-color-mode", "unit=1", body), set_reply(0))
                self.assertEqual(self.sim.calls()[-1], {"call": CALL + "RGBLedColorModeSet", "in": [1, sent]})
                self.assertReply(self.get(APP + "/rgb-led-color-mode", "unit=1"), read_reply(0, A, {"mode": reads}))

    def test_colour_and_brightness_numbers(self):
        cases = [("port-rgb-led-color", "color", 2.7, 2), ("port-rgb-led-color", "color", -1, 0),
                 ("port-rgb-led-color-brightness", "brightness", 55, 55),
                 ("port-rgb-led-color-brightness", "brightness", "55", 0)]
        setters = {"color": "PortRGBLedColorSet", "brightness": "PortRGBLedColorBrightnessSet"}
        for route, key, given, sent in cases:
            with self.subTest(route=route, given=given):
                self.sim.calls()
                self.assertReply(self.put(APP + "/" + route, "ifNum=3", {key: given}), set_reply(0))
                self.assertEqual(self.sim.calls(), [support_call(3), {"call": CALL + setters[key], "in": [3, sent]}])
                self.assertReply(self.get(APP + "/" + route, "ifNum=3"), read_reply(0, A, {key: sent}))

    def test_out_of_range_and_unparsable_bodies(self):
        self.assertReply(self.put(APP + "/port-rgb-led-color-brightness", "ifNum=4", {"brightness": 101}),
                         set_reply(10003))
        self.assertReply(self.put(APP + "/port-rgb-led-color", "ifNum=4", "{color"), set_reply(10003))
        self.assertEqual(self.sim.calls()[-1], support_call(4))


if __name__ == "__main__":
    main()
