"""make test-system: the arm64 packages in a Debian 12 arm64 system under qemu, systemd as PID 1: installed,
README.Debian's walk run, the host served as CGI and FastCGI, rebooted, served again; times to bench/RESULTS.md."""
import datetime, glob, json, os, re, shlex, socket, subprocess, sys, time, urllib.request
from contextlib import contextmanager, suppress

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "tests", "e2e"))
from test_lifecycle import readme_blocks  # noqa: E402  (one reading of README.Debian for both suites)
DIST = os.environ.get("IF_PACKAGE_DIR", os.path.join(ROOT, "dist"))
WORK = os.path.join(os.environ.get("IF_BUILD_DIR", os.path.join(ROOT, "build")), "system")
RESULTS = os.path.join(ROOT, "bench", "RESULTS.md")
HEADING = "## The arm64 packages in an emulated arm64 system"
SNIPPETS = {"CGI": "interfaces-v2-cgi", "FastCGI": "interfaces-v2-fastcgi"}
API = "/api/v2/interfaces"
# A person types the next command when no systemd job runs and a running lighttpd listens (later than started).
SETTLE = ("settle() { while systemctl list-jobs --no-legend | grep -q .; do sleep 1; done; ! systemctl -q is-active "
          "lighttpd || until (exec 3<>/dev/tcp/127.0.0.1/80) 2>/dev/null; do sleep 1; done; }\n")
phases, means = [], []


@contextmanager
def phase(name):
    start = time.monotonic()
    print("%s ..." % name, flush=True)
    yield
    phases.append((name, time.monotonic() - start))
    print("%s: %.1f s" % phases[-1], flush=True)


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


class Guest:
    def __init__(self, image):
        self.image, self.http, self.sshport = image, free_port(), free_port()
        self.console = os.path.join(WORK, "console.log")
        self.opts = ["-i", os.path.join(image, "id_ed25519"), "-o", "BatchMode=yes", "-o", "LogLevel=ERROR",
                     "-o", "StrictHostKeyChecking=no", "-o", "UserKnownHostsFile=/dev/null", "-o", "ConnectTimeout=10"]
        disk = os.path.join(WORK, "disk.qcow2")
        # The cached image stays as built: the guest writes into an overlay of its own.
        subprocess.run(["qemu-img", "create", "-q", "-f", "qcow2", "-F", "raw", "-b",
                        os.path.join(image, "disk.img"), disk], check=True)
        self.qemu = subprocess.Popen(
            ["qemu-system-aarch64", "-M", "virt", "-cpu", "cortex-a72", "-accel", "tcg,thread=multi", "-smp", "2",
             "-m", "1024", "-display", "none", "-monitor", "none", "-serial", "file:" + self.console,
             "-kernel", os.path.join(image, "vmlinuz"), "-initrd", os.path.join(image, "initrd.img"),
             "-append", "root=/dev/vda rw console=ttyAMA0",
             "-drive", "if=none,id=disk,format=qcow2,file=" + disk, "-device", "virtio-blk-pci,drive=disk",
             "-netdev", "user,id=net,hostfwd=tcp:127.0.0.1:%d-:80,hostfwd=tcp:127.0.0.1:%d-:22"
             % (self.http, self.sshport), "-device", "virtio-net-pci,netdev=net,romfile="], stdin=subprocess.DEVNULL)

    def run(self, command, check=True, timeout=900):
        r = subprocess.run(["ssh", "-p", str(self.sshport)] + self.opts + ["root@127.0.0.1", command],
                           stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=timeout)
        if check and r.returncode:
            sys.exit("in the guest: %s\nexit %d\n%s%s" % (command, r.returncode, r.stdout, r.stderr))
        return r.stdout

    def up(self, old_boot=None, timeout=1200):
        """Waits for ssh in a boot other than old_boot; returns the boot's id."""
        deadline = time.monotonic() + timeout
        while time.monotonic() < deadline:
            if self.qemu.poll() is not None:
                sys.exit("qemu ended with %d; console: %s" % (self.qemu.returncode, self.console))
            boot = ""
            with suppress(subprocess.TimeoutExpired):
                boot = self.run("cat /proc/sys/kernel/random/boot_id", check=False, timeout=30).strip()
            if boot and boot != old_boot:
                self.run("systemctl is-system-running --wait", check=False)
                return boot
            time.sleep(5)
        sys.exit("no ssh in the guest after %d s; console: %s" % (timeout, self.console))

    def copy(self, files, folder):
        self.run("mkdir -p " + folder)
        subprocess.run(["scp", "-q", "-P", str(self.sshport)] + self.opts + files + ["root@127.0.0.1:" + folder],
                       check=True)

    def stop(self):
        if self.qemu.poll() is None:
            self.run("systemctl poweroff", check=False, timeout=60)
            try:
                self.qemu.wait(120)
            except subprocess.TimeoutExpired:
                self.qemu.terminate()
                self.qemu.wait()


def session(guest, token, lines):
    """A session file made as README.Debian makes one: by www-data, stamped with the uptime."""
    guest.run("printf '%s\\n%%s\\n%s' \"$(cut -d. -f1 /proc/uptime)\" | runuser -u www-data -- tee /tmp/session/%s"
              " >/dev/null" % (lines[0], "".join(l + "\\n" for l in lines[1:]), token))


def request(guest, method, path, token, body=None):
    req = urllib.request.Request("http://127.0.0.1:%d%s/%s" % (guest.http, API, path), method=method,
                                 data=body and json.dumps(body).encode(), headers={"session": token})
    try:
        with urllib.request.urlopen(req, timeout=120) as r:
            return r.status, r.read()
    except urllib.request.HTTPError as e:
        return e.code, e.read()


def expect(what, got, want):
    if got != want:
        sys.exit("%s: %r, expected %r" % (what, got, want))


def serve(guest, mode, boot, switch=True):
    """The host's three requests in one mode (switched to it, or as it booted); 100 GETs timed in the guest."""
    with phase("%s, %s" % (mode, boot)):
        other = next(s for m, s in SNIPPETS.items() if m != mode)
        if switch:
            guest.run("lighty-disable-mod %s && lighty-enable-mod %s && service lighttpd restart" % (other, SNIPPETS[mode]))
        guest.run(SETTLE + "settle")
        session(guest, "sysadmin", ["admin"])
        session(guest, "sysro", ["monitor", "ro"])
        status, body = request(guest, "GET", "if/link-state?ifNum=3", "sysadmin")
        put = ("PUT", "green-ethernet/energy-detect-mode?intIfNum=5")
        put_status, put_body = request(guest, *put, "sysadmin", {"mode": "enable"})
        expect("GET link-state, PUT energy-detect-mode, the same as read-only",
               (status, json.loads(body)["resp"]["respCode"], b"linkState" in body, put_status,
                json.loads(put_body)["resp"]["respCode"], request(guest, *put, "sysro", {"mode": "disable"})),
               (200, 0, True, 200, 0, (403, b"")))
        url = shlex.quote("http://localhost%s/if/link-state?ifNum=3" % API)
        times = guest.run("set --; for i in $(seq 100); do set -- \"$@\" -o /dev/null %s; done; curl -s -H "
                          "'session: sysadmin' -w '%%{http_code} %%{time_total}\\n' \"$@\"" % url).split("\n")[:-1]
        expect("100 GETs inside the guest", [t.split()[0] for t in times], ["200"] * 100)
        means.append(("%s, %s" % (mode, boot), sum(float(t.split()[1]) for t in times) / len(times)))
        print("mean of 100 requests inside the guest: %.1f ms" % (1000 * means[-1][1]), flush=True)


def write_results(cached):
    date = datetime.datetime.utcnow().strftime("%Y-%m-%d %H:%M")
    w = [HEADING, "", "`make test-system` on %s UTC, the image %s: Debian 12 arm64 under qemu-system-aarch64"
         " (-M virt, 2 vCPUs, 1 GiB, software emulation) on this machine. Each phase's time:" %
         (date, "from the cache" if cached else "built from an empty cache"), "", "| phase | seconds |", "|---|---|"]
    w += ["| %s | %.1f |" % p for p in phases]
    w += ["", "The mean time of 100 GETs of link-state in a row, by curl inside the guest through lighttpd:", "",
          "| mode, boot | mean |", "|---|---|"] + ["| %s | %.1f ms |" % (m, 1000 * t) for m, t in means]
    # The file's last section, in place of this run's previous one (make bench keeps it there).
    before = (open(RESULTS).read() if os.path.exists(RESULTS) else "").partition("\n" + HEADING)[0]
    with open(RESULTS, "w") as f:
        f.write(before.rstrip("\n") + "\n\n" + "\n".join(w) + "\n")


def main():
    debs = sorted(glob.glob(os.path.join(DIST, "interfaces-v2*_arm64.deb")))
    if len(debs) != 2:
        sys.exit("want the two arm64 packages in %s (make package-arm64), found %s" % (DIST, debs))
    os.makedirs(WORK, exist_ok=True)
    with phase("image"):
        script = os.path.join(ROOT, "scripts", "system-image.sh")
        where = subprocess.run([script, "--where"], check=True, stdout=subprocess.PIPE, text=True).stdout.strip()
        cached = os.path.exists(os.path.join(where, "disk.img"))
        image = subprocess.run([script], check=True, stdout=subprocess.PIPE, text=True).stdout.strip()
    guest = Guest(image)
    try:
        with phase("boot"):
            boot = guest.up()
        with phase("apt install"):
            guest.copy(debs, "/root/dist")
            guest.run("apt-get update -q >/dev/null && cd /root/dist && DEBIAN_FRONTEND=noninteractive apt-get "
                      "install -y -q " + " ".join("./" + os.path.basename(d) for d in debs))
        with phase("README.Debian"):
            install, status, _without_systemd, *rest = readme_blocks(debs[1])  # the program's
            commands = [install, status] + rest
            print("\n".join("  " + c.replace("\n", "\n  ") for c in commands))
            script = SETTLE + "\nsettle\n".join(commands)
            out = guest.run("cd /root/dist && bash -e -o pipefail -c %s </dev/null" % shlex.quote(script))
            expect("README.Debian's curl", '"respCode":\t0' in out, True)
        serve(guest, "FastCGI", "first boot", switch=False)  # as README.Debian left it
        serve(guest, "CGI", "first boot")
        with phase("reboot"):
            guest.run("systemctl reboot", check=False, timeout=60)
            guest.up(boot)
        serve(guest, "CGI", "after the reboot", switch=False)
        serve(guest, "FastCGI", "after the reboot")
        with phase("power off"):
            guest.stop()
    finally:
        guest.stop()
    write_results(cached)
    print("written: " + RESULTS)


if __name__ == "__main__":
    main()
