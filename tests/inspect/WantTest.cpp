// The command with little memory, or none.
#include "Command.hpp"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <vector>

namespace {

class Want : public Command {
protected:
    /// Runs the command in the folder, without a shell between; `environment` is its whole environment.
    Outcome spawn(const std::vector<std::string>& arguments, const std::vector<std::string>& environment) {
        const pid_t child = ::fork();
        if (child == 0) become(arguments, environment);
        int status = 0;
        rusage usage{};
        EXPECT_EQ(::wait4(child, &status, 0, &usage), child);
        peak_ = static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), contents("out"),
                contents("err")};
    }

    /// The most memory that the last command had, in bytes.
    std::uint64_t peak() const { return peak_; }

private:
    static std::vector<char*> pointers(const std::vector<std::string>& texts) {
        std::vector<char*> result;
        for (const std::string& text : texts)
            result.push_back(const_cast<char*>(text.c_str()));
        result.push_back(nullptr);
        return result;
    }

    [[noreturn]] void become(std::vector<std::string> arguments,
                             const std::vector<std::string>& environment) {
        arguments.insert(arguments.begin(), VEXA_INSPECT_COMMAND);
        constexpr int create = O_WRONLY | O_CREAT | O_TRUNC;
        const bool ready = ::chdir(folder_.c_str()) == 0 &&
                           ::dup2(::open("out", create, 0600), STDOUT_FILENO) >= 0 &&
                           ::dup2(::open("err", create, 0600), STDERR_FILENO) >= 0;
        if (ready) ::execve(VEXA_INSPECT_COMMAND, pointers(arguments).data(), pointers(environment).data());
        ::_exit(127);
    }

    std::uint64_t peak_ = 0;
};

#ifdef VEXADATA_FAIL_FROM_THE_START

TEST_F(Want, everyFailedAllocationGivesTheRightOutputOrOneComplaint) {
    write("small.csv", "size,day,wet,kind,id\n1,x,true,p,9007199254740993\n2,café,false,p,1\n"
                       "4,longer than others,true,p,2\n");
    write("late.csv", "a\n1\n2\nx\n");
    write("small.mtx", "%%MatrixMarket matrix coordinate complex hermitian\n3 3 2\n1 1 3 0\n3 1 3 4\n");
    const std::string preload = "LD_PRELOAD=" VEXADATA_FAIL_FROM_THE_START;
    const std::vector<std::string> commands[] = {
        {"--version"},
        {"--help"},
        {"small.csv"},
        {"--encoding", "latin1", "late.csv"},
        {"small.mtx"},
        {"small.csv", "--show", "small"},
        {"small.csv", "--list"},
#    if VEXA_INSPECT_HAS_STORAGE
        {"small.cbor"},
        {"small.cbor", "--save", "new.cbor"},
#    endif
    };
#    if VEXA_INSPECT_HAS_STORAGE
    ASSERT_EQ(run("small.csv small.mtx --save small.cbor").status, 0);
#    endif
    std::size_t injected = 0;
    std::size_t first = 1;
    for (const auto& arguments : commands) {
        const Outcome right = spawn(arguments, {preload, "COUNT_TO=count"});
        ASSERT_EQ(right.status, 0) << right.err;
        const std::size_t count = std::stoul(contents("count"));
        ASSERT_GT(count, 200U) << "allocations are not seen";
        for (const char* which : {"FAIL_AT=", "FAIL_FROM="})
            for (std::size_t n = first; n <= count; ++n, ++injected) {
                const Outcome outcome = spawn(arguments, {preload, which + std::to_string(n)});
                if (outcome.status == 0 && outcome.out == right.out && outcome.err.empty()) continue;
                EXPECT_EQ(outcome.status, 2) << arguments[0] << ' ' << which << n;
                EXPECT_EQ(outcome.out, "") << arguments[0] << ' ' << which << n;
                // That nothing is saved, for lack of a file, is a line of its own.
                const int lines =
                    outcome.err.ends_with(": not saved, for not all files could be read\n") ? 2 : 1;
                EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), lines) << outcome.err;
                EXPECT_NE(outcome.err.find("not enough memory"), std::string::npos) << outcome.err;
            }
        first = 250; // until here all do the same
    }
    RecordProperty("injected", std::to_string(injected));
}

TEST_F(Want, memoryIsBoundedInAllThatIsDone) {
    const auto repeated = [](const std::string& piece, std::size_t times) {
        std::string text;
        for (std::size_t k = 0; k < times; ++k)
            text += piece;
        return text;
    };
    constexpr std::size_t columns = 20'000;
    write("name.csv",
          std::string(100'000, 'n') + repeated(",a", columns) + "\n" + repeated("1,", columns) + "1\n");
    write("empty.csv", repeated(",", 200'000) + "\n" + repeated(",", 200'000) + "\n");
    write("words.csv", "w\n" + repeated("red\nblue\n", 500'000));
    write("texts.csv",
          "t\n" + repeated("some text that is no word\n" + std::string(70, 'x') + "\n", 100'000));
    write("numbers.csv", "x\n" + repeated("1.5\n", 1'000'000));
    write("cell.csv", "c\n" + repeated("é", 5'000'000) + "\n");
    write("matrix.mtx", "%%MatrixMarket matrix coordinate real general\n100000 100000 300000\n" +
                            repeated("2 1 1\n1 2 3\n", 150'000));
    const std::vector<std::string> commands[] = {
        {"name.csv"},
        {"name.csv", "--list"},
        {"empty.csv"},
        {"empty.csv", "--show", "empty"},
        {"words.csv"},
        {"texts.csv"},
        {"texts.csv", "--show", "texts", "--threshold", "1000000000"},
        {"numbers.csv"},
        {"numbers.csv", "--show", "numbers", "--threshold", "1000000000"},
        {"numbers.csv", "numbers.csv", "numbers.csv", "--list"},
        {"cell.csv"},
        {"matrix.mtx"},
        {"matrix.mtx", "--show", "matrix", "--threshold", "1000000000"}};
    spawn({"--version"}, {});
    const std::uint64_t itself = peak() + 10'000'000; // the buffers that it has for any file
    for (const std::uint64_t limit : {4'000'000U, 32'000'000U, 1'000'000'000U})
        for (std::vector<std::string> arguments : commands) {
            arguments.insert(arguments.end(), {"--max-memory", std::to_string(limit)});
            const Outcome outcome = spawn(arguments, {});
            EXPECT_LT(peak(), limit + itself) << testing::PrintToString(arguments);
            EXPECT_EQ(outcome.err.empty(), outcome.status == 0) << outcome.err;
            EXPECT_TRUE(outcome.status == 0 || limit != 1'000'000'000U) << outcome.err;
        }
    EXPECT_LT(std::filesystem::file_size(folder_ / "out"), 100'000'000U);
}

#endif

} // namespace
