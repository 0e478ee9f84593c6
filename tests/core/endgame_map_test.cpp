// Endgame ids of set-up positions; make and unmake are checked by the make-move tests.
#include <gtest/gtest.h>

#include <cctype>

#include "eval/endgame.h"
#include "test_positions.h"

namespace {

// Kings on e1 and e8, White's men from a3 on, Black's ending on h6: no man gives check.
std::string fenOfName(std::string_view name, bool firstIsWhite) {
    size_t second = name.find('K', 1);
    std::string first(name.substr(1, second - 1)), other(name.substr(second + 1));
    std::string white = firstIsWhite ? first : other, black = firstIsWhite ? other : first;
    for (char& c : black) c = char(std::tolower(c));
    return "4k3/8/" + std::to_string(8 - black.size()) + black + "/8/8/" + white +
           std::to_string(8 - white.size()) + "/8/4K3 w - - 0 1";
}

}  // namespace

// Every name in both colour orientations; then six men, which are never classified, unnamed
// configurations, and bishops, which are counted, not told apart by square colour.
TEST(EndgameMap, Classification) {
    auto board = coretest::newBoard();
    for (int id = KK; id < ENDGAME_ID_COUNT; id++) {
        for (bool firstIsWhite : {true, false}) {
            const std::string fen = fenOfName(ENDGAME_NAMES[id], firstIsWhite);
            ASSERT_EQ(board->setFen(fen), 0) << fen;
            EXPECT_EQ(board->state().endgameId, id) << ENDGAME_NAMES[id] << " as " << fen;
        }
    }
    for (auto [fen, id] : {std::pair{"r3k3/p7/8/8/8/8/P7/R3K3 w - - 0 1", UNKNOWN},
                           {"4k3/8/8/8/8/8/8/QQ2K3 w - - 0 1", UNKNOWN},
                           {"4k3/8/8/8/8/8/8/BB2K3 w - - 0 1", KBBK}}) {
        ASSERT_EQ(board->setFen(fen), 0) << fen;
        EXPECT_EQ(board->state().endgameId, id) << fen;
    }
}
