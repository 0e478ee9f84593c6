// Command files: text files of commands run line by line as if typed, through "runcmdfile" or the
// CommandFile option. Short lines are skipped, "quit" in a file does not end the program, files
// may run other files, and a file that runs itself stops after nesting too deeply.
#include <gtest/gtest.h>

#include <algorithm>

#include "engine_process.h"
#include "game_view.h"
#include "scratch_directory.h"

namespace {

using Lines = std::vector<std::string>;

const std::string EVAL_REPLY = "Detailed evaluation information not available!";
const std::string TBTEST_USAGE = "Usage: tbtest EndGameId [KRKP, KRKB ...]";
const std::string COMMAND_FILE_LINE = "option name CommandFile type string default <NONE>";

// The showoption line of an option, found by its name.
std::string optionLine(EngineProcess& engine, const std::string& name) {
    for (const std::string& line : engine.command("showoption"))
        if (line.starts_with("option name " + name + " type")) return line;
    return "(no line for " + name + ")";
}

}  // namespace

// Each row: a command and everything it prints, given the files below.
TEST(CommandFile, RunsLinesAsTyped) {
    ScratchDirectory directory;
    ASSERT_FALSE(directory.path.empty());
    // Lines of two characters or fewer are skipped ("go" would start an endless search, "ab"
    // and "x" would be unknown commands); quit has no effect; every other line answers.
    directory.write("replies.txt",
                    "eval\ngo\nab\nx\n\nquit\nxyz abc\nsetparam anything\ntbtest kk\neval\n");
    directory.write("no_newline.txt", "eval\ntbtest kk");
    directory.write("crlf.txt", "eval\r\n");  // the carriage return is part of the line
    directory.write("my file.txt", "eval\n");
    directory.write("outer.txt", "eval\nruncmdfile inner.txt\ntbtest kk\n");
    directory.write("inner.txt", "xyz\n");
    directory.write("broken.txt", "runcmdfile gone.txt\nruncmdfile\nrunCmdFile inner.txt\neval\n");

    const Lines replies = {EVAL_REPLY, "Unknown command : xyz", TBTEST_USAGE, EVAL_REPLY};
    struct Case {
        std::string line;
        Lines reply;
    };
    const Case cases[] = {
        {"runcmdfile", {"usage: runCmdFile <filename>"}},
        {"runcmdfile \t ", {"usage: runCmdFile <filename>"}},
        {"runcmdfile missing.txt", {"File missing.txt not found"}},
        {"runcmdfile my file.txt", {"File my not found"}},  // the name ends at the first blank
        {"runcmdfile  replies.txt", {"File  not found"}},   // two blanks: an empty name
        {"runcmdfile replies.txt", replies},
        {"runcmdfile replies.txt and more words", replies},
        {"runcmdfile no_newline.txt", {EVAL_REPLY, TBTEST_USAGE}},
        {"runcmdfile crlf.txt", {"Unknown command : eval\r"}},
        {"runcmdfile outer.txt", {EVAL_REPLY, "Unknown command : xyz", TBTEST_USAGE}},
        {"runcmdfile broken.txt",
         {"File gone.txt not found", "usage: runCmdFile <filename>", "Unknown command : runCmdFile",
          EVAL_REPLY}},
        {"setoption name CommandFile value replies.txt", replies},
        {"setoption name CommandFile value inner.txt extra", {"Unknown command : xyz"}},
        {"setoption name CommandFile value missing.txt", {"File missing.txt not found"}},
        {"setoption name commandfile value replies.txt", {}},  // the runner's prefix is exact
    };

    EngineProcess engine(directory.path);
    engine.expectBanner();
    for (const Case& c : cases) EXPECT_EQ(engine.command(c.line), c.reply) << c.line;
    // Nothing was left running: no search was started by the skipped "go".
    EXPECT_EQ(engine.command("stop"), Lines{});
    EXPECT_EQ(engine.collectFor(200), Lines{});
}

// The commands of a file change the engine as if typed: options, the game, bare moves; a
// "quit" line is passed over and the lines after it still run.
TEST(CommandFile, LinesChangeOptionsAndGame) {
    ScratchDirectory directory;
    ASSERT_FALSE(directory.path.empty());
    directory.write("setup.txt",
                    "setoption name MultiPV value 3\n"
                    "setoption name Console Mode value true\n"
                    "position startpos moves e2e4 e7e5\n"
                    "g1f3\n"
                    "quit\n"
                    "b8c6\n");
    directory.write("init.txt",
                    "setoption name OwnBook value false\n"
                    "position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1 moves e1g1\n");

    EngineProcess engine(directory.path);
    engine.expectBanner();
    EXPECT_EQ(engine.command("runcmdfile setup.txt"), Lines{});
    EXPECT_EQ(optionLine(engine, "MultiPV"),
              "option name MultiPV type spin default 1 min 1 max 64 value 3");
    EXPECT_EQ(optionLine(engine, "Console Mode"),
              "option name Console Mode type check default false value true");
    EXPECT_EQ(printedGame(engine),
              (GameView{"r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 2 3",
                        "e2e4 e7e5 g1f3 b8c6"}));

    // Through the option the file runs at once; the option itself keeps no value.
    EXPECT_EQ(engine.command("setoption name CommandFile value init.txt"), Lines{});
    EXPECT_EQ(optionLine(engine, "OwnBook"),
              "option name OwnBook type check default true value false");
    EXPECT_EQ(optionLine(engine, "CommandFile"), COMMAND_FILE_LINE);
    EXPECT_EQ(printedGame(engine), (GameView{"4k3/8/8/8/8/8/8/5RK1 b - - 1 1", "e1g1"}));

    EXPECT_TRUE(engine.running());
    engine.sendLine("quit");
    EXPECT_EQ(engine.waitExit(), 0);
}

// "go" alone is two characters and skipped; "go depth 3" in a file starts a search that ends
// with its bestmove.
TEST(CommandFile, GoLineWithLimitsRuns) {
    ScratchDirectory directory;
    ASSERT_FALSE(directory.path.empty());
    directory.write("bare_go.txt", "position startpos\ngo\n");
    directory.write("go_depth.txt", "position startpos moves e2e4\ngo depth 3\n");

    EngineProcess engine(directory.path);
    engine.expectBanner();
    EXPECT_EQ(engine.command(Lines{"runcmdfile bare_go.txt", "stop"}), Lines{});
    EXPECT_EQ(engine.collectFor(300), Lines{});  // no search, so no bestmove after the stop

    engine.sendLine("runcmdfile go_depth.txt");
    Lines search = engine.readLinesUntil(
        [](const std::string& line) { return line.starts_with("bestmove "); }, 10000);
    ASSERT_FALSE(search.empty());
    EXPECT_TRUE(search.front().starts_with("info depth 1 ")) << search.front();
    ASSERT_GE(search.size(), 2u);
    EXPECT_TRUE(search[search.size() - 2].starts_with("info depth 3 "))
        << search[search.size() - 2];
    EXPECT_EQ(engine.collectFor(200), Lines{});
}

// A file that runs itself goes as deep as the engine allows, says once that it skipped the next
// level, and unwinds: the lines before the nested call run on the way in, those after it on the
// way out, the same number of times. The engine keeps answering.
TEST(CommandFile, FileThatRunsItselfStops) {
    const std::string tooDeep = " skipped, command files nested too deeply";
    ScratchDirectory directory;
    ASSERT_FALSE(directory.path.empty());
    directory.write("self.txt", "eval\nruncmdfile self.txt\ntbtest kk\n");
    directory.write("ping.txt", "runcmdfile pong.txt\n");
    directory.write("pong.txt", "runcmdfile ping.txt\n");

    EngineProcess engine(directory.path);
    engine.expectBanner();
    Lines output = engine.command("runcmdfile self.txt", 20000);
    auto skip = std::find(output.begin(), output.end(), "runCmdFile: self.txt" + tooDeep);
    ASSERT_NE(skip, output.end()) << "no line about the nesting";
    const size_t levels = skip - output.begin();
    EXPECT_GE(levels, 2u);
    Lines expected(levels, EVAL_REPLY);
    expected.push_back(*skip);
    expected.insert(expected.end(), levels, TBTEST_USAGE);
    EXPECT_EQ(output, expected);

    // Two files that run each other: one line, naming the file refused.
    output = engine.command("runcmdfile ping.txt", 20000);
    ASSERT_EQ(output.size(), 1u);
    EXPECT_TRUE(output[0] == "runCmdFile: ping.txt" + tooDeep ||
                output[0] == "runCmdFile: pong.txt" + tooDeep)
        << output[0];

    EXPECT_EQ(engine.command("eval"), Lines{EVAL_REPLY});
    engine.sendLine("quit");
    EXPECT_EQ(engine.waitExit(), 0);
    EXPECT_EQ(engine.errorOutput(), "");
}
