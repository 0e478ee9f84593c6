#include "tools/match/game.h"

#include <ctime>
#include <memory>

#include "core/board.h"
#include "core/notation.h"
#include "tools/match/rules.h"

namespace match {

namespace {

std::string today() {
    std::time_t now = std::time(nullptr);
    std::tm local;
    localtime_r(&now, &local);
    char text[16];
    std::strftime(text, sizeof text, "%Y.%m.%d", &local);
    return text;
}

const char* colorName(Color c) { return c == White ? "White" : "Black"; }

// The side at fault loses.
Verdict fault(Color side, Termination kind, const std::string& what) {
    return {side == White ? Result::BlackWins : Result::WhiteWins, kind,
            std::string(colorName(side)) + " " + what};
}

Verdict engineFault(Color side, EngineStatus status) {
    return status == EngineStatus::Crashed ? fault(side, Termination::Crash, "disconnects")
                                           : fault(side, Termination::Stall, "stalls");
}

// The move if the text names a legal move in exactly its coordinate form, else 0.
Move legalMove(Board& board, const std::string& text) {
    Move m = parseMove(board, text);
    return m && moveToUci(m) == text && isMoveInList(board, m) ? m : 0;
}

}  // namespace

GameRecord playGame(UciEngine& white, UciEngine& black, const std::string& startFen,
                    const GameSettings& settings, const std::atomic<bool>& stop) {
    GameRecord game;
    game.white = white.config().name;
    game.black = black.config().name;
    game.date = today();
    UciEngine* engines[2] = {&white, &black};
    // An engine with a clock of its own (time odds) plays by it, the other by the match's.
    const TimeControl* clocks[2];
    for (Color side : {White, Black}) {
        const std::optional<TimeControl>& own = engines[side]->config().clock;
        clocks[side] = own ? &*own : &settings.timeControl;
    }
    if (clocks[White]->pgnTag() == clocks[Black]->pgnTag()) {
        game.timeControl = clocks[White]->pgnTag();
    } else {
        game.whiteTimeControl = clocks[White]->pgnTag();
        game.blackTimeControl = clocks[Black]->pgnTag();
    }

    auto board = std::make_unique<Board>();
    std::string position = "position startpos";
    if (!startFen.empty()) {
        if (board->setFen(startFen) != 0) {
            game.verdict = {Result::None, Termination::Aborted, "Bad opening position " + startFen};
            return game;
        }
        game.startFen = board->getFen();
        position = "position fen " + game.startFen;
    }
    std::string moveTexts;

    for (Color side : {White, Black}) {
        EngineStatus status = engines[side]->prepareGame(settings.handshakeTimeoutMs);
        if (status != EngineStatus::Ok) {
            engines[side]->kill();
            game.verdict = engineFault(side, status);
            return game;
        }
    }

    long remaining[2] = {clocks[White]->baseMs, clocks[Black]->baseMs};
    const long increments[2] = {clocks[White]->incrementMs, clocks[Black]->incrementMs};
    std::vector<uint64_t> history{board->key()};
    ScoreAdjudicator adjudicator(settings.resign, settings.draw);
    std::optional<Verdict> verdict = ruleVerdict(*board, history);

    while (!verdict) {
        if (stop) {
            game.verdict = {Result::None, Termination::Aborted, "Match stopped"};
            return game;
        }
        Color side = board->sideToMove;
        const TimeControl& tc = *clocks[side];
        long budget = tc.kind == TimeControl::Clock
                          ? remaining[side] + graceMs(remaining[side]) + settings.stallMarginMs
                          : settings.moveTimeoutMs;
        std::string command = moveTexts.empty() ? position : position + " moves" + moveTexts;
        SearchReply reply =
            engines[side]->search(command, tc.goCommand(remaining, increments), int(budget));
        if (reply.status != EngineStatus::Ok) {
            // A stalled engine may still be thinking; the next game starts a fresh one.
            engines[side]->kill();
            verdict = engineFault(side, reply.status);
            break;
        }
        if (tc.kind == TimeControl::Clock) {
            if (reply.elapsedMs > remaining[side] + graceMs(remaining[side])) {
                verdict = fault(side, Termination::TimeForfeit,
                                "loses on time (" + std::to_string(reply.elapsedMs) + " ms used, " +
                                    std::to_string(remaining[side]) + " ms left)");
                break;
            }
            remaining[side] += increments[side] - reply.elapsedMs;
        }
        Move m = legalMove(*board, reply.bestMove);
        if (!m) {
            verdict =
                fault(side, Termination::IllegalMove, "makes an illegal move: " + reply.bestMove);
            break;
        }
        game.moves.push_back({m, reply.score, reply.depth, reply.elapsedMs});
        moveTexts += " " + reply.bestMove;
        board->makeMove(m);
        history.push_back(board->key());
        verdict = ruleVerdict(*board, history);
        if (!verdict) verdict = adjudicator.afterMove(side, reply.score, int(game.moves.size()));
        // The board's state stack bounds the length of a game; no real game comes near it.
        if (!verdict && board->stateIndex() >= MAX_GAME_PLIES)
            verdict = Verdict{Result::Draw, Termination::Adjudication, "Draw by game length"};
    }
    game.verdict = *verdict;
    return game;
}

}  // namespace match
