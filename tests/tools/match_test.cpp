// The match runner: game ends by the rules and by scores, Elo and SPRT from opening pairs, the
// scoreboard's pairing of games, PGN, the command line, and whole games against a scripted fake
// engine that can misbehave.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <sstream>

#include "core/board.h"
#include "core/notation.h"
#include "scratch_directory.h"
#include "tool_run.h"
#include "tools/match/game.h"
#include "tools/match/match_options.h"
#include "tools/match/openings.h"
#include "tools/match/pgn.h"
#include "tools/match/rules.h"
#include "tools/match/schedule.h"
#include "tools/match/score_adjudication.h"
#include "tools/match/scoreboard.h"
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
        EXPECT_EQ(fen.empty() ? 0 : board->setFen(fen), 0) << fen;
        history.push_back(board->key());
        for (const std::string& text : words(moveText)) {
            moves.push_back(parseMove(*board, text));
            EXPECT_TRUE(isMoveInList(*board, moves.back())) << text;
            board->makeMove(moves.back());
            history.push_back(board->key());
        }
    }
};

// The verdict as "result termination: reason", or "" for none.
std::string text(const std::optional<Verdict>& v) {
    return v ? resultText(v->result) + " " + terminationText(v->termination) + ": " + v->reason
             : "";
}

}  // namespace

// Each row: a position, the moves from it, and the verdict after them ("" while play goes on).
TEST(MatchRules, EndsGamesByTheRules) {
    const std::string MATERIAL = "1/2-1/2 normal: Draw by insufficient material";
    const std::string REPETITION = "1/2-1/2 normal: Draw by threefold repetition";
    // clang-format off
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"", FOOLS_MATE, "0-1 normal: Black mates"},
        {"7k/5Q2/6K1/8/8/8/8/8 b - -", "", "1/2-1/2 normal: Draw by stalemate"},
        // The hundredth quiet half-move: a mate still wins, any other move draws.
        {"7k/8/6K1/8/8/8/8/R7 w - - 99 80", "a1a8", "1-0 normal: White mates"},
        {"7k/8/6K1/8/8/8/8/R7 w - - 99 80", "a1b1", "1/2-1/2 normal: Draw by fifty-move rule"},
        {"7k/8/6K1/8/8/8/8/R7 w - - 98 80", "a1b1", ""},
        // The start position a third time; twice is not enough.
        {"", KNIGHT_SHUFFLE, REPETITION},
        {"", "g1f3 g8f6 f3g1 f6g8", ""},
        {"4k3/8/8/8/8/8/8/4KN2 w - -", "", MATERIAL},
        {"2b1k3/8/8/8/8/8/8/4KB2 w - -", "", MATERIAL},  // bishops on squares of one colour
        {"2b1k3/8/8/8/8/8/8/2B1K3 w - -", "", ""},
        {"4k3/8/8/8/8/8/8/3NKN2 w - -", "", ""},  // a helpmate exists
        {"4k3/8/8/8/8/8/4P3/4K3 w - -", "", ""},  // one piece, but not a minor one
    };
    // clang-format on
    for (const auto& [fen, moves, expected] : cases) {
        Replay replay(fen, moves);
        EXPECT_EQ(text(ruleVerdict(*replay.board, replay.history)), expected)
            << fen << " " << moves;
    }
}

// Each row: the rules, each mover's own score in turn from White, and when the game ends with
// what result ("" for never).
TEST(MatchRules, AdjudicatesByTheEnginesScores) {
    const std::optional<int> none;
    // clang-format off
    const std::tuple<ResignRule, DrawRule, std::vector<std::optional<int>>, std::string> cases[] = {
        {{2, 600}, {}, {700, -700, 700, -700}, "4 1-0 adjudication: White wins by adjudication"},
        {{2, 600}, {}, {-650, 600, -900, 700}, "4 0-1 adjudication: Black wins by adjudication"},
        {{1, 600}, {}, {600, -600}, "2 1-0 adjudication: White wins by adjudication"},
        {{2, 600}, {}, {700, -700, 500, -700, 700}, ""},  // the streak is broken
        {{2, 600}, {}, {700, 0, 700, 0, 700, 0}, ""},     // the loser disagrees
        {{1, 600}, {}, {700, none, 700}, ""},             // a move without a score
        {{}, {2, 1, 10}, {0, 5, -10, 10}, "4 1/2-1/2 adjudication: Draw by adjudication"},
        {{}, {3, 1, 10}, {0, 5, -10, 10}, ""},  // too early
        {{}, {0, 2, 10}, {0, 11, 0, 0, 0}, ""},
        {{}, {}, {900, -900, 900, -900, 0, 0, 0, 0}, ""},  // both rules off
    };
    // clang-format on
    for (const auto& [resign, draw, scores, expected] : cases) {
        ScoreAdjudicator adjudicator(resign, draw);
        std::optional<Verdict> verdict;
        size_t plies = 0;
        for (; !verdict && plies < scores.size(); plies++)
            verdict =
                adjudicator.afterMove(plies % 2 ? Black : White, scores[plies], int(plies + 1));
        EXPECT_EQ(verdict ? std::to_string(plies) + " " + text(verdict) : "", expected) << plies;
    }
}

// Each row: opening pairs scored LL, LD, DD or WL, WD, WW. Worked by hand for the first: the
// pair scores a game are 0, 1/4, 1/2, 3/4, 1, so s = (2/4 + 4/2 + 3 3/4 + 1)/10 = 0.575 and
// var = (2 (0.325)^2 + 4 (0.075)^2 + 3 (0.175)^2 + (0.425)^2)/10 = 0.050625 over 10 pairs; Elo
// = -400 log10(1/s - 1) = 52.51; s -/+ 1.96 sqrt(var/10) = 0.4355, 0.7145 at Elo -45.04, 159.32,
// a bar of 102.18; LOS = Phi(0.075 / 0.07115) = 0.8541; for elo0 = 0, elo1 = 5 (s1 = 0.507195)
// LLR = 10 (0.007195)(2s - 1.007195) / (2 var) = 0.1015, bounds -/+2.944 at alpha = beta = 0.05.
TEST(MatchStats, EloErrorBarAndSprtFromOpeningPairs) {
    const double INF = std::numeric_limits<double>::infinity();
    const struct {
        std::array<int, 5> pairs;
        double elo, margin, los, llr;
        SprtDecision decision;
    } cases[] = {
        {{0, 2, 4, 3, 1}, 52.51, 102.18, 0.8541, 0.1015, SprtDecision::Continue},
        {{0, 5, 20, 50, 25}, 179.45, 35.59, 1.0, 4.1586, SprtDecision::AcceptH1},
        {{25, 50, 20, 5, 0}, -179.45, 35.59, 0.0, -4.2866, SprtDecision::AcceptH0},
        // Each side wins with White every time: 20 games of +10 -10 but no spread between pairs.
        {{0, 0, 10, 0, 0}, 0.0, 0.0, 0.5, 0.0, SprtDecision::Continue},
        {{0, 0, 0, 0, 0}, 0.0, 0.0, 0.5, 0.0, SprtDecision::Continue},
        {{0, 0, 0, 0, 4}, INF, INF, 1.0, 0.0, SprtDecision::Continue},
        // s = 0.9375, var = 0.01172: the interval passes a score of 1.
        {{0, 0, 0, 1, 3}, 470.44, INF, 1.0, 1.0656, SprtDecision::Continue},
    };
    for (const auto& c : cases) {
        Pentanomial pairs{c.pairs};
        SCOPED_TRACE(testing::PrintToString(c.pairs));
        EloEstimate e = estimateElo(pairs);
        auto close = [](double a, double b) { return a == b || std::abs(a - b) < 0.01; };
        EXPECT_TRUE(close(e.elo, c.elo) && close(e.margin, c.margin)) << e.elo << " " << e.margin;
        EXPECT_NEAR(e.los, c.los, 0.0001);
        SprtState state = sprt(pairs, {0, 5, 0.05, 0.05});
        EXPECT_NEAR(state.llr, c.llr, 0.0001);
        EXPECT_EQ(state.decision, c.decision);
        EXPECT_NEAR(state.upper, 2.9444, 0.0001);
    }
    EXPECT_NEAR(sprt({}, {0, 5, 0.05, 0.10}).lower, std::log(0.10 / 0.95), 1e-12);
}

// A round robin of X, Y and Z, three games a pair: each opening twice with colours reversed,
// the third opening once. The games finish out of order, as with several at once; each row is
// a game by round, its result (None: abandoned), and the opening pairs of its engine pair after
// it. A game counts in a pair only once its partner of the same engine pair has finished.
TEST(MatchScoreboard, CountsAnOpeningPairOnlyWhenBothGamesAreDone) {
    const std::vector<Pairing> pairs = pairings(3, false);
    const std::vector<ScheduledGame> games = schedule(pairs, 3, {}, 0);
    ASSERT_EQ(games.size(), 9u);
    Scoreboard board({"X", "Y", "Z"}, pairs);
    // clang-format off
    const std::tuple<int, Result, std::array<int, 5>> cases[] = {
        {1, Result::WhiteWins, {0, 0, 0, 0, 0}},  // X-Y, opening 0: its partner is round 2
        {3, Result::WhiteWins, {0, 0, 0, 0, 0}},  // X-Z, opening 0: not round 1's partner
        {7, Result::Draw,      {0, 0, 0, 0, 0}},  // X-Y, opening 1, played once
        {2, Result::None,      {0, 0, 0, 0, 0}},  // abandoned: the pair stays open
        {2, Result::WhiteWins, {0, 0, 1, 0, 0}},  // Y wins as White too: WL
        {6, Result::WhiteWins, {0, 0, 0, 0, 0}},  // Z-Y, opening 0
        {5, Result::BlackWins, {1, 0, 0, 0, 0}},  // Z wins both: LL for Y
        {4, Result::Draw,      {0, 0, 0, 1, 0}},  // X won round 3: WD
    };
    // clang-format on
    for (const auto& [round, result, expected] : cases) {
        const ScheduledGame& game = games[round - 1];
        ASSERT_EQ(game.round, round);
        board.add(game, {result, Termination::Normal, ""});
        EXPECT_EQ(board.openingPairs(game.pair).counts, expected) << "round " << round;
    }
    // The score counts every game; Elo and LOS only the complete pairs.
    EXPECT_EQ(board.pairLine(0),
              "X vs Y: 3 games, +1 -1 =1, pairs [0, 0, 1, 0, 0], score 50.0%, Elo +0.0 +/- 0.0, "
              "LOS 50.0%");
    EXPECT_EQ(board.pairLine(1),
              "X vs Z: 2 games, +1 -0 =1, pairs [0, 0, 0, 1, 0], score 75.0%, Elo +190.8 +/- "
              "0.0, LOS 100.0%");
}

TEST(MatchPgn, WritesTagsMovesAndTheReason) {
    Replay fools("", FOOLS_MATE);
    GameRecord game{7, "Alpha", "Beta", "", "10+0.1", "2024.01.02", {}, {}, "", ""};
    game.verdict = {Result::BlackWins, Termination::Normal, "Black mates"};
    const std::optional<int> scores[] = {-35, 20, -150, MATE_SCORE - 1};
    for (size_t i = 0; i < 4; i++)
        game.moves.push_back({fools.moves[i], scores[i], int(i + 3), long(100 * i)});
    EXPECT_EQ(formatPgn(game, "Test \"quoted\""),
              "[Event \"Test \\\"quoted\\\"\"]\n[Site \"?\"]\n[Date \"2024.01.02\"]\n"
              "[Round \"7\"]\n[White \"Alpha\"]\n[Black \"Beta\"]\n[Result \"0-1\"]\n"
              "[TimeControl \"10+0.1\"]\n[PlyCount \"4\"]\n[Termination \"normal\"]\n\n"
              "1. f3 {-0.35/3 0.00s} e5 {+0.20/4 0.10s} 2. g4 {-1.50/5 0.20s} Qh4#\n"
              "{+M1/6 0.30s} {Black mates} 0-1\n\n");

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
    // clang-format off
    const std::string two = "--engine cmd=a --engine cmd=b ";
    const std::pair<std::string, const char*> cases[] = {  // a part of the error, or ""
        {two + "--tc 10+0.1 --games 100 --concurrency 2 --pgn o.pgn --openings o.epd --start 5", ""},
        {two + "--depth 8 --resign movecount=3 score=600 --draw movenumber=40 movecount=8 score=10", ""},
        {two + "--engine cmd=c --gauntlet --nodes 1000", ""},
        {"--engine cmd=a tc=14+0.14 --engine cmd=b --tc 10+0.1", ""},
        {"--engine cmd=a tc=fast --engine cmd=b", "tc= expected"},
        {"--engine cmd=a tc=5 --engine cmd=b --nodes 1000", "needs a match on the clock"},
        {"--engine cmd=a", "at least two engines"},
        {"--engine name=x --engine cmd=b", "cmd= is required"},
        {"--engine cmd=a Threads=2 --engine cmd=b", "unknown key 'Threads'"},
        {two + "--tc 10+", "--tc: expected"},
        {two + "--tc 10 --depth 5", "one of --tc, --depth and --nodes"},
        {two + "--depth 0", "--depth: bad value"},
        {two + "--resign movecount=3", "missing score="},
        {two + "--sprt elo0=5 elo1=0", "elo1 must exceed elo0"},
        {two + "--engine cmd=c --sprt", "exactly two engines"},
        {two + "--colour white", "unknown option --colour"},
        {"stray " + two, "unexpected 'stray'"},
    };
    // clang-format on
    for (const auto& [line, part] : cases) {
        MatchOptions options;
        std::string error = parseOptions(words(line), options);
        EXPECT_TRUE(*part ? error.find(part) != std::string::npos : error.empty())
            << line << " -> " << error;
    }
}

// Whole games against the fake engine: each fault ends the game as the faulty side's loss, with
// its reason. Each row: the two engines' arguments (none: it cannot start), the start position,
// the moves played and the verdict. Games run at a fixed depth; only the forfeit has a clock.
// Repetitions, illegal moves and crashes are MatchRunner's rows.
TEST(MatchGame, PlaysGamesAndScoresEveryFault) {
    const std::string shuffle = "play " + KNIGHT_SHUFFLE;
    const std::string mate = "7k/8/6K1/8/8/8/8/R7 w - -";
    // clang-format off
    const std::tuple<std::string, std::string, std::string, std::string> cases[] = {
        {"play a1a8", "play", mate, "1 1-0 normal: White mates"},
        {shuffle, "", "", "0 1-0 abandoned: Black disconnects"},
        {shuffle, "stall", "", "1 1-0 stalled connection: Black stalls"},
        {"mute", shuffle, "", "0 0-1 stalled connection: White stalls"},
        {"slow " + KNIGHT_SHUFFLE, shuffle, "", "0 0-1 time forfeit: White loses on time"},
        {"score 700 " + KNIGHT_SHUFFLE, "score -700 " + KNIGHT_SHUFFLE, "", "4 1-0 adjudication: White wins by adjudication"},
        {"score 3 " + KNIGHT_SHUFFLE, "score -3 " + KNIGHT_SHUFFLE, "", "2 1/2-1/2 adjudication: Draw by adjudication"},
    };
    // clang-format on
    std::atomic<bool> stop{false};
    for (const auto& [whiteArgs, blackArgs, fen, expected] : cases) {
        GameSettings settings{TimeControl::fixedDepth(1), {2, 600}, {1, 1, 10}, 1500, 2000, 1500};
        // The slow engine answers after 300 ms: past 100 ms and grace, within the stall margin.
        if (whiteArgs.starts_with("slow")) settings.timeControl = *TimeControl::parseClock("0.1");
        UciEngine white({"W", FAKE + " " + whiteArgs, "", {}, {}});
        UciEngine black(
            {"B", blackArgs.empty() ? "/nonexistent/engine" : FAKE + " " + blackArgs, "", {}, {}});
        GameRecord game = playGame(white, black, fen, settings, stop);
        const std::string got = std::to_string(game.moves.size()) + " " + text(game.verdict);
        EXPECT_TRUE(got.starts_with(expected)) << got;
    }
}

// Time odds: an engine with a clock of its own is told and timed by it, the other by the match's,
// and the PGN names each side's clock.
TEST(MatchGame, TimeOddsGiveOneSideItsOwnClock) {
    const long remaining[2] = {14000, 9000}, increments[2] = {140, 100};
    EXPECT_EQ(TimeControl::parseClock("10+0.1")->goCommand(remaining, increments),
              "go wtime 14000 btime 9000 winc 140 binc 100");

    // White answers after 300 ms: within the match's 5 s, lost on its own 0.1 s.
    GameSettings settings{*TimeControl::parseClock("5"), {2, 600}, {1, 1, 10}, 1500, 2000, 1500};
    std::atomic<bool> stop{false};
    UciEngine white(
        {"W", FAKE + " slow " + KNIGHT_SHUFFLE, "", {}, TimeControl::parseClock("0.1")});
    UciEngine black({"B", FAKE + " play " + KNIGHT_SHUFFLE, "", {}, {}});
    GameRecord game = playGame(white, black, "", settings, stop);
    EXPECT_TRUE(text(game.verdict).starts_with("0-1 time forfeit: White loses on time"))
        << text(game.verdict);
    const std::string pgn = formatPgn(game, "Odds");
    EXPECT_NE(pgn.find("[WhiteTimeControl \"0.1\"]\n[BlackTimeControl \"5\"]\n"), std::string::npos)
        << pgn;
    EXPECT_EQ(pgn.find("[TimeControl "), std::string::npos) << pgn;
}

// The binary end to end, every game at a fixed depth so that machine load cannot decide one.
// Each row: the arguments, the exit status and parts the output must contain.
TEST(MatchRunner, CountsFaultsWritesPgnAndStopsOnSprt) {
    const std::string good = "name=Good cmd='" + FAKE + " play " + KNIGHT_SHUFFLE + "'";
    const std::string morvane = MORVANE_BINARY;
    // Two openings in turn. From the start A wins as White (Scholar's mate) and draws as Black
    // (knight shuffle), a WD pair; after 1. e4 Black moves first and the scripts' first moves
    // are White's, so whoever has Black loses by an illegal move, a WL pair. After 1 to 7 pairs
    // the LLR for elo1 = 50 is 0, 0.82, 2.02, 1.63, 2.72, 2.45, 3.50 (3 WL and 4 WD: s = 9/14,
    // var = 0.015306, LLR = 7 (0.071463)(2s - 1.071463) / (2 var)), so the SPRT accepts H1
    // after the 14th game and the six left are never played. After the 13th it has won the
    // 7th opening's first game, which counts in W/D/L but not yet in the pairs.
    const std::string a = FAKE + " play e2e4 g8f6 f1c4 f6g8 d1h5 g8f6 h5f7 f6g8";
    const std::string b = FAKE + " play g1f3 e7e5 f3g1 b8c6 g1f3 g8f6 f3g1";
    ScratchDirectory dir;
    const std::string openings =
        dir.writeLines("openings.epd", {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -",
                                        "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq -"});
    // clang-format off
    const std::tuple<std::string, int, std::vector<std::string>> cases[] = {
        // Crashy loses both games by disconnecting: the PGN (written to standard output) says so
        // and the summary counts the crashes.
        {"--engine " + good + " --engine name=Crashy cmd='" + FAKE + " crash' --games 2 --depth 1 --pgn /dev/stdout", 0,
         {"[White \"Good\"]\n[Black \"Crashy\"]\n[Result \"1-0\"]", "[White \"Crashy\"]\n[Black \"Good\"]\n[Result \"0-1\"]",
          "{White disconnects} 0-1", "[TimeControl \"-\"]", "Good vs Crashy: 2 games, +2 -0 =0, pairs [0, 0, 0, 0, 1], score 100.0%", "  Crashy: 0 2 0 0\n"}},
        {"--engine name=A cmd='" + a + "' --engine name=B cmd='" + b + "' --games 20 --depth 1 --openings " + openings +
         " --sprt elo0=0 elo1=50 alpha=0.05 beta=0.05", 0,
         {"warning: at a fixed depth the games past the first 4 replay openings already played",
          "A vs B: 13 games, +7 -3 =3, pairs [0, 0, 3, 3, 0], score", "SPRT decided after 14 games",
          "A vs B: 14 games, +7 -3 =4, pairs [0, 0, 3, 4, 0]", "(logistic Elo, pentanomial): LLR 3.50 [-2.94, 2.94], H1 accepted"}},
        // Morvane against itself, the way a tournament manager drives it: no fault on either side.
        {"--engine name=A cmd=" + morvane + " --engine name=B cmd=" + morvane +
         " --games 2 --depth 5 --resign movecount=2 score=500 --draw movenumber=30 movecount=4 score=20", 0, {"  A: 0 0 0 0\n  B: 0 0 0 0\n"}},
        // An engine that cannot start stops the match before any game; so does a bad command line.
        {"--engine cmd=/nonexistent/engine --engine " + good, 2, {"does not start"}},
        {"--engine cmd=x", 2, {"usage:"}},
    };
    // clang-format on
    for (const auto& [arguments, status, parts] : cases) {
        ToolRun run = runTool(MORVANE_MATCH_BINARY " " + arguments);
        EXPECT_EQ(run.status, status) << run.output;
        for (const std::string& part : parts)
            EXPECT_NE(run.output.find(part), std::string::npos) << part << " in\n" << run.output;
    }
}
