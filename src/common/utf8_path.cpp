// Paths against the current folder.
#include "common/utf8_path.h"

#include <system_error>

namespace tonewright {

std::string AbsolutePath(const std::string &path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(PathOfUtf8(path), error);
    return error ? path : Utf8OfPath(absolute);
}

} // namespace tonewright
