#!/usr/bin/env bash
# Installs what is missing, builds, and starts Standards Desk on a demo
# datafiles folder (demo/datafiles, set up on the first run).
set -euo pipefail
cd "$(dirname "$0")"
. scripts/deps.sh
sd_ensure_packages

cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc 2>/dev/null || echo 2)"

cli=build/bin/standards-desk-cli
demo=demo/datafiles
if [ ! -d "$demo" ]; then
    echo "Setting up a demo datafiles folder in $demo"
    mkdir -p "$demo"
    c() { "$cli" --datafiles "$demo" "$@" >/dev/null; }
    c client create && c client rename 1 "Northwind Refining"
    c client create && c client rename 2 "Harbour Chemicals"
    c standard create "Refinery Metric" --client 1
    c standard create "Refinery Imperial" --units imperial --client 1
    c standard create "Tank Farm" --client 2
    c standard create "Legacy Piping" --units imperial --old-format
    c standard create "Site Survey"
    c standard delete 5
    c settings set 3 PID 145 3.5
    c borders set 2 D max 36.0,24.0
fi

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec build/bin/standards-desk --datafiles "$demo"
fi
echo "No display: here is the navigator of $demo instead (start the desktop program with"
echo "build/bin/standards-desk --datafiles $demo on a machine with a display)."
echo
"$cli" --datafiles "$demo" navigator tree
