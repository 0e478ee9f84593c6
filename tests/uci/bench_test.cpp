// The benchmark's 30 searches to depth 15 and its table of results, checked line by line.
#include <gtest/gtest.h>

#include <regex>

#include "engine_process.h"
#include "tools/bench_positions.h"

// With Hash 1 MB. The "isready" right behind "bench" is answered only after the total line.
TEST(Bench, OneRunCheckedLineByLine) {
    EngineProcess engine;
    engine.expectBanner();
    ASSERT_EQ(engine.command("setoption name Hash value 1"), Lines{});
    const Lines out = engine.command("bench", 240000);
    size_t at = 0;
    auto next = [&]() -> std::string { return at < out.size() ? out[at++] : "(end of output)"; };
    const std::string DASHES(78, '-'), TABLE_LINE = std::string(1, ' ').append(61, '-');
    std::vector<std::smatch> lastDepth(30);
    std::vector<std::string> lines(30);
    static const std::regex info("info depth 15 .* score ((?:cp|mate) -?[0-9]+) nodes ([0-9]+) .*");
    for (int i = 0; i < 30; i++) {
        const Lines header = {
            "", DASHES,
            "Pos. " + std::to_string(i + 1) + "/30  " + BENCH_POSITIONS[i].fen + "  depth : 15",
            DASHES};
        for (const std::string& line : header) ASSERT_EQ(next(), line) << "position " << i + 1;
        std::string line;
        while ((line = next()).starts_with("info "))
            lines[i] = line.starts_with("info depth ") ? line : lines[i];
        ASSERT_TRUE(line.starts_with("bestmove ")) << "position " << i + 1 << ": " << line;
        ASSERT_TRUE(std::regex_match(lines[i], lastDepth[i], info)) << lines[i];
    }
    for (const std::string& line :
         {std::string(), std::string("Benchmark results for Morvane 4.0.853"),
          std::string("Threads: 1  Hash: 1"), std::string(), TABLE_LINE,
          std::string(" #               nodes        time      move     score  solved"),
          TABLE_LINE})
        EXPECT_EQ(next(), line);
    // Fields right-aligned in their columns: nodes 13 wide, time 7, move 5, score 8.
    static const std::regex row(
        "^ #  ([ 0-9]{2})([ 0-9]{13})        ([ 0-9]{7}) ms   ([ a-zA-Z0-9+#=-]{5})  ([ "
        "a-z0-9-]{8})    (Yes| No)$");
    uint64_t nodeSum = 0;
    int solved = 0;
    for (int i = 0; i < 30; i++) {
        const std::string line = next();
        std::smatch m;
        ASSERT_TRUE(std::regex_match(line, m, row)) << "[" << line << "]";
        auto trimmed = [](const std::string& field) {
            return field.substr(field.find_first_not_of(' '));
        };
        EXPECT_EQ(std::stoi(m[1]), i + 1);
        EXPECT_EQ(trimmed(m[2]), lastDepth[i][2].str()) << line;
        EXPECT_EQ(trimmed(m[5]), lastDepth[i][1].str()) << line;
        const bool yes = std::string_view(BENCH_POSITIONS[i].expected).find(trimmed(m[4])) !=
                         std::string_view::npos;
        EXPECT_EQ(m[6], yes ? "Yes" : " No") << line << " against " << BENCH_POSITIONS[i].expected;
        nodeSum += std::stoull(m[2]);
        solved += yes;
    }
    EXPECT_EQ(next(), TABLE_LINE);
    std::smatch m;
    const std::string total = next();
    static const std::regex totalRow(
        "^ Total   ([ 0-9]{13})     ([ 0-9]{7}) ms  ([ 0-9]{11}) nps  ([ 0-9]{3})/30$");
    ASSERT_TRUE(std::regex_match(total, m, totalRow)) << "[" << total << "]";
    EXPECT_EQ(std::stoull(m[1]), nodeSum);
    // The search's node count: speed work must leave it as it is, and a change of the evaluation
    // or the search that moves it on purpose updates it here.
    EXPECT_EQ(nodeSum, 8'205'920u);
    EXPECT_EQ(std::stoull(m[3]), nodeSum * 1000 / (std::stoull(m[2]) + 1));
    EXPECT_EQ(std::stoi(m[4]), solved);
    EXPECT_EQ(at, out.size()) << "nothing was answered while the bench ran";
}
