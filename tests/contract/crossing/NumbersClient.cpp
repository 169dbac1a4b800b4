// A client of a back-end that has arrays of numbers only.
#include "Numbers.hpp"

int main() {
    numbers();
    EXPECT(throws<InvalidArrayTypeException>([] { return ArrayFactory().createArray<bool>({1, 1}); }));
    return report();
}
