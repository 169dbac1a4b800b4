// The list of checks.
#pragma once

#include "Backend.hpp"

#include <functional>
#include <string>
#include <vector>

namespace vexa::check {

struct Check {
    std::string family;
    std::string name;
    /// The sentence of the contract that the back-end is held to.
    std::string sentence;
    /// Capabilities without which the check is left out.
    std::vector<std::string> needs;
    /// The capability that this check finds out about, if any.
    std::string provides;
    /// Returns when the contract holds; otherwise throws Failure, NotOffered or what the back-end threw.
    std::function<void(Backend&)> run;
};

using Checks = std::vector<Check>;

/// Appends the checks of one family.
class Family {
public:
    Family(Checks& checks, std::string name) : checks_(checks), name_(std::move(name)) {}

    void add(std::string name, std::string sentence, std::vector<std::string> needs,
             std::function<void(Backend&)> run) {
        checks_.push_back(
            {name_, std::move(name), std::move(sentence), std::move(needs), {}, std::move(run)});
    }
    void addCapability(std::string name, std::string sentence, std::string provides,
                       std::vector<std::string> needs, std::function<void(Backend&)> run) {
        checks_.push_back({name_, std::move(name), std::move(sentence), std::move(needs), std::move(provides),
                           std::move(run)});
    }

private:
    Checks& checks_;
    std::string name_;
};

/// All of them, those that find out about capabilities first.
Checks allChecks();

void addCreationChecks(Checks& checks);
void addDenseChecks(Checks& checks);
void addSharedChecks(Checks& checks);
void addIterationChecks(Checks& checks);
void addCellChecks(Checks& checks);
void addStructChecks(Checks& checks);
void addTextChecks(Checks& checks);
void addEnumChecks(Checks& checks);
void addSparseChecks(Checks& checks);
void addObjectChecks(Checks& checks);
void addBufferChecks(Checks& checks);
void addFactoryChecks(Checks& checks);
void addNestingChecks(Checks& checks);
void addHoldingChecks(Checks& checks);
void addHandleChecks(Checks& checks);
void addThreadChecks(Checks& checks);
void addFailureChecks(Checks& checks);

} // namespace vexa::check
