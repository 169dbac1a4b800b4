// Running the checks over a back-end.
#pragma once

#include "Report.hpp"

#include <chrono>
#include <string>
#include <vector>

namespace vexa::check {

struct Options {
    std::vector<std::string> families{}; ///< none means all
    std::vector<std::string> checks{};   ///< parts of "family: name"; none means all
    bool first = false;                  ///< no further than the first failure
    std::vector<std::string> required{}; ///< capabilities; "all" is one of them
    std::chrono::seconds limit{10};
    bool verbose = false;
};

/// Loads the back-end in a process of its own and leaves it there.
/// @return holds, or fails with the reason
Result tryLoading(const std::string& library, const Options& options);

/// The rows of the families asked for. A capability that is required and not offered fails.
std::vector<Row> runChecks(const std::string& library, const Checks& checks, const Options& options);

} // namespace vexa::check
