"""Green Ethernet, EEE, power estimates and power-saving history routes,
end to end against the simulated switch."""

from harness import SimTestCase, main, read_reply, set_reply

GREEN = "/api/v2/interfaces/green-ethernet"
EEE = "/api/v2/interfaces/green-ethernet-eee-api"
PWR_EST = "/api/v2/interfaces/green-pwr-estimates"
PWR_HIST = "/api/v2/interfaces/green-pwr-sav-history"

G = "greenEthernet"
E = "greenEthernetEeeApi"
H = "greenPwrSavHistory"

CALL = "rpcclt_openapiGreenEthr"
FIRST_ENTRY = "rpcclt_openapix2GreenEthrPwrSavHistoryIntfFirstEntryGet"
NEXT_ENTRY = "rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextEntryGet"
NEXT_SAMPLE = "rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextSampleGet"


def check_failure(code):
    """A failed check route: the code alone, newline-terminated."""
    return set_reply(code)


class EnergyDetectAndShortReach(SimTestCase):
    def test_operational_status_follows_admin_mode_and_link(self):
        # Port 14 is down with energy detect on; port 1 is up.
        self.assertReply(self.get(GREEN + "/energy-detect-opr-status", "intIfNum=14"),
                         read_reply(0, G, {"oprStatus": "true", "reason": "greenethr_no_energy"}))
        self.assertEqual(self.sim.calls(), [{"call": CALL + "EnergyDetectOprStatusGet", "in": [14]}])
        self.assertReply(self.get(GREEN + "/energy-detect-opr-status", "intIfNum=1"),
                         read_reply(0, G, {"oprStatus": "false", "reason": "greenethr_admin_down"}))
        self.assertReply(self.put(GREEN + "/energy-detect-mode", "intIfNum=1", {"mode": "enable"}), set_reply(0))
        self.assertReply(self.get(GREEN + "/energy-detect-opr-status-str", "intIfNum=1"),
                         read_reply(0, G, {"oprStatus": "false", "reasonStr": "Link Up"}))

    def test_reason_outside_the_table_and_left_unset(self):
        cases = [([1, 11], "true"), ([0, 12], "false"), ([1], "true")]  # [1]: reason left at its preset
        for outputs, status in cases:
            self.sim.set(CALL + "ShrtRchOprStatusGet", "3", outputs)
            self.assertReply(self.get(GREEN + "/shrt-rch-opr-status", "intIfNum=3"),
                             read_reply(0, G, {"oprStatus": status, "reason": "greenethr_invalid_val"}))

    def test_set_keywords_are_exact_and_per_route(self):
        cases = [
            ("energy-detect-mode", {"mode": "enable"}, 1),
            ("energy-detect-mode", {"mode": "Enable"}, 0),
            ("energy-detect-mode", {"mode": "true"}, 0),
            ("shrt-rch-auto-mode", {"mode": "true"}, 1),
            ("shrt-rch-auto-mode", {"mode": "enable"}, 0),
            ("shrt-rch-force-mode", {"mode": "true"}, 1),
            ("shrt-rch-force-mode", {"mode": 1}, 0),
            ("shrt-rch-force-mode", {}, 0),
        ]
        setters = {"energy-detect-mode": "EnergyDetectModeSet", "shrt-rch-auto-mode": "ShrtRchAutoModeSet",
                   "shrt-rch-force-mode": "ShrtRchForceModeSet"}
        for route, body, value in cases:
            with self.subTest(route=route, body=body):
                self.assertReply(self.put(GREEN + "/" + route, "intIfNum=5", body), set_reply(0))
                self.assertEqual(self.sim.calls(), [{"call": CALL + setters[route], "in": [5, value]}])

    def test_settings_read_back_in_their_own_words(self):
        self.assertReply(self.put(GREEN + "/shrt-rch-auto-mode", "intIfNum=6", {"mode": "true"}), set_reply(0))
        self.assertReply(self.get(GREEN + "/shrt-rch-auto-admin-mode", "intIfNum=6"), read_reply(0, G, {"mode": "true"}))
        self.assertReply(self.get(GREEN + "/shrt-rch-force-admin-mode", "intIfNum=6"), read_reply(0, G, {"mode": "false"}))
        self.assertReply(self.put(GREEN + "/energy-detect-mode", "intIfNum=6", {"mode": "enable"}), set_reply(0))
        self.assertReply(self.get(GREEN + "/energy-detect-admin-mode", "intIfNum=6"),
                         read_reply(0, G, {"mode": "enable"}))
        self.assertReply(self.put(GREEN + "/global-short-reach-mode", None, {"adminMode": "enable"}), set_reply(0))
        self.assertReply(self.get(GREEN + "/global-short-reach-mode"), read_reply(0, G, {"adminMode": "enable"}))
        self.assertReply(self.put(GREEN + "/global-energy-detect-mode", None, {"adminMode": "true"}), set_reply(0))
        self.assertReply(self.get(GREEN + "/global-energy-detect-mode"), read_reply(0, G, {"adminMode": "disable"}))

    def test_body_that_is_not_json_reaches_no_switch(self):
        for route, query in [("energy-detect-mode", "intIfNum=1"), ("global-energy-detect-mode", None)]:
            self.assertReply(self.put(GREEN + "/" + route, query, "mode=enable"), set_reply(10003))
        self.assertEqual(self.sim.calls(), [])

    def test_set_on_a_port_without_green_ethernet(self):
        self.assertReply(self.put(GREEN + "/energy-detect-mode", "intIfNum=25", {"mode": "enable"}), set_reply(10023))
        self.sim.fail(CALL + "GlobalShortReachModeSet", -1)
        self.assertReply(self.put(GREEN + "/global-short-reach-mode", None, {"adminMode": "enable"}),
                         set_reply(10000))

    def test_interface_walk(self):
        self.assertReply(self.get(GREEN + "/valid-intf-first"), read_reply(0, G, {"intIfNum": 1}))
        self.assertReply(self.get(GREEN + "/valid-intf-next"), read_reply(0, G, {"intIfNum": 1}))
        self.assertReply(self.get(GREEN + "/valid-intf-next", "prevIfNum=23"), read_reply(0, G, {"intIfNum": 24}))
        self.assertReply(self.get(GREEN + "/valid-intf-next", "prevIfNum=24"), read_reply(10023, G))
        self.assertEqual([c["in"] for c in self.sim.calls()], [[], [0], [23], [24]])

    def test_query_name_matches_only_at_a_segment_start(self):
        self.get(GREEN + "/energy-detect-admin-mode", "xintIfNum=5&intIfNum=7")
        self.assertEqual(self.sim.calls(), [{"call": CALL + "EnergyDetectAdminModeGet", "in": [7]}])

    def test_check_routes_answer_like_reads_or_like_sets(self):
        cases = [
            ("is-valid-intf-type", "intIfNum=3", read_reply(0, G, {"valid": "true"})),
            ("is-valid-intf-type", "intIfNum=25", read_reply(0, G, {"valid": "false"})),
            ("is-valid-intf-type", "intIfNum=999", check_failure(10023)),
            ("is-intf-eee-capable", "intIfNum=24", read_reply(0, G, {"valid": "true"})),
            ("is-intf-eee-capable", "intIfNum=650", read_reply(0, G, {"valid": "false"})),
        ]
        for route, query, expected in cases:
            with self.subTest(route=route, query=query):
                self.assertReply(self.post(GREEN + "/" + route, query), expected)
        self.sim.fail(CALL + "IsIntfEEECapable", -28)
        self.assertReply(self.post(GREEN + "/is-intf-eee-capable", "intIfNum=1"), check_failure(17002))
        self.sim.set(CALL + "IsValidIntfType", "4", 2)
        self.assertReply(self.post(GREEN + "/is-valid-intf-type", "intIfNum=4"), read_reply(0, G, {"valid": "false"}))


class EnergyEfficientEthernet(SimTestCase):
    def test_numeric_bodies_truncate_and_saturate(self):
        cases = [(30.9, 30), (-5, 0), ("30", 0), (5e9, 4294967295), (None, 0), (True, 0)]
        for given, sent in cases:
            with self.subTest(given=given):
                body = {} if given is None else {"eeeTxIdleTime": given}
                self.assertReply(self.put(EEE + "/tx-idle-time", "intIfNum=2", body), set_reply(0))
                self.assertEqual(self.sim.calls(), [{"call": CALL + "EeeTxIdleTimeSet", "in": [2, sent]}])
        self.put(EEE + "/tx-wake-time", "intIfNum=2", {"EEETXWAKETIME": 21})
        self.assertReply(self.get(EEE + "/tx-wake-time", "intIfNum=2"), read_reply(0, E, {"eeeTxWakeTime": 21}))
        self.assertReply(self.put(EEE + "/tx-idle-time", "intIfNum=2", "{"), set_reply(10003))

    def test_durations_keep_their_two_words(self):
        self.sim.set(CALL + "EeeTxDurationGet", "4", [1, 5])
        self.assertReply(self.get(EEE + "/tx-duration", "intIfNum=4"), read_reply(0, E, {"high": 1, "low": 5}))
        self.assertReply(self.get(EEE + "/rx-duration", "intIfNum=9"), read_reply(0, E, {"high": 0, "low": 0}))

    def test_the_broken_down_time_since_reset_serves(self):
        self.sim.set("rpcclt_openapixGreenEthrEeeTimeSinceLastStatsResetGet", "3", [2, 23, 59, 1])
        self.sim.set(CALL + "EeeTimeSinceLastStatsResetGet", "3", 86400)
        self.assertReply(self.get(EEE + "/time-since-last-stats-reset", "intIfNum=3"),
                         read_reply(0, E, {"days": 2, "hours": 23, "minutes": 59, "seconds": 1}))
        self.assertEqual(self.sim.calls(),
                         [{"call": "rpcclt_openapixGreenEthrEeeTimeSinceLastStatsResetGet", "in": [3]}])

    def test_statistics_clear_resets_the_counters(self):
        self.assertNotEqual(self.get(EEE + "/tx-events", "intIfNum=1").out, read_reply(0, E, {"count": 0}))
        self.assertReply(self.delete(EEE + "/statistics", "intIfNum=1"), set_reply(0))
        self.assertReply(self.get(EEE + "/tx-events", "intIfNum=1"), read_reply(0, E, {"count": 0}))
        self.assertReply(self.get(EEE + "/rx-duration", "intIfNum=1"), read_reply(0, E, {"high": 0, "low": 0}))
        self.assertReply(self.delete(EEE + "/statistics", "intIfNum=26"), set_reply(10023))

    def test_remote_values_take_the_interface_first(self):
        self.assertReply(self.get(EEE + "/rem-tx-twsys", "remIndex=1&intIfNum=2&timestamp=4711"),
                         read_reply(0, E, {"remTxTwsys": 30}))
        self.assertEqual(self.sim.calls(), [{"call": CALL + "EeeRemTxTwsysGet", "in": [2, 1, 4711]}])
        self.assertReply(self.get(EEE + "/rem-fb-twsys", "intIfNum=2"), read_reply(10023, E))
        self.assertEqual(self.sim.calls(), [{"call": CALL + "EeeRemFbTwsysGet", "in": [2, 0, 0]}])
        self.sim.set(CALL + "EeeRemRxTwsysEchoGet", "5,3,9", 44)
        self.assertReply(self.get(EEE + "/rem-rx-twsys-echo", "timestamp=9&remIndex=3&intIfNum=5"),
                         read_reply(0, E, {"remRxTwsysEcho": 44}))

    def test_summaries_report_dll_flags_as_numbers(self):
        self.assertReply(self.get(EEE + "/tx-dll-ready", "intIfNum=8"), read_reply(0, E, {"ready": "false"}))
        self.assertReply(self.get(EEE + "/tx-dll-enable", "intIfNum=8"), read_reply(0, E, {"enable": "true"}))
        self.assertReply(self.get(EEE + "/local-summary", "intIfNum=8"),
                         read_reply(0, E, {"twSysTx": 17, "twSysTxEcho": 0, "twSysRx": 17, "twSysRxEcho": 0,
                                           "twSysTxFallback": 17, "txDllEnabled": 1, "txDllReady": 0,
                                           "rxDllEnabled": 1, "rxDllReady": 0}))
        self.assertReply(self.get(EEE + "/remote-summary", "intIfNum=1"),
                         read_reply(0, E, {"twSysTx": 30, "twSysTxEcho": 17, "twSysRx": 30, "twSysRxEcho": 17,
                                           "twSysTxFallback": 30}))

    def test_features_per_unit(self):
        self.assertReply(self.get(EEE + "/features-supported"), read_reply(10023, E))
        self.assertEqual(self.sim.calls(), [{"call": CALL + "FeaturesSupportedGet", "in": [0]}])
        self.sim.set(CALL + "FeaturesSupportedGet", "2", "EEE")
        self.assertReply(self.get(EEE + "/features-supported", "unit=2"), read_reply(0, E, {"featureString": "EEE"}))

    def test_admin_modes_and_walk(self):
        self.assertReply(self.put(EEE + "/admin-mode", "intIfNum=7", {"adminMode": "disable"}), set_reply(0))
        self.assertReply(self.get(EEE + "/admin-mode", "intIfNum=7"), read_reply(0, E, {"adminMode": "disable"}))
        self.assertReply(self.put(EEE + "/global-admin-mode", None, {"ADMINMODE": "enable"}), set_reply(0))
        self.assertReply(self.get(EEE + "/global-admin-mode"), read_reply(0, E, {"adminMode": "enable"}))
        self.assertReply(self.get(EEE + "/valid-intf-first"), read_reply(0, E, {"intIfNum": 1}))
        self.assertReply(self.get(EEE + "/valid-intf-next", "prevIfNum=24"), read_reply(10023, E))
        self.assertReply(self.post(EEE + "/is-valid-intf", "intIfNum=12"), read_reply(0, E, {"valid": "true"}))
        self.assertReply(self.post(EEE + "/is-valid-intf", "intIfNum=5000"), check_failure(10023))


class PowerEstimates(SimTestCase):
    def test_readings_and_the_interface_clear(self):
        self.sim.set("rpcclt_openapiGreenPwrEstGlobalCurPwrGet", "", 17215)
        self.assertReply(self.get(PWR_EST + "/global-cur-pwr"),
                         read_reply(0, "greenPwrEstimates", {"pwrConsumption": 17215}))
        self.assertReply(self.get(PWR_EST + "/intf-cur-pwr", "intIfNum=1"),
                         read_reply(0, "greenPwrEstimates", {"pwrConsumption": 560}))
        self.assertReply(self.delete(PWR_EST + "/ethr-intf-statistics", "intIfNum=4"), set_reply(0))
        self.assertReply(self.get(PWR_EST + "/intf-cum-saving", "intIfNum=4"),
                         read_reply(0, "greenPwrEstimates", {"pwrSaving": 0}))
        self.sim.fail(CALL + "PwrEstGlobalPwrSavingGet", -28)
        self.assertReply(self.get(PWR_EST + "/global-pwr-saving"), read_reply(17002, "greenPwrEstimates"))


class PowerSavingHistory(SimTestCase):
    def entry(self, query):
        return self.get(PWR_HIST + "/intf-next-entry", query)

    def next_sample(self, port, cur):
        """The platform's own answer for the sample after `cur`."""
        return self.get(PWR_HIST + "/intf-next-sample", "intIfNum=%d&curSample=%d" % (port, cur)).out

    def test_switch_wide_settings(self):
        self.assertReply(self.put(PWR_HIST + "/ethr-eee-lpi-history-intf-sample-interval", None,
                                  {"sampleInterval": 15.7}), set_reply(0))
        self.assertReply(self.get(PWR_HIST + "/ethr-eee-lpi-history-intf-sample-interval"),
                         read_reply(0, H, {"sampleInterval": 15}))
        self.assertReply(self.put(PWR_HIST + "/ethr-eee-lpi-history-intf-max-samples", None, {}), set_reply(10003))
        self.assertEqual(self.sim.calls()[-2:],
                         [{"call": CALL + "EeeLpiHistoryIntfSampleIntervalGet", "in": []},
                          {"call": CALL + "EeeLpiHistoryIntfMaxSamplesSet", "in": [0]}])

    def test_next_entry_without_a_number_answers_the_second_sample(self):
        second = self.next_sample(2, 1)
        self.assertIn(b'"sampleNo":\t2,', second)
        self.sim.calls()
        for query in ["intIfNum=2", "intIfNum=2&sampleNo=0", "intIfNum=2&sampleNo=1", "intIfNum=2&sampleNo=65537"]:
            with self.subTest(query=query):
                self.assertEqual(self.entry(query).out, second)
                self.assertEqual([c["call"] for c in self.sim.calls()], [FIRST_ENTRY, NEXT_ENTRY])

    def test_next_entry_walks_to_the_named_sample(self):
        self.assertEqual(self.entry("intIfNum=2&sampleNo=20").out, self.next_sample(2, 20))

    def test_the_last_sample_has_no_next(self):
        self.assertReply(self.entry("intIfNum=2&sampleNo=36"), read_reply(10023, H))
        self.assertReply(self.entry("intIfNum=2&sampleNo=37"), read_reply(10023, H))

    def test_search_stops_after_4096_steps(self):
        found = self.entry("intIfNum=1&sampleNo=4097")
        self.assertEqual(found.out, self.next_sample(1, 4097))
        self.assertIn(b'"sampleNo":\t4098,', found.out)
        self.sim.calls()
        # The switch holds sample 4098 and more, but the search gives up.
        self.assertReply(self.entry("intIfNum=1&sampleNo=4098"), read_reply(10023, H))
        calls = self.sim.calls()
        self.assertEqual(calls[0], {"call": FIRST_ENTRY, "in": [1]})
        self.assertEqual(len(calls), 1 + 4096)
        self.assertTrue(all(c == {"call": NEXT_ENTRY, "in": []} for c in calls[1:]))

    def test_failures_answer_their_code(self):
        self.assertReply(self.entry("intIfNum=25&sampleNo=3"), read_reply(10023, H))
        self.assertEqual(self.sim.calls(), [{"call": FIRST_ENTRY, "in": [25]}])
        self.sim.fail(NEXT_ENTRY, -1)
        self.assertReply(self.entry("intIfNum=2&sampleNo=5"), read_reply(10000, H))
        self.assertEqual(len(self.sim.calls()), 2)

    def test_first_entry_and_clear(self):
        first = self.get(PWR_HIST + "/intf-first-entry", "intIfNum=3")
        self.assertEqual(first.out, self.next_sample(3, 0))
        self.assertIn(b'"sampleNo":\t1,', first.out)
        self.assertReply(self.delete(PWR_HIST + "/intf-statistics", "intIfNum=3"), set_reply(0))
        self.assertReply(self.get(PWR_HIST + "/intf-first-entry", "intIfNum=3"), read_reply(10023, H))

    def test_next_sample_passes_the_low_sixteen_bits(self):
        self.get(PWR_HIST + "/intf-next-sample", "intIfNum=2&curSample=65539")
        self.assertEqual(self.sim.calls(), [{"call": NEXT_SAMPLE, "in": [2, 3]}])

    def test_record_fields_come_from_the_platform_record(self):
        # Fields travel as 32-bit words: number, time, both percentages, padding, cursor.
        self.sim.set(FIRST_ENTRY, "6", [7, 1709300000, 12 + (34 << 16), 0, 0, 0])
        self.assertReply(self.get(PWR_HIST + "/intf-first-entry", "intIfNum=6"),
                         read_reply(0, H, {"sampleNo": 7, "sampleTime": 1709300000, "percentLpiTime": 12,
                                           "percentLpiTimeTotal": 34}))
        self.assertReply(self.entry("intIfNum=6"), read_reply(10023, H))


if __name__ == "__main__":
    main()
