# Sourced by the scripts beside it: the Debian packages that they need.

build_packages=(g++ cmake ninja-build libhwy-dev libqt5svg5-dev qtbase5-dev zlib1g-dev)
input_packages=(fonts-dejavu-core breeze-icon-theme)
# llvm-14 has the symbolizer, without which the sanitizers do not know what to suppress.
# scour and rsvg-convert stand for the programs that people draw with.
test_packages=(binutils clang clang-format-14 clang-tidy-14 doxygen git libclang-rt-14-dev
    librsvg2-bin llvm-14 man-db pkg-config scour)

# Installs those of the named packages that are missing; silent when none is.
install_missing() {
    local missing=() package
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
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
