// The console as a GUI or a person meets it: the small commands, unknown input and the ends.
#include <gtest/gtest.h>

#include "engine_process.h"

const std::string EVAL = "Detailed evaluation information not available!";

// Each row: the lines typed and exactly what the engine answers before the next "readyok".
TEST(Console, CommandReplies) {
    EngineProcess engine;
    engine.expectBanner();
    expectTranscript(
        engine,
        {
            {{"uci"},
             {"id name Morvane 4.0.853 x64", "id author Vannos",
              "option name Ponder type check default true",
              "option name Threads type spin default 1 min 1 max 128",
              "option name Hash type spin default 128 min 1 max 8192",
              "option name Clear Hash type button", "option name OwnBook type check default true",
              "option name Book File type string default medium.mbk",
              "option name Fallback to Internal Book type check default true",
              "option name MultiPV type spin default 1 min 1 max 64",
              "option name Output Search Depth Info type check default true",
              "option name Output Current Move Info type check default false",
              "option name Output Total Time and Nodes type check default true",
              "option name Console Mode type check default false",
              "option name CommandFile type string default <NONE>",
              "info internal book positions 24278 moves 34622", "uciok"}},
            {{"eval"}, {EVAL}},
            {{"weights", "setparam Razoring 300"}, {}},
            {{"runwdlfen"}, {"0"}},
            {{"tbtest krkp", "tbtest abcd"},  // the name is not checked
             {"Gaviota TableBase Support not compiled", "Gaviota TableBase Support not compiled"}},
            {{"tbtest kk", "tbtest", "eval"},  // a failing command leaves the next one alone
             {"Usage: tbtest EndGameId [KRKP, KRKB ...]", "~Error in command 'tbtest'.*", EVAL}},
            {{"xyz abc def"}, {"Unknown command : xyz"}},  // only the command word is echoed
            {{"Quit"}, {"Unknown command : Quit"}},
            {{"eval\r"}, {EVAL}},  // a carriage return before the line feed ends the line
            {{"   ", " isready"}, {"Unknown command : ", "Unknown command : "}},
            {{"", "", "eval", ""}, {EVAL}},  // empty lines are never handed to the command loop
            {{"e2e4n"}, {"Illegal move: e2e4n"}},  // a promotion letter on a plain push
            {{"i2i4"}, {"Unknown command : i2i4"}},
        });
}

// The ways input ends: a last line without its newline is still run; nothing after "quit" is;
// "quit now" ends the command loop, but the reader waiting for input ends only after one more
// line or the end of input. Each row: the chunks sent 100 ms apart, whether the input is then
// closed, and all the engine prints before it exits with status 0.
TEST(Console, EndOfInputAndQuit) {
    const struct {
        Lines chunks;
        bool close;
        Lines output;
    } cases[] = {
        {{"isready"}, true, {"readyok"}},
        {{"isready\neval\nquit\nisready\n"}, false, {"readyok", EVAL}},
        {{"quit now\n", "isready"}, false, {}},
        {{"quit\t\n", "isready"}, false, {}},
        {{"quit now\n"}, true, {}},
    };
    for (const auto& c : cases) {
        EngineProcess engine;
        engine.expectBanner();
        engine.sendRaw(c.chunks[0]);
        Lines output;
        for (size_t i = 1; i < c.chunks.size(); i++) {
            for (const std::string& line : engine.collectFor(100)) output.push_back(line);
            engine.trySendLine(c.chunks[i]);  // read, but no longer handled
        }
        if (c.close) engine.closeInput();
        EXPECT_EQ(engine.waitExit(), 0) << c.chunks[0];
        for (const std::string& line : engine.collectFor(0)) output.push_back(line);
        EXPECT_EQ(output, c.output) << c.chunks[0];
    }
}
