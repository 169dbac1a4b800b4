#include "Check.hpp"

namespace vexa::check {

Checks allChecks() {
    Checks checks;
    for (const auto add :
         {&addCreationChecks, &addFactoryChecks, &addSharedChecks, &addDenseChecks, &addIterationChecks,
          &addBufferChecks, &addCellChecks, &addStructChecks, &addNestingChecks, &addHoldingChecks,
          &addTextChecks, &addEnumChecks, &addSparseChecks, &addObjectChecks, &addHandleChecks,
          &addFailureChecks, &addThreadChecks})
        add(checks);
    return checks;
}

} // namespace vexa::check
