#include "game_view.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine_process.h"

std::ostream& operator<<(std::ostream& out, const GameView& game) {
    return out << "{FEN: " << game.fen << " | moves: " << game.moves << "}";
}

namespace {

const std::string FILE_HEADER = "    A   B   C   D   E   F   G   H ";

GameView gameOfPrint(const std::vector<std::string>& print) {
    const std::string FEN = "FEN: ", MOVES = "Played moves : ";
    GameView game;
    int found = 0;
    for (const std::string& line : print) {
        if (line.starts_with(FEN)) game.fen = line.substr(FEN.size()), found++;
        if (line.starts_with(MOVES)) game.moves = line.substr(MOVES.size()), found++;
    }
    EXPECT_EQ(found, 2) << "print lacks its FEN or played-moves line";
    return game;
}

}  // namespace

GameView printedGame(EngineProcess& engine) { return gameOfPrint(engine.command("print")); }

std::pair<std::vector<std::string>, GameView> commandAndGame(EngineProcess& engine,
                                                             const std::string& line) {
    std::vector<std::string> output = engine.command(std::vector<std::string>{line, "print"});
    auto print = std::find(output.begin(), output.end(), FILE_HEADER);
    std::vector<std::string> reply(output.begin(), print);
    EXPECT_EQ(output.end() - print, 37) << "the print after " << line.substr(0, 60);
    return {reply, gameOfPrint(std::vector<std::string>(print, output.end()))};
}
