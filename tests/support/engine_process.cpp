#include "engine_process.h"

#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace {

using Clock = std::chrono::steady_clock;

int msUntil(Clock::time_point deadline) {
    auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    return left.count() > 0 ? int(left.count()) : 0;
}

Clock::time_point deadlineIn(int ms) { return Clock::now() + std::chrono::milliseconds(ms); }

void closeFd(int& fd) {
    if (fd >= 0) close(fd);
    fd = -1;
}

// The tail of the output seen so far, for failure messages.
std::string lastLines(const std::vector<std::string>& lines) {
    std::string text;
    size_t from = lines.size() > 5 ? lines.size() - 5 : 0;
    for (size_t i = from; i < lines.size(); i++) text += "\n  > " + lines[i].substr(0, 200);
    return text.empty() ? " (no output)" : text;
}

}  // namespace

EngineProcess::EngineProcess(std::string workingDirectory) {
    // A write to an engine that has died must fail the test, not kill the test program.
    signal(SIGPIPE, SIG_IGN);

    if (workingDirectory.empty()) {
        std::string pattern = (std::filesystem::temp_directory_path() / "morvane-e2e-XXXXXX");
        if (!mkdtemp(pattern.data())) {
            ADD_FAILURE() << "cannot create a working directory: " << std::strerror(errno);
            return;
        }
        ownDirectory = workingDirectory = pattern;
    }

    int input[2], output[2], error[2];
    if (pipe2(input, O_CLOEXEC) || pipe2(output, O_CLOEXEC) || pipe2(error, O_CLOEXEC)) {
        ADD_FAILURE() << "pipe: " << std::strerror(errno);
        return;
    }
    // Everything the child needs is prepared before the fork: after it, only exec-safe calls.
    const char* binary = MORVANE_BINARY;
    char* const argv[] = {const_cast<char*>(binary), nullptr};
    pid = fork();
    if (pid == 0) {
        dup2(input[0], STDIN_FILENO);
        dup2(output[1], STDOUT_FILENO);
        dup2(error[1], STDERR_FILENO);
        if (chdir(workingDirectory.c_str()) != 0) _exit(126);
        execv(binary, argv);
        _exit(127);
    }
    close(input[0]);
    close(output[1]);
    close(error[1]);
    toEngine = input[1];
    fromEngine = output[0];
    errorsFromEngine = error[0];
    if (pid < 0) {
        ADD_FAILURE() << "fork: " << std::strerror(errno);
        closeFd(toEngine);
        closeFd(fromEngine);
        closeFd(errorsFromEngine);
        return;
    }
    for (int fd : {toEngine, fromEngine, errorsFromEngine})
        fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK);
}

EngineProcess::~EngineProcess() {
    closeFd(toEngine);
    if (pid > 0 && !exitStatus) {
        kill(pid, SIGKILL);
        int status = 0;
        waitpid(pid, &status, 0);
    }
    closeFd(fromEngine);
    closeFd(errorsFromEngine);
    if (!ownDirectory.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(ownDirectory, ignored);
    }
}

bool EngineProcess::pump(int timeoutMs, bool wantWrite) {
    pollfd fds[3];
    int count = 0;
    if (fromEngine >= 0) fds[count++] = {fromEngine, POLLIN, 0};
    if (errorsFromEngine >= 0) fds[count++] = {errorsFromEngine, POLLIN, 0};
    if (wantWrite && toEngine >= 0) fds[count++] = {toEngine, POLLOUT, 0};
    int ready = poll(fds, count, timeoutMs);
    if (ready <= 0) return false;
    for (int i = 0; i < count; i++) {
        if (!fds[i].revents) continue;
        if (fds[i].fd == toEngine) continue;  // writable (or broken): the writer finds out
        bool isOutput = fds[i].fd == fromEngine;
        char buffer[65536];
        ssize_t got = read(fds[i].fd, buffer, sizeof buffer);
        if (got > 0)
            (isOutput ? pending : errors).append(buffer, size_t(got));
        else if (got == 0 || (errno != EAGAIN && errno != EINTR))
            closeFd(isOutput ? fromEngine : errorsFromEngine);
    }
    return true;
}

std::optional<std::string> EngineProcess::takeLine() {
    size_t end = pending.find('\n');
    if (end == std::string::npos) return std::nullopt;
    std::string line = pending.substr(0, end);
    pending.erase(0, end + 1);
    return line;
}

std::string EngineProcess::write(std::string_view bytes) {
    auto deadline = deadlineIn(DEFAULT_TIMEOUT_MS);
    while (!bytes.empty()) {
        if (toEngine < 0) return "writing after the engine's input was closed";
        ssize_t written = ::write(toEngine, bytes.data(), bytes.size());
        if (written > 0) {
            bytes.remove_prefix(size_t(written));
            continue;
        }
        if (written < 0 && errno == EPIPE) return "the engine no longer reads its input (exited?)";
        if (written < 0 && errno != EAGAIN && errno != EINTR)
            return std::string("write: ") + std::strerror(errno);
        // The pipe is full: keep draining the engine's output meanwhile, otherwise an engine
        // blocked on writing would never read on.
        if (msUntil(deadline) == 0) return "the engine stopped reading its input";
        pump(std::min(msUntil(deadline), 50), true);
    }
    return "";
}

void EngineProcess::sendRaw(std::string_view bytes) {
    std::string failure = write(bytes);
    if (!failure.empty()) ADD_FAILURE() << failure;
}

bool EngineProcess::trySendLine(std::string_view line) {
    return write(std::string(line) + '\n').empty();
}

void EngineProcess::sendLine(std::string_view line) {
    std::string text(line);
    text += '\n';
    sendRaw(text);
}

void EngineProcess::closeInput() { closeFd(toEngine); }

std::optional<std::string> EngineProcess::readLine(int timeoutMs) {
    auto deadline = deadlineIn(timeoutMs);
    for (;;) {
        if (auto line = takeLine()) return line;
        if (fromEngine < 0) {
            if (pending.empty()) return std::nullopt;
            std::string rest;  // a last line without its newline
            std::swap(rest, pending);
            return rest;
        }
        int left = msUntil(deadline);
        if (left == 0) return std::nullopt;
        pump(left);
    }
}

std::vector<std::string> EngineProcess::readLines(size_t count, int timeoutMs) {
    auto deadline = deadlineIn(timeoutMs);
    std::vector<std::string> lines;
    while (lines.size() < count) {
        auto line = readLine(msUntil(deadline));
        if (!line) {
            ADD_FAILURE() << "expected " << count << " lines, got " << lines.size() << " within "
                          << timeoutMs << " ms:" << lastLines(lines);
            break;
        }
        lines.push_back(*line);
    }
    return lines;
}

std::vector<std::string> EngineProcess::readLinesUntil(
    const std::function<bool(const std::string&)>& done, int timeoutMs) {
    auto deadline = deadlineIn(timeoutMs);
    std::vector<std::string> lines;
    for (;;) {
        auto line = readLine(msUntil(deadline));
        if (!line) {
            ADD_FAILURE() << "the awaited line did not come within " << timeoutMs
                          << " ms; last lines:" << lastLines(lines);
            return lines;
        }
        lines.push_back(*line);
        if (done(*line)) return lines;
    }
}

std::vector<std::string> EngineProcess::readLinesUntil(const std::string& line, int timeoutMs) {
    return readLinesUntil([&](const std::string& text) { return text == line; }, timeoutMs);
}

std::vector<std::string> EngineProcess::collectFor(int ms) {
    auto deadline = deadlineIn(ms);
    std::vector<std::string> lines;
    while (int left = msUntil(deadline)) {
        pump(left);
        while (auto line = takeLine()) lines.push_back(*line);
        if (fromEngine < 0) break;
    }
    while (auto line = takeLine()) lines.push_back(*line);
    return lines;
}

void EngineProcess::expectBanner() {
    auto line = readLine();
    ASSERT_TRUE(line.has_value()) << "no banner";
    EXPECT_EQ(*line, BANNER);
}

std::vector<std::string> EngineProcess::command(const std::vector<std::string>& lines,
                                                int timeoutMs) {
    for (const std::string& line : lines) sendLine(line);
    sendLine("isready");
    std::vector<std::string> output = readLinesUntil("readyok", timeoutMs);
    if (!output.empty() && output.back() == "readyok") output.pop_back();
    return output;
}

std::vector<std::string> EngineProcess::command(const std::string& line, int timeoutMs) {
    return command(std::vector<std::string>{line}, timeoutMs);
}

void EngineProcess::reap(int status) {
    exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool EngineProcess::running() {
    if (pid <= 0 || exitStatus) return false;
    int status = 0;
    if (waitpid(pid, &status, WNOHANG) != pid) return true;
    reap(status);
    return false;
}

std::optional<int> EngineProcess::waitExit(int timeoutMs) {
    auto deadline = deadlineIn(timeoutMs);
    while (running()) {
        if (msUntil(deadline) == 0) {
            kill(pid, SIGKILL);
            int status = 0;
            waitpid(pid, &status, 0);
            reap(status);
            ADD_FAILURE() << "the engine did not exit within " << timeoutMs << " ms; killed";
            return std::nullopt;
        }
        // Keep reading so that an engine writing its last lines is not blocked by a full pipe.
        if (!pump(std::min(msUntil(deadline), 10))) usleep(1000);
    }
    // Collect what the engine wrote just before it ended, so that its output is complete.
    while ((fromEngine >= 0 || errorsFromEngine >= 0) && msUntil(deadline) > 0)
        pump(msUntil(deadline));
    return exitStatus;
}
