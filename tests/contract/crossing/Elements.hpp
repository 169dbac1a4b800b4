// What the clients of a published contract do with indices: in arrays of every shape, layout and kind a handle to an
// element means what the library's own chain with these indices means, and fails as it does.
#pragma once

#include "Numbers.hpp"

#include <vexa/data/detail/ContiguousIteratorImpl.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Indices = std::vector<std::size_t>;

/// A position, or the error that says why there is none.
template <class Action>
long positionOrError(Action action) {
    try {
        return static_cast<long>(action());
    } catch (const EArrayIndexOutOfRange&) {
        return -1;
    } catch (const NotEnoughIndicesProvidedException&) {
        return -2;
    } catch (const TooManyIndicesProvidedException&) {
        return -3;
    } catch (const CantIndexIntoEmptyArrayException&) {
        return -4;
    }
}

/// By a chain of the library's own, whose functions are not inline.
long byChain(const Array& array, const Indices& indices) {
    return positionOrError([&] {
        using Chain = vexa::data::detail::ReferenceImpl;
        const std::shared_ptr<Chain> chain(
            new vexa::data::detail::ArrayReferenceImpl(detail::Access::impl(array).get()),
            [](Chain* one) { one->release(); });
        for (const std::size_t index : indices)
            chain->addIndex(index);
        return chain->getLinearIndex();
    });
}

/// Hands the element to `use`.
template <class Handle, class Use>
auto at(Handle& array, const Indices& i, Use use) {
    if (i.size() == 1) return use(array[i[0]]);
    if (i.size() == 2) return use(array[i[0]][i[1]]);
    if (i.size() == 3) return use(array[i[0]][i[1]][i[2]]);
    if (i.size() == 4) return use(array[i[0]][i[1]][i[2]][i[3]]);
    return use(array[i[0]][i[1]][i[2]][i[3]][i[4]]);
}

/// Every list of one index up to one more than there are dimensions, each up to the extent or somewhat beyond.
std::vector<Indices> listsOfIndices(const std::vector<std::size_t>& sizes) {
    std::vector<Indices> lists{{}};
    for (std::size_t first = 0; first < lists.size() && lists[first].size() < 5; ++first)
        for (std::size_t index = 0; index < 4; ++index) {
            const std::size_t place = lists[first].size();
            if (place > sizes.size() || (place == sizes.size() && index > 1)) continue;
            if (sizes.size() > 2 && index > 2) continue;
            lists.push_back(lists[first]);
            lists.back().push_back(index);
        }
    lists.erase(lists.begin());
    for (const std::size_t far : {std::size_t(4), std::size_t(5), ~std::size_t(0), std::size_t(1) << 63}) {
        lists.push_back({far});
        lists.push_back({0, far});
        lists.push_back({far, 0});
    }
    return lists;
}

const std::vector<std::vector<std::size_t>> shapes{{2, 3}, {3, 2}, {1, 4},    {4, 1},    {1, 1},      {0, 3},
                                                   {3, 0}, {0, 0}, {2, 2, 3}, {1, 1, 4}, {2, 1, 2, 2}};

/// `make(sizes)` gives an array whose elements are their own positions, `read(element)` and `write(element, n)` go
/// through a handle to one.
template <class Make, class Read, class Write>
void elementsOf(Make make, Read read, Write write) {
    for (const auto& sizes : shapes)
        for (const Indices& indices : listsOfIndices(sizes)) {
            auto array = make(sizes);
            const auto before = array;
            const long wanted = byChain(array, indices);
            EXPECT(positionOrError([&] { return at(before, indices, read); }) == wanted);
            EXPECT(positionOrError([&] { return at(array, indices, read); }) == wanted);
            const auto kept = [&](auto element) { // read twice, by itself and by a copy
                auto copy = element;
                const long first = read(copy);
                const auto moved = std::move(copy);
                return first == read(element) && read(moved) == first && read(element) == first ? first : -9;
            };
            EXPECT(positionOrError([&] { return at(before, indices, kept); }) == wanted);
            EXPECT(positionOrError([&] { return at(array, indices, kept); }) == wanted);
            const auto written = [&](auto element) {
                write(element, 77);
                const long first = read(element);
                write(element, 78);
                return first == 77 && read(element) == 78 ? wanted : -9;
            };
            EXPECT(positionOrError([&] { return at(array, indices, written); }) == wanted);
            if (wanted >= 0) {
                EXPECT(at(array, indices, read) == 78);
                EXPECT(at(before, indices, read) == wanted);
                const auto others = make(sizes);
                EXPECT(others == before && array != before);
                at(array, indices, [&](auto element) {
                    write(element, wanted);
                    return 0;
                });
            }
            EXPECT(array == before);
        }
}

template <class T, MemoryLayout layout>
void numberElements() {
    const ArrayFactory factory;
    elementsOf(
        [&](const std::vector<std::size_t>& sizes) {
            std::vector<T> values(
                std::accumulate(sizes.begin(), sizes.end(), std::size_t(1), std::multiplies<>()));
            std::iota(values.begin(), values.end(), T());
            return TypedArray<T>(factory.createArrayFromBuffer<T>(sizes, bufferOf(factory, values), layout));
        },
        [](const auto& element) { return static_cast<long>(static_cast<T>(element)); },
        [](auto& element, long value) { element = static_cast<T>(value); });
}

/// What the array itself has to be asked for, and whether it is asked before each write.
class AskedNumbers final : public vexa::data::impl::TypedArrayImpl<double> {
public:
    AskedNumbers(std::vector<std::size_t> sizes, MemoryLayout layout)
        : sizes_(std::move(sizes)),
          layout_(layout),
          values_(std::accumulate(sizes_.begin(), sizes_.end(), std::size_t(1), std::multiplies<>())) {
        std::iota(values_.begin(), values_.end(), 0.0);
    }
    vexa::data::impl::ArrayImpl* sharedCopy() const override { return new AskedNumbers(*this); }
    vexa::data::detail::IteratorImpl* beginIterator(void*, bool) override { return iteratorAt(0); }
    vexa::data::detail::IteratorImpl* endIterator(void*, bool) override { return iteratorAt(values_.size()); }
    ArrayType getType() const override { return ArrayType::DOUBLE; }
    MemoryLayout getMemoryLayout() const override { return layout_; }
    vexa::data::detail::ReferenceImpl* createElementReference(std::size_t, const std::string&,
                                                              bool) override {
        return nullptr;
    }
    const std::vector<std::size_t>& getDimensions() const override { return sizes_; }
    std::size_t getNumberOfElements() const override { return values_.size(); }
    bool isEmpty() const override { return values_.empty(); }
    std::uint64_t getArrayID() const override { return reinterpret_cast<std::uintptr_t>(this); }
    void unshare() override { unshared_ = true; }
    bool isEqual(const ArrayImpl* other) const override {
        return values_ == static_cast<const AskedNumbers*>(other)->values_;
    }
    double* getElementAddress(std::size_t index, const std::string&, bool) override {
        return &values_[index];
    }
    void setElementValue(std::size_t index, const std::string&, double value) override {
        EXPECT(unshared_);
        unshared_ = false;
        values_[index] = value;
    }
    const double* getTypedDataPtr() const override { return values_.data(); }

private:
    vexa::data::detail::IteratorImpl* iteratorAt(std::size_t position) {
        return new vexa::data::detail::ContiguousIteratorImpl<double>(values_.data() + position);
    }

    std::vector<std::size_t> sizes_;
    MemoryLayout layout_;
    std::vector<double> values_;
    bool unshared_ = false;
};

template <MemoryLayout layout>
void askedElements() {
    elementsOf(
        [&](const std::vector<std::size_t>& sizes) {
            return TypedArray<double>(Array(new AskedNumbers(sizes, layout)));
        },
        [](const auto& element) { return static_cast<long>(static_cast<double>(element)); },
        [](auto& element, long value) { element = static_cast<double>(value); });
}

/// Handles that do not know the type.
template <MemoryLayout layout>
void untypedElements() {
    const ArrayFactory factory;
    elementsOf(
        [&](const std::vector<std::size_t>& sizes) {
            std::vector<double> values(
                std::accumulate(sizes.begin(), sizes.end(), std::size_t(1), std::multiplies<>()));
            std::iota(values.begin(), values.end(), 0.0);
            return Array(factory.createArrayFromBuffer<double>(sizes, bufferOf(factory, values), layout));
        },
        [](const auto& element) { return static_cast<long>(static_cast<double>(element)); },
        [](auto& element, long value) { element = static_cast<double>(value); });
}

void stringElements() {
    const ArrayFactory factory;
    const auto text = [](long n) { return std::u16string(static_cast<std::size_t>(n), u'x'); };
    elementsOf(
        [&](const std::vector<std::size_t>& sizes) {
            TypedArray<String> strings = factory.createArray<String>(sizes);
            long n = 0;
            for (auto element : strings)
                element = text(n++);
            return strings;
        },
        [](const auto& element) { return static_cast<long>(String(element)->size()); },
        [&](auto& element, long value) { element = text(value); });
}

void cellElements() {
    const ArrayFactory factory;
    elementsOf(
        [&](const std::vector<std::size_t>& sizes) {
            TypedArray<Array> cells = factory.createArray<Array>(sizes);
            long n = 0;
            for (auto element : cells)
                element = factory.createScalar(static_cast<double>(n++));
            return cells;
        },
        [](const auto& element) {
            const TypedArray<double> held = Array(element);
            return static_cast<long>(held[0]);
        },
        [&](auto& element, long value) { element = factory.createScalar(static_cast<double>(value)); });
}

/// Into the array of a field, which may be another one by then.
void elementsOfFields() {
    const ArrayFactory factory;
    const auto numbers = [&](const std::vector<std::size_t>& sizes) {
        TypedArray<double> made = factory.createArray<double>(sizes);
        std::iota(made.begin(), made.end(), 0.0);
        return made;
    };
    for (const auto& sizes : shapes)
        for (std::size_t index = 0; index < 6; ++index) {
            StructArray records = factory.createStructArray({1, 2}, {"a", "b"});
            const TypedArray<double> original = numbers(sizes);
            records[1]["b"] = original;
            const StructArray before = records;
            const long wanted = byChain(original, {index});
            EXPECT(positionOrError([&] { return long(double(records[1]["b"][index])); }) == wanted);
            EXPECT(positionOrError([&] { return long(double(before[1]["b"][index])); }) == wanted);
            EXPECT(positionOrError([&] {
                       auto element = records[1]["b"][index];
                       const auto copy = element;
                       element = 50.0;
                       element = double(element) + 1;
                       return double(copy) == 51.0 && double(records[1]["b"][index]) == 51.0 ? wanted : -9L;
                   }) == wanted);
            EXPECT(TypedArray<double>(before[1]["b"]) == original);
            for (const auto& others : shapes) {
                StructArray changed = before;
                const auto stale = [&] {
                    auto element = changed[1]["b"][index];
                    changed[1]["b"] = numbers(others);
                    return positionOrError([&] { return long(double(element)); });
                };
                const long found = positionOrError(stale);
                EXPECT(found == (others == sizes ? wanted : -1) || (wanted < 0 && found == wanted));
            }
            if (wanted < 0) continue;
            StructArray changed = before;
            auto element = changed[1]["b"][index];
            changed[1]["b"] = factory.createArray<float>(sizes);
            EXPECT(throws<TypeMismatchException>([&] { return double(element); }));
        }
}

/// An iterator stands on an element without indices: zeros may follow, and nothing else.
void elementsOfIterators() {
    const ArrayFactory factory;
    const TypedArray<Array> cells =
        factory.createArray<Array>({1, 3}, {factory.createScalar(4.0), Array(), Array()});
    TypedArray<Array> written = cells;
    auto here = written.begin();
    *here = factory.createScalar(5.0);
    EXPECT(TypedArray<double>(*cells.begin())[0] == 4.0 && TypedArray<double>(*here)[0] == 5.0);
    StructArray records = factory.createStructArray({1, 2}, {"a"});
    records[0]["a"] = factory.createScalar(1.0);
    records[1]["a"] = factory.createScalar(2.0);
    StructElement first = records[0];
    StructElement second = *(records.begin() + 1);
    EXPECT(double(first["a"][0]) == 1.0 && double(second["a"][0]) == 2.0);
    std::swap(first, second);
    EXPECT(double(first["a"][0]) == 2.0 && double(second["a"][0]) == 1.0);
    second = first;
    EXPECT(double(second["a"][0]) == 2.0 && (*second.begin()).getNumberOfElements() == 1);
}

} // namespace
