// Setting up games through the console, each checked through what "print" shows afterwards.
#include <gtest/gtest.h>

#include "engine_process.h"
#include "game_view.h"

namespace {

const std::string START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
const std::string INVALID = "Invalid position string";

// The knight shuffle that returns to the start position every four plies.
std::string knightShuffle(int plies) {
    static const char* const CYCLE[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
    std::string moves;
    for (int i = 0; i < plies; i++) moves += std::string(i ? " " : "") + CYCLE[i % 4];
    return moves;
}

}  // namespace

// Each row, in turn on one engine: a line, its reply and the game print shows afterwards; a
// row without a FEN expects the game of the row before it, moves included.
TEST(Position, SetsUpTheGameOrLeavesIt) {
    // clang-format off
    const struct {
        std::string line, reply, fen = "", moves = "";
    } cases[] = {
        {"position startpos moves", "", START_FEN, ""},
        {"position fen 4k3/P7/8/8/8/8/8/4K3 w - - 0 1 moves a7a8", "", "Q3k3/8/8/8/8/8/8/4K3 b - - 0 1", "a7a8q"},  // a queen by default
        {"position fen 4k3/8/8/8/8/8/8/4K3 b", "", "4k3/8/8/8/8/8/8/4K3 b - - 0 1", ""},
        {"position startpos moves d2d4 g8f6 c2c4", "", "rnbqkb1r/pppppppp/5n2/8/2PP4/8/PP2PPPP/RNBQKBNR b KQkq - 0 2", "d2d4 g8f6 c2c4"},
        // A malformed line changes nothing.
        {"position", INVALID},
        {"position startpos e2e4", INVALID},
        {"position startpos move e2e4", INVALID},
        {"position Startpos", INVALID},
        {"position  startpos", INVALID},
        {"position fen 4k3/8/8/8/8/8/8/4K3", INVALID},
        {"position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1 e2e4", INVALID},
        {"position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1 1 moves", INVALID},
        {"position FEN 4k3/8/8/8/8/8/8/4K3 w", INVALID},
    };
    // clang-format on
    EngineProcess engine;
    engine.expectBanner();
    GameView expected;
    for (const auto& c : cases) {
        auto [reply, game] = commandAndGame(engine, c.line);
        if (!c.fen.empty()) expected = {c.fen, c.moves};
        EXPECT_EQ(reply, c.reply.empty() ? Lines{} : Lines{c.reply}) << c.line;
        EXPECT_EQ(game, expected) << c.line;
    }
}

// A move typed alone is played on the console's game; only its first word counts.
TEST(Position, TypedMoves) {
    EngineProcess engine;
    engine.expectBanner();
    expectTranscript(engine,
                     {{{"e2e4", "e2e5", "e2e4"}, {"Illegal move: e2e5", "Illegal move: e2e4"}},
                      {{"c7c5 trailing words", "g1f3\r", "b8c6 \t"}, {}}});
    EXPECT_EQ(printedGame(engine),
              (GameView{"r1bqkbnr/pp1ppppp/2n5/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 2 3",
                        "e2e4 c7c5 g1f3 b8c6"}));
}

// The game holds at most 880 plies: a longer one stops there with one line, and a refused FEN
// brings the whole long game back.
TEST(Position, GameTooLong) {
    const std::string TOO_LONG = "Game too long: the engine keeps at most 880 plies";
    const GameView AT_LIMIT{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 880 441",
                            knightShuffle(880)};
    EngineProcess engine;
    engine.expectBanner();
    expectTranscript(engine, {{{"position startpos moves " + knightShuffle(879), "f6g8"}, {}},
                              {{"g1f3"}, {TOO_LONG}}});
    EXPECT_EQ(printedGame(engine), AT_LIMIT);
    expectTranscript(engine, {{{"position startpos moves " + knightShuffle(12000)}, {TOO_LONG}},
                              {{"position fen 4k3/4R3/8/8/8/8/8/4K3 w - - 0 1"}, {"Invalid FEN"}}});
    EXPECT_EQ(printedGame(engine), AT_LIMIT);
    EXPECT_EQ(commandAndGame(engine, "position startpos moves e2e4").second.moves, "e2e4");
}

// The whole print of the start position, then the status lines (endgame id, ply, side, check,
// repetitions and piece counts) of other games, each replacing the one before.
TEST(Print, BoardAndStatusLines) {
    // clang-format off
    const std::string F = "    A   B   C   D   E   F   G   H ", L = "   ░░░░    ░░░░    ░░░░    ░░░░    ",
                      R = "       ░░░░    ░░░░    ░░░░    ░░░░";
    const Lines expected = {
        F, "", L, "8 ░BR░ BN ░BB░ BQ ░BK░ BB ░BN░ BR ", L, R, "7  BP ░BP░ BP ░BP░ BP ░BP░ BP ░BP░", R,
        L, "6 ░░░░    ░░░░    ░░░░    ░░░░    ", L, R, "5     ░░░░    ░░░░    ░░░░    ░░░░", R,
        L, "4 ░░░░    ░░░░    ░░░░    ░░░░    ", L, R, "3     ░░░░    ░░░░    ░░░░    ░░░░", R,
        L, "2 ░WP░ WP ░WP░ WP ░WP░ WP ░WP░ WP ", L, R, "1  WR ░WN░ WB ░WQ░ WK ░WB░ WN ░WR░", R,
        "", F, "", "FEN: " + START_FEN, "EndGame Id: UNKNOWN", "", "Played moves : ", "",
        "Current ply : 0   Side to move : White     [King is NOT in Check !]", "Repetitions : 0",
        "Piece count : 32  Major White : 7  Major Black : 7"};
    const std::pair<std::string, std::string> cases[] = {
        {"startpos moves e2e4 f7f6 d1h5", "EndGame Id: UNKNOWN | Current ply : 3   Side to move : Black     [King is in Check !] | Repetitions : 0 | Piece count : 32  Major White : 7  Major Black : 7"},
        {"startpos moves g1f3 g8f6 f3g1 f6g8", "EndGame Id: UNKNOWN | Current ply : 4   Side to move : White     [King is NOT in Check !] | Repetitions : 1 | Piece count : 32  Major White : 7  Major Black : 7"},
        {"fen 4k3/8/8/8/8/8/8/R3K3 b - - 0 30", "EndGame Id: KRK | Current ply : 59   Side to move : Black     [King is NOT in Check !] | Repetitions : 0 | Piece count : 3  Major White : 1  Major Black : 0"},
    };
    // clang-format on
    EngineProcess engine;
    engine.expectBanner();
    EXPECT_EQ(engine.command("print"), expected);
    for (const auto& [setup, status] : cases) {
        Lines print = engine.command(Lines{"position " + setup, "print"});
        ASSERT_EQ(print.size(), 37u) << setup;
        EXPECT_EQ(print[30] + " | " + print[34] + " | " + print[35] + " | " + print[36], status);
    }
}
