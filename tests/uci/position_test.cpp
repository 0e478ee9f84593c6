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
        // The en-passant square stays only where a pawn can take onto it.
        {"position startpos moves e2e4 d7d5 e4e5 f7f5",
         {},
         "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
         "e2e4 d7d5 e4e5 f7f5"},
        {"position startpos moves e2e4 d7d5 e4e5 f7f5 e5f6",
         {},
         "rnbqkbnr/ppp1p1pp/5P2/3p4/8/8/PPPP1PPP/RNBQKBNR b KQkq - 0 3",
         "e2e4 d7d5 e4e5 f7f5 e5f6"},
        {"position fen r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1 moves e1g1 e8c8",
         {},
         "2kr3r/8/8/8/8/8/8/R4RK1 w - - 2 2",
         "e1g1 e8c8"},
        {"position fen r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1 moves a1a8",
         {},
         "R3k2r/8/8/8/8/8/8/4K2R b Kk - 0 1",  // a rook taken on its square loses the right too
         "a1a8"},
        {"position fen 4k3/P7/8/8/8/8/8/4K3 w - - 0 1 moves a7a8",
         {},
         "Q3k3/8/8/8/8/8/8/4K3 b - - 0 1",
         "a7a8q"},
        {"position fen 4k3/P7/8/8/8/8/8/4K3 w - - 0 1 moves a7a8n",
         {},
         "N3k3/8/8/8/8/8/8/4K3 b - - 0 1",
         "a7a8n"},
        {"position fen 1r2k3/P7/8/8/8/8/8/4K3 w - - 0 1 moves a7b8r",
         {},
         "1R2k3/8/8/8/8/8/8/4K3 b - - 0 1",
         "a7b8r"},
        {"position fen 4k3/8/8/8/8/8/p7/4K3 b - - 0 1 moves a2a1b",
         {},
         "4k3/8/8/8/8/8/8/b3K3 w - - 0 2",
         "a2a1b"},
        // Illegal moves end the list; the moves before them stay made.
        {"position startpos moves e2e4 e7e5 e1e3 g1f3",
         {"Illegal move"},
         "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2",
         "e2e4 e7e5"},
        {"position startpos moves e2e4 e2e4",
         {"Illegal move"},
         "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1",
         "e2e4"},
        {"position startpos moves e7e5", {"Illegal move"}, START_FEN, ""},
        {"position startpos moves e2e4 castles",
         {"Illegal move"},
         "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1",
         "e2e4"},
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

// A coordinate move carries a promotion letter only when the pawn reaches the last rank.
TEST(Position, PromotionLetterOnOrdinaryPushIsIllegal) {
    EngineProcess engine;
    engine.expectBanner();
    EXPECT_EQ(engine.command("e2e4n"), Lines{"Illegal move: e2e4n"});
    EXPECT_EQ(engine.command("position startpos moves e2e4n"), Lines{"Illegal move"});
    EXPECT_EQ(printedGame(engine), (GameView{START_FEN, ""}));
}

// A failed FEN leaves the previous game in place, including its moves, whichever check fails.
TEST(Position, FailedFenKeepsThePreviousGame) {
    const std::string badFens[] = {
        "4k3/4R3/8/8/8/8/8/4K3 w - - 0 1",  // the side not to move is in check
        "4k3/8/8/8/8/8/8/4K3 x - - 0 1",   "4k3/8/8/8/8/8/8/4K3 w - e4 0 1",
        "8/8/8/8/8/8/8/8 w - - 0 1",
        "P3k3/8/8/8/8/8/8/4K3 w - - 0 1",  // material no game can reach
    };
    struct Setup {
        std::string line;
        std::string nextMove;  // must still be legal in the restored game
    };
    const Setup setups[] = {
        {"position startpos moves e2e4 e7e5", "g1f3"},
        {"position fen r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 3 20 moves e1g1 a8b8", "g1g2"},
        {"position startpos moves e2e4 d7d5 e4e5 f7f5", "e5f6"},  // en passant survives
        {"position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1"},  // so does castling
    };
    EngineProcess engine;
    engine.expectBanner();
    for (const Setup& setup : setups) {
        ASSERT_EQ(engine.command(setup.line), Lines{});
        const GameView before = printedGame(engine);
        for (const std::string& fen : badFens) {
            auto [reply, game] = commandAndGame(engine, "position fen " + fen);
            EXPECT_EQ(reply, Lines{"Invalid FEN"}) << fen;
            EXPECT_EQ(game, before) << setup.line << " / " << fen;
        }
        EXPECT_EQ(engine.command(setup.nextMove), Lines{}) << setup.line;
    }
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

// The lines below the diagram: ply, side, check, repetition, endgame id and piece counts.
TEST(Print, StatusLines) {
    struct Case {
        std::string setup;
        Lines status;  // the print from its "EndGame Id" line on
    };
    const Case cases[] = {
        {"position startpos moves e2e4 f7f6 d1h5",
         {"EndGame Id: UNKNOWN", "", "Played moves : e2e4 f7f6 d1h5", "",
          "Current ply : 3   Side to move : Black     [King is in Check !]", "Repetitions : 0",
          "Piece count : 32  Major White : 7  Major Black : 7"}},
        {"position startpos moves g1f3 g8f6 f3g1 f6g8",
         {"EndGame Id: UNKNOWN", "", "Played moves : g1f3 g8f6 f3g1 f6g8", "",
          "Current ply : 4   Side to move : White     [King is NOT in Check !]", "Repetitions : 1",
          "Piece count : 32  Major White : 7  Major Black : 7"}},
        {"position startpos moves e2e4 d7d5 e4d5 d8d5 b1c3 d5a2",
         {"EndGame Id: UNKNOWN", "", "Played moves : e2e4 d7d5 e4d5 d8d5 b1c3 d5a2", "",
          "Current ply : 6   Side to move : White     [King is NOT in Check !]", "Repetitions : 0",
          "Piece count : 29  Major White : 7  Major Black : 7"}},
        {"position fen 4k3/8/8/8/8/8/8/R3K3 b - - 0 30",
         {"EndGame Id: KRK", "", "Played moves : ", "",
          "Current ply : 59   Side to move : Black     [King is NOT in Check !]", "Repetitions : 0",
          "Piece count : 3  Major White : 1  Major Black : 0"}},
        {"position fen 4k3/8/8/8/8/8/8/r3K3 w - - 0 1",
         {"EndGame Id: KRK", "", "Played moves : ", "",
          "Current ply : 0   Side to move : White     [King is in Check !]", "Repetitions : 0",
          "Piece count : 3  Major White : 0  Major Black : 1"}},
        // The endgame id follows captures and promotions.
        {"position fen 4k3/8/8/8/8/8/8/r2QK3 w - - 0 1 moves d1a1",
         {"EndGame Id: KQK", "", "Played moves : d1a1", "",
          "Current ply : 1   Side to move : Black     [King is NOT in Check !]", "Repetitions : 0",
          "Piece count : 3  Major White : 1  Major Black : 0"}},
        {"position fen 4k3/P7/8/8/8/8/8/4K3 w - - 0 1 moves a7a8q",
         {"EndGame Id: KQK", "", "Played moves : a7a8q", "",
          "Current ply : 1   Side to move : Black     [King is in Check !]", "Repetitions : 0",
          "Piece count : 3  Major White : 1  Major Black : 0"}},
        {"position fen 4k3/8/8/8/8/8/P7/N3K3 w - - 0 1",
         {"EndGame Id: UNKNOWN", "", "Played moves : ", "",
          "Current ply : 0   Side to move : White     [King is NOT in Check !]", "Repetitions : 0",
          "Piece count : 4  Major White : 1  Major Black : 0"}},
    };
    EngineProcess engine;
    engine.expectBanner();
    for (const Case& c : cases) {
        ASSERT_EQ(engine.command(c.setup), Lines{}) << c.setup;
        Lines print = engine.command("print");
        ASSERT_EQ(print.size(), 37u) << c.setup;
        EXPECT_EQ(Lines(print.begin() + 30, print.end()), c.status) << c.setup;
    }
}

// Pieces sit on the square the FEN names: a8 is light, a1 is a blank square.
TEST(Print, DiagramOfAnEndgame) {
    EngineProcess engine;
    engine.expectBanner();
    ASSERT_EQ(engine.command("position fen k7/8/8/8/8/8/8/K6R w - - 0 1"), Lines{});
    Lines print = engine.command("print");
    ASSERT_EQ(print.size(), 37u);
    EXPECT_EQ(print[3], "8 ░BK░    ░░░░    ░░░░    ░░░░    ");
    EXPECT_EQ(print[24], "1  WK ░░░░    ░░░░    ░░░░    ░WR░");
    EXPECT_EQ(print[29], "FEN: k7/8/8/8/8/8/8/K6R w - - 0 1");
}

// flip swaps the colours and mirrors the board top to bottom; flop mirrors it left to right.
TEST(Mirror, FlipAndFlop) {
    struct Case {
        std::string setup;
        std::string command;
        Lines reply;
        std::string fen;
    };
    const Case cases[] = {
        {"position startpos moves e2e4",
         "flip",
         {},
         "rnbqkbnr/pppp1ppp/8/4p3/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
        {"position startpos moves e2e4 d7d5 e4e5 f7f5",
         "flip",
         {},
         "rnbqkbnr/pppp1ppp/8/8/3PpP2/8/PPP1P1PP/RNBQKBNR b KQkq f3 0 3"},
        {"position fen r3k3/8/8/8/8/8/8/4K2R w Kq - 0 1",
         "flip",
         {},
         "4k2r/8/8/8/8/8/8/R3K3 b Qk - 0 1"},
        {"position fen 4k3/8/8/8/8/8/1P6/4K3 w - - 0 1",
         "flop",
         {},
         "3k4/8/8/8/8/8/6P1/3K4 w - - 0 1"},
        {"position fen 4k3/8/8/2pP4/8/8/8/4K3 w - c6 0 1",
         "flop",
         {},
         "3k4/8/8/4Pp2/8/8/8/3K4 w - f6 0 1"},
        {"position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1",
         "flop",
         {"flop: not possible while castling rights are held"},
         "4k3/8/8/8/8/8/8/4K2R w K - 0 1"},
        {"position startpos",
         "flop",
         {"flop: not possible while castling rights are held"},
         START_FEN},
    };
    EngineProcess engine;
    engine.expectBanner();
    for (const Case& c : cases) {
        auto [setupReply, original] = commandAndGame(engine, c.setup);
        ASSERT_EQ(setupReply, Lines{}) << c.setup;
        auto [reply, mirrored] = commandAndGame(engine, c.command);
        EXPECT_EQ(reply, c.reply) << c.setup;
        EXPECT_EQ(mirrored.fen, c.fen) << c.setup;
        // Mirroring twice gives the position back.
        if (c.reply.empty()) {
            auto [again, back] = commandAndGame(engine, c.command);
            EXPECT_EQ(again, Lines{});
            EXPECT_EQ(back.fen, original.fen) << c.setup;
        }
    }
}
