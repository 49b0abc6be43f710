// The decisions of careful mode about the records of the catalogue window.
#include "database/careful_records.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/strings.h"
#include "database/database_undo.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace tonewright {
namespace {

enum Text : unsigned {
    NoBackupWanted = 20026,
    EditsNotSaved = 20042,
    EditsGoToo = 20043,
    WindowStays = 20044,
    NoDatabase = 20046,
};

bool IsOn() {
    return CarefulMode != 0;
}

// The text with what stands for its "%s".
std::string TextWith(Text number, const std::string &part) {
    std::string text = LoadProgramString(number);
    return text.replace(text.find("%s"), 2, part);
}

std::string WithParagraph(std::string told, const std::string &further) {
    return std::move(told) + "\n\n" + further;
}

} // namespace

EditsWay CarefulEditsWay(QWidget *window, std::uint32_t changed, const std::string &current,
                         const std::string &next) {
    if (!IsOn() || !changed) {
        return EditsWay::Drop;
    }
    if (next == current) {
        return EditsWay::Stay;
    }
    switch (AskYesNoCancel(window, TextWith(EditsNotSaved, current))) {
    case ResultYes:
        return EditsWay::Store;
    case ResultNo:
        return EditsWay::Drop;
    default:
        return EditsWay::Stay;
    }
}

std::string CarefulDeleteQuestion(std::string told, std::uint32_t changed) {
    return IsOn() && changed ? WithParagraph(std::move(told), LoadProgramString(EditsGoToo)) : told;
}

void CarefulBeginRecords(std::uint32_t &changed) {
    if (IsOn()) {
        changed = 0;
        DatabaseUndoClear();
    }
}

bool CarefulStaysAfterFailure() {
    return IsOn();
}

std::string CarefulStoreFailure(std::string told, const std::string &path,
                                const std::string &family, int reason) {
    if (!IsOn()) {
        return told;
    }
    if (!path.empty()) {
        const std::string why = reason == ECANCELED ? LoadProgramString(NoBackupWanted)
                                : reason == EINVAL  ? TextWith(NoDatabase, family)
                                                    : std::strerror(reason);
        told = WithParagraph(std::move(told), path + ": " + why + ".");
    }
    return WithParagraph(std::move(told), LoadProgramString(WindowStays));
}

} // namespace tonewright
