#!/bin/bash
# The whole suite built with AddressSanitizer and UndefinedBehaviorSanitizer in a folder of its
# own (Debug at -O1, no benchmarks, warnings as errors). With clang the same build holds the
# fuzz harnesses of tests/fuzz, and CTest runs each for a short, fixed number of runs. CI runs
# it after the plain suite; it takes as long as a second full build.
set -euo pipefail
cd "$(dirname "$0")/.."
start=$SECONDS
san=(-DCMAKE_BUILD_TYPE=Debug "-DCMAKE_CXX_FLAGS_DEBUG=-O1 -gline-tables-only"
     -DTAVORINE_SANITIZE=ON -DTAVORINE_BUILD_BENCH=OFF -DTAVORINE_WERROR=ON)
if command -v clang++ >/dev/null 2>&1; then
  san+=(-DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DTAVORINE_BUILD_FUZZ=ON)
fi
if command -v ccache >/dev/null 2>&1; then san+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
cmake -S . -B build-asan "${san[@]}"
cmake --build build-asan -j "$(nproc)"
built=$SECONDS
leaks=$PWD/tools/lsan-suppressions.txt
(cd build-asan && ASAN_OPTIONS=abort_on_error=1:detect_leaks=1 \
  LSAN_OPTIONS=suppressions="$leaks" \
  UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 QT_QPA_PLATFORM=offscreen \
  ctest --output-on-failure -j "$(nproc)")
echo "Sanitizer build: $((built - start)) s; its tests and fuzz runs: $((SECONDS - built)) s"
