// The UCI options: the "uci" identification reply and the "showoption" listing.
#include <string>

#include "uci/console.h"
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
