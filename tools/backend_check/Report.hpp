// The table that the command prints.
#pragma once

#include "Check.hpp"
#include "Child.hpp"

#include <string>
#include <vector>

namespace vexa::check {

struct Row {
    const Check* check;
    Result result;
};

struct Totals {
    std::size_t hold = 0;
    std::size_t fail = 0;
    std::size_t notOffered = 0;
    std::size_t notChecked = 0;
};

Totals totalsOf(const std::vector<Row>& rows);

/// One line a check, in columns: family, check, verdict, reason. Long reasons go on below, indented.
std::string tableOf(const std::vector<Row>& rows);

/// "120 checks: 117 hold, 0 fail, 2 are not offered, 1 is not checked".
std::string summaryOf(const Totals& totals);

} // namespace vexa::check
