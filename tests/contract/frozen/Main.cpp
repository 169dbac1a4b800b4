// Compares the tables with what the compiler lays out. A failure means that back-ends built before cannot be
// used any more.
//
//   c++ -std=c++17 -I include tests/contract/frozen/*.cpp -o frozen && ./frozen
#include "Table.hpp"

#include <cstdio>
#include <cstring>
#include <vector>

namespace {

int functions = 0; // whose types were compared

std::vector<contract::Row>& rows() {
    static std::vector<contract::Row> all;
    return all;
}

/// A pointer to a virtual member is two words, the first of which holds 1 plus the offset of its slot in the
/// table; a pointer to a data member is one word, its offset.
std::ptrdiff_t placeOf(const contract::Row& row) {
    std::ptrdiff_t words[2] = {0, 0};
    const bool isData = row.kind == contract::Kind::member;
    std::memcpy(words, row.pointer, isData ? sizeof words[0] : sizeof words);
    if (isData) return words[0];
    const bool isVirtual = words[0] % 2 == 1 && words[1] == 0;
    return isVirtual ? words[0] / static_cast<std::ptrdiff_t>(sizeof(void*)) : -1;
}

} // namespace

bool contract::add(const Row& row) {
    rows().push_back(row);
    return true;
}

bool contract::addTypes(int count) {
    functions += count;
    return true;
}

int main() {
    static const char* const kinds[] = {"operations", "members", "interfaces"};
    static const char* const what[] = {"slot", "offset", "number of slots"};
    int counts[] = {0, 0, 0};
    int faults = 0;
    for (const contract::Row& row : rows()) {
        const auto kind = static_cast<int>(row.kind);
        ++counts[kind];
        const std::ptrdiff_t place = placeOf(row);
        if (place != row.expected) {
            ++faults;
            std::printf("%s is %td, was %td: %s\n", what[kind], place, row.expected, row.name);
        }
    }
    for (const int kind : {0, 1, 2})
        std::printf("%d %s, ", counts[kind], kinds[kind]);
    std::printf("%d functions, %d moved\n", functions, faults);
    return faults == 0 && rows().size() + static_cast<std::size_t>(functions) != 0 ? 0 : 1;
}
