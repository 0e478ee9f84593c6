// Runs a command line through the shell: its exit status and all it printed, both streams.
#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <string>

struct ToolRun {
    int status;  // -1 when it did not exit normally
    std::string output;
};

inline ToolRun runTool(const std::string& command) {
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    std::string output;
    char buffer[4096];
    while (size_t n = fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, n);
    int status = pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}
