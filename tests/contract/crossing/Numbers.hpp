// What the clients of a published contract do with arrays of numbers.
#pragma once

#include "Expect.hpp"

#include <foundation/vexadata/VexaData.hpp>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <numeric>
#include <utility>
#include <vector>

using namespace foundation::vexadata;
using vexa::data::MemoryLayout;

namespace {

template <class T>
buffer_ptr<T> bufferOf(const ArrayFactory& factory, const std::vector<T>& values) {
    buffer_ptr<T> buffer = factory.createBuffer<T>(values.size());
    std::copy(values.begin(), values.end(), buffer.get());
    return buffer;
}

/// How often the storage of an array is shared.
std::uint64_t references(const Array& array) { return detail::Access::impl(array)->referenceCount(); }

void numbers() {
    const ArrayFactory factory;
    TypedArray<double> a = factory.createArray<double>({2, 3}, {1, 2, 3, 4, 5, 6});
    const TypedArray<double> b = a;
    EXPECT(references(a) == 1 && a.getArrayID() == b.getArrayID() && a == b);
    EXPECT(a[1][2] == 6.0 && a[0][1] == 3.0 && a.getDimensions()[1] == 3 && a.getNumberOfElements() == 6);
    a[0][1] = 30.0;
    a[1][1] += 0.5;
    EXPECT(b[0][1] == 3.0 && a[0][1] == 30.0 && a[1][1] == 4.5 && a != b && references(a) == 1);

    EXPECT(std::accumulate(b.begin(), b.end(), 0.0) == 21.0);
    std::sort(a.begin(), a.end(), std::greater<>());
    EXPECT(*a.begin() == 30.0 && a.end() - a.begin() == 6 && a.begin()[5] == 1.0 && *(a.end() - 2) == 2.0);
    EXPECT(std::distance(b.cbegin(), b.cend()) == 6 && b.cbegin() < b.cend());
    for (double& value : getWritableElements<double>(a))
        value = -value;
    EXPECT(*getReadOnlyElements<double>(a).begin() == -30.0 && getBufferPtr(b)[5] == 6.0);
    const TypedArray<double> unseen = a;
    {
        auto view = writableView(a);
        view(1, 2) = 8.0;
    }
    EXPECT(readOnlyView(a)(1, 2) == 8.0 && unseen[1][2] == -1.0 && readOnlyView(b).extent(1) == 3);

    Array untyped = b;
    const double read = untyped[1][0];
    untyped[1][0] = 9.0;
    EXPECT(read == 2.0 && untyped[1][0] == 9.0 && b[1][0] == 2.0 && untyped.getType() == ArrayType::DOUBLE);
    Reference<double> element = a[0][0];
    const Reference<double> same = element;
    element = 7.0;
    EXPECT(same == 7.0 && a[0][0] == 7.0);
    const TypedArray<double> moved = std::move(a);
    EXPECT(moved[0][0] == 7.0 && untyped[0][0] != untyped[1][2]);

    EXPECT(throws<EArrayIndexOutOfRange>([&] { return double(b[2][0]); }));
    EXPECT(throws<EArrayIndexOutOfRange>([&] { return double(b[0][3]); }));
    EXPECT(throws<NotEnoughIndicesProvidedException>([&] { return double(b[0]); }));
    EXPECT(throws<TooManyIndicesProvidedException>([&] { return double(b[0][0][1]); }));
    EXPECT(b[1][1][0][0] == 4.0);
    EXPECT(throws<CantIndexIntoEmptyArrayException>([&] {
        return double(factory.createArray<double>({0, 3})[0]);
    }));
    EXPECT(throws<InvalidArrayTypeException>([&] { return TypedArray<bool>(untyped); }));

    TypedArray<double> row = factory.createArray<double>({1, 4}, {1, 2, 3, 4});
    TypedArray<double> column = factory.createArray<double>({4, 1}, {1, 2, 3, 4});
    EXPECT(row[2] == 3.0 && column[3] == 4.0 &&
           throws<EArrayIndexOutOfRange>([&] { return double(row[4]); }));
    std::vector<double> counting(24);
    std::iota(counting.begin(), counting.end(), 0.0);
    const TypedArray<double> deep = factory.createArrayFromBuffer<double>(
        {2, 1, 3, 2, 2}, bufferOf<double>(factory, counting), MemoryLayout::COLUMN_MAJOR);
    EXPECT(deep[1][0][1][1][0] == 9.0 && deep[0][0][2][0][1] == 16.0 &&
           throws<EArrayIndexOutOfRange>([&] { return double(deep[1][0][2][1][2]); }));
    EXPECT(throws<NotEnoughIndicesProvidedException>([&] { return double(deep[1][0][2]); }));

    buffer_ptr<double> released = row.release();
    EXPECT(released[3] == 4.0);
}

} // namespace
