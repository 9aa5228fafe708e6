#!/usr/bin/env bash
# Writes the help pages made from the program's tables (the settings
# sections and the layer sets) into resources/help/standards-desk/. Run it
# after changing a settings catalogue, a layer set or a help topic, and
# commit the pages; the help test fails while they are out of date. The
# build folder is build/ unless SD_BUILD_DIR names another.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${SD_BUILD_DIR:-build}
cmake --build "$build" --target help_pages >/dev/null
"$build"/bin/help_pages resources/help/standards-desk
