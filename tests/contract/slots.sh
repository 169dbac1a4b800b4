#!/bin/sh
# Compares the slots that the headers of the contract state in comments with the frozen tables: every virtual operation has one,
# beside it or in the comment before it, and the same as in its row. "Slots 3 to 5" stands before three operations in a row.
# `what` of EArrayInvalidHandleRef has no comment: its slot is that of std::exception.
# Usage: slots.sh [ROOT]; prints the differences; exit status 1 when there are any.
set -eu
cd "${1-.}"
stated=$(mktemp)
frozen=$(mktemp)
trap 'rm -f "$stated" "$frozen"' EXIT
cat tests/contract/frozen/*.cpp | tr '\n' ' ' | sed 's/template struct /\n/g' |
    sed -nE '/EArrayInvalidHandleRef/d; s/^Operation< *([0-9]+),.*&([A-Za-z]+)(<[^&]*>)?::([A-Za-z0-9]+)>;.*/\2::\4 \1/p' | sort -u >"$frozen"
awk '
    FNR == 1 { class = ""; slot = ""; last = "" }
    /^class / && !/;$/ {
        sub(/^class (VEXADATA_API )?/, "")
        class = $1
        sub(/<.*/, "", class)
    }
    /^ *\/\/\/ Slots? [0-9]+/ || /\/\/\/.* Slot [0-9]+\.$/ {
        slot = substr($0, match($0, /Slots? [0-9]/))
        sub(/Slots? /, "", slot)
        last = slot ~ /^[0-9]+ to [0-9]+/ ? slot : ""
        sub(/^[0-9]+ to /, "", last)
        slot += 0
        last += 0
    }
    /^ *virtual / && !/~/ {
        name = $0
        sub(/\(.*/, "", name)
        sub(/.*[ *&]/, "", name)
        open = 1
    }
    open && /\/\/\/< slot [0-9]+/ {
        slot = $0
        sub(/.*\/\/\/< slot /, "", slot)
        slot += 0
    }
    open && /;/ {
        print class "::" name, slot
        open = 0
        slot = slot != "" && slot < last ? slot + 1 : ""
    }
' $(find include/vexa/data -name '*.hpp') include/foundation/vexadata/Exception.hpp include/foundation/vexadata/ICustomWorkspace.hpp \
    include/foundation/vexadata/IVariableInfo.hpp include/foundation/vexadata/VariableInfo.hpp | sort -u >"$stated"
diff "$frozen" "$stated" | sed -n 's/^</in the tables:/p; s/^>/in the headers:/p'
cmp -s "$frozen" "$stated"
