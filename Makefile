# make run   build, then serve the API against the simulated switch on 127.0.0.1:8080 (FASTCGI=1: as FastCGI;
#            SCENARIO=name or file: another switch or a timeline, `open-sim scenarios` lists them)
# make test  build, then run every test suite (again under ASan and UBSan)
# make test-arm64  the same for the 64-bit ARM switch: cross build, tests run under qemu
# make build-release  the Release build, warnings as errors
# make bench  every benchmark side by side; writes bench/RESULTS.md
# make soak  build, then load through lighttpd, as CGI and as FastCGI; writes its figures into tests/RELIABILITY.md
# make fuzz  build the fuzz targets with clang and run each FUZZ_SECONDS
# make package  the Debian packages for x86-64 and the switch's arm64, and the source package, into dist/
# make piuparts  the x86-64 packages installed and purged in a fresh Debian chroot
# make test-fresh  install-deps.sh on this machine with every package it installs purged, mode by mode (root; minutes)
# make test-system  the arm64 packages installed and serving in an emulated Debian 12 arm64 system, rebooted
BUILD ?= build
MAKEFLAGS += --no-print-directory
BUILD_TYPE ?= RelWithDebInfo
RELEASE_BUILD ?= build-release
# The project's own builds stop at any warning; a user's plain cmake build does not.
WERROR = -DIF_WERROR=ON
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
SANITIZE_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
# A sanitizer finding ends the process with a code no test expects.
SANITIZER_OPTIONS = ASAN_OPTIONS=halt_on_error=1:detect_leaks=1:exitcode=86 \
                    UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1:exitcode=86

.PHONY: all deps configure build build-release package package-native package-arm64 package-tree piuparts test test-fresh test-system test-sanitize test-arm64 bench fuzz run soak soak-sanitize clean

all: build

deps:
	@scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) $(WERROR) >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

# The packages are tested too: installed, and serving through lighttpd. The arm64 ones are built after
# every suite has run, and then checked as the native ones were.
test: build package-native
	@scripts/install-deps.sh e2e
	@scripts/install-deps.sh browser
	@cd $(BUILD) && ctest --output-on-failure
	@$(MAKE) test-sanitize
	@$(MAKE) package-arm64

# The optimised build a switch image takes, warnings as errors; CI compiles it too.
build-release: deps
	@cmake -S . -B $(RELEASE_BUILD) -DCMAKE_BUILD_TYPE=Release $(WERROR) >/dev/null
	@cmake --build $(RELEASE_BUILD) -j $(JOBS)

# The Debian packages (debian/), built by dpkg-buildpackage in a copy of this tree, since it writes beside
# the tree: the source package and the binary ones for this machine, then the binary ones for the switch's
# arm64 CPU as a cross build. The suites of make test are their checks (nocheck), and no debug symbol
# packages are made.
PACKAGE_DIR ?= dist
PACKAGE_WORK ?= build-deb
PACKAGE_VERSION = $(shell dpkg-parsechangelog -S Version)
PACKAGE_TREE = $(PACKAGE_WORK)/interfaces-v2-$(PACKAGE_VERSION)
PACKAGE_BUILD = DEB_BUILD_OPTIONS="nocheck noddebs parallel=$(JOBS)" dpkg-buildpackage -us -uc
NATIVE_ARCH = $(shell dpkg --print-architecture)

package: package-native package-arm64

package-native:
	@scripts/install-deps.sh package
	@rm -rf $(PACKAGE_DIR) && mkdir -p $(PACKAGE_DIR)
	@$(MAKE) package-tree
	@cd $(PACKAGE_TREE) && $(PACKAGE_BUILD) -Pnocheck > ../native.log 2>&1 || { tail -40 ../native.log; exit 1; }
	@cp $(PACKAGE_WORK)/*.dsc $(PACKAGE_WORK)/*.tar.xz $(PACKAGE_WORK)/*_$(NATIVE_ARCH).deb $(PACKAGE_DIR)/
	@ls $(PACKAGE_DIR)

package-arm64:
	@scripts/install-deps.sh package
	@$(MAKE) package-tree
	@cd $(PACKAGE_TREE) && $(PACKAGE_BUILD) -b -aarm64 -Pcross,nocheck > ../arm64.log 2>&1 || { tail -40 ../arm64.log; exit 1; }
	@mkdir -p $(PACKAGE_DIR) && cp $(PACKAGE_WORK)/*_arm64.deb $(PACKAGE_DIR)/
	@cd tests/e2e && IF_PACKAGE_DIR=$(abspath $(PACKAGE_DIR)) IF_PACKAGE_ARCH=arm64 python3 test_package.py

# The native packages installed and purged in a fresh Debian chroot by piuparts, from the mirror apt uses
# here: some minutes and a download, so not part of make test.
PIUPARTS_MIRROR ?= $(shell sed -n 's/^URIs: *//p' /etc/apt/sources.list.d/debian.sources 2>/dev/null | head -1)
piuparts: package-native
	@scripts/install-deps.sh piuparts
	@piuparts -d $(shell . /etc/os-release && echo $$VERSION_CODENAME) $(if $(PIUPARTS_MIRROR),-m $(PIUPARTS_MIRROR)) \
	  --warn-on-others $(wildcard $(PACKAGE_DIR)/*_$(NATIVE_ARCH).deb)

# Each mode of install-deps.sh on a throw-away overlay of this machine with every package it can install
# purged, then what the mode serves: some minutes and downloads, so not part of make test.
test-fresh:
	@tests/fresh/fresh.sh

# The arm64 packages installed by apt in a whole Debian 12 arm64 system booted under qemu-system-aarch64,
# set up by their README.Debian, serving the host as CGI and as FastCGI, before and after a reboot. The
# image is built once (root, binfmt_misc and the Debian mirror) into ~/.cache/interfaces-v2/system/; each
# run boots a copy of it. The packages are those in dist/, made by make package when it has none.
# Some 15 minutes from an empty cache, 8 with it: not part of make test; its times go into bench/RESULTS.md.
test-system:
	@scripts/install-deps.sh system
	@ls $(PACKAGE_DIR)/interfaces-v2_*_arm64.deb >/dev/null 2>&1 || $(MAKE) package
	@IF_BUILD_DIR=$(abspath $(BUILD)) IF_PACKAGE_DIR=$(abspath $(PACKAGE_DIR)) python3 tests/system/test_system.py

# What git tracks and would track, as it stands in the work tree.
package-tree:
	@rm -rf $(PACKAGE_TREE) && mkdir -p $(PACKAGE_TREE)
	@git ls-files -z -co --exclude-standard | xargs -0 sh -c 'for f; do [ -e "$$f" ] && printf "%s\\0" "$$f"; done' _ | \
	  tar -cf - --null -T - | tar -xf - -C $(PACKAGE_TREE)

# Every suite again, with everything built under ASan and UBSan.
test-sanitize: deps
	@cmake -S . -B $(SANITIZE_BUILD) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DIF_SANITIZE=ON $(WERROR) >/dev/null
	@cmake --build $(SANITIZE_BUILD) -j $(JOBS)
	@cd $(SANITIZE_BUILD) && $(SANITIZER_OPTIONS) ctest --output-on-failure

fuzz:
	@scripts/install-deps.sh fuzz
	@CC=clang-14 CXX=clang++-14 cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) \
	  -DIF_FUZZ=ON -DIF_BUILD_TESTS=OFF >/dev/null
	@cmake --build $(FUZZ_BUILD) -j $(JOBS)
	@scripts/prepare-switch-dirs.sh
	@fuzz/run-all.sh $(FUZZ_BUILD) $(FUZZ_SECONDS)

# exec: the script watches make itself, which passes no signal on to it.
run: build
	@scripts/install-deps.sh e2e
	@FASTCGI=$(FASTCGI) SCENARIO=$(SCENARIO) exec scripts/run-dev.sh $(BUILD)

# Load through a private lighttpd and open-sim on the loopback: CGI for SOAK_SECONDS (60), then
# FastCGI responders for SOAK_REQUESTS (100,000).
soak: build
	@scripts/install-deps.sh e2e
	@scripts/prepare-switch-dirs.sh
	@IF_BUILD_DIR=$(abspath $(BUILD)) python3 tests/e2e/soak.py

# The same with the sanitizer build; LeakSanitizer checks each responder when lighttpd stops it. ASan's
# quarantine would keep up to 256 MiB of freed memory resident and read as growth: 1 MiB here.
soak-sanitize: deps
	@cmake -S . -B $(SANITIZE_BUILD) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DIF_SANITIZE=ON $(WERROR) >/dev/null
	@cmake --build $(SANITIZE_BUILD) -j $(JOBS)
	@scripts/prepare-switch-dirs.sh
	@$(SANITIZER_OPTIONS) IF_BUILD_DIR=$(abspath $(SANITIZE_BUILD)) \
	  ASAN_OPTIONS=halt_on_error=1:detect_leaks=1:exitcode=86:quarantine_size_mb=1 python3 tests/e2e/soak.py

# Cross build for aarch64; every program it starts goes through qemu-aarch64.
BUILD_ARM64 ?= build-arm64

test-arm64:
	@scripts/install-deps.sh arm64
	@cmake -S . -B $(BUILD_ARM64) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) $(WERROR) \
	  -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-aarch64-linux-gnu.cmake >/dev/null
	@cmake --build $(BUILD_ARM64) -j $(JOBS)
	@for f in interfaces_v2.cgi route-dump platform/open-sim tests/unit_tests; do \
	  aarch64-linux-gnu-readelf -h $(BUILD_ARM64)/$$f | grep -q 'Machine: *AArch64' \
	    || { echo "$$f is not an aarch64 program" >&2; exit 1; }; done
	@cd $(BUILD_ARM64) && ctest --output-on-failure

# Every benchmark in one run; the aarch64 programs are built only for their sizes.
bench:
	@scripts/install-deps.sh bench
	@$(MAKE) build
	@cmake -S . -B $(BUILD_ARM64) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) \
	  -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-aarch64-linux-gnu.cmake >/dev/null
	@cmake --build $(BUILD_ARM64) -j $(JOBS) --target interfaces_v2.cgi open-sim bench-floor
	@scripts/prepare-switch-dirs.sh
	@python3 bench/run_bench.py --build $(BUILD) --arm-build $(BUILD_ARM64)

clean:
	rm -rf $(BUILD) $(BUILD_ARM64) $(SANITIZE_BUILD) $(FUZZ_BUILD) $(RELEASE_BUILD) $(PACKAGE_WORK) \
	  $(PACKAGE_DIR)
