// The About box and the boxes that refuse to start.
#include "common/strings.h"
#include "shell/view/about_box.h"
#include "shell/view/refusal_box.h"

#include "support/pixels.h"
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

namespace tonewright {
namespace {

// Looks at the dialog that the next event loop shows, and closes it with `close`.
void AtTheNextDialog(const std::function<void(QDialog &)> &close) {
    QTimer::singleShot(0, [close] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        close(*dialog);
        if (dialog->isVisible()) {
            ADD_FAILURE() << "the dialog is still open";
            dialog->done(0);
        }
    });
}

void PressDismiss(const QDialog &dialog) {
    auto *button = dialog.findChild<QPushButton *>("control_1");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), "Dismiss");
    QTest::mouseClick(button, Qt::LeftButton);
}

QString AllTexts(const QDialog &dialog) {
    QStringList texts;
    for (const QLabel *label : dialog.findChildren<QLabel *>()) {
        texts += label->text();
        if (!label->text().isEmpty()) {
            EXPECT_GE(label->width(), label->sizeHint().width()) << label->text().toStdString();
        }
    }
    return texts.join('\n');
}

TEST(AboutBox, ItNamesVersionLicenceAndLibraries) {
    bool seen = false;
    AtTheNextDialog([&](QDialog &dialog) {
        const QString texts = AllTexts(dialog);
        for (const char *text : {"Tonewright", "17.0a", "MIT", "PortMidi", "zlib", "Qt "}) {
            EXPECT_TRUE(texts.contains(text)) << text;
        }
        EXPECT_TRUE(texts.contains(qVersion()));
        EXPECT_TRUE(HasInk(*dialog.findChild<QLabel *>("control_10")));
        seen = true;
        PressDismiss(dialog);
    });
    ShowAboutBox(nullptr);
    EXPECT_TRUE(seen);
}

TEST(AboutBox, EscClosesIt) {
    QWidget owner;
    owner.show();
    AtTheNextDialog([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    ShowAboutBox(&owner);
}

TEST(RefusalBox, ARefusedVersionIsToldWithTheProgramsName) {
    bool seen = false;
    AtTheNextDialog([&](QDialog &dialog) {
        EXPECT_TRUE(dialog.findChild<QLabel *>("control_65")
                        ->text()
                        .startsWith("This version of Tonewright is not compatible with your "
                                    "installation of Windows. You need newer software."));
        EXPECT_FALSE(dialog.findChild<QLabel *>("control_65")->text().contains("%s"));
        seen = true;
        PressDismiss(dialog);
    });
    ShowVersionRefusedBox();
    EXPECT_TRUE(seen);
}

} // namespace
} // namespace tonewright
