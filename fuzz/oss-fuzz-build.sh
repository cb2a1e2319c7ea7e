#!/usr/bin/env bash
# Builds the fuzzers of the library as OSS-Fuzz wants them: its container sets CC, CXX, CFLAGS, CXXFLAGS,
# LIB_FUZZING_ENGINE, WORK and OUT, and has gtest installed, which the program that prints the golden wire forms needs.
# Alone, without them, it builds with clang's libFuzzer and AddressSanitizer into build/oss-fuzz/out.
set -euo pipefail
cd "$(dirname "$0")/.."

: "${CC:=clang}" "${CXX:=clang++}" "${LIB_FUZZING_ENGINE:=-fsanitize=fuzzer}"
: "${CFLAGS:=-O1 -g1 -fsanitize=address,fuzzer-no-link}" "${CXXFLAGS:=$CFLAGS}"
: "${WORK:=$PWD/build/oss-fuzz/work}" "${OUT:=$PWD/build/oss-fuzz/out}"
export CC CXX CFLAGS CXXFLAGS
mkdir -p "$WORK" "$OUT"

cmake -G Ninja -S . -B "$WORK/fuzzers" -DCMAKE_BUILD_TYPE=None -DZUNRTCP_BUILD_FUZZERS=ON \
  -DZUNRTCP_FUZZING_ENGINE="$LIB_FUZZING_ENGINE"
# Those of the library: what the tool stands on is not in the container.
mapfile -t targets < <(basename -s .cpp fuzz/targets/*.cpp | grep -v '^Tool')
cmake --build "$WORK/fuzzers" --target "${targets[@]/#/fuzz_}"

# The seeds are made by a program of this machine, without sanitizers and without the fuzzing library's flags.
env -u CFLAGS -u CXXFLAGS CC=cc CXX=c++ cmake -G Ninja -S . -B "$WORK/seeds" -DZUNRTCP_BUILD_TESTS=ON
cmake --build "$WORK/seeds" --target write_samples
fuzz/make-seeds "$WORK/seeds/tests/write_samples" samples "$WORK/seeds/all"

for target in "${targets[@]}"; do
  cp "$WORK/fuzzers/fuzz/fuzz_$target" "$OUT/"
  cp "$WORK/seeds/all/dictionary" "$OUT/fuzz_$target.dict"
  cp fuzz/regressions/"$target"/* "$WORK/seeds/all/$target/"
  python3 -m zipfile -c "$OUT/fuzz_${target}_seed_corpus.zip" "$WORK/seeds/all/$target"/*
done
