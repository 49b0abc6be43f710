// Fills the desktop table for the window program.
#pragma once

namespace tonewright {

// Every member of TheDesktop, made of Qt's services and our own dialogs. Needs a QApplication.
void UseQtDesktop();

// Fills PlatformFolders from the standard paths of the platform.
void UsePlatformFolders();

} // namespace tonewright
