// Numbers the lists, and looks at the files of documents.
#include "shell/list_origin.h"

#include "common/file_bytes.h"
#include "common/open_file.h"
#include "core/current.h"
#include "core/voice_file_reader.h"

#include <algorithm>
#include <limits>

namespace tonewright {
namespace {

constexpr std::size_t SizeWithoutFormat = 64 * 1024;

const VoiceFileFormat *BankFormatOf(const std::string &path) {
    const VoiceFileFormat *format = BankFormatOfPath(path);
    return format ? format : FormatOfDriver(CurrentDriverId, VoiceFileKind::Bank);
}

// As many bytes as an Open reads, by what the file says at its start.
std::size_t BankSizeOf(const VoiceFileFormat *format, const std::string &path) {
    if (!format) {
        return SizeWithoutFormat;
    }
    std::vector<std::uint8_t> start;
    ReadStartOfFile(path.c_str(), format->size, start);
    constexpr std::uint64_t limit = std::numeric_limits<std::size_t>::max() - 1;
    return static_cast<std::size_t>(
        std::min(limit, std::max<std::uint64_t>(format->size, format->wholeSize(start))));
}

} // namespace

int MainListOrigin = NoListOrigin;
int OriginOfDownload = NoDownload;
DocumentFile TheDocumentFile;

void BeginListOrigin() {
    static int lastNumber = 0;
    MainListOrigin = ++lastNumber;
}

DocumentFile LookAtDocumentFile(const std::string &path) {
    DocumentFile file;
    file.path = path;
    file.origin = MainListOrigin;
    const VoiceFileFormat *format = BankFormatOf(path);
    const std::size_t size = BankSizeOf(format, path);
    if (!ReadStartOfFile(path.c_str(), size + 1, file.start)) {
        file.start.clear();
    }
    file.holdsMore = file.start.size() > size;
    file.exceedsBank = format && file.start.size() > format->size;
    return file;
}

DocumentFile DocumentFileBeforeSave(const std::string &path) {
    if (path == TheDocumentFile.path) {
        return TheDocumentFile;
    }
    DocumentFile file = LookAtDocumentFile(path);
    if (FileExists(path.c_str())) {
        file.origin = NoListOrigin;
    }
    return file;
}

} // namespace tonewright
