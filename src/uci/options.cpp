// The UCI options: the "uci" identification reply and the "showoption" listing.
#include <algorithm>
#include <string>

#include "core/console.h"
#include "core/text.h"
#include "uci/engine.h"

namespace {

// Size of the book compiled into the program.
constexpr int INTERNAL_BOOK_POSITIONS = 24278;
constexpr int INTERNAL_BOOK_MOVES = 34622;

std::string onOff(bool value) { return value ? "true" : "false"; }

}  // namespace

bool Engine::uci(std::string&) {
    consolePrint("id name " + identification());
    consolePrint("id author Vannos");
    consolePrint("option name Ponder type check default true");
    consolePrint("option name Threads type spin default 1 min 1 max 128");
    consolePrint("option name Hash type spin default " + std::to_string(128) + " min 1 max 8192");
    consolePrint("option name Clear Hash type button");
    consolePrint("option name OwnBook type check default true");
    consolePrint(std::string("option name Book File type string default ") + DEFAULT_BOOK_FILE);
    consolePrint("option name Fallback to Internal Book type check default true");
    consolePrint("option name MultiPV type spin default 1 min 1 max 64");
    consolePrint("option name Output Search Depth Info type check default true");
    consolePrint("option name Output Current Move Info type check default false");
    consolePrint("option name Output Total Time and Nodes type check default true");
    consolePrint("option name Console Mode type check default false");
    consolePrint("option name CommandFile type string default <NONE>");
    consolePrint("info internal book positions " + std::to_string(INTERNAL_BOOK_POSITIONS) + " moves " +
                 std::to_string(INTERNAL_BOOK_MOVES));
    consolePrint("uciok");
    return true;
}

bool Engine::showoption(std::string&) {
    consolePrint("option name Ponder type check default true value " + onOff(ponder));
    consolePrint("option name Threads type spin default 1 min 1 max 128 value " + std::to_string(threads));
    // The Hash line shows the Ponder flag as a number: a long-standing slip that GUIs and scripts
    // already read, so it stays.
    consolePrint("option name Hash type spin default " + std::to_string(128) + " min 1 max 8192 value " +
                 std::to_string(int(ponder)));
    consolePrint("option name OwnBook type check default true value " + onOff(ownBook));
    consolePrint(std::string("option name Book File type string default ") + DEFAULT_BOOK_FILE + " value " +
                 bookFile);
    consolePrint("option name Fallback to Internal Book type check default true value " +
                 onOff(fallbackToInternalBook));
    consolePrint("option name MultiPV type spin default 1 min 1 max 64 value " + std::to_string(multiPv));
    consolePrint("option name Output Search Depth Info type check default true value " +
                 onOff(outputFlags & OUTPUT_DEPTH_INFO));
    consolePrint("option name Output Current Move Info type check default false value " +
                 onOff(outputFlags & OUTPUT_CURRMOVE_INFO));
    consolePrint("option name Output Total Time and Nodes type check default true value " +
                 onOff(outputFlags & OUTPUT_TIME_AND_NODES));
    consolePrint("option name Console Mode type check default false value " + onOff(consoleMode));
    consolePrint("option name CommandFile type string default <NONE>");
    return true;
}

// The option name may span several words; every word but the last is compared in upper case,
// so a file name keeps its case only when it is the last word of the line.
bool Engine::setoption(std::string& line) {
    std::vector<std::string> tokens = splitTokens(line, ' ');
    if (tokens.size() < 5) {
        consolePrint("Usage: setoption name <name> value <value>");
        return showoption(line);
    }
    const std::string commandFile = "setoption name CommandFile value ";
    if (line.find(commandFile) != std::string::npos) {
        std::string handOver = "runCmdFile " + line.substr(commandFile.size());
        return runcmdfile(handOver);
    }
    for (size_t i = 0; i + 1 < tokens.size(); i++)
        std::transform(tokens[i].begin(), tokens[i].end(), tokens[i].begin(), ::toupper);
    std::string name = tokens[2];
    size_t i = 3;
    for (; i < tokens.size() && tokens[i] != "VALUE"; i++) name += " " + tokens[i];
    if (i == tokens.size() || tokens[1] != "NAME") return true;
    const std::string value = i + 1 < tokens.size() ? tokens[i + 1] : "";
    const bool on = value == "true" || value == "TRUE";

    auto setFlag = [&](uint32_t bit) { outputFlags = on ? outputFlags | bit : outputFlags & ~bit; };
    if (name == "OUTPUT SEARCH DEPTH INFO") {
        setFlag(OUTPUT_DEPTH_INFO);
    } else if (name == "OUTPUT CURRENT MOVE INFO") {
        setFlag(OUTPUT_CURRMOVE_INFO);
    } else if (name == "OUTPUT TOTAL TIME AND NODES") {
        setFlag(OUTPUT_TIME_AND_NODES);
    } else if (name == "PONDER") {
        ponder = on;
    } else if (name == "HASH") {
        hashMb = toIntOr(value, 128);
        stopSearch();
        tt->resize(hashMb);
    } else if (name == "THREADS") {
        threads = toIntOr(value, 1);
        // The declared maximum of 128 is stored but leaves the pool as it is.
        if (threads >= 1 && threads <= 127) {
            stopSearch();
            mainThread->setWorkerCount(int(threads) - 1);
        }
    } else if (name == "OWNBOOK") {
        ownBook = on;
    } else if (name == "BOOK FILE") {
        bookFile = fileExists(value) ? value : "";
    } else if (name == "FALLBACK TO INTERNAL BOOK") {
        fallbackToInternalBook = on;
    } else if (name == "MULTIPV") {
        multiPv = toIntOr(value, 1);
    } else if (name == "CONSOLE MODE") {
        consoleMode = on;
    }
    return true;
}
