// Material: piece values, the adjustments that depend on the material alone, the draw-ish
// flag and the game phase, all kept in the material cache by material key.
#include <cstdlib>

#include "eval/evaluator.h"

void Evaluator::evaluateMaterial(int materialPhase) {
    uint64_t key = board.state().materialKey;
    if (!materialEntry || materialEntry->key != key) {
        MaterialEntry& entry = materialCache[key & (MATERIAL_CACHE_SIZE - 1)];
        materialCounters.probes++;
        if (entry.key == key) {
            materialCounters.hits++;
        } else {
            int counts[13];
            for (int piece = 0; piece < 13; piece++) counts[piece] = int(board.pieceCount[piece]);
            for (Color c : {White, Black}) {
                material[c] = 0;
                for (int type = PAWN; type <= QUEEN; type++) {
                    int n = counts[makePiece(c, type)];
                    add(c, evalTables.pieceValue[type] * n);
                    material[c] += evalTables.pieceValueMg[type] * n;
                }
            }
            auto onlyBishop = [&](Color c) {
                return board.nonPawnCount[c] == 1 && counts[makePiece(c, BISHOP)] == 1;
            };
            bool noPawns = counts[W_PAWN] + counts[B_PAWN] == 0;
            drawish = onlyBishop(White) && onlyBishop(Black) ? BISHOP_EACH
                      : noPawns && std::abs(material[White] - material[Black]) < 400
                          ? PAWNLESS_EQUAL
                          : NOT_DRAWISH;
            materialAdjustments<White>(counts);
            materialAdjustments<Black>(counts);
            const Score sum = total[Black] - total[White];
            entry = {
                key, sum.mg(), sum.eg(), material[White], material[Black], drawish, materialPhase,
            };
            total[White] = total[Black] = Score();
        }
        materialEntry = &entry;
    }
    const MaterialEntry& entry = *materialEntry;
    add(Black, Score(entry.mg, entry.eg));
    material[White] = entry.whiteMaterial;
    material[Black] = entry.blackMaterial;
    drawish = entry.drawish;
    phase = entry.phase;
    for (Color c : {White, Black})
        nonPawnMaterial[c] = material[c] - 100 * int(board.pieceCount[makePiece(c, PAWN)]);
}

// Corrections of the piece values by the rest of the material: the bishop pair, knights that
// gain with pawns on the board and rooks that gain as pawns come off, and the redundancy of a
// second rook.
template <Color Us>
void Evaluator::materialAdjustments(const int counts[13]) {
    const EvalTables& t = evalTables;
    int pawns = counts[makePiece(Us, PAWN)];
    int knights = counts[makePiece(Us, KNIGHT)];
    int rooks = counts[makePiece(Us, ROOK)];
    if (counts[makePiece(Us, BISHOP)] >= 2) add(Us, t.bishopPair);
    if (rooks >= 2) add(Us, Score(0, t.rookPairEg));
    add(Us, t.knightPerPawn * (knights * (pawns - 5)));
    add(Us, Score(0, t.rookPerMissingPawnEg * rooks * (5 - pawns)));
}
