// morvane-book: PolyGlot moves both ways, the weights as percentages, a book's round trip
// through PolyGlot, malformed books refused, and an imported book played by the engine.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <numeric>

#include "book/book_file.h"
#include "core/notation.h"
#include "scratch_directory.h"
#include "tool_run.h"
#include "tools/book/book_convert.h"
#include "tools/book/polyglot_moves.h"

namespace {

uint16_t polyglotWord(const char* from, const char* to, int promotion = 0) {
    auto square = [](const char* s) { return (s[1] - '1') * 8 + (s[0] - 'a'); };
    return uint16_t(promotion << 12 | square(from) << 6 | square(to));
}

// The records of a game from the start position, one move per position, with the shares.
std::vector<BookEntry> lineRecords(const std::string& moves, std::vector<uint8_t> shares) {
    auto board = std::make_unique<Board>();
    std::vector<BookEntry> records;
    size_t i = 0;
    for (size_t at = 0; at < moves.size(); at = moves.find(' ', at) + 1) {
        Move m = parseMove(*board, moves.substr(at, moves.find(' ', at) - at));
        records.push_back({board->key(), m & MOVE_MASK, shares[i++], {}});
        board->makeMove(m);
        if (moves.find(' ', at) == std::string::npos) break;
    }
    return records;
}

}  // namespace

// Castling is the king taking its rook in PolyGlot; promotions carry the piece; en passant is a
// plain diagonal step. A word that names no legal move converts to nothing.
TEST(BookTool, PolyglotMovesBothWays) {
    const std::string castling = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
    const std::string start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
    const struct {
        std::string fen;
        uint16_t word;
        const char* move;  // empty: not legal
    } cases[] = {
        {castling, polyglotWord("e1", "h1"), "e1g1"},
        {castling, polyglotWord("e1", "a1"), "e1c1"},
        {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", polyglotWord("e8", "a8"), "e8c8"},
        {"r3k2r/8/8/8/8/8/8/R3K2R w - - 0 1", polyglotWord("e1", "h1"), ""},  // no right
        {"3rk3/2P5/8/8/8/8/8/4K3 w - - 0 1", polyglotWord("c7", "c8", 4), "c7c8q"},
        {"3rk3/2P5/8/8/8/8/8/4K3 w - - 0 1", polyglotWord("c7", "d8", 1), "c7d8n"},
        {"3rk3/2P5/8/8/8/8/8/4K3 w - - 0 1", polyglotWord("c7", "c8", 5), ""},  // no such piece
        {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", polyglotWord("e5", "d6"), "e5d6"},
        {"4k3/8/8/3pP3/8/8/8/4K3 w - - 0 1", polyglotWord("e5", "d6"), ""},  // no en passant
        {start, polyglotWord("e2", "e4", 4), ""},
        {start, polyglotWord("e3", "e4"), ""},
    };
    auto board = std::make_unique<Board>();
    for (const auto& c : cases) {
        ASSERT_EQ(board->setFen(c.fen), 0) << c.fen;
        Move m = fromPolyglotMove(*board, c.word);
        EXPECT_EQ(m ? moveToUci(m) : "", c.move) << c.fen;
        if (m) {
            EXPECT_EQ(toPolyglotMove(m), c.word) << c.move;
        }
    }
}

// Shares add up to 100, none below 1, the heavier weight never getting the smaller share.
TEST(BookTool, WeightsBecomePercentages) {
    const std::vector<std::vector<uint32_t>> cases = {
        {1, 1, 1},
        {0, 0},
        {65535},
        {12135, 11257, 3745, 3294, 243, 38, 35, 16, 16, 7, 5, 4, 2},
        std::vector<uint32_t>(100, 7),
        {1000000, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1},
    };
    for (const auto& weights : cases) {
        std::vector<int> shares = percentShares(weights);
        ASSERT_EQ(shares.size(), weights.size());
        EXPECT_EQ(std::accumulate(shares.begin(), shares.end(), 0), 100);
        for (size_t i = 0; i < shares.size(); i++) {
            EXPECT_GE(shares[i], 1);
            for (size_t j = 0; j < shares.size(); j++)
                if (weights[i] > weights[j]) {
                    EXPECT_GE(shares[i], shares[j]);
                }
        }
    }
    EXPECT_EQ(percentShares({3, 1}), (std::vector<int>{75, 25}));
}

// A book with castling and en passant on its lines goes to PolyGlot and comes back the same;
// a record whose move is not legal, or whose position no line reaches, is counted and dropped.
TEST(BookTool, RoundTripThroughPolyglot) {
    std::vector<BookEntry> book =
        lineRecords("e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 e1g1", {60, 100, 100, 100, 100, 100, 100});
    std::vector<BookEntry> second =
        lineRecords("d2d4 a7a6 d4d5 e7e5 d5e6", {40, 100, 100, 100, 100});
    book.insert(book.end(), second.begin(), second.end());
    auto byKeyAndMove = [](std::vector<BookEntry> records) {
        std::sort(records.begin(), records.end(), [](const BookEntry& a, const BookEntry& b) {
            return a.key != b.key ? a.key < b.key : a.move < b.move;
        });
        return records;
    };

    std::vector<PolyglotEntry> polyglot = decodePolyglot(encodePolyglot(exportPolyglot(book)));
    ASSERT_TRUE(std::is_sorted(polyglot.begin(), polyglot.end(),
                               [](const auto& a, const auto& b) { return a.key < b.key; }));
    ImportCounts counts;
    std::vector<BookEntry> back =
        byKeyAndMove(decodeRecords(encodeRecords(importPolyglot(polyglot, counts))));
    std::vector<BookEntry> sent = byKeyAndMove(book);
    ASSERT_EQ(back.size(), sent.size());
    for (size_t i = 0; i < back.size(); i++) {
        EXPECT_EQ(back[i].key, sent[i].key);
        EXPECT_EQ(moveToUci(back[i].move), moveToUci(sent[i].move));
        EXPECT_EQ(back[i].weight, sent[i].weight);
    }
    EXPECT_EQ(counts.positions, 11u);

    polyglot.push_back({polyglot.back().key, polyglotWord("a1", "a8"), 5, 0});  // not legal
    polyglot.push_back({0x1234, polyglotWord("a2", "a3"), 5, 0});               // not reached
    importPolyglot(polyglot, counts);
    EXPECT_EQ(counts.read, book.size() + 2);
    EXPECT_EQ(counts.illegal, 1u);
    EXPECT_EQ(counts.unreached, 1u);
    EXPECT_EQ(counts.records, book.size());
}

// Each malformed book gets one line and a failing status, and no output file; a PolyGlot book
// built here is imported, and the engine plays its move after "ucinewgame".
TEST(BookTool, CommandLine) {
    ScratchDirectory dir;
    auto board = std::make_unique<Board>();
    const uint64_t start = board->key();
    board->makeMove(parseMove(*board, "a2a3"));
    const std::string good =
        dir.write("good.bin", encodePolyglot({{start, polyglotWord("a2", "a3"), 7, 0},
                                              {board->key(), polyglotWord("a7", "a6"), 1, 0}}));
    const std::string unsorted =
        dir.write("unsorted.bin", encodePolyglot({{board->key(), polyglotWord("a7", "a6"), 1, 0},
                                                  {start, polyglotWord("a2", "a3"), 7, 0}}));
    const std::string truncated = dir.write("truncated.bin", std::string(17, '\0'));
    const std::string noise = dir.write("noise.bin", std::string(32, '\xff'));
    const std::string out = (dir.path / "out.mbk").string();
    const std::string tool = MORVANE_BOOK_BINARY;

    const struct {
        std::string arguments;
        int status;
        std::string expected;
    } cases[] = {
        {"import " + truncated + " " + out, 1,
         "truncated (17 bytes is not a whole number of 16-byte entries)"},
        {"import " + noise + " " + out, 1, "neither a Morvane book nor a PolyGlot book"},
        {"import " + unsorted + " " + out, 1, "must be sorted by key"},
        {"stats " + (dir.path / "missing.bin").string(), 1, "cannot be read"},
        {"probe " + good + " 'not a fen'", 1, "bad FEN: not a fen"},
        {"import " + good, 2, "usage:"},
        {"import " + good + " " + out, 0, "wrote 2 positions, 2 records"},
        {"probe " + out + " 'rnbqkbnr/pppppppp/8/8/8/P7/1PPPPPPP/RNBQKBNR b KQkq - 0 1'", 0,
         "a7a6  weight 100  100.0%"},
        {"stats " + good, 0, "  ply 1: 1 (50.0%)"},
    };
    for (const auto& c : cases) {
        ToolRun r = runTool(tool + " " + c.arguments);
        EXPECT_EQ(r.status, c.status) << c.arguments << "\n" << r.output;
        EXPECT_NE(r.output.find(c.expected), std::string::npos) << c.arguments << "\n" << r.output;
        if (c.status) {
            EXPECT_EQ(std::count(r.output.begin(), r.output.end(), '\n'), c.status == 1 ? 1 : 4)
                << r.output;
            EXPECT_FALSE(std::filesystem::exists(out)) << c.arguments;
        }
    }
    // The engine never opens with a2a3 by itself.
    ToolRun game =
        runTool("printf 'setoption name Book File value " + out +
            "\\nucinewgame\\nposition startpos\\ngo depth 6\\nquit\\n' | " MORVANE_BINARY);
    EXPECT_NE(game.output.find("bestmove a2a3"), std::string::npos) << game.output;
}
