// The game as the board print shows it: the FEN and the moves played since it was set up.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <utility>

#include "engine_process.h"

struct GameView {
    std::string fen, moves;  // moves as after "Played moves : "
    bool operator==(const GameView&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const GameView& game) {
    return out << "{FEN: " << game.fen << " | moves: " << game.moves << "}";
}

// Sends the line and "print": returns what the line itself printed and the game after it.
inline std::pair<Lines, GameView> commandAndGame(EngineProcess& engine, const std::string& line) {
    const std::string FEN = "FEN: ", MOVES = "Played moves : ";
    Lines output = engine.command(Lines{line, "print"});
    auto print = std::find(output.begin(), output.end(), "    A   B   C   D   E   F   G   H ");
    EXPECT_EQ(output.end() - print, 37) << "the print after " << line.substr(0, 60);
    GameView game;
    for (auto it = print; it != output.end(); ++it) {
        if (it->starts_with(FEN)) game.fen = it->substr(FEN.size());
        if (it->starts_with(MOVES)) game.moves = it->substr(MOVES.size());
    }
    return {Lines(output.begin(), print), game};
}

inline GameView printedGame(EngineProcess& engine) { return commandAndGame(engine, "").second; }
