// The command and files of saved arrays.
#include "Command.hpp"

#include <algorithm>
#include <iterator>

#if VEXA_INSPECT_HAS_STORAGE
#    include "../../storage/tests/Samples.hpp"
#endif

namespace {

using namespace std::string_literals;

class SavedFiles : public Command {
protected:
    std::size_t numberOfFiles() const {
        const std::filesystem::directory_iterator files(folder_);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }
};

#if VEXA_INSPECT_HAS_STORAGE

using foundation::vexadata::Array;
using foundation::vexadata::ArrayFactory;
using foundation::vexadata::StructArray;

TEST_F(SavedFiles, sayWhatTheFilesSaidThatTheyWereMadeOf) {
    std::string rows = "size,day,wet,kind,id,big\n";
    for (int k = 0; k < 2000; ++k) // so many that numbers are mapped
        rows += std::to_string(k) + ".5," + (k % 9 == 0 ? "" : "day " + std::to_string(k)) +
                (k % 2 == 0 ? ",true,p," : ",false,,") + std::to_string(9007199254740993 + k) + ",NA\n";
    write("a b.csv", rows);
    write("m.mtx",
          "%%MatrixMarket matrix coordinate complex general\n4 3 3\n2 3 1.5 -2\n1 1 nan 0\n4 1 1 0\n");
    const Outcome save = run("'a b.csv' m.mtx --save all.cbor");
    EXPECT_EQ(save.status, 0) << save.err;
    EXPECT_EQ(save.err, "");
    EXPECT_TRUE(save.out.starts_with("all.cbor: saved 2 variables, ") && save.out.ends_with(" kB\n"))
        << save.out;

    const std::string looks = " --list -s a_b -s m --precision 17 --threshold 100000";
    const Outcome before = run("'a b.csv' m.mtx" + looks);
    EXPECT_GT(before.out.size(), 100'000U);
    EXPECT_EQ(run("all.cbor" + looks).out, before.out);
    EXPECT_EQ(run("-" + looks, "cat all.cbor |").out, before.out);
    EXPECT_EQ(run("- <all.cbor" + looks).out, before.out);

    // Described, but for what a Matrix Market file says of its matrix.
    std::string expected = run("'a b.csv' m.mtx").out;
    const auto replace = [&](const std::string& old, const std::string& now) {
        const std::size_t place = expected.find(old);
        ASSERT_NE(place, std::string::npos) << old;
        expected.replace(place, old.size(), now);
    };
    replace("a b.csv: ", "a_b: ");
    replace("m.mtx: ", "m: ");
    replace("general ", "-       ");
    EXPECT_EQ(run("all.cbor").out, expected);
    EXPECT_NE(run("m.mtx all.cbor").out.find("\n\nall.cbor: 2 variables\na_b: 2000 rows, 6 variables\n"),
              std::string::npos);

    // Written over what is read, with more of the same names.
    const Outcome more = run("all.cbor m.mtx all.cbor --save all.cbor --list");
    EXPECT_EQ(more.status, 0) << more.err;
    EXPECT_TRUE(more.out.starts_with("all.cbor: saved 5 variables, ")) << more.out;
    EXPECT_NE(more.out.find(" kB\n\nname "), std::string::npos) << more.out;
    const std::string list = run("all.cbor --list").out;
    EXPECT_TRUE(more.out.ends_with("\n" + list)) << list;
    for (const char* name : {"\na_b ", "\na_b_2.wet ", "\nm ", "\nm_2 ", "\nm_3 "})
        EXPECT_NE(list.find(name), std::string::npos) << name;
}

TEST_F(SavedFiles, arraysOfEveryKindAndDepthAreDescribedListedAndShown) {
    std::vector<storage_tests::Variable> variables = storage_tests::samples();
    ArrayFactory factory;
    Array deep = factory.createScalar(1.5);
    Array wide = factory.createScalar(2.5);
    Array fields = factory.createScalar(3.5);
    for (int k = 0; k < 50'000; ++k)
        deep = factory.createArray<Array>({1, 1}, {deep});
    for (int k = 0; k < 60; ++k) {
        wide = factory.createArray<Array>({1, 2}, {wide, wide}); // 2^60 ways to the number
        StructArray record = factory.createStructArray({1, 1}, {"a", "b"});
        record[0]["a"] = fields;
        record[0]["b"] = fields;
        fields = record;
    }
    variables.insert(variables.end(),
                     {{"deep", deep}, {"wide", wide}, {"fields", fields}, {"no\n name", deep}});
    vexa::storage::save(folder_ / "kinds.cbor", variables);
    for (const char* arguments :
         {"kinds.cbor", "kinds.cbor --list", "kinds.cbor -s wide -s fields -s deep"}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0) << arguments << outcome.err;
        EXPECT_LT(outcome.out.size(), 200'000U) << arguments;
        EXPECT_EQ(outcome.out.find('\x1b'), std::string::npos) << arguments;
    }
    const std::string list = run("kinds.cbor --list").out;
    for (const char* line : {"\ndeep  ", "\nfields.b  ", "\nno__name  "})
        EXPECT_NE(list.find(line), std::string::npos) << line << list.substr(0, 3000);
    EXPECT_GE(static_cast<std::size_t>(std::count(list.begin(), list.end(), '\n')), variables.size() + 1);

    const Outcome again = run("kinds.cbor --save again.cbor");
    EXPECT_EQ(again.status, 0) << again.err;
    EXPECT_EQ(run("again.cbor --list").out, list);
    const std::vector<storage_tests::Variable> copies = vexa::storage::loadAll(folder_ / "again.cbor");
    ASSERT_EQ(copies.size(), variables.size());
    for (std::size_t k = 0; k < copies.size(); ++k) {
        if (variables[k].name == "wide" || variables[k].name == "fields") continue; // each way is compared
        EXPECT_TRUE(storage_tests::isSame(copies[k].array, variables[k].array)) << variables[k].name;
    }
}

TEST_F(SavedFiles, whatIsDamagedGetsOneLineAndIsNotSavedAgain) {
    std::string numbers = "a\n";
    for (int k = 0; k < 1000; ++k)
        numbers += std::to_string(k) + "\n";
    write("n.csv", numbers);
    ASSERT_EQ(run("n.csv --save n.cbor").status, 0);
    const std::string whole = contents("n.cbor");
    std::string flipped = whole;
    flipped[whole.size() / 2] ^= 1; // in a number
    write("flipped.cbor", flipped);
    write("cut.txt", whole.substr(0, 1000));
    write("other", "\xD9\xD9\xF7\x01");
    const std::string checksum = "expected the bytes that were written, found others: the checksum differs";
    EXPECT_NE(run("flipped.cbor").err.find(": " + checksum), std::string::npos);
    EXPECT_EQ(run("flipped.cbor --list").out.substr(0, 5), "name ") << "which reads no numbers";
    expectComplaint("cut.txt",
                    "cut.txt: byte 992: expected the mark at the end of the file, which is not whole");
    expectComplaint("other", "other: byte 4: expected a file of vexadata, found another");
    expectComplaint("- <cut.txt --encoding latin1",
                    "standard input: byte 992: expected the mark at the end of the file, which is not whole");
    expectComplaint("--max-memory 1kB n.cbor",
                    "n.cbor: the contents need more than 1 kB of memory (see --max-memory)");
    for (std::size_t size = 3; size < whole.size(); size += 97) {
        write("cut.cbor", whole.substr(0, size));
        const Outcome outcome = run("cut.cbor");
        EXPECT_EQ(outcome.status, 2) << size;
        EXPECT_TRUE(outcome.err.starts_with("vexa-inspect: cut.cbor: byte ")) << size << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << size << outcome.err;
    }
    const std::size_t files = numberOfFiles();
    const Outcome save = run("n.cbor flipped.cbor --save new.cbor");
    EXPECT_EQ(save.status, 2);
    EXPECT_EQ(save.out, "");
    EXPECT_NE(
        save.err.find(checksum + "\nvexa-inspect: new.cbor: not saved, for not all files could be read\n"),
        std::string::npos)
        << save.err;
    EXPECT_EQ(numberOfFiles(), files);
}

TEST_F(SavedFiles, whatCannotBeWrittenIsSaidAndLeavesNothing) {
    write("n.csv", "a\n1\n");
    std::filesystem::create_directory(folder_ / "d.cbor");
    run("n.csv"); // so that out and err are there
    const std::size_t files = numberOfFiles();
    for (const char* name : {"n.h5", "n", ".cbor", "", "n.CBOR"})
        expectComplaint("n.csv --save '"s + name + "'",
                        "--save: expected a name that ends in .cbor, found '"s + name +
                            "' (see vexa-inspect --help)");
    expectComplaint("n.csv --save none/n.cbor",
                    "none/n.cbor: cannot create a file in the folder: No such file or directory");
    expectComplaint("n.csv --save d.cbor", "d.cbor: is no regular file, which alone can be replaced");
    // The list comes nonetheless.
    const Outcome outcome = run("n.csv --save none/n.cbor --list");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, run("n.csv --list").out);
    EXPECT_EQ(numberOfFiles(), files);
    // More than the limit that the shell sets for files, of 512 bytes: what was there stays.
    write("old.cbor", "old");
    std::string numbers = "a\n";
    for (int k = 0; k < 10'000; ++k)
        numbers += "1\n";
    write("large.csv", numbers);
    const Outcome full = run("large.csv --save old.cbor", "trap '' XFSZ; ulimit -f 16;");
    EXPECT_EQ(full.status, 2);
    EXPECT_EQ(full.out, "");
    EXPECT_EQ(full.err, "vexa-inspect: old.cbor: cannot write: File too large\n");
    EXPECT_EQ(contents("old.cbor"), "old");
    EXPECT_EQ(numberOfFiles(), files + 2);
}

#else

TEST_F(SavedFiles, areRefusedWithTheReason) {
    const std::string reason =
        "this vexa-inspect was built without vexadata::storage, which reads and writes saved arrays";
    write("a.cbor", "\xD9\xD9\xF7\x85");
    write("n.csv", "a\n1\n");
    run("n.csv");
    const std::size_t files = numberOfFiles();
    expectComplaint("a.cbor", "a.cbor: " + reason);
    expectComplaint("n.csv --save b.cbor", "--save: " + reason + " (see vexa-inspect --help)");
    EXPECT_EQ(numberOfFiles(), files);
}

#endif

} // namespace
