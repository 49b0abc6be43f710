// Decides when the wizard is shown, and moves values between its controls and the settings.
#include "shell/wizard.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/text.h"
#include "shell/screen_saver.h"
#include "shell/settings_file.h"
#include "shell/shell_window.h"
#include "shell/single_setting.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace tonewright {
namespace {

constexpr std::uint32_t FirstWelcomePage = 7400;
constexpr int WelcomePageCount = 4;

WizardRequest WelcomeRequest(std::uint32_t *firstRun) {
    return {.owner = TheShellWindow.window,
            .firstPage = FirstWelcomePage,
            .pageCount = WelcomePageCount,
            .rows = ProgramSettings.rows,
            .firstRun = firstRun};
}

// True when the next start, which takes the last line of the file that may mean it, reads a flag
// that is cleared.
bool FlagIsClearedIn(const std::string &path) {
    ReadSettingsFile(ProgramSettings, path.c_str(), [](const ConfigKey &row) {
        return row.value == decltype(row.value)(&ShowWelcomeWizard);
    });
    return std::exchange(ShowWelcomeWizard, 0) == 0;
}

// Clears the flag in the file of settings: in its line, or, where that is not enough, by a file
// with every setting. False, the reason in errno, when it could not be written.
bool ClearFlagInFile(const std::string &path) {
    const bool isWritten =
        WriteSingleText(path.c_str(), ProgramSettings.section, "ShowWelcomeWizard", "0");
    return (isWritten && FlagIsClearedIn(path)) ||
           WriteSettingsFile(ProgramSettings) != SettingsWrite::Failed;
}

// Clears the flag for good, then asks. True when the user wants to go on.
bool MayBeginFirstRun(std::uint32_t &flag) {
    flag = 0;
    const std::string path = SettingsFilePath(ProgramSettings);
    if (!ClearFlagInFile(path)) {
        const int reason = errno;
        ShowMessage(
            TheShellWindow.window,
            FormatText("It could not be noted that the welcome wizard has come. The next start "
                       "may bring it again:\n\n%s: %s",
                       path.c_str(), std::strerror(reason)));
    }
    const bool proceeds = TheShellWindow.AskForWizard && TheShellWindow.AskForWizard() == ResultYes;
    PlayEventSound(DefaultEventSound);
    return proceeds;
}

const ConfigKey *RowOf(const ControlRecord &record, std::span<const ConfigKey> rows) {
    const auto row = std::ranges::find_if(
        rows, [&](const ConfigKey &key) { return EqualNoCase(key.name, record.variable); });
    return row == rows.end() ? nullptr : &*row;
}

std::uint32_t *NumberOf(const ControlRecord &record, std::span<const ConfigKey> rows) {
    const ConfigKey *row = RowOf(record, rows);
    std::uint32_t *const *number = row ? std::get_if<std::uint32_t *>(&row->value) : nullptr;
    return number && (row->flags & (SettingBool | SettingInteger)) ? *number : nullptr;
}

std::string *TextOf(const ControlRecord &record, std::span<const ConfigKey> rows) {
    const ConfigKey *row = RowOf(record, rows);
    std::string *const *text = row ? std::get_if<std::string *>(&row->value) : nullptr;
    return text && (row->flags & SettingText) ? *text : nullptr;
}

bool IsBoundList(const ControlRecord &record) {
    return record.kind == ControlKind::ListBox && record.subclass.empty();
}

} // namespace

int RunWizard(const WizardRequest &request) {
    if (request.firstRun && (*request.firstRun == 0 || !MayBeginFirstRun(*request.firstRun))) {
        return 0;
    }
    return TheShellWindow.ShowWizard ? TheShellWindow.ShowWizard(request) : 0;
}

int RunWelcomeWizard() {
    return RunWizard(WelcomeRequest(nullptr));
}

int RunFirstWizard() {
    return RunWizard(WelcomeRequest(&ShowWelcomeWizard));
}

bool HasNext(const WizardPages &pages) {
    return pages.current < pages.count - 1;
}

bool HasPrevious(const WizardPages &pages) {
    return pages.current > 0;
}

void GoNext(WizardPages &pages) {
    pages.current += HasNext(pages) ? 1 : 0;
}

void GoPrevious(WizardPages &pages) {
    pages.current -= HasPrevious(pages) ? 1 : 0;
}

std::string PageLabel(const WizardPages &pages) {
    return FormatText("Page %d / %d", pages.current + 1, pages.count);
}

const char *DismissCaption(const WizardPages &pages) {
    return HasNext(pages) ? "Close" : "Finish";
}

std::optional<bool> IsChecked(const ControlRecord &record, std::span<const ConfigKey> rows) {
    const bool isRadioButton = record.kind == ControlKind::RadioButton;
    if (!isRadioButton && record.kind != ControlKind::CheckBox) {
        return std::nullopt;
    }
    if (const std::uint32_t *number = NumberOf(record, rows)) {
        return *number == record.checkedValue;
    }
    const std::string *text = isRadioButton ? TextOf(record, rows) : nullptr;
    return text ? std::optional(EqualNoCase(*text, record.checkedString)) : std::nullopt;
}

std::optional<std::uint32_t> SelectedIndex(const ControlRecord &record,
                                           std::span<const ConfigKey> rows) {
    const std::uint32_t *number = IsBoundList(record) ? NumberOf(record, rows) : nullptr;
    return number ? std::optional(*number) : std::nullopt;
}

std::optional<std::string> SelectedText(const ControlRecord &record,
                                        std::span<const ConfigKey> rows) {
    const std::string *text = IsBoundList(record) ? TextOf(record, rows) : nullptr;
    return text ? std::optional(*text) : std::nullopt;
}

void StoreChecked(const ControlRecord &record, bool checked, std::span<const ConfigKey> rows) {
    std::uint32_t *number = NumberOf(record, rows);
    if (record.kind == ControlKind::CheckBox) {
        if (!record.screenSaver.empty()) {
            if (checked) {
                InstallScreenSaver(record.screenSaver);
            }
        } else if (number) {
            *number = checked ? record.checkedValue : record.uncheckedValue;
        }
    } else if (record.kind == ControlKind::RadioButton && checked) {
        if (number) {
            *number = record.checkedValue;
        } else if (std::string *text = TextOf(record, rows)) {
            *text = CutText(record.checkedString, SettingTextLimit);
        }
    }
}

void StoreSelected(const ControlRecord &record, int index, const std::string &text,
                   std::span<const ConfigKey> rows) {
    if (!IsBoundList(record) || index < 0) {
        return;
    }
    if (std::uint32_t *number = NumberOf(record, rows)) {
        *number = static_cast<std::uint32_t>(index);
    } else if (std::string *stored = TextOf(record, rows)) {
        *stored = CutText(text, SettingTextLimit);
    }
}

} // namespace tonewright
