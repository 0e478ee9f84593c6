// The opening book compiled into the program, sorted by key as signed 64-bit numbers.
#pragma once

#include <cstddef>

#include "book/book.h"

extern const BookEntry INTERNAL_BOOK[];
extern const size_t INTERNAL_BOOK_SIZE;
