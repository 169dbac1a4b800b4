// Runs that may end their process, each in a process of its own.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <new>
#include <system_error>
#include <type_traits>

namespace failure {

/// How a run ended: by itself, as std::terminate does, or as a bad pointer or a full stack does.
enum class End { itself, terminated, violation, hanging };

/// Runs in children of this process, which tell what they found in a `Told` that is zero at first.
template <class Told>
class Child {
    static_assert(std::is_trivially_copyable_v<Told>);

public:
    Child() {
        void* page = ::mmap(nullptr, sizeof(Told), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (page == MAP_FAILED) {
            throw std::system_error(errno, std::generic_category(), "mmap");
        }
        told_ = static_cast<Told*>(page);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() { ::munmap(told_, sizeof(Told)); }

    /// `work(told)`; what it writes into standard error is lost.
    template <class Work>
    End run(Work work) {
        *told_ = Told();
        const pid_t child = ::fork();
        if (child == 0) {
            constexpr rlimit none{0, 0};
            ::setrlimit(RLIMIT_CORE, &none);
            ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
            ::alarm(60);
            work(*told_);
            ::_exit(0);
        }
        int status = 0;
        if (child < 0 || ::waitpid(child, &status, 0) != child) {
            throw std::system_error(errno, std::generic_category(), "fork");
        }
        if (WIFEXITED(status)) {
            return WEXITSTATUS(status) == 0 ? End::itself : End::violation; // which sanitizers end so
        }
        switch (WTERMSIG(status)) {
        case SIGABRT:
            return End::terminated;
        case SIGALRM:
            return End::hanging;
        default:
            return End::violation;
        }
    }
    const Told& told() const { return *told_; }

private:
    Told* told_;
};

} // namespace failure
