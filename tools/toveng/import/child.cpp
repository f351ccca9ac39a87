#include "child.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>

#include "interpreter.h"

namespace tool::sdc {

namespace {

using Clock = std::chrono::steady_clock;

constexpr rlim_t stackAtMost = rlim_t{64} << 20U;
constexpr rlim_t filesAtMost = 16;
constexpr int crashesAtMost = 20;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif
#else
constexpr bool isSanitized = false;
#endif

[[noreturn]] void fail(char const* what) {
    throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

void limit(__rlimit_resource_t resource, rlim_t most) {
    struct rlimit limits {};
    ::getrlimit(resource, &limits);
    limits.rlim_max = std::min(limits.rlim_max, most);
    limits.rlim_cur = limits.rlim_max;
    ::setrlimit(resource, &limits);
}

void limitChild(Request const& request) {
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    limit(RLIMIT_CPU, static_cast<rlim_t>(std::min(std::ceil(request.limit), 1e9)) + 1);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
    limit(RLIMIT_NOFILE, filesAtMost);
    limit(RLIMIT_STACK, stackAtMost);
    // A sanitizer reserves more address space than there is memory.
    if (!isSanitized) limit(RLIMIT_AS, request.memory);
}

void dieWithParent() {
    pid_t const parent = ::getppid();
    ::prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
    if (::getppid() != parent || parent == 1) ::_exit(exitLost);
}

/// Closes everything but the pipe and redirects the standard streams to nowhere.
int closeFiles(int pipe) {
    int const nowhere = ::open("/dev/null", O_RDWR);
    for (int stream = 0; stream < 3; ++stream) ::dup2(nowhere, stream);
    constexpr int kept = 3;
    ::dup2(pipe, kept);
    if (::close_range(kept + 1, ~0U, 0) != 0) {
        for (int file = kept + 1; file < 1024; ++file) ::close(file);
    }
    return kept;
}

[[noreturn]] void runChild(Request const& request, Shared& shared, int pipe, Plan const& plan) {
    dieWithParent();
    for (int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ, SIGCHLD}) std::signal(signal, SIG_DFL);
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        Outbox out(shared, closeFiles(pipe));
        out.resume();
        prepareTcl();
        limitChild(request);
        Run run(request, out, plan);
        if (plan.event == Event::none) limitWorker();
        run.runFiles();
        out.flush();
    } catch (std::bad_alloc const&) {
        ::_exit(exitMemory);
    } catch (...) {
        ::_exit(exitLost);
    }
    ::_exit(exitDone);
}

/// A child process, running or ended.
class Child {
public:
    Child(Request const& request, Shared& shared, Plan const& plan) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0) fail("pipe");
        pid_ = ::fork();
        if (pid_ == 0) runChild(request, shared, ends[1], plan);
        int const error = errno;
        ::close(ends[1]);
        pipe_ = ends[0];
        errno = error;
        if (pid_ < 0) {
            ::close(pipe_);
            fail("fork");
        }
    }
    ~Child() {
        if (pid_ > 0) {
            ::kill(pid_, SIGKILL);
            wait();
        }
        ::close(pipe_);
    }
    Child(Child const&) = delete;
    Child& operator=(Child const&) = delete;

    /// Receives what the child sends until it ends. Returns false if it had to be killed at the deadline.
    bool receive(Result& result, Clock::time_point deadline) {
        bool isInTime = true;
        auto const buffer = std::make_unique<char[]>(bufferSize);
        for (;;) {
            auto const left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
            if (left <= 0 && isInTime) {
                isInTime = false;
                ::kill(pid_, SIGKILL);
            }
            struct pollfd ready {
                pipe_, POLLIN, 0
            };
            constexpr long longest = 1000, grace = 300;
            int const events = ::poll(&ready, 1, static_cast<int>(isInTime ? std::min(left, longest) : grace));
            if (events == 0 && !isInTime) return false;
            if (events <= 0) continue;
            ssize_t const size = ::read(pipe_, buffer.get(), bufferSize);
            if (size > 0)
                result.take({buffer.get(), static_cast<std::size_t>(size)});
            else if (size == 0 || errno != EINTR)
                return isInTime;
        }
    }

    /// Returns the exit status of the child.
    int wait() {
        int status = 0;
        while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
        }
        pid_ = -1;
        return status;
    }

private:
    static constexpr std::size_t bufferSize = 65536;
    pid_t pid_ = -1;
    int pipe_ = -1;
};

struct Unmap {
    void operator()(Shared* shared) const { ::munmap(shared, sizeof(Shared)); }
};

std::unique_ptr<Shared, Unmap> makeShared() {
    void* const memory = ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) fail("mmap");
    return std::unique_ptr<Shared, Unmap>(new (memory) Shared);
}

std::string seconds(double limit) {
    std::string text = std::to_string(limit);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text + (limit == 1 ? " second" : " seconds");
}

std::string signalText(int signal) {
    return std::to_string(signal) + " (" + ::strsignal(signal) + ")";
}

}  // namespace

void limitWorker() {
    dieWithParent();
    limit(RLIMIT_NPROC, 0);
}

void exitUnlessEvent(pid_t worker, Shared& shared) {
    int status = 0;
    while (::waitpid(worker, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status) && WEXITSTATUS(status) == exitEvent) return;
    if (WIFEXITED(status)) ::_exit(WEXITSTATUS(status));
    shared.signal = WTERMSIG(status);
    ::_exit(exitSignal);
}

void runInChild(Request const& request, Result& result) {
    auto const shared = makeShared();
    auto const limit = std::chrono::duration<double>(std::min(request.limit, 1e9));
    auto const deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(limit);
    Plan plan;
    for (int crashes = 0;;) {
        shared->signal = 0;
        Child child(request, *shared, plan);
        bool const isInTime = child.receive(result, deadline);
        int const status = child.wait();
        result.takeRest(*shared);
        if (!isInTime) return result.breakOff("the run exceeded its time limit of " + seconds(request.limit));
        int const code = WIFEXITED(status) ? WEXITSTATUS(status) : exitSignal;
        int const signal = WIFSIGNALED(status) ? WTERMSIG(status) : shared->signal;
        switch (code) {
            case exitDone:
                return;
            case exitEvent:
                plan = {static_cast<Event>(shared->event), shared->command, shared->message};
                continue;
            case exitMemory:
                return result.breakOff("the run exceeded its memory limit");
            case exitSignal:
                // A stack overflow ends the command, not the run.
                if ((signal == SIGSEGV || signal == SIGBUS) && ++crashes <= crashesAtMost && shared->command > 0) {
                    result.undo();
                    plan = {Event::skip, shared->command, "ended by signal " + signalText(signal)};
                    continue;
                }
                if (signal == SIGXCPU)
                    return result.breakOff("the run exceeded its time limit of " + seconds(request.limit));
                return result.breakOff("the run was ended by signal " + signalText(signal));
            default:
                return result.breakOff("the run ended for an unknown reason");
        }
    }
}

}  // namespace tool::sdc
