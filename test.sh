#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test through ctest.
# Every test runs a second time under a decimal-comma locale.
# Under CI=true warnings are errors and the core tests run once more in an
# AddressSanitizer + UndefinedBehaviorSanitizer build (clang), whose fuzz
# targets then run for a short while.
#
#   ./test.sh             the Linux build and tests (and under CI=true also the
#                         sanitizer, fuzz and Windows runs)
#   ./test.sh --windows   only the Windows build: the core, the command line
#                         and their tests cross-built with MinGW-w64 and run
#                         under Wine (the libraries are built once and cached,
#                         see scripts/windows-deps.sh)
set -euo pipefail
cd "$(dirname "$0")"
. scripts/deps.sh
. scripts/windows-deps.sh

windows_only=false
for arg in "$@"; do
    case $arg in
    --windows) windows_only=true ;;
    -h|--help) sed -n '2,13p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    *) echo "test.sh: unknown option '$arg' (try --help)" >&2; exit 2 ;;
    esac
done
jobs=$(nproc 2>/dev/null || echo 2)

# Each stage says how long it took: CI's time is the sum of them.
stage_start=$SECONDS
stage() {
    echo "test.sh: $1 took $((SECONDS - stage_start)) s (${SECONDS} s in all)"
    stage_start=$SECONDS
}

windows_tests() {
    sd_ensure_windows_packages
    sd_windows_deps
    # Wine's own settings live beside the libraries, not in ~/.wine.
    export WINEPREFIX=${WINEPREFIX:-$(dirname "$SD_WINDOWS_DEPS")/wine}
    export WINEDEBUG=${WINEDEBUG:--all}
    cmake --preset windows >/dev/null
    stage "the Windows libraries"
    cmake --build --preset windows -j "$jobs"
    stage "the Windows build"
    # Wine's server and prefix are made ready by one program first: test
    # programs starting together on a cold server now and then never end.
    wine build-windows/bin/standards-desk-cli.exe --version >/dev/null
    ctest --preset windows -j "$jobs"
    stage "the Windows tests"
}

if $windows_only; then
    windows_tests
    exit 0
fi

sd_ensure_packages
sd_ensure_comma_locale
stage "the packages"

preset=default
[ "${CI:-}" = "true" ] && preset=ci

cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" -j "$jobs"
stage "the build"
ctest --preset "$preset" -j "$jobs"
stage "the tests"
# Offices in Germany, France and elsewhere write 2,5: nothing may depend on it.
# (The package is made once.)
LC_ALL="$SD_COMMA_LOCALE" ctest --preset "$preset" -j "$jobs" -LE package
stage "the tests under $SD_COMMA_LOCALE"

if [ "${CI:-}" = "true" ]; then
    cmake --preset sanitize >/dev/null
    cmake --build --preset sanitize -j "$jobs"
    stage "the sanitizer build"
    ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
        ctest --preset sanitize -j "$jobs" -L core
    stage "the tests under the sanitizers"

    # 40 seconds of fuzzing for the readers of outside input (the
    # sanitizer build has the fuzz targets too).
    scripts/fuzz.sh build-sanitize/bin 40
    stage "fuzzing"
fi

# The core and the command line on Windows, under Wine.
if [ "${CI:-}" = "true" ]; then
    windows_tests
fi
