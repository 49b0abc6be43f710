// The pages of the wizard: dialog templates that are read when they are to be shown.
#pragma once

#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace tonewright {

constexpr std::uint32_t NoControlNumber = 0xFFFF; // of a control that no name gives one

// A control of a page, as its template tells of it.
struct PageControl {
    std::uint32_t number = NoControlNumber; // "control_101" has 101
    QString className;
    QString title;        // its text, which is mark-up
    QRect place;          // dialog units, inside the page
    QStringList items;    // of a list
    QString frameShape;   // of a frame: "QFrame::Panel"
    bool checked = false; // of a check box or radio button, when its mark-up binds it to no setting
};

struct WizardPage {
    QSize size; // dialog units
    std::vector<PageControl> controls;
};

// The page of a number, ":/pages/NUMBER.ui": a widget with a flat list of controls, each with its
// geometry in dialog units. Nothing when there is none or it cannot be read to its end.
std::optional<WizardPage> ReadWizardPage(std::uint32_t number);

} // namespace tonewright
