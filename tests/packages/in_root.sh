#!/bin/bash
# What `./dev package test` runs in a bare Debian, where /packages has the packages with a list of them, and /source the parts of the
# source that debian/tests wants. Every test of debian/tests/control runs with the packages that it names and what these depend on,
# so that a dependency that is missing shows. Afterwards all is purged, and nothing may be left.
set -euo pipefail

say() { printf '\n== %s\n' "$*"; }
die() { printf 'in_root.sh: %s\n' "$*" >&2; exit 1; }
apt() { apt-get -q -y -o Dpkg::Use-Pty=0 --no-install-recommends "$@" </dev/null >/tmp/apt.log 2>&1 || { cat /tmp/apt.log; die "apt-get $*"; }; }
ours() { dpkg-query -W -f '${db:Status-Status} ${Package}\n' | sed -n '/^not-installed/d; s/.* \(.*vexadata.*\)/\1/p'; }

echo 'deb [trusted=yes] file:/packages ./' >/etc/apt/sources.list.d/vexadata.list
apt update
all=$(sed -n 's/^Package: \(.*\)/\1/p' /packages/Packages | grep -v -- '-dbgsym$')

purge() {
    local left
    apt purge --auto-remove $(ours)
    left=$(find / -xdev '(' -path /packages -o -path /source -o -path /proc -o -path /var/lib/apt -o -path /etc/apt ')' -prune -o \
        -ipath '*vexa*' -print; ours)
    [ -z "$left" ] || die "left when all was purged:"$'\n'"$left"
}

installed() { dpkg-query -W -f '${Package}\n'; }

# Every package alone, twice; nothing else is there but what it depends on.
bare=$(installed)
for package in $all; do
    say "$package alone"
    apt install "$package"
    apt install --reinstall $(ours)
    case $package in
    python3-vexadata) (cd / && python3 -c 'import vexadata; print(vexadata.array([1.5, 2.5]).numpy().sum())') ;;
    vexadata-tools) vexa-inspect --version && vexadata-backend-check --version ;;
    lib*[0-9]) if ldd $(dpkg -L "$package" | grep '\.so\.[0-9.]*$') | grep 'not found'; then die "$package misses a library"; fi ;;
    esac
    ours
    purge
    left=$(installed | grep -vxF "$bare" || true)
    [ -z "$left" ] || die "$package is gone, and what it depended on still there:"$'\n'"$left"
done

# "NAME PACKAGE..." of every test.
tests() { awk '/^Tests:/ { name = $2 } /^Depends:/ { sub(/^Depends: */, ""); gsub(/,/, ""); print name, $0 }' debian/tests/control; }

cd /source
while read -r name packages; do
    say "debian/tests/$name, with $packages"
    apt install $packages
    work=$(mktemp -d)
    AUTOPKGTEST_TMP=$work "debian/tests/$name" </dev/null || die "debian/tests/$name failed"
    rm -rf "$work"
    purge
done <<<"$(tests)"
say "all packages were installed, used and purged"
