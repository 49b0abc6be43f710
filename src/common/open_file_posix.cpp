// Opening a file where paths are bytes.
#include "common/open_file.h"

namespace tonewright {

FilePointer OpenFile(const char *path, const char *mode) {
    return FilePointer(std::fopen(path, mode));
}

} // namespace tonewright
