#!/usr/bin/env bash
# Runs the fuzz targets side by side for a while, each from a copy of its sample inputs
# in fuzz/corpus, so that the repository is never written to. A crash, leak,
# hang or broken property fails the run; the input that caused it is kept in BIN_DIR/../fuzz-findings.
# Usage: scripts/fuzz.sh BIN_DIR [SECONDS]
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
bin="$(cd "$1" && pwd)"
seconds="${2:-30}"
findings="$bin/../fuzz-findings"

# The targets write and sync files on every input: tmpfs makes that cheap.
base=/tmp
[ -d /dev/shm ] && [ -w /dev/shm ] && base=/dev/shm
scratch=$(mktemp -d "$base/sd-fuzz.XXXXXX")
trap 'rm -rf "$scratch"' EXIT

# Without llvm-symbolizer the sanitizers can still name functions through addr2line.
if ! command -v llvm-symbolizer >/dev/null && command -v addr2line >/dev/null; then
    export ASAN_SYMBOLIZER_PATH="$(command -v addr2line)"
fi

passed=0
failed=0
targets=(IniFileFuzz GuidFuzz ArchiveFuzz)
# All targets at once, each for SECONDS of the clock: the machine's cores
# share them.
declare -A pids
for target in "${targets[@]}"; do
    work="$scratch/$target"
    mkdir -p "$work/corpus" "$work/tmp" "$work/artifacts"
    cp -R "$root/fuzz/corpus/$target/." "$work/corpus/"
    options=(-max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1
             -artifact_prefix="$work/artifacts/")
    [ -f "$root/fuzz/$target.dict" ] && options+=(-dict="$root/fuzz/$target.dict")
    (cd "$work" && TMPDIR="$work/tmp" exec "$bin/$target" "${options[@]}" corpus >"$work/log" 2>&1) &
    pids[$target]=$!
done
for target in "${targets[@]}"; do
    work="$scratch/$target"
    if wait "${pids[$target]}"; then
        runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/log")
        echo "$target: no findings in ${seconds} s ($runs inputs, corpus of $(ls "$work/corpus" | wc -l))"
        passed=$((passed + 1))
    else
        echo "$target: FOUND A PROBLEM"
        grep -v -E '^#[0-9]+[[:space:]]' "$work/log" | tail -n 80
        mkdir -p "$findings"
        for input in "$work"/artifacts/*; do
            [ -f "$input" ] || continue
            cp "$input" "$findings/$target-$(basename "$input")"
            echo "Input kept as $findings/$target-$(basename "$input"), base64: $(head -c 4096 "$input" | base64 -w0)"
        done
        failed=$((failed + 1))
    fi
done
echo "fuzz: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
