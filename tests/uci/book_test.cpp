// The opening book at "ucinewgame": the internal book and a book file planted in the table, the
// reports and warnings, and book moves played by the search.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <set>

#include "engine_process.h"
#include "scratch_directory.h"

namespace {

constexpr uint64_t START_KEY = 0x463B96181691FC9CULL;
constexpr uint64_t AFTER_E4_KEY = 0x823C9B50FD114196ULL;  // black to move after 1. e4
// Move words (to << 10 | from << 4 | piece): e2e4 and the reply e7e5.
constexpr uint32_t E2E4 = 0x70C1, E7E5 = 0x9347;
// a2a3 and a7a6, which the engine does not play on its own.
constexpr uint32_t A2A3 = 0x4081, A7A6 = 0xA307;

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

// What "ucinewgame" reports for each book set-up, on a fresh engine each.
TEST(Book, NewGameReports) {
    const std::string INVALID = "warning: medium.mbk is not a valid book file";
    const std::string INTERNAL = "info opening book initialized with 24278 positions";
    const Lines NO_FALLBACK = {"setoption name Fallback to Internal Book value false"};
    // clang-format off
    const struct {
        const char* what;
        std::string file;  // medium.mbk in the working directory; empty: none
        Lines setup, reply;
    } cases[] = {
        // The default medium.mbk is missing: the internal book, without a warning.
        {"internal book with the default table", "", {}, {INTERNAL}},
        {"a small table takes fewer positions", "", {"setoption name Hash value 1"},
         {"~info opening book initialized with 2[0-3][0-9]{3} positions"}},
        {"both book options off", "", {"setoption name OwnBook value false", NO_FALLBACK[0]}, {}},
        {"fifteen bytes hold no record", std::string(15, 'x'), NO_FALLBACK, {INVALID}},
        {"no start position", bookBytes({{AFTER_E4_KEY, E7E5, 100}}), NO_FALLBACK, {INVALID}},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ScratchDirectory directory;
        if (!c.file.empty()) directory.write("medium.mbk", c.file);
        EngineProcess engine(directory.path);
        engine.expectBanner();
        expectTranscript(engine, {{c.setup, {}}, {{"ucinewgame"}, c.reply}});
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
    directory.write("medium.mbk", bookBytes({{START_KEY, A2A3, 100}, {AFTER_E4_KEY, A7A6, 100}}));
    EngineProcess engine(directory.path);
    engine.expectBanner();
    engine.command("setoption name Fallback to Internal Book value false");
    EXPECT_EQ(engine.command("ucinewgame"),
              Lines{"info opening book initialized with 2 positions"});
    engine.command("position startpos");
    EXPECT_EQ(bestMoveOf(engine, "go wtime 60000 btime 60000"), "a2a3");
    engine.command("position startpos moves e2e4");
    EXPECT_EQ(bestMoveOf(engine, "go wtime 60000 btime 60000"), "a7a6");
}

// The internal book answers the start position with one of its six moves, reported as found
// without a node searched; with the books off the move is searched.
TEST(Book, InternalBookMoveFromTheStart) {
    const std::set<std::string> book = {"e2e4", "d2d4", "g1f3", "c2c4", "b2b3", "g2g3"};
    for (bool own : {true, false}) {
        EngineProcess engine;
        engine.expectBanner();
        if (!own)
            engine.command(Lines{"setoption name OwnBook value false",
                                 "setoption name Fallback to Internal Book value false"});
        engine.command(Lines{"ucinewgame", "position startpos"});
        engine.sendLine("go depth 4");
        Lines search =
            engine.readLinesUntil([](auto& line) { return line.starts_with("bestmove "); });
        ASSERT_GE(search.size(), 2u);
        EXPECT_EQ(search[search.size() - 2].find(" nodes 0 ") != std::string::npos, own)
            << search[0];
        if (own) {
            EXPECT_EQ(book.count(search.back().substr(9, 4)), 1u) << search.back();
        }
    }
}
