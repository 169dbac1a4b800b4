// The command vexa-inspect.

#include "Catalogue.hpp"
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
dimensions, non-zeros, density and a picture of where they are.

With --list or --show, the files become variables of a workspace instead, each
named after its file.)";

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

A variable is called like its file without the ending; what cannot stand in a
name becomes an underscore, and a second file of the same name gets _2. The bytes
that --list tells are those of the elements, text as UTF-16.

A file that cannot be read gets one line on standard error and none on standard
output; the other files are still described. Exit status: 0, or 2 if anything
was wrong.)";

struct CommandLine {
    std::vector<std::string> files;
    Options options;
    bool list = false;
    std::vector<std::string> show;
    foundation::vexadata::PrintOptions print;
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
    CommandLine commandLine;
    commandLine.options.maxMemory = availableMemory();
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
    app.add_flag("-l,--list", commandLine.list, "Print name, class, dimensions and bytes of every variable");
    app.add_option("-s,--show", commandLine.show,
                   "Print the values of the variable NAME, or of a column of it: NAME.COLUMN")
        ->type_name("NAME")
        ->allow_extra_args(false);
    app.add_option("--precision", commandLine.print.precision, "Significant digits of the values")
        ->check(CLI::Range(1, 17).description(""))
        ->type_name("DIGITS")
        ->capture_default_str();
    app.add_option("--threshold", commandLine.print.threshold,
                   "Most values of a variable of which none is left out")
        ->type_name("COUNT")
        ->capture_default_str();
    app.set_version_flag("--version", "vexa-inspect " VEXADATA_VERSION, "Print the version and exit");
    app.parse(argc, argv);
    // Not CLI11's own requirement: that one hides a mistyped option.
    if (commandLine.files.empty()) throw CLI::RequiredError("FILE");
    if (!delimiter.empty()) commandLine.options.delimiter = delimiterNames.at(delimiter);
    return commandLine;
}

Dataset loadFile(const std::string& file, const Options& options) {
    Source source(file);
    Progress progress(::isatty(STDERR_FILENO) == 1 ? &std::cerr : nullptr, source.size());
    return load(source, options, progress);
}

bool write(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0)
        return true;
    // Whoever closed the pipe has seen enough.
    if (errno != EPIPE) complain("cannot write: " + std::generic_category().message(errno));
    return false;
}

/// Does `task`, which is about `name`; false after a complaint.
template <class Task>
bool doOrComplain(const std::string& name, Task task) {
    try {
        task();
        return true;
    } catch (const InputError& error) {
        complain(located(name, error));
    } catch (const std::bad_alloc&) {
        complain(displayName(name) + ": not enough memory");
    } catch (const std::exception& error) {
        complain(displayName(name) + ": " + error.what());
    } catch (const foundation::vexadata::Exception& error) {
        complain(displayName(name) + ": " + error.what());
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
            const Dataset data = loadFile(file, commandLine.options);
            if (several) text = printable(displayName(file)) + ": " + heading(data) + "\n";
            text += describe(data);
        });
        if (!done) {
            status = failure;
            continue;
        }
        if (!write(first ? text : "\n" + text)) return failure;
        first = false;
    }
    return status;
}

/// Loads all files as variables, then lists them and shows those that are asked for.
int showVariables(const CommandLine& commandLine) {
    int status = success;
    std::vector<Catalogue::Entry> entries;
    for (const std::string& file : commandLine.files)
        if (!doOrComplain(file, [&] { entries.push_back({file, loadFile(file, commandLine.options)}); }))
            status = failure;

    const Catalogue catalogue(std::move(entries));
    if (commandLine.list && !write(catalogue.list())) return failure;
    bool first = !commandLine.list;
    for (const std::string& name : commandLine.show) {
        std::string text;
        if (!doOrComplain(name, [&] { text = catalogue.show(name, commandLine.print); })) {
            status = failure;
            continue;
        }
        if (!write(first ? text : "\n" + text)) return failure;
        first = false;
    }
    return status;
}

int run(const CommandLine& commandLine) {
    const bool asVariables = commandLine.list || !commandLine.show.empty();
    return asVariables ? showVariables(commandLine) : describeFiles(commandLine);
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
