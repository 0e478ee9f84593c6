#include "tools/match/match_options.h"

#include <map>
#include <set>
#include <type_traits>

#include "tools/match/parse_number.h"

namespace match {

const char* const USAGE =
    R"(usage: morvane-match --engine cmd=PROGRAM [name=NAME] [dir=DIR] [tc=SECONDS[+INCREMENT]]
                                       [option.NAME=VALUE]...
                     --engine ... [--engine ...]
                     [--tc SECONDS[+INCREMENT] | --depth N | --nodes N]
                     [--games N] [--openings FILE.epd] [--start N] [--concurrency N]
                     [--gauntlet] [--pgn FILE] [--event TEXT]
                     [--resign movecount=N score=CP] [--draw movenumber=N movecount=N score=CP]
                     [--sprt elo0=E elo1=E alpha=A beta=B]
                     [--handshake-timeout MS] [--stall-margin MS] [--move-timeout MS]

Plays games between UCI engines: two engines play a match, more play a round robin (or a
gauntlet of the first engine). --games counts the games of each pair (default 2); each opening
of the EPD file is played twice with colours reversed, starting at opening --start (0-based).
The default time control is 10+0.1; an engine's tc= gives it a clock of its own (time odds).
)";

namespace {

// Walks the arguments; the words after an option up to the next "--" word are its values.
class ArgumentReader {
  public:
    explicit ArgumentReader(const std::vector<std::string>& args) : args(args) {}
    bool done() const { return at >= args.size(); }
    std::string next() { return args[at++]; }
    std::vector<std::string> values() {
        std::vector<std::string> taken;
        while (!done() && args[at].rfind("--", 0) != 0) taken.push_back(next());
        return taken;
    }

  private:
    const std::vector<std::string>& args;
    size_t at = 0;
};

// key=value words into a map; every key must be one of `keys` or, when "option." is one of
// them, start with it.
std::string readPairs(const std::string& option, const std::vector<std::string>& words,
                      const std::set<std::string>& keys,
                      std::map<std::string, std::string>& pairs) {
    for (const std::string& word : words) {
        size_t equals = word.find('=');
        if (equals == std::string::npos || equals == 0)
            return option + ": expected key=value, got '" + word + "'";
        std::string key = word.substr(0, equals);
        bool known = keys.count(key) || (keys.count("option.") && key.rfind("option.", 0) == 0);
        if (!known) return option + ": unknown key '" + key + "'";
        pairs[key] = word.substr(equals + 1);
    }
    return "";
}

struct IntegerField {
    const char* key;
    int* target;
    int least;
};

// The integer values of every field, all required.
std::string readIntegers(const std::string& option, const std::vector<std::string>& words,
                         const std::vector<IntegerField>& fields) {
    std::set<std::string> keys;
    for (const IntegerField& field : fields) keys.insert(field.key);
    std::map<std::string, std::string> pairs;
    if (std::string error = readPairs(option, words, keys, pairs); !error.empty()) return error;
    for (const IntegerField& field : fields) {
        if (!pairs.count(field.key)) return option + ": missing " + field.key + "=";
        auto value = parseNumber<long>(pairs[field.key]);
        if (!value || *value < field.least) return option + ": bad value for " + field.key;
        *field.target = int(*value);
    }
    return "";
}

std::string readEngine(const std::vector<std::string>& words, EngineConfig& engine) {
    std::map<std::string, std::string> pairs;
    std::string error =
        readPairs("--engine", words, {"name", "cmd", "dir", "tc", "option."}, pairs);
    if (!error.empty()) return error;
    if (pairs["cmd"].empty()) return "--engine: cmd= is required";
    if (pairs.count("tc")) {
        engine.clock = TimeControl::parseClock(pairs["tc"]);
        if (!engine.clock) return "--engine: tc= expected SECONDS or SECONDS+INCREMENT";
    }
    engine.command = pairs["cmd"];
    engine.name = pairs["name"];
    engine.directory = pairs["dir"];
    for (const std::string& word : words)
        if (word.rfind("option.", 0) == 0) {
            size_t equals = word.find('=');
            if (equals == 7) return "--engine: option without a name";
            engine.options.push_back({word.substr(7, equals - 7), word.substr(equals + 1)});
        }
    return "";
}

std::string readSprt(const std::vector<std::string>& words, SprtSettings& sprt) {
    std::map<std::string, std::string> pairs;
    std::string error = readPairs("--sprt", words, {"elo0", "elo1", "alpha", "beta"}, pairs);
    if (!error.empty()) return error;
    std::pair<const char*, double*> fields[] = {
        {"elo0", &sprt.elo0}, {"elo1", &sprt.elo1}, {"alpha", &sprt.alpha}, {"beta", &sprt.beta}};
    for (auto [key, target] : fields) {
        if (!pairs.count(key)) continue;  // the defaults stand
        auto value = parseNumber<double>(pairs[key]);
        if (!value) return std::string("--sprt: bad value for ") + key;
        *target = *value;
    }
    if (sprt.elo1 <= sprt.elo0) return "--sprt: elo1 must exceed elo0";
    if (sprt.alpha <= 0 || sprt.alpha >= 0.5 || sprt.beta <= 0 || sprt.beta >= 0.5)
        return "--sprt: alpha and beta must lie between 0 and 0.5";
    return "";
}

// An option with exactly one integer value of at least `least`.
std::string readInteger(const std::string& option, const std::vector<std::string>& words,
                        long least, long& target) {
    if (words.size() != 1) return option + " takes one value";
    auto value = parseNumber<long>(words[0]);
    if (!value || *value < least) return option + ": bad value '" + words[0] + "'";
    target = *value;
    return "";
}

std::string readOption(const std::string& option, const std::vector<std::string>& words,
                       MatchOptions& o, int& limits) {
    long number = 0;
    auto integer = [&](long least, auto& target) {
        std::string error = readInteger(option, words, least, number);
        if (error.empty()) target = std::remove_reference_t<decltype(target)>(number);
        return error;
    };
    auto text = [&](std::string& target) {
        if (words.size() != 1) return option + " takes one value";
        target = words[0];
        return std::string();
    };
    auto flag = [&] { return words.empty() ? "" : option + " takes no value"; };
    GameSettings& game = o.game;

    if (option == "--engine") {
        o.engines.emplace_back();
        return readEngine(words, o.engines.back());
    }
    if (option == "--tc") {
        limits++;
        auto tc = words.size() == 1 ? TimeControl::parseClock(words[0]) : std::nullopt;
        if (!tc) return "--tc: expected SECONDS or SECONDS+INCREMENT";
        game.timeControl = *tc;
        return "";
    }
    if (option == "--depth") {
        limits++;
        std::string error = integer(1, game.timeControl.depth);
        game.timeControl.kind = TimeControl::Depth;
        return error;
    }
    if (option == "--nodes") {
        limits++;
        std::string error = integer(1, game.timeControl.nodes);
        game.timeControl.kind = TimeControl::Nodes;
        return error;
    }
    if (option == "--games") return integer(1, o.games);
    if (option == "--start") return integer(0, o.start);
    if (option == "--concurrency") return integer(1, o.concurrency);
    if (option == "--handshake-timeout") return integer(1, game.handshakeTimeoutMs);
    if (option == "--stall-margin") return integer(0, game.stallMarginMs);
    if (option == "--move-timeout") return integer(1, game.moveTimeoutMs);
    if (option == "--openings") return text(o.openings);
    if (option == "--pgn") return text(o.pgn);
    if (option == "--event") return text(o.event);
    if (option == "--gauntlet") return o.gauntlet = true, flag();
    if (option == "--help") return o.help = true, flag();
    if (option == "--resign")
        return readIntegers(
            option, words,
            {{"movecount", &game.resign.moveCount, 1}, {"score", &game.resign.score, 1}});
    if (option == "--draw")
        return readIntegers(option, words,
                            {{"movenumber", &game.draw.moveNumber, 0},
                             {"movecount", &game.draw.moveCount, 1},
                             {"score", &game.draw.score, 0}});
    if (option == "--sprt") return readSprt(words, o.sprt.emplace());
    return "unknown option " + option;
}

}  // namespace

std::string parseOptions(const std::vector<std::string>& args, MatchOptions& options) {
    ArgumentReader reader(args);
    int limits = 0;
    while (!reader.done()) {
        std::string option = reader.next();
        if (option.rfind("--", 0) != 0) return "unexpected '" + option + "'";
        std::string error = readOption(option, reader.values(), options, limits);
        if (!error.empty()) return error;
    }
    if (options.help) return "";
    if (limits > 1) return "give one of --tc, --depth and --nodes";
    for (const EngineConfig& engine : options.engines)
        if (engine.clock && options.game.timeControl.kind != TimeControl::Clock)
            return "an engine's tc= needs a match on the clock, not --depth or --nodes";
    if (options.engines.size() < 2) return "at least two engines are needed";
    if (options.sprt && options.engines.size() != 2) return "--sprt needs exactly two engines";
    return "";
}

}  // namespace match
