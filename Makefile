# `make run` and `make test` are the two commands of the README: each installs what is missing,
# builds incrementally in build/, then runs Navro or every test.
BUILD_DIR ?= build
JOBS ?= $(shell nproc)

.PHONY: deps configure build run test bench format clean

deps:
	@scripts/install-deps.sh

configure: deps
	@test -f $(BUILD_DIR)/build.ninja || cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo

build: configure
	@cmake --build $(BUILD_DIR) -j $(JOBS)

run: build
	@scripts/run.sh $(BUILD_DIR)

test: build
	@cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

bench: build
	@scripts/bench.sh $(BUILD_DIR)

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	@rm -rf $(BUILD_DIR)
