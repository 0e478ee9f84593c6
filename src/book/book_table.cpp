// Rebuilt by the book generator; until then only the start position's moves.
#include "book/internal_book.h"

const BookEntry INTERNAL_BOOK[] = {
    {0x463B96181691FC9CULL, 0x70C1, 44, {}}, {0x463B96181691FC9CULL, 0x6CB1, 36, {}},
    {0x463B96181691FC9CULL, 0x5462, 11, {}}, {0x463B96181691FC9CULL, 0x68A1, 7, {}},
    {0x463B96181691FC9CULL, 0x4491, 1, {}},  {0x463B96181691FC9CULL, 0x58E1, 1, {}},
};
const size_t INTERNAL_BOOK_SIZE = std::size(INTERNAL_BOOK);
