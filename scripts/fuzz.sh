#!/usr/bin/env bash
# Builds the libFuzzer targets of tests/fuzz with clang and runs each for FUZZ_SECONDS (default
# 60). A crash leaves its input in build/fuzz/ and fails the run.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
seconds=${FUZZ_SECONDS:-60}
if ! command -v clang++ >/dev/null || ! ls /usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-x86_64.a >/dev/null 2>&1; then
  if [[ $(id -u) == 0 ]]; then
    DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends clang libclang-rt-14-dev
  else
    echo "fuzz.sh: needs clang and its fuzzer runtime: apt-get install clang libclang-rt-14-dev" >&2
    exit 1
  fi
fi
cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_C_COMPILER=clang -DTAMRIX_FUZZ=ON >/dev/null
ninja -C build/fuzz fuzz_text_to_number fuzz_profile_read fuzz_backup_roundtrip
for target in fuzz_text_to_number fuzz_profile_read fuzz_backup_roundtrip; do
  mkdir -p "build/fuzz/corpus-$target"
  echo "== $target for $seconds s"
  (cd build/fuzz && "./$target" -max_total_time="$seconds" -print_final_stats=1 "corpus-$target")
done
