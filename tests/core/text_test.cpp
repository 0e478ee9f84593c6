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
        {"go depth 5", ' ', {"go", "depth", "5"}, "go depth 5"},
        {"go  depth", ' ', {"go", "", "depth"}, "go  depth"},
        {" go", ' ', {"", "go"}, " go"},
        {"go depth 5 \t \t", ' ', {"go", "depth", "5"}, "go depth 5"},
        {"go\tdepth", ' ', {"go\tdepth"}, "go\tdepth"},
        {"go depth\r", ' ', {"go", "depth\r"}, "go depth\r"},
        {"", ' ', {""}, ""},
        {"   ", ' ', {""}, ""},
        {"\t", ' ', {""}, ""},
        {"a,,b,", ',', {"a", "", "b", ""}, "a,,b,"},
        {"a, b ", ',', {"a", " b"}, "a, b"},
    };
    for (Case& c : cases) {
        std::string line = c.line;
        EXPECT_EQ(splitTokens(line, c.delimiter), c.tokens) << '"' << c.line << '"';
        EXPECT_EQ(line, c.lineAfter) << '"' << c.line << '"';
    }
}

TEST(Text, ToIntOr) {
    struct Case {
        std::string text;
        int expected;
    } cases[] = {
        {"42", 42}, {"-7", -7}, {"+5", 5},   {"  12", 12}, {"12abc", 12}, {"3.9", 3},
        {"0", 0},   {"", -1},   {"abc", -1}, {"-", -1},    {" ", -1},     {"2147483647", INT_MAX},
    };
    for (const Case& c : cases) EXPECT_EQ(toIntOr(c.text, -1), c.expected) << '"' << c.text << '"';
}

TEST(Text, GroupDigits) {
    struct Case {
        uint64_t n;
        std::string text;
    } cases[] = {
        {0, "0"},
        {7, "7"},
        {999, "999"},
        {1000, "1.000"},
        {12345, "12.345"},
        {100000, "100.000"},
        {1234567, "1.234.567"},
        {119060324, "119.060.324"},
        {UINT64_MAX, "18.446.744.073.709.551.615"},
    };
    for (const Case& c : cases) EXPECT_EQ(groupDigits(c.n), c.text) << c.n;
}
