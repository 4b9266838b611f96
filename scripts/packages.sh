# SPDX-License-Identifier: MIT
# Sourced by the scripts beside it: the Debian packages that they need.

build_packages=(g++ cmake ninja-build libhwy-dev libqt5svg5-dev qtbase5-dev zlib1g-dev)
docs_packages=(doxygen python3)
input_packages=(fonts-dejavu-core breeze-icon-theme)
# llvm-14 has the symbolizer, without which the sanitizers do not know what to suppress.
# scour and rsvg-convert stand for the programs that people draw with, xdotool for a hand.
test_packages=(abigail-tools bash-completion binutils chromium chromium-driver clang
    clang-format-14 clang-tidy-14 doxygen fish gdb git libclang-rt-14-dev librsvg2-bin libxml2-utils
    lld llvm-14 man-db pkg-config python3-jsonschema reuse scour valgrind
    xdotool xvfb zsh)
# What scripts/package works with.
package_packages=(debhelper doxygen dpkg-dev fakeroot lintian)
# What holds the definitions of preset shapes, and where within one of its archives.
preset_package=libapache-poi-java
preset_file=org/apache/poi/sl/draw/geom/presetShapeDefinitions.xml

# Runs a command as the superuser, with sudo if need be.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# Installs those of the named packages that are missing; silent when none is.
install_missing() {
    local missing=() package
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing ${missing[*]}"
    as_root apt-get update -qq
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# Downloads the named packages into the current folder, and installs nothing.
download() {
    # The superuser needs no sandbox in a folder of its own.
    local get=(apt-get download -qq -o APT::Sandbox::User=root "$@")
    "${get[@]}" 2>/dev/null && return
    as_root apt-get update -qq
    quietly "${get[@]}"
}

# Runs a command and shows what it prints only if it fails.
quietly() {
    local log
    log=$(mktemp)
    if ! "$@" >"$log" 2>&1; then
        cat "$log"
        rm -f "$log"
        echo "failed: $*" >&2
        return 1
    fi
    rm -f "$log"
}
