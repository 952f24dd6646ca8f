#!/usr/bin/env python3
"""The routes that walk every port, on switches of 10, 28 and 52 ports: the
OpEN calls each request makes (from the simulator's journal) and the wall
time of one whole request (a fresh process, the median of some rounds).
The time per call staying flat while the calls grow with the ports shows
the cost following the calls the program must make, no faster.

run_bench.py calls measure() and section(); alone it prints the section:
    python3 bench/port_walks.py --build build [--dump-only]"""

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
CENTURY_S = 100 * 365 * 86400
DUMP_PROBE_CALLS = 2000


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


def server_cpu_ns(pid):
    """The server's CPU time so far, in nanoseconds (the scheduler's own count)."""
    with open("/proc/%d/schedstat" % pid) as f:
        return int(f.read().split()[0])


def timed_ctl(sim, *words):
    """`ctl WORDS` by wall time (client process included) and by the server's CPU time, in seconds."""
    cpu, started = server_cpu_ns(sim.proc.pid), time.perf_counter()
    out = sim.ctl(*words)
    return time.perf_counter() - started, (server_cpu_ns(sim.proc.pid) - cpu) / 1e9, out


def link_state_spread(build, sim, calls):
    """Median, 99th percentile and slowest of `calls` link-state reads through the client library, in seconds."""
    out = subprocess.run([os.path.join(build, "bench", "bench-rtt"), str(calls), "1", "spread"], check=True,
                         env=dict(os.environ, OPEN_SIM_SOCKET=sim.socket), capture_output=True, text=True).stdout
    return [float(x) / 1e6 for x in out.split()]


def month_old_dump(build, rounds, calls=DUMP_PROBE_CALLS):
    """The 52-port switch a simulated month after load: the month's clock
    move, the dump (size, wall and server CPU time), loading it back, a
    further century; and link-state reads through the client library while
    dumps run back to back, against the same reads alone, round by round."""
    sim = ScenarioSim(build, "switch-52", "--paused")
    try:
        fig = {"load_avg": os.getloadavg(), "calls": calls}
        # A move is taken at the next command: `clock` after it pays for it.
        sim.ctl("clock", "advance", str(MONTH_S))
        fig["month"] = timed_ctl(sim, "clock")[:2]
        dumps = [timed_ctl(sim, "dump") for _ in range(max(rounds, 20))]
        fig["bytes"] = len(dumps[0][2])
        fig["dump_wall"], fig["dump_cpu"] = [d[0] for d in dumps], [d[1] for d in dumps]
        with tempfile.NamedTemporaryFile("w", suffix=".json") as f:
            f.write(dumps[0][2])
            f.flush()
            fig["load"] = timed_ctl(sim, "load", f.name)[:2]
        fig["alone"], fig["beside"], done = [], [], threading.Event()

        def dump_loop():
            while not done.is_set():
                sim.ctl("dump")

        for _ in range(rounds):
            fig["alone"].append(link_state_spread(build, sim, calls))
            done.clear()
            t = threading.Thread(target=dump_loop)
            t.start()
            try:
                fig["beside"].append(link_state_spread(build, sim, calls))
            finally:
                done.set()
                t.join()
        sim.ctl("clock", "advance", str(CENTURY_S))
        fig["century"] = timed_ctl(sim, "clock")[:2]
        fig["century_bytes"] = len(sim.ctl("dump"))
        return fig
    finally:
        sim.stop()


def dump_section(fig):
    ms = lambda s: "%.1f ms" % (s * 1e3)
    us = lambda s: "%.0f µs" % (s * 1e6)
    spread = lambda runs, i: "%s (%s)" % (us(statistics.median(r[i] for r in runs)), us(max(r[i] for r in runs)))
    return ["", "### A month-old 52-port switch dumped while a page polls\n",
            "`bench/port_walks.py`: `open-sim serve --scenario switch-52 --paused`, the clock moved %d days. Times "
            "are wall time of the `ctl` command (its process included) and the server's own CPU time from "
            "/proc/PID/schedstat; the load average (1, 5, 15 min) was %.1f, %.1f, %.1f on the shared 2-core "
            "machine when it started.\n" % ((MONTH_S // 86400,) + tuple(fig["load_avg"])),
            "| step | wall | server CPU |", "|---|---|---|",
            "| `clock` after `clock advance %d` (the month's catch-up) | %s | %s |" % (
                MONTH_S, ms(fig["month"][0]), ms(fig["month"][1])),
            "| `dump`, %d times, %d bytes: median | %s | %s |" % (
                len(fig["dump_wall"]), fig["bytes"], ms(statistics.median(fig["dump_wall"])),
                ms(statistics.median(fig["dump_cpu"]))),
            "| `dump`: slowest | %s | %s |" % (ms(max(fig["dump_wall"])), ms(max(fig["dump_cpu"]))),
            "| `load` of that dump | %s | %s |" % (ms(fig["load"][0]), ms(fig["load"][1])),
            "| `clock` after a further century (the dump then %d bytes) | %s | %s |" % (
                fig["century_bytes"], ms(fig["century"][0]), ms(fig["century"][1])),
            "",
            "Link-state reads (`bench-rtt %d 1 spread`: one registered client, calls back to back), %d rounds, "
            "each round alone and then beside `ctl dump` run back to back in another thread; the median over "
            "the rounds, the worst round in brackets:\n" % (fig["calls"], len(fig["alone"])),
            "| | call median | p99 | slowest call |", "|---|---|---|---|",
            "| alone | %s | %s | %s |" % tuple(spread(fig["alone"], i) for i in range(3)),
            "| beside the dumps | %s | %s | %s |" % tuple(spread(fig["beside"], i) for i in range(3))]


def measure(build, token, rounds):
    """The walks' rows, (switch, ports, walk, calls, fastest and median
    seconds), and the month-old dump's figures."""
    return {"walks": walk_rows(build, token, rounds), "month_old_dump": month_old_dump(build, rounds)}


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
    p.add_argument("--dump-only", action="store_true", help="only the month-old switch's dump and calls beside it")
    args = p.parse_args()
    if args.dump_only:
        print("\n".join(dump_section(month_old_dump(args.build, args.rounds))))
        return
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
