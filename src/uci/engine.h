// The Engine: the option values, the console Board and everything the command handlers work on.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/board.h"

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
    int32_t newGameLock = 0;
    std::vector<std::string> testPositions;

    // Command handlers: each gets the whole line (trailing blanks and tabs removed) and returns
    // false only to end the program.
    bool quit(std::string& line);
    bool uci(std::string& line);
    bool isready(std::string& line);
    bool showoption(std::string& line);
    bool position(std::string& line);
    bool eval(std::string& line);
    bool print(std::string& line);
    bool perft(std::string& line);
    bool divide(std::string& line);
    bool weights(std::string& line);
    bool setparam(std::string& line);
    bool runwdlfen(std::string& line);
    bool flip(std::string& line);
    bool flop(std::string& line);
    bool tbtest(std::string& line);
    // A command word that is no command is tried as a move in coordinate notation.
    bool tryMove(const std::string& word);
};
