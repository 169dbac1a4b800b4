#include "Check.hpp"

namespace vexa::check {

Checks allChecks() {
    Checks checks;
    for (const auto add : {&addCreationChecks, &addSharedChecks, &addDenseChecks, &addIterationChecks,
                           &addBufferChecks, &addCellChecks, &addStructChecks, &addTextChecks, &addEnumChecks,
                           &addSparseChecks, &addObjectChecks, &addFailureChecks})
        add(checks);
    return checks;
}

} // namespace vexa::check
