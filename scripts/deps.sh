# Installs the Debian packages the build needs when they are missing, and
# xdg-utils, through whose xdg-open the desktop program opens drawings,
# folders and help pages. dpkg-dev and file make the Debian package (cpack),
# desktop-file-utils and appstream check its desktop entry and metadata.
# Sourced by run.sh, test.sh and scripts/bench.sh. libsimpleini-dev, zip and
# unzip are what the benchmarks measure the datafile engine and the archives
# against.

SD_PACKAGES=(cmake ninja-build g++ pkg-config libgtest-dev libgmock-dev libfmt-dev libcli11-dev
             nlohmann-json3-dev uuid-dev libbenchmark-dev libcurl4-openssl-dev libzip-dev zipcmp
             zipmerge ziptool qt6-base-dev libxkbcommon-dev fonts-dejavu-core xvfb xauth xdotool
             x11-apps imagemagick locales util-linux libsimpleini-dev zip unzip xdg-utils
             dpkg-dev file desktop-file-utils appstream)
# Only CI's fuzz build: clang and its libFuzzer runtime.
SD_CI_PACKAGES=(clang libclang-rt-14-dev)
# Only the Windows build (test.sh --windows, and CI): the MinGW-w64 compiler,
# its zlib, Wine to run the tests, dpkg-source and GoogleTest's sources for
# scripts/windows-deps.sh.
SD_WINDOWS_PACKAGES=(g++-mingw-w64-x86-64-posix libz-mingw-w64-dev wine wine64 dpkg-dev
                     googletest cmake ninja-build ca-certificates)

sd_ensure_packages() {
    local wanted=("${SD_PACKAGES[@]}")
    [ "${CI:-}" = "true" ] && wanted+=("${SD_CI_PACKAGES[@]}" "${SD_WINDOWS_PACKAGES[@]}")
    sd_ensure_package_list "${wanted[@]}"
}

sd_ensure_windows_packages() {
    sd_ensure_package_list "${SD_WINDOWS_PACKAGES[@]}"
}

sd_ensure_package_list() {
    local missing=() wanted=("$@")
    for package in "${wanted[@]}"; do
        if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
            missing+=("$package")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local install="apt-get install -y --no-install-recommends ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        echo "Missing packages. Run as root:" >&2
        echo "  apt-get update && $install" >&2
        exit 1
    fi
    echo "Installing: ${missing[*]}"
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $install -qq
}

# The decimal-comma locale the core tests run under a second time.
SD_COMMA_LOCALE=de_DE.UTF-8

sd_ensure_comma_locale() {
    locale -a 2>/dev/null | grep -qix 'de_DE.utf-\?8' && return 0
    if [ "$(id -u)" -ne 0 ]; then
        echo "The locale $SD_COMMA_LOCALE is missing. Run as root:" >&2
        echo "  localedef -i de_DE -f UTF-8 $SD_COMMA_LOCALE" >&2
        exit 1
    fi
    echo "Generating the locale $SD_COMMA_LOCALE"
    localedef -i de_DE -f UTF-8 "$SD_COMMA_LOCALE"
}
