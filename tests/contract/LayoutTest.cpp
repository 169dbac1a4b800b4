// Sizes and values that cross the back-end boundary or that clients build into their own objects.
#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/IVariableInfo.hpp>
#include <foundation/vexadata/ZVMID.hpp>
#include <vexa/data/detail/IndexList.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

namespace {

using namespace foundation::vexadata;
using vexa::data::MemoryLayout;

TEST(Layout, HandlesAreTwoWordsAndATable) {
    EXPECT_EQ(sizeof(Array), 24U);
    EXPECT_EQ(sizeof(TypedArray<double>), 24U);
    EXPECT_EQ(sizeof(TypedIterator<double>), 24U);
    EXPECT_EQ(sizeof(ArrayFactory), 16U);
    EXPECT_EQ(sizeof(Reference<double>), 16U);
    EXPECT_LE(sizeof(ArrayElementTypedRef<std::complex<double>, false>), 128U);
    EXPECT_LE(sizeof(ArrayElementRef<false>), 128U);
}

/// Reads the words of a chain as a back-end built against these headers would.
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

TEST(Layout, MembersOfAChainKeepTheirPlaces) {
    using vexa::data::detail::IndexList;
    EXPECT_EQ(sizeof(vexa::data::detail::RefCounted), 16U);
    EXPECT_EQ(sizeof(IndexList), 48U);
    EXPECT_EQ(sizeof(vexa::data::detail::ReferenceImpl), 176U);

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

TEST(Layout, ValuesOfEnumerations) {
    static_assert(std::is_same_v<std::underlying_type_t<ArrayType>, std::int32_t>);
    static_assert(std::is_same_v<std::underlying_type_t<MemoryLayout>, std::int32_t>);
    static_assert(std::is_same_v<std::underlying_type_t<IVariableInfo::VariableStatus>, std::uint32_t>);
    const ArrayType inOrder[] = {ArrayType::UNKNOWN,
                                 ArrayType::LOGICAL,
                                 ArrayType::CHAR,
                                 ArrayType::STRING,
                                 ArrayType::DOUBLE,
                                 ArrayType::SINGLE,
                                 ArrayType::INT8,
                                 ArrayType::UINT8,
                                 ArrayType::INT16,
                                 ArrayType::UINT16,
                                 ArrayType::INT32,
                                 ArrayType::UINT32,
                                 ArrayType::INT64,
                                 ArrayType::UINT64,
                                 ArrayType::COMPLEX_DOUBLE,
                                 ArrayType::COMPLEX_SINGLE,
                                 ArrayType::COMPLEX_INT8,
                                 ArrayType::COMPLEX_UINT8,
                                 ArrayType::COMPLEX_INT16,
                                 ArrayType::COMPLEX_UINT16,
                                 ArrayType::COMPLEX_INT32,
                                 ArrayType::COMPLEX_UINT32,
                                 ArrayType::COMPLEX_INT64,
                                 ArrayType::COMPLEX_UINT64,
                                 ArrayType::CELL,
                                 ArrayType::STRUCT,
                                 ArrayType::OBJECT,
                                 ArrayType::VALUE_OBJECT,
                                 ArrayType::HANDLE_OBJECT_REF,
                                 ArrayType::ENUM,
                                 ArrayType::SPARSE_LOGICAL,
                                 ArrayType::SPARSE_DOUBLE,
                                 ArrayType::SPARSE_COMPLEX_DOUBLE};
    int expected = 0;
    for (const ArrayType type : inOrder) {
        EXPECT_EQ(static_cast<int>(type), expected++);
    }
    EXPECT_EQ(expected, 33);
    EXPECT_EQ(static_cast<int>(MemoryLayout::COLUMN_MAJOR), 0);
    EXPECT_EQ(static_cast<int>(MemoryLayout::ROW_MAJOR), 1);
    EXPECT_EQ(static_cast<int>(MemoryLayout::NONE), 2);
    EXPECT_EQ(IVariableInfo::NOT_SET, 0U);
    EXPECT_EQ(IVariableInfo::RESERVED, 1U);
    EXPECT_EQ(IVariableInfo::SET_BY_ENGINE, 2U);
    static_assert(sizeof(ZVMID) == 16 && std::is_trivially_copyable_v<ZVMID>);
}

} // namespace
