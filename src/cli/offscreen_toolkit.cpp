// Sets up the toolkit for painting without a display.
#include "cli/offscreen_toolkit.h"

#include "cli/text_output.h"
#include "common/platform.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace tonewright {
namespace {

// Hints of the toolkit help nobody who asked for a picture.
void DropToolkitHints(QtMsgType type, const QMessageLogContext &, const QString &text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        TellError("", text.toStdString());
        Flush(StandardError);
    }
}

} // namespace

void UseOffscreenToolkit() {
    qInstallMessageHandler(DropToolkitHints);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const std::string fonts = PlatformFontFolder();
    if (!fonts.empty() && !qEnvironmentVariableIsSet("QT_QPA_FONTDIR")) {
        qputenv("QT_QPA_FONTDIR", QByteArray::fromStdString(fonts));
    }
}

} // namespace tonewright
