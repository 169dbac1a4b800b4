// The command vexa-inspect.

#include "InputError.hpp"
#include "Inspect.hpp"
#include "Memory.hpp"
#include "Text.hpp"

#include <foundation/vexadata/Exception.hpp>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <iostream>
#include <map>
#include <new>
#include <string>
#include <system_error>
#include <vector>

namespace {

using namespace vexa::inspect;

constexpr int success = 0;
constexpr int failure = 2;

const std::map<std::string, char> delimiterNames{{"comma", ','}, {"semicolon", ';'}, {"tab", '\t'}};

constexpr const char* description =
    R"(Describes data files. Of delimited text every column gets a line: name, type,
dimensions, missing cells, minimum, median, mean, maximum and a picture of the
distribution from minimum to maximum. Of a Matrix Market file: type, symmetry,
dimensions, non-zeros, density and a picture of where they are.)";

constexpr const char* notes =
    R"(Delimited text is UTF-8: a line of column names, then rows with as many cells.
The delimiter is the one of comma, semicolon and tab that the first lines agree
on. Cells may be quoted ("a ""word"", a comma") and then hold line ends too.
Blank lines are skipped; in a file of one column, those between rows are missing.

  double       numbers and missing cells. Missing: nothing, NA, N/A, #N/A, NaN
               or null, in any case. inf is a number, and left out of the
               picture. With semicolons, 1,5 is a number too, unless the column
               also has decimal points.
  logical      true and false, in any case, none missing. With missing cells the
               column is double, 1 and 0.
  enumeration  few distinct words of printable ASCII: at most 20, each three
               times on the average. Their counts follow the table.
  string       any other column; also dates, hexadecimal and grouped digits.

A file that is read from a pipe takes more memory, because every cell is kept as
text until the column's type is known; other files are read a second time when a
column of numbers turns out to be text.

A Matrix Market file is told by its first line, %%MatrixMarket. It is read in
coordinate form: real, integer, complex or pattern; general, symmetric,
skew-symmetric or hermitian.

A file that cannot be read gets one line on standard error and none on standard
output; the other files are still described. Exit status: 0, or 2 if anything
was wrong.)";

struct CommandLine {
    std::vector<std::string> files;
    Options options;
};

void complain(const std::string& message) {
    std::cerr << "vexa-inspect: " << printable(message) << std::endl;
}

std::string displayName(const std::string& file) { return file == "-" ? "standard input" : file; }

std::string located(const std::string& file, const InputError& error) {
    const std::string line = error.line() == 0 ? "" : ":" + std::to_string(error.line());
    return displayName(file) + line + ": " + error.what();
}

/// Throws CLI::ParseError, which is also how help and version end the parsing.
CommandLine parseCommandLine(CLI::App& app, int argc, char** argv) {
    CommandLine commandLine{{}, {std::nullopt, availableMemory()}};
    std::string delimiter;
    app.add_option("FILE", commandLine.files, "Files to describe; - is standard input")->type_name("");
    app.add_option("-d,--delimiter", delimiter, "comma, semicolon or tab, instead of detecting it")
        ->check(CLI::IsMember(delimiterNames).description(""))
        ->type_name("NAME");
    app.add_option("--max-memory", commandLine.options.maxMemory,
                   "Most memory for the contents of a file, as in 2GB [free memory]")
        ->transform(CLI::AsSizeValue(true).description(""))
        ->type_name("SIZE")
        ->default_str("");
    app.set_version_flag("--version", "vexa-inspect " VEXADATA_VERSION, "Print the version and exit");
    app.parse(argc, argv);
    // Not CLI11's own requirement: that one hides a mistyped option.
    if (commandLine.files.empty()) throw CLI::RequiredError("FILE");
    if (!delimiter.empty()) commandLine.options.delimiter = delimiterNames.at(delimiter);
    return commandLine;
}

std::string inspectFile(const std::string& file, const Options& options, bool withHeading) {
    Source source(file);
    const Dataset data = [&] {
        Progress progress(::isatty(STDERR_FILENO) == 1 ? &std::cerr : nullptr, source.size());
        return load(source, options, progress);
    }();
    if (!withHeading) return describe(data);
    return printable(displayName(file)) + ": " + heading(data) + "\n" + describe(data);
}

bool write(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0)
        return true;
    // Whoever closed the pipe has seen enough.
    if (errno != EPIPE) complain("cannot write: " + std::generic_category().message(errno));
    return false;
}

/// The description of a file, or nothing after a complaint.
std::string inspectOrComplain(const std::string& file, const Options& options, bool withHeading) {
    try {
        return inspectFile(file, options, withHeading);
    } catch (const InputError& error) {
        complain(located(file, error));
    } catch (const std::bad_alloc&) {
        complain(displayName(file) + ": not enough memory");
    } catch (const std::exception& error) {
        complain(displayName(file) + ": " + error.what());
    } catch (const foundation::vexadata::Exception& error) {
        complain(displayName(file) + ": " + error.what());
    }
    return {};
}

int run(const CommandLine& commandLine) {
    int status = success;
    const bool several = commandLine.files.size() > 1;
    bool first = true;
    for (const std::string& file : commandLine.files) {
        const std::string text = inspectOrComplain(file, commandLine.options, several);
        if (text.empty()) {
            status = failure;
            continue;
        }
        if (!write(first ? text : "\n" + text)) return failure;
        first = false;
    }
    return status;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app(description, "vexa-inspect");
    app.footer(notes);
    try {
        return run(parseCommandLine(app, argc, argv));
    } catch (const CLI::Success& request) {
        return app.exit(request);
    } catch (const CLI::Error& error) {
        complain(std::string(error.what()) + " (see vexa-inspect --help)");
        return failure;
    }
}
