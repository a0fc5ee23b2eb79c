#!/bin/sh
# Installs the build into a temporary prefix, then builds and runs the consumer program
# against it twice: with find_package and with pkg-config. Extra compile and link flags
# (the sanitizers of an instrumented build) come as the arguments after the first two.
# Usage: consume.sh BUILD_DIR SOURCE_DIR [FLAGS...]
set -eu
build=$1 here=$2/tests/install
shift 2
flags="$*"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
expected="1 0 no method matched Math.rnd(document, double): did you mean round(document, number)?"

cmake --install "$build" --prefix "$work/prefix" >/dev/null
# The installed runner finds its libraries and the tour under the prefix alone.
"$work/prefix/bin/loomsim" --quiet >/dev/null
if readelf -d "$work/prefix/bin/loomsim" "$work/prefix/lib/libspindleui.so" | grep "$build"; then
  exit 1
fi
cmake -S "$here" -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" \
  -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="$flags" >/dev/null
cmake --build "$work/cmake" >/dev/null
test "$("$work/cmake/consumer")" = "$expected"

export PKG_CONFIG_PATH="$work/prefix/lib/pkgconfig"
# shellcheck disable=SC2046,SC2086 # flags and pkg-config's output are several words
c++ -std=c++20 $flags "$here/consumer.cpp" -o "$work/consumer" \
  $(pkg-config --cflags --libs spindleui loomsim) -Wl,-rpath,"$work/prefix/lib"
test "$("$work/consumer")" = "$expected"
