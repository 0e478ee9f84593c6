#include "core/attacks.h"

#include <cstring>
#include <initializer_list>

namespace {

constexpr int DIR_FILE[8] = {0, 0, 1, -1, 1, -1, -1, 1};
constexpr int DIR_RANK[8] = {1, -1, 0, 0, 1, -1, 1, -1};

bool onBoard(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }

Bitboard stepTargets(int sq, const int (*steps)[2], int count) {
    Bitboard b = 0;
    for (int i = 0; i < count; i++) {
        int f = fileOf(sq) + steps[i][0], r = rankOf(sq) + steps[i][1];
        if (onBoard(f, r)) b |= squareBB(makeSquare(f, r));
    }
    return b;
}

// Walks each direction until and including the first occupied square.
Bitboard slidingAttacks(int sq, Bitboard occ, const int* dirs) {
    Bitboard b = 0;
    for (int i = 0; i < 4; i++) {
        int d = dirs[i];
        for (int f = fileOf(sq) + DIR_FILE[d], r = rankOf(sq) + DIR_RANK[d]; onBoard(f, r);
             f += DIR_FILE[d], r += DIR_RANK[d]) {
            b |= squareBB(makeSquare(f, r));
            if (occ & squareBB(makeSquare(f, r))) break;
        }
    }
    return b;
}

constexpr int ROOK_DIRS[4] = {NORTH, SOUTH, EAST, WEST};
constexpr int BISHOP_DIRS[4] = {NORTH_EAST, SOUTH_WEST, NORTH_WEST, SOUTH_EAST};

// Relevant occupancy: the attack rays of an empty board without their edge squares.
Bitboard relevantMask(int sq, const int* dirs) {
    Bitboard b = 0;
    for (int i = 0; i < 4; i++) {
        int d = dirs[i];
        for (int f = fileOf(sq) + DIR_FILE[d], r = rankOf(sq) + DIR_RANK[d];
             onBoard(f + DIR_FILE[d], r + DIR_RANK[d]); f += DIR_FILE[d], r += DIR_RANK[d])
            b |= squareBB(makeSquare(f, r));
    }
    return b;
}

void fillMagicTable(Bitboard* table, const Magic& m, int sq, Bitboard mask, const int* dirs) {
    Bitboard subset = 0;
    do {
        table[m.offset + ((subset * m.multiplier) >> m.shift)] = slidingAttacks(sq, subset, dirs);
        subset = (subset - mask) & mask;
    } while (subset);
}

}  // namespace

AttackTables::AttackTables() {
    std::memset(this, 0, sizeof(*this));
    static constexpr int KNIGHT_STEPS[8][2] = {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
    static constexpr int KING_STEPS[8][2] = {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};
    static constexpr int WHITE_PAWN_STEPS[2][2] = {{-1, 1}, {1, 1}};
    static constexpr int BLACK_PAWN_STEPS[2][2] = {{-1, -1}, {1, -1}};

    for (int sq = 0; sq < 64; sq++) {
        knightAttacks[sq] = stepTargets(sq, KNIGHT_STEPS, 8);
        kingAttacks[sq] = stepTargets(sq, KING_STEPS, 8);
        pawnAttacks[White][sq] = stepTargets(sq, WHITE_PAWN_STEPS, 2);
        pawnAttacks[Black][sq] = stepTargets(sq, BLACK_PAWN_STEPS, 2);
        rookMask[sq] = relevantMask(sq, ROOK_DIRS);
        bishopMask[sq] = relevantMask(sq, BISHOP_DIRS);
        fillMagicTable(rookTable, ROOK_MAGICS[sq], sq, rookMask[sq], ROOK_DIRS);
        fillMagicTable(bishopTable, BISHOP_MAGICS[sq], sq, bishopMask[sq], BISHOP_DIRS);
        for (int d = 0; d < 8; d++) {
            const int dir[4] = {d, d, d, d};
            rays[d][sq] = slidingAttacks(sq, 0, dir);
        }
        rookLines[sq] = slidingAttacks(sq, 0, ROOK_DIRS);
        bishopLines[sq] = slidingAttacks(sq, 0, BISHOP_DIRS);
        neighbours[sq] = ((squareBB(sq) & ~FILE_A) >> 1) | ((squareBB(sq) & ~FILE_H) << 1);
    }
    for (int a = 0; a < 64; a++) {
        for (int d = 0; d < 8; d++) {
            queenLines[a] |= rays[d][a];
            Bitboard ray = rays[d][a];
            while (ray) {
                int b = popLsb(ray);
                lineBeyond[a][b] = rays[d][b] | squareBB(b);
                between[a][b] = rays[d][a] & ~rays[d][b] & ~squareBB(b);
                fullLine[a][b] = rays[d][a] | rays[d ^ 1][a] | squareBB(a);
            }
        }
    }
    for (int sq = 0; sq < 64; sq++) {
        int file = fileOf(sq);
        Bitboard sides = (file > 0 ? fileBB(file - 1) : 0) | (file < 7 ? fileBB(file + 1) : 0);
        adjacentFiles[sq] = sides;
        for (Color c : {White, Black}) {
            Bitboard front = rays[c == White ? NORTH : SOUTH][sq];
            Bitboard frontRanks = 0;
            for (int r = 0; r < 8; r++)
                if (c == White ? r > rankOf(sq) : r < rankOf(sq)) frontRanks |= rankBB(r);
            forwardFile[c][sq] = front;
            attackSpan[c][sq] = sides & frontRanks;
            passedMask[c][sq] = (sides | fileBB(file)) & frontRanks;
        }
    }
    constexpr Bitboard QUEEN_SIDE = FILE_A | FILE_A << 1 | FILE_A << 2 | FILE_A << 3;
    constexpr Bitboard CENTRE_FILES = QUEEN_SIDE << 2;
    constexpr Bitboard KING_SIDE = QUEEN_SIDE << 4;
    constexpr Bitboard FLANKS[8] = {QUEEN_SIDE,   QUEEN_SIDE, QUEEN_SIDE, CENTRE_FILES,
                                    CENTRE_FILES, KING_SIDE,  KING_SIDE,  KING_SIDE};
    for (int sq = 0; sq < 64; sq++) {
        kingFlank[sq] = FLANKS[fileOf(sq)];
        int file = fileOf(sq) < 1 ? 1 : fileOf(sq) > 6 ? 6 : fileOf(sq);
        int whiteRank = rankOf(sq) < 1 ? 1 : rankOf(sq);
        int blackRank = rankOf(sq) > 6 ? 6 : rankOf(sq);
        int whiteCentre = makeSquare(file, whiteRank), blackCentre = makeSquare(file, blackRank);
        kingZone[White][sq] = kingAttacks[whiteCentre] | squareBB(whiteCentre);
        kingZone[Black][sq] = kingAttacks[blackCentre] | squareBB(blackCentre);
    }
}
