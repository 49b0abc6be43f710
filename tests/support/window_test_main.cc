// main() of the window tests: one QApplication for the process, made before the tests run.
#include "common/view/soft_button.h"
#include "support/run_tests.h"

#include <QApplication>

int main(int argc, char **argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
    QApplication application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    tonewright::MakeDialogButtonsSoft();
    return tonewright::RunTests(&argc, argv);
}
