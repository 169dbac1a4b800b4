// A client of a back-end that has arrays of numbers only.
#include "Numbers.hpp"

namespace {

void others() {
    EXPECT(throws<InvalidArrayTypeException>([] { return ArrayFactory().createArray<bool>({1, 1}); }));
}

} // namespace

int main() { return report({numbers, others}); }
