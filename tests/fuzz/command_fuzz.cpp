// Feeds the command loop and the FEN parser seeded random and mutated lines: after each, the
// boards must agree with boards set up from their own FENs. Usage: command_fuzz [iterations] [seed]
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "core/board.h"
#include "core/movegen.h"
#include "uci/engine.h"

namespace {

// clang-format off
const std::vector<std::string> SEEDS = {
    "position startpos moves e2e4 e7e5 g1f3 b8c6 f1b5 a7a6",
    "position fen r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1 moves e1g1",
    "position fen 8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1 moves e2e4",
    "position fen rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e6 0 2",
    "position fen 4k3/8/8/8/8/8/8/4K2R w K - 99 80",
    "perft 2", "divide 1", "print", "flip", "flop", "setoption name Hash value 1",
    "setoption name MultiPV value 2", "setoption name Book File value nothing.mbk",
    "setweight id 2 values 400 400", "setweight default", "tbtest krkp", "e2e4", "e7e8q",
    "isready", "showoption", "go depth 2", "eval", "reset", "go wtime 30 btime 30 movestogo 1",
    "go nodes 300", "go mate 2", "go movetime 3", "go wtime 20 btime 20 winc 2 binc 2",
    "go ponder wtime 30 btime 30", "ponderhit", "stop", "ucinewgame",
    "setoption name Ponder value true",
};
// clang-format on

// Random bytes, or a seed line (maybe spliced with another) with characters edited.
std::string nextLine(std::mt19937& rng) {
    auto pick = [&](size_t n) { return size_t(rng() % n); };
    if (pick(8) == 0) {
        std::string line(pick(200), ' ');
        for (char& c : line) c = char(rng() % 256);
        return line;
    }
    std::string line = SEEDS[pick(SEEDS.size())];
    if (pick(4) == 0) {
        const std::string& other = SEEDS[pick(SEEDS.size())];
        line += ' ';
        line.append(other, pick(other.size()));
    }
    static const std::string ALPHABET = " /-0123456789abcdefghkmnpqrwxKQRBNPkqrbnp\t\r";
    int edits = int(pick(6));
    for (int e = 0; e < edits && !line.empty(); e++) {
        size_t at = pick(line.size());
        // clang-format off
        switch (pick(4)) {
            case 0: line[at] = ALPHABET[pick(ALPHABET.size())]; break;
            case 1: line.insert(at, 1, ALPHABET[pick(ALPHABET.size())]); break;
            case 2: line.erase(at, 1 + pick(4)); break;
            default: line.insert(at, line.substr(at, pick(12))); break;
        }
        // clang-format on
    }
    return line;
}

// The board's incremental state equals a fresh set-up of the same position.
bool boardConsistent(Board& board) {
    static Board fresh;
    if (fresh.setFen(board.getFen()) != 0) return false;
    for (int sq = 0; sq < 64; sq++)
        if (fresh.squares[sq] != board.squares[sq]) return false;
    MoveList a, b;
    generateAll(board, a);
    generateAll(fresh, b);
    return a.count == b.count && fresh.state().materialKey == board.state().materialKey &&
           fresh.state().pawnKey == board.state().pawnKey;
}

// Valid requests for a long run (a deep perft, a huge table) that a fuzzer cannot afford.
bool tooCostly(const std::string& line) {
    std::istringstream in(line);
    std::string word, argument;
    in >> word;
    if (word == "perft" || word == "divide")
        return !(in >> argument) || argument.size() > 1 || argument > "3";
    return line.find("Hash") != std::string::npos || line.find("Threads") != std::string::npos;
}

}  // namespace

int main(int argc, char** argv) {
    const long iterations = argc > 1 ? std::stol(argv[1]) : 20000;
    const unsigned seed = argc > 2 ? unsigned(std::stoul(argv[2])) : 20261122u;
    std::mt19937 rng(seed);
    std::ostringstream sink;
    std::streambuf* console = std::cout.rdbuf(sink.rdbuf());
    Engine engine;
    Board scratch;
    int failures = 0;
    for (long i = 0; i < iterations && failures < 10; i++) {
        std::string line = nextLine(rng);
        if (!line.empty() && !tooCostly(line)) engine.dispatch(line);
        engine.dispatch("isready");
        // The FEN parser on its own: a mutated placement either fails or gives a sound board.
        std::string fen = nextLine(rng);
        size_t at = fen.find("fen ");
        if (at != std::string::npos) {
            try {
                scratch.setFen(fen.substr(at + 4));
            } catch (const std::out_of_range&) {  // a placement that stops short of h1
            }
        }
        if (!boardConsistent(*engine.board) || !boardConsistent(scratch)) {
            std::cerr << "inconsistent board after line " << i << ": " << line << "\n";
            failures++;
        }
        if (sink.tellp() > (1 << 20)) sink.str("");
    }
    // A search still running prints its last lines on stop; they go to the sink too.
    engine.dispatch("stop");
    engine.mainThread->waitUntilIdle();
    std::cout.rdbuf(console);
    std::cout << (iterations - failures) << " passed, " << failures << " failed\n";
    return failures ? 1 : 0;
}
