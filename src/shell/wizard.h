// The welcome wizard without its window: when it is shown, what its buttons do, and how its
// controls stand for settings. Pages are templates whose controls carry mark-up (shell/markup), so
// that a new one needs no code.
#pragma once

#include "common/setting_rows.h"
#include "shell/markup.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

class QWidget;

namespace tonewright {

struct WizardRequest {
    QWidget *owner = nullptr;
    std::uint32_t firstPage = 0; // its number; those of the others follow
    int pageCount = 0;
    std::span<const ConfigKey> rows = {}; // the settings that variables are looked for in
    std::uint32_t *firstRun = nullptr;    // ShowWelcomeWizard; null: the user has asked for it
    int startPage = 0;                    // counted from 0
};

constexpr int WizardDismissed = 1;

// Shows the wizard: WizardDismissed when it ended by "Dismiss", which stores its values, else 0.
// With a first-run flag nothing happens unless that is set. It is cleared then, in the file of
// settings too, so that no crash brings the wizard back, before the user is asked; when that file
// cannot be written, the user is told so first.
int RunWizard(const WizardRequest &request);

// The four pages of the program, at the user's wish, and at the first start. The result of
// RunWizard.
int RunWelcomeWizard();
int RunFirstWizard();

// Where the wizard stands, and what its buttons show.
struct WizardPages {
    int current = 0; // counted from 0
    int count = 0;
};
bool HasNext(const WizardPages &pages);
bool HasPrevious(const WizardPages &pages);
// Go on or back by one, where there is a page.
void GoNext(WizardPages &pages);
void GoPrevious(WizardPages &pages);
std::string PageLabel(const WizardPages &pages); // "Page 1 / 4"
const char *DismissCaption(const WizardPages &pages);

// What a control shows of its setting when it is made. Nothing for a control of another kind, and
// where its variable is not among the rows, or of another type than the control's.
std::optional<bool> IsChecked(const ControlRecord &record, std::span<const ConfigKey> rows);
// Of a list: an index, which may be none of its items, or the text of one.
std::optional<std::uint32_t> SelectedIndex(const ControlRecord &record,
                                           std::span<const ConfigKey> rows);
std::optional<std::string> SelectedText(const ControlRecord &record,
                                        std::span<const ConfigKey> rows);

// Stores what a control shows, under the same conditions.
void StoreChecked(const ControlRecord &record, bool checked, std::span<const ConfigKey> rows);
void StoreSelected(const ControlRecord &record, int index, const std::string &text,
                   std::span<const ConfigKey> rows);

} // namespace tonewright
