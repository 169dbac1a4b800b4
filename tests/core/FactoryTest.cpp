// What the factory checks, what it passes to the back-end, and who frees buffers.
#include "support/Ledger.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/BufferAccess.hpp>
#include <vexa/client/Client.hpp>
#include <vexa/testing/CallLog.hpp>

#include <gtest/gtest.h>

#include <iterator>
#include <list>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;
using vexa::data::MemoryLayout;
using Dims = std::vector<std::size_t>;
using Calls = std::vector<std::string>;

constexpr std::size_t huge = std::size_t{1} << 63;
constexpr std::size_t half = std::size_t{1} << 32;

/// Makes small arrays whatever is asked for, and fails when told to.
class Pretending final : public vexa::testing::ForwardingFactory<> {
public:
    using ForwardingFactory::ForwardingFactory;
    vexa::data::impl::ArrayImpl* createArrayImpl(foundation::vexadata::ArrayType type,
                                                 Dimensions dimensions) override {
        asked = dimensions;
        return ForwardingFactory::createArrayImpl(type, {1, 1});
    }
    vexa::data::impl::ArrayImpl* createArrayFromBufferImpl(Dimensions dimensions,
                                                           foundation::vexadata::ArrayType type,
                                                           vexa::data::impl::Buffer<void> buffer,
                                                           MemoryLayout layout) override {
        if (fails) {
            throw EArrayUnknownDataType();
        }
        return ForwardingFactory::createArrayFromBufferImpl(std::move(dimensions), type, std::move(buffer),
                                                            layout);
    }
    Dims asked;
    bool fails = false;
};

int freed = 0;
void countFree(void* data) {
    ++freed;
    delete[] static_cast<double*>(data);
}

class Factory : public support::LedgerTest {
protected:
    std::shared_ptr<vexa::testing::CallLog> log = std::make_shared<vexa::testing::CallLog>();
    const ArrayFactory plain;
    std::shared_ptr<Pretending> backEnd =
        std::make_shared<Pretending>(vexa::testing::Inner<vexa::testing::ArrayFactoryImpl>(
                                         vexa::testing::ArrayFactoryImpl::getDefaultFactory()),
                                     log);
    const ArrayFactory factory{backEnd};

    void SetUp() override {
        LedgerTest::SetUp();
        freed = 0;
    }
    static buffer_ptr<double> buffer(std::size_t count) { return {new double[count](), &countFree}; }
};

TEST_F(Factory, NormalisesDimensionsInOrder) {
    const std::pair<Dims, Dims> accepted[] = {{{5}, {5, 1}},
                                              {{huge}, {huge, 1}},
                                              {{}, {}},
                                              {{0, huge, 4}, {0, huge, 4}},
                                              {{half, half - 1}, {half, half - 1}},
                                              {{2, 3, 4}, {2, 3, 4}}};
    for (const auto& [given, passed] : accepted) {
        factory.createArray<double>(given);
        EXPECT_EQ(backEnd->asked, passed);
    }
    log->clear();
    for (const Dims& refused : {Dims{half, half}, Dims{huge, 4, 0}, Dims{huge, 2}}) {
        EXPECT_TRUE(throwsExactly<NumberOfElementsExceedsMaximumException>(
            [&] { factory.createArray<double>(refused); }));
        EXPECT_TRUE(throwsExactly<NumberOfElementsExceedsMaximumException>(
            [&] { factory.createArray(ArrayType::CELL, refused); }));
        EXPECT_TRUE(throwsExactly<NumberOfElementsExceedsMaximumException>(
            [&] { factory.createArray<double>(refused, {1.0}); }));
        EXPECT_TRUE(throwsExactly<NumberOfElementsExceedsMaximumException>(
            [&] { factory.createArrayFromBuffer<double>(refused, buffer(1)); }));
    }
    EXPECT_EQ(freed, 3);
    EXPECT_EQ(log->operations(), Calls());
}

TEST_F(Factory, MakesSmallMatricesThatShareNothingWithOthersOfTheirShape) {
    for (std::size_t rows = 0; rows <= 10; ++rows) {
        for (std::size_t columns = 0; columns <= 10; ++columns) {
            auto listed = plain.createArray<double>({rows, columns});
            const auto given = plain.createArray<double>(Dims{rows, columns});
            EXPECT_EQ(listed.getDimensions(), (Dims{rows, columns}));
            EXPECT_EQ(listed, given);
            for (double& element : listed) {
                EXPECT_EQ(std::exchange(element, 2), 0);
            }
            auto copy = listed;
            copy.begin();
            EXPECT_FALSE(copy.isShared());
            EXPECT_EQ(copy, listed);
            copy.release();
            EXPECT_EQ(copy.getDimensions(), (Dims{0, 0}));
            EXPECT_EQ(listed.getDimensions(), given.getDimensions());
        }
    }
    EXPECT_THROW(plain.createArray<double>({huge, huge}), NumberOfElementsExceedsMaximumException);
    EXPECT_EQ(plain.createArray<double>({0, huge}).getDimensions(), (Dims{0, huge}));
}

TEST_F(Factory, PassesOnWhatItWasGiven) {
    factory.createArray(ArrayType::INT8, {2, 3});
    factory.createArray<std::complex<float>>({2, 2}, {{1, 2}, {3, 4}});
    factory.createArrayFromBuffer<double>({2}, buffer(2), MemoryLayout::ROW_MAJOR);
    factory.createBuffer<bool>(7);
    factory.createBuffer(ArrayType::CHAR, 3);
    factory.createBuffer(9);
    EXPECT_EQ(log->operations(),
              (Calls{"createArrayImpl(6, \"1x1\")", "createArrayWithDataImpl(15, \"2x2\", 2)",
                     "createArrayFromBufferImpl(\"2x1\", 4, 1)", "createBufferImpl(1, 7)",
                     "createBufferImpl(2, 3)", "createUntypedBufferImpl(9)"}));
    EXPECT_EQ(freed, 1);
    log->clear();
    EXPECT_TRUE(
        throwsExactly<MustBePrimitiveTypeException>([&] { factory.createBuffer(ArrayType::CELL, 3); }));
    EXPECT_EQ(log->operations(), Calls());
}

TEST_F(Factory, FreesABufferOnceWithItsOwnDeleter) {
    { const auto array = factory.createArrayFromBuffer<double>({2}, buffer(2)); }
    EXPECT_EQ(freed, 1);
    {
        auto array = factory.createArrayFromBuffer<double>({2}, buffer(2));
        const double* before = getBufferPtr(array).get();
        const auto released = array.release();
        EXPECT_EQ(released.get(), before); // handed back without a copy
        EXPECT_EQ(array.getDimensions(), (Dims{0, 0}));
        EXPECT_EQ(array.getType(), ArrayType::DOUBLE);
        EXPECT_EQ(freed, 1);
    }
    EXPECT_EQ(freed, 2);
    backEnd->fails = true;
    EXPECT_THROW(factory.createArrayFromBuffer<double>({2}, buffer(2)), EArrayUnknownDataType);
    EXPECT_EQ(freed, 3);
}

TEST_F(Factory, FillsArraysFromValues) {
    const auto flags = plain.createArray<bool>({1, 2}, {true, false});
    EXPECT_TRUE(flags[0]);
    const auto text = plain.createArray<char16_t>({1, 3}, {u'a', u'b', u'c'});
    EXPECT_EQ(text[2], u'c');
    const std::list<int> values{1, 2, 3, 4};
    const auto bytes = plain.createArray<std::uint8_t>({2, 2}, values.begin(), values.end());
    EXPECT_EQ(bytes[0][1], 3);

    const double data[] = {1, 2, 3};
    const auto few = plain.createArrayWithData<double>({2, 2}, data, 3);
    EXPECT_EQ(few, (plain.createArray<double>({2, 2}, {1, 2, 3, 0})));
    EXPECT_EQ(plain.createArrayWithData<double>({1, 2}, data, 3),
              (plain.createArray<double>({1, 2}, {1, 2})));
    EXPECT_TRUE(plain.createArrayWithData<double>({0, 2}, data, 3).isEmpty());
    const auto scalar = plain.createArray<double>({}); // no dimensions: one element
    EXPECT_EQ(scalar.getNumberOfElements(), 1U);

    EXPECT_EQ(plain.createScalar(3.5)[0], 3.5);
    EXPECT_EQ(plain.createScalar(5LL)[0], 5);
    EXPECT_EQ(plain.createScalar(true).getType(), ArrayType::LOGICAL);
    EXPECT_EQ(plain.createScalar('x')[0], u'x');
    EXPECT_TRUE(throwsExactly<NonAsciiCharInInputDataException>([&] { plain.createScalar('\xE9'); }));
    EXPECT_EQ(plain.createScalar(std::complex<double>(1, 2))[0], std::complex<double>(1, 2));
}

TEST_F(Factory, TestsNarrowTextWhereverItBecomesCharactersOrStrings) {
    const std::string bad = "a\xE9";
    const std::string good = "ab";
    const auto chars = [&](const auto& text) {
        return plain.createArray<char16_t>({1, 2}, std::begin(text), std::end(text));
    };
    const auto strings = [&](const auto& text) {
        return plain.createArray<String>({1, 1}, &text, &text + 1);
    };
    auto target = chars(good);
    const auto refused = [](auto create) {
        EXPECT_TRUE(throwsExactly<NonAsciiCharInInputDataException>(create));
    };
    refused([&] { chars(bad); });
    refused([&] { plain.createArray<char16_t>({1, 2}, bad.c_str(), bad.c_str() + 2); });
    refused([&] {
        std::istringstream once(bad);
        plain.createArray<char16_t>({1, 2}, std::istream_iterator<char>(once), std::istream_iterator<char>());
    });
    refused([&] { plain.createArray<char16_t>({1, 2}, {bad[0], bad[1]}); });
    refused([&] { strings(bad); });
    refused([&] { plain.createArray<String>({1, 1}, {bad.c_str()}); });
    refused([&] { plain.createScalar(bad); });
    refused([&] { target[1] = bad[1]; });
    refused([&] { Reference<char16_t>{target[1]} = bad[1]; });

    EXPECT_EQ(target, plain.createCharArray("ab"));
    target[1] = 'c';
    EXPECT_EQ(target, (plain.createArray<char16_t>({1, 2}, {good[0], 'c'})));
    EXPECT_EQ(strings(good)[0], "ab");
    EXPECT_EQ((plain.createArray<String>({1, 2}, {"ab", "c"})[1]), "c");
    EXPECT_EQ((plain.createArray<std::int8_t>({1, 2}, bad.begin(), bad.end())[1]), -23); // a number, no text
}

TEST_F(Factory, RefusesANullPointerInPlaceOfAText) {
    const char* const narrow = nullptr;
    const char16_t* const wide = nullptr;
    auto strings = plain.createArray<String>({1, 1});
    const auto refused = [](auto create) {
        EXPECT_TRUE(throwsExactly<std::logic_error>(create, "basic_string::_M_construct null not valid"));
    };
    refused([&] { plain.createScalar(narrow); });
    refused([&] { plain.createScalar(wide); });
    refused([&] { plain.createArray<String>({1, 1}, {narrow}); });
    refused([&] { plain.createArray<String>({1, 1}, &wide, &wide + 1); });
    refused([&] { strings[0] = narrow; });
    refused([&] { strings[0] = wide; });
    EXPECT_FALSE(strings[0].has_value());
}

TEST_F(Factory, TakesComplexLongLongForTheElementOfItsWidth) {
    using Given = std::complex<long long>;
    const Given value(-1, 2);
    auto scalar = plain.createScalar(value);
    EXPECT_EQ(scalar.getType(), ArrayType::COMPLEX_INT64);
    EXPECT_EQ(plain.createScalar(std::complex<unsigned long long>(1, 2)).getType(),
              ArrayType::COMPLEX_UINT64);
    const std::complex<std::int64_t> element(-1, 2);
    EXPECT_EQ(scalar[0], element);
    EXPECT_EQ(scalar, plain.createArray<std::complex<std::int64_t>>({1, 1}, &value, &value + 1));
    EXPECT_EQ(scalar, plain.createArray<std::complex<std::int64_t>>({1, 1}, {value}));
    scalar[0] = Given(3, 4);
    const Given read = scalar[0];
    const Given kept = Reference<std::complex<std::int64_t>>(scalar[0]);
    EXPECT_EQ(read, Given(3, 4));
    EXPECT_EQ(kept, read);
}

TEST_F(Factory, RefusesWhatTheEmbeddedBackEndCannotHold) {
    EXPECT_THROW(plain.createArray(ArrayType::UNKNOWN, {1, 1}), InvalidArrayTypeException);
    EXPECT_THROW(plain.createArray(static_cast<ArrayType>(99), {1, 1}), InvalidArrayTypeException);
    EXPECT_THROW(plain.createArrayFromBuffer({1, 1}, ArrayType::CELL, plain.createBuffer(8)),
                 MustBePrimitiveTypeException);
    const char* message = "The buffer cannot be the storage of this Array";
    EXPECT_TRUE(throwsExactly<vexa::client::InvalidBufferException>(
        [&] {
            plain.createArrayFromBuffer<double>({2, 2}, buffer_ptr<double>(nullptr, &countFree));
        },
        message));
    EXPECT_TRUE(throwsExactly<vexa::client::InvalidBufferException>(
        [&] {
            plain.createArrayFromBuffer<double>({1, 1}, buffer(1), MemoryLayout::NONE);
        },
        message));
    EXPECT_EQ(freed, 1);
    EXPECT_TRUE(
        plain.createArrayFromBuffer<double>({0, 3}, buffer_ptr<double>(nullptr, &countFree)).isEmpty());
    EXPECT_THROW(plain.createArray<double>({half, half - 1}),
                 std::bad_alloc); // elements fit in 64 bits, bytes do not
    EXPECT_THROW(plain.createBuffer<double>(huge), std::bad_alloc);
    EXPECT_TRUE(throwsExactly<std::bad_alloc>(
        [&] {
            plain.createArray<Array>({half, half / 2});
        },
        "std::bad_alloc")); // no std::length_error
}

} // namespace
