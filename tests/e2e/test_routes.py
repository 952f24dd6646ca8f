"""Route transcripts: ("METHOD dir/route?query", OpEN calls seen, reply, body, `open-sim ctl` set-up).
Calls: "Name(inputs)" or a bare name; a list of (name, inputs...) tuples or dicts; None: unchecked. A reply
dict or list is a success's data; a number is a code, read-shaped for GET, set-shaped otherwise."""

import json
import re
import shlex

from harness import SimTestCase, main, read_reply, set_reply

# Directory aliases; a reply's group is its directory's name in camel case.
DIRS = {"green": "green-ethernet", "hist": "green-pwr-sav-history", "app": "interface-app"}


def full(name):
    return name if name.startswith(("openapi", "rpcclt_")) else "rpcclt_openapi" + name


def T(req, calls, reply, body=None, setup=()):
    return req, calls, reply, body, [setup] if isinstance(setup, str) else setup


def buf(text, size=None):
    """A text descriptor as the switch receives it; an address travels in 18 bytes."""
    return {"size": len(text) + 1 if size is None else size, "text": text}


def applied(line):
    """The CLI script the D-Disable routes hand the switch for one configuration line."""
    return {"call": "TxtCfgApply", "script": ["end", "configure", "configure", line] + ["end", "configure"] * 2}


IDENTITY = [
    T("GET if/type?ifNum=3", "openapiIfTypeGet(3)", {"ifType": "other"}, setup="set openapiIfTypeGet 3 99"),
    # A success that writes nothing shows the preset.
    T("GET if/link-state?ifNum=3", "openapiIfLinkStateGet(3)", {"linkState": "down"},
      setup="fail openapiIfLinkStateGet 0"),
    # Looked up loosely: the first piece holding the name counts.
    T("GET if/active-state?xinterface=2", "IfActiveStateGet(2)", {"intfActiveState": 1}),
    T("GET if/usm-db-if-index?xinterface=4&interface=3", "usmDbIfIndexGet(3)", {"ifIndex": 3}),
]

COUNTER_CALLS = "InOctets OutOctets InUcastPkts OutUcastPkts InDiscards OutDiscards InErrors OutErrors".split()
SUMMARY_KEYS = ["total-bytes-received", "total-bytes-transmitted", "unicast-packets-received",
                "unicast-packets-transmitted", "total-receive-drops", "total-transmit-drops",
                "total-packets-received-with-errors", "total-transmit-errors"]
STATUS_CALLS = ["IfSpeedModeGet", "IfDuplexModeGet", "IfEthernetHeaderSizeGet", "IfDescrGet", "IfSoftShutdownStateGet",
                "IntfFECModeGet", "IfLinkTrapGet", "IntfExpandablePortConfigModeGet", "IntfExpandablePortOperModeGet"]

# Port 26 with every read of its status failing.
FAILED_STATUS = {"interface": 26, "admin-state": "down", "link-state": "down", "auto-negotiate": "enable",
                 "configured-speed": "unknown", "operational-speed": "unknown", "speed-mode": "unknown",
                 "configured-duplex": "auto", "mtu": 0, "max-frame-size": 0, "ethernet-header-size": 0,
                 "description": "", "soft-shutdown": "disable", "fec-mode": "auto", "link-trap": "disable",
                 "expandable-config-mode": None, "expandable-oper-mode": None}


def names(*pairs):
    return {"interfaces": [{"interface": name, "number": number} for name, number in pairs]}


COUNTERS = [
    # A failing counter reads 0; without a port every physical one is walked.
    T("GET if/counters", "openapiIfFirstGet(0) " + " ".join("If%sGet(1)" % c for c in COUNTER_CALLS) +
      " openapiIfNextGet(0, 1)", [dict(interface=1, **dict(zip(SUMMARY_KEYS, [0] + list(range(1, 8)))))],
      setup=["set If%sGet 1 %d" % (c, n) for n, c in enumerate(COUNTER_CALLS)] +
      ["fail IfInOctetsGet -1", "fail openapiIfNextGet -29"]),
    T("GET if/status?ifNum=26", None, FAILED_STATUS, setup=["fail %s -1" % c for c in STATUS_CALLS]),
    # The Nth LAG is computed from the first, not asked for; a VLAN is shown even as 0.
    T("GET if/num?name=lag3", "openapiIfFirstGet(2)", names(("lag3", 652))),
    T("GET if/num?name=vlan30", "RtrVlanIntfIfNumGet(30)", names(("vlan30", 0)), setup="set RtrVlanIntfIfNumGet 30 0"),
    # All of them: ports without a unit, slot and port are left out, and VLANs without a routing interface.
    T("GET if/num", None, names(*[("0/%d" % p, p) for p in range(3, 29)], ("lag1", 650), ("lag2", 651),
                                ("vlan1", 700), ("vlan10", 701)), setup="fail HashIntfUnitSlotPortGet -1 2"),
    T("POST if/counters/reset?xifNum=3", "", 10003),
]

ATTRIBUTES = [
    T("PUT if/speed?ifNum=25", "IfSpeedSet(25, 10)", 0, {"speed": "portctrl_portspeed_full_10gsx"}),
    # Older pages send the link trap as "mode".
    T("PUT if/link-trap?ifNum=3", "IfLinkTrapSet(3, 1)", 0, {"mode": "enable"}),
    T("PUT if/link-trap?ifNum=3", "IfLinkTrapSet(3, 0)", 0, {"link-trap": "disable", "mode": "enable"}),
    T("PUT if/descr?ifNum=3", [("IfDescrSet", 3, buf("d" * 255))], 0, {"descrip": "d" * 300}),
    T("PUT if/intf-fec-mode?ifNum=25", "IntfFECModeSet(25, 5)", 0, {"fecMode": "port_fec_rs_544"}),
    T("PUT if/intf-fec-mode?ifNum=25", "IntfFECModeSet(25, 0)", 0, {"fecMode": "rs-544"}),
]

# The settings page's resources: one handler each, taking over the earlier registration of its key.
SPEED_25G = {"configured-speed": "unknown", "operational-speed": "25000", "speed-mode": "25000",
             "configured-duplex": "auto", "operational-duplex": "unknown"}
COMPOSITE = [
    T("GET if/speed?ifNum=25", "IfSpeedModeGet(25) IfDuplexModeGet(25)", SPEED_25G),
    T("PUT if/expandable-mode?ifNum=25", "IntfExpandablePortModeSet(25, 0)", 10003,
      {"expandable-config-mode": "1x50G"}),
    T("PUT if/expandable-mode", "", 10003, {"expandable-config-mode": "1x10G"}),
    # Refusals: reported where the page has no fallback, replaced where it has one.
    T("GET if/admin-state?ifNum=3", None, 17002, setup="fail openapiIfAdminStateGet -28"),
    T("GET if/link-trap?ifNum=3", None, {"link-trap": "disable"}, setup="fail IfLinkTrapGet -1"),
    T("GET if/descr?ifNum=1", None, {"description": ""}, setup="fail IfDescrGet -1"),
    T("GET if/speed?ifNum=25", None, dict(SPEED_25G, **{"operational-speed": "unknown", "speed-mode": "unknown"}),
      setup="fail IfSpeedModeGet -1"),
    T("GET if/intf-fec-mode?ifNum=25", "IntfFECModeGet(25)", {"fec-mode": "auto", "fec-oper": "auto"},
      setup="set IntfFECModeGet 25 []"),
] + [T("GET if/%s?ifNum=0" % route, "", 10003) for route in ["admin-state", "auto-neg", "speed", "mtu-size", "descr",
                                                             "soft-shutdown-state", "intf-fec-mode", "link-trap",
                                                             "expandable-mode"]]

# Work files carry the process number, so that concurrent requests keep apart.
SHOW = [("CliShowExecuteToFile", buf("show errdisable recovery"),
         re.compile(r"/mnt/application/quill/tmp/if_show_\d+"))]
SHOWS = "set CliShowExecuteToFile 'show errdisable recovery' " + shlex.quote(json.dumps(
    "Time left for Auto-recovery from D-Disable state..... 123\n\nErrdisable Cause             Auto-recovery Status\n"
    "---------------------------- --------------------\nbpduguard                    ENABLED\n"
    "link-flap                    Disabled\nTimeout for Auto-recovery from D-Disable state....... 900\n"))
NO_SHOW = "fail CliShowExecuteToFile -1"
DDISABLE = [
    T("PUT if/ddisable-auto-recovery-interval", ["TxtCfgCompress", applied("errdisable recovery interval 3600")], 0,
      {"INTERVAL": 3600.9}),
    T("PUT if/ddisable-auto-recovery-interval", "", 10003, {"interval": "300"}),
    T("GET if/ddisable-auto-recovery-cause?cause=bpduguard", SHOW, {"mode": "enable"}, setup=SHOWS),
    T("GET if/ddisable-auto-recovery-cause?cause=pml", SHOW, 10000, setup=SHOWS),
    T("GET if/ddisable-auto-recovery-cause?cause=pml", SHOW, 17002, setup=NO_SHOW),
    T("PUT if/ddisable-auto-recovery-cause", ["TxtCfgCompress", applied("errdisable recovery cause bpdustorm")], 0,
      {"Cause": "bpdu_rate_limit", "MODE": "enable"}),
    T("PUT if/ddisable-auto-recovery-cause", ["TxtCfgCompress", applied("no errdisable recovery cause "
                                                                        "denial-of-service")], 0,
      {"cause": "dos", "mode": "Enable"}),
    T("GET if/ddisable-autorecovery-table-feature-list", None, 10000, setup=NO_SHOW),
    T("GET if/ddisable-auto-recovery-time-left", "CliShowExecuteToFile", {"timeLeft": 123}, setup=SHOWS),
]

HISTORY = "x2GreenEthrPwrSavHistoryIntf"
GREEN = [
    # A reason left unwritten reads as the invalid one.
    T("GET green/shrt-rch-opr-status?intIfNum=3", "GreenEthrShrtRchOprStatusGet(3)",
      {"oprStatus": "true", "reason": "greenethr_invalid_val"}, setup="set GreenEthrShrtRchOprStatusGet 3 [1]"),
    # Record fields travel as 32-bit words: number, time, both percentages, padding, cursor.
    T("GET hist/intf-first-entry?intIfNum=6", HISTORY + "FirstEntryGet(6)",
      {"sampleNo": 7, "sampleTime": 1709300000, "percentLpiTime": 12, "percentLpiTimeTotal": 34},
      setup="set %sFirstEntryGet 6 [7,1709300000,%d,0,0,0]" % (HISTORY, 12 + (34 << 16))),
    T("GET hist/intf-next-entry?intIfNum=25&sampleNo=3", HISTORY + "FirstEntryGet(25)", 17002),
    T("GET hist/intf-next-sample?intIfNum=2&curSample=65539", HISTORY + "NextSampleGet(2, 3)",
      {"sampleNo": 4, "sampleTime": 1710741300, "percentLpiTime": 82, "percentLpiTimeTotal": 86}),
]

MAC_2, MAC_4, MAC_25 = "3C:EC:EF:10:20:31", "00:11:22:33:44:55", "00:25:90:AA:BB:01"
PML = [
    T("POST pml/intf-static-entry-get-next?ifNum=2", [("PmlIntfStaticEntryGetNext", 2, buf("", 18), 0)],
      {"nextMacAddr": MAC_2, "nextVlanId": 1, "isnextEntrySticky": "false"}, {}),
    # The VLAN-based walk is keyed by the address alone.
    T("POST pml/vlan-dynamic-entry-get-next?ifNum=25", [("PmlVlanDynamicEntryGetNext", 25, buf(MAC_25, 18))],
      {"nextMacAddr": "00:25:90:AA:BB:02", "vlanId": 10}, {"macAddr": MAC_25}),
    # Added with the address in the body, deleted with it in the query.
    T("POST pml/intf-static-entry?ifNum=4&vlanId=1", [("PmlIntfStaticEntryAdd", 4, buf(MAC_4, 18), 1, 1)], 0,
      {"MacAddr": MAC_4 + ":66", "sticky": "true"}),
    T("DELETE pml/intf-static-entry?ifNum=2&macAddr=3C%3AEC%3AEF%3A10%3A20%3A31&vlanId=1",
      [("PmlIntfStaticEntryDelete", 2, buf(MAC_2, 18), 1)], 0),
    T("PUT pml/dot1qci-stream?ifNum=1&vlanId=10", [("PmlDot1qciStreamSet", 1, buf("F4:8E:38:11:22:33", 18), 10, 40)], 0,
      {"macAddr": "F4:8E:38:11:22:33", "streamID": 40.5}),
]

LED = "InterfaceAppPortRGBLedColorSupportGet"
INTERFACE_APP = [
    # The name goes to the switch whole: the length limit is the switch's.
    T("PUT app/time-range?intIfNum=3", [("InterfaceAppTimeRangeSet", 3, buf("n" * 600))], 10003,
      {"timeRange": "n" * 600}),
    # The colour mode is switch-wide: the support question names interface 1 whatever the unit.
    T("PUT app/rgb-led-color-mode?unit=5", LED + "(1) InterfaceAppRGBLedColorModeSet(5, 1)", 10023, {"mode": "enable"}),
    # A port without a colour LED, or a failed question, stops at the gate, before any body is read.
    T("PUT app/port-rgb-led-color-brightness?ifNum=20", LED + "(20)", 17002, "not json"),
    T("PUT app/port-rgb-led-color?ifNum=4", LED + "(4)", 10003, "{color"),
]

# OpEN results and unparsable bodies, once per reply shape (read, set, check); the codes are the envelope's.
RESULTS = [(-28, 17002), (5, 10000)]
SHAPES = [T("GET if/type?ifNum=1", "openapiIfTypeGet(1)", code, setup="fail openapiIfTypeGet %d" % result)
          for result, code in RESULTS] + \
    [T("PUT if/admin-state?ifNum=3", "IfAdminStateSet(3, 1)", code, {"adminState": "enable"},
       setup="fail IfAdminStateSet %d" % result) for result, code in RESULTS] + \
    [T("PUT %s" % route, "", 10003, body) for route in ["if/admin-state?ifNum=3", "pml/intf-age-time?ifNum=2"]
     for body in ["not json", "", '{"x": ']] + \
    [T("POST pml/intf-static-entry-get-next?ifNum=2", "", 10003, "not json")] + \
    [T("POST green/is-intf-eee-capable?intIfNum=1", None, set_reply(17002), setup="fail GreenEthrIsIntfEEECapable -28"),
     T("POST pml/intf-static-entry-get-first?ifNum=2", None, read_reply(17002),
       setup="fail PmlIntfStaticEntryGetFirst -28")]


def expected_calls(calls):
    if isinstance(calls, str):
        return [{"call": full(name), "in": json.loads("[%s]" % args)} if paren else {"call": full(name)}
                for name, paren, args in re.findall(r"(\w+)(\(([^)]*)\))?", calls)]
    return [dict(c, call=full(c["call"])) if isinstance(c, dict) else {"call": full(c[0]), "in": list(c[1:])}
            if isinstance(c, tuple) else {"call": full(c)} for c in calls]


class Routes(SimTestCase):
    def run_rows(self, rows):
        for req, calls, reply, body, setup in rows:
            method, _, target = req.partition(" ")
            path, q, query = target.partition("?")
            alias, _, route = path.partition("/")
            directory = DIRS.get(alias, alias)
            group = re.sub(r"-(.)", lambda m: m.group(1).upper(), directory)
            with self.subTest(req, body=body, setup=setup):
                self.sim.ctl("reset")
                for command in setup:
                    kind, call, *args = shlex.split(command)
                    self.sim.ctl(kind, full(call), *args)
                r = self.request(method, "/api/v2/interfaces/" + directory + ("/" + route if route else ""),
                                 query if q else None, body)
                if not isinstance(reply, bytes):
                    reply = read_reply(0, group, reply) if isinstance(reply, (dict, list)) else \
                        read_reply(reply) if method == "GET" else set_reply(reply)
                self.assertReply(r, reply)
                if calls is None:
                    continue
                want, journal = expected_calls(calls), self.sim.calls(clear=False)
                seen = [{k: e.get(k) for k in w} for e, w in zip(journal, want)]
                for e, w in zip(seen, want):  # a pattern stands for a file name's text
                    if "in" in w:
                        w["in"] = [e["in"][i] if isinstance(x, re.Pattern) and x.fullmatch(e["in"][i]["text"]) else x
                                   for i, x in enumerate(w["in"])]
                self.assertEqual((len(journal), seen), (len(want), want))

    def test_transcripts(self):
        self.run_rows(IDENTITY + COUNTERS + ATTRIBUTES + COMPOSITE + DDISABLE + GREEN + PML + INTERFACE_APP)

    def test_failure_shapes(self):
        self.run_rows(SHAPES)


if __name__ == "__main__":
    main()
