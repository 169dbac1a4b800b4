// The command vexa-inspect.

#include "Catalogue.hpp"
#include "CommandLine.hpp"
#include "Complaint.hpp"
#include "InputError.hpp"
#include "Inspect.hpp"
#include "Memory.hpp"
#include "SavedFile.hpp"
#include "Text.hpp"

#include <foundation/vexadata/Exception.hpp>

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

using namespace vexa::inspect;

constexpr int success = 0;
constexpr int failure = 2;

/// File names above this length are taken for mistakes.
constexpr std::size_t longestPath = 1000;

/// Says what is wrong after the words that `complaint` begins with. Called while an exception is handled.
void explain(Complaint& complaint) noexcept {
    try {
        throw;
    } catch (const CLI::Error& error) {
        complaint.add(error.what()).add(" (see vexa-inspect --help)");
    } catch (const std::bad_alloc&) {
        complaint.add("not enough memory");
    } catch (const std::exception& error) {
        complaint.add(error.what());
    } catch (const foundation::vexadata::Exception& error) {
        complaint.add(error.what());
    } catch (...) {
        complaint.add("unknown error");
    }
    complaint.send();
}

/// The handler of uncaught exceptions. There may be no current exception: without memory not even one can be
/// allocated.
[[noreturn]] void endInWant() noexcept {
    Complaint complaint;
    if (std::current_exception() != nullptr)
        explain(complaint);
    else
        complaint.add("not enough memory").send();
    ::_exit(failure);
}

// Before anything else of the process, so that the libraries may run out of memory while they are loaded.
void expectWant() noexcept { std::set_terminate(&endInWant); }
[[gnu::section(".preinit_array"), gnu::used]] void (*const beforeAll)() noexcept = &expectWant;

std::string_view displayName(std::string_view file) {
    return file == "-" ? "standard input" : firstCharacters(file, longestPath);
}

Dataset loadFile(const std::string& file, const CommandLine& commandLine, MemoryBudget& budget) {
    Source source(file);
    Progress progress(::isatty(STDERR_FILENO) == 1 ? &std::cerr : nullptr, source.size());
    return load(source, commandLine.options, progress, budget);
}

/// Whether all of standard output was written; complains if not.
bool flush() {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return true;
    // The reader of the pipe has closed it: no error.
    if (errno != EPIPE) Complaint().add("cannot write: ").add(std::generic_category().message(errno)).send();
    return false;
}

bool write(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    return flush();
}

/// Does `task`, which is about `name`; false after a complaint.
template <class Task>
bool doOrComplain(const std::string& name, Task task) {
    Complaint complaint;
    complaint.add(displayName(name));
    try {
        task();
        return true;
    } catch (const InputError& error) {
        if (error.line() != 0) complaint.add(":").add(error.line());
        complaint.add(": ");
        explain(complaint);
    } catch (...) {
        complaint.add(": ");
        explain(complaint);
    }
    return false;
}

/// Describes one file after the other, so that the contents of one alone are in memory.
int describeFiles(const CommandLine& commandLine) {
    int status = success;
    const bool several = commandLine.files.size() > 1;
    bool first = true;
    for (const std::string& file : commandLine.files) {
        std::string text;
        const bool done = doOrComplain(file, [&] {
            MemoryBudget budget(commandLine.maxMemory);
            const Dataset data = loadFile(file, commandLine, budget);
            if (!first) text = "\n";
            if (several) text += printable(displayName(file)) + ": " + heading(data) + "\n";
            text += describe(data, budget);
        });
        if (!done) {
            status = failure;
            continue;
        }
        if (!write(text)) return failure;
        first = false;
    }
    return status;
}

/// Saves all variables and says so.
void save(const Catalogue& catalogue, const std::string& path) {
    const std::vector<NamedArray> variables = catalogue.variables();
    const std::uint64_t bytes = writeSavedFile(path, variables);
    write(printable(displayName(path)) + ": saved " + counted(variables.size(), "variable") + ", " +
          formatBytes(bytes) + "\n");
}

/// Loads all files as variables, saves them, lists them and shows those that are asked for.
int showVariables(const CommandLine& commandLine) {
    int status = success;
    MemoryBudget budget(commandLine.maxMemory);
    std::vector<Catalogue::Entry> entries;
    for (const std::string& file : commandLine.files)
        if (!doOrComplain(file, [&] { entries.push_back({file, loadFile(file, commandLine, budget)}); }))
            status = failure;

    const bool complete = entries.size() == commandLine.files.size();
    if (!commandLine.save.empty() && !complete)
        Complaint()
            .add(displayName(commandLine.save))
            .add(": not saved, for not all files could be read")
            .send();
    if (entries.empty()) return failure;
    const Catalogue catalogue(std::move(entries));
    bool first = true;
    if (!commandLine.save.empty() && complete) {
        first = !doOrComplain(commandLine.save, [&] { save(catalogue, commandLine.save); });
        if (first) status = failure;
    }
    if (commandLine.list && !write((first ? "" : "\n") + catalogue.list())) return failure;
    first = first && !commandLine.list;
    for (const std::string& name : commandLine.show) {
        std::string text;
        const bool done = doOrComplain(name, [&] {
            if (!first) text = "\n";
            text += catalogue.show(name, commandLine.print, budget);
        });
        if (!done) {
            status = failure;
            continue;
        }
        if (!write(text)) return failure;
        first = false;
    }
    return status;
}

int runCommand(int argc, char** argv) {
    CLI::App app("", "vexa-inspect");
    try {
        const CommandLine commandLine = parseCommandLine(app, argc, argv);
        const bool asVariables = commandLine.list || !commandLine.show.empty() || !commandLine.save.empty();
        return asVariables ? showVariables(commandLine) : describeFiles(commandLine);
    } catch (const CLI::CallForHelp&) {
        const std::string text = app.help();
        // Streams make the text; without memory they omit parts of it and report nothing.
        if (app.help() != text) throw std::bad_alloc();
        return write(text) ? success : failure;
    } catch (const CLI::CallForVersion& version) {
        return write(std::string(version.what()) + "\n") ? success : failure;
    }
}

} // namespace

int main(int argc, char** argv) {
    try {
        return runCommand(argc, argv);
    } catch (...) {
        Complaint complaint;
        explain(complaint);
    }
    return failure;
}
