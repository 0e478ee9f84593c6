#include "engine_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <regex>

namespace {

using Clock = std::chrono::steady_clock;

Clock::time_point deadlineIn(int ms) { return Clock::now() + std::chrono::milliseconds(ms); }
int msUntil(Clock::time_point deadline) {
    using std::chrono::milliseconds;
    return std::max(0,
                    int(std::chrono::duration_cast<milliseconds>(deadline - Clock::now()).count()));
}
void closeFd(int& fd) {
    if (fd >= 0) close(std::exchange(fd, -1));
}

}  // namespace

EngineProcess::EngineProcess(std::string workingDirectory) {
    signal(SIGPIPE, SIG_IGN);  // a write to a dead engine fails the test, not the program
    if (workingDirectory.empty()) {
        std::string pattern = std::filesystem::temp_directory_path() / "morvane-e2e-XXXXXX";
        if (mkdtemp(pattern.data())) ownDirectory = workingDirectory = pattern;
    }
    int in[2], out[2], err[2];  // a failed mkdtemp leaves the directory empty
    if (workingDirectory.empty() || pipe2(in, O_CLOEXEC) || pipe2(out, O_CLOEXEC) ||
        pipe2(err, O_CLOEXEC)) {
        ADD_FAILURE() << "cannot set up the engine: " << strerror(errno);
        return;
    }
    const char* binary = MORVANE_BINARY;  // prepared before the fork: after it, exec-safe calls
    char* const argv[] = {const_cast<char*>(binary), nullptr};
    pid = fork();
    if (pid == 0) {
        dup2(in[0], STDIN_FILENO), dup2(out[1], STDOUT_FILENO), dup2(err[1], STDERR_FILENO);
        if (chdir(workingDirectory.c_str()) == 0) execv(binary, argv);
        _exit(127);
    }
    close(in[0]), close(out[1]), close(err[1]);
    toEngine = in[1], fromEngine = out[0], errorsFromEngine = err[0];
    if (pid < 0) ADD_FAILURE() << "fork: " << strerror(errno);
    for (int fd : {toEngine, fromEngine, errorsFromEngine})
        fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK);
}

EngineProcess::~EngineProcess() {
    closeFd(toEngine);
    if (pid > 0 && !exitStatus) kill(pid, SIGKILL), waitpid(pid, nullptr, 0);
    closeFd(fromEngine), closeFd(errorsFromEngine);
    std::error_code ignored;
    if (!ownDirectory.empty()) std::filesystem::remove_all(ownDirectory, ignored);
}

bool EngineProcess::pump(int timeoutMs) {
    pollfd fds[2] = {{fromEngine, POLLIN, 0}, {errorsFromEngine, POLLIN, 0}};
    if (poll(fds, 2, timeoutMs) <= 0) return false;
    for (pollfd& p : fds) {
        if (p.fd < 0 || !p.revents) continue;
        char buffer[65536];
        ssize_t got = read(p.fd, buffer, sizeof buffer);
        int& fd = p.fd == fromEngine ? fromEngine : errorsFromEngine;
        if (got > 0)
            (fd == fromEngine ? pending : errors).append(buffer, size_t(got));
        else if (got == 0 || (errno != EAGAIN && errno != EINTR))
            closeFd(fd);
    }
    return true;
}

std::string EngineProcess::write(std::string_view bytes) {
    auto deadline = deadlineIn(DEFAULT_TIMEOUT_MS);
    while (!bytes.empty()) {
        if (toEngine < 0) return "writing after the engine's input was closed";
        ssize_t written = ::write(toEngine, bytes.data(), bytes.size());
        if (written > 0)
            bytes.remove_prefix(size_t(written));
        else if (errno == EPIPE)
            return "the engine no longer reads its input";
        else if (msUntil(deadline) == 0)
            return "the engine stopped reading its input";
        else
            pump(10);  // the pipe is full: drain the output so that the engine reads on
    }
    return "";
}

void EngineProcess::sendRaw(std::string_view bytes) {
    if (std::string failure = write(bytes); !failure.empty()) ADD_FAILURE() << failure;
}

bool EngineProcess::trySendLine(std::string_view line) {
    return write(std::string(line) + '\n').empty();
}

void EngineProcess::closeInput() { closeFd(toEngine); }

std::optional<std::string> EngineProcess::readLine(int timeoutMs) {
    auto deadline = deadlineIn(timeoutMs);
    for (;;) {
        if (size_t end = pending.find('\n'); end != std::string::npos) {
            std::string line = pending.substr(0, end);
            pending.erase(0, end + 1);
            return line;
        }
        if (fromEngine < 0 && !pending.empty()) return std::exchange(pending, "");
        if (fromEngine < 0 || msUntil(deadline) == 0) return std::nullopt;
        pump(msUntil(deadline));
    }
}

Lines EngineProcess::readLines(size_t count, int timeoutMs) {
    size_t seen = 0;
    if (count == 0) return {};
    return readLinesUntil([&](const std::string&) { return ++seen == count; }, timeoutMs);
}

Lines EngineProcess::readLinesUntil(const std::function<bool(const std::string&)>& done,
                                    int timeoutMs) {
    auto deadline = deadlineIn(timeoutMs);
    Lines lines;
    while (auto line = readLine(msUntil(deadline))) {
        lines.push_back(*line);
        if (done(*line)) return lines;
    }
    std::string tail;  // the last lines that came, to show what the engine did instead
    for (size_t i = lines.size() > 5 ? lines.size() - 5 : 0; i < lines.size(); i++)
        tail += "\n  > " + lines[i].substr(0, 200);
    ADD_FAILURE() << "the awaited line did not come within " << timeoutMs
                  << " ms:" << (tail.empty() ? " (no output)" : tail);
    return lines;
}

Lines EngineProcess::readLinesUntil(const std::string& line, int timeoutMs) {
    return readLinesUntil([&](const std::string& text) { return text == line; }, timeoutMs);
}

Lines EngineProcess::collectFor(int ms) {
    auto deadline = deadlineIn(ms);
    Lines lines;
    while (auto line = readLine(msUntil(deadline))) lines.push_back(*line);
    return lines;
}

void EngineProcess::expectBanner() { EXPECT_EQ(readLine(), BANNER); }

Lines EngineProcess::command(const Lines& lines, int timeoutMs) {
    for (const std::string& line : lines) sendLine(line);
    sendLine("isready");
    Lines output = readLinesUntil("readyok", timeoutMs);
    if (!output.empty() && output.back() == "readyok") output.pop_back();
    return output;
}

void EngineProcess::reap(int status) {
    exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool EngineProcess::running() {
    int status = 0;
    if (pid <= 0 || exitStatus) return false;
    if (waitpid(pid, &status, WNOHANG) != pid) return true;
    reap(status);
    return false;
}

std::optional<int> EngineProcess::waitExit(int timeoutMs) {
    auto deadline = deadlineIn(timeoutMs);
    while (running()) {
        if (int status = 0; msUntil(deadline) == 0) {
            kill(pid, SIGKILL), waitpid(pid, &status, 0), reap(status);
            ADD_FAILURE() << "the engine did not exit within " << timeoutMs << " ms; killed";
            return std::nullopt;
        }
        if (!pump(10)) usleep(1000);  // keep reading, so that its last lines do not block it
    }
    while ((fromEngine >= 0 || errorsFromEngine >= 0) && msUntil(deadline) > 0)
        pump(msUntil(deadline));
    return exitStatus;
}

void expectTranscript(EngineProcess& engine, const std::vector<Exchange>& rows, int timeoutMs) {
    for (const Exchange& row : rows) {
        for (const std::string& line : row.send) engine.sendLine(line);
        engine.sendLine("isready");
        Lines want = row.expect, output = engine.readLines(want.size() + 1, timeoutMs);
        want.push_back("readyok");
        for (size_t i = 0; i < output.size(); i++)
            EXPECT_TRUE(want[i].starts_with("~")
                            ? std::regex_match(output[i], std::regex(want[i].substr(1)))
                            : output[i] == want[i])
                << (row.send.empty() ? "(nothing)" : row.send.front().substr(0, 60)) << ": line "
                << i + 1 << " [" << output[i] << "], expected [" << want[i] << "]";
    }
    EXPECT_EQ(engine.command(Lines{}), Lines{}) << "more output than the transcript expects";
}
