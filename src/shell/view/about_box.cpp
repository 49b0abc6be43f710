// Fills in the About box.
#include "shell/view/about_box.h"

#include "common/desktop.h"
#include "common/version.h"
#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "common/view/theme_picture.h"
#include "shell/view/program_texts.h"
#include "ui_AboutBox.h"

#include <QDialog>
#include <QSysInfo>

namespace tonewright {
namespace {

constexpr int NameFontHeight = 34;
constexpr int SmallFontHeight = 14;
constexpr int BoldWeight = 700;
constexpr const char *Copyright = "Copyright \u00a9 2026 The Tonewright developers.";

QString Libraries() {
    QStringList libraries = {QString("Qt %1").arg(qVersion()), "PortMidi", "zlib"};
    if (QSysInfo::kernelType() == "linux") {
        libraries += "ALSA";
    }
    const QString last = libraries.takeLast();
    return QString("Made with %1 and %2").arg(libraries.join(", "), last);
}

} // namespace

void ShowAboutBox(QWidget *owner) {
    QDialog box(owner ? owner->window() : nullptr);
    Ui::AboutBox ui;
    ui.setupUi(&box);
    box.setWindowTitle(QString("About %1").arg(LoadProgramString(109)));
    box.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    box.setFont(DialogFont());
    ShowThemePicture(*ui.control_10, ApplicationPicture);
    ui.control_101->setText(LoadProgramString(109));
    ui.control_101->setFont(FontOfHeight("Arial", NameFontHeight, BoldWeight));
    ui.control_102->setText(QString("Version %1").arg(ProgramVersion));
    ui.control_104->setText(QString("%1.\n%2").arg(ProgramLicence, Copyright));
    ui.control_105->setText(Libraries());
    ui.control_105->setFont(FontOfHeight("Arial", SmallFontHeight));
    QObject::connect(ui.control_1, &QPushButton::clicked, &box, &QDialog::accept);
    ui.control_1->setFocus();
    box.adjustSize();
    CentreWindow(box);
    box.exec();
}

} // namespace tonewright
