#!/usr/bin/env python3
"""The routes that walk every port, on switches of 10, 28 and 52 ports: the
OpEN calls each request makes (from the simulator's journal) and the wall
time of one whole request (a fresh process, the median of some rounds).
The time per call staying flat while the calls grow with the ports shows
the cost following the calls the program must make, no faster.

run_bench.py calls measure() and section(); alone it prints the section:
    python3 bench/port_walks.py --build build"""

import argparse
import os
import statistics
import subprocess
import sys
import tempfile
import threading
import time

SWITCHES = [("switch-10", 10), ("default", 28), ("switch-52", 52)]
BASE = "/api/v2/interfaces/"
WALKS = [
    ("status, all ports", "if/status", ""),
    ("counters, all ports", "if/counters", ""),
    ("num?name=all", "if/num", "name=all"),
    ("power-saving history, 36 samples of port 3", "green-pwr-sav-history/intf-next-entry",
     "intIfNum=3&sampleNo=35"),
]


MONTH_S = 30 * 86400
LINK_STATE = ("if/link-state", "ifNum=3")


class ScenarioSim:
    def __init__(self, build, scenario, *args):
        self.exe = os.path.join(build, "platform", "open-sim")
        self.dir = tempfile.mkdtemp(prefix="bench-walks-")
        self.socket = os.path.join(self.dir, "sim.sock")
        self.proc = subprocess.Popen([self.exe, "serve", "--socket", self.socket, "--scenario", scenario] + list(args),
                                     stderr=subprocess.DEVNULL)
        deadline = time.time() + 10
        while not os.path.exists(self.socket):
            if self.proc.poll() is not None or time.time() > deadline:
                sys.exit("open-sim did not start with " + scenario)
            time.sleep(0.02)

    def ctl(self, *words):
        return subprocess.run([self.exe, "ctl", "--socket", self.socket] + list(words), capture_output=True,
                              check=True, text=True).stdout

    def stop(self):
        self.proc.terminate()
        self.proc.wait(timeout=10)
        os.rmdir(self.dir)


def request(build, sim, token, path, query):
    env = {"PATH": "/usr/bin:/bin", "OPEN_SIM_SOCKET": sim.socket, "REQUEST_METHOD": "GET",
           "REQUEST_URI": BASE + path + ("?" + query if query else ""), "QUERY_STRING": query,
           "HTTP_SESSION": token}
    started = time.perf_counter()
    out = subprocess.run([os.path.join(build, "interfaces_v2.cgi")], env=env, capture_output=True,
                         timeout=120).stdout
    elapsed = time.perf_counter() - started
    if b'"respCode":\t0' not in out:
        sys.exit("%s?%s failed: %r" % (path, query, out[:200]))
    return elapsed


def month_old_dump(build, token, rounds):
    """The 52-port switch a simulated month after load: the dump's size and
    its time through `ctl` (client process included), and link-state
    requests made while dumps run back to back, against the same requests
    with nothing else going on."""
    sim = ScenarioSim(build, "switch-52", "--paused")
    try:
        sim.ctl("clock", "advance", str(MONTH_S))
        size = len(sim.ctl("dump"))
        alone = [request(build, sim, token, *LINK_STATE) for _ in range(rounds)]
        dumps, beside, done = [], [], threading.Event()

        def dump_loop():
            while not done.is_set():
                started = time.perf_counter()
                sim.ctl("dump")
                dumps.append(time.perf_counter() - started)

        t = threading.Thread(target=dump_loop)
        t.start()
        try:
            beside = [request(build, sim, token, *LINK_STATE) for _ in range(rounds)]
        finally:
            done.set()
            t.join()
        return {"bytes": size, "dump": dumps, "alone": alone, "beside": beside}
    finally:
        sim.stop()


def dump_section(fig):
    extra = [b - statistics.median(fig["alone"]) for b in fig["beside"]]
    return ["", "### A month-old 52-port switch dumped while a page polls\n",
            "`bench/port_walks.py`: `open-sim serve --scenario switch-52 --paused`, the clock moved %d days; "
            "`ctl dump` back to back in one thread while link-state requests (a fresh CGI process each) run in "
            "another.\n" % (MONTH_S // 86400),
            "| dump size | dumps | dump fastest | dump median | dump slowest | link-state alone, median | "
            "beside the dumps, median | slowest | most waited beyond the median alone |",
            "|---|---|---|---|---|---|---|---|---|",
            "| %d bytes | %d | %.1f ms | %.1f ms | %.1f ms | %.1f ms | %.1f ms | %.1f ms | %.1f ms |" % (
                fig["bytes"], len(fig["dump"]), min(fig["dump"]) * 1e3, statistics.median(fig["dump"]) * 1e3,
                max(fig["dump"]) * 1e3, statistics.median(fig["alone"]) * 1e3,
                statistics.median(fig["beside"]) * 1e3, max(fig["beside"]) * 1e3, max(extra) * 1e3)]


def measure(build, token, rounds):
    """The walks' rows, (switch, ports, walk, calls, fastest and median
    seconds), and the month-old dump's figures."""
    return {"walks": walk_rows(build, token, rounds), "month_old_dump": month_old_dump(build, token, rounds)}


def walk_rows(build, token, rounds):
    rows = []
    for scenario, ports in SWITCHES:
        sim = ScenarioSim(build, scenario)
        try:
            for name, path, query in WALKS:
                sim.ctl("journal", "--clear")
                request(build, sim, token, path, query)
                calls = len(sim.ctl("journal").splitlines())
                times = [request(build, sim, token, path, query) for _ in range(rounds)]
                rows.append((scenario, ports, name, calls, min(times), statistics.median(times)))
        finally:
            sim.stop()
    return rows


def section(measured, rounds):
    rows = measured["walks"]
    w = ["## Walks over every port, by switch size\n",
         "`bench/port_walks.py`: one request in a fresh process against `open-sim serve --scenario NAME`, %d "
         "rounds; calls counted from the journal (registration included). The fastest round is the cost with the "
         "least interference from other work on the machine, so the time per call is read on it; it stays flat "
         "(or falls, as the process's fixed cost spreads) while the calls grow with the ports.\n" % rounds,
         "| walk | switch | ports | OpEN calls | fastest | median | per call (fastest) |",
         "|---|---|---|---|---|---|---|"]
    for scenario, ports, name, calls, fastest, median in sorted(rows, key=lambda r: (r[2], r[1])):
        w.append("| %s | %s | %d | %d | %.1f ms | %.1f ms | %.1f µs |" % (
            name, scenario, ports, calls, fastest * 1e3, median * 1e3, fastest * 1e6 / calls))
    return w + dump_section(measured["month_old_dump"])


def main():
    p = argparse.ArgumentParser(description=__doc__)
    p.add_argument("--build", default=os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "build"))
    p.add_argument("--rounds", type=int, default=5)
    args = p.parse_args()
    os.makedirs("/tmp/session", mode=0o700, exist_ok=True)
    token = "walks%d" % os.getpid()
    session = os.open(os.path.join("/tmp/session", token), os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600)
    with open("/proc/uptime") as f, os.fdopen(session, "w") as s:
        s.write("admin\n%d\n" % int(float(f.read().split()[0])))
    try:
        print("\n".join(section(measure(args.build, token, args.rounds), args.rounds)))
    finally:
        os.unlink(os.path.join("/tmp/session", token))


if __name__ == "__main__":
    main()
