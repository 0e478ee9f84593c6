// Drives the real morvane binary through pipes, the way a chess GUI does: lines go to its
// standard input, replies are read from its standard output. Every wait has a deadline, so a
// silent or stuck engine fails the test instead of hanging it.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class EngineProcess {
  public:
    static constexpr int DEFAULT_TIMEOUT_MS = 5000;
    static constexpr const char* BANNER = "Morvane 4.0.853 x64 by Vannos, 2019.10.5";

    // Starts the engine in the given working directory; with none, in a fresh empty directory
    // of its own, so that no book file lying around changes what the engine reports.
    explicit EngineProcess(std::string workingDirectory = "");
    ~EngineProcess();
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    void sendLine(std::string_view line);  // the line and a newline
    void sendRaw(std::string_view bytes);  // exactly these bytes
    // Sends the line if the engine still reads its input; false (and no failure) when it has
    // gone, for the moments when either is allowed.
    bool trySendLine(std::string_view line);
    void closeInput();  // end of input, as when the GUI goes away

    // The next output line without its newline; nothing when the deadline passes or the engine
    // closed its output first.
    std::optional<std::string> readLine(int timeoutMs = DEFAULT_TIMEOUT_MS);
    // Exactly count lines; a shortfall is a test failure and returns what did arrive.
    std::vector<std::string> readLines(size_t count, int timeoutMs = DEFAULT_TIMEOUT_MS);
    // Lines up to and including the first one that satisfies the predicate (or equals the
    // given line). Running out of time or output is a test failure.
    std::vector<std::string> readLinesUntil(const std::function<bool(const std::string&)>& done,
                                            int timeoutMs = DEFAULT_TIMEOUT_MS);
    std::vector<std::string> readLinesUntil(const std::string& line,
                                            int timeoutMs = DEFAULT_TIMEOUT_MS);
    // Whatever complete lines arrive within the given time.
    std::vector<std::string> collectFor(int ms);

    // Reads the first line and checks that it is the banner.
    void expectBanner();
    // Sends the lines, then "isready", and returns everything printed before the "readyok":
    // since commands run in order, that is all the output of the lines sent.
    std::vector<std::string> command(const std::vector<std::string>& lines,
                                     int timeoutMs = DEFAULT_TIMEOUT_MS);
    std::vector<std::string> command(const std::string& line, int timeoutMs = DEFAULT_TIMEOUT_MS);

    // The exit status once the engine has ended (128 + signal number when a signal ended it).
    // Past the deadline the engine is killed and the test fails.
    std::optional<int> waitExit(int timeoutMs = DEFAULT_TIMEOUT_MS);
    // True while the engine runs; never waits.
    bool running();

    const std::string& errorOutput() const { return errors; }

  private:
    // Moves whatever the engine has written into the buffers, waiting at most timeoutMs for
    // something to arrive (or for room in its input pipe when wantWrite is set). Returns false
    // when nothing happened before the deadline.
    bool pump(int timeoutMs, bool wantWrite = false);
    // Writes all bytes; returns the reason when it cannot, empty on success.
    std::string write(std::string_view bytes);
    std::optional<std::string> takeLine();
    void reap(int status);

    pid_t pid = -1;
    int toEngine = -1, fromEngine = -1, errorsFromEngine = -1;
    std::string pending;  // output not yet handed out as lines
    std::string errors;   // everything written to standard error
    std::optional<int> exitStatus;
    std::string ownDirectory;  // removed again when the engine is gone
};
