// The game as the board print shows it: the FEN and the moves played since it was set up.
#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

class EngineProcess;

struct GameView {
    std::string fen;
    std::string moves;  // blank-separated coordinate moves, as after "Played moves : "

    bool operator==(const GameView&) const = default;
};

std::ostream& operator<<(std::ostream& out, const GameView& game);

// Sends "print" and picks the FEN and the played moves out of the reply.
GameView printedGame(EngineProcess& engine);

// Sends the line and "print" together, saving a round trip: returns what the line itself
// printed and the game after it.
std::pair<std::vector<std::string>, GameView> commandAndGame(EngineProcess& engine,
                                                             const std::string& line);
