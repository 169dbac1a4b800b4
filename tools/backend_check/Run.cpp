#include "Run.hpp"

#include "Library.hpp"
#include "Samples.hpp"

#include <algorithm>
#include <sstream>

namespace vexa::check {

namespace {

bool contains(const std::vector<std::string>& list, const std::string& word) {
    return std::find(list.begin(), list.end(), word) != list.end();
}

bool isAsked(const Check& check, const Options& options) {
    const std::string name = check.family + ": " + check.name;
    return (options.families.empty() || contains(options.families, check.family)) &&
           (options.checks.empty() ||
            std::any_of(options.checks.begin(), options.checks.end(),
                        [&](const std::string& part) { return name.find(part) != std::string::npos; }));
}

class Runner {
public:
    Runner(const std::string& library, const Options& options) : library_(library), options_(options) {}

    Result run(const Check& check) {
        Result result = isLeftOut(check) ? leftOut(check) : inChild(check);
        if (!check.provides.empty() && result.verdict == Verdict::notOffered) {
            missing_.insert(check.provides);
            if (isRequired(check.provides)) {
                result.verdict = Verdict::fails;
                result.reason = "required and not offered: " + result.reason;
            }
        }
        return result;
    }

    /// Finds out in one process what is offered. False when that needs a look at each by itself: something
    /// fails, or is required and not offered.
    bool findOut(const Checks& checks) {
        const Result result =
            runInChild([&](const Step& step) { return missingOf(checks, step); }, options_.limit, true);
        std::istringstream names(result.reason);
        for (std::string name; names >> name;)
            missing_.insert(name);
        const bool sure = result.verdict == Verdict::holds &&
                          std::none_of(missing_.begin(), missing_.end(),
                                       [this](const std::string& name) { return isRequired(name); });
        if (!sure) missing_.clear();
        return sure;
    }

private:
    /// The capabilities that are not offered, with blanks between them.
    std::string missingOf(const Checks& checks, const Step& step) const {
        const Owned<ArrayFactoryImpl> factory = loadBackend(library_);
        Names missing;
        std::string names;
        for (const Check& check : checks) {
            if (check.provides.empty()) continue;
            try {
                Backend backend(share(*factory), missing, step);
                if (!offersAll(backend, check.needs)) throw NotOffered{};
                check.run(backend);
            } catch (const NotOffered&) {
                missing.insert(check.provides);
                names += check.provides + " ";
            }
        }
        return names;
    }

    bool isRequired(const std::string& capability) const {
        return contains(options_.required, "all") || contains(options_.required, capability);
    }
    bool isMissing(const std::string& capability) const { return missing_.count(capability) != 0; }
    bool isLeftOut(const Check& check) const {
        return std::any_of(check.needs.begin(), check.needs.end(),
                           [this](const std::string& need) { return isMissing(need); });
    }
    Result leftOut(const Check& check) const {
        std::string needs;
        for (const std::string& need : check.needs)
            if (isMissing(need)) needs.append(needs.empty() ? "needs " : ", ").append(need);
        return {Verdict::notOffered, needs};
    }
    Result inChild(const Check& check) const {
        return runInChild(
            [&](const Step& step) {
                step("loading the library");
                Owned<ArrayFactoryImpl> factory = loadBackend(library_);
                step("");
                Backend backend(std::move(factory), missing_, step);
                check.run(backend);
                return backend.note();
            },
            options_.limit, !options_.verbose);
    }

    const std::string& library_;
    const Options& options_;
    Names missing_;
};

} // namespace

Result tryLoading(const std::string& library, const Options& options) {
    return runInChild(
        [&](const Step& step) {
            step("loading the library");
            loadBackend(library);
            return std::string();
        },
        options.limit, !options.verbose);
}

std::vector<Row> runChecks(const std::string& library, const Checks& checks, const Options& options) {
    Runner runner(library, options);
    std::vector<Row> rows;
    const bool someOnly = !options.families.empty() || !options.checks.empty();
    const bool known = someOnly && runner.findOut(checks);
    for (const Check& check : checks) {
        const bool asked = isAsked(check, options);
        // What is offered has to be known in any case, and what is required is reported in any case.
        if (!asked && (known || check.provides.empty())) continue;
        Result result = runner.run(check);
        const bool fails = result.verdict == Verdict::fails;
        if (asked || fails) rows.push_back({&check, std::move(result)});
        if (fails && options.first) break;
    }
    return rows;
}

} // namespace vexa::check
