#!/bin/sh
# Says what is wrong with the Markdown pages: links to files or to parts of examples that are not there, pages that
# docs/README.md does not lead to, expressions in the last columns of docs/coming_from.md that no example has.
# Usage: pages.sh [ROOT]; exit status 1 when anything is wrong.
set -eu
cd "${1-.}"
wrong=0
say() {
    printf '%s\n' "$1"
    wrong=1
}

# page, tab, target of each link to a file; code is no link.
links() {
    for page in *.md docs/*.md; do
        sed -e '/^ *```/,/^ *```/d' -e 's/`[^`]*`//g' "$page" | grep -o '\]([^)]*)' | sed -e 's/^](//' -e 's/)$//' |
            grep -v '^[a-z]*://' | sed "s|^|$page	|" || :
    done
}

# Code of all programs that the pages speak of, without white space.
code() { cat examples/coming_from.cpp interop/examples/*.cpp | tr -d ' \n'; }

while IFS='	' read -r page target; do
    [ -n "$page" ] || continue
    file=${target%%#*} anchor=${target#"${target%%#*}"}
    path=$(dirname "$page")/$file
    [ -z "$file" ] && path=$page
    if [ ! -e "$path" ]; then
        say "$page links to $target, which is not there"
    elif [ "${path%.cpp}" != "$path" ] && [ -n "$anchor" ] && [ "$(grep -c "//! \[${anchor#\#}\]" "$path")" != 2 ]; then
        say "$page links to $target, but $file does not begin and end a part //! [${anchor#\#}]"
    fi
done <<END
$(links)
END

for page in docs/*.md; do
    name=${page#docs/}
    [ "$name" = README.md ] || grep -q "]($name)" docs/README.md || say "docs/README.md does not lead to $name"
done

program=$(code)
while read -r expression; do
    case $program in
    *"$(printf '%s' "$expression" | tr -d ' ')"*) ;;
    *) say "docs/coming_from.md has $expression, which no example has" ;;
    esac
done <<END
$(awk -F'|' '/^\|/ && !/^\| *\|/ && !/^\|-/ { print $(NF - 1) }' docs/coming_from.md | grep -o '`[^`]*`' | tr -d '`')
END
exit $wrong
