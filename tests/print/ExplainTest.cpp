// Errors as text.
#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Explain.hpp>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace foundation::vexadata;

namespace {

template <class Action>
std::exception_ptr thrownBy(Action action) {
    try {
        action();
    } catch (...) {
        return std::current_exception();
    }
    return nullptr;
}

/// What is said behind the message of the error.
std::string fault(const Array& array, const std::vector<std::size_t>& indices) {
    const std::string text = explain(thrownBy([] { throw EArrayIndexOutOfRange(); }), array, indices);
    const std::string known = EArrayIndexOutOfRange().what();
    const std::size_t end = known.find_last_not_of('.') + 1;
    EXPECT_EQ(text.substr(0, end + 2), known.substr(0, end) + ": ");
    return text.substr(end + 2);
}

} // namespace

TEST(Explain, MessagesOfWhateverWasThrown) {
    EXPECT_EQ(message_of(thrownBy([] { throw TypeMismatchException(); })), TypeMismatchException().what());
    EXPECT_EQ(message_of(thrownBy([] { throw std::logic_error("reason"); })), "reason");
    EXPECT_EQ(message_of(thrownBy([] { throw 3; })), "unknown error");
    EXPECT_EQ(message_of(nullptr), "");
}

TEST(Explain, StandardErrorsKeepTheirCause) {
    EXPECT_EQ(withStandardErrors([] { return 3; }), 3);
    EXPECT_THROW(withStandardErrors([] { throw std::logic_error("reason"); }), std::logic_error);
    try {
        withStandardErrors([] { throw TypeMismatchException(); });
        FAIL() << "nothing thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), TypeMismatchException().what());
        EXPECT_THROW(std::rethrow_if_nested(error), TypeMismatchException);
    }
}

TEST(Explain, IndicesThatLeadNowhere) {
    ArrayFactory factory;
    const Array matrix = factory.createArray<double>({3, 4});
    EXPECT_EQ(fault(matrix, {5, 1}), "[5][1] of 3x4 double: index 5 of dimension 1 is not below 3");
    EXPECT_EQ(fault(matrix, {2, 4}), "[2][4] of 3x4 double: index 4 of dimension 2 is not below 4");
    EXPECT_EQ(fault(matrix, {2, 3, 0, 7}),
              "[2][3][0][7] of 3x4 double: index 7 is for dimension 4, and there are 2");
    EXPECT_EQ(fault(matrix, {2}), "[2] of 3x4 double: 1 of 2 indices were given");
    EXPECT_EQ(fault(matrix, {2, 3, 0}), "[2][3][0] of 3x4 double");
    EXPECT_EQ(fault(matrix, {}), "3x4 double");
    EXPECT_EQ(fault(factory.createArray<bool>({1, 5}), {5}),
              "[5] of 1x5 logical: index 5 of dimension 2 is not below 5");
    EXPECT_EQ(fault(factory.createArray<bool>({5, 1}), {4}), "[4] of 5x1 logical");
    EXPECT_EQ(fault(factory.createArray<bool>({0, 2}), {0, 0}),
              "[0][0] of 0x2 logical: the array has no elements");
    EXPECT_EQ(explain(TypeMismatchException(), matrix).substr(0, 4),
              std::string(TypeMismatchException().what()).substr(0, 4))
        << "outside of handlers too";
    const std::exception_ptr plain = thrownBy([] { throw std::logic_error("reason..."); });
    EXPECT_EQ(explain(plain, matrix), "reason: 3x4 double");
}
