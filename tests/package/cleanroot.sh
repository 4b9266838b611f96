#!/bin/sh
# SPDX-License-Identifier: MIT
# Installs the packages in /packages in a Debian system that has nothing else, uses them as those who
# read of them would, line by line, and removes them again. The sources lie in /source. scripts/package
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
        -o -path /var/cache -o -path /var/log -o -path /root \) -prune -o \
        \( -iname '*kpgeom*' -o -iname '*kpshapes*' -o -iname 'libkp*' \) -print
}

# The commands that README shows, a line each.
readme_commands() {
    awk '/^```sh$/ { shown = 1; next } /^```$/ { shown = 0 } shown' README.md |
        sed -e ':line' -e '/\\$/N; s/\\\n *//; t line' -e 's/ *#.*//' -e '/^ *$/d'
}

run_readme() {
    readme_commands | while read -r line; do
        case $line in
            scripts/package*) continue ;; # has made what is installed here
            scripts/test*) continue ;; # would take longer than all else
            cmake\ --preset*)
                # shellcheck disable=SC2046 # a list of packages
                install $(sed -n 's/^build_packages=(\(.*\))$/\1/p' scripts/packages.sh)
                step "what building needs"
                ;;
        esac
        case $line in
            kpshapes*) # stays until it is closed
                code=0
                timeout 5 sh -euc "exec $line" >/tmp/log 2>&1 </dev/null || code=$?
                [ "$code" -eq 124 ] || { cat /tmp/log; fail "$line goes on"; }
                ;;
            *)
                sh -euc "$line" >/tmp/log 2>&1 </dev/null || { cat /tmp/log; fail "README's line works: $line"; }
                ;;
        esac
        step "README: $line"
    done
    readme_commands | grep -q '^kpgeom ' || fail "README is read"
}

run_cookbook() {
    mkdir /tmp/recipes
    for recipe in examples/cookbook/*.cpp; do
        # shellcheck disable=SC2046 # words
        g++ -std=c++11 "$recipe" -o "/tmp/recipes/$(basename "$recipe" .cpp)" \
            $(pkg-config --cflags --libs kpgeometry)
    done
    step "the recipes of the cookbook, compiled"
    examples/cookbook/run /usr/bin/kpgeom /tmp/recipes
    step "the recipes of the cookbook, run"
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

install git
run_cookbook
export QT_QPA_PLATFORM=offscreen
run_readme
cmake --build build/user --target uninstall >/dev/null

apt-get purge --yes --quiet kpgeom kpshapes kpgeometry-doc libkpgeometry-dev libkpgeometry1 >/dev/null
apt-get autoremove --purge --yes --quiet >/dev/null
left=$(files_of_packages)
[ -z "$left" ] || fail "nothing of ours is left: $left"
step "removed, and nothing is left"
