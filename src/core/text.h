// Small text helpers shared by the command handlers and the position parser.
#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

// Removes trailing blanks and tabs from the line itself, then splits it at every occurrence of
// the delimiter; consecutive delimiters give empty tokens.
std::vector<std::string> splitTokens(std::string& line, char delimiter);
// Reads one integer from the start of the text (leading white space skipped, anything after it
// ignored); the default when nothing can be read.
int toIntOr(const std::string& text, int fallback);
bool fileExists(const std::string& name);
// std::getline that also takes a carriage return before the line feed as part of the line end,
// so that text written on Windows reads the same.
std::istream& readLine(std::istream& in, std::string& line);
// A number with "." between groups of three digits: 1.234.567.
std::string groupDigits(uint64_t n);
