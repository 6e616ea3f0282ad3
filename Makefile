# A thin front for scripts/ and the CMake presets: `make help` lists it. PRESET=NAME builds another
# preset than the system's own.

.PHONY: help setup build run test coverage bench format format-check lint macos-check appex clean

help:  ## list the targets
	@awk -F ':.*## ' '/^[a-z-]+:.*## / { printf "%-14s%s\n", $$1, $$2 }' $(MAKEFILE_LIST)

setup:  ## install what is missing (on a Mac: say what is)
	@scripts/setup

build: setup  ## build: on Linux everything, on a Mac the bundle and the unit tests
	@scripts/build $(PRESET)

run: setup  ## show a menu, clicks and their records in a simulated Finder (Linux)
	@scripts/build dev finder-sim Quorva QuorvaFinderExtension
	@build/dev/finder-sim demo

test: setup  ## build and pass every test
	@scripts/test

coverage: setup  ## fail unless the unit tests reach every line and branch of the core (Linux)
	@scripts/coverage

bench: setup  ## run the benchmarks (Linux)
	@scripts/benchmark

format: setup  ## format the C++, the Objective-C++ and the Python (Linux)
	@scripts/format

format-check: setup  ## fail when something is not formatted (Linux)
	@scripts/format --check

lint: setup  ## check the C++, the Objective-C++, the Python and the scripts (Linux)
	@scripts/lint

macos-check: setup  ## build the bundle for the Mac, to inspect it (Linux)
	@scripts/macos-check

appex: setup  ## build the bundle for every Mac (Mac)
	@scripts/appex

clean:  ## remove everything that was built
	@rm -rf build
