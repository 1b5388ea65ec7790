# The two commands of the quick start. Each one installs what is missing, configures and builds.
BUILD_DIR ?= build
BUILD_TYPE ?= RelWithDebInfo

.PHONY: run test build deps format clean package fuzz

run: build
	./scripts/run.sh $(BUILD_DIR)

test: build
	ctest --test-dir $(BUILD_DIR) --output-on-failure -j2

build: deps
	@if [ ! -f $(BUILD_DIR)/build.ninja ]; then \
		cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE); \
	fi
	cmake --build $(BUILD_DIR)

# The Debian package, brizalog_<version>_<arch>.deb in this folder: `apt install ./brizalog_*.deb`.
package: build
	cpack --config $(BUILD_DIR)/CPackConfig.cmake -B $(BUILD_DIR)/package
	cp $(BUILD_DIR)/package/brizalog_*.deb .

# Builds the fuzzing harnesses in build-fuzz/ and runs each for FUZZ_SECONDS (60 by default).
FUZZ_SECONDS ?= 60
fuzz: deps
	FUZZ_SECONDS=$(FUZZ_SECONDS) ./scripts/fuzz.sh

deps:
	@./scripts/install-deps.sh

# Rewrites every C++ file in the project's own style.
format:
	find src tools tests bench fuzz \( -name '*.h' -o -name '*.cpp' \) -print0 | xargs -0 -r clang-format -i

clean:
	rm -rf $(BUILD_DIR)
