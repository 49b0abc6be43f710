// Moves values between settings and the controls of a page, by the flags of the settings' rows: a
// setting is shown and edited by having a row with the number of a control, and a control of that
// number on some page.
#pragma once

#include "common/setting_rows.h"

#include <span>
#include <string>

class QWidget;

namespace tonewright {

// The controls of a row, in the order in which the flags are looked at:
//   SettingColour   a button, painted as a swatch of the colour in its property "userData"
//   SettingDropDown a QComboBox; its choices come from the row, from the system's fonts
//                   (SettingFontList), or are there already
//   SettingInteger  a QLineEdit; with SettingSpin an UpDown of its number + 10000 gives the range
//   SettingText     a QLineEdit; with SettingBrowse a button of its number + 15000 stands beside it
//   SettingBool     a check box
// A row whose control is not on the page, or is of another kind, is passed over.

// Shows the settings on a page, and limits what can be put in.
void KeysToControls(QWidget *page, std::span<const ConfigKey> keys);

// Stores what stands in the controls of a page. A number with SettingSpin is brought into its
// range; one without is only shown, never stored. A list with nothing selected leaves its setting
// alone, or sets 0 when the row has no choices.
void ControlsToKeys(const QWidget *page, std::span<const ConfigKey> keys);

// Makes the controls of a page answer while the page is visible: a swatch opens the colour
// dialog, a browse button asks its row, and each command of a spin control's edit shows the key
// and its flags in the main window's title. `keys` must outlive the page. Once for each page.
void ConnectKeyControls(QWidget *page, std::span<const ConfigKey> keys);

// The key whose control `control` is; null for any other widget.
const ConfigKey *SettingOf(const QWidget *control, std::span<const ConfigKey> keys);

} // namespace tonewright
