// The operations of a family's row over its catalogue, made of what its catalogues are like.
#pragma once

#include "database/database_file.h"

namespace tonewright {

template <const DatabaseFamily &family> struct DatabaseSlots {
    static int AddVoice(QWidget *, const VoiceObject &voice, const char *name, const char *source,
                        int index) {
        return AddToDatabase(family, voice, name, source, index);
    }
    static std::shared_ptr<DatabaseHandle> Open(const char *path, std::uint32_t mode) {
        return OpenDatabase(family, path, mode);
    }
    static const char *Path() {
        static std::string path;
        path = DatabasePathOf(family);
        return path.c_str();
    }
    static DatabaseInfoResult Info(int selector) { return DatabaseInfoOf(family, selector); }
};

} // namespace tonewright
