// Drives the real morvane binary through pipes, every wait with a deadline, as a GUI does.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using Lines = std::vector<std::string>;

class EngineProcess {
  public:
    static constexpr int DEFAULT_TIMEOUT_MS = 5000;
    static constexpr const char* BANNER = "Morvane 4.0.853 x64 by Vannos, 2019.10.5";

    // Starts the engine in the directory; with none, in an empty one of its own.
    explicit EngineProcess(std::string workingDirectory = "");
    ~EngineProcess();
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    void sendLine(std::string_view line) { sendRaw(std::string(line) + '\n'); }
    void sendRaw(std::string_view bytes);     // a failure when the engine no longer reads
    bool trySendLine(std::string_view line);  // false, and no failure, when it no longer reads
    void closeInput();

    // The next line without its newline; nothing past the deadline or the end of output.
    std::optional<std::string> readLine(int timeoutMs = DEFAULT_TIMEOUT_MS);
    // Exactly count lines; a shortfall is a failure.
    Lines readLines(size_t count, int timeoutMs = DEFAULT_TIMEOUT_MS);
    // Lines up to the first that satisfies done (or equals the line); a shortfall is a failure.
    Lines readLinesUntil(const std::function<bool(const std::string&)>& done,
                         int timeoutMs = DEFAULT_TIMEOUT_MS);
    Lines readLinesUntil(const std::string& line, int timeoutMs = DEFAULT_TIMEOUT_MS);
    Lines collectFor(int ms);  // the complete lines that arrive within the time

    void expectBanner();
    // Sends the lines and "isready"; returns all printed before the "readyok".
    Lines command(const Lines& lines, int timeoutMs = DEFAULT_TIMEOUT_MS);
    Lines command(const std::string& line, int timeoutMs = DEFAULT_TIMEOUT_MS) {
        return command(Lines{line}, timeoutMs);
    }

    // The exit status (128 + signal number after a signal); past the deadline, a failure.
    std::optional<int> waitExit(int timeoutMs = DEFAULT_TIMEOUT_MS);
    bool running();
    pid_t processId() const { return pid; }
    const std::string& errorOutput() const { return errors; }

  private:
    bool pump(int timeoutMs);                   // moves what the engine wrote into the buffers
    std::string write(std::string_view bytes);  // the reason it cannot, or empty
    void reap(int status);

    pid_t pid = -1;
    int toEngine = -1, fromEngine = -1, errorsFromEngine = -1;
    std::string pending, errors;
    std::optional<int> exitStatus;
    std::string ownDirectory;  // removed when the engine is gone
};

// The lines sent and every line printed before the next "readyok", exact or "~regex".
struct Exchange {
    Lines send, expect;
};
void expectTranscript(EngineProcess& engine, const std::vector<Exchange>& rows,
                      int timeoutMs = EngineProcess::DEFAULT_TIMEOUT_MS);
