# `make run` and `make test` are the two commands of the README: each installs what is missing,
# builds incrementally in build/, then runs Navro or every test.
BUILD_DIR ?= build
JOBS ?= $(shell nproc)
FUZZ_SECONDS ?= 20
# A compiler cache speeds up rebuilds where one is installed; the build needs none.
LAUNCHER := $(if $(shell command -v ccache),-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)

.PHONY: deps configure build run screenshots test sanitize fuzz bench deb package-test format clean

deps:
	@scripts/install-deps.sh

configure: deps
	@test -f $(BUILD_DIR)/build.ninja || cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo $(LAUNCHER)

build: configure
	@cmake --build $(BUILD_DIR) -j $(JOBS)

run: build
	@scripts/run.sh $(BUILD_DIR)

# Every window and page, in both languages and themes, on a virtual desktop (build/screenshots/).
screenshots: build
	@scripts/screenshots.sh $(BUILD_DIR)

test: build
	@cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

# The unit tests under AddressSanitizer and UndefinedBehaviorSanitizer (build-sanitize/).
sanitize: deps
	@JOBS=$(JOBS) LAUNCHER="$(LAUNCHER)" scripts/sanitize.sh

# Every libFuzzer target for FUZZ_SECONDS each (build-fuzz/).
fuzz: deps
	@JOBS=$(JOBS) LAUNCHER="$(LAUNCHER)" FUZZ_SECONDS=$(FUZZ_SECONDS) scripts/fuzz.sh

# The Debian package (build-deb/), checked by lintian, desktop-file-validate and appstreamcli.
deb: deps
	@JOBS=$(JOBS) scripts/deb.sh

# The package unpacked into a throw-away root and started on a virtual desktop.
package-test: deb build
	@tests/package/install_and_start.sh build-deb/navro_*.deb $(BUILD_DIR)/tests/desktop/navro_test_x11

bench: build
	@scripts/bench.sh $(BUILD_DIR)

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	@rm -rf $(BUILD_DIR) build-sanitize build-fuzz build-deb
