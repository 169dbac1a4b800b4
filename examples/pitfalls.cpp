// What surprises, and what to write instead: the code of docs/pitfalls.md.
#include <foundation/vexadata/Layout.hpp>
#include <foundation/vexadata/VexaData.hpp>

#include <algorithm>
#include <iostream>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace foundation::vexadata;
using vexa::data::MemoryLayout;

namespace {

const ArrayFactory factory;

void reading() {
    //! [reading]
    TypedArray<double> a = factory.createArray<double>({1, 3}, {1, 2, 3});
    const TypedArray<double> b = a;
    double sum = std::accumulate(a.cbegin(), a.cend(), 0.0); // reads: still shared
    sum += std::as_const(a)[0];
    std::cout << "shared " << a.isShared();
    sum += a[0]; // the writable form: a has got elements of its own, although nothing is written
    std::cout << ", then " << a.isShared() << ", sum " << sum << '\n';
    //! [reading]
}

void elements() {
    //! [elements]
    TypedArray<double> a = factory.createArray<double>({1, 3}, {1, 2, 3});
    auto element = a[0];       // a handle to the element
    const double value = a[0]; // its value
    a[0] = 7;
    std::cout << "the element is " << element << ", the value was " << value << '\n';
    //! [elements]
}

void views() {
    //! [views]
    TypedArray<double> a = factory.createArray<double>({1, 3}, {1, 2, 3});
    const auto view = readOnlyView(a); // shares the array while it lives
    a[0] = 7;                          // so that a gets storage of its own here
    std::cout << "the view still sees " << view(0, 0) << '\n';
    //! [views]
}

void iterators() {
    //! [iterators]
    TypedArray<double> a = factory.createArray<double>({1, 3}, {1, 2, 3});
    const auto first = a.begin();   // a was made private here
    const TypedArray<double> b = a; // and is shared again
    *first = 7;                     // writes what both hold
    std::cout << "b has " << b[0] << '\n';
    //! [iterators]
}

void layouts() {
    //! [layouts]
    const auto a = factory.createArray<double>({2, 2}, {1, 2, 3, 4});
    const auto b =
        factory.createArray<double>({2, 2}, {1, 3, 2, 4}, MemoryLayout::ROW_MAJOR); // the same matrix
    const auto viewA = readOnlyView(a);
    const auto viewB = readOnlyView(b);
    const auto rows = withLayout(a, MemoryLayout::ROW_MAJOR);
    std::cout << "equal " << (a == b) << ", as they lie " << std::equal(a.begin(), a.end(), b.begin())
              << ", by indices " << std::equal(viewA.begin(), viewA.end(), viewB.begin())
              << ", in one layout " << std::equal(rows.begin(), rows.end(), b.begin()) << '\n';
    //! [layouts]
}

void missing() {
    //! [missing]
    const auto strings = factory.createArray<String>({1, 2}); // both missing, which is not empty
    std::vector<String> texts(2);
    texts[0] = strings[0].value(); // `texts[0] = strings[0]` would ask for a text
    try {
        const std::u16string text = strings[1];
    } catch (const std::runtime_error& error) {
        std::cout << error.what() << '\n';
    }
    std::cout << "equal to itself " << (strings[0] == strings[0]) << ", to an empty text "
              << (strings[0] == "") << ", as values " << (strings[0].value() == strings[1].value()) << '\n';
    //! [missing]
}

void errors() {
    //! [errors]
    const auto a = factory.createArray<double>({1, 3});
    try {
        std::cout << a[5] << '\n';
    } catch (const std::exception& error) {
        std::cout << "never reached: " << error.what() << '\n';
    } catch (const Exception& error) { // foundation::vexadata::Exception
        std::cout << error.what() << '\n';
    }
    //! [errors]
}

void types() {
    //! [types]
    const Array any = factory.createScalar(3.0);
    try {
        const int n = any[0]; // an array of std::int32_t is wanted here
        std::cout << n << '\n';
    } catch (const TypeMismatchException& error) {
        std::cout << error.what() << '\n';
    }
    const int n = int(double(any[0]));
    std::cout << n << ", compares " << (any[0] == 3) << '\n';
    //! [types]
}

} // namespace

int main() {
    reading();
    elements();
    views();
    iterators();
    layouts();
    missing();
    errors();
    types();
}
