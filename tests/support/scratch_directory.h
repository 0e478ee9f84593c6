// A directory of its own for an engine and the files it reads, removed with its contents.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

struct ScratchDirectory {
    std::filesystem::path path;

    ScratchDirectory() {
        std::string pattern = std::filesystem::temp_directory_path() / "morvane-test-XXXXXX";
        if (mkdtemp(pattern.data())) path = pattern;
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ~ScratchDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    // Both return the file's path.
    std::string write(const std::string& name, const std::string& bytes) {
        std::ofstream(path / name, std::ios::binary) << bytes;
        return (path / name).string();
    }
    std::string writeLines(const std::string& name, const std::vector<std::string>& lines) {
        std::ofstream file(path / name, std::ios::binary);
        for (const std::string& line : lines) file << line << "\n";
        return (path / name).string();
    }
    std::string read(const std::string& name) const {
        std::ifstream file(path / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
};
