#include "DelimitedReader.hpp"

#include "Delimiter.hpp"
#include "InputError.hpp"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <utility>

namespace {

using namespace vexa::inspect;
using namespace std::string_literals;

/// Writes down what it gets: names and cells in brackets, "/" after rows.
class RecordingHandler : public RowHandler {
public:
    void name(std::string_view text) override { record_.append("[").append(text).append("]"); }
    void cell(std::size_t column, std::string_view text) override {
        if (text == "no memory") throw std::bad_alloc();
        if (column == 0) record_ += " ";
        record_ += std::to_string(column) + "[" + std::string(text) + "]";
    }
    void endRow() override { record_ += "/"; }

    const std::string& record() const { return record_; }

private:
    std::string record_;
};

/// The record, or the error as LINE: MESSAGE; the text is fed in two pieces, cut at `cut`.
std::string read(std::string_view text, std::size_t cut = 0, char delimiter = ',') {
    RecordingHandler handler;
    MemoryBudget budget(0);
    DelimitedReader reader(handler, delimiter, budget);
    try {
        reader.feed(text.substr(0, cut));
        reader.feed(text.substr(cut));
        reader.finish();
        return handler.record();
    } catch (const InputError& error) {
        return std::to_string(error.line()) + ": " + error.what();
    }
}

TEST(DelimitedReader, sameCellsWhereverTheTextIsCut) {
    constexpr std::string_view text = "\r\na, \"b\"\"\r\n,b\"\r\n\r\n1,\"x,\ny\"\n  \n,\"\"\r\n3, 4 ";
    for (std::size_t cut = 0; cut <= text.size(); ++cut)
        EXPECT_EQ(read(text, cut), "[a][b\"\r\n,b] 0[1]1[x,\ny]/ 0[]1[]/ 0[3]1[4]/") << "cut at " << cut;
    EXPECT_EQ(read("a\tb\n\t2\n", 0, '\t'), "[a][b] 0[]1[2]/");
}

TEST(DelimitedReader, errorsTellTheLineWhereverTheTextIsCut) {
    using namespace std::string_view_literals;
    struct Case {
        std::string_view text;
        std::string_view error;
    };
    for (
        const auto& [text, error] : {
            Case{"a,b\n1,\"\n\n\"\n\n3\n", "6: expected 2 cells as in the header, found 1"},
            Case{"a,b\r\n\r\n1,2,3,4\r\n5", "3: expected 2 cells as in the header, found 4"},
            Case{"a\r1\r2,3\r", "3: expected 1 cell as in the header, found 2"},
            Case{"a,b\n1,\"x\n2,3\n",
                 "2: column 2: unbalanced quote: the quoted cell that begins here is never closed"},
            Case{
                "a,b\n1,\"x\n2,\"y\"\n",
                "2: column 2: unbalanced quote: text follows the closing quote of the cell that begins here"},
            Case{"a,b\nx\"y,2\n",
                 "2: column 1: unbalanced quote: a quote stands inside a cell that is not quoted"},
            Case{"a,b\n1,2\n3,\0\n"sv, "3: NUL byte; expected text"},
            Case{"a,b\n1,\"\n\n\0\"\n"sv, "4: NUL byte; expected text"},
            Case{"a,b\n1\n2,\0\n"sv, "2: expected 2 cells as in the header, found 1"},
            Case{"a,b\n1,2\n3,no memory\n", "3: not enough memory for the columns"},
            Case{"a,b\n1,\"\n\xC3\"\n",
                 "3: column 2: the byte \\xc3 is not UTF-8; expected UTF-8, or Latin-1 with "
                 "--encoding latin1"},
            Case{"\n\r\n", "1: no header line; expected the names of the columns"},
        })
        for (std::size_t cut = 0; cut <= text.size(); ++cut)
            EXPECT_EQ(read(text, cut), error) << "cut at " << cut;
}

TEST(DelimitedReader, blankLinesOfASingleColumnAreCellsBetweenRows) {
    constexpr std::string_view text = "\na\n\r\n1\r\n\r\n2\n\n";
    for (std::size_t cut = 0; cut <= text.size(); ++cut)
        EXPECT_EQ(read(text, cut), "[a] 0[]/ 0[1]/ 0[]/ 0[2]/") << "cut at " << cut;
}

/// Feeds megabytes of one quoted cell; the message that stops them, and how many it took.
std::pair<std::string, int> feedEndlessCell(std::uint64_t maxMemory) {
    RecordingHandler handler;
    MemoryBudget budget(maxMemory);
    DelimitedReader reader(handler, ',', budget);
    reader.feed("a,b\n1,\"");
    const std::string megabyte(1'000'000, 'x');
    for (int fed = 0; fed < 100; ++fed) {
        try {
            reader.feed(megabyte);
        } catch (const InputError& error) {
            return {std::to_string(error.line()) + ": " + error.what(), fed};
        }
    }
    return {};
}

TEST(DelimitedReader, endlessQuotedCellIsStopped) {
    EXPECT_EQ(feedEndlessCell(20'000'000),
              std::pair("2: column 2: a cell is longer than 16 MB; is a closing quote missing?"s, 16));
    EXPECT_EQ(feedEndlessCell(3'000'000),
              std::pair("2: the contents need more than 3 MB of memory (see --max-memory)"s, 3));
}

TEST(Delimiter, followsHeaderAndFirstLines) {
    EXPECT_EQ(detectDelimiter("a,b\n1,2\n"), ',');
    EXPECT_EQ(detectDelimiter("a;b\n1,5;2,5\n1,7;2\n"), ';');
    EXPECT_EQ(detectDelimiter("a\tb\r\n1,5\t2\r\n"), '\t');
    EXPECT_EQ(detectDelimiter("length, m;width, m\n1;2\n3;4\n"), ';');
    EXPECT_EQ(detectDelimiter("\"a;b;c\",d\n\"1;\n;\",2\n"), ',');
    EXPECT_EQ(detectDelimiter("alone\n1;2\n"), ',');
    EXPECT_EQ(detectDelimiter(""), ',');
}

} // namespace
