// The match runner: game ends by the rules and by scores, Elo and SPRT arithmetic, PGN, the
// command line, the schedule, and whole games against a scripted fake engine that can also
// play an illegal move, stall, crash or overstep its time.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "core/board.h"
#include "core/notation.h"
#include "tools/match/game.h"
#include "tools/match/match_options.h"
#include "tools/match/openings.h"
#include "tools/match/pgn.h"
#include "tools/match/rules.h"
#include "tools/match/schedule.h"
#include "tools/match/score_adjudication.h"
#include "tools/match/stats.h"

using namespace match;

namespace {

const std::string FAKE = FAKE_UCI_ENGINE;
const std::string FOOLS_MATE = "f2f3 e7e5 g2g4 d8h4";
const std::string KNIGHT_SHUFFLE = "g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1 f6g8";

std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> result;
    for (std::string word; stream >> word;) result.push_back(word);
    return result;
}

// A board after the moves, with the key of every position passed through.
struct Replay {
    std::unique_ptr<Board> board = std::make_unique<Board>();
    std::vector<uint64_t> history;
    std::vector<Move> moves;

    Replay(const std::string& fen, const std::string& moveText) {
        if (!fen.empty()) {
            EXPECT_EQ(board->setFen(fen), 0) << fen;
        }
        history.push_back(board->key());
        for (const std::string& text : words(moveText)) {
            Move m = parseMove(*board, text);
            EXPECT_TRUE(isMoveInList(*board, m)) << text;
            moves.push_back(m);
            board->makeMove(m);
            history.push_back(board->key());
        }
    }
};

std::string tempPath(const std::string& name) {
    return (std::filesystem::temp_directory_path() /
            ("match_test_" + std::to_string(getpid()) + "_" + name))
        .string();
}

}  // namespace

TEST(MatchRules, EndsGamesByTheRules) {
    struct Case {
        const char* fen;
        const char* moves;
        Result result;
        const char* reason;  // empty while the game goes on
    };
    const Case cases[] = {
        {"", FOOLS_MATE.c_str(), Result::BlackWins, "Black mates"},
        {"", "e2e4", Result::None, ""},
        {"7k/5Q2/6K1/8/8/8/8/8 b - -", "", Result::Draw, "Draw by stalemate"},
        // The hundredth quiet half-move: a mate still wins, any other move draws.
        {"7k/8/6K1/8/8/8/8/R7 w - - 99 80", "a1a8", Result::WhiteWins, "White mates"},
        {"7k/8/6K1/8/8/8/8/R7 w - - 99 80", "a1b1", Result::Draw, "Draw by fifty-move rule"},
        {"7k/8/6K1/8/8/8/8/R7 w - - 98 80", "a1b1", Result::None, ""},
        // The start position a third time; twice is not enough.
        {"", KNIGHT_SHUFFLE.c_str(), Result::Draw, "Draw by threefold repetition"},
        {"", "g1f3 g8f6 f3g1 f6g8", Result::None, ""},
        // The same squares with a different side to move are another position.
        {"4k3/8/8/8/8/8/8/R3K3 w - -", "a1a2 e8d8 a2a1 d8e8 a1a2 e8d8 a2a1", Result::None, ""},
        {"4k3/8/8/8/8/8/8/R3K3 w - -", "a1a2 e8d8 a2a1 d8e8 a1a2 e8d8 a2a1 d8e8", Result::Draw,
         "Draw by threefold repetition"},
        {"4k3/8/8/8/8/8/8/4K3 w - -", "", Result::Draw, "Draw by insufficient material"},
        {"4k3/8/8/8/8/8/8/4KN2 w - -", "", Result::Draw, "Draw by insufficient material"},
        {"4k3/8/8/8/8/8/8/4KB2 b - -", "", Result::Draw, "Draw by insufficient material"},
        {"2b1k3/8/8/8/8/8/8/4KB2 w - -", "", Result::Draw, "Draw by insufficient material"},
        {"2b1k3/8/8/8/8/8/8/2B1K3 w - -", "", Result::None, ""},  // bishops of both colours
        {"4k3/8/8/8/8/8/8/3NKN2 w - -", "", Result::None, ""},    // a helpmate exists
        {"4k3/8/8/8/8/8/4P3/4K3 w - -", "", Result::None, ""},
        {"4k3/8/8/8/8/8/8/4K2R w - -", "", Result::None, ""},
        // A capture leaving bare kings ends the game at once.
        {"4k3/8/8/8/8/8/3n4/4K3 w - -", "e1d2", Result::Draw, "Draw by insufficient material"},
    };
    for (const Case& c : cases) {
        Replay replay(c.fen, c.moves);
        std::optional<Verdict> verdict = ruleVerdict(*replay.board, replay.history);
        SCOPED_TRACE(std::string(c.fen) + " moves " + c.moves);
        ASSERT_EQ(verdict.has_value(), c.result != Result::None);
        if (!verdict) continue;
        EXPECT_EQ(verdict->result, c.result);
        EXPECT_EQ(verdict->reason, c.reason);
        EXPECT_EQ(verdict->termination, Termination::Normal);
    }
}

TEST(MatchRules, AdjudicatesByTheEnginesScores) {
    struct Case {
        const char* name;
        ResignRule resign;
        DrawRule draw;
        std::vector<std::optional<int>> scores;  // each mover's own score, White first
        size_t decidedAt;                        // half-moves played; 0 for never
        Result result;
    };
    const std::optional<int> none;
    // clang-format off
    const Case cases[] = {
        {"both agree twice each", {2, 600}, {}, {700, -700, 700, -700}, 4, Result::WhiteWins},
        {"the loser is the mover", {2, 600}, {}, {-650, 600, -900, 700}, 4, Result::BlackWins},
        {"mate scores count", {1, 600}, {}, {MATE_SCORE - 3, -MATE_SCORE + 2}, 2, Result::WhiteWins},
        {"streak broken", {2, 600}, {}, {700, -700, 500, -700, 700}, 0, Result::None},
        {"loser disagrees", {2, 600}, {}, {700, 0, 700, 0, 700, 0}, 0, Result::None},
        {"no score breaks it", {1, 600}, {}, {700, none, 700}, 0, Result::None},
        {"just at the threshold", {1, 600}, {}, {600, -600}, 2, Result::WhiteWins},
        {"resign rule off", {}, {}, {900, -900, 900, -900}, 0, Result::None},
        {"level after move 2", {}, {2, 1, 10}, {0, 5, -10, 10}, 4, Result::Draw},
        {"level too early", {}, {3, 1, 10}, {0, 5, -10, 10}, 0, Result::None},
        {"one score too big", {}, {0, 2, 10}, {0, 11, 0, 0, 0}, 0, Result::None},
        {"draw rule off", {}, {}, {0, 0, 0, 0}, 0, Result::None},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ScoreAdjudicator adjudicator(c.resign, c.draw);
        std::optional<Verdict> verdict;
        size_t plies = 0;
        while (!verdict && plies < c.scores.size()) {
            Color mover = plies % 2 ? Black : White;
            verdict = adjudicator.afterMove(mover, c.scores[plies], int(plies + 1));
            plies++;
        }
        EXPECT_EQ(verdict ? plies : 0, c.decidedAt);
        if (verdict) {
            EXPECT_EQ(verdict->result, c.result);
            EXPECT_EQ(verdict->termination, Termination::Adjudication);
        }
    }
}

// Worked by hand. With score s = (W + D/2)/N and per-game variance
// var = (W(1-s)^2 + D(1/2-s)^2 + L s^2)/N, Elo = -400 log10(1/s - 1), and the bar is half the
// Elo distance between s -/+ 1.96 sqrt(var/N).
//   60-0-40: s = 0.6, Elo = -400 log10(2/3) = 70.44; var = (60(.16) + 40(.36))/100 = 0.24,
//            1.96 sqrt(.0024) = 0.0960, Elo(0.6960) = 143.9, Elo(0.5040) = 2.77, bar 70.57.
//   50-0-50: s = 0.5, var = 0.25, s +/- 0.098: Elo(0.598) = 68.99 = -Elo(0.402), bar 68.99.
//   20-60-20: var = 40(.25)/100 = 0.1, s +/- 0.0620: bar 43.29, narrower than with no draws.
//   LOS of 60-40: (1 + erf(20 / sqrt(200))) / 2 = (1 + erf(1.414)) / 2 = 0.9772; of 5-0: 0.9873.
TEST(MatchStats, EloAndErrorBar) {
    struct Case {
        Tally tally;
        double elo, margin, los;
    };
    const double INF = std::numeric_limits<double>::infinity();
    const Case cases[] = {
        {{60, 0, 40}, 70.44, 70.57, 0.9772}, {{40, 0, 60}, -70.44, 70.57, 0.0228},
        {{50, 0, 50}, 0.0, 68.99, 0.5},      {{20, 60, 20}, 0.0, 43.29, 0.5},
        {{0, 10, 0}, 0.0, 0.0, 0.5},         {{5, 0, 0}, INF, INF, 0.9873},
    };
    for (const Case& c : cases) {
        const Tally& t = c.tally;
        SCOPED_TRACE(std::to_string(t.wins) + "-" + std::to_string(t.draws) + "-" +
                     std::to_string(t.losses));
        EloEstimate e = estimateElo(t);
        if (std::isinf(c.elo))
            EXPECT_EQ(e.elo, c.elo);
        else
            EXPECT_NEAR(e.elo, c.elo, 0.01);
        if (std::isinf(c.margin))
            EXPECT_EQ(e.margin, c.margin);
        else
            EXPECT_NEAR(e.margin, c.margin, 0.01);
        EXPECT_NEAR(e.los, c.los, 0.0001);
    }
    EXPECT_NEAR(scoreFromElo(eloFromScore(0.3)), 0.3, 1e-12);
    EXPECT_EQ(eloFromScore(0.0), -INF);
}

// LLR = N (s1 - s0)(2s - s0 - s1) / (2 var), bounds ln(b/(1-a)) and ln((1-b)/a) = -/+2.944 at
// alpha = beta = 0.05. For elo0 = 0, elo1 = 5: s0 = 0.5, s1 = 1/(1 + 10^(-5/400)) = 0.507195.
//   60-0-40:  100 (.007195)(1.2 - 1.007195) / (2 (.24)) = 0.2890, no decision.
//   700-0-300: var = 0.21, 1000 (.007195)(.392805) / .42 = 6.729, H1.
//   400-0-600: var = 0.24, 1000 (.007195)(-.207195) / .48 = -3.106, H0.
// For elo1 = 200, s1 = 0.759747; 3-2-0: s = 0.8, var = (3(.04) + 2(.09))/5 = 0.06,
//   5 (.259747)(.340253) / .12 = 3.682, H1.
TEST(MatchStats, SequentialProbabilityRatioTest) {
    struct Case {
        Tally tally;
        SprtSettings settings;
        double llr;
        SprtDecision decision;
    };
    const SprtSettings normal{0, 5, 0.05, 0.05};
    const Case cases[] = {
        {{60, 0, 40}, normal, 0.2890, SprtDecision::Continue},
        {{700, 0, 300}, normal, 6.7292, SprtDecision::AcceptH1},
        {{400, 0, 600}, normal, -3.1058, SprtDecision::AcceptH0},
        {{3, 2, 0}, {0, 200, 0.05, 0.05}, 3.6825, SprtDecision::AcceptH1},
        {{2, 2, 0}, {0, 200, 0.05, 0.05}, 1.9970, SprtDecision::Continue},
        {{0, 0, 0}, normal, 0.0, SprtDecision::Continue},
        {{9, 0, 0}, normal, 0.0, SprtDecision::Continue},  // no spread to measure yet
    };
    for (const Case& c : cases) {
        SprtState state = sprt(c.tally, c.settings);
        EXPECT_NEAR(state.llr, c.llr, 0.0001)
            << c.tally.wins << "-" << c.tally.draws << "-" << c.tally.losses;
        EXPECT_EQ(state.decision, c.decision);
        EXPECT_NEAR(state.lower, -2.9444, 0.0001);
        EXPECT_NEAR(state.upper, 2.9444, 0.0001);
    }
    EXPECT_NEAR(sprt({}, {0, 5, 0.05, 0.10}).lower, std::log(0.10 / 0.95), 1e-12);
}

TEST(MatchPgn, WritesTagsMovesAndTheReason) {
    Replay fools("", FOOLS_MATE);
    GameRecord game;
    game.round = 7;
    game.white = "Alpha";
    game.black = "Beta";
    game.timeControl = "10+0.1";
    game.date = "2024.01.02";
    game.verdict = {Result::BlackWins, Termination::Normal, "Black mates"};
    const std::optional<int> scores[] = {-35, 20, -150, MATE_SCORE - 1};
    for (size_t i = 0; i < 4; i++)
        game.moves.push_back({fools.moves[i], scores[i], int(i + 3), long(100 * i)});
    EXPECT_EQ(formatPgn(game, "Test \"quoted\""),
              "[Event \"Test \\\"quoted\\\"\"]\n"
              "[Site \"?\"]\n"
              "[Date \"2024.01.02\"]\n"
              "[Round \"7\"]\n"
              "[White \"Alpha\"]\n"
              "[Black \"Beta\"]\n"
              "[Result \"0-1\"]\n"
              "[TimeControl \"10+0.1\"]\n"
              "[PlyCount \"4\"]\n"
              "[Termination \"normal\"]\n"
              "\n"
              "1. f3 {-0.35/3 0.00s} e5 {+0.20/4 0.10s} 2. g4 {-1.50/5 0.20s} Qh4#\n"
              "{+M1/6 0.30s} {Black mates} 0-1\n"
              "\n");

    // From a set-up position with Black to move, and a fault as the ending.
    const std::string fen = "4k3/8/8/8/8/8/4P3/4K3 b - - 0 30";
    Replay endgame(fen, "e8d7 e2e4");
    game.startFen = fen;
    game.moves = {{endgame.moves[0], std::nullopt, 0, 1500},
                  {endgame.moves[1], std::nullopt, 0, 20}};
    game.verdict = {Result::WhiteWins, Termination::TimeForfeit, "Black loses on time"};
    std::string pgn = formatPgn(game, "E");
    EXPECT_NE(pgn.find("[FEN \"" + fen + "\"]\n[SetUp \"1\"]\n"), std::string::npos) << pgn;
    EXPECT_NE(pgn.find("[Termination \"time forfeit\"]"), std::string::npos) << pgn;
    EXPECT_NE(pgn.find("\n30... Kd7 {1.50s} 31. e4 {0.02s} {Black loses on time} 1-0\n"),
              std::string::npos)
        << pgn;
}

TEST(MatchOptions, ReadsTheCommandLineAndRejectsBrokenOnes) {
    const std::string two = "--engine cmd=a --engine cmd=b ";
    struct Case {
        std::string line;
        const char* error;  // a part of the message; empty when the line is sound
    };
    // clang-format off
    const Case cases[] = {
        {two, ""},
        {two + "--tc 10+0.1 --games 100 --concurrency 2 --pgn out.pgn --openings o.epd --start 5", ""},
        {two + "--depth 8 --resign movecount=3 score=600 --draw movenumber=40 movecount=8 score=10", ""},
        {two + "--sprt elo0=0 elo1=5 alpha=0.05 beta=0.05 --nodes 1000", ""},
        {two + "--engine cmd=c --gauntlet", ""},
        {"--engine cmd=a", "at least two engines"}, {"--engine name=x --engine cmd=b", "cmd= is required"},
        {"--engine cmd=a Threads=2 --engine cmd=b", "unknown key 'Threads'"},
        {"--engine cmd=a option.=2 --engine cmd=b", "option without a name"},
        {"--engine cmd=a plain --engine cmd=b", "expected key=value"},
        {two + "--tc", "--tc: expected"}, {two + "--tc 10+", "--tc: expected"},
        {two + "--tc abc", "--tc: expected"}, {two + "--tc -5", "--tc: expected"},
        {two + "--tc 0+1", "--tc: expected"}, {two + "--tc 10 20", "--tc: expected"},
        {two + "--tc 10 --depth 5", "one of --tc, --depth and --nodes"},
        {two + "--depth 0", "--depth: bad value"}, {two + "--depth x", "--depth: bad value"},
        {two + "--games", "--games takes one value"}, {two + "--games 0", "--games: bad value"},
        {two + "--concurrency 2x", "--concurrency: bad value"}, {two + "--start -1", "--start: bad value"},
        {two + "--resign movecount=3", "missing score="},
        {two + "--resign movecount=3 score=600 depth=2", "unknown key 'depth'"},
        {two + "--draw movenumber=40 movecount=0 score=10", "bad value for movecount"},
        {two + "--sprt elo0=5 elo1=0", "elo1 must exceed elo0"}, {two + "--sprt alpha=0.7", "alpha and beta"},
        {two + "--sprt elo1=five", "bad value for elo1"}, {two + "--engine cmd=c --sprt", "exactly two engines"},
        {two + "--gauntlet yes", "takes no value"}, {two + "--colour white", "unknown option --colour"},
        {"stray " + two, "unexpected 'stray'"},
    };
    // clang-format on
    for (const Case& c : cases) {
        MatchOptions options;
        std::string error = parseOptions(words(c.line), options);
        if (*c.error == 0)
            EXPECT_EQ(error, "") << c.line;
        else
            EXPECT_NE(error.find(c.error), std::string::npos) << c.line << " -> " << error;
    }

    MatchOptions o;
    ASSERT_EQ(
        parseOptions(
            words("--engine name=M cmd=build/morvane option.Threads=2 option.Hash=64 dir=/tmp "
                  "--engine cmd=/usr/games/glaurung --tc 2.5+0.05 --resign movecount=3 score=600"),
            o),
        "");
    EXPECT_EQ(o.engines[0].name, "M");
    EXPECT_EQ(o.engines[0].command, "build/morvane");
    EXPECT_EQ(o.engines[0].directory, "/tmp");
    EXPECT_EQ(o.engines[0].options,
              (std::vector<std::pair<std::string, std::string>>{{"Threads", "2"}, {"Hash", "64"}}));
    EXPECT_EQ(o.game.timeControl.baseMs, 2500);
    EXPECT_EQ(o.game.timeControl.incrementMs, 50);
    EXPECT_EQ(o.game.resign.moveCount, 3);
    EXPECT_EQ(o.game.resign.score, 600);
}

TEST(MatchTimeControl, GoCommandsAndTags) {
    const long remaining[2] = {9500, -20};
    EXPECT_EQ(TimeControl::parseClock("10+0.1")->goCommand(remaining),
              "go wtime 9500 btime 1 winc 100 binc 100");
    EXPECT_EQ(TimeControl::fixedDepth(7).goCommand(remaining), "go depth 7");
    EXPECT_EQ(TimeControl::fixedNodes(5000).goCommand(remaining), "go nodes 5000");
    EXPECT_EQ(TimeControl::parseClock("60")->pgnTag(), "60");
    EXPECT_EQ(TimeControl::parseClock("0.5+0.01")->pgnTag(), "0.5+0.01");
    EXPECT_EQ(TimeControl::fixedDepth(7).pgnTag(), "-");
    EXPECT_EQ(graceMs(10000), 150);
    EXPECT_EQ(graceMs(-30), 50);
}

TEST(MatchSchedule, PairsColoursAndOpenings) {
    EXPECT_EQ(pairings(3, false), (std::vector<Pairing>{{0, 1}, {0, 2}, {1, 2}}));
    EXPECT_EQ(pairings(4, true), (std::vector<Pairing>{{0, 1}, {0, 2}, {0, 3}}));

    // Five games from the third of three openings: each opening twice, colours reversed,
    // wrapping around to the first; an odd count leaves the last opening played once.
    std::vector<ScheduledGame> games = schedule({{0, 1}}, 5, {"A", "B", "C"}, 2);
    std::string seen;
    for (const ScheduledGame& g : games)
        seen += std::to_string(g.round) + ":" + std::to_string(g.white) + std::to_string(g.black) +
                g.fen + " ";
    EXPECT_EQ(seen, "1:01C 2:10C 3:01A 4:10A 5:01B ");

    // Pairs take turns, two games at a time.
    games = schedule(pairings(3, false), 4, {}, 0);
    seen.clear();
    for (const ScheduledGame& g : games) seen += std::to_string(g.pair);
    EXPECT_EQ(seen, "001122001122");
    EXPECT_EQ(games[0].fen, "");
}

TEST(MatchOpenings, ReadsFourFieldsAndNamesTheBadLine) {
    const std::string path = tempPath("openings.epd");
    std::ofstream(path) << "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 c0 \"1. e4\";\n"
                        << "\n# a comment\n"
                        << "4k3/8/8/8/8/8/8/4K2R w K - bm Rh8+;\n";
    std::vector<std::string> openings;
    std::string error;
    ASSERT_TRUE(readOpenings(path, openings, error)) << error;
    EXPECT_EQ(openings,
              (std::vector<std::string>{"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3",
                                        "4k3/8/8/8/8/8/8/4K2R w K -"}));

    std::ofstream(path) << "4k3/8/8/8/8/8/8/4K2R w K -\n4k3/8/8/9/8/8/8/4K2R w K -\n";
    openings.clear();
    EXPECT_FALSE(readOpenings(path, openings, error));
    EXPECT_NE(error.find("line 2"), std::string::npos) << error;
    std::filesystem::remove(path);
    EXPECT_FALSE(readOpenings(path, openings, error));
}

// Whole games against the fake engine: each fault must end the game as the faulty side's loss,
// with its reason.
TEST(MatchGame, PlaysGamesAndScoresEveryFault) {
    struct Case {
        const char* name;
        std::string white, black;  // fake engine arguments
        std::string fen;
        Result result;
        Termination termination;
        const char* reason;
        size_t moves;
    };
    const std::string shuffle = "play " + KNIGHT_SHUFFLE;
    // clang-format off
    const Case cases[] = {
        {"mate", "play " + FOOLS_MATE, "play " + FOOLS_MATE, "", Result::BlackWins, Termination::Normal, "Black mates", 4},
        {"repetition", shuffle, shuffle, "", Result::Draw, Termination::Normal, "Draw by threefold repetition", 8},
        {"from a position", "play a1a8", "play", "7k/8/6K1/8/8/8/8/R7 w - -", Result::WhiteWins, Termination::Normal, "White mates", 1},
        {"illegal move", "illegal", shuffle, "", Result::BlackWins, Termination::IllegalMove, "White makes an illegal move: a1a8", 0},
        {"move past the end of its script", "play g1f3", shuffle, "", Result::BlackWins, Termination::IllegalMove, "White makes an illegal move: ", 2},
        {"crash", shuffle, "crash", "", Result::WhiteWins, Termination::Crash, "Black disconnects", 1},
        {"stall", shuffle, "stall", "", Result::WhiteWins, Termination::Stall, "Black stalls", 1},
        {"no uciok", "mute", shuffle, "", Result::BlackWins, Termination::Stall, "White stalls", 0},
        {"cannot start", shuffle, "", "", Result::WhiteWins, Termination::Crash, "Black disconnects", 0},
        {"time forfeit", "slow " + KNIGHT_SHUFFLE, shuffle, "", Result::BlackWins, Termination::TimeForfeit, "White loses on time", 0},
        {"resignation", "score 700 " + KNIGHT_SHUFFLE, "score -700 " + KNIGHT_SHUFFLE, "", Result::WhiteWins, Termination::Adjudication, "White wins by adjudication", 4},
        {"draw by scores", "score 3 " + KNIGHT_SHUFFLE, "score -3 " + KNIGHT_SHUFFLE, "", Result::Draw, Termination::Adjudication, "Draw by adjudication", 2},
    };
    // clang-format on
    GameSettings settings;
    settings.timeControl = *TimeControl::parseClock("0.1");
    settings.handshakeTimeoutMs = 300;
    settings.stallMarginMs = 500;
    settings.resign = {2, 600};
    settings.draw = {1, 1, 10};
    std::atomic<bool> stop{false};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        UciEngine white({"W", FAKE + " " + c.white, "", {}});
        UciEngine black(
            {"B", c.black.empty() ? "/nonexistent/engine" : FAKE + " " + c.black, "", {}});
        GameRecord game = playGame(white, black, c.fen, settings, stop);
        EXPECT_EQ(game.verdict.result, c.result);
        EXPECT_EQ(game.verdict.termination, c.termination);
        EXPECT_EQ(game.verdict.reason.substr(0, std::string(c.reason).size()), c.reason);
        EXPECT_EQ(game.moves.size(), c.moves);
        EXPECT_EQ(game.white, "W");
    }
}

// What the runner says to an engine, line by line, over a whole game and its end.
TEST(MatchGame, SpeaksUciInOrder) {
    const std::string directory = tempPath("dir");
    std::filesystem::create_directories(directory);
    setenv("FAKE_UCI_LOG", "uci.log", 1);
    {
        UciEngine white(
            {"W", FAKE + " play " + FOOLS_MATE, directory, {{"Hash", "16"}, {"Threads", "1"}}});
        UciEngine black({"B", FAKE + " play h8g8 e7e5 g8h8 d8h4", "", {}});
        GameSettings settings;
        settings.timeControl = TimeControl::fixedDepth(3);
        std::atomic<bool> stop{false};
        GameRecord game = playGame(white, black, "", settings, stop);
        EXPECT_EQ(game.verdict.reason, "Black mates");
        EXPECT_EQ(game.timeControl, "-");
        // A second game reuses the running engine.
        game = playGame(white, black, "7k/8/6K1/8/8/8/8/R7 b - -", settings, stop);
        EXPECT_EQ(game.verdict.reason, "White makes an illegal move: e7e5");
        white.quit();
    }
    unsetenv("FAKE_UCI_LOG");
    std::ifstream log(directory + "/uci.log");
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);) lines.push_back(line);
    // clang-format off
    EXPECT_EQ(lines, (std::vector<std::string>{
        "uci", "setoption name Hash value 16", "setoption name Threads value 1", "ucinewgame",
        "isready", "position startpos", "go depth 3", "position startpos moves f2f3 e7e5",
        "go depth 3", "ucinewgame", "isready",
        "position fen 7k/8/6K1/8/8/8/8/R7 b - - 0 1 moves h8g8", "go depth 3", "quit"}));
    // clang-format on
    std::filesystem::remove_all(directory);
}

namespace {

// Runs the match binary; returns its exit status and leaves its standard output in `output`.
int runMatch(const std::string& arguments, std::string& output) {
    FILE* pipe =
        popen((std::string(MORVANE_MATCH_BINARY) + " " + arguments + " 2>&1").c_str(), "r");
    output.clear();
    char buffer[4096];
    while (size_t n = fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, n);
    int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

TEST(MatchRunner, CountsFaultsWritesPgnAndStopsOnSprt) {
    // Crashy loses both games by disconnecting; the summary counts the crashes.
    const std::string pgnPath = tempPath("games.pgn");
    std::string output;
    ASSERT_EQ(runMatch("--engine name=Good cmd='" + FAKE + " play " + KNIGHT_SHUFFLE +
                           "' --engine name=Crashy cmd='" + FAKE +
                           " crash' --games 2 --tc 1+0.1 --pgn " + pgnPath,
                       output),
              0)
        << output;
    EXPECT_NE(output.find("Good vs Crashy: 2 games, +2 -0 =0, score 100.0%"), std::string::npos)
        << output;
    EXPECT_NE(output.find("  Crashy: 0 2 0 0\n"), std::string::npos) << output;
    std::ifstream pgnFile(pgnPath);
    std::string pgn((std::istreambuf_iterator<char>(pgnFile)), std::istreambuf_iterator<char>());
    EXPECT_NE(pgn.find("[White \"Good\"]\n[Black \"Crashy\"]\n[Result \"1-0\"]"), std::string::npos)
        << pgn;
    EXPECT_NE(pgn.find("[White \"Crashy\"]\n[Black \"Good\"]\n[Result \"0-1\"]"), std::string::npos)
        << pgn;
    EXPECT_NE(pgn.find("{White disconnects} 0-1"), std::string::npos) << pgn;
    std::filesystem::remove(pgnPath);

    // A wins as White (Scholar's mate) and draws as Black (knight shuffle): after games
    // +1, +1=1, +2=1, +2=2, +3=2 the LLR for elo1 = 200 is 0, 1.00, 2.85, 2.00, 3.68, so the
    // SPRT accepts H1 after the fifth game and the remaining fifteen are never played.
    const std::string a = FAKE + " play e2e4 g8f6 f1c4 f6g8 d1h5 g8f6 h5f7 f6g8";
    const std::string b = FAKE + " play g1f3 e7e5 f3g1 b8c6 g1f3 g8f6 f3g1";
    ASSERT_EQ(runMatch("--engine name=A cmd='" + a + "' --engine name=B cmd='" + b +
                           "' --games 20 --depth 1 --sprt elo0=0 elo1=200 alpha=0.05 beta=0.05",
                       output),
              0)
        << output;
    EXPECT_NE(output.find("SPRT decided after 5 games"), std::string::npos) << output;
    EXPECT_NE(output.find("A vs B: 5 games, +3 -0 =2"), std::string::npos) << output;
    EXPECT_NE(output.find("LLR 3.68 [-2.94, 2.94], H1 accepted"), std::string::npos) << output;

    // Morvane against itself, the way a tournament manager drives it: no fault on either side.
    const std::string morvane = MORVANE_BINARY;
    ASSERT_EQ(runMatch("--engine name=A cmd=" + morvane + " --engine name=B cmd=" + morvane +
                           " --games 2 --tc 1+0.05 --resign movecount=2 score=500"
                           " --draw movenumber=30 movecount=4 score=20",
                       output),
              0)
        << output;
    EXPECT_NE(output.find("  A: 0 0 0 0\n  B: 0 0 0 0\n"), std::string::npos) << output;

    // An engine that cannot start stops the match before any game.
    EXPECT_EQ(runMatch("--engine cmd=/nonexistent/engine --engine cmd='" + b + "'", output), 2);
    EXPECT_NE(output.find("does not start"), std::string::npos) << output;
    EXPECT_EQ(runMatch("--engine cmd=x", output), 2);
    EXPECT_NE(output.find("usage:"), std::string::npos) << output;
}
