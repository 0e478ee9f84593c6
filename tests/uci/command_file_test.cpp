// Command files: text files of commands run line by line as if typed, through "runcmdfile" or the
// CommandFile option. Short lines are skipped, "quit" in a file does not end the program, files
// may run other files, and a file that runs itself stops after nesting too deeply.
#include <gtest/gtest.h>

#include "engine_process.h"
#include "game_view.h"
#include "scratch_directory.h"

namespace {

const std::string EVAL = "Detailed evaluation information not available!";
const std::string TBTEST_USAGE = "Usage: tbtest EndGameId [KRKP, KRKB ...]";
const std::string TOO_DEEP = " skipped, command files nested too deeply";

}  // namespace

// Each row: commands and everything they print, given the files below.
TEST(CommandFile, RunsLinesAsTyped) {
    ScratchDirectory directory;
    // Lines of two characters or fewer are skipped ("go" would start an endless search); quit
    // has no effect; every other line answers.
    directory.write("replies.txt",
                    "eval\ngo\nab\nx\n\nquit\nxyz abc\nsetparam anything\ntbtest kk\neval\n");
    directory.write("no_newline.txt", "eval\ntbtest kk");
    directory.write("crlf.txt", "eval\r\ntbtest kk\r\n");  // Windows line ends
    directory.write("my file.txt", "eval\n");
    directory.write("outer.txt", "eval\nruncmdfile inner.txt\ntbtest kk\n");
    directory.write("inner.txt", "xyz\n");
    directory.write("broken.txt", "runcmdfile gone.txt\nruncmdfile\nrunCmdFile inner.txt\neval\n");
    directory.write("self.txt", "eval\nruncmdfile self.txt\ntbtest kk\n");
    directory.write("ping.txt", "runcmdfile pong.txt\n");
    directory.write("pong.txt", "runcmdfile ping.txt\n");
    const Lines replies = {EVAL, "Unknown command : xyz", TBTEST_USAGE, EVAL};
    const std::string USAGE = "usage: runCmdFile <filename>";
    EngineProcess engine(directory.path);
    engine.expectBanner();
    expectTranscript(
        engine,
        {
            {{"runcmdfile", "runcmdfile \t "}, {USAGE, USAGE}},
            {{"runcmdfile missing.txt"}, {"File missing.txt not found"}},
            {{"runcmdfile my file.txt"}, {"File my not found"}},  // the name ends at a blank
            {{"runcmdfile  replies.txt"}, {"File  not found"}},   // two blanks: an empty name
            {{"runcmdfile replies.txt"}, replies},
            {{"runcmdfile no_newline.txt"}, {EVAL, TBTEST_USAGE}},
            {{"runcmdfile crlf.txt"}, {EVAL, TBTEST_USAGE}},
            {{"runcmdfile outer.txt"}, {EVAL, "Unknown command : xyz", TBTEST_USAGE}},
            {{"runcmdfile broken.txt"},
             {"File gone.txt not found", USAGE, "Unknown command : runCmdFile", EVAL}},
            {{"setoption name CommandFile value replies.txt"}, replies},
            {{"setoption name CommandFile value inner.txt extra"}, {"Unknown command : xyz"}},
            {{"setoption name CommandFile value missing.txt"}, {"File missing.txt not found"}},
            {{"setoption name commandfile value replies.txt"}, {}},  // the prefix is exact
            // Two files that run each other: one line, naming the file refused.
            {{"runcmdfile ping.txt"}, {"~runCmdFile: p[io]ng\\.txt" + TOO_DEEP}},
            {{"stop"}, {}},  // the skipped "go" started no search, so no bestmove follows
        });
    // A file that runs itself goes as deep as allowed, says once that it skipped the next
    // level, and unwinds: the lines after the nested call run as often as those before it.
    Lines output = engine.command("runcmdfile self.txt", 20000);
    auto skip = std::find(output.begin(), output.end(), "runCmdFile: self.txt" + TOO_DEEP);
    ASSERT_NE(skip, output.end()) << "no line about the nesting";
    const size_t levels = skip - output.begin();
    EXPECT_GE(levels, 2u);
    Lines expected(levels, EVAL);
    expected.push_back(*skip);
    expected.insert(expected.end(), levels, TBTEST_USAGE);
    EXPECT_EQ(output, expected);
    engine.sendLine("quit");
    EXPECT_EQ(engine.waitExit(), 0);
    EXPECT_EQ(engine.errorOutput(), "");
}
