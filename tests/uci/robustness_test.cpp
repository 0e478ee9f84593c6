// Bad input never hurts: broken FENs and moves each get their one line, the game in memory stays
// as it was, and the engine keeps answering and finally exits cleanly. Random bytes go through
// the command loop in the seeded fuzz test.
#include <gtest/gtest.h>

#include "engine_process.h"
#include "game_view.h"

namespace {

const std::string GAME = "position startpos moves e2e4 c7c5 g1f3 d7d6";

// Starts an engine with a game that every test checks is still there afterwards.
class Robustness : public ::testing::Test {
  protected:
    void SetUp() override {
        engine.expectBanner();
        ASSERT_EQ(engine.command(GAME), Lines{});
    }

    // The engine still holds its game, quits with status 0 and wrote no error output.
    void expectUnharmed() {
        EXPECT_EQ(printedGame(engine), expectedGame);
        engine.sendLine("quit");
        EXPECT_EQ(engine.waitExit(), 0);
        EXPECT_EQ(engine.errorOutput(), "");
    }

    // Each line must print exactly its reply and leave the game.
    void expectRefused(const std::vector<std::pair<std::string, std::string>>& rows) {
        for (const auto& [line, reply] : rows) {
            auto [output, game] = commandAndGame(engine, line);
            EXPECT_EQ(output, Lines{reply}) << line.substr(0, 60);
            EXPECT_EQ(game, expectedGame) << line.substr(0, 60);
        }
    }

    EngineProcess engine;
    GameView expectedGame{"rnbqkbnr/pp2pppp/3p4/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 0 3",
                          "e2e4 c7c5 g1f3 d7d6"};
};

}  // namespace

// A broken FEN is refused with one line, and a placement that stops short of h1 is an error
// after which the next commands still run. The parser meets every broken shape in its own
// tests; these are the shapes of the console's line splitting.
TEST_F(Robustness, BrokenFens) {
    const std::string BAD = "Invalid FEN";
    expectRefused(
        {{"position fen /////// w ", BAD},
         {"position fen rnbqkbnr/pppp pppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -", BAD},
         {"position fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR\t w KQkq - 0 1", BAD}});
    // A placement that stops short of h1 fails while being read; the loop reports it.
    auto [reply, game] = commandAndGame(engine, "position fen 8/8/8/8/8/8/8/kK w");
    ASSERT_EQ(reply.size(), 1u);
    EXPECT_TRUE(reply[0].starts_with("Error in command 'position'")) << reply[0];
    EXPECT_EQ(game, expectedGame);
    expectUnharmed();
}

// A broken move in a position line ends it: the moves before it are kept, none after it.
TEST_F(Robustness, BrokenMovesInPositionLine) {
    std::string shuffle;
    for (int i = 0; i < 150; i++) shuffle += " g1f3 g8f6 f3g1 f6g8";
    for (const std::string bad :
         {"e2e5", "\xff\xfe\x01", "e2", "e2e4e5", "E2E4", "0000", "a7a8q"}) {
        auto [reply, game] =
            commandAndGame(engine, "position startpos moves" + shuffle + " " + bad + " e2e4");
        EXPECT_EQ(reply, Lines{"Illegal move"}) << bad;
        EXPECT_EQ(game, (GameView{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 600 301",
                                  shuffle.substr(1)}))
            << bad;
    }
    ASSERT_EQ(engine.command(GAME), Lines{});
    expectUnharmed();
}
