#include "child.h"

#include <sstream>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <functional>

#include "figures.h"

namespace kovanix::bench {

namespace {

void run(const std::vector<std::string>& command, const std::function<void(std::string_view)>& written) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        giveUp("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    posix_spawn_file_actions_addclose(&actions, ends[1]);
    std::vector<std::string> words = command;
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    pid_t child = 0;
    if (::posix_spawn(&child, command.front().c_str(), &actions, nullptr, arguments.data(), environ) != 0)
        giveUp("can't start " + command.front());
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t size = ::read(ends[0], buffer.data(), buffer.size());
        if (size > 0)
            written({buffer.data(), static_cast<std::size_t>(size)});
        else if (size == 0 || errno != EINTR)
            break;
    }
    ::close(ends[0]);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        giveUp("failed: " + command.front());
}

}  // namespace

std::string neighbour(const std::string& program) {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / program;
}

std::string outputOf(const std::vector<std::string>& command) {
    std::string all;
    run(command, [&all](std::string_view part) { all += part; });
    return all;
}

double millisecondsToReady(const std::vector<std::string>& command) {
    using Clock = std::chrono::steady_clock;
    std::string all;
    double milliseconds = -1;
    const auto start = Clock::now();
    run(command, [&](std::string_view part) {
        all += part;
        if (milliseconds < 0 && all.find("ready\n") != std::string::npos)
            milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    });
    if (milliseconds < 0)
        giveUp("never ready (is a till running?): " + command.front());
    return milliseconds;
}

double rawListRead(const std::string& folder) {
    std::istringstream output(outputOf({neighbour("bench_list_raw"), "--folder", folder, "--runs", "2"}));
    double first = 0;
    double second = 0;
    if (!(output >> first >> second))
        giveUp("bench_list_raw has not read the list");
    return second;
}

}  // namespace kovanix::bench
