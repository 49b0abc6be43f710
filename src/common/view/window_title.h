// Titles of windows that hold names of files or voices.
#pragma once

#include <QString>

namespace tonewright {

// What to hand to QWidget::setWindowTitle to have `text` shown as it is: the toolkit takes "[*]"
// for the place of its mark of a changed document.
QString WindowTitleOf(QString text);

} // namespace tonewright
