#include "tools/match/time_control.h"

#include <cmath>
#include <sstream>

#include "tools/match/parse_number.h"

namespace match {

namespace {

// Seconds as a non-negative decimal number, in milliseconds.
std::optional<long> parseSeconds(const std::string& text) {
    if (text.find_first_not_of("0123456789.") != std::string::npos) return {};
    auto seconds = parseNumber<double>(text);
    if (!seconds) return {};
    return std::lround(*seconds * 1000);
}

std::string secondsText(long ms) {
    std::ostringstream out;
    out << double(ms) / 1000;
    return out.str();
}

}  // namespace

std::optional<TimeControl> TimeControl::parseClock(const std::string& text) {
    size_t plus = text.find('+');
    auto base = parseSeconds(text.substr(0, plus));
    auto increment =
        plus == std::string::npos ? std::optional<long>(0) : parseSeconds(text.substr(plus + 1));
    if (!base || !increment || *base <= 0) return {};
    TimeControl tc;
    tc.baseMs = *base;
    tc.incrementMs = *increment;
    return tc;
}

TimeControl TimeControl::fixedDepth(int depth) {
    TimeControl tc;
    tc.kind = Depth;
    tc.depth = depth;
    return tc;
}

TimeControl TimeControl::fixedNodes(long nodes) {
    TimeControl tc;
    tc.kind = Nodes;
    tc.nodes = nodes;
    return tc;
}

std::string TimeControl::goCommand(const long remainingMs[2], const long incrementMs[2]) const {
    switch (kind) {
        case Depth:
            return "go depth " + std::to_string(depth);
        case Nodes:
            return "go nodes " + std::to_string(nodes);
        case Clock:
            break;
    }
    // An engine may not cope with a negative time, which a grace overrun can leave.
    auto shown = [](long ms) { return std::to_string(ms > 0 ? ms : 1); };
    return "go wtime " + shown(remainingMs[0]) + " btime " + shown(remainingMs[1]) + " winc " +
           std::to_string(incrementMs[0]) + " binc " + std::to_string(incrementMs[1]);
}

std::string TimeControl::pgnTag() const {
    if (kind != Clock) return "-";
    std::string tag = secondsText(baseMs);
    if (incrementMs) tag += '+' + secondsText(incrementMs);
    return tag;
}

}  // namespace match
