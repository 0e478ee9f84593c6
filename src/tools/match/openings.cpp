#include "tools/match/openings.h"

#include <fstream>
#include <memory>
#include <sstream>

#include "core/board.h"

namespace match {

bool readOpenings(const std::string& path, std::vector<std::string>& openings, std::string& error) {
    std::ifstream file(path);
    if (!file) {
        error = "cannot read " + path;
        return false;
    }
    auto board = std::make_unique<Board>();
    std::string line;
    for (int number = 1; std::getline(file, line); number++) {
        std::istringstream fields(line);
        std::string field, fen;
        for (int i = 0; i < 4 && fields >> field; i++) fen += (i ? " " : "") + field;
        if (fen.empty() || fen[0] == '#') continue;
        if (board->setFen(fen) != 0) {
            error = path + " line " + std::to_string(number) + ": not a position: " + fen;
            return false;
        }
        openings.push_back(fen);
    }
    if (openings.empty()) {
        error = path + " holds no position";
        return false;
    }
    return true;
}

}  // namespace match
