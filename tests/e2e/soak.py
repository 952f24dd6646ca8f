"""Load driver for the soak suite: a private lighttpd and open-sim on the
loopback, worker threads that own a share of the switch's settings, and
the checks that run over what they saw and what the switch kept."""

import collections
import fcntl
import http.client
import json
import os
import random
import re
import shlex
import shutil
import signal
import socket
import subprocess
import tempfile
import threading
import time

from harness import CGI, EXEC_WRAPPER, LEVEL_FILE, LOG_FILE, OPEN_SIM, SESSION_DIR, command, envelope, uptime

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
OLD_LOG = LOG_FILE + ".old"
ROTATE_BYTES = 1048576
IF = "/api/v2/interfaces/if/"
PORTS = range(1, 29)
WORKERS = 32
# Longer than the connectivity wait (six 3 s pauses) plus the request's own work:
# a reply later than this is a hang.
CLIENT_TIMEOUT = 40
JSON_TYPE = "application/json"


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


class OpenSim:
    """open-sim on a fixed socket path, so that it can be killed and started again."""

    def __init__(self, socket_path):
        self.socket = socket_path
        self.proc = None
        self.start()

    def start(self):
        self.proc = subprocess.Popen(command(OPEN_SIM, "serve", "--socket", self.socket), stderr=subprocess.DEVNULL)
        deadline = time.time() + 10
        while self.ctl("dump", check=False).returncode != 0:
            if self.proc.poll() is not None or time.time() > deadline:
                raise RuntimeError("open-sim did not start")
            time.sleep(0.05)

    def kill(self):
        self.proc.send_signal(signal.SIGKILL)
        self.proc.wait(timeout=10)

    def stop(self):
        if self.proc.poll() is None:
            self.proc.terminate()
            self.proc.wait(timeout=10)

    def ctl(self, *words, check=True):
        r = subprocess.run(command(OPEN_SIM, "ctl", "--socket", self.socket, *words), capture_output=True,
                           timeout=60)
        if check and r.returncode != 0:
            raise RuntimeError("ctl %s failed: %s" % (words, r.stderr.decode()))
        return r

    def dump(self):
        return json.loads(self.ctl("dump").stdout)

    def journal(self):
        return [json.loads(line) for line in self.ctl("journal").stdout.decode().splitlines()]


class Lighttpd:
    def __init__(self, sim_socket):
        self.dir = tempfile.mkdtemp(prefix="soak-lighttpd-")
        self.port = free_port()
        conf = subprocess.run([os.path.join(ROOT, "scripts", "lighttpd-conf.sh"), CGI, self.dir, str(self.port),
                               sim_socket, "127.0.0.1", shlex.join(EXEC_WRAPPER)],
                              capture_output=True, text=True, check=True).stdout.strip()
        self.proc = subprocess.Popen(["lighttpd", "-D", "-f", conf])
        deadline = time.time() + 10
        while True:
            try:
                socket.create_connection(("127.0.0.1", self.port), timeout=0.2).close()
                return
            except OSError:
                if time.time() > deadline:
                    raise
                time.sleep(0.05)

    def stop(self):
        self.proc.terminate()
        self.proc.wait(timeout=10)
        shutil.rmtree(self.dir, ignore_errors=True)


# --- what one request is and what it must answer -----------------------------------------------------------

Request = collections.namedtuple("Request", "kind method path body headers expect")
Outcome = collections.namedtuple("Outcome", "kind start end status ctype body error")

FORBIDDEN = (403, None, b"")


def ok_read(data):
    return (200, JSON_TYPE, envelope(0, "if", data))


def set_answer(code=0):
    return (200, JSON_TYPE, envelope(code, newline=True))


def send(conn, req):
    """One request on a keep-alive connection; never raises."""
    start = time.monotonic()
    body = None if req.body is None else json.dumps(req.body)
    try:
        conn.request(req.method, req.path, body=body, headers=req.headers)
        r = conn.getresponse()
        data = r.read()
        return Outcome(req.kind, start, time.monotonic(), r.status, r.getheader("Content-Type"), data, None)
    except (OSError, http.client.HTTPException) as e:
        conn.close()
        return Outcome(req.kind, start, time.monotonic(), None, None, b"", type(e).__name__)


# --- settings a worker owns -----------------------------------------------------------------------------------

SLOTS = [(port, attr) for port in PORTS for attr in ("descr", "mtu", "admin")]


def slots_of(worker):
    return SLOTS[worker::WORKERS]


def set_request(worker, seq, slot, session):
    port, attr = slot
    path = IF + {"descr": "descr", "mtu": "mtu-size", "admin": "admin-state"}[attr] + "?ifNum=%d" % port
    value = {"descr": "w%d-s%d" % (worker, seq), "mtu": 1500 + (worker * 97 + seq) % 7000,
             "admin": "enable" if seq % 2 else "disable"}[attr]
    key = {"descr": "descrip", "mtu": "mtu_size", "admin": "adminState"}[attr]
    return Request("set", "PUT", path, {key: value}, {"session": session}, set_answer(0)), value


def stored_value(dump, slot):
    """The value the switch keeps for a slot, in the form the worker wrote it."""
    port, attr = slot
    state = dump["state"]
    if attr == "descr":
        return state["rpcclt_openapiIfDescrGet"][str(port)][0]
    if attr == "mtu":
        return state["openapiIfMaxFrameSizeGet"][str(port)][0] - 18
    return "enable" if state["openapiIfAdminStateGet"][str(port)][0] == 1 else "disable"


def read_own_request(slot, value, session):
    port, attr = slot
    if attr == "descr":
        return Request("read", "GET", IF + "descr?ifNum=%d" % port, None, {"session": session},
                       ok_read({"description": value}))
    state = "up" if value == "enable" else "down"
    return Request("read", "GET", IF + "admin-state?ifNum=%d" % port, None, {"session": session},
                   ok_read({"admin-state": state}))


STATIC_READS = [
    (IF + "link-state?ifNum=3", {"linkState": "up"}),
    (IF + "mac-addr?ifNum=5", {"mac_addr": "02:5A:10:00:00:05"}),
    (IF + "name?intf=5", {"intfName": "0/5"}),
]


# --- the load ---------------------------------------------------------------------------------------------------

class Load:
    """WORKERS threads sending a mix of requests until `stop_at`."""

    def __init__(self, port, admin, read_only, extra=None):
        self.port = port
        self.admin = admin
        self.read_only = read_only
        self.extra = extra  # callable(rng) -> Request or None: run-specific traffic
        self.outcomes = []
        self.lock = threading.Lock()
        # slot -> (value, monotonic start of the set that wrote it) for every set answered with success
        self.last_set = {}
        self.sets_ok = []
        self.forget_before = 0.0  # reads of own slots are exact only for sets started after this

    def run(self, seconds):
        stop_at = time.monotonic() + seconds
        threads = [threading.Thread(target=self.worker, args=(w, stop_at)) for w in range(WORKERS)]
        for t in threads:
            t.start()
        for t in threads:
            t.join()

    def worker(self, w, stop_at):
        rng = random.Random(w)
        conn = http.client.HTTPConnection("127.0.0.1", self.port, timeout=CLIENT_TIMEOUT)
        seq = 0
        mine = {}
        while time.monotonic() < stop_at:
            seq += 1
            req, track = self.pick(w, seq, rng, mine)
            out = send(conn, req)
            with self.lock:
                self.outcomes.append((req, out))
            if track and out.error is None and (out.status, out.ctype, out.body) == req.expect:
                slot, value = track
                mine[slot] = (value, out.start)
                with self.lock:
                    self.last_set[slot] = (value, out.start)
                    self.sets_ok.append((slot, value, out.start))
            elif track:
                mine.pop(track[0], None)
        conn.close()

    def pick(self, w, seq, rng, mine):
        roll = rng.random()
        if self.extra and roll < 0.15:
            req = self.extra(rng)
            if req:
                return req, None
        roll = rng.random()
        if roll < 0.35:
            slot = rng.choice(slots_of(w))
            req, value = set_request(w, seq, slot, self.admin)
            return req, (slot, value)
        if roll < 0.45:
            port = rng.choice(slots_of(w))[0]
            return Request("bad-set", "PUT", IF + "mtu-size?ifNum=%d" % port, {"mtu_size": 100},
                           {"session": self.admin}, set_answer(10003)), None
        if roll < 0.60:
            return self.refused(rng), None
        own = [(s, v) for s, (v, started) in mine.items() if s[1] != "mtu" and started >= self.forget_before]
        if own and roll < 0.80:
            slot, value = rng.choice(own)
            return read_own_request(slot, value, self.admin), None
        path, data = rng.choice(STATIC_READS)
        return Request("read", "GET", path, None, {"session": self.admin}, ok_read(data)), None

    def refused(self, rng):
        choice = rng.randrange(3)
        if choice == 0:
            return Request("refused", "PUT", IF + "descr?ifNum=1", {"descrip": "ro"}, {"session": self.read_only},
                           FORBIDDEN)
        headers = {"session": "no-such-token"} if choice == 1 else {}
        return Request("refused", "GET", IF + "link-state?ifNum=3", None, headers, FORBIDDEN)


def got(out):
    return (out.status, out.ctype, out.body)


def tally(pairs, classify):
    """Counts of (kind, outcome) over requests; classify(req, out) names the outcome."""
    counts = collections.Counter()
    for req, out in pairs:
        counts[(req.kind, classify(req, out))] += 1
    return counts


def summary(title, counts, extra_lines):
    lines = ["", "== %s ==" % title]
    total = sum(counts.values())
    lines.append("requests: %d" % total)
    for (kind, outcome), n in sorted(counts.items()):
        lines.append("  %-13s %-28s %d" % (kind, outcome, n))
    lines += ["%s: %s" % item for item in extra_lines]
    print("\n".join(lines), flush=True)


# --- sessions -----------------------------------------------------------------------------------------------------

def read_session_locked(token):
    """The session file as the session check leaves it: read under its lock."""
    try:
        with open(os.path.join(SESSION_DIR, token), "rb") as f:
            fcntl.flock(f, fcntl.LOCK_SH)
            return f.read()
    except FileNotFoundError:
        return None


def parse_session(text, token):
    """(user, stamp, privilege) of a session file as the login wrote it or as a request refreshed it
    (then ending in the token), or None when it is neither."""
    m = re.fullmatch(rb"([^\n]+)\n([0-9]+)\n(?:(r[ow])\n)?(?:" + re.escape(token.encode()) + rb")?", text or b"")
    if not m:
        return None
    return m.group(1).decode(), int(m.group(2)), m.group(3) and m.group(3).decode()


class SessionWatch:
    """Samples a session file under its lock while the load runs."""

    def __init__(self, token):
        self.token = token
        self.samples = 0
        self.bad = []
        self.stop = threading.Event()
        self.thread = threading.Thread(target=self.loop)
        self.thread.start()

    def loop(self):
        while not self.stop.wait(0.05):
            text = read_session_locked(self.token)
            self.samples += 1
            if parse_session(text, self.token) is None:
                self.bad.append(text)

    def finish(self):
        self.stop.set()
        self.thread.join()


# --- the log ------------------------------------------------------------------------------------------------------

class LogWatch:
    """Keeps every generation of the log file alive through a hard link, so
    that lines a slower process appends after a rotation are still read, and
    counts the rotations as the log's name moving to a new file."""

    def __init__(self):
        self.dir = tempfile.mkdtemp(prefix="soak-log-", dir=os.path.dirname(LOG_FILE))
        self.segments = []  # (inode, link path)
        self.start_offset = os.path.getsize(LOG_FILE) if os.path.exists(LOG_FILE) else 0
        self.stop = threading.Event()
        self.poll()
        self.thread = threading.Thread(target=self.loop)
        self.thread.start()

    def poll(self):
        link = os.path.join(self.dir, "seg-%d" % len(self.segments))
        try:
            os.link(LOG_FILE, link)
        except FileNotFoundError:
            return
        inode = os.stat(link).st_ino
        if self.segments and self.segments[-1][0] == inode:
            os.unlink(link)
            return
        if any(seg[0] == inode for seg in self.segments):
            os.unlink(link)
            return
        self.segments.append((inode, link))

    def loop(self):
        while not self.stop.wait(0.002):
            self.poll()

    def finish(self):
        self.stop.set()
        self.thread.join()
        self.poll()

    def contents(self):
        """The bytes of each generation written since the watch began."""
        out = []
        for i, (_, link) in enumerate(self.segments):
            with open(link, "rb") as f:
                if i == 0:
                    f.seek(self.start_offset)
                out.append(f.read())
        return out

    def sizes(self):
        return [os.path.getsize(link) for _, link in self.segments]

    def cleanup(self):
        shutil.rmtree(self.dir, ignore_errors=True)


PREFIX = rb"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \((?:ERROR|WARN|NOTICE|INFO|DEBUG|)\): quill_cgi: "
RECORD_START = re.compile(rb"(?m)^" + PREFIX)
# Messages whose text spans lines, by their tag; every other message is one
# line. Some carry text from the caller (a token, a URI, a user name), which
# may hold line breaks of its own: for those only the fixed ending is checked.
MULTI_LINE = {
    b"checkSessionX:103": rb"Token update to file\. \([^\n]+\n\d+\n(?:r[ow]\n)?[^\n]+\)\r\n",
    b"checkSessionX:86": rb"Token timeout\(\d+ - -?\d+\)\.please login again\. \(userName: .*\n timestamp: -?\d+\n\)\r\n",
    b"checkSessionX:45": rb"/tmp/session/.* file not exsits, ignore\n",
    b"initHandler:870": rb"\nFailed to initialize RPC to OpEN\. Exiting \(result = -?\d+\)\n",
    b"httpdProcessRequest:231": rb"method not found:.*\n",
    b"cliModeCommandApply:441": rb"openapiTxtCfgApply failed for interface dot1p queue map",
}
SINGLE_LINE = rb"[^\n]*\n"
# The one message that ends without a line break runs straight into the next.
UNTERMINATED = re.compile(rb"(?<=\[cliModeCommandApply:441\] openapiTxtCfgApply failed for interface dot1p queue map)"
                          rb"(?=" + PREFIX + rb")")


def split_records(data):
    starts = [m.start() for m in RECORD_START.finditer(data)]
    starts += [m.start() for m in UNTERMINATED.finditer(data)]
    return sorted(set(starts))


def torn_records(data):
    """Records of a log text that are not one whole message each."""
    bad = []
    starts = split_records(data)
    if not starts or starts[0] != 0:
        bad.append(data[:starts[0] if starts else len(data)][:200])
    for i, begin in enumerate(starts):
        record = data[begin:starts[i + 1] if i + 1 < len(starts) else len(data)]
        if re.search(PREFIX, record[1:]):
            bad.append(record[:200])
            continue
        message = re.sub(rb"^" + PREFIX, b"", record, count=1)
        tag = re.match(rb"\[([A-Za-z_]+:\d+)\] ", message)
        if not tag:
            bad.append(record[:200])
            continue
        body = message[tag.end():]
        if not re.fullmatch(MULTI_LINE.get(tag.group(1), SINGLE_LINE), body, re.DOTALL):
            bad.append(record[:200])
    return bad


class LogLevel:
    """Raises the shared level byte for the run and puts the old one back."""

    def __init__(self, level):
        if not os.path.exists(LEVEL_FILE):
            with open(LEVEL_FILE, "wb") as f:
                f.write(b"6\0\0\0")
        with open(LEVEL_FILE, "r+b") as f:
            self.saved = f.read(1)
            f.seek(0)
            f.write(str(level).encode())

    def restore(self):
        with open(LEVEL_FILE, "r+b") as f:
            f.write(self.saved or b"6")
