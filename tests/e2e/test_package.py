"""The Debian packages `make package` writes: what each declares and holds.
Installed, upgraded, removed and purged: test_lifecycle.py."""

import glob
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

from harness import main

FOLDER = os.environ.get("IF_PACKAGE_DIR", "")
SNIPPETS = ["/etc/lighttpd/conf-available/50-interfaces-v2-%s.conf" % mode for mode in ("cgi", "fastcgi")]
PROGRAM = ["usr/share/doc/interfaces-v2/" + f for f in ("README.Debian", "changelog.gz", "copyright", "openapi.json")] + [
    s[1:] for s in SNIPPETS] + ["usr/lib/cgi-bin/interfaces_v2.cgi", "usr/lib/tmpfiles.d/interfaces-v2.conf",
                                "usr/share/man/man8/interfaces_v2.cgi.8.gz"]
SIMULATOR = ["usr/share/doc/interfaces-v2-sim/changelog.gz", "usr/share/doc/interfaces-v2-sim/copyright",
             "usr/share/man/man1/open-sim.1.gz", "usr/share/man/man1/route-dump.1.gz",
             "usr/bin/open-sim", "usr/bin/route-dump", "lib/systemd/system/open-sim.service"]
# The CGI carries its C++ runtime; the simulator's programs load it. The program's postinst runs
# systemd-tmpfiles (systemd, or the standalone one), the simulator's adds a user.
CONTENTS = [  # package, architecture, Depends, Recommends, files
    ("interfaces-v2", "amd64", {"libc6", "libcjson1", "systemd"}, "lighttpd", PROGRAM),
    ("interfaces-v2", "arm64", {"libc6", "libcjson1", "systemd"}, "lighttpd", PROGRAM),
    ("interfaces-v2-sim", "amd64", {"adduser", "libc6", "libcjson1", "libgcc-s1", "libstdc++6"}, "", SIMULATOR),
    ("interfaces-v2-sim", "arm64", {"adduser", "libc6", "libcjson1", "libgcc-s1", "libstdc++6"}, "", SIMULATOR),
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


if __name__ == "__main__":
    main()
