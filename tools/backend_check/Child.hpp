// Every check runs in a process of its own, so that nothing that a back-end does can take the report away.
#pragma once

#include <chrono>
#include <functional>
#include <new>
#include <string>
#include <string_view>

namespace vexa::check {

enum class Verdict { holds, fails, notOffered, notChecked };

struct Result {
    Verdict verdict;
    std::string reason; ///< or a remark
};

using Step = std::function<void(std::string_view)>;

/// The system gave the child less memory than the check needs: nothing is known about the back-end.
class OutOfMemory : public std::bad_alloc {};

/// Runs `work`, which returns a remark or throws, in a child process. A child that crashes, hangs or leaves
/// gives `fails` with what it was doing. It hangs when it has computed for `limit`, or next to nothing for so long. With `quiet` it prints nothing. Throws OutOfMemory, and
/// std::system_error when there can be no child.
Result runInChild(const std::function<std::string(const Step&)>& work, std::chrono::seconds limit,
                  bool quiet);

} // namespace vexa::check
