// The files of documents (banks and single voices) as they are written, and their backups.
#pragma once

#include "common/file_bytes.h"

#include <cstdint>
#include <span>

class QWidget;

namespace tonewright {

// Careful mode: a document's file, and the backup of one, stay what they are until the bytes that
// replace them are on the disk.
bool KeepsFormerDocuments();

// WriteFileBytes; while KeepsFormerDocuments, WriteFileWhole, of which whatever fails leaves the
// file as it was and counts as NotOpened, but for ENOTRECOVERABLE, which counts as Short.
WriteOutcome WriteDocumentFile(const char *path, std::span<const std::uint8_t> bytes);

// Copies an existing file to "Backup of NAME" beside it when CreateBackups is set, replacing an
// earlier backup. When the copy fails, asks whether to go on. False: the user stops here, and errno
// is ECANCELED.
bool MakeBackupOf(QWidget *window, const char *path);
// The same to another file than "Backup of NAME". `isMade` becomes whether there is a backup now.
bool MakeBackupAs(QWidget *window, const char *path, const char *backup, bool *isMade = nullptr);

} // namespace tonewright
