#!/bin/sh
# SPDX-License-Identifier: MIT
# Installs the packages in /packages in a Debian system that has nothing else, uses them as those who
# read of them would, and removes them again. The source package lies in /source. scripts/package
# makes that system and runs this in it.
set -eu

export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
begin=$(date +%s)

step() { # what has been done
    now=$(date +%s)
    printf '%4d s  %s\n' "$((now - begin))" "$1"
    begin=$now
}

fail() {
    echo "not so: $1" >&2
    exit 1
}

install() {
    apt-get install --yes --quiet --no-install-recommends "$@" >/tmp/log 2>&1 ||
        { cat /tmp/log; fail "apt-get installs $*"; }
}

files_of_packages() {
    find / -xdev \( -path /packages -o -path /source -o -path /proc -o -path /sys -o -path /tmp \
        -o -path /var/cache -o -path /var/log \) -prune -o \
        \( -iname '*kpgeom*' -o -iname '*kpshapes*' -o -iname 'libkp*' \) -print
}

apt-get update --quiet >/dev/null
[ -z "$(files_of_packages)" ] || fail "the system has nothing of ours"
step "a new system knows which packages there are"

install /packages/kpgeom_*.deb /packages/libkpgeometry1_*.deb
kpgeom --version >/dev/null
step "kpgeom, for people with drawings"
install /packages/kpshapes_*.deb
step "kpshapes, the editor"
install /packages/libkpgeometry-dev_*.deb /packages/kpgeometry-doc_*.deb
step "libkpgeometry-dev and kpgeometry-doc, for engineers"

cd /source
sed -n 's/^Tests: //p' debian/tests/control | while read -r test; do
    # shellcheck disable=SC2046 # a list of packages
    install $(sed -n "/^Tests: $test\$/,/^\$/s/^Depends: //p" debian/tests/control | tr -d ,)
    step "what the test $test needs"
    "debian/tests/$test"
    step "the test $test"
done

apt-get purge --yes --quiet kpgeom kpshapes kpgeometry-doc libkpgeometry-dev libkpgeometry1 >/dev/null
apt-get autoremove --purge --yes --quiet >/dev/null
left=$(files_of_packages)
[ -z "$left" ] || fail "nothing of ours is left: $left"
step "removed, and nothing is left"
