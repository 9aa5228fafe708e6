#!/usr/bin/env bash
# Builds the benchmarks into build/ when needed, runs them and prints one
# table: ACTION, SIZE, FIGURE, TARGET, MET. A figure that misses its target is
# printed as not met; the exit code is 0 all the same, unless a benchmark could
# not run at all.
#
#   scripts/bench.sh              # every benchmark
#   scripts/bench.sh core gui     # some of them: core cli engine transfer gui
#
# The datafiles folders they work on (up to 50,000 standards) are made on the
# first run and kept in $TMPDIR/sd-bench-folders (a few hundred MB); later
# runs start at once. Times are medians of several runs; other work on the
# machine shows up in them, so the load average is printed with the table.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/deps.sh
sd_ensure_packages

build=build
all=(core cli engine transfer gui)
wanted=("$@")
[ ${#wanted[@]} -eq 0 ] && wanted=("${all[@]}")
for name in "${wanted[@]}"; do
    [[ " ${all[*]} " == *" $name "* ]] || { echo "Unknown benchmark '$name'; choose from: ${all[*]}" >&2; exit 2; }
done

[ -f "$build/CMakeCache.txt" ] || cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
type=$(sed -n 's/^CMAKE_BUILD_TYPE:[A-Z]*=//p' "$build/CMakeCache.txt")
case "$type" in
    Release|RelWithDebInfo) ;;
    *) echo "Note: $build/ is a '$type' build; its times are not those of a release build." >&2 ;;
esac
cmake --build "$build" -j "$(nproc 2>/dev/null || echo 2)" --target sd_benches

rows=$(mktemp)
trap 'rm -f "$rows"' EXIT
load_before=$(cut -d' ' -f1-3 /proc/loadavg)
status=0
for name in "${wanted[@]}"; do
    program="$build/bin/${name}_bench"
    if [ ! -x "$program" ]; then
        reason="not built"
        [ "$name" = gui ] && reason="not built (SD_BUILD_GUI is off)"
        [ "$name" = engine ] && reason="not built (SimpleIni.h missing: libsimpleini-dev)"
        printf '%s\t-\t%s\t-\tno\n' "$name benchmarks" "$reason" >>"$rows"
        continue
    fi
    echo "== $name" >&2
    before=$(wc -l <"$rows")
    code=0
    "$program" >>"$rows" || code=$?
    if [ "$code" -ne 0 ] && [ "$(wc -l <"$rows")" -eq "$before" ]; then
        printf '%s\t-\t%s\t-\tno\n' "$name benchmarks" "failed with exit code $code" >>"$rows"
        status=1
    fi
done
load_after=$(cut -d' ' -f1-3 /proc/loadavg)

echo
awk -F'\t' -v OFS='' '
    { for (i = 1; i <= 5; ++i) { cell[NR, i] = $i; if (length($i) > width[i]) width[i] = length($i) } }
    END {
        split("ACTION SIZE FIGURE TARGET MET", head, " ")
        for (i = 1; i <= 5; ++i) if (length(head[i]) > width[i]) width[i] = length(head[i])
        line = ""
        for (i = 1; i <= 5; ++i) line = line sprintf("%-" width[i] "s  ", head[i])
        print line
        for (r = 1; r <= NR; ++r) {
            line = ""
            for (i = 1; i <= 5; ++i) line = line sprintf("%-" width[i] "s  ", cell[r, i])
            print line
            if (cell[r, 5] == "yes") met++
            if (cell[r, 5] == "yes" || cell[r, 5] == "no") targets++
        }
        printf "\n%d of %d targets met.\n", met, targets
    }' "$rows" | sed 's/ *$//'
echo "Load average before: $load_before, after: $load_after ($(nproc) cores)."
exit "$status"
