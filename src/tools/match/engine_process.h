// A UCI engine as a child process: its standard input and output are pipes held by the runner,
// every read has a deadline, and a process that does not leave when asked is killed.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace match {

using Clock = std::chrono::steady_clock;

enum class ReadStatus { Line, Timeout, Closed };

class EngineProcess {
  public:
    EngineProcess() = default;
    ~EngineProcess() { stop(0); }
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    // Starts argv[0] (looked up in PATH) in the directory, or in ours when it is empty. Its
    // standard error goes to /dev/null. False when the program cannot be started.
    bool start(const std::vector<std::string>& argv, const std::string& directory);
    // Writes the line and a newline; false when the engine no longer reads its input.
    bool writeLine(std::string_view line);
    // The next output line without its line end, waiting no longer than the deadline.
    ReadStatus readLine(std::string& line, Clock::time_point deadline);
    // Sends quit, gives the process graceMs to end, then kills it and its children.
    void stop(int graceMs);
    bool running();

  private:
    void closePipes();

    pid_t pid = -1;
    int toEngine = -1, fromEngine = -1;
    std::string pending;  // output read but not yet handed out as lines
};

}  // namespace match
