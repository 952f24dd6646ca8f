"""The packages on a throw-away system (this machine's / under an overlay of this suite's own): installed,
upgraded, removed and purged in every order; and a local user's attacks on them, racing them, and at boot."""

import atexit, contextlib, functools, glob, json, os, pathlib, re, shlex  # noqa: E401
import shutil, signal, subprocess, sys, tempfile, time, unittest, urllib.request  # noqa: E401

import harness
from harness import main

FOLDER = os.environ.get("IF_PACKAGE_DIR", "")
OLD_VERSION = "1.0.0"  # the packages before they had maintainer scripts, units, tmpfiles.d or sysusers.d entries
LINK_STATE = "/api/v2/interfaces/if/link-state?ifNum=3"
SERVED = harness.read_reply(0, "if", {"linkState": "up"})[len(harness.JSON_HEADER):]
PROGRAM, SIM = "interfaces-v2", "interfaces-v2-sim"
OLD, NEW = "dpkg -i /debs/old/*.deb", "dpkg -i /debs/new/*.deb"
NEW_PROGRAM, NEW_SIM = ("dpkg -i /debs/new/%s_*.deb" % name for name in (PROGRAM, SIM))
CGI_ON, FASTCGI_ON = ("lighty-enable-mod interfaces-v2-" + mode for mode in ("cgi", "fastcgi"))
BOTH = PROGRAM + " " + SIM
ENABLED = NEW + " && " + CGI_ON + " && /etc/init.d/lighttpd restart"
# invoke-rc.d may not act: a container's policy, or no runlevel to be found (a chroot).
DENY = "printf '#!/bin/sh\\nexit 101\\n' > /usr/sbin/policy-rc.d && chmod 755 /usr/sbin/policy-rc.d"
NO_RUNLEVEL = "rm /usr/sbin/policy-rc.d && printf '#!/bin/sh\\necho unknown\\n' > /sbin/runlevel"
NOT_RESTARTED = "lighttpd could not be restarted here"
# Each step, whether lighttpd serves the program's JSON after it (False: it only answers; None: not installed),
# and what it must say once. The FastCGI responders must not outlive their binary.
SCENARIOS = {
    "program first": [(OLD, False), (FASTCGI_ON, False), (NEW_PROGRAM, False), (NEW_SIM, True),
                      ("dpkg -r " + PROGRAM, False), ("dpkg -P " + PROGRAM, False), ("dpkg -r " + SIM, False),
                      ("dpkg -P " + SIM, False)],
    "simulator first": [(NEW, False), (CGI_ON, True), ("dpkg -r " + SIM, False), ("dpkg -P " + SIM, False),
                        ("dpkg -r " + PROGRAM, False),
                        # the administrator enables a snippet of the removed program; purge removes its link
                        (CGI_ON, False), ("dpkg -P " + PROGRAM, False)],
    # the administrator chose the other snippet while the program was away: her choice stands
    "switched while removed": [(NEW, False), (FASTCGI_ON, True), ("dpkg -r " + PROGRAM, False),
                               (CGI_ON, False), (NEW_PROGRAM, True, "not enabling 50-interfaces-v2-fastcgi"),
                               ("dpkg -P " + BOTH, False)],
    "restart refused": [(NEW, False), (FASTCGI_ON, True), (DENY, True), (NEW_PROGRAM, True, NOT_RESTARTED),
                        (NO_RUNLEVEL + " && dpkg -r " + PROGRAM, False, NOT_RESTARTED),
                        ("dpkg -P " + BOTH, False)],
    "without lighttpd": [("dpkg -P lighttpd", None), (NEW, None), ("dpkg -r " + BOTH, None), (NEW, None),
                         ("dpkg -P " + BOTH, None)],
}
# As the documentation tells an administrator without systemd.
START_SIM = ("install -d -o open-sim -g open-sim -m 0750 /run/open-sim; exec setpriv --reuid=open-sim "
             "--regid=open-sim --init-groups -- /usr/bin/open-sim serve --socket /run/open-sim/open-sim.sock")
AS_NOBODY = "setpriv --reuid=nobody --regid=nogroup --clear-groups -- "
# The local user who races the install and the boot: one with a login, unlike nobody.
USER = "mallory"
AS_USER = "setpriv --reuid=%s --regid=%s --clear-groups -- " % (USER, USER)
# The names the packages make in /tmp, and what she puts there in their place: a folder holding an
# administrator session of hers, writable by everyone; a log and level files she holds open (level 7: tokens).
NAMES = ["/tmp/session", "/tmp/k9100.log", "/tmp/k9100.log.old", "/tmp/devmgr_log_level"]
NOTHING_WON = ({n: "www-data" for n in NAMES}, (403, b""), (200, SERVED))
PLANT = r"""
import contextlib, json, os, shutil, sys
os.umask(0)
held, tries, planted = [], 0, 0
while not tries or sys.argv[1:] == ["race"] and not os.path.exists("/run/stop-racing") and tries < 10 ** 6:
    tries += 1
    folder = "/tmp/.%s-%d" % (os.getuid(), tries)
    try:
        os.mkdir(folder, 0o777)
        with open(folder + "/hers", "w") as f:
            f.write("admin\n0\n")
        os.rename(folder, "/tmp/session")  # all at once, in place of nothing or an empty folder
        planted += 1
    except OSError:
        shutil.rmtree(folder, ignore_errors=True)
    for name, text in (("/tmp/k9100.log", b""), ("/tmp/k9100.log.old", b""), ("/tmp/devmgr_log_level", b"7")):
        with contextlib.suppress(OSError):
            fd = os.open(name, os.O_RDWR | os.O_CREAT | os.O_EXCL, 0o666)
            os.write(fd, text)
            held.append(fd)
            planted += 1
    if tries == 1:
        print("planted", flush=True)
# Whose are the files she holds open now: hers, unless one was adopted.
print(json.dumps({"planted": planted, "owners": sorted({os.fstat(fd).st_uid for fd in held})}))
"""


def wait_for_socket(path, proc=None, what="open-sim"):
    deadline = time.time() + 10
    while not os.path.exists(path):
        if proc and proc.poll() is not None or time.time() > deadline:
            raise AssertionError(what + " did not start")
        time.sleep(0.02)


def debs(folder):
    found = sorted(glob.glob(os.path.join(folder, "*_amd64.deb")))
    if len(found) != 2:
        raise AssertionError("want the two amd64 packages in %r (make package), found %s" % (folder, found))
    return found


def rebuilt(deb, into, field, value, strip=()):
    """DEB built again into INTO with its control FIELD set to VALUE and the paths STRIP left out."""
    tree = tempfile.mkdtemp(prefix="rebuilt-")
    subprocess.run(["dpkg-deb", "-R", deb, tree], check=True)
    for path in [path for pattern in strip for path in glob.glob(os.path.join(tree, pattern))]:
        shutil.rmtree(path) if os.path.isdir(path) else os.remove(path)
    control, conffiles = pathlib.Path(tree, "DEBIAN", "control"), pathlib.Path(tree, "DEBIAN", "conffiles")
    control.write_text(re.sub(r"(?m)^%s: .*$" % field, field + ": " + value, control.read_text()))
    if conffiles.exists():
        kept = [line for line in conffiles.read_text().splitlines() if os.path.exists(tree + line)]
        conffiles.write_text("".join(line + "\n" for line in kept))
    subprocess.run(["dpkg-deb", "--root-owner-group", "-b", tree, into], check=True, capture_output=True)
    shutil.rmtree(tree)


@functools.lru_cache
def packages(with_old, other_arch=False):
    """new/: the amd64 packages (with other_arch, beside them marked arm64); with_old, old/: them as 1.0.0."""
    folder = tempfile.mkdtemp(prefix="packages-")
    atexit.register(shutil.rmtree, folder)
    shutil.copytree(FOLDER, os.path.join(folder, "new"), ignore=shutil.ignore_patterns("*_arm64.deb"))
    os.makedirs(os.path.join(folder, "old"))
    for deb in debs(FOLDER) if with_old else []:
        rebuilt(deb, os.path.join(folder, "old"), "Version", OLD_VERSION, [
            "DEBIAN/preinst", "DEBIAN/postinst", "DEBIAN/prerm", "DEBIAN/postrm", "lib", "etc/init.d",
            "usr/lib/tmpfiles.d", "usr/lib/sysusers.d", "usr/libexec", "usr/share/man/man8",
            "usr/share/doc/*/README.Debian*"])
    for deb in debs(FOLDER) if other_arch else []:
        rebuilt(deb, os.path.join(folder, "new"), "Architecture", "arm64")
    return folder


class System(contextlib.AbstractContextManager):
    """The overlay, booted as far as the tests need: lighttpd runs, init scripts act (runlevel 2)."""

    def __init__(self, packages):
        self.base = tempfile.mkdtemp(prefix="system-")
        self.root, self.sim = os.path.join(self.base, "root"), None
        for d in ("upper", "work", "root"):
            os.mkdir(os.path.join(self.base, d))
        r = self.root
        for mount in (["-t", "overlay", "overlay", "-o", "lowerdir=/,upperdir={0}/upper,workdir={0}/work".format(
                self.base), r], ["-t", "proc", "proc", r + "/proc"], ["--rbind", "/dev", r + "/dev"],
                ["-t", "tmpfs", "tmpfs", r + "/run"], ["-t", "tmpfs", "-o", "mode=1777", "tmpfs", r + "/tmp"],
                ["-t", "tmpfs", "-o", "mode=755", "tmpfs", r + "/mnt"]):
            subprocess.run(["mount"] + mount, check=True)
        shutil.copytree(packages, os.path.join(r, "debs"))
        # A throw-away system needs no fsync after every file dpkg writes.
        self.sh("rm -f /usr/sbin/policy-rc.d /var/lib/man-db/auto-update /sbin/runlevel && echo force-unsafe-io > "
                "/etc/dpkg/dpkg.cfg.d/unsafe-io && printf '#!/bin/sh\\necho N 2\\n' > /sbin/runlevel && "
                "chmod 755 /sbin/runlevel && useradd --no-create-home %s && /etc/init.d/lighttpd start" % USER)

    def sh(self, script, check=True):
        r = subprocess.run(["chroot", self.root, "sh", "-ec", script], capture_output=True, text=True)
        if check and r.returncode != 0:
            raise AssertionError("%s: exit status %d\n%s%s" % (script, r.returncode, r.stdout, r.stderr))
        return r

    def start_sim(self):
        self.stop_sim()
        self.sim = subprocess.Popen(["chroot", self.root, "sh", "-ec", START_SIM])
        wait_for_socket(self.root + "/run/open-sim/open-sim.sock", self.sim)

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
        except urllib.request.HTTPError as e:
            return e.code, e.read()

    def empty(self, folder="/tmp", mode="1777"):
        """/tmp as after a reboot, or /mnt before the first install."""
        subprocess.run(["umount", self.root + folder], check=True)
        subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=" + mode, "tmpfs", self.root + folder], check=True)

    def plant(self, race=False):
        """The user's names in /tmp; racing, she goes on re-planting them until stop_planting()."""
        self.planter = subprocess.Popen(["chroot", self.root] + AS_USER.split() + [
            "python3", "-c", PLANT] + (["race"] if race else []), stdout=subprocess.PIPE, text=True)
        assert self.planter.stdout.readline() == "planted\n"

    def stop_planting(self):
        pathlib.Path(self.root + "/run/stop-racing").touch()
        out = self.planter.stdout.read()  # through the reader that may hold it already, after "planted"
        self.planter.wait(timeout=30)
        self.planter.stdout.close()
        os.remove(self.root + "/run/stop-racing")
        return json.loads(out)

    def serving_again(self, start_lighttpd):
        """Whose the names are once it serves again, and what her session and an administrator's get."""
        self.sh(start_lighttpd)
        self.start_sim()
        owners = {p: self.sh("stat -c %U " + p).stdout.strip() for p in NAMES}
        return owners, self.get(LINK_STATE, "hers"), self.get(LINK_STATE, self.session())

    def __exit__(self, *exc):
        self.close()

    def running(self, program=""):
        """The processes that run in this system (those of the program's path)."""
        found = []
        for proc in glob.glob("/proc/[0-9]*"):
            with contextlib.suppress(OSError):
                if os.readlink(proc + "/root") == self.root and os.readlink(proc + "/exe").endswith(program):
                    found.append(int(proc[len("/proc/"):]))
        return found

    def close(self):
        self.stop_sim()
        self.sh("/etc/init.d/lighttpd stop", check=False)
        for pid in self.running():  # an open-sim started as the documentation tells, her own lighttpd
            with contextlib.suppress(OSError):
                os.kill(pid, signal.SIGTERM)
        subprocess.run(["umount", "-R", "-l", self.root], check=True)
        shutil.rmtree(self.base, ignore_errors=True)


class Lifecycle(unittest.TestCase):
    maxDiff = None

    def test_every_step_leaves_lighttpd_serving(self):
        for name, steps in SCENARIOS.items():
            with self.subTest(scenario=name), System(packages(with_old=True)) as system:
                for step, serves, *said in steps:
                    r = system.sh(step)
                    self.assertEqual(system.running("interfaces_v2.cgi (deleted)"), [], step)  # responders
                    for text in said:
                        self.assertEqual((r.stdout + r.stderr).count(text), 1, (step, r.stdout + r.stderr))
                    self.assertEqual(self.after(system, serves), {True: (200, SERVED), False: "answers",
                                                                  None: None}[serves], (name, step))
                # what the packages made outside their files, gone with the last purge (the user stays)
                self.assertEqual(([p for p in ("/mnt/application", "/var/lib/interfaces-v2")
                                   if os.path.exists(system.root + p)], system.sh("id -nG www-data").stdout),
                                 ([], "www-data\n"), name)

    def after(self, system, serves):
        """A restart, then the program's reply where it serves, else whether lighttpd answers at all."""
        if serves is None:
            return None
        system.sh("/etc/init.d/lighttpd restart")  # which checks the configuration with lighttpd -tt first
        if serves:
            system.start_sim()
            return system.get(LINK_STATE, system.session())
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
    """Both packages installed, the CGI snippet enabled; and a local user, `nobody`."""

    @classmethod
    def setUpClass(cls):
        cls.system = System(packages(with_old=False))
        cls.addClassCleanup(cls.system.close)
        cls.system.sh(ENABLED)
        cls.system.start_sim()

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

    def test_open_sim_cannot_read_the_log(self):  # it shares only the CLI work folder's group
        r = self.system.sh("setpriv --reuid=open-sim --regid=open-sim --init-groups -- cat /tmp/k9100.log", check=False)
        self.assertEqual((r.returncode, r.stderr), (1, "cat: /tmp/k9100.log: Permission denied\n"))

    def test_the_log_does_not_follow_a_planted_link(self):
        """Where nothing staked the log (no systemd-tmpfiles at boot), the user links it to a file of www-data's."""
        self.system.sh("rm /tmp/k9100.log && printf 7 > /tmp/devmgr_log_level && "
                       "printf kept | install -o www-data -m 0600 /dev/stdin /tmp/www-data-file && " + AS_NOBODY +
                       "ln -s /tmp/www-data-file /tmp/k9100.log")
        self.system.get(LINK_STATE, self.system.session())
        self.assertEqual(pathlib.Path(self.system.root + "/tmp/www-data-file").read_text(), "kept")


# The log rotated ten times at level 7 by requests that log a refused session (the snippet left for race()).
ROTATIONS = ("lighty-enable-mod interfaces-v2-cgi >/dev/null && service lighttpd restart >/dev/null && "
             "printf 7 > /tmp/devmgr_log_level && for i in 1 2 3 4 5 6 7 8 9 10; do "
             "head -c 1048000 /dev/zero | tr '\\0' x >> /tmp/k9100.log; for j in 1 2 3 4 5 6 7 8; do "
             "curl -s -o /dev/null -H 'session: none' 'http://127.0.0.1%s'; done; done; "
             "lighty-disable-mod interfaces-v2-cgi >/dev/null" % LINK_STATE)


class Raced(unittest.TestCase):
    """She re-creates the program's names in /tmp in a tight loop while dpkg installs or upgrades, or the log
    rotates: the names end as www-data's, her session opens nothing, no file she holds is given to www-data."""

    def race(self, system, step, names_free=True):
        system.plant(race=True)
        try:
            out = system.sh(step).stderr
        finally:
            held = system.stop_planting()
        again = system.serving_again(CGI_ON + " && /etc/init.d/lighttpd restart")
        hers = [int(system.sh("id -u " + USER).stdout)] if names_free else []
        self.assertEqual((held["planted"] > 0, held["owners"], again), (names_free, hers, NOTHING_WON))
        return out

    def test_install(self):
        with System(packages(with_old=True)) as system:
            self.race(system, NEW)

    def test_log_rotation(self):
        with System(packages(with_old=True)) as system:
            system.sh(NEW)
            system.start_sim()
            self.race(system, ROTATIONS, names_free=False)
            self.assertGreater(os.stat(system.root + "/tmp/k9100.log.old").st_size, 1048576)

    def test_upgrade_from_1_0_0(self):
        with System(packages(with_old=True)) as system:
            # a log as 1.1.0 could leave it: www-data's, 0640, and yet held open by her since she made it
            system.sh(OLD + " && install -d -o www-data -g www-data -m 0700 /tmp/session && "
                      "printf 'kept\\n' | install -o www-data -g www-data -m 0640 /dev/stdin /tmp/k9100.log")
            held_log = os.stat(system.root + "/tmp/k9100.log").st_ino
            token = system.session()
            old_sim = subprocess.Popen(["chroot", system.root, "/usr/bin/open-sim", "serve", "--socket",
                                        "/tmp/open-sim.sock"], stderr=subprocess.DEVNULL)
            wait_for_socket(system.root + "/tmp/open-sim.sock", old_sim, "open-sim 1.0.0")
            out = self.race(system, NEW)
            self.assertIn("ended open-sim %d, which still ran the replaced version" % old_sim.pid, out)
            log = pathlib.Path(system.root + "/tmp/k9100.log")
            self.assertEqual((old_sim.wait(timeout=10), log.read_text()[:5], log.stat().st_ino != held_log,
                              system.get(LINK_STATE, token)), (0, "kept\n", True, (200, SERVED)))


# The names as the program's package makes them.
MADE = "".join("%s www-data %s\n" % (n, "700 directory" if n == "/tmp/session" else "640 regular file") for n in NAMES)
CLI = "/mnt/application/quill/tmp"
LOG_1_0_0 = "runuser -u www-data -- sh -c 'umask 022; echo kept > /tmp/k9100.log'"
NOT_USING = "interfaces-v2: not using %s: %%s; move it away, then install the package again" % CLI
NO_INODE = "mount -o remount,nr_inodes=8 {0} && i=0; while touch {0}/$i 2>/dev/null; do i=$((i+1)); done"
NO_ROOM = "interfaces-v2: cannot make %s: %s: No space left on device; make room there, then install the package again"
# The states of the program's names before it is installed, on an empty /tmp and /mnt: the install ends with
# every name www-data's (what it moved aside: owner, mode, type; what the log holds), or refuses before
# unpacking anything, with the one line given, and leaves all as it was.
STATES = [
    ("missing", "", {}, ""),
    ("the program's, holding the log", "install -d -o www-data -m 0700 /tmp/session && printf 'kept\\n' | "
     "install -o www-data -m 0640 /dev/stdin /tmp/k9100.log", {}, "kept\n"),
    ("root's, as the developers' scripts leave them",
     os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../scripts/prepare-switch-dirs.sh"),
     {"/tmp/session": "root 700 directory"}, ""),
    ("another user's FIFO", AS_USER + "mkfifo -m 0666 /tmp/k9100.log", {"/tmp/k9100.log": USER + " 666 fifo"}, ""),
    ("www-data's file with a second name", "runuser -u www-data -- sh -c 'umask 022; echo 7 > /tmp/.www' && "
     "ln /tmp/.www /tmp/devmgr_log_level", {"/tmp/devmgr_log_level": "www-data 644 regular file"}, ""),
    ("1.0.0's log, open to all", LOG_1_0_0, {"/tmp/k9100.log": "www-data 640 regular file"}, "kept\n"),
    ("1.0.0's log on a full /tmp", "mount -o remount,size=64k /tmp && %s && { cat /dev/zero > /tmp/fill || true; }"
     % LOG_1_0_0, {"/tmp/k9100.log": "www-data 640 regular file"}, ""),
    ("another user's CLI work folder", "mkdir -p %s && chown %s %s" % (CLI, USER, CLI),
     None, NOT_USING % ("%s is %s's, not root's or www-data's" % (CLI, USER))),
    ("a link where the CLI work folder belongs", "mkdir -p /mnt/application/quill && ln -s /tmp " + CLI,
     None, NOT_USING % (CLI + " is a link")),
    ("a file where a folder above it belongs", "mkdir /mnt/application && touch /mnt/application/quill", None,
     NOT_USING % "/mnt/application/quill is not a folder"),
    ("a folder above it that others may write", "mkdir -m 0777 /mnt/application", None,
     NOT_USING % "/mnt/application is writable by others than root"),
    ("/tmp without a free inode", NO_INODE.format("/tmp"), None, NO_ROOM % ("/tmp/session", "/tmp")),
    ("/mnt without a free inode", NO_INODE.format("/mnt"), None, NO_ROOM % ("/mnt/application", "/mnt")),
]


class Installing(unittest.TestCase):
    def test_each_starting_state_ends_configured_or_refused_untouched(self):
        listing = "find /tmp /mnt -printf '%p %u %m %y\\n' | sort"
        stat = "stat -c '%n %U %a %F' " + " ".join(NAMES)
        with System(packages(with_old=False)) as system:
            for state, setup, moved, outcome in STATES:
                with self.subTest(state=state):
                    system.empty()
                    system.empty("/mnt", "755")
                    system.sh(setup)
                    before = system.sh(listing).stdout
                    r = system.sh(NEW_PROGRAM, check=False)
                    status = system.sh("dpkg-query -W -f '${db:Status-Status}' " + PROGRAM, check=False).stdout
                    said = [line for line in (r.stdout + r.stderr).splitlines() if line.startswith("interfaces-v2:")]
                    if moved is None:
                        self.assertEqual((said, status, system.sh(listing).stdout),
                                         ([outcome], "not-installed", before))
                        continue
                    aside = {name: system.sh("stat -c '%%U %%a %%F' %s" % path).stdout.strip()
                             for name, path in re.findall(r"moved (\S+) aside to ([^\s:]+)", r.stderr)}
                    self.assertEqual((status, aside, system.sh(stat).stdout.replace(" empty file", " file"),
                                      system.sh("stat -c '%U %G %a' " + CLI).stdout,
                                      system.sh("cat /tmp/k9100.log").stdout),
                                     ("installed", moved, MADE, "www-data interfaces-v2-cli 2770\n", outcome))
                    system.sh("dpkg -P " + PROGRAM)


# Her own lighttpd, on port 8081.
HERS = ("printf 'server.document-root = \"/tmp\"\\nserver.port = 8081\\nserver.pid-file = \"/tmp/her.pid\"\\n' "
        "> /tmp/her.conf && " + AS_USER + "/usr/sbin/lighttpd -f /tmp/her.conf")
# An install restarts lighttpd exactly where a snippet of the program is enabled and the service runs: before,
# step, and whether lighttpd runs after it under another process (True), the same (False), or not at all (None).
RESTARTS = [
    ("the program alone, lighttpd running", NEW_PROGRAM, NEW_SIM, False),
    ("a snippet enabled, lighttpd running", ENABLED, NEW, True),
    ("a snippet enabled, lighttpd stopped, another user's running", ENABLED + " && /etc/init.d/lighttpd stop && " +
     HERS, NEW, None),
]


class Restarts(unittest.TestCase):
    def test_lighttpd_is_restarted_exactly_when_it_serves_the_program(self):
        pid = "/etc/init.d/lighttpd status >/dev/null && cat /run/lighttpd.pid || true"
        for state, before, step, restarted in RESTARTS:
            with self.subTest(state=state), System(packages(with_old=False)) as system:
                system.sh(before)
                hers, was = system.sh("cat /tmp/her.pid 2>/dev/null || true").stdout, system.sh(pid).stdout
                system.sh(step)
                now = system.sh(pid).stdout
                self.assertEqual((None if not now else now != was, system.sh(
                    "[ -z '%s' ] || kill -0 %s" % (hers, hers), check=False).returncode), (restarted, 0))


class Boot(unittest.TestCase):
    """Her names in the /tmp of a reboot: systemd-tmpfiles leaves them as they are; the init script (as
    interfaces-v2.service) moves them aside and makes the names www-data's."""

    def test_planted_names_are_moved_aside(self):
        stat = "stat -c '%n %U %a %F' " + " ".join(NAMES)
        with System(packages(with_old=False)) as system:
            system.sh(NEW + " && " + CGI_ON + " && /etc/init.d/lighttpd stop")
            system.empty()
            system.plant()
            before = system.sh(stat, check=False).stdout.splitlines()
            system.sh("systemd-tmpfiles --create --boot /usr/lib/tmpfiles.d/interfaces-v2.conf", check=False)
            after_tmpfiles = system.sh(stat, check=False).stdout.splitlines()
            status = [system.sh("/etc/init.d/interfaces-v2 status", check=False).returncode]
            out = system.sh("/etc/init.d/interfaces-v2 start").stderr
            status.append(system.sh("/etc/init.d/interfaces-v2 status", check=False).returncode)
            made = system.sh(stat).stdout.replace("regular empty file", "regular file")
            moved = sorted(dict(re.findall(r"moved (\S+) aside to ([^\s:]+)", out)))
            self.assertEqual(([line for line in before if line not in after_tmpfiles], status, made, moved),
                             ([], [3, 0], MADE, sorted(NAMES)))
            system.stop_planting()
            self.assertEqual(system.serving_again("/etc/init.d/lighttpd start"), NOTHING_WON)


def readme_blocks(deb):
    """The command blocks (lines indented by five) of README.Debian's walk to a served request, as DEB holds it."""
    text = subprocess.run("dpkg-deb --fsys-tarfile %s | tar -xO ./usr/share/doc/%s/README.Debian.gz | gunzip"
                          % (deb, PROGRAM), shell=True, capture_output=True, text=True, check=True).stdout
    walk = text.split("From install to a served request")[1].split("\n-----")[1] + "\n"
    runs = re.findall(r"(?m)^ {5}\S.*\n(?:(?: {5}\S| {7}).*\n)*", walk)
    return ["\n".join(line.strip() for line in run.splitlines()) for run in runs]


class Documentation(unittest.TestCase):
    """An administrator without systemd follows README.Debian word for word, beside packages of another
    architecture; her open-sim outlives her terminal; step 2 on a stopped lighttpd, then on the running one."""

    def test_the_steps_serve_a_request(self):
        install, status, start_sim, enable, session, ask = readme_blocks(debs(FOLDER)[1])  # the program's
        self.assertEqual(status, "systemctl status open-sim")  # systemd's, not taken here
        with System(packages(with_old=False, other_arch=True)) as system:
            system.sh("cd /debs/new && /etc/init.d/lighttpd stop && " + install.replace("apt ", "apt-get -q -y "))
            system.sh(start_sim)
            wait_for_socket(system.root + "/run/open-sim/open-sim.sock")
            for pid in system.running("/usr/bin/open-sim"):
                os.kill(pid, signal.SIGHUP)
            answers = []
            for before in ("", "lighty-disable-mod interfaces-v2-fastcgi"):  # lighttpd stopped, then running
                system.sh(before)
                system.sh(enable)
                answers.append(system.sh(session + "\n" + ask).stdout.encode())
            self.assertEqual(answers, [SERVED, SERVED])


if __name__ == "__main__":
    # lighttpd serves on port 80 in a network of this suite's own.
    if os.environ.get("LIFECYCLE_NETWORK") != "own":
        os.execvp("unshare", ["unshare", "--net", "env", "LIFECYCLE_NETWORK=own", sys.executable] + sys.argv)
    subprocess.run(["ip", "link", "set", "lo", "up"], check=True)
    main()
