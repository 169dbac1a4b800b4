#include "Child.hpp"

#include "Expect.hpp"
#include "FailingAllocations.hpp"

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
#include <exception>
#include <new>
#include <system_error>

namespace vexa::check {

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

/// All that the child sends until it ends or the time is up.
std::string receive(int pipe, Clock::time_point deadline, bool& inTime) {
    std::string text;
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd waiting{pipe, POLLIN, 0};
        const int ready = ::poll(&waiting, 1, left.count() < 0 ? 0 : static_cast<int>(left.count()));
        if (ready < 0 && errno == EINTR) continue;
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
    const std::string records = receive(ends[0], Clock::now() + limit, inTime);
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
