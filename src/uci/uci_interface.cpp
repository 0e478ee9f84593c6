#include "uci/uci_interface.h"

#include <chrono>
#include <thread>

#include "uci/console.h"


UciInterface::UciInterface() {
    consolePrint(identification() + " by Vannos, " + ENGINE_VERSION);
    input = std::make_unique<TInputThread>();
    engine = std::make_unique<Engine>();
}

// The engine goes first so that no search outlives it; the reader is joined last.
UciInterface::~UciInterface() {
    engine.reset();
    input.reset();
}

void UciInterface::commandLoop() {
    std::string line;
    int64_t readAt = 0;
    for (;;) {
        if (!input->takeLine(line, readAt)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            continue;
        }
        if (!line.empty() && !engine->dispatch(line, readAt)) return;
    }
}

