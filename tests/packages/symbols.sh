#!/bin/bash
# symbols.sh VERSION LIBRARY...: fails unless dpkg-gensymbols finds in every library exactly what the symbols file of its package lists.
set -euo pipefail
version=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
root=$(dirname "$0")/../..
mkdir -p "$work/tests/contract"
cp -r "$root/debian" "$work"
cp "$root"/tests/contract/exports*.golden "$work/tests/contract"
cd "$work"
debian/symbols "$version"

for library in "$@"; do
    soname=$(objdump -p "$library" | awk '$1 == "SONAME" { print $2 }')
    file=$(grep -l "^$soname " debian/*.symbols)
    package=$(basename "$file" .symbols)
    dpkg-gensymbols -c4 -p"$package" -v"$version" -e"$library" -I"$file" -Onew || {
        echo "the symbols file of $package is not about what $library exports"
        exit 1
    }
    echo "$package: $(grep -c '@Base' new) symbols"
done
