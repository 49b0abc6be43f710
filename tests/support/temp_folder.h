// A temporary folder that is removed at the end of its life, and plain reading and writing of the
// files in it, apart from the code under test.
#pragma once

#include "common/utf8_path.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace tonewright {

inline void WriteTestFile(const std::string &path, std::span<const std::uint8_t> bytes) {
    std::ofstream file(PathOfUtf8(path), std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char *>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path);
    }
}

inline void WriteTestText(const std::string &path, const std::string &text) {
    WriteTestFile(path,
                  std::span(reinterpret_cast<const std::uint8_t *>(text.data()), text.size()));
}

// Throws, and so fails the test, when there is no such file.
inline std::vector<std::uint8_t> ReadTestFile(const std::string &path) {
    std::ifstream file(PathOfUtf8(path), std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// So does this; its lines end in line feeds, whatever the platform's own editors write.
inline std::string ReadTestText(const std::string &path) {
    std::ifstream file(PathOfUtf8(path));
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// And this, byte for byte, for files that are no text or whose line ends are looked at.
inline std::string ReadRawText(const std::string &path) {
    const std::vector<std::uint8_t> bytes = ReadTestFile(path);
    return {bytes.begin(), bytes.end()};
}

struct TempFolder {
    std::filesystem::path path;

    TempFolder() {
        std::random_device random;
        do {
            path = std::filesystem::temp_directory_path() /
                   ("tonewright-test-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(path));
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TempFolder(const TempFolder &) = delete;
    TempFolder &operator=(const TempFolder &) = delete;

    // The full path of a name in the folder, as the platform writes it; nothing is created.
    std::string File(const std::string &name) const {
        return Utf8OfPath((path / PathOfUtf8(name)).make_preferred());
    }
    // The full path, of so many bytes, of a name in a folder in it, which is created.
    std::string FileOfSize(std::size_t bytes, const std::string &name) const {
        const std::size_t rest = bytes - Folder().size() - 1 - name.size();
        std::filesystem::create_directory(path / std::string(rest, 'f'));
        return Utf8OfPath((path / std::string(rest, 'f') / PathOfUtf8(name)).make_preferred());
    }
    // The folder itself with a trailing separator, as the settings keep folders.
    std::string Folder() const { return Utf8OfPath(path / ""); }
    // Writes a file into the folder and returns its full path.
    std::string Write(const std::string &name, std::span<const std::uint8_t> bytes) const {
        WriteTestFile(File(name), bytes);
        return File(name);
    }
    std::string WriteText(const std::string &name, const std::string &text) const {
        WriteTestText(File(name), text);
        return File(name);
    }
    bool Holds(const std::string &name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(path / PathOfUtf8(name)));
    }
};

} // namespace tonewright
