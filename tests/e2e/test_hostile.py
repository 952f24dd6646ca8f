"""Hostile requests through the real program: every row is one bad request
with the exact bytes it must answer, and for every row the process ends
normally within its time-out, the switch is left as it was and no session
file that is not the row's own changes."""

import os
import re
import subprocess
from dataclasses import dataclass, field

import harness
from harness import FORBIDDEN, SESSION_DIR, SimTestCase, new_session, read_reply, set_reply

IF = "/api/v2/interfaces/if"
INTERVAL = IF + "/ddisable-auto-recovery-interval"
CAUSE = IF + "/ddisable-auto-recovery-cause"
NEXT = IF + "/ddisable-autorecovery-table-intf-next"
EXPAND = IF + "/intf-expandable-port-mode-supported"

SHOW = "rpcclt_openapiCliShowExecuteToFile"
APPLY = ["rpcclt_openapiTxtCfgCompress", "rpcclt_openapiTxtCfgApply"]
NEXT_CALL = "openapiIfNextGet"
FIRST_CALL = "openapiIfFirstGet"
EXPAND_CALL = "rpcclt_openapiIntfExpandablePortModeSupportedGet"

EMPTY = b""
INVALID = set_reply(10003)
APPLIED = set_reply(0)
REFUSED_BY_SWITCH = set_reply(10000)
UNSUPPORTED = read_reply(17002)
NEXT_4 = read_reply(0, "if", {"nextIfNum": 4})
NEXT_1 = read_reply(0, "if", {"nextIfNum": 1})
END_OF_WALK = read_reply(10023)
PML_DISABLED = read_reply(0, "if", {"mode": "disable"})
EXPAND_TRUE = read_reply(0, "if", {"isExpandedModeSupported": "true"})
EXPAND_FALSE = read_reply(0, "if", {"isExpandedModeSupported": "false"})

# Bounds a hang, never judges speed.
TIMEOUT = 60
DEFAULT_INTERVAL = b'{"interval":300}'


@dataclass
class Row:
    label: str
    method: str
    path: str
    query: str = None
    body: bytes = None
    env: dict = field(default_factory=dict)
    expect: bytes = EMPTY
    calls: list = field(default_factory=list)  # call names, or {"call", "in"} entries
    line: str = None  # the one CLI line an applying row hands the switch


def nested(depth):
    return b'{"interval":300,"x":' + b"[" * depth + b"]" * depth + b"}"


def megabyte(prefix, filler, suffix):
    return prefix + filler * ((1 << 20) - len(prefix) - len(suffix)) + suffix


CONTENT_LENGTH_ROWS = [
    Row("negative", "PUT", INTERVAL, body=DEFAULT_INTERVAL, env={"CONTENT_LENGTH": "-5"}, expect=INVALID),
    Row("negative one", "PUT", INTERVAL, body=DEFAULT_INTERVAL, env={"CONTENT_LENGTH": "-1"}, expect=INVALID),
    Row("beyond every integer", "PUT", INTERVAL, body=DEFAULT_INTERVAL,
        env={"CONTENT_LENGTH": "9" * 40}, expect=INVALID),
    Row("4 GiB", "PUT", INTERVAL, body=DEFAULT_INTERVAL, env={"CONTENT_LENGTH": "4294967296"}, expect=INVALID),
    Row("2 GiB minus one", "PUT", INTERVAL, body=DEFAULT_INTERVAL, env={"CONTENT_LENGTH": "2147483647"},
        expect=INVALID),
    Row("not a number", "PUT", INTERVAL, body=DEFAULT_INTERVAL, env={"CONTENT_LENGTH": "abc"}, expect=INVALID),
    Row("empty", "PUT", INTERVAL, body=DEFAULT_INTERVAL, env={"CONTENT_LENGTH": ""}, expect=INVALID),
    Row("absent", "PUT", INTERVAL, body=DEFAULT_INTERVAL, env={"CONTENT_LENGTH": None}, expect=INVALID),
    Row("zero with a body", "PUT", INTERVAL, body=DEFAULT_INTERVAL, env={"CONTENT_LENGTH": "0"}, expect=INVALID),
    Row("shorter than the body", "PUT", INTERVAL, body=DEFAULT_INTERVAL, env={"CONTENT_LENGTH": "5"},
        expect=INVALID),
    Row("behaviour: decimal digits before trailing text count", "PUT", INTERVAL, body=DEFAULT_INTERVAL,
        env={"CONTENT_LENGTH": "16xyz"}, expect=APPLIED, calls=APPLY),
    Row("behaviour: longer than a complete body, the end-of-file byte trails the JSON value", "PUT", INTERVAL,
        body=DEFAULT_INTERVAL, env={"CONTENT_LENGTH": "100"}, expect=APPLIED, calls=APPLY,
        line="errdisable recovery interval 300"),
    Row("longer than a cut body", "PUT", INTERVAL, body=b'{"interval":', env={"CONTENT_LENGTH": "100"},
        expect=INVALID),
    Row("a million more than the body", "PUT", INTERVAL, body=b"{", env={"CONTENT_LENGTH": "1000000"},
        expect=INVALID),
    Row("negative on the cause route", "PUT", CAUSE, body=b'{"cause":"pml","mode":"enable"}',
        env={"CONTENT_LENGTH": "-31"}, expect=INVALID),
]

BODY_ROWS = [
    Row("binary", "PUT", INTERVAL, body=bytes(range(256)) * 4, expect=INVALID),
    Row("high bytes only", "PUT", INTERVAL, body=b"\xff\xfe\xfd" * 100, expect=INVALID),
    Row("behaviour: the body is a text that ends at its first NUL", "PUT", INTERVAL,
        body=DEFAULT_INTERVAL + b"\x00\xff garbage", expect=APPLIED, calls=APPLY),
    Row("NUL first", "PUT", INTERVAL, body=b"\x00" + DEFAULT_INTERVAL, expect=INVALID),
    Row("nested arrays 100000 deep", "PUT", INTERVAL, body=b"[" * 100000, expect=INVALID),
    Row("nested objects 50000 deep", "PUT", INTERVAL, body=b'{"a":' * 50000, expect=INVALID),
    Row("valid key beside nesting past the parser's limit", "PUT", INTERVAL, body=nested(5000), expect=INVALID),
    Row("behaviour: nesting within the parser's limit", "PUT", INTERVAL, body=nested(500), expect=APPLIED,
        calls=APPLY),
    Row("1 MiB of garbage", "PUT", INTERVAL, body=b"x" * (1 << 20), expect=INVALID),
    Row("behaviour: 1 MiB valid JSON", "PUT", INTERVAL, body=megabyte(b'{"interval":300,"pad":"', b"a", b'"}'),
        expect=APPLIED, calls=APPLY),
    Row("1 MiB unterminated string", "PUT", INTERVAL, body=megabyte(b'{"interval":300,"pad":"', b"a", b""),
        expect=INVALID),
    Row("array", "PUT", INTERVAL, body=b"[300]", expect=INVALID),
    Row("number", "PUT", INTERVAL, body=b"300", expect=INVALID),
    Row("string", "PUT", INTERVAL, body=b'"interval"', expect=INVALID),
    Row("null", "PUT", INTERVAL, body=b"null", expect=INVALID),
    Row("interval as a string", "PUT", INTERVAL, body=b'{"interval":"300"}', expect=INVALID),
    Row("interval as true", "PUT", INTERVAL, body=b'{"interval":true}', expect=INVALID),
    Row("interval as an object", "PUT", INTERVAL, body=b'{"interval":{"interval":300}}', expect=INVALID),
    Row("behaviour: an infinite interval saturates and the switch refuses it", "PUT", INTERVAL,
        body=b'{"interval":1e999}', expect=REFUSED_BY_SWITCH, calls=APPLY, line="errdisable recovery interval 4294967295"),
    Row("behaviour: a negative infinite interval becomes 0 and the switch refuses it", "PUT", INTERVAL,
        body=b'{"interval":-1e999}', expect=REFUSED_BY_SWITCH, calls=APPLY, line="errdisable recovery interval 0"),
    Row("cause as a number", "PUT", CAUSE, body=b'{"cause":8,"mode":"enable"}', expect=INVALID),
    Row("mode as an array", "PUT", CAUSE, body=b'{"cause":"pml","mode":["enable"]}', expect=INVALID),
    Row("cause in invalid UTF-8", "PUT", CAUSE, body=b'{"cause":"\xff\xfe","mode":"enable"}', expect=INVALID),
    Row("behaviour: an escaped NUL ends the cause text, only the table's name reaches the CLI", "PUT", CAUSE,
        body=b'{"cause":"pml\\u0000; reload","mode":"enable"}', expect=APPLIED, calls=APPLY,
        line="errdisable recovery cause mac-locking"),
    Row("cause with a line feed that would add a CLI line", "PUT", CAUSE,
        body=b'{"cause":"pml\\nreload","mode":"enable"}', expect=INVALID),
    Row("cause set on the cause route as a list", "PUT", CAUSE, body=b'[{"cause":"pml","mode":"enable"}]',
        expect=INVALID),
    Row("behaviour: a GET route ignores any body", "GET", NEXT, query="prevIfNum=3", body=b"\x00\xff" * 1000,
        expect=NEXT_4, calls=[NEXT_CALL]),
]

QUERY_ROWS = [
    Row("behaviour: thousands of & before the scanned number", "GET", NEXT, query="&" * 10000 + "prevIfNum=3",
        expect=NEXT_4, calls=[NEXT_CALL]),
    Row("behaviour: thousands of & after the scanned number", "GET", NEXT, query="prevIfNum=3" + "&" * 10000,
        expect=NEXT_4, calls=[NEXT_CALL]),
    Row("behaviour: the scan reads the variable past 8192 characters", "GET", NEXT,
        query="x" * 9000 + "&prevIfNum=3", expect=NEXT_4, calls=[NEXT_CALL]),
    Row("lone % as the number", "GET", NEXT, query="prevIfNum=%", expect=NEXT_1, calls=[FIRST_CALL]),
    Row("only % and &", "GET", NEXT, query="%&%%&&%", expect=NEXT_1, calls=[FIRST_CALL]),
    Row("escaped NUL before the number", "GET", NEXT, query="prevIfNum=%003", expect=NEXT_1, calls=[FIRST_CALL]),
    Row("behaviour: digits stop at an escaped NUL", "GET", NEXT, query="prevIfNum=3%00", expect=NEXT_4,
        calls=[NEXT_CALL]),
    Row("behaviour: the low 32 bits of a long number", "GET", NEXT, query="prevIfNum=99999999999",
        expect=END_OF_WALK, calls=[{"call": NEXT_CALL, "in": [0, 1215752191]}]),
    Row("behaviour: a minus sign wraps to the last number", "GET", NEXT, query="prevIfNum=-1",
        expect=END_OF_WALK, calls=[{"call": NEXT_CALL, "in": [0, 4294967295]}]),
    Row("cause past 127 characters", "GET", CAUSE, query="cause=" + "a" * 9000, expect=UNSUPPORTED),
    Row("cause cut at 127 characters does not become a name", "GET", CAUSE, query="cause=" + "pml" * 43,
        expect=UNSUPPORTED),
    Row("cause with an escaped NUL", "GET", CAUSE, query="cause=pml%00", expect=UNSUPPORTED),
    Row("cause as a lone %", "GET", CAUSE, query="cause=%", expect=UNSUPPORTED),
    Row("cause with a line feed", "GET", CAUSE, query="cause=pml\nbpduguard", expect=UNSUPPORTED),
    Row("behaviour: cause found after thousands of &", "GET", CAUSE, query="&" * 5000 + "cause=pml",
        expect=PML_DISABLED, calls=[SHOW]),
    Row("behaviour: cause found past 8192 characters", "GET", CAUSE, query="x" * 9000 + "&cause=pml",
        expect=PML_DISABLED, calls=[SHOW]),
    Row("behaviour: a lookup within the first 8192 characters", "GET", EXPAND,
        query="x" * (8192 - len("&expandPortMode=quad_40g")) + "&expandPortMode=quad_40g", expect=EXPAND_TRUE,
        calls=[{"call": EXPAND_CALL, "in": [4]}]),
    Row("behaviour: a lookup past 8192 characters is cut away", "GET", EXPAND,
        query="x" * (8193 - len("&expandPortMode=quad_40g")) + "&expandPortMode=quad_40g", expect=EXPAND_FALSE,
        calls=[{"call": EXPAND_CALL, "in": [0]}]),
    Row("thousands of & to split", "GET", EXPAND, query="&" * 8192, expect=EXPAND_FALSE,
        calls=[{"call": EXPAND_CALL, "in": [0]}]),
]

LONG = "a" * 2000
URI_ROWS = [
    Row("route name past 1023 characters", "GET", IF + "/" + LONG),
    Row("directory past 1023 characters", "GET", IF + "/" + "d/" * 700 + "ddisable-reason"),
    Row("slashes past 1023 characters", "GET", IF + "/" * 1100 + "/ddisable-reason"),
    Row("behaviour: a query cut at 1023 characters still selects its route", "GET", NEXT,
        query="prevIfNum=3&" + LONG, expect=NEXT_4, calls=[NEXT_CALL]),
    Row("behaviour: no slash at all, the copy is cut at 1023", "GET", "x" * 2000,
        env={"QUERY_STRING": None}, expect=b"Invalid request path '" + b"x" * 1023 + b"'\n"),
    Row("behaviour: empty URI", "GET", "", env={"QUERY_STRING": None}, expect=b"Invalid request path ''\n"),
    Row("escaped NUL in the route name", "GET", IF + "/ddisable-reason%00"),
    Row("line feed in the route name", "GET", IF + "/ddisable-reason\nx"),
    Row("dot-dot segments", "GET", IF + "/../if/ddisable-reason"),
    Row("root only", "GET", "/"),
    Row("method past 1023 characters", "X" * 5000, IF + "/ddisable-reason"),
    Row("method with a line feed", "GET\n", IF + "/ddisable-reason"),
    Row("method absent", None, IF + "/ddisable-reason"),
]

DECOY = "hostile-decoy-%d" % os.getpid()
TOKEN_ROWS = [
    # Each row's token is formatted with the decoy's name.
    ("slash to the decoy", "../session/{decoy}"),
    ("absolute path", "/tmp/session/{decoy}"),
    ("dot-dot", ".."),
    ("dot", "."),
    ("empty", ""),
    ("line feed", "{decoy}\n"),
    ("line feed inside", "{decoy}\nadmin"),
    ("600 characters", "{decoy}" + "x" * 600),
    ("escaped slash", "..%2fsession%2f{decoy}"),
    ("a wildcard", "hostile-decoy-*"),
    ("trailing blank", "{decoy} "),
]


def admin_text(stamp):
    return "admin\n%d\n" % stamp


class HostileCase(SimTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.decoy = new_session(token=DECOY, stamp=harness.uptime())

    @classmethod
    def tearDownClass(cls):
        for name in (DECOY,):
            try:
                os.unlink(os.path.join(SESSION_DIR, name))
            except FileNotFoundError:
                pass
        super().tearDownClass()

    def setUp(self):
        super().setUp()
        # The first show of a fresh simulator builds its defaults; build them
        # here so that the rows compare the state a read leaves unchanged.
        self.get(INTERVAL)
        self.sim.journal()

    def decoy_state(self):
        path = os.path.join(SESSION_DIR, DECOY)
        with open(path, "rb") as f:
            return f.read(), os.stat(path).st_mtime_ns

    def run_row(self, row, session=None):
        """One request; every check that holds for every row."""
        before, decoy = self.sim.dump(), self.decoy_state()
        try:
            r = harness.cgi(self.sim, row.method, row.path, row.query, row.body,
                            session=self.token if session is None else session,
                            env=dict({"REQUEST_METHOD": row.method}, **row.env), timeout=TIMEOUT)
        except subprocess.TimeoutExpired:
            self.fail("hung past %d s" % TIMEOUT)
        self.assertEqual(r.status, 0, "ended by signal %d" % -r.status if r.status < 0 else "exit status")
        self.assertEqual(r.out, row.expect)
        seen = self.sim.calls()
        self.assertEqual(self.journal_view(seen, row.calls), row.calls)
        if row.line is not None:
            scripts = [e.get("script") for e in seen if e["call"] == APPLY[1]]
            self.assertEqual(scripts, [["end", "configure", "configure", row.line, "end", "configure", "end",
                                        "configure"]])
        if not any(c in APPLY for c in row.calls):
            self.assertEqual(self.sim.dump(), before, "switch state changed")
        self.assertEqual(self.decoy_state(), decoy, "another session file changed")
        return r

    @staticmethod
    def journal_view(seen, expected):
        """The calls seen, in the shape the row names them."""
        if any(isinstance(c, dict) for c in expected):
            return [{"call": e["call"], "in": e.get("in")} for e in seen]
        return [e["call"] for e in seen]

    def run_table(self, rows):
        for row in rows:
            with self.subTest(row.label):
                self.sim.ctl("reset")
                self.get(INTERVAL)
                self.sim.journal()
                self.run_row(row)



class Hostile(HostileCase):
    def test_content_length(self):
        self.run_table(CONTENT_LENGTH_ROWS)

    def test_bodies(self):
        self.run_table(BODY_ROWS)

    def test_queries(self):
        self.run_table(QUERY_ROWS)

    def test_uris(self):
        self.run_table(URI_ROWS)

    def test_tokens_are_refused_before_any_path_is_formed(self):
        for label, pattern in TOKEN_ROWS:
            token = pattern.format(decoy=DECOY)
            with self.subTest(label):
                self.run_row(Row(label, "GET", NEXT, query="prevIfNum=3", expect=FORBIDDEN), session=token)
                if "/" not in token and token not in ("", ".", ".."):
                    self.assertFalse(os.path.exists(os.path.join(SESSION_DIR, token)))

    def test_token_absent(self):
        r = harness.cgi(self.sim, "GET", NEXT, "prevIfNum=3", timeout=TIMEOUT)
        self.assertEqual((r.out, r.status), (FORBIDDEN, 0))

    def test_longest_usable_token_is_served(self):
        token = new_session(token="h" * 255)
        try:
            self.run_row(Row("255 characters", "GET", NEXT, query="prevIfNum=3", expect=NEXT_4,
                             calls=[NEXT_CALL]), session=token)
        finally:
            os.unlink(os.path.join(SESSION_DIR, token))


# (label, file bytes or None for a directory, expected reply, file afterwards:
#  "same", None for deleted, or a pattern in which {now} is the uptime and
#  {token} the token)
NOW = "{now}"
SESSION_FILE_ROWS = [
    ("empty", b"", FORBIDDEN, "same"),
    ("user line cut before its newline", b"adm", FORBIDDEN, "same"),
    ("administrator without a newline", b"admin", FORBIDDEN, "same"),
    ("user without privilege line", lambda now: b"operator\n%d\n" % now, FORBIDDEN, "same"),
    ("privilege garbage", lambda now: b"operator\n%d\nzz\n" % now, FORBIDDEN, "same"),
    ("binary", bytes(range(256)) * 3, FORBIDDEN, "same"),
    ("NUL user line", b"\x00dmin\n0\n", FORBIDDEN, "same"),
    ("user line past 200 bytes", b"a" * 300 + b"\n0\nrw\n", FORBIDDEN, "same"),
    ("behaviour: administrator without a time stamp line never times out", b"admin\n", NEXT_4,
     "admin\n{now}\n{token}"),
    ("behaviour: a binary time stamp counts as none", b"admin\n\x00\xff\x01\n", NEXT_4, "admin\n{now}\n{token}"),
    ("behaviour: a time stamp past every integer is in the future", b"admin\n" + b"9" * 300 + b"\n", NEXT_4,
     "admin\n{now}\n{token}"),
    ("behaviour: a negative time stamp has timed out and is deleted", b"admin\n-99999\n", FORBIDDEN, None),
    ("behaviour: a read-only line cut before its newline", lambda now: b"operator\n%d\nro" % now, NEXT_4,
     "operator\n{now}\nro{token}"),
    ("a directory in place of the file", None, FORBIDDEN, "dir"),
]


class HostileSessionFiles(HostileCase):
    def test_session_files(self):
        for n, (label, content, expect, after) in enumerate(SESSION_FILE_ROWS):
            with self.subTest(label):
                token = "hostile-file-%d-%d" % (os.getpid(), n)
                path = os.path.join(SESSION_DIR, token)
                try:
                    self.check_session_file(token, path, content, expect, after)
                finally:
                    self.remove(path)

    def check_session_file(self, token, path, content, expect, after):
        if content is None:
            os.mkdir(path)
        else:
            with open(path, "wb") as f:
                f.write(content(harness.uptime()) if callable(content) else content)
        with open(path, "rb") if content is not None else open(os.devnull, "rb") as f:
            original = f.read()
        low = harness.uptime()
        calls = [NEXT_CALL] if expect == NEXT_4 else []
        self.run_row(Row("", "GET", NEXT, query="prevIfNum=3", expect=expect, calls=calls), session=token)
        high = harness.uptime()
        if after is None:
            self.assertFalse(os.path.exists(path))
        elif after == "dir":
            self.assertTrue(os.path.isdir(path))
        elif after == "same":
            with open(path, "rb") as f:
                self.assertEqual(f.read(), original)
        else:
            with open(path) as f:
                text = f.read()
            pattern = re.escape(after).replace(re.escape("{now}"), r"(\d+)").replace(re.escape("{token}"),
                                                                                        re.escape(token))
            m = re.fullmatch(pattern, text)
            self.assertIsNotNone(m, text)
            # The kernel's uptime call rounds where /proc/uptime cuts.
            self.assertTrue(low <= int(m.group(1)) <= high + 1, text)

    @staticmethod
    def remove(path):
        if os.path.isdir(path):
            os.rmdir(path)
        elif os.path.lexists(path):
            os.unlink(path)


if __name__ == "__main__":
    harness.main()
