# Set-up and everyday commands. Each target first installs whatever Debian packages
# are missing, so `make run` and `make test` work on a fresh machine.
BUILD      ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
# Seconds each fuzz target runs in fuzz-smoke, after its seed corpus.
FUZZ_SECONDS ?= 60
JOBS       ?= 2
GENERATOR  := -G Ninja
# The Windows build: cross-compiled with MinGW-w64, tested under Wine. Its dependencies
# are built once into $(WIN32_BUILD)/deps and kept there.
WIN32_BUILD ?= build-win32
WIN32_DEPS  := $(WIN32_BUILD)/deps
WINE_ENV    := WINEPREFIX=$(abspath $(WIN32_BUILD))/wine WINEDEBUG=-all \
               WINEDLLOVERRIDES="mscoree,mshtml=" WINEARCH=win64

.PHONY: deps build run test test-asan fuzz fuzz-smoke bench format clean win32-deps win32 \
        test-win32

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
	@scripts/install-deps clang
	cmake -S . -B $(FUZZ_BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DCMAKE_CXX_COMPILER=clang++ -DSPINDLE_FUZZ=ON

fuzz: deps $(FUZZ_BUILD)/build.ninja
	cmake --build $(FUZZ_BUILD) -j $(JOBS)

fuzz-smoke: fuzz
	fuzz/smoke $(FUZZ_BUILD)/bin $(FUZZ_SECONDS)

bench: build
	$(BUILD)/bin/bench_dispatch
	$(BUILD)/bin/bench_profiles
	$(BUILD)/bin/bench_import_export
	$(BUILD)/bin/bench_settings
	$(BUILD)/bin/bench_runner
	$(BUILD)/bin/bench_element

win32-deps:
	@scripts/install-deps win32
	JOBS=$(JOBS) scripts/build-win32-deps $(WIN32_DEPS) cmake/mingw-w64.cmake

# -O2 as in the Linux build: at -O3 this GCC warns falsely (-Wrestrict) inside
# std::basic_string, and warnings are errors.
$(WIN32_BUILD)/build.ninja: | win32-deps
	cmake -S . -B $(WIN32_BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=Release \
	  -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG" \
	  -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake -DSPINDLE_WIN32_DEPS=$(abspath $(WIN32_DEPS))/prefix

win32: win32-deps $(WIN32_BUILD)/build.ninja
	cmake --build $(WIN32_BUILD) -j $(JOBS)

# A fresh Wine prefix is made once, before tests start in parallel. Its null graphics
# driver lets the tests create windows without a display.
$(WIN32_BUILD)/wine/system.reg:
	$(WINE_ENV) wineboot --init
	$(WINE_ENV) wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f
	$(WINE_ENV) wineserver --wait

test-win32: win32 $(WIN32_BUILD)/wine/system.reg
	$(WINE_ENV) ctest --test-dir $(WIN32_BUILD) --output-on-failure -j $(JOBS)
	$(WINE_ENV) wineserver --wait

format:
	@scripts/install-deps clang-format
	find host core settings paper job refhost tools tests bench platform fuzz -name '*.h' -o -name '*.cpp' | xargs clang-format -i

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(WIN32_BUILD) $(FUZZ_BUILD)
