// The setoption command as showoption reports it, and what Hash and Threads do to the engine.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <map>

#include "engine_process.h"
#include "scratch_directory.h"

namespace {

using Values = std::map<std::string, std::string>;

// clang-format off
const Values DEFAULTS = {
    {"Ponder", "false"}, {"Threads", "1"}, {"OwnBook", "true"}, {"Book File", ""}, {"MultiPV", "1"},
    {"Fallback to Internal Book", "true"}, {"Console Mode", "false"},
    {"Output Search Depth Info", "true"}, {"Output Current Move Info", "false"},
    {"Output Total Time and Nodes", "true"}};
// clang-format on

// The showoption listing for these values; the Hash line carries the Ponder flag as 0 or 1.
Lines listing(const Values& v) {
    auto check = [&](const std::string& name, const char* byDefault) {
        return "option name " + name + " type check default " + byDefault + " value " + v.at(name);
    };
    return {check("Ponder", "true"),
            "option name Threads type spin default 1 min 1 max 128 value " + v.at("Threads"),
            "option name Hash type spin default 128 min 1 max 8192 value " +
                std::string(v.at("Ponder") == "true" ? "1" : "0"),
            check("OwnBook", "true"),
            "option name Book File type string default medium.mbk value " + v.at("Book File"),
            check("Fallback to Internal Book", "true"),
            "option name MultiPV type spin default 1 min 1 max 64 value " + v.at("MultiPV"),
            check("Output Search Depth Info", "true"),
            check("Output Current Move Info", "false"),
            check("Output Total Time and Nodes", "true"),
            check("Console Mode", "false"),
            "option name CommandFile type string default <NONE>"};
}

// The process's thread count once it has settled at the expected one (a joined thread may
// linger a moment), or the last count read.
int threadCountSettledAt(EngineProcess& engine, int expected) {
    int count = -1;
    for (int tries = 0; tries < 100 && count != expected; tries++, usleep(10000)) {
        std::ifstream status("/proc/" + std::to_string(engine.processId()) + "/status");
        for (std::string line; std::getline(status, line);)
            if (line.starts_with("Threads:")) count = std::stoi(line.substr(8));
    }
    return count;
}

}  // namespace

// Each row is typed in turn on one engine; the listing after it must show every option as the
// rows so far have left it. A row names the option it changes, or none.
TEST(Options, SetoptionRowsAndTheListingAfterEach) {
    // clang-format off
    const struct {
        std::string line, option, value;  // option empty: nothing changes
        bool usage = false;
    } cases[] = {
        // Check options: only "true" and "TRUE" are true; names and keywords in any case.
        {"setoption name OwnBook value false", "OwnBook", "false"},
        {"setoption name OwnBook value True", "OwnBook", "false"},
        {"setoption name ownbook VALUE TRUE", "OwnBook", "true"},
        // A final "VALUE" gives an empty value; a final "value" keeps its case and is no keyword.
        {"setoption name Console Mode value true", "Console Mode", "true"},
        {"setoption name Console Mode VALUE", "Console Mode", "false"},
        {"setoption name Console Mode value true", "Console Mode", "true"},
        {"setoption name Console Mode value", "", ""},
        // The Hash line shows Ponder as 1 or 0, not the table size.
        {"setoption name ponder value TRUE", "Ponder", "true"},
        {"setoption name Hash value 64", "", ""},
        // MultiPV is kept as typed, without a range check; unreadable text gives 1.
        {"setoption name MultiPV value 100", "MultiPV", "100"},
        {"setoption name MultiPV value abc", "MultiPV", "1"},
        {"setoption name multipv value 7x and more", "MultiPV", "7"},
        // Book File: a file that opens keeps the name, any other empties it; a name that is not
        // the last word is looked up in capitals.
        {"setoption name book file value my.mbk", "Book File", "my.mbk"},
        {"setoption name Book File value My.mbk", "Book File", ""},
        {"setoption name Book File value my.mbk extra", "Book File", "MY.MBK"},
        // Lines that are not understood are ignored without a word.
        {"setoption nam OwnBook value false", "", ""},
        {"setoption name Own Book value false", "", ""},
        {"setoption name OwnBook  value false", "", ""},  // the empty word joins the name
        {"setoption value false name OwnBook", "", ""},
        // Fewer than five words: the usage line and the listing.
        {"setoption", "", "", true},
    };
    // clang-format on
    ScratchDirectory directory;
    for (const char* name : {"my.mbk", "MY.MBK", "medium.mbk"})
        directory.write(name, std::string(16, '\0'));
    EngineProcess engine(directory.path);
    engine.expectBanner();
    Values values = DEFAULTS;
    values["Book File"] = "medium.mbk";  // the default file, found in the working directory
    ASSERT_EQ(engine.command("showoption"), listing(values));
    for (const auto& c : cases) {
        Lines output = engine.command(c.line);
        if (!c.option.empty()) values[c.option] = c.value;
        Lines expected = c.usage ? listing(values) : Lines{};
        if (c.usage)
            expected.insert(expected.begin(), "Usage: setoption name <name> value <value>");
        EXPECT_EQ(output, expected) << c.line;
        EXPECT_EQ(engine.command("showoption"), listing(values)) << "after: " << c.line;
    }
}

// Threads n runs n - 1 workers beside the engine's own three threads (command loop, input
// reader, main search), for n from 1 to 127; any other number is shown but leaves the workers
// as they were. A search still ends after each.
TEST(Options, ThreadsSetsTheWorkerPool) {
    const struct {
        std::string value, shown;
        int workers;
    } cases[] = {{"4", "4", 3}, {"0", "0", 3},   {"2", "2", 1}, {"128", "128", 1},
                 {"abc", "1", 0}, {"3", "3", 2}, {"1", "1", 0}};
    EngineProcess engine;
    engine.expectBanner();
    ASSERT_EQ(engine.command("position startpos"), Lines{});
    EXPECT_EQ(threadCountSettledAt(engine, 3), 3);
    Values values = DEFAULTS;
    for (const auto& c : cases) {
        EXPECT_EQ(engine.command("setoption name Threads value " + c.value), Lines{}) << c.value;
        values["Threads"] = c.shown;
        EXPECT_EQ(engine.command("showoption"), listing(values)) << c.value;
        EXPECT_EQ(threadCountSettledAt(engine, 3 + c.workers), 3 + c.workers) << c.value;
        engine.sendLine("go depth 6");
        Lines search =
            engine.readLinesUntil([](auto& l) { return l.starts_with("bestmove"); }, 20000);
        EXPECT_NE(search.back(), "bestmove (none) ponder (none)") << c.value;
    }
}
