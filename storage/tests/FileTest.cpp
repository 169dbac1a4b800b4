// Files: several variables, lists, mapping, replacing, and what the disk refuses.
#include "Folder.hpp"
#include "Samples.hpp"

#include <vexa/storage/Reader.hpp>
#include <vexa/storage/Writer.hpp>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <fstream>
#include <functional>
#include <sstream>

using namespace storage_tests;
namespace storage = vexa::storage;
using storage::Check;
using storage::Error;
using storage::Placement;
using storage::Reader;

namespace {

std::string refusal(const std::function<void()>& action) {
    try {
        action();
    } catch (const Error& error) {
        return error.what();
    }
    return "nothing refused";
}

/// The status with which a child ends that runs `action`.
int inChild(const std::function<void()>& action) {
    const ::pid_t child = ::fork();
    if (child == 0) {
        action();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

} // namespace

TEST(File, ListsWithoutReadingTheVariables) {
    const Folder folder;
    storage::save(folder / "a.cbor", {{"x", counting<double>({30, 40})}, {"\u00fc", texts()}});
    const Reader reader(folder / "a.cbor");
    ASSERT_EQ(reader.variables().size(), 2U);
    EXPECT_EQ(reader.variables()[0].name, "x");
    EXPECT_EQ(reader.variables()[0].type, ArrayType::DOUBLE);
    EXPECT_EQ(reader.variables()[0].dimensions, (std::vector<std::size_t>{30, 40}));
    EXPECT_EQ(reader.variables()[1].type, ArrayType::STRING);
    EXPECT_TRUE(reader.has("\u00fc"));
    EXPECT_FALSE(reader.has("y"));
    EXPECT_EQ(refusal([&] { reader.load("y"); }), (folder / "a.cbor") + ": has no variable 'y'");
    EXPECT_EQ(refusal([&] { storage::load(folder / "a.cbor"); }),
              (folder / "a.cbor") + ": expected one variable, found 2");
}

TEST(File, LargeNumbersLieAlignedAndAreMapped) {
    const Folder folder;
    const std::vector<Variable> all = shaped();
    storage::save(folder / "a.cbor", all);
    const std::string before = folder.content("a.cbor");
    const Reader reader(folder / "a.cbor");
    TypedArray<double> a = reader.load("large");
    const TypedArray<double> b = reader.load("large");
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&*b.begin()) % 64, 0U);
    a[0][0] = 99; // goes to a page of its own
    EXPECT_EQ(double(b[0][0]), 1);
    EXPECT_EQ(double(TypedArray<double>(reader.load("large"))[0][0]), 1);
    EXPECT_EQ(folder.content("a.cbor"), before);
    EXPECT_NO_THROW(reader.verify("large"));
    const TypedArray<double> kept = storage::Reader(folder / "a.cbor").load("large"); // outlives its reader
    std::filesystem::remove(folder / "a.cbor");
    EXPECT_EQ(double(kept[199][29]), 6000);
}

TEST(File, AMappedArrayIsSavedInPlaceOfItsFile) {
    const Folder folder;
    storage::save(folder / "a.cbor", counting<double>({600, 10}));
    TypedArray<double> array = storage::load(folder / "a.cbor");
    array[5][5] = -1;
    storage::save(folder / "a.cbor", array);
    EXPECT_EQ(storage::load(folder / "a.cbor"), array);
    EXPECT_EQ(double(array[599][9]), 6000);
}

TEST(File, FilesOneBehindTheOtherAreOne) {
    const Folder folder;
    storage::save(folder / "a.cbor", {{"a", counting<double>({600, 1})}, {"s", texts()}});
    storage::save(folder / "b.cbor", {{"b", counting<float>({2000, 1})}});
    folder.write("ab.cbor", folder.content("a.cbor") + folder.content("b.cbor"));
    const std::vector<Variable> all =
        storage::loadAll(folder / "ab.cbor", {Placement::mapped, Check::always});
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[2].array, counting<float>({2000, 1}));
    folder.write("aa.cbor", folder.content("a.cbor") + folder.content("a.cbor"));
    EXPECT_NE(refusal([&] { Reader(folder / "aa.cbor"); }).find("found the variable 'a' once more"),
              std::string::npos);
}

TEST(File, ChecksumsTellChangedBytes) {
    const Folder folder;
    storage::save(folder / "a.cbor", {{"x", counting<double>({1000, 1})}, {"y", counting<double>({3, 1})}});
    std::string bytes = folder.content("a.cbor");
    bytes[5000] = static_cast<char>(bytes[5000] ^ 1);
    folder.write("a.cbor", bytes);
    const Reader reader(folder / "a.cbor");
    const auto differs = [](const std::string& text) {
        return text.find("the checksum differs") != std::string::npos;
    };
    EXPECT_TRUE(differs(refusal([&] { reader.verify("x"); })));
    EXPECT_TRUE(differs(refusal([&] { reader.load("x", {Placement::memory}); })));
    EXPECT_TRUE(differs(refusal([&] { reader.load("x", {Placement::mapped, Check::always}); })));
    EXPECT_NO_THROW(reader.load("x"));
    EXPECT_NO_THROW(reader.load("x", {Placement::memory, Check::never}));
    EXPECT_NO_THROW(reader.verify("y"));
}

TEST(File, IsReplacedAtOnceAndKeepsItsPermissions) {
    const Folder folder;
    folder.write("real.cbor", "old");
    ASSERT_EQ(::chmod((folder / "real.cbor").c_str(), 0640), 0);
    std::filesystem::create_symlink("real.cbor", folder / "link.cbor");
    {
        storage::Writer writer(folder / "link.cbor");
        writer.add("x", counting<double>({2, 2}));
        EXPECT_EQ(folder.content("real.cbor"), "old");
        EXPECT_EQ(folder.names().size(), 3U);
    }
    EXPECT_EQ(folder.content("real.cbor"), "old");
    EXPECT_EQ(folder.names(), (std::set<std::string>{"link.cbor", "real.cbor"}));
    storage::save(folder / "link.cbor", counting<double>({2, 2}));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.cbor"));
    EXPECT_EQ(storage::load(folder / "real.cbor"), counting<double>({2, 2}));
    struct ::stat status {};
    ASSERT_EQ(::stat((folder / "real.cbor").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST(File, AFullDiskLeavesWhatWasThere) {
    const Folder folder;
    storage::save(folder / "a.cbor", counting<double>({2, 2}));
    const std::string before = folder.content("a.cbor");
    const int status = inChild([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const ::rlimit most{100'000, 100'000};
        ::setrlimit(RLIMIT_FSIZE, &most);
        const std::string text = refusal([&] {
            storage::save(folder / "a.cbor", counting<double>({1000, 100}));
        });
        ::_exit(text == (folder / "a.cbor") + ": cannot write: File too large" ? 7 : 8);
    });
    EXPECT_EQ(WEXITSTATUS(status), 7);
    EXPECT_EQ(folder.content("a.cbor"), before);
    EXPECT_EQ(folder.names(), (std::set<std::string>{"a.cbor"}));
    std::ofstream full("/dev/full", std::ios::binary);
    EXPECT_EQ(refusal([&] {
                  storage::save(full, counting<double>({1000, 100}));
              }),
              "stream: cannot write to the stream");
    EXPECT_EQ(refusal([] {
                  storage::save("/dev/full", counting<double>({2, 2}));
              }),
              "/dev/full: is no regular file, which alone can be replaced");
    EXPECT_EQ(refusal([&] {
                  storage::save(folder / "none/a.cbor", counting<double>({2, 2}));
              }),
              (folder / "none/a.cbor") + ": cannot create a file in the folder: No such file or directory");
}

TEST(File, AKilledWriterLeavesWhatWasThere) {
    const Folder folder;
    storage::save(folder / "a.cbor", counting<double>({2, 2}));
    const int status = inChild([&] {
        storage::Writer writer(folder / "a.cbor");
        writer.add("x", counting<double>({1000, 100}));
        ::kill(::getpid(), SIGKILL);
    });
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(storage::load(folder / "a.cbor"), counting<double>({2, 2}));
}

TEST(File, NamesAreTextAndComeOnce) {
    std::stringstream stream;
    const auto with = [&](const std::vector<std::string>& names) {
        return refusal([&] {
            storage::Writer writer(stream);
            for (const std::string& name : names) {
                writer.add(name, Array());
            }
        });
    };
    EXPECT_EQ(with({"a", "a"}), "stream: expected a new name, found 'a' once more");
    EXPECT_EQ(with({"\xFF"}),
              "stream: cannot have the name of a variable: UTF-8 text: byte 0 belongs to no character");
    storage::Writer writer(stream);
    writer.finish();
    EXPECT_NE(refusal([&] { writer.add("b", Array()); }), "nothing refused");
    EXPECT_NE(refusal([&] { writer.finish(); }), "nothing refused");
}

TEST(File, APipeIsReadToItsEnd) {
    const Folder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    const ::pid_t writer = ::fork();
    if (writer == 0) {
        std::ofstream out(folder / "pipe", std::ios::binary);
        storage::save(out, counting<double>({100, 300}));
        out.close();
        ::_exit(0);
    }
    EXPECT_EQ(storage::load(folder / "pipe"), counting<double>({100, 300}));
    ::waitpid(writer, nullptr, 0);
}

TEST(File, TellsWhatIsNone) {
    const Folder folder;
    EXPECT_EQ(refusal([&] { Reader(folder / "none"); }),
              (folder / "none") + ": cannot open: No such file or directory");
    EXPECT_EQ(refusal([&] { Reader(folder / ""); }), (folder / "") + ": is a folder");
    folder.write("empty", "");
    EXPECT_EQ(refusal([&] { Reader(folder / "empty"); }),
              (folder / "empty") + ": byte 0: expected a file of vexadata, found another");
    folder.write("text", std::string(1000, 'x'));
    EXPECT_EQ(refusal([&] { Reader(folder / "text"); }),
              (folder / "text") + ": byte 992: expected a file of vexadata, found another");
}
