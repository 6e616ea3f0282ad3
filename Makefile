# A thin front for scripts/ and the CMake presets: `make help` lists it.

PRESET ?= dev

.PHONY: help setup build run test coverage bench format format-check lint macos-check appex clean

help:  ## list the targets
	@awk -F ':.*## ' '/^[a-z-]+:.*## / { printf "%-16s%s\n", $$1, $$2 }' $(MAKEFILE_LIST)

setup:  ## install what is missing
	@scripts/setup

build: setup
	@scripts/build $(PRESET)

run: setup  ## show a menu, clicks and their records in a simulated Finder
	@scripts/build $(PRESET) finder-sim Quorva QuorvaFinderExtension
	@build/$(PRESET)/finder-sim demo

test: setup  ## build and pass every test
	@scripts/test

coverage: setup  ## line and branch coverage of the core by the unit tests
	@scripts/coverage

bench: setup  ## run the benchmarks
	@scripts/build release
	@scripts/benchmark

format: setup  ## format the sources
	@scripts/format

format-check: setup
	@scripts/format --check

lint: setup  ## clang-tidy and shellcheck
	@scripts/lint

macos-check: setup  ## build and inspect the bundle for the Mac, from Linux
	@scripts/macos-check

appex: setup  ## build the extension for every Mac, on a Mac
	@scripts/appex

clean:  ## remove everything that was built
	@rm -rf build
