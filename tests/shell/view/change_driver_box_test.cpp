// The box that refuses an unsuitable display.
#include "common/strings.h"
#include "shell/start_up.h"
#include "shell/view/refusal_box.h"

#include "support/pixels.h"
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace tonewright {
namespace {

TEST(ChangeDriverBox, TellsWhatIsNeededWithoutATitleBarAndEndsByClose) {
    bool seen = false;
    QTimer::singleShot(0, [&] {
        auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        seen = true;
        EXPECT_TRUE(box->windowFlags() & Qt::FramelessWindowHint);
        EXPECT_TRUE(HasInk(*box->findChild<QLabel *>("control_10")));
        EXPECT_TRUE(
            box->findChild<QLabel *>("control_65")
                ->text()
                .startsWith("Your current screen driver can't display true color or is configured "
                            "to an invalid resolution setting. Tonewright requires a true-color "
                            "screen driver.\n\nOpen the Windows Control Panel"));
        auto *close = box->findChild<QPushButton *>("control_1");
        EXPECT_EQ(close->text(), "Close");
        QTest::mouseClick(close, Qt::LeftButton);
        EXPECT_FALSE(box->isVisible());
    });
    ShowScreenDriverMessage();
    EXPECT_TRUE(seen);
}

TEST(ChangeDriverBox, AScreenOf800By600At16BitsPassesAndOneOf799DoesNot) {
    EXPECT_TRUE(DisplayIsSuitable(ColourDepthOf(16), 800));
    EXPECT_FALSE(DisplayIsSuitable(ColourDepthOf(16), 799));
    EXPECT_FALSE(DisplayIsSuitable(ColourDepthOf(8), 800));
}

} // namespace
} // namespace tonewright
