// The console as a GUI or a person meets it: banner, identification, option listing, the small
// commands, unknown input and the ways the program ends.
#include <gtest/gtest.h>

#include "engine_process.h"
#include "option_listing.h"
#include "scratch_directory.h"

namespace {

using Lines = std::vector<std::string>;

const Lines UCI_REPLY = {
    "id name Morvane 4.0.853 x64",
    "id author Vannos",
    "option name Ponder type check default true",
    "option name Threads type spin default 1 min 1 max 128",
    "option name Hash type spin default 128 min 1 max 8192",
    "option name Clear Hash type button",
    "option name OwnBook type check default true",
    "option name Book File type string default medium.mbk",
    "option name Fallback to Internal Book type check default true",
    "option name MultiPV type spin default 1 min 1 max 64",
    "option name Output Search Depth Info type check default true",
    "option name Output Current Move Info type check default false",
    "option name Output Total Time and Nodes type check default true",
    "option name Console Mode type check default false",
    "option name CommandFile type string default <NONE>",
    "info internal book positions 24278 moves 34622",
    "uciok",
};

}  // namespace

TEST(Console, UciAndShowoptionRepliesAreExact) {
    EngineProcess engine;
    engine.expectBanner();
    EXPECT_EQ(engine.command("uci"), UCI_REPLY);
    EXPECT_EQ(engine.command("showoption"), listing(DEFAULTS));
}

TEST(Console, BookFileInWorkingDirectoryIsShown) {
    ScratchDirectory directory;
    directory.write("medium.mbk", std::string(16, '\0'));
    EngineProcess engine(directory.path);
    engine.expectBanner();
    Values values = DEFAULTS;
    values["Book File"] = "medium.mbk";
    EXPECT_EQ(engine.command("showoption"), listing(values));
}

// Each row: the lines typed and exactly what the engine answers before the next "readyok".
TEST(Console, CommandReplies) {
    struct Case {
        Lines input;
        Lines reply;
    };
    const Case cases[] = {
        {{"isready"}, {"readyok"}},
        {{"isready \t \t"}, {"readyok"}},  // trailing blanks and tabs do not count
        {{"eval"}, {"Detailed evaluation information not available!"}},
        {{"weights"}, {}},
        {{"setparam Razoring 300"}, {}},
        {{"runwdlfen"}, {"0"}},
        {{"tbtest krkp"}, {"Gaviota TableBase Support not compiled"}},
        {{"tbtest abcd"}, {"Gaviota TableBase Support not compiled"}},  // name not checked
        {{"tbtest kk"}, {"Usage: tbtest EndGameId [KRKP, KRKB ...]"}},
        {{"xyz"}, {"Unknown command : xyz"}},
        {{"xyz abc def"}, {"Unknown command : xyz"}},  // only the command word is echoed
        {{"Quit"}, {"Unknown command : Quit"}},
        {{"uci\r"}, {"Unknown command : uci\r"}},  // a carriage return is part of the word
        {{"   "}, {"Unknown command : "}},
        {{" isready"}, {"Unknown command : "}},  // a leading blank makes an empty command word
        {{""}, {}},  // empty lines are never handed to the command loop
        {{"", "", "eval", ""}, {"Detailed evaluation information not available!"}},
        {{"e2e4n"}, {"Illegal move: e2e4n"}},  // a promotion letter on a push that does not promote
        {{"i2i4"}, {"Unknown command : i2i4"}},
    };
    EngineProcess engine;
    engine.expectBanner();
    for (const Case& c : cases) {
        for (const std::string& line : c.input) engine.sendLine(line);
        engine.sendLine("isready");
        Lines expected = c.reply;
        expected.push_back("readyok");
        EXPECT_EQ(engine.readLines(expected.size()), expected) << "input: " << c.input[0];
    }
    // Nothing was left over from the table.
    EXPECT_EQ(engine.command("eval"), Lines{"Detailed evaluation information not available!"});
}

// A last line without its newline is still a command; the end of input after it quits.
TEST(Console, LastLineWithoutNewlineIsRead) {
    EngineProcess engine;
    engine.expectBanner();
    engine.sendRaw("isready");
    engine.closeInput();
    EXPECT_EQ(engine.readLine(), "readyok");
    EXPECT_EQ(engine.waitExit(), 0);
}

// Everything queued before the quit is answered, nothing after it.
TEST(Console, CommandsAfterQuitAreNotRun) {
    EngineProcess engine;
    engine.expectBanner();
    engine.sendRaw("isready\neval\nquit\nisready\n");
    EXPECT_EQ(engine.readLines(2),
              (Lines{"readyok", "Detailed evaluation information not available!"}));
    EXPECT_EQ(engine.waitExit(), 0);
    EXPECT_EQ(engine.collectFor(0), Lines{});
}

// "quit now" ends the command loop, but only a line that is exactly "quit" stops the reader: if
// the reader is already waiting for input, the program exits after one more line.
TEST(Console, QuitWithArgumentsEndsAfterOneMoreLine) {
    for (const char* quit : {"quit now", "quit  ", "quit\t"}) {
        EngineProcess engine;
        engine.expectBanner();
        engine.sendLine(quit);
        EXPECT_EQ(engine.collectFor(100), Lines{}) << quit;
        engine.trySendLine("isready");  // read, but no longer handled
        EXPECT_EQ(engine.waitExit(), 0) << quit;
        EXPECT_EQ(engine.collectFor(0), Lines{}) << quit;
    }
    // The end of input wakes the waiting reader too.
    EngineProcess engine;
    engine.expectBanner();
    engine.sendLine("quit now");
    engine.closeInput();
    EXPECT_EQ(engine.waitExit(), 0);
}
