// The opening book at "ucinewgame": the internal book and a book file planted in the table, the
// reports and warnings, and book moves played by the search.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <set>
#include <thread>

#include "engine_process.h"
#include "scratch_directory.h"

namespace {

using Lines = std::vector<std::string>;

constexpr uint64_t START_KEY = 0x463B96181691FC9CULL;
constexpr uint64_t AFTER_E4_KEY = 0x823C9B50FD114196ULL;  // black to move after 1. e4
// Move words: e2e4, d2d4, g1f3, c2c4 and the reply e7e5.
constexpr uint32_t E2E4 = 0x70C1, D2D4 = 0x6CB1, G1F3 = 0x5462, C2C4 = 0x68A1, E7E5 = 0x9347;

struct Record {
    uint64_t key;
    uint32_t move;
    uint8_t weight;
};

std::string bookBytes(const std::vector<Record>& records) {
    std::string bytes;
    for (const Record& r : records) {
        for (int i = 0; i < 8; i++) bytes += char(r.key >> (8 * i));
        for (int i = 0; i < 4; i++) bytes += char(r.move >> (8 * i));
        bytes += char(r.weight);
        bytes += std::string(3, '\0');
    }
    return bytes;
}

std::string bestMoveOf(EngineProcess& engine, const std::string& go) {
    engine.sendLine(go);
    auto lines =
        engine.readLinesUntil([](const std::string& l) { return l.rfind("bestmove ", 0) == 0; });
    return lines.empty() ? "" : lines.back().substr(9, 4);
}

}  // namespace

TEST(Book, NewGameReports) {
    const struct {
        const char* what;
        Lines setup;
        std::string expected;  // empty: nothing printed
    } cases[] = {
        {"internal book with the default table",
         {},
         "info opening book initialized with 24278 positions"},
        {"both book options off",
         {"setoption name OwnBook value false",
          "setoption name Fallback to Internal Book value false"},
         ""},
        {"a book file that does not exist is switched off silently",
         {"setoption name Book File value missing.mbk"},
         "info opening book initialized with 24278 positions"},
    };
    for (const auto& c : cases) {
        EngineProcess engine;
        engine.expectBanner();
        engine.command(c.setup);
        Lines reply = engine.command("ucinewgame");
        EXPECT_EQ(reply, c.expected.empty() ? Lines{} : Lines{c.expected}) << c.what;
    }
}

TEST(Book, SmallTableTakesFewerPositions) {
    EngineProcess engine;
    engine.expectBanner();
    engine.command("setoption name Hash value 1");
    Lines reply = engine.command("ucinewgame");
    ASSERT_EQ(reply.size(), 1u);
    const std::string prefix = "info opening book initialized with ";
    ASSERT_EQ(reply[0].rfind(prefix, 0), 0u) << reply[0];
    int count = std::stoi(reply[0].substr(prefix.size()));
    EXPECT_LT(count, 24278);
    EXPECT_GT(count, 20000);
}

TEST(Book, FileWarnings) {
    const struct {
        const char* what;
        std::string bytes;
        std::string warning;
    } cases[] = {
        {"fifteen bytes hold no record", std::string(15, 'x'),
         "warning: medium.mbk is not a valid book file"},
        {"no start position", bookBytes({{AFTER_E4_KEY, E7E5, 100}}),
         "warning: medium.mbk is not a valid book file"},
    };
    for (size_t i = 0; i < std::size(cases); i++) {
        ScratchDirectory directory;
        directory.write("medium.mbk", cases[i].bytes);
        EngineProcess engine(directory.path);
        engine.expectBanner();
        engine.command("setoption name Fallback to Internal Book value false");
        EXPECT_EQ(engine.command("ucinewgame"), Lines{cases[i].warning}) << cases[i].what;
    }
    // A file that disappears after it was chosen.
    ScratchDirectory directory;
    directory.write("medium.mbk", bookBytes({{START_KEY, E2E4, 100}}));
    EngineProcess engine(directory.path);
    engine.expectBanner();
    engine.command(Lines{});  // the engine has chosen the file once it answers
    std::filesystem::remove(directory.path / "medium.mbk");
    EXPECT_EQ(engine.command("ucinewgame"), (Lines{"warning: opening book medium.mbk not found"}));
}

// A file-only book is drawn without reseeding; a position with one record always plays it.
TEST(Book, FileBookMovesArePlayed) {
    ScratchDirectory directory;
    directory.write("medium.mbk", bookBytes({{START_KEY, D2D4, 100}, {AFTER_E4_KEY, E7E5, 100}}));
    EngineProcess engine(directory.path);
    engine.expectBanner();
    engine.command("setoption name Fallback to Internal Book value false");
    EXPECT_EQ(engine.command("ucinewgame"),
              Lines{"info opening book initialized with 2 positions"});
    engine.command("position startpos");
    EXPECT_EQ(bestMoveOf(engine, "go wtime 60000 btime 60000"), "d2d4");
    engine.command("position startpos moves e2e4");
    EXPECT_EQ(bestMoveOf(engine, "go wtime 60000 btime 60000"), "e7e5");
}

// New games draw anew: over several games a position with four equal shares shows more than
// one move (all alike has a chance of 4 in 4^6, about 1 in 1000).
TEST(Book, NewGamesCanDrawDifferentMoves) {
    ScratchDirectory directory;
    directory.write("medium.mbk", bookBytes({{START_KEY, E2E4, 25},
                                             {START_KEY, D2D4, 25},
                                             {START_KEY, G1F3, 25},
                                             {START_KEY, C2C4, 25}}));
    EngineProcess engine(directory.path);
    engine.expectBanner();
    std::set<std::string> played;
    for (int game = 0; game < 6; game++) {
        if (game) std::this_thread::sleep_for(std::chrono::milliseconds(1050));  // a new clock seed
        engine.command(Lines{"ucinewgame", "position startpos"});
        played.insert(bestMoveOf(engine, "go wtime 60000 btime 60000"));
    }
    EXPECT_GT(played.size(), 1u);
    for (const std::string& m : played)
        EXPECT_TRUE(m == "e2e4" || m == "d2d4" || m == "g1f3" || m == "c2c4") << m;
}

// The internal book answers the start position with one of its six moves at once.
TEST(Book, InternalBookMoveFromTheStart) {
    EngineProcess engine;
    engine.expectBanner();
    engine.command(Lines{"ucinewgame", "position startpos"});
    std::string move = bestMoveOf(engine, "go wtime 60000 btime 60000");
    const std::set<std::string> book = {"e2e4", "d2d4", "g1f3", "c2c4", "b2b3", "g2g3"};
    EXPECT_TRUE(book.count(move)) << move;
}
