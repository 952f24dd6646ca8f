"""D-Disable auto-recovery end to end: reads parse the switch's
"show errdisable recovery" output, changes apply one CLI line."""

import harness
from harness import SimTestCase, read_reply, set_reply

IF = "/api/v2/interfaces/if"
SHOW = "show errdisable recovery"
APPLY = "rpcclt_openapiTxtCfgApply"

CAUSES = ["dhcp_rate_limit", "arp_inspection", "bstormcontrol", "mstormcontrol", "ustormcontrol", "bpduguard",
          "bpdu_rate_limit", "pml", "dos", "link_flap"]

SHOW_TEXT = (
    "Time left for Auto-recovery from D-Disable state..... 123\n"
    "\n"
    "Errdisable Cause             Auto-recovery Status\n"
    "---------------------------- --------------------\n"
    "bpduguard                    ENABLED\n"
    "link-flap                    Disabled\n"
    "Timeout for Auto-recovery from D-Disable state....... 900\n"
)

EMPTY_TABLE = (
    "Errdisable Cause             Auto-recovery Status\n"
    "---------------------------- --------------------\n"
    "Timeout for Auto-recovery from D-Disable state....... 300\n"
)


def script(line):
    return ["end", "configure", "configure", line, "end", "configure", "end", "configure"]


class DDisableTestCase(SimTestCase):
    def applied(self):
        """The scripts the switch was given since the last look."""
        return [e.get("script") for e in self.sim.calls() if e["call"] == APPLY]

    def show_returns(self, text):
        self.sim.set("rpcclt_openapiCliShowExecuteToFile", SHOW, text)

    def interval(self):
        return self.get(IF + "/ddisable-auto-recovery-interval")

    def cause(self, name):
        return self.get(IF + "/ddisable-auto-recovery-cause", "cause=" + name)


class Interval(DDisableTestCase):
    def test_put_applies_one_line_and_get_reads_it_back(self):
        self.assertReply(self.interval(), read_reply(0, "if", {"interval": 300}))
        self.sim.calls()
        self.assertReply(self.put(IF + "/ddisable-auto-recovery-interval", body={"interval": 300}), set_reply(0))
        self.assertEqual(self.applied(), [script("errdisable recovery interval 300")])
        self.assertReply(self.put(IF + "/ddisable-auto-recovery-interval", body={"INTERVAL": 3600.9}), set_reply(0))
        self.assertEqual(self.applied(), [script("errdisable recovery interval 3600")])
        self.assertReply(self.interval(), read_reply(0, "if", {"interval": 3600}))

    def test_the_switch_judges_the_range(self):
        for body in ({"interval": 10}, {"interval": -5}, {"interval": 1e12}):
            self.assertReply(self.put(IF + "/ddisable-auto-recovery-interval", body=body), set_reply(10000))
        self.assertEqual(self.applied(), [script("errdisable recovery interval 10"),
                                          script("errdisable recovery interval 0"),
                                          script("errdisable recovery interval 4294967295")])
        self.assertReply(self.interval(), read_reply(0, "if", {"interval": 300}))

    def test_bad_bodies_touch_nothing(self):
        for body in ("not json", "", {"interval": "300"}, {"timeout": 300}, {"interval": None}):
            self.assertReply(self.put(IF + "/ddisable-auto-recovery-interval", body=body), set_reply(10003))
        self.assertEqual(self.sim.calls(), [])

    def test_reads_of_special_show_outputs(self):
        self.show_returns(SHOW_TEXT)
        self.assertReply(self.interval(), read_reply(0, "if", {"interval": 900}))
        self.show_returns("Errdisable Cause   Status\n")
        self.assertReply(self.interval(), read_reply(0, "if", {"interval": 0}))

    def test_show_failure_is_unsupported(self):
        self.sim.fail("rpcclt_openapiCliShowExecuteToFile", -1)
        self.assertReply(self.interval(), read_reply(17002, "if"))
        calls = self.sim.calls()
        self.assertEqual(len(calls), 1)
        self.assertEqual(calls[0]["in"][0], {"size": len(SHOW) + 1, "text": SHOW})
        self.assertRegex(calls[0]["in"][1]["text"], r"^/mnt/application/quill/tmp/if_show_\d+$")


class Cause(DDisableTestCase):
    def put_cause(self, body):
        return self.put(IF + "/ddisable-auto-recovery-cause", body=body)

    def test_enable_and_disable_round_trips(self):
        self.assertReply(self.cause("bpdu_rate_limit"), read_reply(0, "if", {"mode": "disable"}))
        self.assertReply(self.put_cause({"cause": "bpdu_rate_limit", "mode": "enable"}), set_reply(0))
        self.assertReply(self.cause("bpdu_rate_limit"), read_reply(0, "if", {"mode": "enable"}))
        self.assertReply(self.cause("bpduguard"), read_reply(0, "if", {"mode": "disable"}))
        self.assertReply(self.put_cause({"Cause": "bpdu_rate_limit", "MODE": "disable"}), set_reply(0))
        self.assertReply(self.cause("bpdu_rate_limit"), read_reply(0, "if", {"mode": "disable"}))
        self.assertEqual(self.applied(), [script("errdisable recovery cause bpdustorm"),
                                          script("no errdisable recovery cause bpdustorm")])

    def test_all_changes_every_cause(self):
        self.assertReply(self.put_cause({"cause": "all", "mode": "enable"}), set_reply(0))
        self.assertEqual(self.applied(), [script("errdisable recovery cause all")])
        for api in CAUSES:
            self.assertReply(self.cause(api), read_reply(0, "if", {"mode": "enable"}))
        # The show output has no line of its own for "all".
        self.assertReply(self.cause("all"), read_reply(10000, "if"))

    def test_only_exactly_enable_enables(self):
        for mode in ("Enable", "enabled", "", "true"):
            self.assertReply(self.put_cause({"cause": "dos", "mode": mode}), set_reply(0))
            self.assertEqual(self.applied(), [script("no errdisable recovery cause denial-of-service")], mode)

    def test_bad_requests_touch_nothing(self):
        bodies = ["{", {"cause": "bpdustorm", "mode": "enable"}, {"cause": "ALL", "mode": "enable"},
                  {"cause": "dos"}, {"mode": "enable"}, {"cause": "dos", "mode": 1}, {"cause": 3, "mode": "enable"}]
        for body in bodies:
            self.assertReply(self.put_cause(body), set_reply(10003))
        self.assertEqual(self.sim.calls(), [])

    def test_unknown_cause_reads_are_unsupported(self):
        for query in ("cause=bpdustorm", "cause=", "mode=x", "cause=DOS", "cause=dos%20"):
            self.assertReply(self.get(IF + "/ddisable-auto-recovery-cause", query), read_reply(17002, "if"))
        self.assertEqual(self.sim.calls(), [])

    def test_status_column_of_special_outputs(self):
        self.show_returns(SHOW_TEXT)
        self.assertReply(self.cause("bpduguard"), read_reply(0, "if", {"mode": "enable"}))
        self.assertReply(self.cause("link_flap"), read_reply(0, "if", {"mode": "disable"}))
        self.assertReply(self.cause("pml"), read_reply(10000, "if"))
        self.sim.fail("rpcclt_openapiCliShowExecuteToFile", -1)
        self.assertReply(self.cause("bpduguard"), read_reply(17002, "if"))

    def test_a_failing_apply_is_general_failure(self):
        self.sim.fail(APPLY, -1)
        self.assertReply(self.put_cause({"cause": "pml", "mode": "enable"}), set_reply(10000))
        self.assertReply(self.cause("pml"), read_reply(0, "if", {"mode": "disable"}))


class FeatureListAndTimeLeft(DDisableTestCase):
    def test_feature_list_of_the_switch(self):
        names = ["dhcp-rate-limit", "arp-inspection", "bcast-storm", "mcast-storm", "ucast-storm", "bpduguard",
                 "bpdustorm", "mac-locking", "denial-of-service", "link-flap", "udld", "loop-protect"]
        self.assertReply(self.get(IF + "/ddisable-autorecovery-table-feature-list"),
                         read_reply(0, "if", {"featureList": ",".join(names)}))
        calls = self.sim.calls()
        self.assertRegex(calls[0]["in"][1]["text"], r"^/mnt/application/quill/tmp/ifCliFb_show_\d+_\d+$")

    def test_feature_list_of_special_outputs(self):
        self.show_returns(SHOW_TEXT)
        self.assertReply(self.get(IF + "/ddisable-autorecovery-table-feature-list"),
                         read_reply(0, "if", {"featureList": "bpduguard,link-flap"}))
        self.show_returns(EMPTY_TABLE)
        self.assertReply(self.get(IF + "/ddisable-autorecovery-table-feature-list"), read_reply(10000, "if"))
        self.sim.fail("rpcclt_openapiCliShowExecuteToFile", -1)
        self.assertReply(self.get(IF + "/ddisable-autorecovery-table-feature-list"), read_reply(10000, "if"))

    def test_time_left(self):
        # Nothing to recover while every cause is off.
        self.assertReply(self.get(IF + "/ddisable-auto-recovery-time-left"), read_reply(0, "if", {"timeLeft": 0}))
        self.show_returns(SHOW_TEXT)
        self.assertReply(self.get(IF + "/ddisable-auto-recovery-time-left"), read_reply(0, "if", {"timeLeft": 123}))
        self.show_returns("Time left for Auto-recovery from D-Disable state.....\n42\n")
        self.assertReply(self.get(IF + "/ddisable-auto-recovery-time-left"), read_reply(0, "if", {"timeLeft": 0}))
        self.sim.fail("rpcclt_openapiCliShowExecuteToFile", -1)
        self.assertReply(self.get(IF + "/ddisable-auto-recovery-time-left"), read_reply(10000, "if"))


class InterfaceWalkAndReason(DDisableTestCase):
    def test_both_walks_step_over_physical_ports(self):
        for route in ("ddisable-autorecovery-table-intf-next", "ddisable-reason-intf-next"):
            for query, reply in ((None, read_reply(0, "if", {"nextIfNum": 1})),
                                 ("prevIfNum=0", read_reply(0, "if", {"nextIfNum": 1})),
                                 ("prevIfNum=5", read_reply(0, "if", {"nextIfNum": 6})),
                                 ("prevIfNum=28", read_reply(10023, "if")),
                                 ("prevIfNum=650", read_reply(10023, "if"))):
                self.assertReply(self.get(IF + "/" + route, query), reply)
            self.assertEqual(self.sim.calls(), [
                {"call": "openapiIfFirstGet", "in": [0]}, {"call": "openapiIfFirstGet", "in": [0]},
                {"call": "openapiIfNextGet", "in": [0, 5]}, {"call": "openapiIfNextGet", "in": [0, 28]},
                {"call": "openapiIfNextGet", "in": [0, 650]},
            ])

    def test_no_first_port_ends_the_walk(self):
        self.sim.fail("openapiIfFirstGet", -1)
        self.assertReply(self.get(IF + "/ddisable-reason-intf-next", "prevIfNum=0"), read_reply(10023, "if"))

    def test_reason_is_unsupported(self):
        self.assertReply(self.get(IF + "/ddisable-reason", "ifNum=3"), read_reply(17002, "if"))
        self.assertEqual(self.sim.calls(), [])


if __name__ == "__main__":
    harness.main()
