// Command files: text files of engine commands, one a line, run as if typed. They serve as the
// engine's configuration files.
#include <fstream>

#include "core/console.h"
#include "core/text.h"
#include "uci/engine.h"

namespace {
// A file that runs itself would otherwise recurse until the stack runs out.
constexpr int MAX_NESTING = 16;
}

// Lines of two characters or fewer are skipped; a "quit" line has no effect because the
// dispatcher's answer is ignored.
bool Engine::runcmdfile(std::string& line) {
    std::vector<std::string> tokens = splitTokens(line, ' ');
    if (tokens.size() < 2) {
        consolePrint("usage: runCmdFile <filename>");
        return true;
    }
    const std::string& name = tokens[1];
    std::ifstream in(name);
    if (!in) {
        consolePrint("File " + name + " not found");
        return true;
    }
    if (commandFileDepth >= MAX_NESTING) {
        consolePrint("runCmdFile: " + name + " skipped, command files nested too deeply");
        return true;
    }
    commandFileDepth++;
    for (std::string command; readLine(in, command);)
        if (command.size() > 2) dispatch(command);
    commandFileDepth--;
    return true;
}
