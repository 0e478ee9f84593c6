// Setting up games through the console: the position command, typed moves, the board print
// and the mirror commands, each checked through what "print" shows afterwards.
#include <gtest/gtest.h>

#include "engine_process.h"
#include "game_view.h"

namespace {

using Lines = std::vector<std::string>;

const std::string START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// The knight shuffle that returns to the start position every four plies.
std::string knightShuffle(int plies) {
    static const char* const CYCLE[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
    std::string moves;
    for (int i = 0; i < plies; i++) moves += std::string(i ? " " : "") + CYCLE[i % 4];
    return moves;
}

}  // namespace

// Each row: one position line, the reply, and the game that print shows afterwards.
TEST(Position, SetsUpTheGame) {
    struct Case {
        std::string line;
        Lines reply;
        std::string fen;
        std::string moves;
    };
    const Case cases[] = {
        {"position startpos", {}, START_FEN, ""},
        {"position startpos moves", {}, START_FEN, ""},
        {"position startpos moves e2e4 e7e5 g1f3",
         {},
         "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 1 2",
         "e2e4 e7e5 g1f3"},
        {"position fen " + START_FEN + " moves e2e4",
         {},
         "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1",
         "e2e4"},
        {"position fen 4k3/P7/8/8/8/8/8/4K3 w - - 0 1 moves a7a8",
         {},
         "Q3k3/8/8/8/8/8/8/4K3 b - - 0 1",
         "a7a8q"},
        // Illegal moves end the list; the moves before them stay made.
        {"position startpos moves e2e4 e7e5 e1e3 g1f3",
         {"Illegal move"},
         "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2",
         "e2e4 e7e5"},
        {"position startpos moves e7e5", {"Illegal move"}, START_FEN, ""},
        {"position fen 4k3/8/8/8/8/8/8/4K2R w - - 0 1 moves e1g1",
         {"Illegal move"},
         "4k3/8/8/8/8/8/8/4K2R w - - 0 1",
         ""},  // no right, no castling
        // How FEN fields are read (defaults, clamped counters, rights, en passant) is the
        // parser's own test; here one short FEN shows that the console passes them on.
        {"position fen 4k3/8/8/8/8/8/8/4K3 b", {}, "4k3/8/8/8/8/8/8/4K3 b - - 0 1", ""},
        {"position fen rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq - 0 3 moves e5f6",
         {"Illegal move"},
         "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq - 0 3",
         ""},
    };
    EngineProcess engine;
    engine.expectBanner();
    for (const Case& c : cases) {
        auto [reply, game] = commandAndGame(engine, c.line);
        EXPECT_EQ(reply, c.reply) << c.line;
        EXPECT_EQ(game.fen, c.fen) << c.line;
        EXPECT_EQ(game.moves, c.moves) << c.line;
    }
}

// A malformed position line changes nothing: the game set up before it stays, moves included.
TEST(Position, MalformedLineLeavesTheGame) {
    const std::string lines[] = {
        "position",
        "position ",
        "position startpos e2e4",
        "position startpos move e2e4",
        "position Startpos",
        "position  startpos",
        "position fen",
        "position fen 4k3/8/8/8/8/8/8/4K3",
        "position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1 e2e4",
        "position fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1 1 moves",
        "position FEN 4k3/8/8/8/8/8/8/4K3 w",
    };
    EngineProcess engine;
    engine.expectBanner();
    ASSERT_EQ(engine.command("position startpos moves d2d4 g8f6 c2c4"), Lines{});
    const GameView before = printedGame(engine);
    ASSERT_EQ(before.moves, "d2d4 g8f6 c2c4");
    for (const std::string& line : lines) {
        auto [reply, game] = commandAndGame(engine, line);
        EXPECT_EQ(reply, Lines{"Invalid position string"}) << line;
        EXPECT_EQ(game, before) << line;
    }
}

TEST(Position, TypedMoves) {
    EngineProcess engine;
    engine.expectBanner();
    EXPECT_EQ(engine.command("e2e4"), Lines{});
    EXPECT_EQ(engine.command("e2e5"), Lines{"Illegal move: e2e5"});
    EXPECT_EQ(engine.command("e2e4"), Lines{"Illegal move: e2e4"});  // the pawn has gone
    EXPECT_EQ(engine.command("c7c5 trailing words"), Lines{});       // only the first word counts
    EXPECT_EQ(engine.command("g1f3\r"), Lines{});                    // a GUI's carriage return
    EXPECT_EQ(engine.command("b8c6 \t"), Lines{});
    EXPECT_EQ(engine.command("xyz"), Lines{"Unknown command : xyz"});
    GameView game = printedGame(engine);
    EXPECT_EQ(game.fen, "r1bqkbnr/pp1ppppp/2n5/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 2 3");
    EXPECT_EQ(game.moves, "e2e4 c7c5 g1f3 b8c6");
    // A new position line replaces the typed game.
    EXPECT_EQ(engine.command("position startpos"), Lines{});
    EXPECT_EQ(printedGame(engine), (GameView{START_FEN, ""}));
}

// The state stack holds at most 880 plies: a longer game stops there with one line.
TEST(Position, GameTooLong) {
    const std::string TOO_LONG = "Game too long: the engine keeps at most 880 plies";
    const std::string FEN_AT_LIMIT = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 880 441";
    EngineProcess engine;
    engine.expectBanner();

    EXPECT_EQ(engine.command("position startpos moves " + knightShuffle(879)), Lines{});
    EXPECT_EQ(engine.command("f6g8"), Lines{});  // the 880th ply still fits
    EXPECT_EQ(printedGame(engine).fen, FEN_AT_LIMIT);
    EXPECT_EQ(engine.command("g1f3"), Lines{TOO_LONG});
    EXPECT_EQ(printedGame(engine), (GameView{FEN_AT_LIMIT, knightShuffle(880)}));

    EXPECT_EQ(engine.command("position startpos moves " + knightShuffle(880)), Lines{});
    EXPECT_EQ(printedGame(engine), (GameView{FEN_AT_LIMIT, knightShuffle(880)}));

    EXPECT_EQ(engine.command("position startpos moves " + knightShuffle(12000)), Lines{TOO_LONG});
    EXPECT_EQ(printedGame(engine), (GameView{FEN_AT_LIMIT, knightShuffle(880)}));
    EXPECT_EQ(engine.command("g1f3"), Lines{TOO_LONG});
    EXPECT_EQ(engine.command("e2e5"), Lines{"Illegal move: e2e5"});  // legality comes first
    // A refused FEN brings the whole long game back.
    auto [reply, game] = commandAndGame(engine, "position fen 4k3/4R3/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(reply, Lines{"Invalid FEN"});
    EXPECT_EQ(game, (GameView{FEN_AT_LIMIT, knightShuffle(880)}));

    // A new game starts from scratch.
    EXPECT_EQ(engine.command("position startpos moves e2e4"), Lines{});
    EXPECT_EQ(printedGame(engine).moves, "e2e4");
}

// The whole print of the start position, line by line.
TEST(Print, StartPosition) {
    const Lines expected = {
        "    A   B   C   D   E   F   G   H ",
        "",
        "   ░░░░    ░░░░    ░░░░    ░░░░    ",
        "8 ░BR░ BN ░BB░ BQ ░BK░ BB ░BN░ BR ",
        "   ░░░░    ░░░░    ░░░░    ░░░░    ",
        "       ░░░░    ░░░░    ░░░░    ░░░░",
        "7  BP ░BP░ BP ░BP░ BP ░BP░ BP ░BP░",
        "       ░░░░    ░░░░    ░░░░    ░░░░",
        "   ░░░░    ░░░░    ░░░░    ░░░░    ",
        "6 ░░░░    ░░░░    ░░░░    ░░░░    ",
        "   ░░░░    ░░░░    ░░░░    ░░░░    ",
        "       ░░░░    ░░░░    ░░░░    ░░░░",
        "5     ░░░░    ░░░░    ░░░░    ░░░░",
        "       ░░░░    ░░░░    ░░░░    ░░░░",
        "   ░░░░    ░░░░    ░░░░    ░░░░    ",
        "4 ░░░░    ░░░░    ░░░░    ░░░░    ",
        "   ░░░░    ░░░░    ░░░░    ░░░░    ",
        "       ░░░░    ░░░░    ░░░░    ░░░░",
        "3     ░░░░    ░░░░    ░░░░    ░░░░",
        "       ░░░░    ░░░░    ░░░░    ░░░░",
        "   ░░░░    ░░░░    ░░░░    ░░░░    ",
        "2 ░WP░ WP ░WP░ WP ░WP░ WP ░WP░ WP ",
        "   ░░░░    ░░░░    ░░░░    ░░░░    ",
        "       ░░░░    ░░░░    ░░░░    ░░░░",
        "1  WR ░WN░ WB ░WQ░ WK ░WB░ WN ░WR░",
        "       ░░░░    ░░░░    ░░░░    ░░░░",
        "",
        "    A   B   C   D   E   F   G   H ",
        "",
        "FEN: " + START_FEN,
        "EndGame Id: UNKNOWN",
        "",
        "Played moves : ",
        "",
        "Current ply : 0   Side to move : White     [King is NOT in Check !]",
        "Repetitions : 0",
        "Piece count : 32  Major White : 7  Major Black : 7",
    };
    EngineProcess engine;
    engine.expectBanner();
    EXPECT_EQ(engine.command("print"), expected);
    // Playing moves and coming back by a new position line prints the same board again.
    EXPECT_EQ(engine.command(Lines{"e2e4", "position startpos", "print"}), expected);
}

// The lines below the diagram: endgame id, played moves, ply, side, check, repetitions and
// piece counts.
TEST(Print, StatusLines) {
    struct Case {
        std::string setup;
        std::string id;
        int ply;
        const char* side;
        bool check;
        int repetitions, pieces, majorWhite, majorBlack;
    };
    // clang-format off
    const Case cases[] = {
        {"position startpos moves e2e4 f7f6 d1h5", "UNKNOWN", 3, "Black", true, 0, 32, 7, 7},
        {"position startpos moves g1f3 g8f6 f3g1 f6g8", "UNKNOWN", 4, "White", false, 1, 32, 7, 7},
        {"position startpos moves e2e4 d7d5 e4d5 d8d5 b1c3 d5a2", "UNKNOWN", 6, "White", false, 0, 29, 7, 7},
        {"position fen 4k3/8/8/8/8/8/8/R3K3 b - - 0 30", "KRK", 59, "Black", false, 0, 3, 1, 0},
        {"position fen 4k3/8/8/8/8/8/8/r3K3 w - - 0 1", "KRK", 0, "White", true, 0, 3, 0, 1},
        {"position fen 4k3/P7/8/8/8/8/8/4K3 w - - 0 1 moves a7a8q", "KQK", 1, "Black", true, 0, 3, 1, 0},
        {"position fen 4k3/8/8/8/8/8/P7/N3K3 w - - 0 1", "UNKNOWN", 0, "White", false, 0, 4, 1, 0},
    };
    // clang-format on
    EngineProcess engine;
    engine.expectBanner();
    for (const Case& c : cases) {
        const std::string MOVES = " moves ";
        const size_t movesAt = c.setup.find(MOVES);
        const std::string moves =
            movesAt == std::string::npos ? "" : c.setup.substr(movesAt + MOVES.size());
        const Lines expected = {
            "EndGame Id: " + c.id,
            "",
            "Played moves : " + moves,
            "",
            "Current ply : " + std::to_string(c.ply) + "   Side to move : " + c.side +
                "     [King is " + (c.check ? "" : "NOT ") + "in Check !]",
            "Repetitions : " + std::to_string(c.repetitions),
            "Piece count : " + std::to_string(c.pieces) +
                "  Major White : " + std::to_string(c.majorWhite) +
                "  Major Black : " + std::to_string(c.majorBlack),
        };
        ASSERT_EQ(engine.command(c.setup), Lines{}) << c.setup;
        Lines print = engine.command("print");
        ASSERT_EQ(print.size(), 37u) << c.setup;
        EXPECT_EQ(Lines(print.begin() + 30, print.end()), expected) << c.setup;
    }
}

// flip swaps the colours and mirrors the board top to bottom; flop mirrors it left to right.
TEST(Mirror, FlipAndFlop) {
    const std::string REFUSED = "flop: not possible while castling rights are held";
    struct Case {
        std::string setup, command, reply, fen;
    };
    // clang-format off
    const Case cases[] = {
        {"startpos moves e2e4", "flip", "", "rnbqkbnr/pppp1ppp/8/4p3/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
        {"startpos moves e2e4 d7d5 e4e5 f7f5", "flip", "", "rnbqkbnr/pppp1ppp/8/8/3PpP2/8/PPP1P1PP/RNBQKBNR b KQkq f3 0 3"},
        {"fen r3k3/8/8/8/8/8/8/4K2R w Kq - 0 1", "flip", "", "4k2r/8/8/8/8/8/8/R3K3 b Qk - 0 1"},
        {"fen 4k3/8/8/8/8/8/1P6/4K3 w - - 0 1", "flop", "", "3k4/8/8/8/8/8/6P1/3K4 w - - 0 1"},
        {"fen 4k3/8/8/2pP4/8/8/8/4K3 w - c6 0 1", "flop", "", "3k4/8/8/4Pp2/8/8/8/3K4 w - f6 0 1"},
        {"fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1", "flop", REFUSED, "4k3/8/8/8/8/8/8/4K2R w K - 0 1"},
        {"startpos", "flop", REFUSED, START_FEN},
    };
    // clang-format on
    EngineProcess engine;
    engine.expectBanner();
    for (const Case& c : cases) {
        auto [setupReply, original] = commandAndGame(engine, "position " + c.setup);
        ASSERT_EQ(setupReply, Lines{}) << c.setup;
        auto [reply, mirrored] = commandAndGame(engine, c.command);
        EXPECT_EQ(reply, c.reply.empty() ? Lines{} : Lines{c.reply}) << c.setup;
        EXPECT_EQ(mirrored.fen, c.fen) << c.setup;
        // Mirroring twice gives the position back.
        if (c.reply.empty()) {
            auto [again, back] = commandAndGame(engine, c.command);
            EXPECT_EQ(again, Lines{});
            EXPECT_EQ(back.fen, original.fen) << c.setup;
        }
    }
}
