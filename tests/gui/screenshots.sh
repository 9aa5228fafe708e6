#!/usr/bin/env bash
# Screenshots of the desktop program on a seeded datafiles folder, under
# Xvfb, into <build>/screenshots/ (dark-<name>.png under a dark palette): the
# main window, each page of a standard, the question on closing a modified
# one, the drawings list and the comparison. Look at them after changing a
# view. The build folder is build/ unless SD_BUILD_DIR names another.
#
# With --help-images, the light pictures the help pages show are then copied
# into resources/help/standards-desk/images/, made smaller (ImageMagick's
# convert, where installed) so that the repository stays light.
set -euo pipefail
cd "$(dirname "$0")/../.."
help_images=false
[[ ${1:-} == --help-images ]] && help_images=true
build=${SD_BUILD_DIR:-build}
cmake --build "$build" --target gui_screenshots standards-desk-cli sd_shipped_data >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME="$work/config" XDG_CONFIG_DIRS="$work/xdg" XDG_RUNTIME_DIR="$work/runtime"
mkdir -p "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
data="$work/datafiles"
cli() { "$build"/bin/standards-desk-cli --datafiles "$data" "$@" >/dev/null; }

mkdir -p "$data/Drawings/PID"
cli client create && cli client rename 1 "Northwind Refining"
cli standard create "Refinery Metric" --client 1
cli standard create "Refinery Imperial" --units imperial --client 1
cli standard create "Tank Farm"
cli settings set 1 PID 145 3.5
cli general set 1 drawings_pid "$data/Drawings/PID"
cli lines create 1 && cli lines create 1
cli layers set 1 PID 16 color 255,0,0
cli specs create CS150 && cli specs create SS316L
cli specs create "CS150 Northwind" --client 1
cli specs create "Refinery vents" --standard 1
cli specs check 1 1 && cli specs check 1 3
for name in P-100 P-101 P-200; do head -c 40000 /dev/urandom > "$data/Drawings/PID/$name.dwg"; done

shots="$build"/screenshots
xvfb-run -a -s "-screen 0 1280x800x24" "$build"/bin/gui_screenshots --datafiles "$data" --out "$shots"
# The dark palette's pictures beside the light ones, as dark-<name>.png.
xvfb-run -a -s "-screen 0 1280x800x24" "$build"/bin/gui_screenshots --datafiles "$data" --out "$work"/dark --dark
for shot in "$work"/dark/*.png; do mv "$shot" "$shots/dark-$(basename "$shot")"; done
rm -rf "$shots"/dark
ls "$shots"

if $help_images; then
  images=resources/help/standards-desk/images
  mkdir -p "$images"
  for name in main-window settings-page drawings page-layers page-lines page-specs \
    page-general-settings page-file-locations page-border-settings comparison \
    compare-differences-only apply-to-other-standards \
    new-standard-wizard first-start check-datafiles-folder; do
    if command -v convert >/dev/null; then
      convert "$shots/$name.png" -resize '960x960>' -strip -colors 128 "PNG8:$images/$name.png"
    else
      cp "$shots/$name.png" "$images/$name.png"
    fi
  done
  echo "help pictures in $images"
fi
