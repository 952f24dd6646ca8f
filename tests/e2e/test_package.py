"""The Debian packages `make package` writes: what each declares and holds, and what lintian says of them and of
the source package. The native ones are checked by make test's suites; the arm64 ones after their cross build
(IF_PACKAGE_ARCH=arm64). Installed, upgraded, removed and purged: test_lifecycle.py."""

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
ARCH = os.environ.get("IF_PACKAGE_ARCH") or subprocess.run(["dpkg", "--print-architecture"], capture_output=True,
                                                           text=True, check=True).stdout.strip()
SOURCE = pathlib.Path(__file__).resolve().parents[2]
SNIPPETS = ["etc/lighttpd/conf-available/50-interfaces-v2-%s.conf" % mode for mode in ("cgi", "fastcgi")]
PROGRAM = ["usr/share/doc/interfaces-v2/" + f for f in ("README.Debian.gz", "changelog.gz", "copyright", "openapi.json")] + \
    SNIPPETS + ["usr/lib/cgi-bin/interfaces_v2.cgi", "usr/lib/tmpfiles.d/interfaces-v2.conf",
                "usr/lib/sysusers.d/interfaces-v2.conf", "usr/libexec/interfaces-v2/stake-paths",
                "usr/libexec/interfaces-v2/restart-lighttpd", "usr/share/interfaces-v2/openapi.json",
                "etc/init.d/interfaces-v2", "lib/systemd/system/interfaces-v2.service",
                "usr/share/man/man8/interfaces_v2.cgi.8.gz", "usr/share/lintian/overrides/interfaces-v2"]
SIMULATOR = ["usr/share/doc/interfaces-v2-sim/changelog.gz", "usr/share/doc/interfaces-v2-sim/copyright",
             "usr/share/man/man1/open-sim.1.gz", "usr/share/man/man1/route-dump.1.gz",
             "usr/lib/sysusers.d/interfaces-v2-sim.conf", "usr/bin/open-sim", "usr/bin/route-dump",
             "lib/systemd/system/open-sim.service", "usr/share/lintian/overrides/interfaces-v2-sim"]
# The CGI carries its C++ runtime; the simulator's programs load it. Both make system groups with
# systemd-sysusers; the program's tmpfiles.d entry is run by systemd-tmpfiles (systemd, or the standalone ones).
# The simulator's purge runs gpasswd.
CONTENTS = [  # package, Depends, Recommends, files
    ("interfaces-v2", {"libc6", "libcjson1", "libfcgi0ldbl", "systemd"}, "lighttpd", PROGRAM),
    ("interfaces-v2-sim", {"libc6", "libcjson1", "libgcc-s1", "libstdc++6", "systemd", "passwd"}, "",
     SIMULATOR),
]
# The C library loads packed relative relocations (the CGI's, where the linker packs them) since this version.
RELR_LIBC = "2.36"
ELF_MACHINE = {"amd64": 0x3E, "arm64": 0xB7}


def version():
    """The version CMake builds, which the packages must carry too."""
    return re.search(r"project\(\S+ VERSION (\S+)", (SOURCE / "CMakeLists.txt").read_text()).group(1)


def package(name, arch=ARCH):
    found = glob.glob(os.path.join(FOLDER, "%s_*_%s.deb" % (name, arch)))
    if len(found) != 1:
        raise AssertionError("want one %s package for %s in %r (make package), found %s" % (name, arch, FOLDER, found))
    return found[0]


class Packages(unittest.TestCase):
    maxDiff = None

    def test_fields_and_files(self):
        for name, depends, recommends, files in CONTENTS:
            with self.subTest(package=name, arch=ARCH):
                deb = package(name)
                fields = subprocess.run(["dpkg-deb", "--field", deb, "Package", "Version", "Architecture", "Depends",
                                         "Recommends"], capture_output=True, text=True, check=True).stdout
                fields = dict(re.findall(r"^(\w+): (.*)$", fields, re.M))
                self.assertEqual((fields["Package"], fields["Version"], fields["Architecture"],
                                  fields.get("Recommends", "")), (name, version(), ARCH, recommends))
                self.assertEqual({d.split()[0] for d in fields["Depends"].split(", ")}, depends)
                listing = subprocess.run(["dpkg-deb", "--contents", deb], capture_output=True, text=True,
                                         check=True).stdout.split("\n")
                self.assertEqual(sorted(line.split()[5][2:] for line in listing if line and line[0] != "d"),
                                 sorted(files))
                root = tempfile.mkdtemp(prefix="deb-")
                subprocess.run(["dpkg", "-x", deb, root], check=True)
                heads = {f: pathlib.Path(root, f).read_bytes()[:20] for f in files}
                relr = [f for f in files if "bin/" in f and "(RELR)" in subprocess.run(
                    ["readelf", "-d", os.path.join(root, f)], capture_output=True, text=True).stdout]
                shutil.rmtree(root)
                libc = re.search(r"libc6 \(>= ([^)]+)\)", fields["Depends"]).group(1)
                self.assertTrue(not relr or subprocess.run(["dpkg", "--compare-versions", libc, "ge", RELR_LIBC]).returncode
                                == 0, (relr, libc))
                # every program is built for the package's CPU
                self.assertEqual({f: h[18] for f, h in heads.items() if h[:4] == b"\x7fELF"},
                                 {f: ELF_MACHINE[ARCH] for f in files if "bin/" in f})

    def test_lintian_finds_nothing(self):
        """Not even an informational or pedantic tag on the binary packages and, beside the native ones, the source
        package."""
        debs = [package(name) for name, *_ in CONTENTS]
        sources = glob.glob(os.path.join(FOLDER, "interfaces-v2_%s.dsc" % version()))
        self.assertEqual(len(sources), 1, "want the source package beside them")
        out = subprocess.run(["lintian", "--allow-root", "-I", "--pedantic"] + debs + sources, capture_output=True,
                             text=True).stdout
        self.assertEqual([line for line in out.splitlines() if line[:2] in ("E:", "W:", "I:", "P:")], [])


if __name__ == "__main__":
    main()
