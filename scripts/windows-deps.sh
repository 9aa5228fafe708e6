# Builds the Windows (MinGW-w64) libraries the core, the command line and
# their tests link against, once, into a cache folder outside the checkout:
#   ${SD_WINDOWS_DEPS_CACHE:-${XDG_CACHE_HOME:-~/.cache}/standards-desk/windows-deps}/<key>
# The key is made of the source package versions, the compiler's version and
# this recipe's revision, so a newer Debian point release or compiler builds a
# fresh set beside the old one.
#
# The sources are Debian's own source packages of this release, fetched
# through a private apt configuration (no change to the machine's), and
# GoogleTest from /usr/src/googletest; zlib is libz-mingw-w64-dev.
#
# Sourced by test.sh (sd_windows_deps sets SD_WINDOWS_DEPS), or run on its own:
#   scripts/windows-deps.sh        prints the install folder

SD_WINDOWS_RECIPE=1
SD_WINDOWS_SOURCES=(libzip fmtlib curl nlohmann-json3 cli11)

sd_windows_log() { echo "windows-deps: $*" >&2; }

# The apt options of the private configuration in $1.
sd_windows_apt_options() {
    local apt=$1
    echo "-o Dir::Etc::SourceList=$apt/sources.list -o Dir::Etc::SourceParts=/dev/null" \
         "-o Dir::State::Lists=$apt/lists -o Dir::Cache=$apt/cache" \
         "-o Debug::NoLocking=1 -o APT::Sandbox::User=$(id -un)"
}

# Writes deb-src lines for the suites the machine's own sources name.
sd_windows_apt_sources() {
    local apt=$1 codename
    codename=$(. /etc/os-release && echo "${VERSION_CODENAME:-bookworm}")
    mkdir -p "$apt/lists/partial" "$apt/cache/archives/partial"
    cat > "$apt/sources.list" <<SOURCES
deb-src http://deb.debian.org/debian $codename main
deb-src http://deb.debian.org/debian $codename-updates main
deb-src http://deb.debian.org/debian-security $codename-security main
SOURCES
}

sd_windows_build_one() {
    local source=$1 build=$2 prefix=$3 toolchain=$4
    shift 4
    cmake -S "$source" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DSD_WINDOWS_DEPS="$prefix" \
        -DCMAKE_INSTALL_PREFIX="$prefix" -DBUILD_SHARED_LIBS=OFF \
        -DBUILD_TESTING=OFF "$@" > "$build.log" 2>&1 &&
    cmake --build "$build" -j "$(nproc 2>/dev/null || echo 2)" >> "$build.log" 2>&1 &&
    cmake --install "$build" >> "$build.log" 2>&1 || {
        sd_windows_log "building $(basename "$source") failed; the end of $build.log:"
        tail -30 "$build.log" >&2
        return 1
    }
}

sd_windows_deps() {
    local here root cache apt options work key versions="" compiler
    here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
    root=${SD_WINDOWS_DEPS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/standards-desk/windows-deps}
    apt=$root/apt
    mkdir -p "$root"
    sd_windows_apt_sources "$apt"
    options=$(sd_windows_apt_options "$apt")
    # The lists are fetched again once a day, so a point release is noticed.
    if [ -z "$(find "$apt/lists" -maxdepth 1 -name '*Sources*' -mtime -1 2>/dev/null | head -1)" ]; then
        sd_windows_log "reading Debian's source lists"
        # shellcheck disable=SC2086
        apt-get $options -qq update >&2 || { sd_windows_log "apt-get update failed"; return 1; }
    fi
    local name version
    for name in "${SD_WINDOWS_SOURCES[@]}"; do
        # shellcheck disable=SC2086
        version=$(apt-cache $options showsrc "$name" 2>/dev/null |
                  sed -n 's/^Version: //p' | sort -V | tail -1)
        [ -n "$version" ] || { sd_windows_log "no source package $name"; return 1; }
        versions+="$name=$version "
    done
    versions+="googletest=$(dpkg-query -W -f='${Version}' googletest 2>/dev/null) "
    versions+="zlib=$(dpkg-query -W -f='${Version}' libz-mingw-w64-dev 2>/dev/null) "
    compiler=$(x86_64-w64-mingw32-g++-posix -dumpfullversion 2>/dev/null)
    versions+="gcc=$compiler recipe=$SD_WINDOWS_RECIPE"
    key=$(printf '%s' "$versions" | sha256sum | cut -c1-16)
    SD_WINDOWS_DEPS=$root/$key
    export SD_WINDOWS_DEPS
    if [ -f "$SD_WINDOWS_DEPS/versions.txt" ]; then
        return 0
    fi

    sd_windows_log "building the Windows libraries into $SD_WINDOWS_DEPS (once)"
    work=$(mktemp -d "$root/work.XXXXXX")
    rm -rf "$SD_WINDOWS_DEPS"
    local toolchain=$here/cmake/mingw-w64.cmake
    for name in "${SD_WINDOWS_SOURCES[@]}"; do
        mkdir -p "$work/$name"
        # shellcheck disable=SC2086
        (cd "$work/$name" && apt-get $options -qq source --download-only "$name" >&2 &&
         dpkg-source -x ./*.dsc src > extract.log 2>&1) || {
            sd_windows_log "fetching the source of $name failed"; rm -rf "$work"; return 1; }
    done
    local prefix=$SD_WINDOWS_DEPS
    mkdir -p "$work/googletest"
    sd_windows_build_one "$work/libzip/src" "$work/libzip/build" "$prefix" "$toolchain" \
        -DBUILD_TOOLS=OFF -DBUILD_REGRESS=OFF -DBUILD_EXAMPLES=OFF -DBUILD_DOC=OFF \
        -DENABLE_BZIP2=OFF -DENABLE_LZMA=OFF -DENABLE_ZSTD=OFF -DENABLE_GNUTLS=OFF \
        -DENABLE_MBEDTLS=OFF -DENABLE_OPENSSL=OFF -DENABLE_COMMONCRYPTO=OFF &&
    sd_windows_build_one "$work/fmtlib/src" "$work/fmtlib/build" "$prefix" "$toolchain" \
        -DFMT_DOC=OFF -DFMT_TEST=OFF &&
    sd_windows_build_one "$work/curl/src" "$work/curl/build" "$prefix" "$toolchain" \
        -DBUILD_CURL_EXE=OFF -DCURL_USE_SCHANNEL=ON -DCURL_USE_OPENSSL=OFF \
        -DCURL_USE_LIBSSH2=OFF -DUSE_LIBIDN2=OFF -DCURL_ZLIB=OFF -DCURL_BROTLI=OFF \
        -DCURL_ZSTD=OFF -DUSE_NGHTTP2=OFF -DCURL_DISABLE_LDAP=ON -DENABLE_MANUAL=OFF &&
    sd_windows_build_one "$work/nlohmann-json3/src" "$work/nlohmann-json3/build" "$prefix" \
        "$toolchain" -DJSON_BuildTests=OFF &&
    sd_windows_build_one "$work/cli11/src" "$work/cli11/build" "$prefix" "$toolchain" \
        -DCLI11_BUILD_TESTS=OFF -DCLI11_BUILD_EXAMPLES=OFF -DCLI11_BUILD_DOCS=OFF &&
    sd_windows_build_one /usr/src/googletest "$work/googletest/build" "$prefix" "$toolchain" \
        -DBUILD_GMOCK=ON -DINSTALL_GTEST=ON || { rm -rf "$work"; return 1; }
    printf '%s\n' $versions > "$SD_WINDOWS_DEPS/versions.txt"
    rm -rf "$work"
    sd_windows_log "done"
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
    set -euo pipefail
    sd_windows_deps
    echo "$SD_WINDOWS_DEPS"
fi
