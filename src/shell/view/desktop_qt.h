// Fills the desktop table for the window program.
#pragma once

namespace tonewright {

// Every member of TheDesktop, made of Qt's services and our own dialogs. Needs a QApplication.
void UseQtDesktop();

} // namespace tonewright
