// The "showoption" listing as the engine prints it for given option values.
#pragma once

#include <map>
#include <string>
#include <vector>

using Values = std::map<std::string, std::string>;

// The values the listing shows right after start-up in an empty directory.
inline const Values DEFAULTS = {
    {"Ponder", "false"},
    {"Threads", "1"},
    {"OwnBook", "true"},
    {"Book File", ""},
    {"Fallback to Internal Book", "true"},
    {"MultiPV", "1"},
    {"Output Search Depth Info", "true"},
    {"Output Current Move Info", "false"},
    {"Output Total Time and Nodes", "true"},
    {"Console Mode", "false"},
};

// The showoption listing for these values; the Hash line carries the Ponder flag as 0 or 1.
inline std::vector<std::string> listing(const Values& v) {
    return {
        "option name Ponder type check default true value " + v.at("Ponder"),
        "option name Threads type spin default 1 min 1 max 128 value " + v.at("Threads"),
        "option name Hash type spin default 128 min 1 max 8192 value " +
            std::string(v.at("Ponder") == "true" ? "1" : "0"),
        "option name OwnBook type check default true value " + v.at("OwnBook"),
        "option name Book File type string default medium.mbk value " + v.at("Book File"),
        "option name Fallback to Internal Book type check default true value " +
            v.at("Fallback to Internal Book"),
        "option name MultiPV type spin default 1 min 1 max 64 value " + v.at("MultiPV"),
        "option name Output Search Depth Info type check default true value " +
            v.at("Output Search Depth Info"),
        "option name Output Current Move Info type check default false value " +
            v.at("Output Current Move Info"),
        "option name Output Total Time and Nodes type check default true value " +
            v.at("Output Total Time and Nodes"),
        "option name Console Mode type check default false value " + v.at("Console Mode"),
        "option name CommandFile type string default <NONE>",
    };
}
