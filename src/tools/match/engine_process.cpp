#include "tools/match/engine_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <thread>

extern char** environ;

namespace match {

namespace {

// A write to an engine that has died must fail with EPIPE rather than end the runner.
void ignoreBrokenPipes() {
    static std::once_flag once;
    std::call_once(once, [] { signal(SIGPIPE, SIG_IGN); });
}

}  // namespace

bool EngineProcess::start(const std::vector<std::string>& argv, const std::string& directory) {
    if (argv.empty()) return false;
    ignoreBrokenPipes();
    // Close-on-exec keeps these pipes out of the engines that other games start meanwhile;
    // otherwise a dead engine's output would never reach end-of-file.
    int in[2], out[2];
    if (pipe2(in, O_CLOEXEC) != 0) return false;
    if (pipe2(out, O_CLOEXEC) != 0) {
        close(in[0]), close(in[1]);
        return false;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    if (!directory.empty()) posix_spawn_file_actions_addchdir_np(&actions, directory.c_str());
    // A process group of its own lets a kill reach whatever a wrapper script started.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes, 0);

    std::vector<char*> args;
    for (const std::string& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);
    int error = posix_spawnp(&pid, args[0], &actions, &attributes, args.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    close(in[0]), close(out[1]);
    toEngine = in[1], fromEngine = out[0];
    pending.clear();
    if (error != 0) {
        pid = -1;
        closePipes();
        return false;
    }
    return true;
}

bool EngineProcess::writeLine(std::string_view line) {
    if (toEngine < 0) return false;
    std::string text(line);
    text += '\n';
    size_t written = 0;
    while (written < text.size()) {
        ssize_t n = write(toEngine, text.data() + written, text.size() - written);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        written += size_t(n);
    }
    return true;
}

ReadStatus EngineProcess::readLine(std::string& line, Clock::time_point deadline) {
    for (;;) {
        size_t end = pending.find('\n');
        if (end != std::string::npos) {
            line = pending.substr(0, end);
            if (!line.empty() && line.back() == '\r') line.pop_back();
            pending.erase(0, end + 1);
            return ReadStatus::Line;
        }
        if (fromEngine < 0) return ReadStatus::Closed;
        auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) return ReadStatus::Timeout;
        pollfd request{fromEngine, POLLIN, 0};
        int ready = poll(&request, 1, int(left));
        if (ready <= 0) continue;  // interrupted or timed out: the loop checks the deadline
        char buffer[4096];
        ssize_t n = read(fromEngine, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            // A last line without its newline still counts as a line.
            if (!pending.empty()) pending += '\n';
            close(fromEngine);
            fromEngine = -1;
            continue;
        }
        pending.append(buffer, size_t(n));
    }
}

bool EngineProcess::running() {
    if (pid < 0) return false;
    int status;
    if (waitpid(pid, &status, WNOHANG) == 0) return true;
    pid = -1;
    return false;
}

void EngineProcess::stop(int graceMs) {
    if (pid >= 0) {
        writeLine("quit");
        auto deadline = Clock::now() + std::chrono::milliseconds(graceMs);
        while (running() && Clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        if (pid >= 0) {
            kill(-pid, SIGKILL);
            waitpid(pid, nullptr, 0);
            pid = -1;
        }
    }
    closePipes();
}

void EngineProcess::closePipes() {
    if (toEngine >= 0) close(toEngine);
    if (fromEngine >= 0) close(fromEngine);
    toEngine = fromEngine = -1;
}

}  // namespace match
