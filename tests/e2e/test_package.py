"""The Debian packages `make package` writes: what each declares and holds, and
the program's package installed, serving through lighttpd with its own snippet."""

import glob
import os
import pathlib
import pwd
import re
import shutil
import subprocess
import tempfile
import unittest
import urllib.request

import harness
from harness import Lighttpd, Sim, main, new_session, private_view, read_reply

FOLDER = os.environ.get("IF_PACKAGE_DIR", "")
SNIPPETS = ["/etc/lighttpd/conf-available/50-interfaces-v2-%s.conf" % mode for mode in ("cgi", "fastcgi")]
PROGRAM = ["usr/share/doc/interfaces-v2/" + f for f in ("README.md", "changelog.gz", "copyright", "openapi.json")] + [
    s[1:] for s in SNIPPETS] + ["usr/lib/cgi-bin/interfaces_v2.cgi"]
SIMULATOR = ["usr/share/doc/interfaces-v2-sim/changelog.gz", "usr/share/doc/interfaces-v2-sim/copyright",
             "usr/share/man/man1/open-sim.1.gz", "usr/share/man/man1/route-dump.1.gz",
             "usr/bin/open-sim", "usr/bin/route-dump"]
# The CGI carries its C++ runtime; the simulator's programs load it.
CONTENTS = [  # package, architecture, Depends, Recommends, files
    ("interfaces-v2", "amd64", {"libc6", "libcjson1"}, "lighttpd", PROGRAM),
    ("interfaces-v2", "arm64", {"libc6", "libcjson1"}, "lighttpd", PROGRAM),
    ("interfaces-v2-sim", "amd64", {"libc6", "libcjson1", "libgcc-s1", "libstdc++6"}, "", SIMULATOR),
    ("interfaces-v2-sim", "arm64", {"libc6", "libcjson1", "libgcc-s1", "libstdc++6"}, "", SIMULATOR),
]
ELF_MACHINE = {"amd64": 0x3E, "arm64": 0xB7}


def package(name, arch):
    found = glob.glob(os.path.join(FOLDER, "%s_*_%s.deb" % (name, arch)))
    if len(found) != 1:
        raise AssertionError("want one %s package for %s in %r (make package), found %s" % (name, arch, FOLDER, found))
    return found[0]


class Packages(unittest.TestCase):
    maxDiff = None

    def test_fields_and_files(self):
        for name, arch, depends, recommends, files in CONTENTS:
            with self.subTest(package=name, arch=arch):
                deb = package(name, arch)
                fields = subprocess.run(["dpkg-deb", "--field", deb, "Package", "Architecture", "Depends",
                                         "Recommends"], capture_output=True, text=True, check=True).stdout
                fields = dict(re.findall(r"^(\w+): (.*)$", fields, re.M))
                self.assertEqual((fields["Package"], fields["Architecture"], fields.get("Recommends", "")),
                                 (name, arch, recommends))
                self.assertEqual({d.split()[0] for d in fields["Depends"].split(", ")}, depends)
                listing = subprocess.run(["dpkg-deb", "--contents", deb], capture_output=True, text=True,
                                         check=True).stdout.split("\n")
                self.assertEqual(sorted(line.split()[-1][2:] for line in listing if line and line[0] != "d"),
                                 sorted(files))
                root = tempfile.mkdtemp(prefix="deb-")
                subprocess.run(["dpkg", "-x", deb, root], check=True)
                heads = {f: pathlib.Path(root, f).read_bytes()[:20] for f in files}
                shutil.rmtree(root)
                # every program is built for the package's CPU
                self.assertEqual({f: h[18] for f, h in heads.items() if h[:4] == b"\x7fELF"},
                                 {f: ELF_MACHINE[arch] for f in files if "bin/" in f})

    def test_lintian_finds_no_error(self):
        debs = [package(name, arch) for name, arch, *_ in CONTENTS]
        out = subprocess.run(["lintian", "--allow-root"] + debs, capture_output=True, text=True).stdout
        self.assertEqual([line for line in out.splitlines() if line.startswith("E:")], [])

    def test_installed_program_serves_through_its_snippet(self):
        root = tempfile.mkdtemp(prefix="installed-")
        for name in ("interfaces-v2", "interfaces-v2-sim"):
            subprocess.run(["dpkg", "-x", package(name, "amd64"), root], check=True)
        # The installed trees over the system's, seen by these processes only:
        # the snippet names the CGI by its installed path.
        view = private_view("mount -t overlay overlay -o lowerdir={0}/usr:/usr /usr; "
                            "mount -t overlay overlay -o lowerdir={0}/etc:/etc /etc".format(root))
        sim = Sim(wrap=view, program="/usr/bin/open-sim")
        os.chmod(os.path.dirname(sim.socket), 0o755)
        # FastCGI responders take lighttpd's environment; Debian's lighttpd keeps its sockets in /run/lighttpd.
        serving = private_view("mount -t overlay overlay -o lowerdir={0}/usr:/usr /usr; "
                               "mount -t overlay overlay -o lowerdir={0}/etc:/etc /etc; "
                               "mkdir -p /run/lighttpd; chown www-data:www-data /run/lighttpd; "
                               "export OPEN_SIM_SOCKET={1}".format(root, sim.socket))
        try:
            for snippet in SNIPPETS:
                with self.subTest(snippet=snippet):
                    self.assertEqual(self.served(sim, snippet, serving), (200, "application/json", read_reply(
                        0, "if", {"linkState": "up"})[len(harness.JSON_HEADER):]))
        finally:
            sim.stop()
            shutil.rmtree(root)

    def served(self, sim, snippet, view):
        """One link-state request through lighttpd with the installed snippet."""
        server = Lighttpd(sim.socket, snippet=snippet, wrap=view)
        try:
            token, web = new_session(), pwd.getpwnam("www-data")  # the login page writes it as www-data
            os.chown(os.path.join(harness.SESSION_DIR, token), web.pw_uid, web.pw_gid)
            request = urllib.request.Request("http://127.0.0.1:%d/api/v2/interfaces/if/link-state?ifNum=3"
                                             % server.port, headers={"session": token})
            with urllib.request.urlopen(request, timeout=30) as r:
                return r.status, r.headers.get("Content-Type"), r.read()
        finally:
            server.stop()

if __name__ == "__main__":
    main()
