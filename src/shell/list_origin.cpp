// Numbers the lists, and looks at the files of documents.
#include "shell/list_origin.h"

#include "common/file_bytes.h"
#include "common/open_file.h"
#include "core/current.h"
#include "core/voice_file_reader.h"

namespace tonewright {
namespace {

constexpr std::size_t SizeWithoutFormat = 64 * 1024;

std::size_t BankSizeOf(const std::string &path) {
    const VoiceFileFormat *format = BankFormatOfPath(path);
    if (!format) {
        format = FormatOfDriver(CurrentDriverId, VoiceFileKind::Bank);
    }
    return format ? format->size : SizeWithoutFormat;
}

} // namespace

int MainListOrigin = NoListOrigin;
DocumentFile TheDocumentFile;

void BeginListOrigin() {
    static int lastNumber = 0;
    MainListOrigin = ++lastNumber;
}

DocumentFile LookAtDocumentFile(const std::string &path) {
    DocumentFile file{.path = path, .origin = MainListOrigin, .start = {}, .holdsMore = false};
    const std::size_t size = BankSizeOf(path);
    if (!ReadStartOfFile(path.c_str(), size + 1, file.start)) {
        file.start.clear();
    }
    file.holdsMore = file.start.size() > size;
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
