#include "uci/uci_interface.h"

#include <chrono>
#include <thread>

#include "core/console.h"
#include "search/timeman.h"

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
    int64_t readAt = 0, lastCommand = 0;
    for (;;) {
        if (!input->takeLine(line, readAt)) {
            // A GUI sends its lines in bursts ("position", then "go" at once): right after a
            // command the loop looks again for a moment before it sleeps between polls, so that
            // the next line does not wait 10 ms on the engine's clock.
            if (TimeManager::now() - lastCommand < 2)
                std::this_thread::yield();
            else
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            continue;
        }
        if (!line.empty() && !engine->dispatch(line, readAt)) return;
        lastCommand = TimeManager::now();
    }
}
