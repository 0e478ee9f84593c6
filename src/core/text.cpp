#include "core/text.h"

#include <fstream>
#include <sstream>

std::vector<std::string> splitTokens(std::string& line, char delimiter) {
    size_t end = line.find_last_not_of(" \t");
    line.erase(end == std::string::npos ? 0 : end + 1);
    std::vector<std::string> tokens;
    size_t start = 0;
    for (size_t at; (at = line.find(delimiter, start)) != std::string::npos; start = at + 1)
        tokens.push_back(line.substr(start, at - start));
    tokens.push_back(line.substr(start));
    return tokens;
}

int toIntOr(const std::string& text, int fallback) {
    std::istringstream in(text);
    int value;
    return in >> value ? value : fallback;
}

bool fileExists(const std::string& name) { return std::ifstream(name).good(); }

std::istream& readLine(std::istream& in, std::string& line) {
    if (std::getline(in, line) && !line.empty() && line.back() == '\r') line.pop_back();
    return in;
}

std::string groupDigits(uint64_t n) {
    std::string digits = std::to_string(n);
    std::string out;
    for (size_t i = 0; i < digits.size(); i++) {
        if (i > 0 && (digits.size() - i) % 3 == 0) out += '.';
        out += digits[i];
    }
    return out;
}
