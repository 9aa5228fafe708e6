#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test through ctest.
# Every test runs a second time under a decimal-comma locale.
# Under CI=true warnings are errors and the core tests run once more in an
# AddressSanitizer + UndefinedBehaviorSanitizer build, and the fuzz targets run
# for a short while.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/deps.sh
sd_ensure_packages
sd_ensure_comma_locale

preset=default
[ "${CI:-}" = "true" ] && preset=ci
jobs=$(nproc 2>/dev/null || echo 2)

cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" -j "$jobs"
ctest --preset "$preset" -j "$jobs"
# Offices in Germany, France and elsewhere write 2,5: nothing may depend on it.
# (The package is made once.)
LC_ALL="$SD_COMMA_LOCALE" ctest --preset "$preset" -j "$jobs" -LE package

if [ "${CI:-}" = "true" ]; then
    cmake --preset sanitize >/dev/null
    cmake --build --preset sanitize -j "$jobs"
    ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
        ctest --preset sanitize -j "$jobs" -L core

    # About 30 seconds of fuzzing for each reader of outside input.
    cmake --preset fuzz >/dev/null
    cmake --build --preset fuzz -j "$jobs"
    scripts/fuzz.sh build-fuzz/bin 30
fi
