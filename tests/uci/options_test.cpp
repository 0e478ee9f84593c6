// The setoption command as a GUI and a person use it: the usage reply, names of several words in
// any case, the check values, the numbers kept as typed, the book file looked up on disk, and what
// Hash and Threads do to the table and the search threads.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "engine_process.h"
#include "option_listing.h"
#include "scratch_directory.h"

namespace {

using Lines = std::vector<std::string>;

const std::string USAGE_LINE = "Usage: setoption name <name> value <value>";

// The engine's process: the only child of this test program that runs the engine binary.
// Returns -1 unless there is exactly one.
pid_t enginePid() {
    const std::filesystem::path binary = std::filesystem::canonical(MORVANE_BINARY);
    pid_t found = -1;
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        std::ifstream statFile(entry.path() / "stat");
        std::string stat;
        std::getline(statFile, stat);
        size_t close = stat.rfind(')');
        if (close == std::string::npos) continue;
        std::istringstream rest(stat.substr(close + 1));
        std::string state;
        pid_t parent = 0;
        rest >> state >> parent;
        if (parent != getpid()) continue;
        std::error_code error;
        if (std::filesystem::read_symlink(entry.path() / "exe", error) != binary) continue;
        found = pid_t(std::stoi(name));
        count++;
    }
    return count == 1 ? found : -1;
}

// The number of threads the engine's process runs, from its status file; -1 when not found.
int engineThreadCount() {
    pid_t pid = enginePid();
    if (pid < 0) return -1;
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("Threads:")) return std::stoi(line.substr(8));
    return -1;
}

// The thread count once it has settled at the expected number (a joined thread may linger in
// the process's count for a moment), or whatever it is after a second.
int engineThreadCountSettledAt(int expected) {
    int count = engineThreadCount();
    for (int tries = 0; count != expected && tries < 100; tries++) {
        usleep(10000);
        count = engineThreadCount();
    }
    return count;
}

// Runs a search to the depth, waits for its bestmove and returns every line it printed.
Lines searchToDepth(EngineProcess& engine, int depth) {
    engine.sendLine("go depth " + std::to_string(depth));
    return engine.readLinesUntil([](const std::string& l) { return l.starts_with("bestmove "); },
                                 20000);
}

// The hashfull figure of the last iteration of a search.
int lastHashfull(const Lines& output) {
    for (auto line = output.rbegin(); line != output.rend(); ++line) {
        size_t at = line->find(" hashfull ");
        if (line->starts_with("info depth ") && at != std::string::npos)
            return std::stoi(line->substr(at + 10));
    }
    return -1;
}

}  // namespace

// Each row is typed in turn on one engine; the listing after it must show every option as the
// rows so far have left it. A row names the option it changes, or none.
TEST(Options, SetoptionRowsAndTheListingAfterEach) {
    enum Reply { SILENT, USAGE };
    struct Case {
        std::string line;
        std::string option;  // empty: nothing changes
        std::string value;
        Reply reply = SILENT;
    };
    const Case cases[] = {
        // Check options: only "true" and "TRUE" are true.
        {"setoption name OwnBook value false", "OwnBook", "false"},
        {"setoption name ownbook value true", "OwnBook", "true"},
        {"setoption name OwnBook value True", "OwnBook", "false"},
        {"setoption name OWNBOOK VALUE TRUE", "OwnBook", "true"},
        {"setoption name OwnBook value 1", "OwnBook", "false"},
        {"setoption name OwnBook value yes", "OwnBook", "false"},
        {"setoption NAME OwnBook Value true", "OwnBook", "true"},
        {"setoption name Console Mode value true", "Console Mode", "true"},
        // "VALUE" as the last word leaves the value empty, which is false.
        {"setoption name Console Mode VALUE", "Console Mode", "false"},
        {"setoption name Console Mode value true", "Console Mode", "true"},
        // The last word keeps its case, so a final "value" is no keyword: the line is ignored.
        {"setoption name Console Mode value", "", ""},
        {"setoption name Fallback to Internal Book value false", "Fallback to Internal Book",
         "false"},
        {"setoption name fallback TO internal book value TRUE", "Fallback to Internal Book",
         "true"},
        {"setoption name Output Current Move Info value true", "Output Current Move Info", "true"},
        {"setoption name Output Search Depth Info value false", "Output Search Depth Info",
         "false"},
        {"setoption name Output Total Time and Nodes value false", "Output Total Time and Nodes",
         "false"},
        {"setoption name output total time and nodes value TRUE", "Output Total Time and Nodes",
         "true"},
        {"setoption name Output Search Depth Info value true", "Output Search Depth Info", "true"},
        // Ponder is also what the Hash line shows, as 1 or 0.
        {"setoption name Ponder value true", "Ponder", "true"},
        {"setoption name Ponder value false", "Ponder", "false"},
        {"setoption name ponder value TRUE", "Ponder", "true"},
        // The table size is not in the listing: the Hash line keeps showing the Ponder flag.
        {"setoption name Hash value 0", "", ""},
        {"setoption name Hash value 64", "", ""},
        // MultiPV is kept as typed, without a range check; unreadable text gives 1.
        {"setoption name MultiPV value 100", "MultiPV", "100"},
        {"setoption name MultiPV value 0", "MultiPV", "0"},
        {"setoption name MultiPV value -3", "MultiPV", "-3"},
        {"setoption name MultiPV value 7x", "MultiPV", "7"},
        {"setoption name MultiPV value abc", "MultiPV", "1"},
        {"setoption name multipv value 3 and more", "MultiPV", "3"},
        // Book File: a file that opens keeps the name, any other empties it.
        {"setoption name Book File value my.mbk", "Book File", "my.mbk"},
        {"setoption name Book File value missing.mbk", "Book File", ""},
        {"setoption name book file value my.mbk", "Book File", "my.mbk"},
        {"setoption name Book File value My.mbk", "Book File", ""},
        // The file name is no longer the last word, so it is looked up in capitals.
        {"setoption name Book File value my.mbk extra", "Book File", "MY.MBK"},
        // Lines that are not understood are ignored without a word.
        {"setoption nam OwnBook value false", "", ""},
        {"setoption name OwnBook valu false", "", ""},
        {"setoption name Own Book value false", "", ""},
        {"setoption name OwnBook  value false", "", ""},  // the empty word joins the name
        {"setoption  name OwnBook value false", "", ""},  // word 1 is empty, not "name"
        {"setoption value false name OwnBook", "", ""},
        {"setoption name ClearHash value true", "", ""},
        {"setoption name commandfile value init.txt", "", ""},  // no file is run
        // Fewer than five words: the usage line and the whole listing with the current values.
        {"setoption", "", "", USAGE},
        {"setoption name Ponder", "", "", USAGE},
        {"setoption name Clear Hash", "", "", USAGE},
        {"setoption name OwnBook value", "", "", USAGE},
        {"setoption name OwnBook value \t ", "", "", USAGE},  // trailing blanks do not count
    };

    ScratchDirectory directory;
    ASSERT_FALSE(directory.path.empty());
    directory.write("my.mbk", std::string(16, '\0'));
    directory.write("MY.MBK", std::string(16, '\0'));
    EngineProcess engine(directory.path);
    engine.expectBanner();

    Values values = DEFAULTS;
    ASSERT_EQ(engine.command("showoption"), listing(values));
    for (const Case& c : cases) {
        Lines output = engine.command(c.line);
        if (!c.option.empty()) values[c.option] = c.value;
        Lines expected;
        if (c.reply == USAGE) {
            expected = listing(values);
            expected.insert(expected.begin(), USAGE_LINE);
        }
        EXPECT_EQ(output, expected) << c.line;
        EXPECT_EQ(engine.command("showoption"), listing(values)) << "after: " << c.line;
    }
}

// The table size is seen in how full a search leaves it: the same depth fills a 1 MB table
// about twice as much as a 2 MB one. Zero and negative sizes give 1 MB, sizes round down to a
// power of two, and unreadable text falls back to 128 MB.
TEST(Options, HashSizesTheTable) {
    struct Case {
        std::string value;
        int tableMb;
    };
    const Case cases[] = {
        {"1", 1}, {"0", 1}, {"-5", 1}, {"2", 2}, {"3", 2}, {"4", 4}, {"7", 4}, {"abc", 128},
    };
    EngineProcess engine;
    engine.expectBanner();
    std::map<int, int> hashfullBySize;
    for (const Case& c : cases) {
        ASSERT_EQ(
            engine.command({"setoption name Hash value " + c.value, "reset", "position startpos"}),
            Lines{})
            << c.value;
        int hashfull = lastHashfull(searchToDepth(engine, 11));
        ASSERT_GE(hashfull, 0) << c.value;
        auto [seen, first] = hashfullBySize.emplace(c.tableMb, hashfull);
        if (!first) {
            EXPECT_EQ(hashfull, seen->second) << "Hash " << c.value;
        }
    }
    ASSERT_EQ(hashfullBySize.size(), 4u);
    EXPECT_GT(hashfullBySize[1], 100);
    EXPECT_GT(hashfullBySize[1], hashfullBySize[2]);
    EXPECT_GT(hashfullBySize[2], hashfullBySize[4]);
    EXPECT_GT(hashfullBySize[4], hashfullBySize[128]);
    EXPECT_LE(hashfullBySize[128], 5);
}

// Threads n runs n - 1 worker threads beside the engine's own, for n from 1 to 127; any other
// number is stored and shown but leaves the workers as they were. A search ends after each.
TEST(Options, ThreadsSetsTheWorkerPool) {
    struct Case {
        std::string value;
        std::string shown;
        int workers;
    };
    const Case cases[] = {
        {"4", "4", 3},   {"200", "200", 3}, {"0", "0", 3}, {"2", "2", 1}, {"128", "128", 1},
        {"-1", "-1", 1}, {"abc", "1", 0},   {"3", "3", 2}, {"1", "1", 0},
    };
    EngineProcess engine;
    engine.expectBanner();
    ASSERT_EQ(engine.command("position startpos"), Lines{});
    // The command loop, the input reader and the main search thread.
    const int ownThreads = 3;
    ASSERT_NE(engineThreadCount(), -1) << "the engine's process is not found";
    EXPECT_EQ(engineThreadCountSettledAt(ownThreads), ownThreads);
    Values values = DEFAULTS;
    for (const Case& c : cases) {
        EXPECT_EQ(engine.command("setoption name Threads value " + c.value), Lines{}) << c.value;
        values["Threads"] = c.shown;
        EXPECT_EQ(engine.command("showoption"), listing(values)) << "Threads " << c.value;
        EXPECT_EQ(engineThreadCountSettledAt(ownThreads + c.workers), ownThreads + c.workers)
            << "Threads " << c.value;
        Lines search = searchToDepth(engine, 6);
        ASSERT_FALSE(search.empty());
        EXPECT_TRUE(search.back().starts_with("bestmove ")) << "Threads " << c.value;
        EXPECT_NE(search.back(), "bestmove (none) ponder (none)");
    }
}
