#!/bin/sh
# Says which includes go up the floors of the code, and which files have no floor. The list of floors is the block ```floors in
# docs/architecture.md, explained there.  Usage: floors.sh [ROOT]; exit status 1 when anything is wrong.
set -eu
cd "${1-.}"
files=$(find include src client tools '(' -name '*.[ch]pp' -o -name '*.h' -o -name '*.inc' ')' | sort)
# The file name, a colon, and the include with its delimiters; a file without includes gives its name alone.
for file in $files; do
    printf '%s:\n' "$file"
    sed -n 's|^ *# *include *\([<"][^>"]*[>"]\).*|'"$file"':\1|p' "$file"
done | awk -F: '
    # Collapses "a/b/../c" to "a/c".
    function collapsed(path) {
        while (sub(/[^\/]+\/\.\.\//, "", path)) ;
        return path
    }
    # The entry of the list for a file; the longest one counts.
    function entryFor(path,    name) {
        sub(/^(client\/)?include\//, "", path)
        sub(/\.[a-z]+$/, "", path)
        if (path ~ /^foundation\/vexadata\//) {
            name = path
            sub(/.*\//, "", name)
            return name in floorOf ? name : ""
        }
        while (path != "" && !(path in floorOf)) {
            sub(/\/$/, "", path)
            sub(/[^\/]*$/, "", path)
        }
        return path
    }
    function wrong(text) { print text; failed = 1 }

    FNR == NR {
        if (/^```/) { inside = $0 == "```floors"; next }
        if (inside) {
            count = split($0, words, " ")
            for (k = 2; k <= count; ++k) floorOf[words[k]] = words[1]
        }
        next
    }
    $2 == "" {
        from = entryFor($1)
        if (from == "") wrong($1 " has no floor in docs/architecture.md")
        used[from] = 1
        next
    }
    {
        target = substr($2, 2, length($2) - 2)
        if ($2 ~ /^"/) {
            folder = $1
            sub(/[^\/]*$/, "", folder)
            target = collapsed(folder target)
            if (target ~ /^src\// && $1 ~ /^client\//) wrong($1 " includes " target ", a back-end sees include/ only")
        } else if (target !~ /^(foundation|vexa)\//) {
            next
        }
        to = entryFor(target)
        if (from != "" && to != "" && floorOf[to] > floorOf[from])
            wrong($1 " (floor " floorOf[from] ") includes " target " (floor " floorOf[to] ")")
    }
    END {
        for (entry in floorOf)
            if (!(entry in used)) wrong("docs/architecture.md gives a floor to " entry ", which is no file or folder")
        exit failed
    }' docs/architecture.md -
