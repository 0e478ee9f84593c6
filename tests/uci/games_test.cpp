// Complete games of the engine against itself at fast time controls, two engine processes
// driven the way a tournament manager drives them: every move is checked legal by a third
// engine, every answer must come before the clock runs out, and each game ends by mate,
// stalemate, repetition, the fifty-move rule or a ply cap.
#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "engine_process.h"
#include "game_view.h"
#include "search_session.h"

using namespace search_session;

namespace {

enum class Ending { NO_LEGAL_MOVE, REPETITION, FIFTY_MOVES, PLY_CAP, FAULT };

const char* name(Ending e) {
    switch (e) {
        case Ending::NO_LEGAL_MOVE:
            return "mate or stalemate";
        case Ending::REPETITION:
            return "threefold repetition";
        case Ending::FIFTY_MOVES:
            return "fifty-move rule";
        case Ending::PLY_CAP:
            return "ply cap";
        default:
            return "fault";
    }
}

struct TimeControl {
    int baseMs, incrementMs;
    int movesPerPeriod;  // 0: the whole game; else the base time is given again after so many moves
    size_t plyCap;
};

// Placement, side, castling and en passant: what a repetition compares.
std::string positionPart(const std::string& fen) {
    std::istringstream in(fen);
    std::string field, key;
    for (int i = 0; i < 4 && in >> field; i++) key += field + " ";
    return key;
}

int halfMoveClock(const std::string& fen) {
    std::istringstream in(fen);
    std::string field;
    for (int i = 0; i < 5; i++) in >> field;
    return std::stoi(field);
}

void newGame(EngineProcess& engine) {
    for (const std::string& line : engine.command("ucinewgame"))
        EXPECT_TRUE(line.starts_with("info opening book initialized with ")) << line;
}

class SelfPlay : public ::testing::Test {
  protected:
    void SetUp() override {
        for (EngineProcess* e : {&first, &second}) {
            startReady(*e);
            Lines uci = e->command("uci");
            ASSERT_FALSE(uci.empty());
            EXPECT_EQ(uci.back(), "uciok");
        }
    }

    // Plays one game; `moves` receives it.
    Ending play(EngineProcess& white, EngineProcess& black, TimeControl tc,
                std::vector<std::string>& moves) {
        newGame(white);
        newGame(black);
        int clock[2] = {tc.baseMs, tc.baseMs};
        std::map<std::string, int> seen{{positionPart(START_FEN), 1}};
        for (;;) {
            const int side = int(moves.size() % 2);
            EngineProcess& mover = side == 0 ? white : black;
            const std::string position =
                "position startpos" + (moves.empty() ? "" : " moves " + join(moves));
            mover.sendLine(position);
            const int movesMade = int(moves.size() / 2);
            std::string go = "go wtime " + std::to_string(clock[0]) + " btime " +
                             std::to_string(clock[1]) + " winc " + std::to_string(tc.incrementMs) +
                             " binc " + std::to_string(tc.incrementMs);
            if (tc.movesPerPeriod)
                go += " movestogo " +
                      std::to_string(tc.movesPerPeriod - movesMade % tc.movesPerPeriod);
            const auto start = Clock::now();
            mover.sendLine(go);
            Lines lines = mover.readLinesUntil(isBestMoveLine, clock[side] + 2000);
            const int elapsed = int(msSince(start));
            const std::string context = "ply " + std::to_string(moves.size() + 1) + ", " + go;
            EXPECT_LT(elapsed, clock[side]) << "lost on time at " << context;
            if (lines.empty() || !isBestMoveLine(lines.back()) || elapsed >= clock[side])
                return Ending::FAULT;
            clock[side] += tc.incrementMs - elapsed;
            if (tc.movesPerPeriod && (movesMade + 1) % tc.movesPerPeriod == 0)
                clock[side] += tc.baseMs;

            if (lines.back() == "bestmove (none) ponder (none)") {
                // The referee agrees that the side to move has no move.
                referee.engine.sendLine(position);
                referee.engine.sendLine("go depth 1");
                EXPECT_EQ(referee.engine.readLinesUntil(isBestMoveLine).back(),
                          "bestmove (none) ponder (none)");
                return Ending::NO_LEGAL_MOVE;
            }
            auto best = parseBestMove(lines.back());
            EXPECT_TRUE(best.has_value()) << context << ": " << lines.back();
            if (!best) return Ending::FAULT;
            moves.push_back(best->move);

            auto [reply, game] =
                commandAndGame(referee.engine, "position startpos moves " + join(moves));
            EXPECT_EQ(reply, Lines{}) << context << ": " << best->move << " is not legal";
            EXPECT_EQ(game.moves, join(moves));
            if (!reply.empty()) return Ending::FAULT;
            if (++seen[positionPart(game.fen)] >= 3) return Ending::REPETITION;
            if (halfMoveClock(game.fen) >= 100) return Ending::FIFTY_MOVES;
            if (moves.size() >= tc.plyCap) return Ending::PLY_CAP;
        }
    }

    void expectStillAnswering() {
        for (EngineProcess* e : {&first, &second}) EXPECT_EQ(e->command(Lines{}), Lines{});
    }

    static constexpr const char* START_FEN =
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
    EngineProcess first, second;
    Referee referee;
};

TEST_F(SelfPlay, TwoGamesAtFastTimeControls) {
    const struct {
        TimeControl tc;
        bool firstIsWhite;
    } games[] = {
        {{1000, 100, 0, 80}, true},  // 1 s + 0.1 s
        {{1000, 0, 20, 80}, false},  // 1 s for every 20 moves
    };
    for (const auto& g : games) {
        std::vector<std::string> moves;
        Ending ending =
            g.firstIsWhite ? play(first, second, g.tc, moves) : play(second, first, g.tc, moves);
        EXPECT_NE(ending, Ending::FAULT) << join(moves);
        EXPECT_GT(moves.size(), 0u);
        std::cout << "[ game     ] " << moves.size() << " plies, " << name(ending) << "\n";
        expectStillAnswering();
    }
}

}  // namespace
