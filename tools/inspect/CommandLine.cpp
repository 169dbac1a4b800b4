#include "CommandLine.hpp"

#include "Memory.hpp"
#include "SavedFile.hpp"

#include <map>
#include <optional>

namespace vexa::inspect {

namespace {

constexpr const char* description =
    R"(Describes data files. Of delimited text every column gets a line: name, type,
dimensions, missing cells, minimum, median, mean, maximum and a picture of the
distribution from minimum to maximum. Of a Matrix Market file: type, symmetry,
dimensions, non-zeros, density and a picture of where they are. Of a file of saved
arrays (.cbor) every variable: a struct as such columns, a sparse matrix likewise,
what else there is in one table.

With --list or --show, the files become variables of a workspace instead, each
named after its file; saved ones keep their names. --save writes all of them to one
file.)";

constexpr const char* notes =
    R"(Delimited text is a line of column names, then rows with as many cells, in UTF-8
or, with --encoding latin1, in Latin-1. The delimiter is the one of comma,
semicolon and tab that the first lines agree on. Cells may be quoted ("a
""word"", a comma") and then hold line ends too. Blank lines are skipped; in a
file of one column, those between rows are missing.

  double       numbers and missing cells. Missing: nothing, NA, N/A, #N/A, NaN
               or null, in any case. inf is a number, and left out of the
               picture. With semicolons, 1,5 is a number too, unless the column
               also has decimal points.
  int64        whole numbers, some beyond 2^53, which a double would round, none
  uint64       missing; uint64 where int64 does not hold them. Beyond both, with
               missing cells or fractions the column is double.
  logical      true and false, in any case, none missing. With missing cells the
               column is double, 1 and 0.
  enumeration  few distinct words of printable ASCII: at most 20 of at most 63
               characters, each three times on the average. Their counts follow
               the table.
  string       any other column; also dates, hexadecimal and grouped digits.

A file that is read from a pipe takes more memory, because every cell is kept as
text until the column's type is known; other files are read a second time when a
column of numbers turns out to be text.

A Matrix Market file is told by its first line, %%MatrixMarket. It is read in
coordinate form: real, integer, complex or pattern; general, symmetric,
skew-symmetric or hermitian. Of complex numbers the figures are magnitudes.

A file of saved arrays is told by its first bytes. Its large numeric arrays are
mapped, and read where they are looked at. Checksums are compared, but with --list
and --show not those of mapped arrays.

--save OUT.cbor writes the variables of all files, under the names that --list
tells, in the order of the files. OUT.cbor is replaced as a whole or stays as it
was; if any FILE cannot be read, nothing is saved. It holds what the variables
hold: neither what the file says besides, such as the symmetry of a matrix, nor
what numbers lost when they were read.

A note follows where numbers are shown changed: how many whole numbers beyond
2^53 were rounded, how many numbers are too large or too small for a double.

Of names that are longer than 100 characters the beginning is shown. What would
steer a terminal or cannot be seen is written as in C++: \n, \u202e.

A variable is called like its file without the ending; what cannot stand in a
name becomes an underscore, what is longer than 63 characters is cut, and a
second file of the same name gets _2; so it is with columns. The bytes that
--list tells are those of the elements, text as UTF-16.

A file that cannot be read gets one line on standard error and none on standard
output; the other files are still described. Exit status: 0, or 2 if anything
was wrong.)";

/// Refuses what `parse` makes nothing of.
template <class Parse>
CLI::Validator expect(const std::string& what, Parse parse) {
    return {[what, parse](std::string& text) {
                return parse(text) ? std::string() : "expected " + what + ", found '" + text + "'";
            },
            ""};
}

std::optional<std::uint64_t> parseDigits(std::string_view text) {
    const auto value = parseWhole(text);
    return value && *value >= 1 && *value <= 17 ? value : std::nullopt;
}

} // namespace

CommandLine parseCommandLine(CLI::App& app, int argc, char** argv) {
    const std::map<std::string, char> delimiters{{"comma", ','}, {"semicolon", ';'}, {"tab", '\t'}};
    const std::map<std::string, Encoding> encodings{{"utf-8", Encoding::utf8}, {"latin1", Encoding::latin1}};
    CommandLine commandLine;
    std::string delimiter;
    std::string encoding = "utf-8";
    std::string maxMemory;
    std::string precision = std::to_string(commandLine.print.precision);
    std::string threshold = std::to_string(commandLine.print.threshold);
    app.description(description);
    app.footer(notes);
    app.add_option("FILE", commandLine.files, "Files to describe; - is standard input")->type_name("");
    app.add_option("-d,--delimiter", delimiter, "comma, semicolon or tab, instead of detecting it")
        ->check(CLI::IsMember(delimiters).description(""))
        ->type_name("NAME");
    app.add_option("--encoding", encoding, "utf-8 or latin1")
        ->check(CLI::IsMember(encodings).description(""))
        ->type_name("NAME")
        ->capture_default_str();
    app.add_option("--max-memory", maxMemory, "Most memory for what files hold, as in 2GB [free memory]")
        ->check(expect("a size as in 500MB or 2GiB", parseBytes))
        ->type_name("SIZE");
    app.add_flag("-l,--list", commandLine.list, "Print name, class, dimensions and bytes of every variable");
    app.add_option("-s,--show", commandLine.show,
                   "Print the values of the variable NAME, or of a column of it: NAME.COLUMN")
        ->type_name("NAME")
        ->allow_extra_args(false);
    app.add_option("--save", commandLine.save,
                   "Write all variables to one file, OUT.cbor, in place of any old one")
        ->check(CLI::Validator(whyNotSavable, ""))
        ->type_name("OUT");
    app.add_option("--precision", precision, "Significant digits of the values")
        ->check(expect("a whole number from 1 to 17", parseDigits))
        ->type_name("DIGITS")
        ->capture_default_str();
    app.add_option("--threshold", threshold, "Most values of a variable of which none is left out")
        ->check(expect("a whole number below 2^64", parseWhole))
        ->type_name("COUNT")
        ->capture_default_str();
    app.set_version_flag("--version", "vexa-inspect " VEXADATA_VERSION, "Print the version and exit");
    app.parse(argc, argv);
    // Not CLI11's own requirement: that one hides a mistyped option.
    if (commandLine.files.empty()) throw CLI::RequiredError("FILE");
    if (!delimiter.empty()) commandLine.options.delimiter = delimiters.at(delimiter);
    // What nobody looks at is not read either, unless it is to be written.
    const bool toLookAt = commandLine.save.empty() && (commandLine.list || !commandLine.show.empty());
    commandLine.options.checkAll = !toLookAt;
    commandLine.options.encoding = encodings.at(encoding);
    commandLine.maxMemory = maxMemory.empty() ? availableMemory() : parseBytes(maxMemory).value();
    commandLine.print.precision = static_cast<int>(parseDigits(precision).value());
    commandLine.print.threshold = parseWhole(threshold).value();
    return commandLine;
}

} // namespace vexa::inspect
