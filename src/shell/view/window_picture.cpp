// Paints the main window, with a bank open, into a PNG.
#include "shell/view/window_picture.h"

#include "common/settings.h"
#include "common/whole_file.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "shell/command_state.h"
#include "shell/shell_window.h"
#include "shell/start_up.h"
#include "shell/view/main_window.h"

#include <QBuffer>
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
    QBuffer png;
    if (!window.grab().save(&png, "PNG") ||
        !WriteFileWhole(pngPath.c_str(), std::string_view(png.data().constData(),
                                                          static_cast<std::size_t>(png.size())))) {
        error = pngPath + ": cannot be written";
        return false;
    }
    return true;
}

} // namespace tonewright
