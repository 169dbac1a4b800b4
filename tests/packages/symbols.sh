#!/bin/bash
# symbols.sh VERSION LIBRARY...: fails unless dpkg-gensymbols finds in every library exactly what the symbols file of its package lists.
set -euo pipefail
version=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$(dirname "$0")/../.."
debian/symbols "$version" "$work"

for library in "$@"; do
    soname=$(objdump -p "$library" | awk '$1 == "SONAME" { print $2 }')
    file=$(grep -l "^$soname " "$work"/*.symbols)
    package=$(basename "$file" .symbols)
    dpkg-gensymbols -c4 -p"$package" -v"$version" -e"$library" -I"$file" -O"$work/new" || {
        echo "the symbols file of $package is not about what $library exports"
        exit 1
    }
    echo "$package: $(grep -c '@Base' "$work/new") symbols"
done
