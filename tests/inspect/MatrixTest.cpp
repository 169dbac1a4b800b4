#include "InputError.hpp"
#include "Inspect.hpp"
#include "MatrixMarketReader.hpp"

#include <foundation/vexadata/SparseArray.hpp>

#include <gtest/gtest.h>

#include <complex>
#include <map>
#include <string>
#include <utility>

namespace {

using namespace vexa::inspect;
using namespace std::string_literals;

const std::string real = "%%MatrixMarket matrix coordinate real general\n";

/// Position (row, column) to value, read in pieces of `step` bytes.
std::map<std::pair<std::size_t, std::size_t>, std::complex<double>> entriesOf(const std::string& text,
                                                                              std::size_t step) {
    MemoryBudget budget(100'000);
    MatrixMarketReader reader(budget);
    for (std::size_t k = 0; k < text.size(); k += step)
        reader.feed(std::string_view(text).substr(k, step));
    reader.finish();
    std::map<std::pair<std::size_t, std::size_t>, std::complex<double>> entries;
    for (std::size_t k = 0; k < reader.rows().size(); ++k) {
        std::complex<double> value = 1;
        if (reader.field() == MatrixField::complex)
            value = reader.complexes()[k];
        else if (reader.field() != MatrixField::pattern)
            value = reader.reals()[k];
        entries[{reader.rows()[k], reader.columns()[k]}] = value;
    }
    return entries;
}

TEST(MatrixMarketReader, takesEveryFieldAndSymmetryInPieces) {
    using Entries = std::map<std::pair<std::size_t, std::size_t>, std::complex<double>>;
    const std::string comment = "%" + std::string(5000, 'c') + "\n\n";
    const std::pair<std::string, Entries> cases[] = {
        {real + comment + "2 3 2\r\n1 3 +1.5\r\n 2\t1  -2e-1 \r\n", {{{0, 2}, 1.5}, {{1, 0}, -0.2}}},
        {"%%matrixmarket MATRIX Coordinate integer symmetric\n3 3 2\n2 1 7\n" + comment + "3 3 -4",
         {{{0, 1}, 7.0}, {{1, 0}, 7.0}, {{2, 2}, -4.0}}},
        {"%%MatrixMarket matrix coordinate pattern symmetric\n2 2 1\n2 1\n", {{{0, 1}, 1.0}, {{1, 0}, 1.0}}},
        {"%%MatrixMarket matrix coordinate real skew-symmetric\n2 2 1\n2 1 3\n",
         {{{0, 1}, -3.0}, {{1, 0}, 3.0}}},
        {"%%MatrixMarket matrix coordinate complex hermitian\n2 2 2\n2 1 3 4\n1 1 5 -0\n",
         {{{0, 0}, {5, 0}}, {{0, 1}, {3, -4}}, {{1, 0}, {3, 4}}}},
        {"%%MatrixMarket matrix coordinate complex general\n1 1 1\n1 1 1e400 0\n", {{{0, 0}, {HUGE_VAL, 0}}}},
        {real + "0 0 0\n", {}},
    };
    for (const auto& [text, expected] : cases)
        for (const std::size_t step : {std::size_t{1}, std::size_t{7}, text.size()})
            EXPECT_EQ(entriesOf(text, step), expected) << text.substr(0, 200);
}

TEST(MatrixMarketReader, tellsLineAndReasonOfEveryFault) {
    const std::string symmetric = "%%MatrixMarket matrix coordinate real symmetric\n";
    const struct {
        std::string text;
        std::uint64_t line;
        std::string message;
    } cases[] = {
        {"", 1, "expected the line '%%MatrixMarket matrix coordinate ...'"},
        {"%%MatrixMarket matrix array real general\n", 1,
         "expected 'coordinate', found 'array'; dense matrices are not read"},
        {"%%MatrixMarket matrix coordinate quaternion general\n", 1,
         "expected a field (complex, integer, pattern, real), found 'quaternion'"},
        {"%%MatrixMarket matrix coordinate real hermitian\n", 1, "a hermitian matrix has to be complex"},
        {real, 2, "the file ends before the line of its size"},
        {real + "%\n3 3\n", 3, "expected three whole numbers, rows, columns and entries, found '3 3'"},
        {symmetric + "3 2 1\n", 2, "a symmetric matrix has to be square, not 3 by 2"},
        {real + "3 100000 0\n", 2, "the contents need more than 100 kB of memory (see --max-memory)"},
        {real + "9999999999 9999999999 0\n", 2,
         "a matrix of 9999999999 by 9999999999 has more than 2^64 - 1 elements"},
        {real + "3 3 2\n1 1 1\n", 4, "expected 2 entries, the file ends after 1"},
        {real + "3 3 1\n1 1 1\n2 2 2\n", 4, "expected 1 entry, found more"},
        {real + "3 3 1\n4 1 1\n", 3, "row 4 is not between 1 and 3"},
        {real + "3 3 1\n1 0 1\n", 3, "column 0 is not between 1 and 3"},
        {real + "3 3 1\n1 -1 1\n", 3, "expected a row and a column, found '1 -1 1'"},
        {real + "3 3 1\n1 1 x\n", 3, "expected a number, found 'x'"},
        {real + "3 3 1\n1 1\n", 3, "expected 3 numbers, found '1 1'"},
        {"%%MatrixMarket matrix coordinate integer general\n1 1 1\n1 1 1.5\n", 3,
         "expected a whole number, found '1.5'"},
        {"%%MatrixMarket matrix coordinate complex hermitian\n2 2 1\n2 2 3 -4\n", 3,
         "the diagonal of a hermitian matrix is real, found the imaginary part '-4'"},
        {symmetric + "3 3 1\n1 2 1\n", 3,
         "row 1, column 2 lies above the diagonal, whose mirror image a symmetric matrix holds"},
        {real + "3 3 1\n" + std::string(2000, '1') + "\n", 3, "the line is longer than 1024 bytes"},
    };
    for (const auto& each : cases) {
        try {
            entriesOf(each.text, 5);
            ADD_FAILURE() << "no fault in " << each.text;
        } catch (const InputError& error) {
            EXPECT_EQ(error.what(), each.message);
            EXPECT_EQ(error.line(), each.line) << each.message;
        }
    }
}

TEST(Matrix, promisesCostNoMemory) {
    EXPECT_THROW(entriesOf(real + "3 3 1000000000000000\n1 1 1\n", 9), InputError);
    std::string text = real + "100 100 9000\n";
    for (int k = 0; k < 9000; ++k)
        text += "1 1 1\n";
    try {
        entriesOf(text, 100);
        ADD_FAILURE() << "the budget does not hold";
    } catch (const InputError& error) {
        EXPECT_EQ(error.what(), "the contents need more than 100 kB of memory (see --max-memory)"s);
    }
}

} // namespace
