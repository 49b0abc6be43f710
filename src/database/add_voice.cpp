// Which voice goes to the catalogue, and as what.
#include "database/add_voice.h"

#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "database/database_record.h"

#include <cerrno>
#include <string>

namespace tonewright {

int AddRowToDatabase(QWidget *window, const VoiceList &list, int row) {
    const SynthDriver *family = CurrentDriver();
    const VoiceObject *voice = ListVoice(list, row);
    const bool fits = family && family->database && family->DatabaseAddVoice && voice &&
                      FitsDatabase(*family->database, *voice);
    if (!fits) {
        errno = EINVAL;
        return 0;
    }
    const std::string source = Utf8ToLatin1(FileNameOfPath(CurrentDocumentPath.c_str()));
    return family->DatabaseAddVoice(window, *voice, VoiceObjectName(*voice), source.c_str(), row);
}

} // namespace tonewright
