#include "CopyProcesses.h"

#include "Interrupt.h"
#include "ToolError.h"

#include <atomic>
#include <condition_variable>
#include <csignal>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr const char* VVRoutine = "VFRunCopies";

/// What a process printed, and how it ended.
struct Outcome
{
    std::string output;
    int status = -1;  ///< -1: it didn't start
};

/// Reads until the other end is closed; passes on a signal that this process has got.
std::string VFReadAll(int pipe, pid_t child)
{
    constexpr int interval = 200;
    std::string text;
    bool told = false;
    for (;;) {
        pollfd ready{pipe, POLLIN, 0};
        if (poll(&ready, 1, interval) <= 0) {
            if (VDInterruptGuard::IsInterrupted() && !std::exchange(told, true))
                kill(child, SIGTERM);
            continue;
        }
        char block[4096];
        const ssize_t got = read(pipe, block, sizeof block);
        if (got > 0)
            text.append(block, static_cast<std::size_t>(got));
        else if (got == 0 || errno != EINTR)
            return text;
    }
}

Outcome VFRunProcess(const std::vector<std::string>& arguments)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return {};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::vector<char*> values;
    for (const std::string& argument : arguments)
        values.push_back(const_cast<char*>(argument.c_str()));
    values.push_back(nullptr);
    pid_t child = 0;
    const int failure = posix_spawn(&child, "/proc/self/exe", &actions, nullptr, values.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    Outcome outcome;
    if (failure == 0) {
        outcome.output = VFReadAll(ends[0], child);
        while (waitpid(child, &outcome.status, 0) < 0 && errno == EINTR) {
        }
    }
    close(ends[0]);
    return outcome;
}

void VFFinish(VDBatchItem& item, const Outcome& outcome)
{
    item.document = VDJson::parse(outcome.output, nullptr, false);
    const bool isDocument = item.document.is_object();
    if (isDocument && !item.document.contains("errors") && outcome.status == 0) {
        item.state = VDBatchItem::State::Copied;
        return;
    }
    item.state = VDBatchItem::State::Failed;
    if (isDocument && item.document.contains("errors")) {
        for (const VDJson& error : item.document["errors"])
            item.errors.push_back({error.value("code", 0), error.value("text", ""), error.value("routine", "")});
        return;
    }
    const std::string end = outcome.status == -1          ? "didn't start"
                            : WIFSIGNALED(outcome.status) ? "was ended by signal " + std::to_string(WTERMSIG(outcome.status))
                                                          : "ended without a result";
    item.errors.push_back({DaxToolError::Incomplete, "The process that makes the copy " + end, VVRoutine});
}

void VFCopy(VDBatchItem& item)
{
    if (item.state != VDBatchItem::State::Waiting)
        return;
    if (VDInterruptGuard::IsInterrupted()) {
        item.state = VDBatchItem::State::Failed;
        item.errors.push_back({DaxToolError::Interrupted, "Interrupted by a signal; the copy was not begun", VVRoutine});
        return;
    }
    std::vector<std::string> arguments = {"dax", "copy", "--json", "--quiet"};
    arguments.insert(arguments.end(), item.arguments.begin(), item.arguments.end());
    VFFinish(item, VFRunProcess(arguments));
}

}  // namespace

void VFRunCopies(std::vector<VDBatchItem>& items, int processes, const std::function<void(VDBatchItem&)>& done)
{
    const VDInterruptGuard interrupts;
    std::atomic<std::size_t> next = 0;
    std::vector<bool> ready(items.size());
    std::mutex mutex;
    std::condition_variable changed;
    // A thread for each process: all that it does is to wait.
    std::vector<std::jthread> threads;
    for (int count = 0; count < processes; ++count)
        threads.emplace_back([&] {
            for (std::size_t index = next++; index < items.size(); index = next++) {
                VFCopy(items[index]);
                const std::lock_guard lock(mutex);
                ready[index] = true;
                changed.notify_one();
            }
        });
    for (std::size_t index = 0; index < items.size(); ++index) {
        {
            std::unique_lock lock(mutex);
            changed.wait(lock, [&] { return ready[index]; });
        }
        done(items[index]);
    }
}
