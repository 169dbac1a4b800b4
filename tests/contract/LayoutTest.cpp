// What the library writes into the words of an index chain, read by their places as a back-end built long ago
// would.
#include <foundation/vexadata/Exception.hpp>
#include <vexa/data/detail/IndexList.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace {

using namespace foundation::vexadata;
using vexa::data::MemoryLayout;

class Chain : public vexa::data::detail::ReferenceImpl {
public:
    Chain() { bind({3, 4, 5}, MemoryLayout::ROW_MAJOR); }
    vexa::data::impl::ArrayImpl* getArrayImpl() const override { return nullptr; }

    template <class T>
    T at(std::size_t offset) const {
        T value;
        std::memcpy(&value, reinterpret_cast<const char*>(static_cast<const ReferenceImpl*>(this)) + offset,
                    sizeof value);
        return value;
    }
};

TEST(Layout, WordsOfAChainAreFilledInWhereTheyWere) {
    using vexa::data::detail::IndexList;
    Chain chain;
    EXPECT_EQ(chain.at<std::uint64_t>(8), 1U); // references
    chain.addIndex(1);
    chain.addIndex(2);
    chain.addIndex(3);
    EXPECT_EQ(chain.at<std::uint64_t>(16), 3U);                        // index count
    EXPECT_EQ(*chain.at<const std::size_t*>(24), 3U);                  // dimensions
    EXPECT_EQ(chain.at<const std::uint64_t*>(48)[1], 2U);              // index list: values,
    EXPECT_EQ(chain.at<std::uint64_t>(56), 3U);                        // length,
    EXPECT_EQ(chain.at<std::uint64_t>(64), IndexList::inlineCapacity); // capacity,
    EXPECT_EQ(chain.at<std::uint64_t>(72 + 16), 3U);                   // three in place
    EXPECT_EQ(chain.at<MemoryLayout>(96), MemoryLayout::ROW_MAJOR);
    EXPECT_FALSE(chain.at<bool>(144)); // linear index known
    EXPECT_THROW(chain.addIndex(4), TooManyIndicesProvidedException);
    const std::uint64_t position = (1 * 4 + 2) * 5 + 3;
    EXPECT_EQ(chain.getLinearIndex(), position);
    EXPECT_EQ(chain.at<std::uint64_t>(136), position); // cached linear index
    EXPECT_TRUE(chain.at<bool>(144));
    EXPECT_EQ(chain.at<void*>(152), nullptr); // cached element reference
    EXPECT_EQ(chain.at<void*>(168), nullptr); // cached copy reference
    chain.addIndex(std::string("field"));
    EXPECT_EQ(chain.at<std::uint64_t>(112), 5U); // length of the string index
}

} // namespace
