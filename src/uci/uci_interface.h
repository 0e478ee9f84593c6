// The program's top-level object: prints the banner, owns the input reader and the Engine, and
// runs the command loop that dispatches each line to its handler.
#pragma once

#include <memory>
#include <string>

#include "uci/engine.h"
#include "uci/input_thread.h"

class UciInterface {
public:
    UciInterface();
    ~UciInterface();
    void commandLoop();

private:
    std::unique_ptr<TInputThread> input;
    std::unique_ptr<Engine> engine;
};
