#!/usr/bin/env python3
"""Soak (`make soak`): WORKERS keep-alive connections on one administrator session through lighttpd, a CGI
process per request for SOAK_SECONDS, then FastCGI responders for SOAK_REQUESTS. Checks every reply, the
kept settings, the session file, every log record, the responders' resident size; writes RELIABILITY.md."""

import collections, concurrent.futures, fcntl, http.client, json, os, pathlib, random, re  # noqa: E401
import sys, tempfile, threading, time  # noqa: E401

from harness import BUILD, LOG_FILE, SESSION_DIR, Lighttpd, Sim, debug_logging, envelope, new_session, uptime

SECONDS, WORKERS = float(os.environ.get("SOAK_SECONDS", "60")), 16
REQUESTS, RSS_FIRST, RSS_SLACK = int(os.environ.get("SOAK_REQUESTS", "100000")), 1000, 0.05
SANITIZED = "IF_SANITIZE:BOOL=ON" in open(os.path.join(BUILD, "CMakeCache.txt")).read()
CLIENT_TIMEOUT = 40  # past the 18 s connectivity wait: no reply by then is a hang
ROTATE, SLACK = 1 << 20, 1 << 16  # SLACK: what other processes may append between a crossing and its rotation
REPORT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "RELIABILITY.md")
PREFIX = rb"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \((?:ERROR|WARN|INFO|DEBUG)\): quill_cgi: "
# A whole record: one line, or the session refresh, whose text spans three.
RECORD = re.compile(PREFIX + rb"\[\w+:\d+\] (?:Token update to file\. \(admin\n\d+\n[^\n]+\)\r\n|[^\n]*\n)")
FORBIDDEN, SLOTS = (403, None, b""), [(port, attr) for port in range(1, 29) for attr in ("descr", "admin-state")]
KEYS = {"descr": ("descrip", "description"), "admin-state": ("adminState", "admin-state")}  # body key, reply key


def reply(code, data=None):
    return 200, "application/json", envelope(code, "if", data) if data else envelope(code, newline=True)



class Load:
    """WORKERS threads, each owning a share of the port settings, so that the last value of each is known."""

    def __init__(self, port, admin, viewer):
        self.port, self.admin, self.viewer = port, admin, viewer
        self.lock, self.outcomes, self.last = threading.Lock(), [], {}

    def run(self, seconds, requests=float("inf")):
        self.requests = requests
        with concurrent.futures.ThreadPoolExecutor(WORKERS) as pool:
            list(pool.map(self.worker, range(WORKERS), [time.monotonic() + seconds] * WORKERS))

    def pick(self, w, seq, rng, mine):
        roll, admin, (port, attr) = rng.random(), {"session": self.admin}, rng.choice(SLOTS[w::WORKERS])
        if roll < 0.35:
            value = "w%d-%d" % (w, seq) if attr == "descr" else rng.choice(["enable", "disable"])
            return "set", "PUT", "%s?ifNum=%d" % (attr, port), {KEYS[attr][0]: value}, admin, reply(0), (port, attr)
        if roll < 0.50:
            headers = rng.choice([{"session": self.viewer}, {"session": "no-such-token"}, {}])
            return "refused", "PUT", "descr?ifNum=1", {"descrip": "x"}, headers, FORBIDDEN, None
        if mine and roll < 0.80:
            (port, attr), value = rng.choice(sorted(mine.items()))
            shown = value if attr == "descr" else "up" if value == "enable" else "down"
            return "read", "GET", "%s?ifNum=%d" % (attr, port), None, admin, reply(0, {KEYS[attr][1]: shown}), None
        # Not the link state: a worker's admin-state may take any port's link down.
        return "read", "GET", "type?ifNum=3", None, admin, reply(0, {"ifType": "phy"}), None

    def worker(self, w, stop):
        rng, mine, seq = random.Random(w), {}, 0
        conn = http.client.HTTPConnection("127.0.0.1", self.port, timeout=CLIENT_TIMEOUT)
        while time.monotonic() < stop and len(self.outcomes) < self.requests:
            seq += 1
            kind, method, path, body, headers, expect, slot = self.pick(w, seq, rng, mine)
            start = time.monotonic()
            try:
                conn.request(method, "/api/v2/interfaces/if/" + path, body and json.dumps(body), headers)
                r = conn.getresponse()
                got = (r.status, r.getheader("Content-Type"), r.read())
            except (OSError, http.client.HTTPException) as e:
                conn.close()
                got = ("no reply", type(e).__name__, b"")
            end, outcome = time.monotonic(), "as expected" if got == expect else "UNEXPECTED"
            with self.lock:
                self.outcomes.append((kind, outcome, path, got, end - start))
                if slot and outcome == "as expected":
                    mine[slot] = self.last[slot] = body[KEYS[slot[1]][0]]


class LogWatch(threading.Thread):
    """Every generation of the log kept through a hard link: lines appended after a rotation are read too."""

    def __init__(self):
        super().__init__()
        self.dir, self.links, self.stop = tempfile.mkdtemp(prefix="soak-log-", dir="/tmp"), [], threading.Event()
        self.offset = os.path.getsize(LOG_FILE) if os.path.exists(LOG_FILE) else 0

    def run(self):
        while not self.stop.wait(0.002):
            self.poll()

    def poll(self):
        link = os.path.join(self.dir, str(len(self.links)))
        try:
            os.link(LOG_FILE, link)
        except FileNotFoundError:  # between a rotation's rename and the new file
            return
        if self.links and os.stat(link).st_ino == os.stat(self.links[-1]).st_ino:
            return os.unlink(link)
        self.links.append(link)

    def check(self, faults):
        """Whole records only, and one rotation per 1 MiB crossing."""
        self.stop.set()
        self.join()
        self.poll()
        sizes = [os.path.getsize(link) for link in self.links]
        texts = [pathlib.Path(link).read_bytes()[self.offset if i == 0 else 0:] for i, link in enumerate(self.links)]
        starts = [[m.start() for m in re.finditer(rb"(?m)^" + PREFIX, t)] + [len(t)] for t in texts]
        torn = [t[:s[0]] for t, s in zip(texts, starts) if s[0] != 0]
        records = [t[a:b] for t, s in zip(texts, starts) for a, b in zip(s, s[1:])]
        torn += [r for r in records if not RECORD.fullmatch(r) or re.search(PREFIX, r[1:])]  # or a line run into it
        faults += ["torn log record %r" % t[:200] for t in torn[:5]]
        faults += ["log generation rotated at %d bytes" % n for n in sizes[:-1] if not ROTATE < n <= ROTATE + SLACK]
        return ["log: %d bytes, %d records, none torn; %d rotations, each past 1 MiB and within 64 KiB of it"
                % (sum(map(len, texts)), len(records), len(sizes) - 1)]


def read_session(token):
    with open(os.path.join(SESSION_DIR, token), "rb") as f:
        fcntl.flock(f, fcntl.LOCK_SH)
        return f.read()


def table(title, load, faults, lines):
    counts = collections.Counter((kind, outcome) for kind, outcome, *_ in load.outcomes)
    faults += ["%s %s -> %r" % (kind, path, (got[0], got[1], got[2][:80]))
               for kind, outcome, path, got, _ in load.outcomes if outcome == "UNEXPECTED"][:5]
    return ["### " + title, "", "| kind | outcome | requests |", "| --- | --- | ---: |"] + \
        ["| %s | %s | %d |" % (kind, outcome, n) for (kind, outcome), n in sorted(counts.items())] + \
        ["| **total** | | **%d** |" % len(load.outcomes), ""] + ["- " + line for line in lines] + [""]


def run_load(load, server, fastcgi, faults):
    """The CGI for SECONDS; the responders to REQUESTS, with their resident sizes after the first RSS_FIRST."""
    if not fastcgi:
        load.run(SECONDS)
        return []
    pids, sizes = server.children(), []
    for count in (RSS_FIRST, RSS_FIRST * 10, REQUESTS):
        load.run(3600, count)
        status = [pathlib.Path("/proc/%d/status" % pid).read_bytes() for pid in pids]
        sizes.append([int(re.search(rb"VmRSS:\s+(\d+)", text).group(1)) for text in status])
    if server.children() != pids:
        return faults.append("responders %s replaced by %s during the run" % (pids, server.children())) or []
    base = 1 if SANITIZED else 0  # the sanitizer's allocator fills up to some 10,000 requests; LeakSanitizer checks
    grown = max(b / a - 1 for a, b in zip(sizes[base], sizes[-1]))
    faults += ["responder resident size grew by %.1f%%" % (grown * 100)] if grown > RSS_SLACK else []
    counts, kb = (RSS_FIRST, RSS_FIRST * 10, len(load.outcomes)), [" and ".join(map(str, s)) for s in sizes]
    return ["responders' resident size after %s requests: %s kB (largest growth from the %s to the last %+.1f%%, "
            "limit +5%%)" % (", ".join(map(str, counts)), ", ".join(kb), ("first", "second")[base], grown * 100)]


def main():
    with debug_logging():  # every request logs, so that the log crosses 1 MiB many times
        runs = [soak(fastcgi) for fastcgi in (False, True)]
    report = "\n".join(line for lines, _ in runs for line in lines)
    marker = "soak figures" + (", sanitizer build" if SANITIZED else "")
    text = open(REPORT).read()
    begin, end = text.index("<!-- %s -->\n" % marker), text.index("<!-- end of %s -->" % marker)
    with open(REPORT, "w") as f:
        f.write(text[:begin] + "<!-- %s -->\n\n" % marker + report + "\n" + text[end:])
    print(report)
    return 1 if any(faults for _, faults in runs) else 0


def soak(fastcgi):
    os.makedirs("/mnt/application/quill/tmp", exist_ok=True)
    sim, faults, samples, stop = Sim(), [], [], threading.Event()
    admin, viewer, log, began = new_session(), new_session("viewer", "ro"), LogWatch(), uptime()
    server = Lighttpd(sim.socket, fastcgi=fastcgi)
    try:
        log.start()
        # A sample of the session file every 50 ms while the load runs.
        sampler = threading.Thread(target=lambda: [samples.append(read_session(admin)) for _ in iter(
            lambda: stop.wait(0.05), True)])
        sampler.start()
        load = Load(server.port, admin, viewer)
        resident = run_load(load, server, fastcgi, faults)
        stop.set()
        sampler.join()
        shape = re.compile(rb"admin\n(\d+)\n" + admin.encode())
        faults += ["session file %r" % s for s in samples if not shape.fullmatch(s)][:5]
        last = shape.fullmatch(read_session(admin))
        if not last or not began <= int(last.group(1)) <= uptime() + 1:  # the kernel rounds up what /proc cuts
            faults.append("session file after the run: %r" % read_session(admin))
        ports = sim.dump()["model"]["ports"]
        for (port, attr), value in load.last.items():
            kept = ports[str(port)]["settings"]["description"] if attr == "descr" else ports[str(port)]["adminEnabled"]
            if kept != (value if attr == "descr" else value == "enable"):
                faults.append("%s of port %d: set %r, kept %r" % (attr, port, value, kept))
        title = "FastCGI responders: %d requests" % len(load.outcomes) if fastcgi else "CGI: %g s" % SECONDS
        report = table("%s, %d connections, one administrator session%s" % (
            title, WORKERS, ", sanitizer build" if SANITIZED else ""), load, faults, resident + [
            "last value of each of the %d port settings found in the switch state" % len(load.last),
            "session file samples, all whole and parseable: %d" % len(samples),
            "longest request: %.2f s; none went without a reply" % max(o[4] for o in load.outcomes)] +
            log.check(faults))
    finally:
        server.stop()
        sim.stop()
    report += ["Lost: " + ("nothing" if not faults else "; ".join(faults)), ""]
    return report, faults


if __name__ == "__main__":
    sys.exit(main())
