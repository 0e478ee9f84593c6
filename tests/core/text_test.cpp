// Text helpers of the command handlers: token splitting, integer reading, digit grouping.
#include "core/text.h"

#include <gtest/gtest.h>

#include <climits>

TEST(Text, SplitTokens) {
    struct Case {
        std::string line;
        char delimiter;
        std::vector<std::string> tokens;
        std::string lineAfter;  // trailing blanks and tabs are removed from the line itself
    } cases[] = {
        {"go  depth", ' ', {"go", "", "depth"}, "go  depth"},
        {" go", ' ', {"", "go"}, " go"},
        {"go depth 5 \t \t", ' ', {"go", "depth", "5"}, "go depth 5"},
        {"go\tdepth\r", ' ', {"go\tdepth\r"}, "go\tdepth\r"},
        {"   ", ' ', {""}, ""},
        {"a,,b,", ',', {"a", "", "b", ""}, "a,,b,"},
    };
    for (Case& c : cases) {
        std::string line = c.line;
        EXPECT_EQ(splitTokens(line, c.delimiter), c.tokens) << '"' << c.line << '"';
        EXPECT_EQ(line, c.lineAfter) << '"' << c.line << '"';
    }
}

TEST(Text, ToIntOrAndGroupDigits) {
    const std::pair<std::string, int> numbers[] = {
        {"-7", -7}, {"+5", 5}, {"  12", 12}, {"12abc", 12}, {"", -1}, {"-", -1}, {"2147483647", INT_MAX}};
    for (const auto& [text, value] : numbers) EXPECT_EQ(toIntOr(text, -1), value) << '"' << text << '"';
    const std::pair<uint64_t, std::string> grouped[] = {
        {999, "999"}, {1000, "1.000"}, {1234567, "1.234.567"}, {UINT64_MAX, "18.446.744.073.709.551.615"}};
    for (const auto& [n, text] : grouped) EXPECT_EQ(groupDigits(n), text) << n;
}
