# The two set-up commands of the README: `make run` and `make test`.
BUILD ?= build
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?=

.PHONY: deps configure build run test bench clean format

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
