// Drop-down lists whose items are told in one text.
#pragma once

class QComboBox;

namespace tonewright {

// Replaces the items of a list by those of a text separated by ";", UTF-8. Empty items are dropped,
// each is cut to 260 bytes. No item is selected then. The number of items.
int FillComboFromList(QComboBox *list, const char *items);

// Lets the wheel change a list only while it has the focus, which the wheel does not give it; else
// the wheel goes to what is around the list.
void TakeWheelWithFocusOnly(QComboBox *list);

} // namespace tonewright
