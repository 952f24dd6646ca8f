# make run   build, then serve the API against the simulated switch on 127.0.0.1:8080
# make test  build, then run every test suite
BUILD ?= build
MAKEFLAGS += --no-print-directory
BUILD_TYPE ?= RelWithDebInfo
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps configure build test run clean

all: build

deps:
	@scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

test: build
	@scripts/prepare-switch-dirs.sh
	@cd $(BUILD) && ctest --output-on-failure

run: build
	@scripts/run-dev.sh $(BUILD)

clean:
	rm -rf $(BUILD)
