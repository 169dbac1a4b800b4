// The command vexadata-backend-check.

#include "Run.hpp"

#include <vexa/testing/FailingAllocations.hpp>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace vexa::check;
using vexa::testing::FailingAllocations;

constexpr int success = 0;
constexpr int contractBroken = 1;
constexpr int failure = 2;

constexpr const char* description =
    R"(Loads the library of a back-end and runs it through the contract. Prints a table:
what holds, what fails and why, what the back-end does not offer.)";

constexpr const char* notes =
    R"(A back-end registers its factory while its library is loaded. What it does not
offer, its factory refuses: the creator throws. Checks that need
such a capability are left out and counted as not offered, which is no pass;
--require turns them into failures. What cannot be seen here is not checked: races,
unless the command and the back-end were built with -fsanitize=thread.

Each check runs in a process of its own, which loads the library anew: a crash
or an endless loop fails that check and no other. What the back-end prints is
hidden unless --verbose is given.

Exit status: 0 when nothing fails, 1 when something does, 2 when the library
cannot be loaded, registers no factory, the command line is wrong, or the
memory that the system gives does not suffice.)";

void complain(const std::string& message) { std::cerr << "vexadata-backend-check: " << message << std::endl; }

/// In want, where not even a message can be made.
void complainOfWant() noexcept {
    constexpr std::string_view line =
        "vexadata-backend-check: not enough memory to go on; this says nothing about the "
        "back-end\n";
    if (::write(STDERR_FILENO, line.data(), line.size()) < 0) ::_exit(failure);
}

/// An exception found no way out. Where not even an exception can be made, there is none.
[[noreturn]] void endInWant() noexcept {
    if (const std::exception_ptr error = std::current_exception()) {
        try {
            std::rethrow_exception(error);
        } catch (const std::bad_alloc&) {
        } catch (...) {
            std::abort();
        }
    }
    complainOfWant();
    ::_exit(failure);
}

constinit std::atomic<bool> refused = false; // memory, since the process began

void requireMemory() {
    if (refused) throw std::bad_alloc();
}

// Before anything else of the process, so that the libraries may run out of memory while they are loaded.
void expectWant() noexcept {
    std::set_terminate(&endInWant);
    FailingAllocations::noteRefusals(&refused);
}
[[gnu::section(".preinit_array"), gnu::used]] void (*const beforeAll)() noexcept = &expectWant;

struct CommandLine {
    std::string library;
    Options options;
    bool list = false;
    bool quiet = false;
};

std::set<std::string> familiesOf(const Checks& checks) {
    std::set<std::string> names;
    for (const Check& check : checks)
        names.insert(check.family);
    return names;
}

std::set<std::string> capabilitiesOf(const Checks& checks) {
    std::set<std::string> names{"all"};
    for (const Check& check : checks)
        if (!check.provides.empty()) names.insert(check.provides);
    return names;
}

/// Throws CLI::ParseError, which is also how help and version end the parsing.
CommandLine parseCommandLine(CLI::App& app, const Checks& checks, int argc, char** argv) {
    CommandLine commandLine;
    Options& options = commandLine.options;
    app.add_option("LIBRARY", commandLine.library, "The shared library of the back-end")->type_name("");
    app.add_option("--family", options.families, "Run only the checks of this family; may be repeated")
        ->check(CLI::IsMember(familiesOf(checks)).description(""))
        ->allow_extra_args(false)
        ->type_name("NAME");
    app.add_option("--check", options.checks,
                   "Run only the checks whose \"family: name\" contains this; may be repeated")
        ->allow_extra_args(false)
        ->type_name("TEXT");
    app.add_option("--require", options.required,
                   "A capability that must be offered, or all; may be repeated")
        ->check(CLI::IsMember(capabilitiesOf(checks)).description(""))
        ->transform(
            [](const std::string& name) { return name == "enum" ? "enumeration" : name; }) // its old name
        ->allow_extra_args(false)
        ->type_name("NAME");
    long seconds = options.limit.count();
    app.add_option("--timeout", seconds, "Most seconds that one check may compute or wait [10]")
        ->check(CLI::Range(1L, 86400L).description(""))
        ->type_name("SECONDS")
        ->default_str("");
    app.add_flag("--first", options.first, "Stop at the first check that fails");
    app.add_flag(
        "--list", commandLine.list,
        "Print the checks, the capabilities they need and what of the contract they are about, and exit");
    CLI::Option* quiet =
        app.add_flag("-q,--quiet", commandLine.quiet, "Print only what fails, and the totals");
    app.add_flag("-v,--verbose", options.verbose, "Let the back-end print what it likes")->excludes(quiet);
    app.set_version_flag("--version", "vexadata-backend-check " VEXADATA_VERSION,
                         "Print the version and exit");
    app.parse(argc, argv);
    // Not CLI11's own requirement: that one hides a mistyped option.
    if (commandLine.library.empty() && !commandLine.list) throw CLI::RequiredError("LIBRARY");
    options.limit = std::chrono::seconds(seconds);
    return commandLine;
}

std::string listOf(const Checks& checks) {
    std::string text;
    for (const Check& check : checks) {
        std::string line = check.family + ": " + check.name;
        if (!check.provides.empty()) line += "; capability " + check.provides;
        for (const std::string& need : check.needs)
            line.append(&need == &check.needs.front() ? "; needs " : ", ").append(need);
        text += line + "\n    " + check.sentence + '\n';
    }
    return text;
}

int run(const CommandLine& commandLine, const Checks& checks) {
    if (commandLine.list) {
        std::cout << listOf(checks) << std::flush;
        return std::cout ? success : failure;
    }
    requireMemory(); // also for the exceptions of the checks, which the libraries keep from the first
    const Result loading = tryLoading(commandLine.library, commandLine.options);
    if (loading.verdict != Verdict::holds) {
        complain(commandLine.library + ": " + loading.reason);
        return failure;
    }
    std::vector<Row> rows = runChecks(commandLine.library, checks, commandLine.options);
    const Totals totals = totalsOf(rows);
    if (commandLine.quiet)
        std::erase_if(rows, [](const Row& row) { return row.result.verdict != Verdict::fails; });
    std::cout << tableOf(rows) << summaryOf(totals) << std::endl;
    if (!std::cout) return failure;
    return totals.fail == 0 ? success : contractBroken;
}

int runCommand(int argc, char** argv) {
    CLI::App app(description, "vexadata-backend-check");
    app.footer(notes);
    try {
        const Checks checks = allChecks();
        return run(parseCommandLine(app, checks, argc, argv), checks);
    } catch (const CLI::CallForHelp&) {
        const std::string text = app.help();
        requireMemory(); // streams make the text, and only leave out what finds none
        std::cout << text << std::flush;
    } catch (const CLI::CallForVersion& version) {
        std::cout << version.what() << std::endl;
    }
    return std::cout ? success : failure;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return runCommand(argc, argv);
    } catch (const std::bad_alloc&) {
        complainOfWant();
    } catch (const CLI::Error& error) {
        complain(std::string(error.what()) + " (see vexadata-backend-check --help)");
    } catch (const std::exception& error) {
        complain(error.what());
    }
    return failure;
}
