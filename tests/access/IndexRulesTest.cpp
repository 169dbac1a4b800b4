// What may be appended to an index chain, which element it means, and which error comes first: through
// element handles, which hold their chain in place, and through shared chains.
#include "support/Ledger.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <vexa/testing/CallLog.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;
using vexa::data::MemoryLayout;
using vexa::data::detail::ArrayReferenceImpl;
using vexa::data::detail::ReferenceImpl;
using Indices = std::vector<std::size_t>;

constexpr auto outOfRange = "Array index is out of range";
constexpr auto notEnough = "Not enough indices provided";
constexpr auto tooMany = "Too many indices provided";
constexpr auto emptyArray = "Can't index into an empty array";

/// Elements 0, 1, 2, ... in storage order, so that an element's value is its linear position.
TypedArray<double> counting(const std::vector<std::size_t>& dims,
                            MemoryLayout layout = MemoryLayout::COLUMN_MAJOR) {
    ArrayFactory factory;
    const std::size_t count = std::accumulate(dims.begin(), dims.end(), std::size_t{1}, std::multiplies<>());
    auto buffer = factory.createBuffer<double>(count);
    std::iota(buffer.get(), buffer.get() + count, 0.0);
    return factory.createArrayFromBuffer(dims, std::move(buffer), layout);
}

/// Appends the remaining indices, to temporaries or to named handles.
template <class Element>
Element appended(Element element, const std::size_t* next, const std::size_t* last, bool named) {
    if (next == last) {
        return element;
    }
    return named ? appended(Element(element[*next]), next + 1, last, named)
                 : appended(std::move(element)[*next], next + 1, last, named);
}

/// The ways to reach an element, with one face.
template <class Handle, bool named>
struct InPlace {
    static auto element(Handle& array, const Indices& indices) {
        return appended(array[indices[0]], indices.data() + 1, indices.data() + indices.size(), named);
    }
    template <class Element>
    static double read(const Element& element) {
        return element;
    }
    template <class Element>
    static void write(Element& element, double value) {
        element = value;
    }
};
struct SharedChain {
    static std::shared_ptr<ReferenceImpl> element(Array& array, const Indices& indices) {
        auto* impl = detail::Access::impl(array).get();
        auto chain = detail::Access::createSharedPtr<ReferenceImpl>(new ArrayReferenceImpl(impl));
        for (const std::size_t index : indices) {
            detail::addIndex(chain, index);
        }
        return chain;
    }
    static double read(const std::shared_ptr<ReferenceImpl>& chain) {
        return detail::getValue<double>(chain);
    }
    static void write(const std::shared_ptr<ReferenceImpl>& chain, double value) {
        detail::setTypedElement<double>(chain, value);
    }
};

template <class T>
struct LayoutlessArray : vexa::testing::ForwardingNumbers<T> {
    using vexa::testing::ForwardingNumbers<T>::ForwardingNumbers;
    MemoryLayout getMemoryLayout() const override { return MemoryLayout::NONE; }
};

constexpr long failsAtIndexing = -1;
constexpr long failsAtUse = -2;

struct Case {
    std::vector<std::size_t> dims;
    MemoryLayout layout;
    Indices indices;
    long position; ///< or when it fails
    const char* message = "";
};
constexpr auto column = MemoryLayout::COLUMN_MAJOR;
constexpr auto row = MemoryLayout::ROW_MAJOR;
constexpr auto none = MemoryLayout::NONE;

const Case cases[] = {
    // positions
    {{3, 4}, column, {1, 2}, 7},
    {{3, 4}, row, {1, 2}, 6},
    {{2, 3, 4}, column, {1, 0, 2}, 13},
    {{2, 3, 4}, row, {1, 0, 2}, 14},
    {{2, 3, 4}, row, {1, 2, 3}, 23},
    {{2, 2, 2, 2}, column, {1, 0, 1, 1}, 13},
    {{2, 2, 2, 2}, row, {1, 0, 1, 1}, 11},
    {{2, 1, 2, 1, 2}, column, {1, 0, 1, 0, 1}, 7},
    {{1, 2, 1, 2, 1, 2, 2}, column, {0, 1, 0, 1, 0, 0, 1}, 11},
    {{1, 2, 1, 2, 1, 2, 2}, row, {0, 1, 0, 1, 0, 0, 1}, 13},
    // a layout of another kind: no bounds, but still enough indices
    {{3, 4}, none, {9, 9}, 0},
    {{1, 4}, none, {9}, 0},
    {{3, 4}, none, {1}, failsAtUse, notEnough},
    {{3, 4, 5}, none, {1, 1}, failsAtUse, notEnough},
    // one index: vectors only, and only with two dimensions
    {{1, 5}, column, {3}, 3},
    {{5, 1}, column, {3}, 3},
    {{1, 5}, row, {3}, 3},
    {{5, 1}, row, {3}, 3},
    {{1, 1}, column, {0}, 0},
    {{1, 1}, column, {1}, failsAtUse, outOfRange},
    {{1, 5}, column, {5}, failsAtUse, outOfRange},
    {{5, 1}, column, {5}, failsAtUse, outOfRange},
    {{2, 3}, column, {1}, failsAtUse, notEnough},
    {{2, 3}, column, {99}, failsAtUse, notEnough},
    {{1, 1, 5}, column, {3}, failsAtUse, notEnough},
    {{2, 3, 4}, column, {1, 2}, failsAtUse, notEnough},
    {{2, 3, 4}, column, {9, 9}, failsAtUse, notEnough},
    {{2, 2, 2, 2}, column, {1, 0, 1}, failsAtUse, notEnough},
    // bounds, of every dimension by itself
    {{2, 2}, column, {2, 0}, failsAtUse, outOfRange},
    {{2, 2}, column, {0, 2}, failsAtUse, outOfRange},
    {{2, 2}, row, {0, 2}, failsAtUse, outOfRange},
    {{1, 5}, column, {3, 0}, failsAtUse, outOfRange},
    {{2, 3, 4}, row, {0, 3, 0}, failsAtUse, outOfRange},
    {{2, 2}, column, {static_cast<std::size_t>(-1), 0}, failsAtUse, outOfRange},
    // surplus zeros count but do not matter
    {{2, 2}, column, {1, 1, 0}, 3},
    {{2, 2}, column, {1, 1, 0, 0, 0, 0, 0, 0}, 3},
    {{2, 2, 2}, row, {1, 1, 1, 0}, 7},
    {{2, 1, 2, 1, 2}, column, {1, 0, 1, 0, 1, 0, 0}, 7},
    {{4, 1}, column, {2, 0, 0}, 2},
    {{2, 2}, column, {1, 1, 1}, failsAtIndexing, tooMany},
    {{2, 2}, column, {1, 1, 0, 1}, failsAtIndexing, tooMany},
    {{2, 2}, column, {1, 1, 0, 0, 2}, failsAtIndexing, tooMany},
    {{2, 2}, column, {9, 9, 1}, failsAtIndexing, tooMany},
    {{2, 2, 2, 2}, column, {1, 1, 1, 1, 1}, failsAtIndexing, tooMany},
    // no elements: seen by the first index, whatever it is
    {{0, 3}, column, {0}, failsAtIndexing, emptyArray},
    {{2, 0}, column, {7, 7, 7}, failsAtIndexing, emptyArray},
    {{3, 0, 2}, row, {0}, failsAtIndexing, emptyArray},
};

/// What happened, in the notation of the table.
struct Outcome {
    long position = 0;
    std::string message;
    double value = 0;
};
template <class Index, class Use>
Outcome outcomeOf(Index index, Use use) {
    bool indexed = false;
    try {
        auto element = index();
        indexed = true;
        return {0, "", use(element)};
    } catch (const Exception& e) {
        return {indexed ? failsAtUse : failsAtIndexing, e.what(), 0};
    }
}

template <class Form, class Handle>
class CaseRunner {
public:
    CaseRunner(const Case& given, bool writing) : case_(given), writing_(writing) {
        auto counted = counting(case_.dims, case_.layout == none ? column : case_.layout);
        if (case_.layout == none) {
            adopt(vexa::testing::recorded<LayoutlessArray>(std::move(counted)));
        } else {
            adopt(vexa::testing::recorded(std::move(counted)));
        }
    }

    void run() {
        const Outcome outcome = outcomeOf([&] { return Form::element(*array_, case_.indices); },
                                          [&](auto& element) {
                                              if (writing_) {
                                                  Form::write(element, 99.0);
                                                  return static_cast<double>(case_.position);
                                              }
                                              return Form::read(element);
                                          });
        EXPECT_EQ(log_->take(), expectedCalls());
        EXPECT_EQ(outcome.message, case_.message);
        if (case_.position < 0) {
            EXPECT_EQ(outcome.position, case_.position)
                << "-1: when an index is added, -2: when the element is used";
        } else {
            EXPECT_EQ(outcome.value, static_cast<double>(case_.position));
        }
        expectElements();
    }

private:
    void adopt(vexa::testing::Recorded<double> made) {
        log_ = made.log;
        array_ = std::make_unique<Handle>(std::move(made.array));
    }
    std::vector<std::string> expectedCalls() const {
        const std::string element = std::to_string(case_.position) + ", \"\", ";
        if (case_.position == failsAtIndexing) {
            return {};
        }
        if (case_.position == failsAtUse) {
            return writing_ ? std::vector<std::string>{"unshare()"} : std::vector<std::string>{};
        }
        return writing_ ? std::vector<std::string>{"unshare()", "setElementValue(" + element + "99)"}
                        : std::vector<std::string>{"getElementAddress(" + element + "false)"};
    }
    void expectElements() const {
        const TypedArray<double> elements(*array_);
        double position = 0;
        for (const double element : elements) {
            const bool written = writing_ && position == static_cast<double>(case_.position);
            EXPECT_EQ(element, written ? 99.0 : position);
            ++position;
        }
    }

    const Case& case_;
    bool writing_;
    std::unique_ptr<Handle> array_;
    std::shared_ptr<vexa::testing::CallLog> log_;
};

template <class Form, class Handle>
void runAllCases() {
    for (const Case& each : cases) {
        for (const bool writing : {false, true}) {
            SCOPED_TRACE("case " + std::to_string(&each - cases) + (writing ? ", write" : ", read"));
            CaseRunner<Form, Handle>(each, writing).run();
        }
    }
}

class IndexRules : public support::LedgerTest {};

TEST_F(IndexRules, HoldForTypedHandles) {
    runAllCases<InPlace<TypedArray<double>, false>, TypedArray<double>>();
    runAllCases<InPlace<TypedArray<double>, true>, TypedArray<double>>();
}

TEST_F(IndexRules, HoldForUntypedHandles) {
    runAllCases<InPlace<Array, false>, Array>();
    runAllCases<InPlace<Array, true>, Array>();
}

TEST_F(IndexRules, HoldForSharedChains) { runAllCases<SharedChain, Array>(); }

TEST_F(IndexRules, ErrorsAreOfTheirClasses) {
    auto a = counting({2, 2});
    auto empty = counting({0, 3});
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { a[2][0] = 1.0; }));
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { a[1] = 1.0; }));
    EXPECT_TRUE(throwsExactly<TooManyIndicesProvidedException>([&] { a[1][1][1]; }));
    EXPECT_TRUE(throwsExactly<CantIndexIntoEmptyArrayException>([&] { empty[0]; }));
    EXPECT_TRUE(throwsExactly<CantIndexIntoEmptyArrayException>([&] { Array()[0]; }));
}

TEST_F(IndexRules, NamedHandlesStayAsTheyAreWhenIndexedFurther) {
    auto a = counting({3, 4});
    auto second = a[1];
    EXPECT_EQ(second[0], 1.0);
    EXPECT_EQ(second[3], 10.0);
    const auto longer = second[2];
    EXPECT_EQ(longer, 7.0);
    EXPECT_EQ(longer[0], 7.0); // a surplus zero
    EXPECT_TRUE(throwsExactly<TooManyIndicesProvidedException>([&] { longer[1]; }));
    EXPECT_EQ(longer, 7.0);
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { second = 5.0; }));

    auto pages = counting({2, 3, 4});
    auto page = pages[1];
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { page[1] = 5.0; }));
}

TEST_F(IndexRules, HandlesGrowIndependentlyOnceTheirChainIsShared) {
    auto a = counting({2, 2, 2});
    auto element = a[1];
    // Naming it fails, since it is incomplete, but has made the shared chain.
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { Reference<double> named = element; }));
    EXPECT_EQ(element[0][1], 5.0);
    EXPECT_EQ(element[1][1], 7.0);
    auto deeper = element[1];
    auto sibling = deeper;
    EXPECT_EQ(std::move(deeper)[0], 3.0);
    EXPECT_EQ(std::move(sibling)[1], 7.0);

    auto full = counting({2, 2});
    Reference<double> named = full[1][0];
    auto same = full[1][0];
    EXPECT_EQ(same[0][0][0][0], 1.0);
    EXPECT_EQ(named, 1.0);
}

TEST_F(IndexRules, ASingleIndexStaysSpreadOverBothDimensions) {
    auto a = counting({1, 5});
    auto chain = SharedChain::element(a, {3});
    EXPECT_EQ(chain->indexCount(), 1U);
    EXPECT_EQ(chain->getLinearIndex(), 3U);
    EXPECT_EQ(chain->indexCount(), 2U);
    EXPECT_TRUE(throwsExactly<TooManyIndicesProvidedException>([&] { detail::addIndex(chain, 1); }));

    auto outside = SharedChain::element(a, {5});
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { outside->getLinearIndex(); }));
    EXPECT_EQ(outside->indexCount(), 2U); // although the bounds test failed
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { outside->getLinearIndex(); }));

    const auto matrix = counting({2, 3});
    auto refused = SharedChain::element(const_cast<TypedArray<double>&>(matrix), {1});
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { refused->getLinearIndex(); }));
    detail::addIndex(refused, 2); // a failed look-up freezes nothing
    EXPECT_EQ(refused->getLinearIndex(), 5U);

    auto element = a[3];
    EXPECT_EQ(element, 3.0);
    EXPECT_EQ(element[0], 3.0);
    EXPECT_TRUE(throwsExactly<TooManyIndicesProvidedException>([&] { element[1]; }));
}

TEST_F(IndexRules, APositionOnceComputedIsNotMovedByFurtherIndices) {
    auto a = counting({2, 2});
    auto chain = SharedChain::element(a, {1, 1});
    EXPECT_EQ(chain->getLinearIndex(), 3U);
    detail::addIndex(chain, 0);
    EXPECT_TRUE(throwsExactly<TooManyIndicesProvidedException>([&] { detail::addIndex(chain, 1); }));
    EXPECT_EQ(chain->indexCount(), 3U);
    EXPECT_EQ(chain->getLinearIndex(), 3U);
}

TEST_F(IndexRules, AFieldNameEndsAChain) {
    auto made = vexa::testing::recorded(counting({2, 2}));
    auto chain = SharedChain::element(made.array, {1});
    detail::addIndex(chain, "field");
    EXPECT_TRUE(throwsExactly<StringIndexMustBeLastException>([&] { detail::addIndex(chain, 0); }));
    EXPECT_TRUE(throwsExactly<CanOnlyUseOneStringIndexException>([&] { detail::addIndex(chain, "other"); }));
    EXPECT_EQ(chain->stringIndex(), "field");
    EXPECT_EQ(chain->indexCount(), 1U);

    // The name goes with the position to every operation, and comes before the other checks.
    auto named = SharedChain::element(made.array, {1, 1});
    detail::addIndex(named, "f");
    made.log->clear();
    detail::getValue<double>(named);
    detail::setTypedElement<double>(named, 2.0);
    EXPECT_EQ(made.log->take(), (std::vector<std::string>{"getElementAddress(3, \"f\", false)", "unshare()",
                                                          "setElementValue(3, \"f\", 2)"}));
    EXPECT_TRUE(throwsExactly<StringIndexMustBeLastException>([&] { detail::addIndex(named, 7); }));

    auto empty = counting({0, 0});
    auto first = SharedChain::element(empty, {});
    detail::addIndex(first, ""); // no name at all
    detail::addIndex(first, "name");
    EXPECT_TRUE(throwsExactly<StringIndexMustBeLastException>([&] { detail::addIndex(first, 0); }));
}

} // namespace
