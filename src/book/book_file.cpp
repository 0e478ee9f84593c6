#include "book/book_file.h"

#include <cstdio>
#include <fstream>
#include <sstream>

namespace {

uint64_t readLittle(const std::string& bytes, size_t at, int size) {
    uint64_t value = 0;
    for (int i = size - 1; i >= 0; i--) value = value << 8 | uint8_t(bytes[at + i]);
    return value;
}

uint64_t readBig(const std::string& bytes, size_t at, int size) {
    uint64_t value = 0;
    for (int i = 0; i < size; i++) value = value << 8 | uint8_t(bytes[at + i]);
    return value;
}

void writeLittle(std::string& bytes, uint64_t value, int size) {
    for (int i = 0; i < size; i++) bytes += char(value >> (8 * i));
}

void writeBig(std::string& bytes, uint64_t value, int size) {
    for (int i = size - 1; i >= 0; i--) bytes += char(value >> (8 * i));
}

}  // namespace

std::optional<std::string> readFileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

bool writeFileBytes(const std::string& path, const std::string& bytes) {
    const std::string partial = path + ".partial";
    {
        std::ofstream out(partial, std::ios::binary);
        if (!(out << bytes) || !out.flush()) {
            std::remove(partial.c_str());
            return false;
        }
    }
    return std::rename(partial.c_str(), path.c_str()) == 0;
}

std::vector<BookEntry> decodeRecords(const std::string& bytes) {
    std::vector<BookEntry> entries;
    for (size_t at = 0; at + RECORD_SIZE <= bytes.size(); at += RECORD_SIZE) {
        BookEntry e{};
        e.key = readLittle(bytes, at, 8);
        e.move = uint32_t(readLittle(bytes, at + 8, 4));
        e.weight = uint8_t(bytes[at + 12]);
        entries.push_back(e);
    }
    return entries;
}

std::string encodeRecords(const std::vector<BookEntry>& entries) {
    std::string bytes;
    for (const BookEntry& e : entries) {
        writeLittle(bytes, e.key, 8);
        writeLittle(bytes, e.move, 4);
        writeLittle(bytes, e.weight, 4);  // the padding stays zero
    }
    return bytes;
}

std::vector<PolyglotEntry> decodePolyglot(const std::string& bytes) {
    std::vector<PolyglotEntry> entries;
    for (size_t at = 0; at + RECORD_SIZE <= bytes.size(); at += RECORD_SIZE)
        entries.push_back({readBig(bytes, at, 8), uint16_t(readBig(bytes, at + 8, 2)),
                           uint16_t(readBig(bytes, at + 10, 2)),
                           uint32_t(readBig(bytes, at + 12, 4))});
    return entries;
}

std::string encodePolyglot(const std::vector<PolyglotEntry>& entries) {
    std::string bytes;
    for (const PolyglotEntry& e : entries) {
        writeBig(bytes, e.key, 8);
        writeBig(bytes, e.move, 2);
        writeBig(bytes, e.weight, 2);
        writeBig(bytes, e.learn, 4);
    }
    return bytes;
}
