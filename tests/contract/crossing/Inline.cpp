// What the inline code of the contract does by itself: counts of references, lists of indices, rules for
// them. What it keeps in members the other side reads and goes on with.
#include "Expect.hpp"

#include <vexa/data/detail/ContiguousIteratorImpl.hpp>
#include <vexa/data/detail/IndexList.hpp>
#include <vexa/data/detail/IndexRules.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>
#include <vexa/data/impl/InPlaceArrayImpl.hpp>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

long allocations = 0; // alive

} // namespace

void* operator new(std::size_t size) {
    ++allocations;
    return std::malloc(size);
}
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete(void* memory) noexcept {
    allocations -= memory != nullptr;
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
void operator delete[](void* memory) noexcept { operator delete(memory); }
void operator delete[](void* memory, std::size_t) noexcept { operator delete(memory); }

using namespace foundation::vexadata;
using namespace vexa::data;
using namespace vexa::data::detail;

namespace {

/// Counts of references, which both sides move: alone, and beside another thread.
void counts() {
    struct Object final : RefCounted {
        explicit Object(int& count) : destroyed(count) {}
        ~Object() override { ++destroyed; }
        int& destroyed;
    };
    int destroyed = 0;
    auto* object = new Object(destroyed);
    std::atomic<int> ready{0};
    const auto use = [&] {
        for (++ready; ready < 2;) {}
        for (int k = 0; k < 2000000; ++k) {
            object->retain();
            object->release();
        }
    };
    object->retain();
    EXPECT(object->referenceCount() == 2);
    object->release();
    EXPECT(object->referenceCount() == 1 && destroyed == 0);
    std::thread other(use);
    use();
    other.join();
    EXPECT(object->referenceCount() == 1 && destroyed == 0);
    object->release();
    EXPECT(destroyed == 1);
}

bool holds(const IndexList& list, const std::vector<std::uint64_t>& values, std::size_t capacity) {
    return list.length() == values.size() && list.capacity() == capacity &&
           std::equal(values.begin(), values.end(), list.data());
}

IndexList listOf(const std::vector<std::uint64_t>& values) {
    IndexList list;
    list.assignZeros(values.size());
    std::copy(values.begin(), values.end(), list.data());
    return list;
}

void useOfIndexLists() {
    EXPECT(holds(IndexList(), {}, 3) && holds(listOf({1, 2, 3}), {1, 2, 3}, 3) &&
           holds(listOf({1, 2, 3, 4}), {1, 2, 3, 4}, 6));
    const std::vector<std::uint64_t> shortOne{1, 2, 3};
    const std::vector<std::uint64_t> longOne{1, 2, 3, 4, 5, 6, 7};
    for (const auto& from : {shortOne, longOne})
        for (const auto& to : {shortOne, longOne}) {
            IndexList list = listOf(to);
            const IndexList other = listOf(from);
            const IndexList copy = other;
            list = other;
            list = *&list;
            EXPECT(holds(list, from, from.size()) && holds(copy, from, from.size()) &&
                   list.data() != other.data());
        }
    IndexList list = listOf({5, 6});
    list.assignZeros(3);
    EXPECT(holds(list, {0, 0, 0}, 3));
    list.data()[2] = 9;
    list.reserve(20);
    EXPECT(list.length() == 3 && list.capacity() == 20 && list.data()[2] == 9 && list.data()[19] == 0);
}

void indexLists() {
    const long before = allocations;
    useOfIndexLists();
    EXPECT(allocations == before);
}

using Sizes = std::vector<std::size_t>;

/// 0 when an index may follow `count` others, or which error says that it may not.
int refusal(const Sizes& sizes, std::size_t count, std::size_t index) {
    try {
        checkAppend(sizes, count, index);
    } catch (const CantIndexIntoEmptyArrayException&) {
        return 1;
    } catch (const TooManyIndicesProvidedException&) {
        return 2;
    }
    return 0;
}

/// A position, or -1 beyond the end.
template <class Action>
long positionOr(Action action) {
    try {
        return static_cast<long>(action());
    } catch (const EArrayIndexOutOfRange&) {
        return -1;
    } catch (const NotEnoughIndicesProvidedException&) {
        return -2;
    }
}

void indexRules() {
    EXPECT(refusal({2, 3}, 0, 0) == 0 && refusal({2, 3}, 1, 7) == 0 && refusal({2, 3}, 2, 0) == 0);
    EXPECT(refusal({2, 3}, 2, 1) == 2 && refusal({2, 3}, 3, 1) == 2);
    EXPECT(refusal({0, 3}, 0, 0) == 1 && refusal({3, 0}, 0, 0) == 1 && refusal({0, 3}, 1, 0) == 0);
    EXPECT(refusal({2, 3, 4}, 0, 0) == 0 && refusal({2, 0, 4}, 0, 0) == 1 && refusal({2, 3, 0}, 0, 0) == 1);
    EXPECT(refusal({0, 2, 3}, 0, 0) == 1 && refusal({2, 3, 4}, 2, 1) == 0);

    for (std::uint64_t row = 0; row < 3; ++row)
        for (std::uint64_t column = 0; column < 4; ++column) {
            const bool inside = row < 2 && column < 3;
            const std::uint64_t indices[] = {row, column};
            const auto at = [&](MemoryLayout layout) {
                return positionOr([&] { return positionOf({2, 3}, indices, layout); });
            };
            EXPECT(at(MemoryLayout::COLUMN_MAJOR) == (inside ? long(row + 2 * column) : -1));
            EXPECT(at(MemoryLayout::ROW_MAJOR) == (inside ? long(3 * row + column) : -1));
            EXPECT(at(MemoryLayout::NONE) == 0);
            EXPECT(positionOr([&] {
                       return rules::inMatrix({2, 3}, row, column);
                   }) == (inside ? long(row + 2 * column) : -1));
        }
    const std::uint64_t deep[] = {1, 2, 3};
    EXPECT(positionOf({2, 3, 4}, deep, MemoryLayout::COLUMN_MAJOR) == 1 + 2 * 2 + 3 * 6);
    EXPECT(positionOf({2, 3, 4}, deep, MemoryLayout::ROW_MAJOR) == 12 + 2 * 4 + 3);

    EXPECT(isSingleIndexIntoMatrix({2, 3}, 1) && !isSingleIndexIntoMatrix({2, 3}, 2) &&
           !isSingleIndexIntoMatrix({2, 3, 4}, 1));
    const auto spread = [](Sizes sizes) {
        std::uint64_t indices[] = {2, 7};
        return positionOr([&] { return spreadSingleIndex(sizes, indices), 10 * indices[0] + indices[1]; });
    };
    EXPECT(spread({1, 4}) == 2 && spread({4, 1}) == 20 && spread({2, 3}) == -2 && spread({1, 1}) == 2);
}

void members() {
    double values[] = {1, 2};
    const ContiguousIteratorImpl<double> iterator(values + 1);
    EXPECT(iterator.current() == values + 1 && !iterator.holdsReference());
    const NonPrimitiveIteratorImpl<impl::MatchingDataOrder> other(nullptr, 5);
    EXPECT(other.position() == 5 && other.array() == nullptr && !other.holdsReference());
    EXPECT(impl::VexaClassIdentifierImpl("a").name() == "a" && impl::VexaIdentifierImpl("b").name() == "b");
    const impl::VexaPropertyIdentifierImpl property("p", "C");
    EXPECT(property.propertyName() == "p" && property.className() == "C" && property.classLink().expired());
}

struct Interface {
    virtual ~Interface() = default;
};
struct Shown final : impl::InPlaceArrayImpl<Interface, double> {
    Shown(const std::vector<std::size_t>& sizes, double* data) { showElements(sizes, data); }
};

void inPlace() {
    double values[6] = {};
    const auto at = [&](const std::vector<std::size_t>& sizes, std::uint64_t count, std::uint64_t first,
                        std::uint64_t second) {
        const Shown array(sizes, values);
        const double* element = array.inPlace().element(count, first, second);
        return element == nullptr ? -1 : static_cast<long>(element - values);
    };
    for (std::uint64_t row = 0; row < 3; ++row)
        for (std::uint64_t column = 0; column < 4; ++column)
            EXPECT(at({2, 3}, 2, row, column) == (row < 2 && column < 3 ? long(row + 2 * column) : -1));
    for (std::uint64_t k = 0; k < 5; ++k) {
        const long wanted = k < 4 ? long(k) : -1;
        EXPECT(at({1, 4}, 1, k, 0) == wanted && at({4, 1}, 1, k, 0) == wanted && at({2, 3}, 1, k, 0) == -1);
    }
    const Shown matrix({2, 3}, values);
    const Shown copy(matrix);
    EXPECT(matrix.inPlace().rows == 2 && copy.inPlace().rows == 0 && copy.inPlace().data == nullptr);
    for (const auto& sizes : {std::vector<std::size_t>{0, 3}, {3, 0}, {1, 1, 1}, {}}) {
        const Shown none(sizes, values);
        EXPECT(none.inPlace().rows == 0 && none.inPlace().columns == 0 && none.inPlace().data == nullptr);
    }
}

} // namespace

int main() { return report({counts, indexLists, indexRules, members, inPlace}); }
