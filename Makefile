# The two set-up commands of the README: `make run` and `make test`.
BUILD ?= build
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?=

.PHONY: deps configure build run test bench clean format test-asan crash-test fuzz fuzz-build fuzz-seeds

deps:
	@bash scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release $(CMAKE_FLAGS) >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

run: build
	@if [ -x $(BUILD)/bin/tervale ]; then \
	  $(BUILD)/bin/tervale; \
	else \
	  bash scripts/demo.sh $(BUILD)/bin; \
	fi

test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

bench: build
	@for b in $(BUILD)/bin/bench_*; do echo "== $$b"; $$b --benchmark_min_time=0.2; done

format:
	@find src tests bench -name '*.cpp' -o -name '*.h' | xargs clang-format -i

clean:
	@rm -rf $(BUILD)

# Every core, database and command-line test again under the address and undefined-behaviour
# sanitizers, in a build directory of its own (the desktop program stays out).
ASAN_BUILD ?= build-asan
test-asan: deps
	@cmake -S . -B $(ASAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DTERVALE_SANITIZE=ON -DTERVALE_BUILD_GUI=OFF -DTERVALE_BUILD_BENCHMARKS=OFF >/dev/null
	@cmake --build $(ASAN_BUILD) -j $(JOBS)
	@cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
	  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 ctest --output-on-failure -j $(JOBS)

# Saves killed at a random instant, 1000 trials per file kind.
crash-test: build
	@TERVALE_CRASH_TRIALS=1000 $(BUILD)/bin/test_hardening --gtest_filter='CrashSafeSave*'

# libFuzzer targets (clang): `make fuzz SECONDS=60` runs each for SECONDS seconds.
FUZZ_BUILD ?= build-fuzz
SECONDS ?= 60
fuzz-build:
	@TERVALE_WITH_FUZZ=1 bash scripts/install-deps.sh
	@CC=clang CXX=clang++ cmake -S fuzz -B $(FUZZ_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
	@cmake --build $(FUZZ_BUILD) -j $(JOBS)

# The seeds of the case-file targets are written from the built-in examples by the command-line
# program (built first if needed) into $(FUZZ_BUILD)/seeds; the hand-written seeds are kept in
# fuzz/seeds.
fuzz-seeds: configure
	@cmake --build $(BUILD) -j $(JOBS) --target tervale-cli
	@bash fuzz/make_seeds.sh $(BUILD)/bin/tervale-cli $(FUZZ_BUILD)/seeds

fuzz: fuzz-build fuzz-seeds
	@bash fuzz/run.sh $(FUZZ_BUILD) $(SECONDS)
