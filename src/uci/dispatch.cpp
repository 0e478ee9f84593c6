// The command table: the first word of a line, matched exactly and case-sensitively, selects
// the handler; a word that is no command is tried as a move.
#include <exception>
#include <string_view>

#include "core/console.h"
#include "core/text.h"
#include "search/timeman.h"
#include "uci/engine.h"

namespace {

struct Command {
    std::string_view word;
    bool (Engine::*handler)(std::string& line);
};

constexpr Command COMMANDS[] = {
    {"quit", &Engine::quit},           {"uci", &Engine::uci},
    {"isready", &Engine::isready},     {"setoption", &Engine::setoption},
    {"showoption", &Engine::showoption}, {"stop", &Engine::stop},
    {"position", &Engine::position},   {"ucinewgame", &Engine::ucinewgame},
    {"go", &Engine::go},
    {"ponderhit", &Engine::ponderhit}, {"eval", &Engine::eval},
    {"reset", &Engine::reset},         {"print", &Engine::print},
    {"perft", &Engine::perft},         {"divide", &Engine::divide},
    {"bench", &Engine::bench},
    {"weights", &Engine::weights},     {"setweight", &Engine::setweight},
    {"setparam", &Engine::setparam},   {"runcmdfile", &Engine::runcmdfile},
    {"loadepd", &Engine::loadepd},     {"runepd", &Engine::runepd},
    {"runwdlfen", &Engine::runwdlfen}, {"evaltest", &Engine::evaltest},
    {"flip", &Engine::flip},           {"flop", &Engine::flop},
    {"tbtest", &Engine::tbtest},
};

}  // namespace

// A failing handler never stops the loop: its exception is reported as one line.
bool Engine::dispatch(std::string line, int64_t readAt) {
    lineReadAt = readAt ? readAt : TimeManager::now();
    std::vector<std::string> tokens = splitTokens(line, ' ');
    const std::string word = tokens[0];
    try {
        for (const Command& command : COMMANDS)
            if (command.word == word) return (this->*command.handler)(line);
        return tryMove(word);
    } catch (const std::exception& e) {
        consolePrint("Error in command '" + word + "': " + e.what());
        return true;
    }
}
