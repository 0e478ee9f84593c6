// Endgame ids: every named configuration in both colour orientations, unnamed and larger
// material, and the id carried through captures and promotions by make and unmake.
#include <gtest/gtest.h>

#include <cctype>

#include "eval/endgame.h"
#include "test_positions.h"

namespace {

// Kings on e1 and e8, White's men from a3 on, Black's ending on h6: none of them can
// give check, whatever they are.
std::string fenOfName(std::string_view name, bool firstIsWhite) {
    size_t second = name.find('K', 1);
    std::string first(name.substr(1, second - 1)), other(name.substr(second + 1));
    std::string white = firstIsWhite ? first : other, black = firstIsWhite ? other : first;
    for (char& c : black) c = char(std::tolower(c));
    return "4k3/8/" + std::to_string(8 - black.size()) + black + "/8/8/" + white +
           std::to_string(8 - white.size()) + "/8/4K3 w - - 0 1";
}

}  // namespace

TEST(EndgameMap, EveryNameInBothOrientations) {
    auto board = coretest::newBoard();
    for (int id = KK; id < ENDGAME_ID_COUNT; id++) {
        for (bool firstIsWhite : {true, false}) {
            const std::string fen = fenOfName(ENDGAME_NAMES[id], firstIsWhite);
            ASSERT_EQ(board->setFen(fen), 0) << fen;
            EXPECT_EQ(board->state().endgameId, id) << ENDGAME_NAMES[id] << " as " << fen;
        }
    }
}

TEST(EndgameMap, Classification) {
    struct Case {
        const char* fen;
        EndGameId id;
    } cases[] = {
        {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", KK},
        {"4k3/4p3/8/8/8/8/8/R3K3 w - - 0 1", KRKP},
        {"r3k3/8/8/8/8/8/4P3/4K3 w - - 0 1", KRKP},
        {"4k3/8/8/8/8/8/1q6/4K2R w - - 0 1", KQKR},
        // Six men are never classified; nor are unnamed configurations of five or fewer.
        {"r3k3/p7/8/8/8/8/P7/R3K3 w - - 0 1", UNKNOWN},
        {"4k3/8/8/8/8/8/P7/1N2K3 w - - 0 1", UNKNOWN},
        {"4k3/8/8/8/8/8/8/QQ2K3 w - - 0 1", UNKNOWN},
        {"4k3/8/8/8/8/8/8/1q2K1Q1 w - - 0 1", KQKQ},
        {"4k3/8/8/8/8/8/8/B1B1K3 w - - 0 1", KBBK},
        // Bishops are counted, not told apart by square colour.
        {"4k3/8/8/8/8/8/8/BB2K3 w - - 0 1", KBBK},
    };
    auto board = coretest::newBoard();
    for (const Case& c : cases) {
        ASSERT_EQ(board->setFen(c.fen), 0) << c.fen;
        EXPECT_EQ(board->state().endgameId, c.id) << c.fen;
    }
}

// The id follows the material through make and unmake: captures and promotions that reach five
// men or fewer set it, unmake brings the previous one back.
TEST(EndgameMap, FollowsMakeAndUnmake) {
    struct Case {
        const char* fen;
        const char* move;
        EndGameId before, after;
    } cases[] = {
        {"4k3/8/8/8/3b4/8/5N2/1B2K3 b - - 0 1", "d4f2", KBNKB, KBKB},
        {"8/4P3/8/8/8/8/k7/4K3 w - - 0 1", "e7e8q", KPK, KQK},
        {"8/4P3/8/8/8/8/k7/4K3 w - - 0 1", "e7e8n", KPK, KNK},
        {"r7/4P3/8/8/8/8/k7/4K3 w - - 0 1", "e7e8r", KRKP, KRKR},
        {"4k3/8/8/8/8/8/8/Rr2K3 w - - 0 1", "a1b1", KRKR, KRK},
        {"4k3/8/8/8/8/8/4p3/3RK3 w - - 0 1", "e1e2", KRKP, KRK},
        {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6", KPKP, KPK},
        // From six men to five.
        {"4k3/1p6/8/8/8/8/1P6/R3K1r1 w - - 0 1", "e1f2", UNKNOWN, UNKNOWN},
        {"4k2r/1p6/8/8/8/8/P7/1R2K3 w - - 0 1", "b1b7", UNKNOWN, KRPKR},
        {"r3k3/1p6/8/8/8/8/8/R3K3 w - - 0 1", "a1a8", KRPKR, KRKP},
    };
    auto board = coretest::newBoard();
    for (const Case& c : cases) {
        ASSERT_EQ(board->setFen(c.fen), 0) << c.fen;
        ASSERT_EQ(board->state().endgameId, c.before) << c.fen;
        Move m = parseMove(*board, c.move);
        ASSERT_TRUE(isMoveInList(*board, m)) << c.move << " in " << c.fen;
        board->makeMove(m);
        EXPECT_EQ(board->state().endgameId, c.after) << c.move << " in " << c.fen;
        board->unmakeMove(m);
        EXPECT_EQ(board->state().endgameId, c.before) << c.move << " in " << c.fen;
    }
}
