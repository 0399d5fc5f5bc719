#!/usr/bin/env bash
# The test command. On a fresh Debian machine it installs what is missing, then:
#   1. builds everything (library, tests, benchmarks, examples) and runs every test with CTest;
#   2. installs the library into a temporary prefix and builds a consumer project against it,
#      once with find_package and once with pkg-config; builds the API documentation; builds the
#      Debian package, installs it with dpkg and builds the consumer against the installed files;
#   3. builds the libFuzzer targets with clang and runs each briefly; runs the benchmarks once;
#   4. rebuilds with AddressSanitizer + UndefinedBehaviorSanitizer and runs every test again.
# Exits non-zero on the first failure. ZEB_BUILD_DIR chooses the build folder (default build/).
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
# shellcheck source=scripts/deps.sh
source "$root/scripts/deps.sh"
zeb_install_missing_packages

build=${ZEB_BUILD_DIR:-$root/build}
jobs=$(nproc)
step() { printf '\n==== %s\n' "$*"; }

configure_and_build() {  # <folder> <cmake options...> [-- <targets...>]
  local dir=$1 options=() targets=()
  shift
  while [ $# -gt 0 ] && [ "$1" != "--" ]; do options+=("$1"); shift; done
  [ $# -gt 0 ] && { shift; targets=(--target "$@"); }
  cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${options[@]}" \
    >"$dir.configure.log" 2>&1 || { cat "$dir.configure.log"; return 1; }
  cmake --build "$dir" -j "$jobs" "${targets[@]}"
}

run_tests() {  # <folder>
  ctest --test-dir "$1" -j "$jobs" --output-on-failure --timeout 300
}

mkdir -p "$build"
# A locale whose decimal point is ',', for the tests that prove number text ignores the locale.
export LOCPATH="$build/locales"
if [ ! -d "$LOCPATH/de_DE.UTF-8" ]; then
  mkdir -p "$LOCPATH"
  localedef -i de_DE -f UTF-8 "$LOCPATH/de_DE.UTF-8" >/dev/null 2>&1 || echo "note: no de_DE locale"
fi

step "Build and test"
configure_and_build "$build/release" -DZEB_BUILD_BENCH=ON
run_tests "$build/release"

step "Consume the installed package"
prefix="$build/prefix"
rm -rf "$prefix" "$build/consumer"
cmake --install "$build/release" --prefix "$prefix" >/dev/null
cmake -S "$root/examples/consumer" -B "$build/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$build/consumer"
LD_LIBRARY_PATH="$prefix/lib" "$build/consumer/zeb_consumer"
PKG_CONFIG_PATH="$prefix/lib/pkgconfig" sh -c \
  'c++ "$0/examples/consumer/main.cpp" -o "$1/consumer_pc" $(pkg-config --cflags --libs zeb_common)' \
  "$root" "$build"
LD_LIBRARY_PATH="$prefix/lib" "$build/consumer_pc"

step "API documentation (any Doxygen warning fails)"
cmake --build "$build/release" --target docs

step "Debian package: build, install with dpkg, use the installed files"
rm -rf "$build/package" "$build/consumer-deb"
cpack -G DEB --config "$build/release/CPackConfig.cmake" -B "$build/package" >/dev/null
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
$sudo dpkg -i "$build"/package/zeb-common_*.deb >/dev/null
zeb --version
cmake -S "$root/examples/consumer" -B "$build/consumer-deb" -G Ninja >/dev/null
cmake --build "$build/consumer-deb"
"$build/consumer-deb/zeb_consumer"

step "Fuzz targets (a few seconds each)"
CC=clang CXX=clang++ configure_and_build "$build/fuzz" -DZEB_BUILD_FUZZ=ON -DZEB_BUILD_TESTS=OFF \
  -DZEB_BUILD_EXAMPLES=OFF -DZEB_BUILD_TOOLS=OFF
for fuzzer in "$build"/fuzz/fuzz/zeb_fuzz_*; do
  [ -x "$fuzzer" ] || continue
  echo "$(basename "$fuzzer")"
  "$fuzzer" -max_total_time="${ZEB_FUZZ_SECONDS:-10}" -print_final_stats=0 >"$fuzzer.log" 2>&1 ||
    { tail -n 40 "$fuzzer.log"; exit 1; }
done

step "Benchmarks (one short pass)"
for bench in "$build"/release/bench/zeb_*_bench; do
  "$bench" --benchmark_min_time=0.01 >"$bench.log" 2>&1 || { tail -n 40 "$bench.log"; exit 1; }
  echo "$(basename "$bench"): $(grep -cE ' (ns|us|ms) ' "$bench.log") benchmarks ran"
done

step "Thread, task, log, CSV and registry tests under ThreadSanitizer"
tsan_suites=(zeb_thread_test zeb_log_test zeb_formats_test zeb_utils_test)
configure_and_build "$build/tsan" -DZEB_SANITIZE=thread -DZEB_BUILD_EXAMPLES=OFF -- \
  "${tsan_suites[@]}"
TSAN_OPTIONS=halt_on_error=1 ctest --test-dir "$build/tsan" -j "$jobs" --output-on-failure \
  --timeout 300 -L "^($(IFS='|'; echo "${tsan_suites[*]}"))\$"

step "Tests under AddressSanitizer + UndefinedBehaviorSanitizer"
configure_and_build "$build/asan" -DZEB_SANITIZE=address,undefined -DZEB_BUILD_EXAMPLES=OFF
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 run_tests "$build/asan"
