"""The Debian packages `make package` writes (IF_PACKAGE_ARCH=arm64: the cross-built ones) and lintian."""

import glob
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

from harness import main


def run(*command):
    return subprocess.run(command, capture_output=True, text=True).stdout


FOLDER = os.environ.get("IF_PACKAGE_DIR", "")
ARCH = os.environ.get("IF_PACKAGE_ARCH") or run("dpkg", "--print-architecture").strip()
SOURCE = pathlib.Path(__file__).resolve().parents[2]
DOC, CONF = "usr/share/doc/interfaces-v2/", "etc/lighttpd/conf-available/50-interfaces-v2-"
PROGRAM = [DOC + "README.Debian.gz", DOC + "changelog.gz", DOC + "copyright", DOC + "openapi.json",
           CONF + "cgi.conf", CONF + "fastcgi.conf", "usr/lib/cgi-bin/interfaces_v2.cgi",
           "usr/lib/tmpfiles.d/interfaces-v2.conf", "usr/lib/sysusers.d/interfaces-v2.conf",
           "usr/libexec/interfaces-v2/stake-paths", "usr/libexec/interfaces-v2/restart-lighttpd",
           "usr/share/interfaces-v2/openapi.json", "etc/init.d/interfaces-v2",
           "lib/systemd/system/interfaces-v2.service", "usr/share/man/man8/interfaces_v2.cgi.8.gz",
           "usr/share/lintian/overrides/interfaces-v2"]
SIMULATOR = ["usr/share/doc/interfaces-v2-sim/changelog.gz", "usr/share/doc/interfaces-v2-sim/copyright",
             "usr/share/man/man1/open-sim.1.gz", "usr/share/man/man1/route-dump.1.gz",
             "usr/lib/sysusers.d/interfaces-v2-sim.conf", "usr/bin/open-sim", "usr/bin/route-dump",
             "lib/systemd/system/open-sim.service", "usr/share/lintian/overrides/interfaces-v2-sim"]
# The CGI carries its C++ runtime; systemd's tools run sysusers.d and tmpfiles.d; the purge runs gpasswd.
CONTENTS = [  # package, Depends, Recommends, files
    ("interfaces-v2", {"libc6", "libcjson1", "libfcgi0ldbl", "systemd"}, "lighttpd", PROGRAM),
    ("interfaces-v2-sim", {"libc6", "libcjson1", "libgcc-s1", "libstdc++6", "systemd", "passwd"}, "",
     SIMULATOR),
]
# The C library loads packed relative relocations (the CGI's, where the linker packs them) since this version.
RELR_LIBC = "2.36"
ELF_MACHINE = {"amd64": 0x3E, "arm64": 0xB7}


def version():
    return re.search(r"project\(\S+ VERSION (\S+)", (SOURCE / "CMakeLists.txt").read_text()).group(1)


def package(name):
    found = glob.glob(os.path.join(FOLDER, "%s_*_%s.deb" % (name, ARCH)))
    if len(found) != 1:
        raise AssertionError("want one %s package for %s in %r, found %s" % (name, ARCH, FOLDER, found))
    return found[0]


class Packages(unittest.TestCase):
    maxDiff = None

    def test_fields_and_files(self):
        for name, depends, recommends, files in CONTENTS:
            with self.subTest(package=name, arch=ARCH):
                deb = package(name)
                fields = dict(re.findall(r"^(\w+): (.*)$", run("dpkg-deb", "--field", deb), re.M))
                depends_on = {d.split()[0] for d in fields["Depends"].split(", ")}
                self.assertEqual((fields["Package"], fields["Version"], fields["Architecture"],
                                  fields.get("Recommends", ""), depends_on),
                                 (name, version(), ARCH, recommends, depends))
                listing = run("dpkg-deb", "--contents", deb).splitlines()
                listed = [line.split()[5][2:] for line in listing if line[0] != "d"]
                self.assertEqual(sorted(listed), sorted(files))
                programs = [f for f in files if "bin/" in f]
                with tempfile.TemporaryDirectory(prefix="deb-") as root:
                    subprocess.run(["dpkg", "-x", deb, root], check=True)
                    heads = {f: pathlib.Path(root, f).read_bytes()[:20] for f in files}
                    relr = [f for f in programs if "(RELR)" in run("readelf", "-d", root + "/" + f)]
                libc = re.search(r"libc6 \(>= ([^)]+)\)", fields["Depends"]).group(1)
                loads_relr = subprocess.call(["dpkg", "--compare-versions", libc, "ge", RELR_LIBC]) == 0
                self.assertTrue(not relr or loads_relr, (relr, libc))
                self.assertEqual({f: h[18] for f, h in heads.items() if h[:4] == b"\x7fELF"},
                                 {f: ELF_MACHINE[ARCH] for f in programs})

    def test_lintian_finds_nothing(self):
        """Not even an informational or pedantic tag, on the binary packages and the source package."""
        sources = glob.glob(os.path.join(FOLDER, "interfaces-v2_%s.dsc" % version()))
        self.assertEqual(len(sources), 1, "want the source package beside them")
        debs = [package(name) for name, *_ in CONTENTS]
        out = run("lintian", "--allow-root", "-I", "--pedantic", *debs, *sources)
        self.assertEqual([line for line in out.splitlines() if line[:2] in ("E:", "W:", "I:", "P:")], [])


if __name__ == "__main__":
    main()
