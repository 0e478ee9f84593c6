// "ucinewgame": a fresh table and fresh search tables, then one book move per book position
// planted from the internal book and the book file.
#include <cstdlib>
#include <ctime>

#include "book/book.h"
#include "book/internal_book.h"
#include "core/console.h"
#include "uci/engine.h"

bool Engine::ucinewgame(std::string&) {
    if (newGameLock) {
        consolePrint("warning: ucinewgame rejected");
        return true;
    }
    stopSearch();
    board->renewEndgameMap();
    board->setStartPosition();
    tt->clear();
    mainThread->clear();
    if (fallbackToInternalBook) {
        std::srand(unsigned(std::time(nullptr)));
        drawBookMoves(INTERNAL_BOOK, INTERNAL_BOOK_SIZE, *tt);
    }
    BookStatus status = ownBook && !bookFile.empty() ? loadBookFile(bookFile, *tt) : BOOK_OK;
    if (status == BOOK_NOT_FOUND)
        consolePrint("warning: opening book " + bookFile + " not found");
    else if (status == BOOK_INVALID)
        consolePrint("warning: " + bookFile + " is not a valid book file");
    else if (tt->filled())
        consolePrint("info opening book initialized with " + std::to_string(tt->filled()) + " positions");
    return true;
}
