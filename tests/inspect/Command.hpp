// The command vexa-inspect as people run it, in a folder of its own.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

class Command : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "vexa-inspect-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }

    /// Runs the command in the folder, after the shell words `before`, with the shell words `arguments`.
    Outcome run(const std::string& arguments, const std::string& before = "") const {
        const std::string line = "cd '" + folder_.string() + "' && { " + before +
                                 " '" VEXA_INSPECT_COMMAND "' " + arguments + "; } >out 2>err";
        const int status = std::system(line.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contents("out"), contents("err")};
    }

    /// Expects a complaint, in one line, and nothing else.
    void expectComplaint(const std::string& arguments, const std::string& complaint) const {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_EQ(outcome.err, "vexa-inspect: " + complaint + "\n");
    }

    std::string contents(const std::string& name) const {
        std::ifstream file(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::filesystem::path folder_;
};
