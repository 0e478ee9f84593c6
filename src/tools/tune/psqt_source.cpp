#include "tools/tune/psqt_source.h"

#include <cstdio>
#include <fstream>
#include <sstream>

#include "core/types.h"

namespace {

const char* const TABLE_NAMES[6] = {"PAWN", "KNIGHT", "BISHOP", "ROOK", "QUEEN", "KING"};

// Eight rows of eight values, rank 8 first, as the diagrams are written.
std::string diagramBody(const PieceSquareValues& values, int type, int phase) {
    std::string body;
    for (int rank = 7; rank >= 0; rank--) {
        body += "   ";
        for (int file = 0; file < 8; file++) {
            char cell[16];
            std::snprintf(cell, sizeof cell, " %3d,",
                          values.value[type][makeSquare(file, rank)][phase]);
            body += cell;
        }
        body += "\n";
    }
    return body;
}

}  // namespace

std::string writeDiagrams(const std::string& path, const PieceSquareValues& values) {
    std::ifstream in(path);
    if (!in) return "cannot read " + path;
    std::stringstream buffer;
    buffer << in.rdbuf();
    std::string source = buffer.str();
    for (int type = 0; type < 6; type++) {
        for (int phase = 0; phase < 2; phase++) {
            std::string head = std::string("constexpr Diagram ") + TABLE_NAMES[type] +
                               (phase ? "_EG" : "_MG") + " = {\n";
            size_t at = source.find(head);
            size_t end = at == std::string::npos ? at : source.find("};", at);
            if (end == std::string::npos)
                return path + ": no diagram " + head.substr(18, head.size() - 23);
            at += head.size();
            source.replace(at, end - at, diagramBody(values, type, phase));
        }
    }
    std::ofstream out(path);
    out << source;
    return out ? "" : "cannot write " + path;
}
