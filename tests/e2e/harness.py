"""End-to-end harness: runs the real interfaces_v2.cgi as the web server
would (CGI variables, body on standard input) against a private open-sim,
and builds the exact reply bytes the program must print."""

import json
import os
import shlex
import subprocess
import tempfile
import time
import unittest

BUILD = os.environ.get("IF_BUILD_DIR") or os.path.join(os.path.dirname(__file__), "..", "..", "build")
CGI = os.path.join(BUILD, "interfaces_v2.cgi")
OPEN_SIM = os.path.join(BUILD, "platform", "open-sim")
SESSION_DIR = "/tmp/session"
CLI_DIR = "/mnt/application/quill/tmp"
LOG_FILE = "/tmp/k9100.log"
LEVEL_FILE = "/tmp/devmgr_log_level"
# A cross build's programs start through an emulator command, e.g. "/usr/bin/qemu-aarch64".
EXEC_WRAPPER = shlex.split(os.environ.get("IF_EXEC_WRAPPER", ""))


def command(program, *args):
    """The argument list that starts one of the built programs."""
    return EXEC_WRAPPER + [program] + [str(a) for a in args]

MESSAGES = {
    0: "Success",
    10000: "General Failed",
    10003: "Invalid argument",
    10011: "Object exist",
    10023: "Request api not found",
    17002: "Unsupported Feature",
}

# What the sanitizer runtimes print when a sanitized build finds a fault.
SANITIZER_MARKS = (b"ERROR: AddressSanitizer", b"ERROR: LeakSanitizer", b"runtime error:")
SANITIZER_VARIABLES = ("ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS")


def check_sanitizer_report(who, stderr):
    """Fails the running test when a child process reported a fault."""
    if stderr and any(mark in stderr for mark in SANITIZER_MARKS):
        raise AssertionError("%s: sanitizer report:\n%s" % (who, stderr.decode(errors="replace")))


def sanitizer_environment():
    return {k: os.environ[k] for k in SANITIZER_VARIABLES if k in os.environ}


JSON_HEADER = b"Content-Type: application/json\r\n\r\n"
FORBIDDEN = b"Status:403\r\n\r\n"


def _string(s):
    out = ['"']
    for ch in s:
        code = ord(ch)
        if ch == '"':
            out.append('\\"')
        elif ch == "\\":
            out.append("\\\\")
        elif ch == "\b":
            out.append("\\b")
        elif ch == "\f":
            out.append("\\f")
        elif ch == "\n":
            out.append("\\n")
        elif ch == "\r":
            out.append("\\r")
        elif ch == "\t":
            out.append("\\t")
        elif code < 32:
            out.append("\\u%04x" % code)
        else:
            out.append(ch)
    out.append('"')
    return "".join(out)


def cjson(value, depth=0):
    """The formatted print of the JSON library the program uses."""
    if value is None:
        return "null"
    if value is True:
        return "true"
    if value is False:
        return "false"
    if isinstance(value, int):
        return str(value)
    if isinstance(value, float):
        return str(int(value)) if value.is_integer() else repr(value)
    if isinstance(value, str):
        return _string(value)
    if isinstance(value, list):
        return "[" + ", ".join(cjson(v, depth + 1) for v in value) + "]"
    inner = "\t" * (depth + 1)
    items = [inner + _string(k) + ":\t" + cjson(v, depth + 1) for k, v in value.items()]
    if not items:
        return "{\n" + "\t" * depth + "}"
    return "{\n" + ",\n".join(items) + "\n" + "\t" * depth + "}"


def envelope(code=0, group=None, data=None, newline=False):
    """The reply body: data under its group when the code is 0, then resp."""
    doc = {}
    if code == 0 and group is not None and data is not None:
        doc[group] = data
    doc["resp"] = {
        "respCode": code,
        "respMsg": MESSAGES[code],
        "status": "success" if code == 0 else "fail",
    }
    return (cjson(doc) + ("\n" if newline else "")).encode()


def read_reply(code=0, group="if", data=None):
    return JSON_HEADER + envelope(code, group, data)


def set_reply(code=0):
    return JSON_HEADER + envelope(code, newline=True)


def uptime():
    with open("/proc/uptime") as f:
        return int(float(f.read().split()[0]))


class Sim:
    """A private open-sim daemon on its own socket."""

    def __init__(self, scenario=None, wrap=None):
        self.dir = tempfile.mkdtemp(prefix="open-sim-")
        self.socket = os.path.join(self.dir, "sim.sock")
        args = list(wrap or []) + command(OPEN_SIM, "serve", "--socket", self.socket)
        if scenario:
            args += ["--scenario", scenario]
        self.proc = subprocess.Popen(args, stderr=subprocess.PIPE)
        deadline = time.time() + 10
        while not os.path.exists(self.socket):
            if self.proc.poll() is not None or time.time() > deadline:
                raise RuntimeError("open-sim did not start: %r" % self.proc.stderr.read())
            time.sleep(0.02)

    def ctl(self, *words, check=True):
        r = subprocess.run(command(OPEN_SIM, "ctl", "--socket", self.socket, *words),
                           capture_output=True, timeout=30)
        check_sanitizer_report("open-sim ctl", r.stderr)
        if check and r.returncode != 0:
            raise RuntimeError("ctl %s failed: %s" % (words, r.stderr.decode()))
        return r

    def set(self, call, key, value):
        self.ctl("set", call, key, json.dumps(value))

    def fail(self, call, result, count=None):
        self.ctl("fail", call, result, *([] if count is None else [count]))

    def journal(self, clear=True):
        lines = self.ctl("journal").stdout.decode().splitlines()
        if clear:
            self.ctl("journal", "--clear")
        return [json.loads(l) for l in lines]

    def calls(self):
        """The journal without the registration every request makes."""
        frame = {"openapiClientRegister", "rpcclt_openapiConnectivityCheck", "rpcclt_openapiNetworkOSVersionGet",
                 "rpcclt_openapiApiVersionGet", "openapiClientTearDown"}
        return [e for e in self.journal() if e["call"] not in frame]

    def dump(self):
        return json.loads(self.ctl("dump").stdout)

    def stop(self):
        if self.proc.poll() is None:
            self.proc.terminate()
            self.proc.wait(timeout=10)
        report = self.proc.stderr.read()
        self.proc.stderr.close()
        check_sanitizer_report("open-sim serve", report)


_token_counter = [0]


def new_session(user="admin", privilege=None, stamp=None, token=None):
    """Writes a session file as the login program would; returns the token."""
    os.makedirs(SESSION_DIR, exist_ok=True)
    if token is None:
        _token_counter[0] += 1
        token = "e2e%d-%d" % (os.getpid(), _token_counter[0])
    lines = user + "\n" + str(uptime() if stamp is None else stamp) + "\n"
    if privilege is not None:
        lines += privilege + "\n"
    with open(os.path.join(SESSION_DIR, token), "w") as f:
        f.write(lines)
    return token


def session_text(token):
    with open(os.path.join(SESSION_DIR, token)) as f:
        return f.read()


class Result:
    def __init__(self, proc):
        self.out = proc.stdout
        self.status = proc.returncode


def cgi(sim, method, path, query=None, body=None, session=None, refresh=None, env=None, timeout=60, wrap=None):
    """One request as the web server makes it; `wrap` is a command prefix
    (for example one that gives the process its own view of the files)."""
    uri = path + ("?" + query if query is not None else "")
    e = {"PATH": "/usr/bin:/bin", "OPEN_SIM_SOCKET": sim.socket, "REQUEST_URI": uri, "REQUEST_METHOD": method}
    if query is not None:
        e["QUERY_STRING"] = query
    data = b""
    if body is not None:
        data = body if isinstance(body, bytes) else (body if isinstance(body, str) else json.dumps(body)).encode()
        e["CONTENT_LENGTH"] = str(len(data))
    if session is not None:
        e["HTTP_SESSION"] = session
    if refresh is not None:
        e["HTTP_REFRESH"] = refresh
    e.update(sanitizer_environment())
    e.update(env or {})
    e = {k: v for k, v in e.items() if v is not None}
    proc = subprocess.run(list(wrap or []) + command(CGI), input=data, env=e, capture_output=True, timeout=timeout)
    check_sanitizer_report("interfaces_v2.cgi %s %s" % (method, uri), proc.stderr)
    return Result(proc)


class SimTestCase(unittest.TestCase):
    """One daemon for the whole class, reset to its scenario before each test."""

    maxDiff = None

    @classmethod
    def setUpClass(cls):
        os.makedirs(CLI_DIR, exist_ok=True)
        cls.sim = Sim()
        cls.token = new_session()

    @classmethod
    def tearDownClass(cls):
        cls.sim.stop()

    def setUp(self):
        self.sim.ctl("reset")

    def get(self, path, query=None, **kw):
        return cgi(self.sim, "GET", path, query, session=kw.pop("session", self.token), **kw)

    def put(self, path, query=None, body=None, **kw):
        return cgi(self.sim, "PUT", path, query, body, session=kw.pop("session", self.token), **kw)

    def post(self, path, query=None, body=None, **kw):
        return cgi(self.sim, "POST", path, query, body, session=kw.pop("session", self.token), **kw)

    def delete(self, path, query=None, **kw):
        return cgi(self.sim, "DELETE", path, query, session=kw.pop("session", self.token), **kw)

    def assertReply(self, result, expected):
        self.assertEqual(result.out.decode(errors="replace"), expected.decode(errors="replace"))
        self.assertEqual(result.status, 0)


def main():
    unittest.main(verbosity=2)
