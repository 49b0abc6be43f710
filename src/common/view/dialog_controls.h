// Finds the controls of a dialog by their numbers: the control 101 is the widget "control_101".
#pragma once

#include <QString>
#include <QWidget>

#include <cstdint>

namespace tonewright {

QString ControlName(std::uint32_t number);

// The control of a number anywhere below `page`, when it is a `Widget`; else nullptr. A `Widget`
// may be a class without Q_OBJECT, which the toolkit's own search cannot tell from its base.
template <typename Widget = QWidget> Widget *ControlOf(const QWidget *page, std::uint32_t number) {
    return dynamic_cast<Widget *>(page->findChild<QWidget *>(ControlName(number)));
}

} // namespace tonewright
