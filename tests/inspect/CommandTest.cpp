#include "Command.hpp"

namespace {

using namespace std::string_literals;

constexpr const char* pairTable = //
    "name  type    dimensions  missing  minimum  median  mean  maximum  distribution\n"
    "a     double         2x1        0        1       2     2        3  █ █\n";

TEST_F(Command, describesEveryKindOfColumn) {
    write("all.csv", "\xEF\xBB\xBF"
                     "size,größe,wet,maybe,none,day,,size\r\n"
                     "1,0.5,true,TRUE,,2012-01-01,\"a,\r\nb\",1\r\n"
                     "2,NA,false,,NA,2012-01-02,x,1\r\n"
                     "4,-inf,true,false,null,NA,y,1\r\n"
                     "\r\n");
    const Outcome outcome = run("all.csv");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
              "name        type     dimensions  missing  minimum  median      mean  maximum  distribution\n"
              "size        double          3x1        0        1       2   2.33333        4  ██ █\n"
              "größe       double          3x1        1     -inf    -inf      -inf      0.5  █\n"
              "wet         logical         3x1        0        0       1  0.666667        1  ▄█\n"
              "maybe       double          3x1        1        0     0.5       0.5        1  ██\n"
              "none        double          3x1        3        -       -         -        -\n"
              "day         string          3x1        1        -       -         -        -\n"
              "(column 7)  string          3x1        0        -       -         -        -\n"
              "size        double          3x1        0        1       1         1        1  █\n");
}

TEST_F(Command, sampleDataAgreesWithASpreadsheet) {
    const Outcome outcome = run("'" VEXADATA_SAMPLE_DATA "/seattle-weather.csv'");
    EXPECT_EQ(
        outcome.out,
        "name           type         dimensions  missing  minimum  median     mean  maximum  distribution\n"
        "date           string           1461x1        0        -       -        -        -\n"
        "precipitation  double           1461x1        0        0       0  3.02943     55.9  █▁▁▁▁▁▁▁▁▁▁▁\n"
        "temp_max       double           1461x1        0     -1.6    15.6  16.4391     35.6  ▁▂▄███▇▆▆▄▂▁\n"
        "temp_min       double           1461x1        0     -7.1     8.3  8.23477     18.3  ▁▁▂▄▆▆████▆▂\n"
        "wind           double           1461x1        0      0.4       3  3.24114      9.5  ▂▅██▅▄▃▂▁▁▁▁\n"
        "weather        enumeration      1461x1        0        -       -        -        -\n"
        "\n"
        "weather\n"
        "  rain     641  ██████████████████████████████\n"
        "  sun      640  ██████████████████████████████\n"
        "  fog      101  ████▊\n"
        "  drizzle   53  ██▌\n"
        "  snow      26  █▎\n");
}

TEST_F(Command, delimitersAndStandardInput) {
    write("semicolon.csv", "a\n1\n3\n");
    EXPECT_EQ(run("semicolon.csv").out, pairTable);
    EXPECT_EQ(run("-", "printf 'a\\n1\\n3' |").out, pairTable);
    EXPECT_NE(run("-", "printf 'a,b' |").out.find("\nb     double         0x1        0"), std::string::npos);

    write("semicolon.csv", "a;b\n1,5;x\n3,5;y\n");
    EXPECT_NE(run("semicolon.csv").out.find("      1.5     2.5   2.5      3.5"), std::string::npos);
    EXPECT_NE(run("-d comma -- semicolon.csv").err.find("semicolon.csv:2: expected 1 cell"),
              std::string::npos);
    write("tab.csv", "a\tb\n1,5\tx\n");
    EXPECT_NE(run("tab.csv").out.find("a     string         1x1"), std::string::npos);
}

TEST_F(Command, columnOfNumbersThatTurnsOutToBeTextKeepsItsTexts) {
    std::string text = "a\n";
    for (int k = 0; k < 30; ++k)
        text += "007\n";
    write("late.csv", text + "x\n");
    const std::string words = "\na\n  007  30  ██████████████████████████████\n  x     1  █\n";
    const Outcome file = run("late.csv");
    EXPECT_NE(file.out.find("a     enumeration        31x1"), std::string::npos) << file.out;
    EXPECT_NE(file.out.find(words), std::string::npos) << file.out;
    EXPECT_EQ(run("-", "cat late.csv |").out, file.out) << "from a pipe, which is read only once";
    EXPECT_EQ(run("- <late.csv").out, file.out);
}

TEST_F(Command, matrixMarketFilesAreDescribedWithAPicture) {
    write("m.txt",
          "\xEF\xBB\xBF%%MatrixMarket matrix coordinate complex hermitian\n3 3 2\n1 1 3 0\n3 1 3 4\n");
    const Outcome one = run("m.txt");
    EXPECT_EQ(
        one.out,
        "type                   symmetry   dimensions  non-zeros    density  missing  minimum  median     mean  "
        "maximum\n"
        "sparse complex double  hermitian  3x3                 3  33.3333 %        0        3       5  4.33333  "
        "      5\n"
        "\n"
        "note: minimum, median, mean and maximum are those of the magnitudes\n"
        "\n"
        "┌──────┐\n"
        "│██  ██│\n"
        "│      │\n"
        "│██    │\n"
        "└──────┘\n");
    write("good.csv", "a\n1\n3\n");
    write("bad.mtx", "%%MatrixMarket matrix coordinate real general\n3 3 1\n1 4 1\n");
    const Outcome several = run("good.csv m.txt bad.mtx");
    EXPECT_EQ(several.status, 2);
    EXPECT_EQ(several.out,
              "good.csv: 2 rows, 1 variable\n"s + pairTable + "\nm.txt: 3x3, 3 non-zeros\n" + one.out);
    EXPECT_EQ(several.err, "vexa-inspect: bad.mtx:3: column 4 is not between 1 and 3\n");
    write("nothing.mtx", "%%MatrixMarket matrix coordinate pattern general\n0 4 0\n");
    EXPECT_NE(run("nothing.mtx").out.find("sparse logical  general   0x4                 0        -"),
              std::string::npos);
}

TEST_F(Command, filesBecomeVariablesThatAreListedAndShown) {
    write("2 b.csv", "size,day,wet,kind\n1,x,true,p\n2.25,,false,p\n4,long,true,p\n");
    write("a.mtx", "%%MatrixMarket matrix coordinate real general\n4 3 1\n2 3 1.5\n");
    write("ragged.csv", "a,b\n1\n");
    const Outcome list = run("'2 b.csv' ragged.csv a.mtx a.mtx --list");
    EXPECT_EQ(list.status, 2);
    EXPECT_EQ(list.err, "vexa-inspect: ragged.csv:2: expected 2 cells as in the header, found 1\n");
    EXPECT_EQ(list.out, "name       class          dimensions  bytes\n"
                        "a          sparse double         4x3     48\n"
                        "a_2        sparse double         4x3     48\n"
                        "x2_b       struct                1x1     49\n"
                        "x2_b.size  double                3x1     24\n"
                        "x2_b.day   string                3x1     10\n"
                        "x2_b.wet   logical               3x1      3\n"
                        "x2_b.kind  enumeration           3x1     12\n");
    const Outcome show = run("-s x2_b '2 b.csv' -s a --precision 2 a.mtx");
    EXPECT_EQ(show.status, 0);
    EXPECT_EQ(show.out, "x2_b: 1x1 struct\n"
                        "  size: 3x1 double\n"
                        "    1\n"
                        "    2.2\n"
                        "    4\n"
                        "  day: 3x1 string\n"
                        "    \"x\"\n"
                        "    <missing>\n"
                        "    \"long\"\n"
                        "  wet: 3x1 logical\n"
                        "    1\n"
                        "    0\n"
                        "    1\n"
                        "  kind: 3x1 enumeration kind\n"
                        "    p\n"
                        "    p\n"
                        "    p\n"
                        "\n"
                        "a: 4x3 sparse double, 1 non-zero\n"
                        "  [1][2]  1.5\n");
    const Outcome both = run("'2 b.csv' -l -s x2_b.size --threshold 2");
    EXPECT_NE(both.out.find("12\n\nx2_b.size: 3x1 double\n"), std::string::npos) << both.out;
    expectComplaint("a.mtx --show b", "b: there is no variable \"b\"; --list shows all");
    expectComplaint("a.mtx --show a.b", "a.b: the variable \"a\" has no columns");
    expectComplaint("'2 b.csv' --show x2_b.Day",
                    "x2_b.Day: the variable \"x2_b\" has no column \"Day\"; --list shows all");
    expectComplaint("--list none.csv", "none.csv: cannot open: No such file or directory");
}

TEST_F(Command, badFileIsNamedAndTheOthersAreDescribed) {
    write("good.csv", "a\n1\n3\n");
    write("ragged.csv", "a,b\n1\n");
    const Outcome outcome = run("good.csv ragged.csv none.csv good.csv");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "good.csv: 2 rows, 1 variable\n"s + pairTable + //
                               "\ngood.csv: 2 rows, 1 variable\n" + pairTable);
    EXPECT_EQ(outcome.err, "vexa-inspect: ragged.csv:2: expected 2 cells as in the header, found 1\n"
                           "vexa-inspect: none.csv: cannot open: No such file or directory\n");
}

TEST_F(Command, badInputGetsOneLine) {
    write("empty.csv", "");
    write("mark.csv", "\xEF\xBB\xBF");
    write("wide.csv", "\xFF\xFE"s + "a\0"s);
    write("quote.csv", "a,b\n1,\"2\n");
    write("new\nline.csv", "a,b\n1\n");
    expectComplaint("empty.csv", "empty.csv:1: the file is empty; expected a header line");
    expectComplaint("mark.csv", "mark.csv:1: no header line; expected the names of the columns");
    expectComplaint("wide.csv", "wide.csv:1: the text is UTF-16; expected UTF-8");
    expectComplaint(
        "quote.csv",
        "quote.csv:2: column 2: unbalanced quote: the quoted cell that begins here is never closed");
    expectComplaint("\"$(printf 'new\\nline.csv')\"",
                    "new\\nline.csv:2: expected 2 cells as in the header, found 1");
    expectComplaint(".", ".: cannot read: Is a directory");
    expectComplaint("- </dev/null", "standard input:1: the file is empty; expected a header line");
    expectComplaint("/proc/self/mem", "/proc/self/mem: cannot read: Input/output error");
}

TEST_F(Command, changedNumbersAreNoted) {
    write("n.csv", "id,u,mixed,far,size\n"
                   "9007199254740993,18446744073709551615,0.5,1e400,12345678901234567890123\n"
                   "-1,2,9007199254740993,1e-400,1\n");
    const std::string notes =
        "\n\nnote: mixed: 1 whole number is beyond 2^53 and rounded\n"
        "note: far: 1 number is too large for a double and shown as inf; 1 number is too "
        "small for a double and shown as 0\n"
        "note: size: 1 whole number is beyond 2^53 and rounded\n";
    const std::string table = run("n.csv").out;
    EXPECT_NE(table.find("id     int64          2x1        0       -1   4.5036e+15   4.5036e+15      "
                         "9007199254740993"),
              std::string::npos)
        << table;
    EXPECT_NE(table.find("9.22337e+18  18446744073709551615"), std::string::npos) << table;
    EXPECT_NE(table.find(notes), std::string::npos) << table;
    EXPECT_EQ(run("n.csv -s n.id -s n.mixed").out,
              "n.id: 2x1 int64\n"
              "  9007199254740993\n"
              "                -1\n"
              "\n"
              "n.mixed: 2x1 double\n"
              "  0.5\n"
              "  9.0072e+15\n"
              "note: n.mixed: 1 whole number is beyond 2^53 and rounded\n");
    EXPECT_NE(run("n.csv --list").out.find("n.u      uint64         2x1     16\n"), std::string::npos);
    EXPECT_NE(run("n.csv --list").out.find("note: n.size: 1 whole number is"), std::string::npos);

    write("n.mtx", "%%MatrixMarket matrix coordinate real general\n2 2 3\n1 1 nan\n2 1 1e400\n2 2 4\n");
    const std::string matrix = run("n.mtx").out;
    EXPECT_NE(matrix.find("75 %        1        4     inf   inf      inf\n"), std::string::npos) << matrix;
    EXPECT_NE(matrix.find("note: 1 non-zero is NaN and missing from minimum"), std::string::npos) << matrix;
    EXPECT_NE(matrix.find("note: 1 number is too large for a double"), std::string::npos) << matrix;
}

TEST_F(Command, bytesThatAreNotUtf8AreRefusedOrReadAsLatin1) {
    write("l.csv", "a,b\n1,\"x\ncaf\xE9\"\n");
    const std::string refusal =
        "the byte \\xe9 is not UTF-8; expected UTF-8, or Latin-1 with --encoding latin1";
    expectComplaint("l.csv", "l.csv:3: column 2: " + refusal);
    EXPECT_EQ(run("l.csv --encoding latin1 -s l.b").out, "l.b: \"x\\ncafé\"\n");
    write("head.csv", "a\xE9,b\n1,2\n");
    expectComplaint("head.csv", "head.csv:1: column 1: " + refusal);
    write("mark.csv", "\xEF\xBB\xBF"
                      "a\n1\n");
    expectComplaint("mark.csv --encoding latin1",
                    "mark.csv:1: the text says that it is UTF-8; expected Latin-1");
}

TEST_F(Command, namesAreEscapedAndCut) {
    const std::string name(500, 'n');
    write("names.csv", "a\u202Eb,z\u200Bw," + name + "," + name + ",\u061C\n1,2,3,4,5\n");
    const std::string table = run("names.csv").out;
    EXPECT_NE(table.find("\na\\u202eb "), std::string::npos) << table;
    EXPECT_NE(table.find("\nz\\u200bw "), std::string::npos) << table;
    EXPECT_NE(table.find('\n' + name.substr(0, 100) + "...  double"), std::string::npos) << table;
    EXPECT_NE(table.find("\n\\u061c "), std::string::npos) << table;
    const std::string second = "names."s.append(name, 0, 63).append("_2");
    EXPECT_NE(run("names.csv --list").out.find('\n' + second + "  double"), std::string::npos);
    EXPECT_EQ(run("names.csv -s " + second).out, second + ": 4\n");
    expectComplaint("$(printf 'no\\342\\200\\256\\377').csv",
                    "no\\u202e\\xff.csv: cannot open: No such file or directory");
    expectComplaint("names.csv -s " + name,
                    name + ": there is no variable \"" + name.substr(0, 100) + "...\"; --list shows all");
    EXPECT_LT(run(std::string(100'000, 'x')).err.size(), 9000U);
}

TEST_F(Command, fileOverMemory) {
    std::string text = "a,b\n";
    for (int k = 0; k < 10'000; ++k)
        text += "1,x\n";
    write("large.csv", text);
    EXPECT_EQ(run("--max-memory 600kB large.csv").status, 0);
    const Outcome outcome = run("--max-memory 200kB large.csv");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(": the contents need more than 200 kB of memory (see --max-memory)\n"),
              std::string::npos);
    EXPECT_EQ(outcome.err.find("vexa-inspect: large.csv:"), 0U);
}

TEST_F(Command, usage) {
    EXPECT_EQ(run("--version").out, "vexa-inspect " VEXADATA_VERSION "\n");
    EXPECT_EQ(run("--help").status, 0);
    expectComplaint("", "FILE is required (see vexa-inspect --help)");
    const auto expectRefusal = [this](const std::string& option, const std::string& value,
                                      const std::string& expected) {
        std::string complaint = option;
        complaint.append(": expected ").append(expected).append(", found '").append(value);
        expectComplaint(std::string(option).append(" '").append(value).append("' x"),
                        complaint.append("' (see vexa-inspect --help)"));
    };
    for (const char* size : {"-1", "99999999999999999999", "2 apples", "1e9"})
        expectRefusal("--max-memory", size, "a size as in 500MB or 2GiB");
    for (const char* count : {"-1", "99999999999999999999", "0x10", "3.5"})
        expectRefusal("--threshold", count, "a whole number below 2^64");
    for (const char* digits : {"18", "0", "-3"})
        expectRefusal("--precision", digits, "a whole number from 1 to 17");
    expectComplaint("--frob", "The following argument was not expected: --frob (see vexa-inspect --help)");
    expectComplaint("-d pipe x", "--delimiter: pipe not in {comma,semicolon,tab} (see vexa-inspect --help)");
}

TEST_F(Command, closedPipeAndFullDisk) {
    write("good.csv", "a\n1\n3\n");
    const Outcome closed = run("good.csv | true", "trap '' PIPE;");
    EXPECT_EQ(closed.err, "");
    if (!std::filesystem::exists("/dev/full")) return;
    for (const char* arguments : {"good.csv >/dev/full", "--help >/dev/full"}) {
        const Outcome full = run(arguments);
        EXPECT_EQ(full.status, 2) << arguments;
        EXPECT_EQ(full.err, "vexa-inspect: cannot write: No space left on device\n");
    }
}

} // namespace
