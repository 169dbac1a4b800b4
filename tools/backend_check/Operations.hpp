// The operations of the contract one by one: made to fail, repeated, asked on several threads.
#pragma once

#include "Samples.hpp"

#include <vexa/testing/FailingAllocations.hpp>

#include <functional>
#include <string>
#include <vector>

namespace vexa::check {

using testing::FailingAllocations;

/// Around the calls in which allocations are to fail: the n-th of all that they make, and with `onwards` all
/// that follow.
class Trial {
public:
    Trial() = default;
    Trial(std::size_t number, bool onwards) : left_(number), onwards_(onwards) {}

    template <class F>
    auto operator()(F call) {
        if (left_ == 0) return call();
        struct Armed {
            explicit Armed(Trial& trial) : trial_(trial) {
                FailingAllocations::failAt(trial.left_, trial.onwards_);
            }
            ~Armed() {
                trial_.count();
                FailingAllocations::failAt(0);
            }
            Trial& trial_;
        } const armed(*this);
        return call();
    }
    /// Whether an allocation has failed.
    bool fired() const noexcept { return fired_; }

private:
    /// After a call that came back or threw.
    void count() noexcept {
        fired_ = fired_ || FailingAllocations::fired();
        if (fired_)
            left_ = onwards_ ? 1 : 0;
        else
            left_ -= FailingAllocations::allocations();
    }

    std::size_t left_ = 0;
    bool onwards_ = false;
    bool fired_ = false;
};

/// One operation. It goes through `trial`; what it gives is looked at afterwards. A write that comes back is
/// noted in the model.
struct Operation {
    std::string name;
    std::string
        kind; ///< name of a kind of array, "number" or "any"; "factory" for an operation without an array
    bool constant = false; ///< may be asked on several threads at once
    std::vector<std::string> needs{};
    std::function<void(const Backend&, Subject& subject, Trial& trial)> run{};
    bool once = false; ///< the array is of no use afterwards
};

const std::vector<Operation>& operations();

/// Whether an operation is one of arrays of this kind, and is offered.
bool applies(const Backend& backend, const Operation& operation, const Sample& sample);

/// An operation that has to be refused: it throws, and nothing is lost.
struct Refusal {
    std::string name;
    std::string kind;
    std::vector<std::string> needs{};
    std::function<void(const Backend&, ArrayImpl& array)> run{};
};

const std::vector<Refusal>& refusals();

/// A subject of its own, of few elements or of 1200; with `copied` a copy shares with it.
Subject newSubject(const Backend& backend, const Sample& sample, const Origin& origin, bool copied,
                   std::size_t pattern = counting, bool large = false);

} // namespace vexa::check
