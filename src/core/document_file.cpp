// Writes documents in place or as a whole, as careful mode says.
#include "core/document_file.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/whole_file.h"

#include <cerrno>
#include <string>

namespace tonewright {
namespace {

bool CopyToBackup(const char *path, const char *backup) {
    if (!KeepsFormerDocuments()) {
        return CopyFileTo(path, backup);
    }
    return !LeadsThrough(path, backup) && CopyFileWhole(path, backup);
}

} // namespace

bool KeepsFormerDocuments() {
    return CarefulMode != 0;
}

WriteOutcome WriteDocumentFile(const char *path, std::span<const std::uint8_t> bytes) {
    if (!KeepsFormerDocuments()) {
        return WriteFileBytes(path, bytes);
    }
    if (WriteFileWhole(path, bytes)) {
        return WriteOutcome::Done;
    }
    return errno == ENOTRECOVERABLE ? WriteOutcome::Short : WriteOutcome::NotOpened;
}

bool MakeBackupOf(QWidget *window, const char *path) {
    return MakeBackupAs(window, path, BackupPathOf(path).c_str());
}

bool MakeBackupAs(QWidget *window, const char *path, const char *backup, bool *isMade) {
    const bool isWanted = CreateBackups != 0 && FileExists(path);
    const bool isCopied = isWanted && CopyToBackup(path, backup);
    if (isMade) {
        *isMade = isCopied;
    }
    if (isCopied || !isWanted) {
        return true;
    }
    if (AskYesNo(window,
                 "Warning: there has been an error creating a backup for your file.\r\n"
                 "\r\nClick on Yes to proceed, or click on No to abort this save.") == ResultYes) {
        return true;
    }
    errno = ECANCELED;
    return false;
}

} // namespace tonewright
