#include "Child.hpp"

#include "Expect.hpp"

#include <vexa/testing/FailingAllocations.hpp>

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <exception>
#include <new>
#include <system_error>

namespace vexa::check {

using testing::FailingAllocations;

namespace {

using Clock = std::chrono::steady_clock;

// A record is a letter, a text and a NUL.
constexpr char stepTag = 's';
constexpr char failureTag = 'x'; // found, and not yet the verdict
constexpr char endingTag = 't';  // how the process ends, in its own words
constexpr std::string_view verdictTags = "hfnc";

/// With which the thread sanitizer ends a process, see Sanitizers.cpp.
constexpr int raceStatus = 66;

int reportPipe = -1; // of the child: where its records go

void send(char tag, std::string_view text) noexcept {
    std::array<char, 4096> record;
    const std::size_t length = std::min(text.size(), record.size() - 2);
    record[0] = tag;
    std::memcpy(record.data() + 1, text.data(), length);
    std::replace(record.data() + 1, record.data() + 1 + length, '\0', ' ');
    record[length + 1] = '\0';
    const std::size_t size = length + 2;
    for (std::size_t sent = 0; sent < size;) {
        const ssize_t written = ::write(reportPipe, record.data() + sent, size - sent);
        if (written < 0 && errno != EINTR) return;
        if (written > 0) sent += static_cast<std::size_t>(written);
    }
}

[[noreturn]] void finish(Verdict verdict, std::string_view reason) noexcept {
    send(verdictTags[static_cast<std::size_t>(verdict)], reason);
    ::_exit(0); // no destructors: the back-end may be in any state
}

/// The failure is no verdict: what was being done at the time goes with it.
[[noreturn]] void reportTerminate() noexcept {
    std::string reason = "ended by std::terminate";
    if (std::current_exception() != nullptr) reason += " after " + describeException();
    send(endingTag, reason);
    ::_exit(0);
}

[[noreturn]] void beChild(const std::function<std::string(const Step&)>& work, bool quiet) noexcept {
    const rlimit noCoreFile{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCoreFile);
    if (quiet) {
        const int null = ::open("/dev/null", O_RDWR);
        ::dup2(null, STDOUT_FILENO);
        ::dup2(null, STDERR_FILENO);
    }
    std::set_terminate(&reportTerminate);
    listenToFailures([](const std::string& reason) { send(failureTag, reason); });
    try {
        finish(Verdict::holds, work([](std::string_view what) { send(stepTag, what); }));
    } catch (const Failure& failure) {
        finish(Verdict::fails, failure.reason);
    } catch (const NotOffered& missing) {
        finish(Verdict::notOffered, missing.reason);
    } catch (const NotChecked& unseen) {
        finish(Verdict::notChecked, unseen.reason);
    } catch (...) {
        finish(Verdict::fails, "throws " + describeException());
    }
}

/// The time that a process may take: seconds that it computes, so that a machine with much else to do does not make a back-end look
/// slow. One that waits for something that never comes computes nothing, and is out of time as well.
class TimeLimit {
public:
    TimeLimit(pid_t process, std::chrono::seconds limit) : limit_(limit), deadline_(Clock::now() + limit) {
        known_ = ::clock_getcpuclockid(process, &clock_) == 0;
    }

    /// Milliseconds until `isOver` has to be asked.
    int left() const {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - Clock::now()).count();
        return left < 0 ? 0 : static_cast<int>(left);
    }
    /// Gives another round to a process that has computed a part of its time since the last.
    bool isOver() {
        const std::chrono::nanoseconds computed = computedSoFar();
        const bool goesOn = computed < limit_ && computed - before_ > limit_ / 20;
        before_ = computed;
        deadline_ = Clock::now() + limit_;
        return !goesOn;
    }

private:
    std::chrono::nanoseconds computedSoFar() const {
        timespec time{};
        if (!known_ || ::clock_gettime(clock_, &time) != 0) return std::chrono::nanoseconds::max();
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }

    std::chrono::nanoseconds limit_;
    Clock::time_point deadline_;
    clockid_t clock_{};
    bool known_ = false;
    std::chrono::nanoseconds before_{0};
};

/// All that the child sends until it ends or the time is up.
std::string receive(int pipe, TimeLimit limit, bool& inTime) {
    std::string text;
    for (;;) {
        pollfd waiting{pipe, POLLIN, 0};
        const int ready = ::poll(&waiting, 1, limit.left());
        if (ready < 0 && errno == EINTR) continue;
        if (ready == 0 && !limit.isOver()) continue;
        inTime = ready > 0;
        if (!inTime) return text;
        std::array<char, 4096> chunk{};
        const ssize_t size = ::read(pipe, chunk.data(), chunk.size());
        if (size <= 0) return text;
        text.append(chunk.data(), static_cast<std::size_t>(size));
    }
}

/// A note that parent and child share.
class SharedNote {
public:
    SharedNote()
        : page_(::mmap(nullptr, sizeof(Note), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
        if (page_ == MAP_FAILED) throw OutOfMemory();
        new (page_) Note(false);
    }
    ~SharedNote() { ::munmap(page_, sizeof(Note)); }
    SharedNote(const SharedNote&) = delete;
    SharedNote& operator=(const SharedNote&) = delete;

    std::atomic<bool>& operator*() const noexcept { return *static_cast<Note*>(page_); }

private:
    using Note = std::atomic<bool>;
    void* page_;
};

std::string howItEnded(int status) {
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return "ended by signal " + std::to_string(signal) + " (" + ::strsignal(signal) + ")";
    }
    if (WEXITSTATUS(status) == raceStatus) return "a data race that the thread sanitizer found";
    return "the process left with exit status " + std::to_string(WEXITSTATUS(status));
}

/// The verdict among the records, or `ending` with the last step or the failure that it came after.
Result resultFrom(std::string_view records, std::string ending) {
    std::string lastStep;
    std::string failure;
    while (!records.empty()) {
        const std::string_view record = records.substr(0, records.find('\0'));
        records.remove_prefix(std::min(record.size() + 1, records.size()));
        const std::size_t verdict = verdictTags.find(record.empty() ? '\0' : record[0]);
        if (verdict != std::string_view::npos)
            return {static_cast<Verdict>(verdict), std::string(record.substr(1))};
        if (record.empty()) continue;
        if (record[0] == endingTag) {
            ending = record.substr(1);
            continue;
        }
        (record[0] == failureTag ? failure : lastStep) = record.substr(1);
        if (record[0] == stepTag) failure.clear();
    }
    if (!failure.empty()) return {Verdict::fails, failure + "; then " + ending};
    return {Verdict::fails, ending + (lastStep.empty() ? "" : " during: " + lastStep)};
}

} // namespace

Result runInChild(const std::function<std::string(const Step&)>& work, std::chrono::seconds limit,
                  bool quiet) {
    const SharedNote refused;
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
    const pid_t child = ::fork();
    if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) {
        ::close(ends[0]);
        reportPipe = ends[1];
        FailingAllocations::noteRefusals(&*refused);
        beChild(work, quiet);
    }
    ::close(ends[1]);
    bool inTime = false;
    const std::string records = receive(ends[0], TimeLimit(child, limit), inTime);
    ::close(ends[0]);
    if (!inTime) ::kill(child, SIGKILL);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {}
    // Neither a failure nor a refusal says anything about a back-end that had no memory. What cannot be seen
    // here needs none.
    Result result = resultFrom(records, inTime ? howItEnded(status)
                                               : "not done after " + std::to_string(limit.count()) + " s");
    const bool conclusive = result.verdict == Verdict::holds || result.verdict == Verdict::notChecked;
    if (*refused && !conclusive) throw OutOfMemory();
    return result;
}

} // namespace vexa::check
