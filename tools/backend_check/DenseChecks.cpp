// Arrays of primitive elements: how elements lie, and how they are read and written one by one.

#include "Check.hpp"

#include <foundation/vexadata/Exception.hpp>

#include <array>

namespace vexa::check {

namespace {

namespace fv = foundation::vexadata;

void startAtZero(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto array = backend.zeros<T>({2, 3});
        for (std::size_t k = 0; k < 6; ++k)
            expectEqual("the element at position " + show(k) + " of a new " + describe(*array),
                        read(*array, k), T());
    });
}

/// The position at which an array holds the k-th of the values that it was made from; `count` when nowhere.
template <class T>
std::size_t whereIs(TypedArrayImpl<T>& array, T value) {
    std::size_t position = 0;
    while (position < array.getNumberOfElements() && read(array, position) != value)
        ++position;
    return position;
}

/// Columns one after another in the data that it is made from, whatever the array's own layout.
void columnMajorData(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        std::array<T, 6> data{};
        for (std::size_t k = 0; k < data.size(); ++k)
            data[k] = valueAt<T>(k);
        const Owned<ArrayImpl> made =
            adopt(backend.factory().createArrayWithDataImpl(tag.arrayType, {2, 3}, data.data(), data.size()),
                  "createArrayWithDataImpl");
        auto& array = dynamic_cast<TypedArrayImpl<T>&>(*made);
        for (std::size_t k = 0; k < data.size(); ++k) {
            const std::size_t row = k % 2;
            const std::size_t column = k / 2;
            const std::size_t wanted = positionOf(array, row, column);
            if (read(array, wanted) == data[k]) continue;
            const std::size_t found = whereIs(array, data[k]);
            fail("element (" + show(row) + "," + show(column) + ") of a " + describe(array) +
                 (found == data.size() ? " is not in it" : " lies at position " + show(found)) +
                 ", expected at position " + show(wanted));
        }
    });
}

void copiesTheData(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        std::array<T, 2> data{valueAt<T>(1), valueAt<T>(1)};
        const Owned<ArrayImpl> made =
            adopt(backend.factory().createArrayWithDataImpl(tag.arrayType, {1, 2}, data.data(), 2),
                  "createArrayWithDataImpl");
        data[0] = data[1] = otherValueAt<T>(1);
        expectEqual("an element after the data that the array was made from has changed",
                    read(dynamic_cast<TypedArrayImpl<T>&>(*made), 0), valueAt<T>(1));
    });
}

void sideBySide(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto array = filled<T>(backend, {2, 3});
        const T* first = array->getTypedDataPtr();
        expect(first != nullptr, "getTypedDataPtr of a " + describe(*array) + " returns null");
        const void* untyped = array->getUntypedDataPtr();
        expect(untyped == nullptr || untyped == first,
               "getUntypedDataPtr and getTypedDataPtr of a " + describe(*array) + " differ");
        for (std::size_t k = 0; k < 6; ++k) {
            const T* address = array->getElementAddress(k, {}, false);
            expect(address == first + k, "getElementAddress(" + show(k) + ") of a " + describe(*array) +
                                             " is not " + show(k) + " elements after getTypedDataPtr");
        }
    });
}

void writesOneElement(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        for (std::size_t written = 0; written < 6; ++written) {
            const auto array = filled<T>(backend, {2, 3});
            write(*array, written, otherValueAt<T>(written));
            for (std::size_t k = 0; k < 6; ++k)
                expectEqual("the element at position " + show(k) + " of a " + describe(*array) +
                                " after setElementValue(" + show(written) + ")",
                            read(*array, k), k == written ? otherValueAt<T>(k) : valueAt<T>(k));
        }
    });
}

void higherDimensions(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto array = filled<T>(backend, {2, 3, 2, 2});
        expectFilled("a " + describe(*array), *array);
    });
}

/// What is for other kinds is refused, and there is nothing to refer into.
void refusesOtherKinds(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto array = backend.zeros<T>({2, 2});
        const std::string of = " of a " + describe(*array);
        expect(array->createElementReference(0, {}, false) == nullptr,
               "createElementReference" + of + " is not null, although its elements hold no arrays");
        const auto other = backend.zeros<T>({1, 1});
        expectThrows<fv::CantAssignArrayToThisArrayException>(
            "assignElementArray" + of, "CantAssignArrayToThisArrayException",
            [&] { array->assignElementArray(0, {}, other.get()); });
        expectThrows<fv::InvalidArrayTypeException>("getNumberOfNonZeroElements" + of,
                                                    "InvalidArrayTypeException",
                                                    [&] { array->getNumberOfNonZeroElements(); });
        expectOneReference("an array that another one refused to hold", *other);
    });
}

} // namespace

void addDenseChecks(Checks& checks) {
    Family dense(checks, "dense");
    dense.add("new elements are zero", {}, startAtZero);
    dense.add("data arrives in column-major order", {"data"}, columnMajorData);
    dense.add("data is copied", {"data"}, copiesTheData);
    dense.add("elements lie side by side", {}, sideBySide);
    dense.add("a write changes one element", {}, writesOneElement);
    dense.add("four dimensions", {}, higherDimensions);
    dense.add("operations of other kinds are refused", {}, refusesOtherKinds);
}

} // namespace vexa::check
