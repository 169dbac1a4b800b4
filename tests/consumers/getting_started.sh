#!/bin/sh
# Does what docs/getting_started.md says, from the program on, with the library that is installed in PREFIX, in a home folder
# that has it under the name that the page gives it.  Usage: getting_started.sh PAGE PREFIX WORK
set -eu
page=$1 prefix=$2 work=$3

# block LANGUAGE NUMBER: the code of a block, counted from 1 for each language.
block() {
    awk -v language="$1" -v number="$2" '
        $0 == "```" language { inside = ++count == number; found = found || inside; next }
        /^```/ { inside = 0 }
        inside
        END { exit !found }' "$page"
}

rm -rf "$work"
mkdir -p "$work/home"
ln -s "$prefix" "$work/home/vexadata"
cd "$work"
export HOME="$work/home"
block cpp 1 >first.cpp
block cmake 1 >CMakeLists.txt
block text 1 >expected
for number in 2 3; do # the first installs
    block sh "$number" >commands
    sh -e ./commands >output
    tail -n "$(wc -l <expected)" output | diff expected -
done
