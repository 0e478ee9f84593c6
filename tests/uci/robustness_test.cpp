// Bad input never hurts: garbage, huge lines, every broken FEN shape and floods of commands each
// get their one line (or none), the game in memory stays as it was, and the engine keeps
// answering and finally exits cleanly.
#include <gtest/gtest.h>

#include <random>

#include "engine_process.h"
#include "game_view.h"

namespace {

using Lines = std::vector<std::string>;

const std::string GAME = "position startpos moves e2e4 c7c5 g1f3 d7d6";
const std::string GAME_FEN = "rnbqkbnr/pp2pppp/3p4/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 0 3";

// Starts an engine with a game that every test checks is still there afterwards.
class Robustness : public ::testing::Test {
  protected:
    void SetUp() override {
        engine.expectBanner();
        ASSERT_EQ(engine.command(GAME), Lines{});
        ASSERT_EQ(printedGame(engine), expectedGame);
    }

    // The engine still answers, still holds its game, quits with status 0 and wrote nothing
    // to its error output along the way.
    void expectUnharmed() {
        EXPECT_EQ(printedGame(engine), expectedGame);
        engine.sendLine("quit");
        EXPECT_EQ(engine.waitExit(), 0);
        EXPECT_EQ(engine.errorOutput(), "");
    }

    EngineProcess engine;
    GameView expectedGame{GAME_FEN, "e2e4 c7c5 g1f3 d7d6"};
};

// What the console answers to a line that is no command: its first word, after trailing blanks
// and tabs are dropped.
std::string unknownCommandReply(std::string line) {
    size_t end = line.find_last_not_of(" \t");
    line.erase(end == std::string::npos ? 0 : end + 1);
    return "Unknown command : " + line.substr(0, line.find(' '));
}

}  // namespace

TEST_F(Robustness, RandomByteLines) {
    std::mt19937 random(20191005);
    std::uniform_int_distribution<int> length(1, 120), byte(0, 255);
    Lines expected;
    std::string script;
    for (int i = 0; i < 80; i++) {
        std::string line;
        for (int n = length(random); n > 0; n--) {
            char c = char(byte(random));
            if (c != '\n') line += c;
        }
        if (line.empty()) continue;
        script += line + "\n";
        expected.push_back(unknownCommandReply(line));
    }
    engine.sendRaw(script);
    EXPECT_EQ(engine.command(Lines{}), expected);
    expectUnharmed();
}

TEST_F(Robustness, HundredKilobyteLines) {
    const size_t SIZE = 100 * 1024;
    std::string repeatedMove;
    while (repeatedMove.size() < SIZE) repeatedMove += " e2e4";
    std::string words;
    while (words.size() < SIZE) words += " a b";
    struct Case {
        std::string line;
        Lines reply;
    };
    const Case cases[] = {
        {std::string(SIZE, 'x'), {"Unknown command : " + std::string(SIZE, 'x')}},
        {"xyz" + words, {"Unknown command : xyz"}},
        {std::string(SIZE, ' '), {"Unknown command : "}},
        {std::string(SIZE, ' ') + "isready", {"Unknown command : "}},
        {"position fen " + std::string(SIZE, 'p') + " w", {"Invalid FEN"}},
        {"position fen " + std::string(SIZE, '/') + " w", {"Invalid FEN"}},
        {"position startpos" + words, {"Invalid position string"}},
        {"perft " + std::string(SIZE, '9'), {"usage: perft <depth>"}},
        {"divide" + words, {"usage: divide <depth>"}},
        {"eval" + words, {"Detailed evaluation information not available!"}},
    };
    for (const Case& c : cases) {
        auto [reply, game] = commandAndGame(engine, c.line);
        EXPECT_EQ(reply, c.reply) << c.line.substr(0, 40);
        EXPECT_EQ(game, expectedGame) << c.line.substr(0, 40);
    }
    // A long move list played up to its first illegal move replaces the game.
    EXPECT_EQ(engine.command("position startpos moves" + repeatedMove), Lines{"Illegal move"});
    EXPECT_EQ(printedGame(engine).moves, "e2e4");
    ASSERT_EQ(engine.command(GAME), Lines{});
    expectUnharmed();
}

// A broken FEN is refused with one line and leaves the game as it was. The parser meets every
// broken shape in its own tests; these rows are the shapes of the console's line splitting
// (blanks and tabs inside fields, too few words) and one of each kind of refusal.
TEST_F(Robustness, BrokenFens) {
    const std::string fens[] = {
        "",
        "w",
        "/////// w",
        "8/8/8/8/8/8/8/8 w - - 0 1",                                  // no kings
        "rnbqkbnr/pppppppp/54/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",  // nine squares
        "rnbqkbnr/pppp pppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -",
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR white KQkq - 0 1",
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq 36 0 1",
        "4k3/4R3/8/8/8/8/8/4K3 w - - 0 1",          // the side not to move is in check
        "4k3/8/8/8/8/8/PPPPPPPP/QQ2K3 w - - 0 1",   // a promoted queen beside eight pawns
        "4k3/8/8/8/8/8/PPPPPPP1/NNNNK3 w - - 0 1",  // two promoted knights, one missing pawn
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR\t w KQkq - 0 1",
    };
    for (const std::string& fen : fens) {
        auto [reply, game] =
            commandAndGame(engine, "position fen " + fen + (fen.empty() ? "" : " "));
        // Too few words make the line itself malformed; anything else is a bad FEN.
        size_t words = std::count(fen.begin(), fen.end(), ' ') + (fen.empty() ? 0 : 1);
        Lines expected = {words < 2 ? "Invalid position string" : "Invalid FEN"};
        EXPECT_EQ(reply, expected) << fen;
        EXPECT_EQ(game, expectedGame) << fen;
    }
    // A placement that stops short of h1 fails while being read; the loop reports it.
    for (const std::string fen : {"8/8/8/8/8/8/8/kK w", "k7/8/8/8/8/8/8/K w",
                                  "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBN w KQkq - 0 1"}) {
        auto [reply, game] = commandAndGame(engine, "position fen " + fen);
        ASSERT_EQ(reply.size(), 1u) << fen;
        EXPECT_TRUE(reply[0].starts_with("Error in command 'position'")) << reply[0];
        EXPECT_EQ(game, expectedGame) << fen;
    }
    expectUnharmed();
}

// Broken moves in a position line: the moves before them are kept, nothing after them.
TEST_F(Robustness, BrokenMovesInPositionLine) {
    std::string shuffle;
    for (int i = 0; i < 150; i++) shuffle += " g1f3 g8f6 f3g1 f6g8";
    const std::string brokenMoves[] = {"e2e5", "\xff\xfe\x01", "e2",   "e2e4e5",
                                       "E2E4", "0000",         "e1g1", "a7a8q"};
    for (const std::string& bad : brokenMoves) {
        auto [reply, game] =
            commandAndGame(engine, "position startpos moves" + shuffle + " " + bad + " e2e4");
        EXPECT_EQ(reply, Lines{"Illegal move"}) << bad;
        EXPECT_EQ(game.fen, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 600 301") << bad;
        EXPECT_EQ(game.moves, shuffle.substr(1)) << bad;
    }
    ASSERT_EQ(engine.command(GAME), Lines{});
    expectUnharmed();
}

// Lines sent faster than the engine takes them are all handled, in order, none lost. (The
// command loop polls for input every 10 ms, so a flood is answered at about that pace.)
TEST_F(Robustness, FloodOfCommands) {
    std::string script;
    Lines expected;
    for (int i = 0; i < 40; i++) {
        script += "isready\nxyz" + std::to_string(i) + "\n\n";
        expected.push_back("readyok");
        expected.push_back("Unknown command : xyz" + std::to_string(i));
    }
    engine.sendRaw(script);
    EXPECT_EQ(engine.readLines(expected.size()), expected);
    // Typed moves keep their order too.
    engine.sendRaw("e1e2\nd8c7\nposition startpos\n" + GAME + "\n");
    EXPECT_EQ(engine.command(Lines{}), Lines{});
    expectUnharmed();
}

// A failed command in the middle of a script does not disturb the commands around it.
TEST_F(Robustness, FailuresInTheMiddleOfAScript) {
    Lines reply = engine.command(Lines{"eval", "tbtest", "position fen 8/8/8/8/8/8/8/kK w",
                                       "position fen 8/8/8/8/8/8/8/8 w", "e2e5", "eval"});
    ASSERT_EQ(reply.size(), 6u);
    EXPECT_EQ(reply[0], "Detailed evaluation information not available!");
    EXPECT_TRUE(reply[1].starts_with("Error in command 'tbtest'")) << reply[1];
    EXPECT_TRUE(reply[2].starts_with("Error in command 'position'")) << reply[2];
    EXPECT_EQ(reply[3], "Invalid FEN");
    EXPECT_EQ(reply[4], "Illegal move: e2e5");
    EXPECT_EQ(reply[5], "Detailed evaluation information not available!");
    expectUnharmed();
}
