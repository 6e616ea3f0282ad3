# A thin front for scripts/ and the CMake presets: `make help` lists it. PRESET=NAME builds another
# preset than the system's own.

.PHONY: help setup linux-only build run test test-fast coverage bench soak fuzz format \
  format-check lint macos-check appex clean

help:  ## list the targets
	@awk -F ':.*## ' '/^[a-z-]+:.*## / { printf "%-14s%s\n", $$1, $$2 }' $(MAKEFILE_LIST)

setup:  ## install what is missing (on a Mac: say what is)
	@scripts/setup

linux-only:
	@[ "$$(uname)" = Linux ] || { echo "make: $(MAKECMDGOALS): only on Linux" >&2; exit 1; }

build: setup  ## build: on Linux everything, on a Mac the bundle and its tests
	@scripts/build $(PRESET)

# On a Mac it asks before it does anything to it.
ifeq ($(shell uname),Darwin)
run: setup
	@scripts/macos-run
else
run: setup  ## show menus, clicks and their records: in a simulated Finder (LANGUAGE=en LAYOUT=expanded), on a Mac in its own
	@scripts/build dev finder-sim Quorva QuorvaFinderExtension
	@build/dev/finder-sim demo $(call demo_option,LANGUAGE,--language) $(call demo_option,LAYOUT,--layout)
endif

# Only of the command line: many systems have a LANGUAGE of their own in the environment.
demo_option = $(if $(filter command,$(origin $(1))),$(2) '$($(1))')

test: setup  ## build and run every test
	@scripts/test

test-fast: setup  ## build and run the unit and the Cocoa tests
	@scripts/test --fast

coverage: linux-only setup  ## fail unless the unit tests reach everything in the core (Linux)
	@scripts/coverage

bench: linux-only setup  ## measure a menu and a click against what the system takes for them (Linux)
	@scripts/benchmark

soak: linux-only setup  ## make 100,000 menus and 20,000 clicks in one process (Linux)
	@scripts/soak

fuzz: linux-only setup  ## run each fuzz target for ten seconds (Linux)
	@scripts/fuzz

format: linux-only setup  ## format the C++, the Objective-C++ and the Python (Linux)
	@scripts/format

format-check: linux-only setup  ## fail when something is not formatted (Linux)
	@scripts/format --check

lint: linux-only setup  ## check the C++, the Objective-C++, the Python and the scripts (Linux)
	@scripts/lint

macos-check: linux-only setup  ## build the bundle for the Mac, to inspect it (Linux)
	@scripts/macos-check

appex: setup  ## build the bundle for every Mac (Mac)
	@scripts/appex

clean:  ## remove everything that was built; on a Mac, take what make run did out of the system too
	@[ "$$(uname)" != Darwin ] || scripts/macos-run --undo
	@rm -rf build
