#!/bin/sh
# Runs every fuzz target for a bounded time on a scratch copy of its seed
# corpus; exits non-zero if any target found a problem, whose input is kept.
# usage: fuzz/run.sh BUILD_DIR SECONDS_PER_TARGET
set -eu

if [ $# -ne 2 ]; then
    echo "usage: $0 BUILD_DIR SECONDS_PER_TARGET" >&2
    exit 2
fi
build_dir=$(cd "$1" && pwd)
seconds=$2
corpus_dir=$(cd "$(dirname "$0")/corpus" && pwd)
scratch=$(mktemp -d "${TMPDIR:-/tmp}/cellformula-fuzz.XXXXXX")
artifacts=$build_dir/fuzz-findings
mkdir -p "$artifacts"
failed=""

for target in parse rewrite evaluate editor sheet; do
    fuzzer=$build_dir/fuzz/${target}_fuzzer
    if [ ! -x "$fuzzer" ]; then
        echo "fuzz: $fuzzer is missing; configure with -DCELLFORMULA_BUILD_FUZZERS=ON" >&2
        exit 1
    fi
    mkdir -p "$scratch/$target"
    cp "$corpus_dir/$target/"* "$scratch/$target/"
    echo "fuzz: $target for ${seconds}s"
    if ! "$fuzzer" -max_total_time="$seconds" -max_len=4096 -timeout=10 \
        -artifact_prefix="$artifacts/$target-" "$scratch/$target" >"$scratch/$target.log" 2>&1; then
        tail -n 60 "$scratch/$target.log" >&2
        echo "fuzz: $target found a problem; its input is in $artifacts (log: $scratch/$target.log)" >&2
        failed="$failed $target"
        continue
    fi
    grep -E '^Done' "$scratch/$target.log" || true
done
if [ -n "$failed" ]; then
    echo "fuzz: findings in:$failed" >&2
    exit 1
fi
rm -rf "$scratch"
