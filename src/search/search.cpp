// The node searches: alphaBeta, a fail-hard principal-variation search with fractional
// extensions, and quiescence, which resolves captures below the horizon.
#include <algorithm>

#include "core/console.h"
#include "core/movegen.h"
#include "core/threats.h"
#include "eval/evaluator.h"
#include "eval/weights.h"
#include "search/endgame_tables.h"
#include "search/search_params.h"
#include "search/see.h"
#include "search/tactics.h"
#include "search/threads.h"

namespace {

const SearchParams& P = SEARCH_PARAMS;

enum Stage { HASH_STAGE, CAPTURE_STAGE, QUIET_STAGE, EVASION_STAGE };

// Stage-1 keys from here up belong to captures and promotions whose exchange does not lose.
constexpr int NOT_LOSING_KEY = 256;

constexpr int clampKey(int key) { return key < 0 ? 0 : key > 511 ? 511 : key; }

bool isQuiet(Move m) { return !moveCaptured(m) && !moveIsPromotion(m); }

// Key of the position after a move, close enough to prefetch its table cluster.
uint64_t approximateChildKey(const Board& b, Move m) {
    const ZobristKeys& z = b.zobrist;
    int piece = movePiece(m);
    return b.key() ^ z.sideKey ^ z.pieceKey[moveFrom(m)][piece] ^ z.pieceKey[moveTo(m)][piece] ^
           z.pieceKey[moveTo(m)][moveCaptured(m)];
}

// Mate-distance pruning: no line from here can do better than mating at the next ply or worse
// than being mated here. True with the bound to return when the window closes.
bool mateDistanceCut(int ply, int& alpha, int& beta, int& cut) {
    if (MATE - ply < beta) {
        if (MATE - ply <= alpha) return cut = alpha, true;
        beta = MATE - ply;
    }
    if (ply - MATE > alpha) {
        if (ply - MATE >= beta) return cut = beta, true;
        alpha = ply - MATE;
    }
    return false;
}

}  // namespace

// Evasions: the hash move first, then captures by gain, quiet moves by history, losing moves last.
// Given a memo, it remembers each exchange value it works out.
void TSearchThread::keyEvasions(MoveList& list, Move hashMove, ExchangeMemo* memo) {
    for (Move& m : list) {
        int s = see(board, m), key;
        if (memo) memo->remember(m, s);
        if ((m & MOVE_MASK) == (hashMove & MOVE_MASK))
            key = 511;
        else if (s < 0)
            key = s / 16 + 128;
        else if (moveCaptured(m))
            key = moveCaptured(m) - movePiece(m) + 396;
        else
            key = ordering->historyOf(m) / 8 + 128;
        m = withKey(m, clampKey(key));
    }
    if (list.count >= 2) sortMoves(list);
}

int TSearchThread::evaluate() { return evaluator->Evaluate(); }

// The table cluster and evaluation cache line of the child, so that its probes find them.
void TSearchThread::prefetchChild(Move m) const {
    const uint64_t key = approximateChildKey(board, m);
    tt.prefetch(key);
    evaluator->prefetch(key);
}

// This move's child and the next one's, so that the next child's lines are on their way while
// this move is searched. `fetched` counts the moves of the list already prefetched: the next
// move of last time is not fetched again.
void TSearchThread::prefetchChildren(const MoveList& list, uint32_t i, uint32_t& fetched) const {
    const uint32_t end = std::min(i + 2, list.count);
    for (uint32_t k = std::max(i, fetched); k < end; k++) prefetchChild(list.moves[k] & MOVE_MASK);
    fetched = end;
}

// The table's move is not validated yet: only one whose piece codes are in range names a child.
void TSearchThread::prefetchHashChild(Move m) const {
    if (m && movePiece(m) <= B_KING && moveCaptured(m) <= B_KING) prefetchChild(m);
}

int TSearchThread::recognizedEnding(int ply) {
    const EndGameId id = EndGameId(board.state().endgameId);
    if (evaluator->recognizedDraw()) return 0;
    if (id == KRK || id == KQK || id == KPK || id == KPKP) {
        // Table mates count from the probed position; seen from the root they are ply further.
        int value = EndgameTables::instance().probe(board);
        if (value != NO_TABLE_VALUE) return value > 0 ? value - ply : value < 0 ? value + ply : 0;
    }
    // Material that cannot force mate.
    if (id == KK || id == KNK || id == KBK || id == KNNK) return 0;
    return NO_VALUE;
}

int TSearchThread::alphaBeta(int ply, int depth, int extFraction, int alpha, int beta,
                             int nullAllowed, Move* pv) {
    const bool pvNode = beta - alpha > 1;
    if (pvNode) pv[0] = 0;
    countNode();
    if (index == 0 && --pollCountdown <= 0) pollTime();
    if (stopFlag) return alpha;

    PositionState& st = board.state();
    if (st.repetition > 0 || st.rule50 > 100) return 0;
    if (st.endgameId != UNKNOWN) {
        int value = recognizedEnding(ply);
        if (value != NO_VALUE) return value;
    }
    if (int cut; mateDistanceCut(ply, alpha, beta, cut)) return cut;

    // Extensions, in tenths of a ply; whole plies are taken here, the rest goes to the children.
    const Move lastMove = st.move;
    const bool inCheck = st.inCheck;
    const Color us = board.sideToMove;
    MoveList& list = board.moveList(ply);
    int ext = extFraction;
    if (!board.nonPawnCount[White] && !board.nonPawnCount[Black] && moveCaptured(lastMove) &&
        typeOf(moveCaptured(lastMove)) != PAWN)
        ext += P.pawnEndingExtension;
    if (inCheck) {
        ext += P.checkExtension;
        list.count = 0;
        generateEvasions(board, list);
        if (list.count == 0) return ply - MATE;
        if (list.count == 1)
            ext += moveCaptured(list.moves[0]) ? P.singleCaptureEvasionExtension
                                               : P.singleEvasionExtension;
        else if (list.count == 2)
            ext += moveCaptured(list.moves[0]) ? P.twoEvasionsCaptureExtension
                                               : P.twoEvasionsExtension;
    } else if (lastMove && moveIsPawn(lastMove) &&
               relativeRank(pieceColor(movePiece(lastMove)), moveTo(lastMove)) == 6) {
        ext += P.seventhRankPushExtension;
    }
    if (ext >= 10) {
        depth += 1;
        ext -= 10;
    }
    if (depth == 1) selDepth = std::max(selDepth, ply + 1);
    if (depth < 1 || ply >= 99) return quiescence(ply, std::min(depth, 0), alpha, beta, pv);

    // The counter-move entry is read once the moves are ordered; start loading it now.
    const Move prevMove = board.previousMove(1);
    __builtin_prefetch(&ordering->counterMove(prevMove, lastMove));
    ProbeResult entry = tt.probe(st.key, ply);
    if (entry.bound != BOUND_NONE && entry.depth >= depth) {
        if (entry.bound == BOUND_EXACT) return entry.score;
        if (entry.bound == BOUND_UPPER && entry.score <= alpha) return alpha;
        if (entry.bound == BOUND_LOWER && entry.score >= beta) {
            if (entry.move) ordering->storeKiller(ply, entry.move);
            return beta;
        }
    }
    Move hashMove = entry.move;
    prefetchHashChild(hashMove);
    // A null move may follow: its child's cluster arrives while this node evaluates.
    const bool nullMayFollow = nullAllowed && !pvNode && depth >= 2 && !inCheck;
    if (nullMayFollow) tt.prefetch(st.key ^ board.zobrist.sideKey);

    int eval = inCheck ? NO_VALUE : evaluate();
    st.staticEval = eval;
    if (lastMove && !moveCaptured(lastMove)) {
        int parentEval = board.stack->records[board.stateIndex() - 1].staticEval;
        if (parentEval != NO_VALUE && eval != NO_VALUE) {
            int32_t& gain = ordering->gains[movePiece(lastMove)][moveTo(lastMove)];
            gain = std::max(-(parentEval + eval), gain - 1);
        }
    }
    if (entry.bound == BOUND_UPPER) eval = std::min(eval, entry.score);
    if (entry.bound == BOUND_LOWER) eval = std::max(eval, entry.score);

    Move childPv[MAX_PLY + 1];
    childPv[0] = 0;
    if (!inCheck && !pvNode && depth < 4 && eval + P.razorMargin <= alpha && !isMateScore(beta)) {
        int r = alpha - P.razorMargin;
        if (quiescence(ply, 0, r, r + 1, childPv) <= r) return alpha;
    }
    const bool mateSearch = timeManager.mateSearch;
    if (!inCheck && depth < 8 && !mateSearch && !isMateScore(alpha) &&
        eval - P.reverseFutilityMargin * depth >= beta)
        return beta;

    Move threat = 0;
    if (nullMayFollow && !mateSearch && eval >= beta) {
        ordering->killers[ply + 1][2] = 0;
        int reduction = depth / 4 + 3 + std::min((eval - beta) / 100, 3);
        int newDepth = depth - reduction;
        board.makeNullMove();
        int score = newDepth >= 1 ? -alphaBeta(ply + 1, newDepth, 0, -beta, -beta + 1, 0, childPv)
                                  : -quiescence(ply + 1, 0, -beta, -beta + 1, childPv);
        board.unmakeNullMove();
        if (score >= beta) {
            if (depth < 11 || board.nonPawnCount[us] > 1) return beta;
            // Zugzwang is likely with at most one piece: verify with a reduced search of this node.
            int verified = newDepth >= 1 ? alphaBeta(ply, newDepth, 0, beta - 1, beta, 0, childPv)
                                         : quiescence(ply, 0, beta - 1, beta, childPv);
            if (verified >= beta) return beta;
        }
        threat = ordering->killers[ply + 1][2];
    }

    if (!inCheck && !(!pvNode && eval + 100 < beta) && !hashMove && depth >= 6) {
        alphaBeta(ply, 3 * depth / 4 - 2, 0, alpha, beta, 0, childPv);
        hashMove = tt.probe(st.key, ply).move;
    }

    const Move prevMove2 = board.previousMove(2);
    const Move counter = ordering->counterMove(prevMove, lastMove);
    Move killer1 = ply <= 99 ? ordering->killers[ply][0] : 0;
    Move killer2 = ply <= 99 ? ordering->killers[ply][1] : 0;

    Bound bound = BOUND_UPPER;
    Move bestMove = 0, firstMove = 0;
    int movesSearched = 0, quietsSearched = 0;
    bool anyLegal = false;

    CheckInfo checkInfo;  // made when a move's check first matters
    bool checkInfoReady = false;
    auto moveChecks = [&](Move m) {
        if (!checkInfoReady) checkInfo = checkInfoOf(board), checkInfoReady = true;
        return givesCheck(board, m, checkInfo);
    };

    ExchangeMemo exchanges;
    int stage = inCheck ? EVASION_STAGE : HASH_STAGE;
    if (!inCheck && hashMove) {
        Move valid = validateMove(board, hashMove);
        if (!valid) consolePrint("INVALID HASH MOVE!!!");
        hashMove = valid;
    }
    if (!inCheck && !hashMove) stage = CAPTURE_STAGE;

    for (; stage <= EVASION_STAGE; stage++) {
        if (inCheck && stage != EVASION_STAGE) continue;
        if (!inCheck && stage == EVASION_STAGE) break;
        // Fill and order this stage's list.
        if (stage == HASH_STAGE) {
            list.count = 0;
            list.add(withKey(hashMove, 511));
        } else if (stage == CAPTURE_STAGE) {
            list.count = 0;
            generateCaptures(board, list);
            anyLegal |= list.count > 0;
            if (hashMove) removeMove(list, hashMove);
            for (Move& m : list) {
                int s = see(board, m), key;
                exchanges.remember(m, s);
                // Keys of NOT_LOSING_KEY and above go to moves whose exchange does not lose,
                // which the exchange test of the move loop relies on.
                if (moveCaptured(m)) {
                    key = s > 0 ? s / 16 + 384 : s == 0 ? 256 + moveCaptured(m) : s / 16 + 128;
                    if (moveIsPromotion(m) && movePromoChoice(m) == 3) key++;
                } else {
                    key = s != 0 ? 0 : movePromoChoice(m) == 3 ? 256 : 128;
                }
                m = withKey(m, clampKey(key));
            }
            const Move extras[3] = {killer1, counter, killer2};
            const int extraKeys[3] = {131, 130, 129};
            for (int i = 0; i < 3; i++) {
                Move m = extras[i];
                if (!m || m == hashMove) continue;
                if (i == 1 && (m == killer1 || m == killer2)) continue;
                if (i == 2 && m == killer1) continue;
                if (validateMove(board, m)) list.add(withKey(m, extraKeys[i]));
            }
            if (list.count >= 2) sortMoves(list);
        } else if (stage == QUIET_STAGE) {
            list.count = 0;
            generateQuiets(board, list);
            anyLegal |= list.count > 0;
            // The moves of the earlier stages are dropped and the rest keyed in one pass.
            uint32_t kept = 0;
            for (Move m : list)
                if (m != hashMove && m != killer1 && m != killer2 && m != counter)
                    list.moves[kept++] = withKey(m, clampKey(256 + ordering->historyOf(m) / 8));
            list.count = kept;
            if (list.count >= 2) sortMoves(list);
            if (movesSearched == 0 && list.count == 0 && !anyLegal && !hashMove) {
                tt.store(st.key, ply, 100, BOUND_EXACT, 0, 0);
                return 0;  // stalemate: no legal move at all
            }
        } else {
            keyEvasions(list, hashMove, &exchanges);
        }

        uint32_t fetched = 0;
        for (uint32_t i = 0; i < list.count; i++) {
            if (stopFlag) continue;
            const Move m = list.moves[i] & MOVE_MASK;
            const int moveKey = keyOf(list.moves[i]);
            const bool quiet = isQuiet(m);
            // The tests below may ask for the same exchange value and activity several times.
            // The capture and evasion stages remembered the exchange values they ordered by; no
            // move of the quiet stage is among them.
            int seeOfMove = NO_VALUE, active = -1;
            auto moveSee = [&] {
                if (seeOfMove == NO_VALUE &&
                    (stage == QUIET_STAGE || !exchanges.recall(m, seeOfMove)))
                    seeOfMove = see(board, m);
                return seeOfMove;
            };
            // The exchange after a quiet move never loses more than the piece that moves, so a
            // threshold at or below minus its value cannot be reached and see() is skipped; nor
            // is it when the exchange's ceiling already lies below the threshold.
            auto seeBelow = [&](int threshold) {
                if (quiet && -seeValue(movePiece(m)) >= threshold) return false;
                return exchangeCeiling(board, m) < threshold || moveSee() < threshold;
            };
            auto moveIsActive = [&] {
                return active < 0 ? active = isActiveMove(board, m) : active;
            };
            // A capture or promotion keyed this high does not lose material: its key says so.
            const bool keyedNotLosing = stage == CAPTURE_STAGE && moveKey >= NOT_LOSING_KEY;
            auto exchangeLoses = [&] {
                return depth < 7 && !keyedNotLosing && seeBelow(-P.seePruningEighths * 8 * depth);
            };

            // Quiet moves that do not give check face the quiet pruning tests, every other move
            // the exchange test. Whether the move checks is asked only when the answer matters.
            if (movesSearched > 0 && quiet && !isMateScore(alpha) && !inCheck &&
                depth < P.quietPruningDepth) {
                const bool quietPrunes =
                    (depth < 7 && ordering->gains[movePiece(m)][moveTo(m)] +
                                          P.futilityMargins[depth] - P.futilitySubtrahend + eval <=
                                      alpha) ||
                    (!pvNode &&
                     movesSearched >
                         P.lateMovePruningQuarters * depth / 4 + P.lateMovePruningBase &&
                     !moveIsActive() && (!threat || !answersThreat(board, m, threat))) ||
                    (depth < 8 && seeBelow(-P.seeQuietPruning * depth * depth));
                const bool checks = (quietPrunes || exchangeLoses()) && moveChecks(m);
                if (checks ? exchangeLoses() : quietPrunes) continue;
            } else if (exchangeLoses()) {
                continue;
            }

            prefetchChildren(list, i, fetched);
            movesSearched++;
            if (quiet) quietsSearched++;
            if (!firstMove) firstMove = m;

            // Late move reduction, decided before the move is made.
            int newDepth = depth;
            if (movesSearched > 1 && depth >= 3 && depth > P.reductionMinDepth &&
                ordering->historyOf(m) <= depth * depth &&
                ((stage == QUIET_STAGE && quietsSearched >= P.quietMovesBeforeReduction) ||
                 (stage == CAPTURE_STAGE && moveKey < 128))) {
                const int d = std::min(depth, 63), n = std::min(movesSearched, 63);
                int r;
                if (quiet) {
                    r = pvNode ? 0 : P.reductionA[d][n];
                    if (pvNode || r < 10 * depth - 10) {
                        bool full = moveIsActive() || (threat && answersThreat(board, m, threat));
                        r = full ? P.reductionA[d][n] : P.reductionB[d][n];
                        if (pvNode) r = r * P.pvReductionSixteenths / 16;
                    }
                } else {
                    r = (depth / 8 + 2) * 10;
                    if (pvNode) r = r * P.pvReductionSixteenths / 16;
                }
                while (r >= 10 && newDepth >= 2) {
                    newDepth--;
                    r -= 10;
                }
            }

            board.makeMove(m);
            int score;
            if (movesSearched == 1 || depth < 3) {
                score = -alphaBeta(ply + 1, depth - 1, ext, -beta, -alpha, 1, childPv);
            } else {
                score = alpha + 1;
                if (newDepth < depth)
                    score = -alphaBeta(ply + 1, newDepth - 1, ext, -alpha - 1, -alpha, 1, childPv);
                if (score > alpha) {
                    score = -alphaBeta(ply + 1, depth - 1, ext, -alpha - 1, -alpha, 1, childPv);
                    if (pvNode && score > alpha)
                        score = -alphaBeta(ply + 1, depth - 1, ext, -beta, -alpha, 1, childPv);
                }
            }
            board.unmakeMove(m);

            if (score >= beta) {
                if (!stopFlag) tt.store(st.key, ply, depth, BOUND_LOWER, beta, m);
                if (!inCheck) {
                    ordering->storeKiller(ply, m);
                    if (quiet) {
                        ordering->counterMove(prevMove, lastMove) = m;
                        ordering->counterMove(prevMove2, lastMove) = m;
                        ordering->updateHistory(m, depth * depth);
                        for (uint32_t j = 0; j < i; j++)
                            if (isQuiet(list.moves[j]))
                                ordering->updateHistory(list.moves[j] & MOVE_MASK, -depth * depth);
                    }
                }
                return beta;
            }
            if (score > alpha) {
                alpha = score;
                bound = BOUND_EXACT;
                bestMove = m;
                if (m != counter) ordering->storeKiller(ply, m);
                copyPv(pv, m, childPv);
            }
        }
    }
    if (stopFlag) return alpha;
    tt.store(st.key, ply, depth, bound, alpha, bound == BOUND_EXACT ? bestMove : firstMove);
    return alpha;
}

int TSearchThread::quiescence(int ply, int depth, int alpha, int beta, Move* pv) {
    const bool pvNode = beta - alpha > 1;
    PositionState& st = board.state();
    const bool inCheck = st.inCheck;
    if (depth < 0) {
        if (pvNode) pv[0] = 0;
        countNode();
        if (depth == -1 && isQuiet(st.move) && st.repetition) return 0;
        if (index == 0 && --pollCountdown <= 0) pollTime();
        if (stopFlag) return alpha;
        if (st.endgameId != UNKNOWN) {
            int value = recognizedEnding(ply);
            if (value != NO_VALUE) return value;
        }
        if (int cut; mateDistanceCut(ply, alpha, beta, cut)) return cut;
    }

    ProbeResult entry = tt.probe(st.key, ply);
    if ((entry.bound == BOUND_EXACT || entry.bound == BOUND_LOWER) && entry.score >= beta)
        return beta;
    if ((entry.bound == BOUND_EXACT || entry.bound == BOUND_UPPER) && entry.score <= alpha)
        return alpha;
    Move hashMove = entry.move;
    prefetchHashChild(hashMove);

    if ((ply >= 120 && !inCheck) || ply >= 127) return evaluate();
    int eval = NO_VALUE;
    if (!inCheck) {
        eval = evaluate();
        if (entry.bound == BOUND_UPPER) eval = std::min(eval, entry.score);
        if (entry.bound == BOUND_LOWER) eval = std::max(eval, entry.score);
        if (eval >= beta) return beta;
        if (eval + seeValue(W_QUEEN) + P.quiescenceDeltaMargin < alpha) return alpha;
        alpha = std::max(alpha, eval);
    }

    MoveList& list = board.moveList(ply);
    Move childPv[MAX_PLY + 1];
    childPv[0] = 0;
    Move bestMove = 0;
    int stage = inCheck ? EVASION_STAGE : HASH_STAGE;
    if (!inCheck) {
        hashMove = hashMove ? validateMove(board, hashMove) : 0;
        if (!hashMove) stage = CAPTURE_STAGE;
    }
    for (; stage <= EVASION_STAGE; stage++) {
        if (stage == QUIET_STAGE) continue;
        if (!inCheck && stage == EVASION_STAGE) break;
        list.count = 0;
        if (stage == HASH_STAGE) {
            list.add(hashMove);
        } else if (stage == CAPTURE_STAGE) {
            // Captures of a piece too small to lift the score to alpha are pruned below; alpha
            // only rises, so they need not be generated at all.
            Bitboard victims = 0;
            for (int type = PAWN; type <= QUEEN; type++) {
                const int piece = makePiece(~board.sideToMove, type);
                if (seeValue(piece) + P.quiescenceDeltaMargin + eval >= alpha)
                    victims |= board.pieceBB[piece];
            }
            generateCaptures(board, list, victims);
            if (hashMove) removeMove(list, hashMove);
            static constexpr int VICTIM[7] = {0, 32, 80, 80, 160, 255, 0};
            static constexpr int ATTACKER[7] = {0, 8, 24, 24, 40, 72, 0};
            for (Move& m : list) {
                int key = moveCaptured(m) ? VICTIM[typeOf(moveCaptured(m))] -
                                                ATTACKER[typeOf(movePiece(m))] + 256
                                          : (movePromoChoice(m) == 3 ? 256 : 0);
                m = withKey(m, clampKey(key));
            }
            if (list.count >= 2) sortMoves(list);
        } else {
            generateEvasions(board, list);
            if (list.count == 0) return ply - MATE;
            keyEvasions(list, hashMove);
            bestMove = list.moves[0] & MOVE_MASK;
        }

        uint32_t fetched = 0;
        for (uint32_t i = 0; i < list.count; i++) {
            if (stopFlag) continue;
            const Move m = list.moves[i] & MOVE_MASK;
            if (!inCheck) {
                const int captured = seeValue(moveCaptured(m)), mover = seeValue(movePiece(m));
                if (captured + P.quiescenceDeltaMargin + eval < alpha && !moveIsPromotion(m))
                    continue;
                if (moveIsPromotion(m) && movePromoChoice(m) != 3) continue;
                if (stage != HASH_STAGE) {
                    if (captured < mover && (exchangeCeiling(board, m) < 0 || see(board, m) < 0))
                        continue;
                    if (captured == mover && eval + P.quiescenceEqualExchangeMargin < alpha &&
                        see(board, m) == 0)
                        continue;
                }
            }
            prefetchChildren(list, i, fetched);
            board.makeMove(m);
            int score = -quiescence(ply + 1, depth - 1, -beta, -alpha, childPv);
            board.unmakeMove(m);
            if (score > alpha) {
                bestMove = m;
                if (score >= beta) {
                    if (!stopFlag) tt.store(st.key, ply, 0, BOUND_LOWER, beta, m);
                    return beta;
                }
                alpha = score;
                copyPv(pv, m, childPv);
            }
        }
    }
    if (stopFlag || !inCheck) return alpha;
    tt.store(st.key, ply, 0, BOUND_UPPER, alpha, bestMove);
    return alpha;
}
