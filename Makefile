# make run   build, then serve the API against the simulated switch on 127.0.0.1:8080 (FASTCGI=1: as FastCGI;
#            SCENARIO=name or file: another switch or a timeline, `open-sim scenarios` lists them)
# make test  build, then run every test suite (again under ASan and UBSan)
# make test-arm64  the same for the 64-bit ARM switch: cross build, tests run under qemu
# make build-release  the Release build, warnings as errors
# make bench  every benchmark side by side; writes bench/RESULTS.md
# make soak  build, then load through lighttpd, as CGI and as FastCGI; writes its figures into tests/RELIABILITY.md
# make fuzz  build the fuzz targets with clang and run each FUZZ_SECONDS
# make package  the Debian packages for x86-64 and the switch's arm64, into dist/
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

.PHONY: all deps configure build build-release package test test-sanitize test-arm64 bench fuzz run soak soak-sanitize clean

all: build

deps:
	@scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) $(WERROR) >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

# The packages are tested too: installed, and serving through lighttpd.
test: build package
	@scripts/install-deps.sh browser
	@cd $(BUILD) && ctest --output-on-failure
	@$(MAKE) test-sanitize

# The optimised build a switch image takes, warnings as errors; CI compiles it too.
build-release: deps
	@cmake -S . -B $(RELEASE_BUILD) -DCMAKE_BUILD_TYPE=Release $(WERROR) >/dev/null
	@cmake --build $(RELEASE_BUILD) -j $(JOBS)

# The program's package and the simulated switch's, from Release builds for
# this machine and the switch's arm64 CPU; cpack computes their Depends.
PACKAGE_BUILD ?= build-package
PACKAGE_BUILD_ARM64 ?= build-package-arm64
PACKAGE_DIR ?= dist
PACKAGE_FLAGS = -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr -DIF_BUILD_TESTS=OFF $(WERROR)

package:
	@scripts/install-deps.sh package
	@cmake -S . -B $(PACKAGE_BUILD) $(PACKAGE_FLAGS) >/dev/null
	@cmake -S . -B $(PACKAGE_BUILD_ARM64) $(PACKAGE_FLAGS) \
	  -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-aarch64-linux-gnu.cmake >/dev/null
	@rm -rf $(PACKAGE_DIR) && mkdir -p $(PACKAGE_DIR)
	@for b in $(PACKAGE_BUILD) $(PACKAGE_BUILD_ARM64); do \
	  cmake --build $$b -j $(JOBS) && rm -f $$b/*.deb && (cd $$b && cpack >/dev/null) && cp $$b/*.deb $(PACKAGE_DIR)/ || exit 1; done
	@ls $(PACKAGE_DIR)

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
	@FASTCGI=$(FASTCGI) SCENARIO=$(SCENARIO) exec scripts/run-dev.sh $(BUILD)

# Load through a private lighttpd and open-sim on the loopback: CGI for SOAK_SECONDS (60), then
# FastCGI responders for SOAK_REQUESTS (100,000).
soak: build
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
	rm -rf $(BUILD) $(BUILD_ARM64) $(SANITIZE_BUILD) $(FUZZ_BUILD) $(RELEASE_BUILD) $(PACKAGE_BUILD) \
	  $(PACKAGE_BUILD_ARM64) $(PACKAGE_DIR)
