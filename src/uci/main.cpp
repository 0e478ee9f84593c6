// Morvane: a UCI chess engine. The command line is ignored; everything comes through standard input.
#include "uci/uci_interface.h"

int main() {
    UciInterface interface;
    interface.commandLoop();
    return 0;
}
