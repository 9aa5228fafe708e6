#!/usr/bin/env bash
# Renders the application icon's PNG sizes from its SVG into
# resources/icons/hicolor/. Run after changing the SVG and commit the PNGs;
# the build uses them as they are. Needs rsvg-convert (librsvg2-bin).
set -euo pipefail
cd "$(dirname "$0")/../resources/icons/hicolor"
command -v rsvg-convert >/dev/null || { echo "needs rsvg-convert: apt-get install librsvg2-bin" >&2; exit 1; }
for size in 16 22 24 32 48 64 128 256; do
    mkdir -p "${size}x${size}/apps"
    rsvg-convert -w "$size" -h "$size" scalable/apps/standards-desk.svg -o "${size}x${size}/apps/standards-desk.png"
done
