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

} // namespace

EditsWay CarefulEditsWay(QWidget *window, std::uint32_t changed, const std::string &current,
                         const std::string &next) {
    if (!IsOn() || !changed) {
        return EditsWay::Drop;
    }
    if (next == current) {
        return EditsWay::Stay;
    }
    switch (AskYesNoCancel(window, LoadProgramString(EditsNotSaved, {current}))) {
    case ResultYes:
        return EditsWay::Store;
    case ResultNo:
        return EditsWay::Drop;
    default:
        return EditsWay::Stay;
    }
}

std::string CarefulDeleteQuestion(std::string text, std::uint32_t changed) {
    return IsOn() && changed ? Paragraphs(std::move(text), LoadProgramString(EditsGoToo)) : text;
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

std::string CarefulStoreFailure(std::string text, const std::string &path,
                                const std::string &family, int reason) {
    if (!IsOn()) {
        return text;
    }
    if (!path.empty()) {
        const std::string why = reason == ECANCELED ? LoadProgramString(NoBackupWanted)
                                : reason == EINVAL  ? LoadProgramString(NoDatabase, {family})
                                                    : std::strerror(reason);
        text = Paragraphs(std::move(text), path + ": " + why + ".");
    }
    return Paragraphs(std::move(text), LoadProgramString(WindowStays));
}

} // namespace tonewright
