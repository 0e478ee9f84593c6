// Book files on disk: the engine's own 16-byte records, and PolyGlot's 16-byte entries (the
// format most chess programs read), read and written whole.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "book/book.h"

// The bytes of a file; nothing when it cannot be opened.
std::optional<std::string> readFileBytes(const std::string& path);
// Writes the bytes to a new file beside the path and renames it over the path, so that the path
// never holds a partial file. False when that fails.
bool writeFileBytes(const std::string& path, const std::string& bytes);

constexpr size_t RECORD_SIZE = 16;

// The engine's records, little-endian; a partial record at the end is dropped.
std::vector<BookEntry> decodeRecords(const std::string& bytes);
std::string encodeRecords(const std::vector<BookEntry>& entries);

// A PolyGlot entry, big-endian on disk: the move holds the to square in bits 0-5, the from
// square in 6-11 and the promotion piece (1 knight .. 4 queen) in 12-14; castling is written as
// the king taking its own rook.
struct PolyglotEntry {
    uint64_t key;
    uint16_t move;
    uint16_t weight;
    uint32_t learn;
};

std::vector<PolyglotEntry> decodePolyglot(const std::string& bytes);
std::string encodePolyglot(const std::vector<PolyglotEntry>& entries);
