// Opening a file by its UTF-8 path. One implementation file a platform.
#pragma once

#include <cstdio>
#include <memory>

namespace tonewright {

struct FileCloser {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

// As std::fopen, for regular files only: `mode` is "rb", "r+b", "wb" or "w". Null, with the reason
// in errno, when there is no such file, it cannot be opened, or a folder, a pipe or a device stands
// in its place. Never waits for the other end of a pipe.
FilePointer OpenFile(const char *path, const char *mode);

} // namespace tonewright
