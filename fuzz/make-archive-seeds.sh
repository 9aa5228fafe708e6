#!/usr/bin/env bash
# Re-makes the archive seeds in corpus/ArchiveFuzz with zip and ziptool: a new
# export, an old export, hostile entries and a small bomb. Each stays a few
# hundred bytes.
set -euo pipefail
out="$(cd "$(dirname "$0")" && pwd)/corpus/ArchiveFuzz"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
stamp=1700000000
rm -f "$out"/*.xst "$out"/*.xpj

# A new export: files in sub-folders, a folder entry, the export comment.
ziptool -n export.xst \
    add Settings.ini $'[General]\r\nName = Std\r\n' \
    add_dir Borders/ \
    add Borders/A3.ini $'[Border]\r\nSize = A3\r\n' \
    set_file_compression 0 deflate 0 \
    set_archive_comment "VANDIX 2D Exported Standard V2017.0 - VANDIX Software" \
    set_file_mtime_all $stamp

# An old export: only the settings folders count, in any letter case.
ziptool -n old.xpj \
    add settings/cad/Project.ini $'Units = 1\r\n' \
    add settings/BOM/Flow/flow.bom $'a\r\n' \
    add settings/bom/lists/deep/list.txt $'b\r\n' \
    add readme.txt 'not part of the standard' \
    set_file_mtime_all $stamp

# Entries that must never land outside the folder: a link, a climb, absolute
# paths, a drive and backslashes.
mkdir links && ln -s /etc/passwd links/passwd && touch -h -d @$stamp links/passwd
(cd links && zip -q -y -X ../hostile.xst passwd)
ziptool hostile.xst \
    add ../escape.txt x \
    add /abs.txt x \
    add C:drive.txt x \
    add 'a\..\..\b.txt' x \
    add sub/./ok.txt x \
    set_file_mtime_all $stamp

# Zeros that inflate far past what they take in the archive.
head -c 204800 /dev/zero > zeros
ziptool -n bomb.xst \
    add_file zeros.bin zeros 0 204800 \
    set_file_compression 0 deflate 0 \
    add after.txt x \
    set_file_mtime_all $stamp

cp export.xst old.xpj hostile.xst bomb.xst "$out"/
