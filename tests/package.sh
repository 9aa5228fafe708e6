#!/usr/bin/env bash
# The Debian package as an office gets it: cpack builds it from the build
# folder, its files are unpacked into a scratch root (dpkg-deb -x) and
# checked there: the programs start and find their shipped data, the desktop
# entry and the AppStream metadata pass their validators, the icon, man pages
# and completions are in place, and the package names what it depends on.
# Usage: tests/package.sh BUILD_DIR VERSION
set -euo pipefail
build=$1
version=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

(cd "$build" && cpack -G DEB -B "$work/out" >"$work/cpack.log" 2>&1) || { cat "$work/cpack.log" >&2; fail "cpack"; }
deb=$(ls "$work"/out/standards-desk_"$version"_*.deb)
dpkg-deb -x "$deb" "$work/root"
root=$work/root/usr

for file in bin/standards-desk bin/standards-desk-cli \
            share/applications/standards-desk.desktop \
            share/metainfo/com.vandix.StandardsDesk.metainfo.xml \
            share/icons/hicolor/scalable/apps/standards-desk.svg \
            share/icons/hicolor/16x16/apps/standards-desk.png \
            share/icons/hicolor/48x48/apps/standards-desk.png \
            share/icons/hicolor/256x256/apps/standards-desk.png \
            share/man/man1/standards-desk.1 share/man/man1/standards-desk-cli.1 \
            share/bash-completion/completions/standards-desk-cli \
            share/zsh/vendor-completions/_standards-desk-cli \
            share/fish/vendor_completions.d/standards-desk-cli.fish \
            share/doc/standards-desk/copyright share/doc/standards-desk/json.md \
            share/standards-desk/help/standards-desk/index.htm \
            "share/standards-desk/templates/Template/Metric 2015/General.ini"; do
    [ -e "$root/$file" ] || fail "the package lacks /usr/$file"
done
[ -z "$(find "$work/root" -path '*/bin/*' -name '*_test*' -o -path '*/bin/*' -name 'gui_*')" ] ||
    fail "test programs in the package"

desktop-file-validate "$root/share/applications/standards-desk.desktop" || fail "desktop entry"
appstreamcli validate --no-net "$root/share/metainfo/com.vandix.StandardsDesk.metainfo.xml" >"$work/as.log" ||
    { cat "$work/as.log" >&2; fail "AppStream metadata"; }
grep -q "version=\"$version\"" "$root/share/metainfo/com.vandix.StandardsDesk.metainfo.xml" ||
    fail "AppStream release is not $version"
grep -q "^\.TH STANDARDS-DESK-CLI 1 .*Standards Desk $version" "$root/share/man/man1/standards-desk-cli.1" ||
    fail "man page version"
bash -n "$root/share/bash-completion/completions/standards-desk-cli" || fail "bash completion syntax"
grep -q '/usr/share/standards-desk/help/standards-desk' "$root/share/man/man1/standards-desk-cli.1" ||
    fail "the man page does not name the installed help"

depends=$(dpkg-deb -f "$deb" Depends)
for package in xdg-utils libqt6widgets6 libqt6core6 libzip4 libcurl4 libfmt; do
    grep -q "$package" <<<"$depends" || fail "Depends lacks $package: $depends"
done

# The installed programs: their version, and the shipped templates found
# from where they are installed.
cli_version=$("$root/bin/standards-desk-cli" --version) || fail "cli --version exits $?"
[ "$cli_version" = "standards-desk-cli $version" ] || fail "cli --version says '$cli_version'"
[ "$(QT_QPA_PLATFORM=offscreen "$root/bin/standards-desk" --version)" = "standards-desk $version" ] ||
    fail "standards-desk --version"
export XDG_CONFIG_HOME=$work/config XDG_CONFIG_DIRS=$work/xdg
"$root/bin/standards-desk-cli" --datafiles "$work/data" install >/dev/null || fail "install from the package"
[ -d "$work/data/Template/Metric 2015" ] || fail "the installed program did not find its templates"
[ "$("$root/bin/standards-desk-cli" --datafiles "$work/data" standard list | wc -l)" -eq 2 ] ||
    fail "the first standards"
echo "package $(basename "$deb") checked"
