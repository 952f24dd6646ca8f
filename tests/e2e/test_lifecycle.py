"""The packages on a throw-away system: this machine's / under an overlay that only this suite sees, with its
own /run, /tmp and network. dpkg installs both packages, upgrades them from the version before they had
maintainer scripts, removes and purges them in every order. After every step lighttpd's configuration passes
`lighttpd -tt`, lighttpd restarts and answers: with the program's JSON through open-sim, running as its own
user, where the program is installed and a snippet enabled. Then a local user's attacks on the installed
system, each of which must fail."""

import glob
import json
import os
import shlex
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.error
import urllib.request

import harness
from harness import main

FOLDER = os.environ.get("IF_PACKAGE_DIR", "")
OLD_VERSION = "1.0.0"  # the packages before they had maintainer scripts, a unit or a tmpfiles.d entry
SERVED = harness.read_reply(0, "if", {"linkState": "up"})[len(harness.JSON_HEADER):]
PROGRAM, SIM = "interfaces-v2", "interfaces-v2-sim"
OLD, NEW = "dpkg -i /debs/old/*.deb", "dpkg -i /debs/new/*.deb"
# Each step, then whether lighttpd serves the program's JSON after it (False: it only has to answer; None: it
# is not installed). Before the upgrade no user runs open-sim, but the FastCGI responders run, and must not
# outlive their binary.
SCENARIOS = {
    "program first": [(OLD, False), ("lighty-enable-mod interfaces-v2-fastcgi", False),
                      ("dpkg -i /debs/new/%s_*.deb" % PROGRAM, False), ("dpkg -i /debs/new/%s_*.deb" % SIM, True),
                      ("dpkg -r " + PROGRAM, False), ("dpkg -P " + PROGRAM, False), ("dpkg -r " + SIM, False),
                      ("dpkg -P " + SIM, False)],
    "simulator first": [(NEW, False), ("lighty-enable-mod interfaces-v2-cgi", True), ("dpkg -r " + SIM, False),
                        ("dpkg -P " + SIM, False), ("dpkg -r " + PROGRAM, False),
                        # the administrator enables a snippet of the removed program; purge removes its link
                        ("lighty-enable-mod interfaces-v2-cgi", False), ("dpkg -P " + PROGRAM, False)],
    "both in one command": [(OLD, False), ("lighty-enable-mod interfaces-v2-cgi", False), (NEW, True),
                            ("dpkg -P %s %s" % (PROGRAM, SIM), False)],
    "removed, installed again": [(NEW, False), ("lighty-enable-mod interfaces-v2-fastcgi", True),
                                 ("dpkg -r %s %s" % (PROGRAM, SIM), False),
                                 ("/etc/init.d/lighttpd stop && " + NEW, True),
                                 ("dpkg -P %s %s" % (SIM, PROGRAM), False)],
    "without lighttpd": [("dpkg -P lighttpd", None), (NEW, None), ("dpkg -r %s %s" % (PROGRAM, SIM), None),
                         (NEW, None), ("dpkg -P %s %s" % (PROGRAM, SIM), None)],
}
# As the documentation tells an administrator without systemd.
START_SIM = ("install -d -o open-sim -g open-sim -m 0750 /run/open-sim; exec setpriv --reuid=open-sim "
             "--regid=open-sim --groups=www-data -- /usr/bin/open-sim serve --socket /run/open-sim/open-sim.sock")
AS_NOBODY = "setpriv --reuid=nobody --regid=nogroup --clear-groups -- "


def debs(folder):
    found = sorted(glob.glob(os.path.join(folder, "*_amd64.deb")))
    if len(found) != 2:
        raise AssertionError("want the two amd64 packages in %r (make package), found %s" % (folder, found))
    return found


def packages(with_old):
    """A folder of the amd64 packages under new/ and, with_old, the packages as they were before under old/: the
    same programs, without the maintainer scripts and the files that came with them."""
    folder = tempfile.mkdtemp(prefix="packages-")
    shutil.copytree(FOLDER, os.path.join(folder, "new"), ignore=shutil.ignore_patterns("*_arm64.deb"))
    os.makedirs(os.path.join(folder, "old"))
    for deb in debs(FOLDER) if with_old else []:
        tree = tempfile.mkdtemp(prefix="old-")
        subprocess.run(["dpkg-deb", "-R", deb, tree], check=True)
        for path in ["DEBIAN/postinst", "DEBIAN/prerm", "DEBIAN/postrm", "lib", "usr/lib/tmpfiles.d",
                     "usr/share/man/man8"] + glob.glob(tree + "/usr/share/doc/*/README.Debian"):
            path = os.path.join(tree, path)
            if os.path.isdir(path):
                shutil.rmtree(path)
            elif os.path.exists(path):
                os.remove(path)
        control = os.path.join(tree, "DEBIAN", "control")
        with open(control) as f:
            text = "".join("Version: %s\n" % OLD_VERSION if line.startswith("Version:") else line for line in f)
        with open(control, "w") as f:
            f.write(text)
        subprocess.run(["dpkg-deb", "--root-owner-group", "-b", tree, os.path.join(folder, "old")], check=True,
                       capture_output=True)
        shutil.rmtree(tree)
    return folder


class System:
    """The overlay, booted as far as the tests need: lighttpd runs, and init scripts act as on a booted
    machine (runlevel 2, no policy-rc.d of a container denying them)."""

    def __init__(self, packages):
        self.base = tempfile.mkdtemp(prefix="system-")
        self.root, self.sim = os.path.join(self.base, "root"), None
        for d in ("upper", "work", "root"):
            os.mkdir(os.path.join(self.base, d))
        r = self.root
        for mount in (["-t", "overlay", "overlay", "-o", "lowerdir=/,upperdir={0}/upper,workdir={0}/work".format(
                self.base), r], ["-t", "proc", "proc", r + "/proc"], ["--rbind", "/dev", r + "/dev"],
                ["-t", "tmpfs", "tmpfs", r + "/run"], ["-t", "tmpfs", "-o", "mode=1777", "tmpfs", r + "/tmp"],
                ["-t", "tmpfs", "tmpfs", r + "/mnt"]):
            subprocess.run(["mount"] + mount, check=True)
        for path in ("usr/sbin/policy-rc.d", "var/lib/man-db/auto-update", "sbin/runlevel"):
            if os.path.lexists(os.path.join(r, path)):
                os.remove(os.path.join(r, path))
        with open(os.path.join(r, "sbin/runlevel"), "w") as f:
            f.write("#!/bin/sh\necho N 2\n")
        os.chmod(os.path.join(r, "sbin/runlevel"), 0o755)
        shutil.copytree(packages, os.path.join(r, "debs"))
        self.sh("/etc/init.d/lighttpd start")

    def sh(self, script, check=True):
        r = subprocess.run(["chroot", self.root, "sh", "-ec", script], capture_output=True, text=True)
        if check and r.returncode != 0:
            raise AssertionError("%s: exit status %d\n%s%s" % (script, r.returncode, r.stdout, r.stderr))
        return r

    def start_sim(self):
        self.stop_sim()
        self.sim = subprocess.Popen(["chroot", self.root, "sh", "-ec", START_SIM])
        deadline = time.time() + 10
        while not os.path.exists(self.root + "/run/open-sim/open-sim.sock"):
            if self.sim.poll() is not None or time.time() > deadline:
                raise AssertionError("open-sim did not start")
            time.sleep(0.02)

    def stop_sim(self):
        if self.sim:
            self.sim.terminate()
            self.sim.wait(timeout=10)
            self.sim = None

    def session(self):
        """A session file written as the login pages write it: as www-data."""
        token = "t%d" % time.monotonic_ns()
        self.sh("printf 'admin\\n%%s\\n' \"$(cut -d. -f1 /proc/uptime)\" | runuser -u www-data -- tee "
                "/tmp/session/%s >/dev/null" % token)
        return token

    def get(self, path, token="", method="GET", body=None):
        request = urllib.request.Request("http://127.0.0.1" + path, headers={"session": token}, method=method,
                                         data=body)
        try:
            with urllib.request.urlopen(request, timeout=60) as r:
                return r.status, r.read()
        except urllib.error.HTTPError as e:
            return e.code, e.read()

    def responders_of_deleted_binaries(self):
        exes = [os.readlink(p) for p in glob.glob("/proc/[0-9]*/exe") if os.path.exists(p)]
        return [e for e in exes if e.endswith("interfaces_v2.cgi (deleted)")]

    def close(self):
        self.stop_sim()
        self.sh("/etc/init.d/lighttpd stop", check=False)
        subprocess.run(["umount", "-R", "-l", self.root], check=True)
        shutil.rmtree(self.base, ignore_errors=True)


class Lifecycle(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.packages = packages(with_old=True)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.packages)

    def test_every_step_leaves_lighttpd_serving(self):
        for name, steps in SCENARIOS.items():
            with self.subTest(scenario=name):
                system = System(self.packages)
                try:
                    for step, serves in steps:
                        system.sh(step)
                        self.assertEqual(system.responders_of_deleted_binaries(), [], step)
                        self.assertEqual(self.after(system, serves), {True: (200, SERVED), False: "answers",
                                                                      None: None}[serves], (name, step))
                    # what the packages made outside their files, gone with the last purge (the user stays)
                    self.assertEqual(([p for p in ("/mnt/application", "/var/lib/interfaces-v2")
                                       if os.path.exists(system.root + p)], system.sh("id -nG www-data").stdout),
                                     ([], "www-data\n"), name)
                finally:
                    system.close()

    def after(self, system, serves):
        """The configuration test, a restart, then the program's reply through open-sim where it serves, else
        whether lighttpd answers at all."""
        if serves is None:
            return None
        system.sh("lighttpd -tt -f /etc/lighttpd/lighttpd.conf && /etc/init.d/lighttpd restart")
        if serves:
            system.start_sim()
            return system.get("/api/v2/interfaces/if/link-state?ifNum=3", system.session())
        system.stop_sim()
        return "answers" if system.get("/")[0] else None


# What a local user without privileges tries on the installed system, and the error each attempt must meet.
PROBES = [
    ("connect to open-sim", "socket.socket(socket.AF_UNIX).connect('/run/open-sim/open-sim.sock')", "PermissionError"),
    ("create the session folder", "os.mkdir('/tmp/session')", "FileExistsError"),
    ("list the session folder", "os.listdir('/tmp/session')", "PermissionError"),
    ("read a session file", "open('/tmp/session/' + token).read()", "PermissionError"),
    ("read the log", "open('/tmp/k9100.log').read()", "PermissionError"),
]


class Installed(unittest.TestCase):
    """Both packages installed, the CGI snippet enabled; and a local user, `nobody`, who got to the machine before
    the packages did."""

    @classmethod
    def setUpClass(cls):
        cls.packages = packages(with_old=False)
        cls.system = System(cls.packages)
        # The session folder made first, with an administrator session in it.
        cls.system.sh(AS_NOBODY + "sh -c 'umask 0; mkdir /tmp/session && printf \"admin\\n0\\n\" > /tmp/session/"
                      "planted'")
        cls.system.sh(NEW + " && lighty-enable-mod interfaces-v2-cgi && /etc/init.d/lighttpd restart")
        cls.system.start_sim()

    @classmethod
    def tearDownClass(cls):
        cls.system.close()
        shutil.rmtree(cls.packages)

    def test_every_attempt_is_refused(self):
        token = self.system.session()
        script = "import json, os, socket\ntoken = %r\nfailed = []\n" % token
        for _, attempt, _ in PROBES:
            script += "try:\n    %s\n    failed.append(None)\nexcept OSError as e:\n" \
                      "    failed.append(type(e).__name__)\n" % attempt
        out = self.system.sh(AS_NOBODY + "python3 -c " + shlex.quote(script + "print(json.dumps(failed))")).stdout
        self.assertEqual(dict(zip([p[0] for p in PROBES], json.loads(out))), {p[0]: p[2] for p in PROBES})

    def test_cli_work_files_pass_between_the_program_and_open_sim(self):
        """Each side reads, rewrites and removes what the other wrote in the CLI work folder."""
        path, token = "/api/v2/interfaces/if/ddisable-auto-recovery-interval", self.system.session()
        self.assertEqual([self.system.get(path, token, "PUT", b'{"interval": 3600}'), self.system.get(path, token)],
                         [(200, harness.envelope(newline=True)), (200, harness.envelope(0, "if", {"interval": 3600}))])
        self.assertEqual(os.listdir(self.system.root + "/mnt/application/quill/tmp"), [])

    def test_the_service_passes_systemd_analyze(self):
        r = self.system.sh("systemd-analyze verify /lib/systemd/system/open-sim.service 2>&1")
        self.assertEqual(r.stdout, "")

    def test_a_planted_session_opens_nothing(self):
        self.assertEqual(self.system.get("/api/v2/interfaces/if/link-state?ifNum=3", "planted"), (403, b""))

    def test_the_log_does_not_follow_a_planted_link(self):
        """Where nothing staked the log's name (a boot without systemd-tmpfiles), the user links it to a file of
        www-data's; the program must not write through the link."""
        self.system.sh("rm /tmp/k9100.log && printf 7 > /tmp/devmgr_log_level && "
                       "printf kept | install -o www-data -m 0600 /dev/stdin /tmp/www-data-file && " + AS_NOBODY +
                       "ln -s /tmp/www-data-file /tmp/k9100.log")
        self.system.get("/api/v2/interfaces/if/link-state?ifNum=3", self.system.session())
        with open(self.system.root + "/tmp/www-data-file") as f:
            self.assertEqual(f.read(), "kept")


if __name__ == "__main__":
    # lighttpd serves on port 80 in a network of this suite's own.
    if os.environ.get("LIFECYCLE_NETWORK") != "own":
        os.execvp("unshare", ["unshare", "--net", "env", "LIFECYCLE_NETWORK=own", sys.executable] + sys.argv)
    subprocess.run(["ip", "link", "set", "lo", "up"], check=True)
    main()
