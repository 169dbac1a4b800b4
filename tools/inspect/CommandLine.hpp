// The options of vexa-inspect.
#pragma once

#include "Inspect.hpp"

#include <foundation/vexadata/Print.hpp>

#include <CLI/CLI.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace vexa::inspect {

struct CommandLine {
    std::vector<std::string> files;
    Options options;
    std::uint64_t maxMemory = 0; ///< bytes
    bool list = false;
    std::vector<std::string> show;
    std::string save; ///< empty for none
    foundation::vexadata::PrintOptions print;
};

/// Declares the options with `app` and reads them. Throws CLI::ParseError, which is also how help and version
/// end the parsing.
CommandLine parseCommandLine(CLI::App& app, int argc, char** argv);

} // namespace vexa::inspect
