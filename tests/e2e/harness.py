"""Runs the real interfaces_v2.cgi as the web server would against a private open-sim, and builds the exact
reply bytes; IF_MODE=fastcgi sends the same requests to a FastCGI responder, one per open-sim."""

import collections
import contextlib
import itertools
import json
import os
import pathlib
import shlex
import shutil
import signal
import socket
import struct
import subprocess
import tempfile
import threading
import time
import unittest

BUILD = os.environ.get("IF_BUILD_DIR") or os.path.join(os.path.dirname(__file__), "..", "..", "build")
CGI = os.path.abspath(os.path.join(BUILD, "interfaces_v2.cgi"))
OPEN_SIM = os.path.abspath(os.path.join(BUILD, "platform", "open-sim"))
ROUTE_DUMP = os.path.abspath(os.path.join(BUILD, "route-dump"))
SESSION_DIR = "/tmp/session"
CLI_DIR = "/mnt/application/quill/tmp"
LOG_FILE = "/tmp/k9100.log"
LEVEL_FILE = "/tmp/devmgr_log_level"
EXEC_WRAPPER = shlex.split(os.environ.get("IF_EXEC_WRAPPER", ""))
MODE = os.environ.get("IF_MODE", "cgi")
MESSAGES = {0: "Success", 10000: "General Failed", 10003: "Invalid argument", 10011: "Object exist",
            10023: "Request api not found", 17002: "Unsupported Feature"}
JSON_HEADER = b"Content-Type: application/json\r\n\r\n"
FORBIDDEN = b"Status:403\r\n\r\n"
SANITIZER_MARKS = (b"ERROR: AddressSanitizer", b"ERROR: LeakSanitizer", b"runtime error:")
Result = collections.namedtuple("Result", "out status")


def command(program, *args):
    return EXEC_WRAPPER + [program] + [str(a) for a in args]


def check_sanitizer_report(who, stderr):
    if stderr and any(mark in stderr for mark in SANITIZER_MARKS):
        raise AssertionError("%s: sanitizer report:\n%s" % (who, stderr.decode(errors="replace")))


def cjson(value, depth=0):
    """The formatted print of the JSON library the program uses."""
    if isinstance(value, dict):
        inner = "\t" * (depth + 1)
        items = [inner + json.dumps(k) + ":\t" + cjson(v, depth + 1) for k, v in value.items()]
        return "{\n" + ",\n".join(items) + "\n" + "\t" * depth + "}" if items else "{\n" + "\t" * depth + "}"
    if isinstance(value, list):
        return "[" + ", ".join(cjson(v, depth + 1) for v in value) + "]"
    return json.dumps(value, ensure_ascii=False)  # escapes exactly what the library escapes


def envelope(code=0, group=None, data=None, newline=False):
    doc = {group: data} if code == 0 and group is not None and data is not None else {}
    doc["resp"] = {"respCode": code, "respMsg": MESSAGES[code], "status": "success" if code == 0 else "fail"}
    return (cjson(doc) + ("\n" if newline else "")).encode()


def read_reply(code=0, group="if", data=None):
    return JSON_HEADER + envelope(code, group, data)


def set_reply(code=0):
    return JSON_HEADER + envelope(code, newline=True)


def uptime():
    return int(float(pathlib.Path("/proc/uptime").read_text().split()[0]))


def private_view(script):
    """A command prefix that runs the next command after `script` in its own mount namespace."""
    return ["unshare", "-m", "sh", "-c", "set -e; %s; exec \"$0\" \"$@\"" % script]


@contextlib.contextmanager
def debug_logging():
    """Level 7 (every message) in the level file the program maps, for the block; the level before put back."""
    with os.fdopen(os.open(LEVEL_FILE, os.O_RDWR | os.O_CREAT, 0o640), "r+b") as f:
        f.truncate(max(4, os.fstat(f.fileno()).st_size))  # the program maps four bytes
        saved = f.read(1)
        f.seek(0)
        f.write(b"7")
    try:
        yield
    finally:
        with open(LEVEL_FILE, "r+b") as f:
            f.write(saved if saved.isdigit() else b"6")


class Sim:
    """A private open-sim on its own socket (or `path`, as a restart); `wrap` prefixes its command."""

    def __init__(self, wrap=None, path=None, scenario=None, args=()):
        self.socket = path or os.path.join(tempfile.mkdtemp(prefix="open-sim-"), "sim.sock")
        serve = ["serve", "--socket", self.socket] + (["--scenario", scenario] if scenario else []) + list(args)
        self.proc = subprocess.Popen(list(wrap or []) + command(OPEN_SIM, *serve), stderr=subprocess.PIPE)
        deadline = time.time() + 10
        while not os.path.exists(self.socket):
            if self.proc.poll() is not None or time.time() > deadline:
                raise RuntimeError("open-sim did not start: %r" % self.proc.stderr.read())
            time.sleep(0.02)

    def ctl(self, *words):
        r = subprocess.run(command(OPEN_SIM, "ctl", "--socket", self.socket, *words), capture_output=True, timeout=30)
        check_sanitizer_report("open-sim ctl", r.stderr)
        if r.returncode != 0:
            raise RuntimeError("ctl %s failed: %s" % (words, r.stderr.decode()))
        return r

    def journal(self, clear=True):
        lines = self.ctl("journal").stdout.decode().splitlines()
        if clear:
            self.ctl("journal", "--clear")
        return [json.loads(line) for line in lines]

    def calls(self, clear=True):
        """The journal without the registration every request makes."""
        frame = {"openapiClientRegister", "rpcclt_openapiConnectivityCheck", "rpcclt_openapiNetworkOSVersionGet",
                 "rpcclt_openapiApiVersionGet", "openapiClientTearDown"}
        return [e for e in self.journal(clear) if e["call"] not in frame]

    def dump(self):
        return json.loads(self.ctl("dump").stdout)

    def stop(self):
        if self.proc.poll() is None:
            self.proc.terminate()
            self.proc.wait(timeout=10)
        report = self.proc.stderr.read()
        self.proc.stderr.close()
        check_sanitizer_report("open-sim serve", report)


class Lighttpd:
    """A private lighttpd serving the program on a free loopback port with the project's configuration."""

    def __init__(self, sim_socket, fastcgi=MODE == "fastcgi"):
        self.dir, probe = tempfile.mkdtemp(prefix="lighttpd-"), socket.create_server(("127.0.0.1", 0))
        self.port = probe.getsockname()[1]
        probe.close()
        conf = subprocess.run([os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts",
                                            "lighttpd-conf.sh"), CGI, self.dir, str(self.port), sim_socket,
                               "127.0.0.1", shlex.join(EXEC_WRAPPER)], capture_output=True, text=True,
                              check=True, env=dict(os.environ, FASTCGI="1" if fastcgi else "")).stdout.strip()
        # The responders write to lighttpd's standard error.
        with open(os.path.join(self.dir, "stderr"), "wb") as err:
            self.proc = subprocess.Popen(["lighttpd", "-D", "-f", conf], stderr=err)
        for _ in range(200):  # ten seconds at most
            with socket.socket() as s:
                if s.connect_ex(("127.0.0.1", self.port)) == 0:
                    return
            time.sleep(0.05)
        raise RuntimeError("lighttpd did not start")

    def children(self):
        with open("/proc/%d/task/%d/children" % (self.proc.pid, self.proc.pid)) as f:
            return [int(pid) for pid in f.read().split()]

    def stop(self):
        responders, deadline = self.children(), time.time() + 30
        self.proc.terminate()
        self.proc.wait(timeout=10)
        while any(subprocess.run(["ps", "-o", "stat=", "-p", str(pid)], capture_output=True, text=True).stdout[:1]
                  not in ("", "Z") for pid in responders):
            if time.time() > deadline:
                raise AssertionError("a FastCGI responder did not stop with lighttpd")
            time.sleep(0.05)
        check_sanitizer_report("lighttpd's programs", pathlib.Path(self.dir, "stderr").read_bytes())
        shutil.rmtree(self.dir, ignore_errors=True)


SANITIZER_ENV = {k: v for k, v in os.environ.items() if k.endswith("SAN_OPTIONS")}


def fcgi_record(kind, content=b""):
    return b"".join(struct.pack(">BBHHBx", 1, kind, 1, len(part), 0) + part
                    for part in [content[i:i + 65535] for i in range(0, len(content), 65535)] or [b""])


class Responder:
    """The program as a FastCGI responder, as a web server starts it: a listening socket on standard input."""

    running = {}  # (open-sim socket, command prefix) -> Responder

    def __init__(self, sim_socket, wrap=None):
        self.dir, self.out, self.err = tempfile.mkdtemp(), tempfile.TemporaryFile(), tempfile.TemporaryFile()
        self.path = os.path.join(self.dir, "s")
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind(self.path)
            listener.listen(16)
            self.proc = subprocess.Popen(list(wrap or []) + command(CGI), stdin=listener, stdout=self.out,
                                         stderr=self.err, env=dict(SANITIZER_ENV, PATH="/usr/bin:/bin",
                                                                   OPEN_SIM_SOCKET=sim_socket))

    @classmethod
    def serve(cls, sim, env, data, timeout, wrap, fresh):
        key = (sim.socket, tuple(wrap or []))
        responder = cls(sim.socket, wrap) if fresh else cls.running.get(key) or cls.running.setdefault(
            key, cls(sim.socket, wrap))
        try:
            return responder.request(env, data, timeout)
        finally:
            if fresh:
                responder.stop()

    def request(self, env, data=b"", timeout=60):
        """Records out (from a thread: the program may answer before it reads the body), then in until EOF."""
        pairs = b"".join(b"".join(struct.pack(">B" if n < 128 else ">I", n if n < 128 else n | 1 << 31)
                                  for n in (len(k.encode()), len(v.encode()))) + k.encode() + v.encode()
                         for k, v in env.items())
        sent = fcgi_record(1, struct.pack(">HB5x", 1, 0)) + fcgi_record(4, pairs) + fcgi_record(4) + \
            fcgi_record(5, data) + fcgi_record(5)
        with socket.socket(socket.AF_UNIX) as s:
            s.settimeout(timeout)
            s.connect(self.path)

            def send():
                with contextlib.suppress(OSError):  # the program answered and closed before reading the whole body
                    s.sendall(sent)
            sender = threading.Thread(target=send)
            sender.start()
            received = b"".join(iter(lambda: s.recv(1 << 16), b""))
            sender.join()
        out, status, at = b"", None, 0
        while at + 8 <= len(received):
            _, kind, _, length, padding = struct.unpack_from(">BBHHBx", received, at)
            content, at = received[at + 8:at + 8 + length], at + 8 + length + padding
            out += content if kind == 6 else b""
            status = struct.unpack(">I", content[:4])[0] if kind == 3 else status
        if status is None:
            raise AssertionError("no END_REQUEST; the responder's exit status: %s" % self.proc.poll())
        return Result(out, status)

    def stop(self):
        """As the web server does; fails on a sanitizer report, a failing exit or output outside a request."""
        self.proc.send_signal(signal.SIGTERM)
        status, _ = self.proc.wait(timeout=30), shutil.rmtree(self.dir, ignore_errors=True)
        out, err = [(f.seek(0), f.read(), f.close())[1] for f in (self.out, self.err)]
        check_sanitizer_report("interfaces_v2.cgi as a FastCGI responder", err)
        if out or status != 0:
            raise AssertionError("responder: exit status %s, printed outside a request: %r" % (status, out[:200]))


_tokens = itertools.count(1)


def new_session(user="admin", privilege=None, stamp=None, token=None):
    """A session file as the login program writes it, in a folder only its user may write: the token."""
    token = token or "e2e%d-%d" % (os.getpid(), next(_tokens))
    os.makedirs(SESSION_DIR, mode=0o700, exist_ok=True)
    fd = os.open(os.path.join(SESSION_DIR, token), os.O_WRONLY | os.O_CREAT | os.O_TRUNC | os.O_NOFOLLOW, 0o600)
    with os.fdopen(fd, "w") as f:
        f.write("%s\n%d\n%s" % (user, uptime() if stamp is None else stamp, privilege + "\n" if privilege else ""))
    return token


def cgi(sim, method, path, query=None, body=None, session=None, refresh=None, env=None, timeout=60, wrap=None,
        fresh=False):
    """One request as the web server makes it; an `env` value of None removes that variable. `fresh`: a
    process that served nothing before and ends after this request."""
    uri = path + ("?" + query if query is not None else "")
    e = {"PATH": "/usr/bin:/bin", "OPEN_SIM_SOCKET": sim.socket, "REQUEST_URI": uri, "REQUEST_METHOD": method,
         "QUERY_STRING": query, "HTTP_SESSION": session, "HTTP_REFRESH": refresh}
    data = b""
    if body is not None:
        data = body if isinstance(body, bytes) else (body if isinstance(body, str) else json.dumps(body)).encode()
        e["CONTENT_LENGTH"] = str(len(data))
    e.update(SANITIZER_ENV)
    e.update(env or {})
    e = {k: v for k, v in e.items() if v is not None}
    if MODE == "fastcgi":
        return Responder.serve(sim, e, data, timeout, wrap, fresh)
    proc = subprocess.run(list(wrap or []) + command(CGI), input=data, env=e, capture_output=True, timeout=timeout)
    check_sanitizer_report("interfaces_v2.cgi %s %s" % (method, uri), proc.stderr)
    return Result(proc.stdout, proc.returncode)


class SimTestCase(unittest.TestCase):

    maxDiff = None

    @classmethod
    def setUpClass(cls):
        os.makedirs(CLI_DIR, exist_ok=True)
        cls.sim = Sim()
        cls.token = new_session()

    @classmethod
    def tearDownClass(cls):
        while Responder.running:
            Responder.running.popitem()[1].stop()
        cls.sim.stop()

    def setUp(self):
        self.sim.ctl("reset")

    def request(self, method, path, query=None, body=None, **kw):
        return cgi(self.sim, method, path, query, body, session=kw.pop("session", self.token), **kw)

    def assertReply(self, result, expected):
        self.assertEqual(result.out.decode(errors="replace"), expected.decode(errors="replace"))
        self.assertEqual(result.status, 0)


def served_routes():
    """route-dump --detail's rows that serve requests: a later row of the same key shadows an earlier one."""
    rows = subprocess.run(command(ROUTE_DUMP, "--detail"), capture_output=True, text=True, check=True).stdout
    rows = [line.split("\t") for line in rows.splitlines()]
    last = {tuple(r[0].split()[1:]): i for i, r in enumerate(rows)}
    return [r for i, r in enumerate(rows) if last[tuple(r[0].split()[1:])] == i]


def main():
    unittest.main(verbosity=2)
