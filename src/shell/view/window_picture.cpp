// Paints the main window, with a bank open, into a PNG.
#include "shell/view/window_picture.h"

#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "shell/command_state.h"
#include "shell/shell_window.h"
#include "shell/start_up.h"
#include "shell/view/main_window.h"

#include <QPixmap>

namespace tonewright {

bool PaintMainWindowPicture(const std::string &bankPath, const std::string &pngPath,
                            int screenHeight, std::string &error) {
    MainWindow window(MainWindowSize(screenHeight), false);
    window.AddBars();
    window.AddList();
    CurrentDocumentPath = bankPath;
    std::int64_t time = 0;
    if (!OpenDocument(&window, MainList, bankPath.c_str(), &CurrentDriverId, &time)) {
        error = bankPath + ": cannot be opened as a bank";
        return false;
    }
    RefreshStatus();
    RefreshTitle();
    RefreshCommands();
    window.ensurePolished();
    if (!window.grab().save(QString::fromStdString(pngPath), "PNG")) {
        error = pngPath + ": cannot be written";
        return false;
    }
    return true;
}

} // namespace tonewright
