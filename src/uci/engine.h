// The Engine: the option values, the console Board and everything the command handlers work on.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/board.h"
#include "search/threads.h"
#include "search/tt.h"

class Evaluator;

// OutputFlags bits.
enum : uint32_t { OUTPUT_DEPTH_INFO = 2, OUTPUT_CURRMOVE_INFO = 4, OUTPUT_TIME_AND_NODES = 8 };

extern const char* const ENGINE_NAME;
extern const char* const ENGINE_VERSION;
extern const char* const DEFAULT_BOOK_FILE;
// "Morvane 4.0.853 x64"
std::string identification();

class Engine {
public:
    Engine();
    ~Engine();

    // Handles one command line read at the given time (milliseconds of the monotonic clock; now
    // when not given); false means "quit".
    bool dispatch(std::string line, int64_t readAt = 0);

    int64_t hashMb = 128;
    int64_t threads = 1;
    uint32_t outputFlags = OUTPUT_DEPTH_INFO | OUTPUT_TIME_AND_NODES;
    uint8_t ponder = 0;  // off inside although "uci" declares the option's default as true
    uint8_t ownBook = 1;
    uint8_t fallbackToInternalBook = 1;
    uint8_t consoleMode = 0;
    int32_t multiPv = 1;
    std::string bookFile;
    std::unique_ptr<Board> board;
    std::unique_ptr<Evaluator> evaluator;
    std::unique_ptr<TranspositionTable> tt;
    int32_t newGameLock = 0;
    std::unique_ptr<TMainSearchThread> mainThread;
    std::vector<std::string> testPositions;

    // Command handlers: each gets the whole line (trailing blanks and tabs removed) and returns
    // false only to end the program.
    bool quit(std::string& line);
    bool uci(std::string& line);
    bool isready(std::string& line);
    bool setoption(std::string& line);
    bool showoption(std::string& line);
    bool stop(std::string& line);
    bool position(std::string& line);
    bool go(std::string& line);
    bool ponderhit(std::string& line);
    bool eval(std::string& line);
    bool reset(std::string& line);
    bool print(std::string& line);
    bool perft(std::string& line);
    bool divide(std::string& line);
    bool weights(std::string& line);
    bool setweight(std::string& line);
    bool setparam(std::string& line);
    bool runcmdfile(std::string& line);
    bool loadepd(std::string& line);
    bool runepd(std::string& line);
    bool ucinewgame(std::string& line);
    bool bench(std::string& line);
    bool runwdlfen(std::string& line);
    bool evaltest(std::string& line);
    bool flip(std::string& line);
    bool flop(std::string& line);
    bool tbtest(std::string& line);
    // A command word that is no command is tried as a move in coordinate notation.
    bool tryMove(const std::string& word);

    // Searches the game on the console board with the given limits and waits for the result.
    void searchAndWait(const SearchLimits& limits, int lines);

private:
    // A search must not run while the table or the thread pool changes.
    void stopSearch();
    int commandFileDepth = 0;
    // When the line being handled was read: a search's clock starts then, not when the command
    // loop got round to it.
    int64_t lineReadAt = 0;
};
