// What a widget of our own is to those who do not see it.
#pragma once

#include <QAccessible>

class QWidget;

namespace tonewright {

// Screen readers find the widget as one of that role, with its accessible name, for as long as it
// lives. Called first: as soon as somebody asks, or the name is set, the role stays what it is.
void SetAccessibleRole(QWidget &widget, QAccessible::Role role);

} // namespace tonewright
