#include "uci/uci_interface.h"

#include <chrono>
#include <exception>
#include <string_view>
#include <thread>
#include <vector>

#include "core/text.h"
#include "uci/console.h"

namespace {

struct Command {
    std::string_view word;
    bool (Engine::*handler)(std::string& line);
};

// Matched exactly and case-sensitively, first match wins.
constexpr Command COMMANDS[] = {
    {"quit", &Engine::quit},
    {"uci", &Engine::uci},
    {"isready", &Engine::isready},
    {"showoption", &Engine::showoption},
    {"position", &Engine::position},
    {"eval", &Engine::eval},
    {"print", &Engine::print},
    {"perft", &Engine::perft},
    {"divide", &Engine::divide},
    {"weights", &Engine::weights},
    {"setparam", &Engine::setparam},
    {"runwdlfen", &Engine::runwdlfen},
    {"flip", &Engine::flip},
    {"flop", &Engine::flop},
    {"tbtest", &Engine::tbtest},
};

}  // namespace

UciInterface::UciInterface() {
    consolePrint(identification() + " by Vannos, " + ENGINE_VERSION);
    input = std::make_unique<TInputThread>();
    engine = std::make_unique<Engine>();
}

// The engine goes first so that no search outlives it; the reader is joined last.
UciInterface::~UciInterface() {
    engine.reset();
    input.reset();
}

void UciInterface::commandLoop() {
    std::string line;
    for (;;) {
        if (!input->takeLine(line)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            continue;
        }
        if (!line.empty() && !dispatch(line)) return;
    }
}

// A failing handler never stops the loop: its exception is reported as one line and the next
// command is read.
bool UciInterface::dispatch(std::string line) {
    std::vector<std::string> tokens = splitTokens(line, ' ');
    const std::string& word = tokens[0];
    try {
        for (const Command& command : COMMANDS)
            if (command.word == word) return (engine.get()->*command.handler)(line);
        return engine->tryMove(word);
    } catch (const std::exception& e) {
        consolePrint("Error in command '" + word + "': " + e.what());
        return true;
    }
}
