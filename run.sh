#!/usr/bin/env bash
# Installs what is missing, builds, and shows the program on a demo datafiles
# folder (demo/datafiles, made on the first run).
set -euo pipefail
cd "$(dirname "$0")"
. scripts/deps.sh
sd_ensure_packages

cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc 2>/dev/null || echo 2)"

cli=build/bin/standards-desk-cli
demo=demo/datafiles
if [ ! -d "$demo" ]; then
    echo "Making a demo datafiles folder in $demo"
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
fi

echo
echo "Clients (id, name, standards):"
"$cli" --datafiles "$demo" client list
echo
echo "Standards (id, state, client, name):"
"$cli" --datafiles "$demo" standard list --deleted
echo
echo "Try: $cli --datafiles $demo --help"
