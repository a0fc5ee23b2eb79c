# Set-up and everyday commands. Each target first installs whatever Debian packages
# are missing, so `make run` and `make test` work on a fresh machine.
BUILD      ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
# Seconds each fuzz target runs in fuzz-smoke, after its seed corpus.
FUZZ_SECONDS ?= 60
JOBS       ?= 2
GENERATOR  := -G Ninja

.PHONY: deps build run test test-asan fuzz fuzz-smoke bench format clean

deps:
	@scripts/install-deps

$(BUILD)/build.ninja: | deps
	cmake -S . -B $(BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo

build: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

run: build
	$(BUILD)/bin/loomsim

test: build
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

$(ASAN_BUILD)/build.ninja: | deps
	cmake -S . -B $(ASAN_BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=Debug -DSPINDLE_SANITIZE=ON

test-asan: deps $(ASAN_BUILD)/build.ninja
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
	  ctest --test-dir $(ASAN_BUILD) --output-on-failure -j $(JOBS)

$(FUZZ_BUILD)/build.ninja: | deps
	@scripts/install-deps fuzz
	cmake -S . -B $(FUZZ_BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DCMAKE_CXX_COMPILER=clang++ -DSPINDLE_FUZZ=ON

fuzz: deps $(FUZZ_BUILD)/build.ninja
	cmake --build $(FUZZ_BUILD) -j $(JOBS)

fuzz-smoke: fuzz
	fuzz/smoke $(FUZZ_BUILD)/bin $(FUZZ_SECONDS)

bench: build
	$(BUILD)/bin/bench_dispatch

format:
	find host core settings paper job refhost tools tests bench fuzz -name '*.h' -o -name '*.cpp' | xargs clang-format -i

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD)
