# Quick start: `make run` builds and starts Tavorine, `make test` builds and runs the tests,
# `make package` builds the Debian package in $(BUILD)/, `make format` formats the C++.
BUILD ?= build
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps configure build run test bench package format clean

all: build

deps:
	@sh tools/install-deps.sh

configure: deps
	@if [ ! -f $(BUILD)/CMakeCache.txt ]; then \
	  cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo; fi

build: configure
	MAKEFLAGS=--no-print-directory cmake --build $(BUILD) -j $(JOBS)

run: build
	./$(BUILD)/tavorine

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

package: build
	cmake --build $(BUILD) --target package

bench: build
	@for b in $(BUILD)/bench/bench_*; do [ -f "$$b" ] && [ -x "$$b" ] && "$$b"; done; true

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD)
