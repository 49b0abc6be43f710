// Opening a file by its UTF-8 path. One implementation file a platform.
#pragma once

#include <cstdio>
#include <memory>

namespace tonewright {

struct FileCloser {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

// As std::fopen: `mode` is "rb", "wb" and so on. Null when the file cannot be opened.
FilePointer OpenFile(const char *path, const char *mode);

} // namespace tonewright
