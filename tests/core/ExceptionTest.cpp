// Every error class, its message and how it is caught; the types that some of them are about.
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/Traits.hpp>

#include <gtest/gtest.h>

#include <complex>
#include <cstdint>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;

enum class CaughtBy { library, standard, nobody };

template <class E>
CaughtBy catchOne() {
    try {
        throw E();
    } catch (const Exception&) {
        return CaughtBy::library;
    } catch (const std::exception&) {
        return CaughtBy::standard;
    }
}

/// The messages in docs/errors.md, by class.
std::map<std::string, std::string> listedMessages() {
    std::map<std::string, std::string> messages;
    std::ifstream page(VEXADATA_ERRORS_PAGE);
    const std::regex row(R"(\| `(\w+)` \| ([^|]+) \| .+ \| .+ \|)");
    std::smatch found;
    for (std::string line; std::getline(page, line);) {
        if (std::regex_match(line, found, row)) {
            messages[found[1]] = found[2];
        }
    }
    return messages;
}

template <class E>
void expectError(const std::string& message) {
    EXPECT_EQ(static_cast<const void*>(E().what()), static_cast<const void*>(E().what())) << message;
    EXPECT_EQ(catchOne<E>(), CaughtBy::library) << message;
    EXPECT_TRUE(throwsExactly<E>([] { detail::raise<E>(); }, message));
}

TEST(Exceptions, HaveTheMessageOfTheErrorPageAndAreNoStandardOnes) {
    std::map<std::string, std::string> messages = listedMessages();
    const auto take = [&](const char* name) {
        const auto row = messages.extract(name);
        return row.empty() ? "no row of docs/errors.md" : row.mapped();
    };
#define VEXADATA_ERROR(E, message) expectError<E>(take(#E));
#include <foundation/vexadata/ErrorTypes.inc>
    EXPECT_EQ(EArrayInvalidHandleRef().what(), take("EArrayInvalidHandleRef"));
    EXPECT_EQ(catchOne<EArrayInvalidHandleRef>(), CaughtBy::standard);
    EXPECT_TRUE(messages.empty()) << messages.begin()->first << " is no class of the list";
}

/// Errors of a client's own: one beside the library's classes and one below them.
struct OwnError : Exception {
    const char* what() const override { return "own"; }
};
struct NamedMismatch : TypeMismatchException {
    const char* what() const override { return "the third column is no number"; }
};

TEST(Exceptions, AreDerivedFromByClients) {
    EXPECT_EQ(catchOne<OwnError>(), CaughtBy::library);
    try {
        throw NamedMismatch();
    } catch (const TypeMismatchException& error) {
        EXPECT_STREQ(error.what(), "the third column is no number");
    }
}

TEST(Types, PrimitiveOnesAreKnown) {
    const std::set<int> others{0, 3};
    for (int value = -1; value <= 40; ++value) {
        const auto type = static_cast<ArrayType>(value);
        if (value >= 0 && value < 24 && others.count(value) == 0) {
            EXPECT_NO_THROW(detail::typeIsPrimitive(type)) << value;
        } else {
            EXPECT_TRUE(throwsExactly<MustBePrimitiveTypeException>(
                [&] { detail::typeIsPrimitive(type); }, "Defined data buffers must be of primitive type"))
                << value;
        }
    }
}

template <class T>
void expectAccepted(const std::set<int>& kinds) {
    for (int value = -1; value <= 40; ++value) {
        EXPECT_EQ(detail::acceptsType<T>(static_cast<ArrayType>(value)), kinds.count(value) == 1)
            << value << " by the typed array of " << testing::PrintToString(kinds);
    }
}
template <class... Elements>
void expectAcceptedFrom(int first) {
    (expectAccepted<Elements>({first++}), ...);
}
template <class... Reals>
void expectComplexFrom(int first) {
    (expectAccepted<std::complex<Reals>>({first++}), ...);
}

TEST(Types, FollowFromElements) {
    using std::int8_t, std::int16_t, std::int32_t, std::int64_t;
    using std::uint8_t, std::uint16_t, std::uint32_t, std::uint64_t;
    expectAcceptedFrom<bool, char16_t, String, double, float, int8_t, uint8_t, int16_t, uint16_t, int32_t,
                       uint32_t, int64_t, uint64_t>(1);
    expectComplexFrom<double, float, int8_t, uint8_t, int16_t, uint16_t, int32_t, uint32_t, int64_t,
                      uint64_t>(14);
    expectAcceptedFrom<Array, StructElement>(24);
    expectAccepted<ValueObject>({26, 27, 28});
    expectAccepted<HandleObjectRef>({26, 27, 28});
    expectAccepted<Enumeration>({29});

    EXPECT_FALSE(detail::isElementType<long long>); // another type than std::int64_t here
    // Types whose complex ones are no elements. A kind that is not there is accepted by none of them.
    expectAccepted<long long>({});
    expectAccepted<std::complex<long long>>({});
    expectAccepted<std::complex<long double>>({});
    expectAccepted<std::complex<bool>>({});
    expectAccepted<std::complex<char16_t>>({});
    expectAccepted<std::complex<std::complex<float>>>({});
    using vexa::data::GetReturnType;
    static_assert(
        std::is_same_v<GetReturnType<std::complex<unsigned long long>>::type, std::complex<std::uint64_t>>);
    static_assert(std::is_same_v<vexa::data::GetReturnType<long long>::type, std::int64_t>);
    static_assert(std::is_same_v<vexa::data::GetReturnType<float>::type, float>);
}

} // namespace
