// The startup window: its size, its caption and the ways in which it closes.
#include "shell/view/startup_window.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWidget>

namespace tonewright {
namespace {

TEST(StartupWindow, ItIsAsLargeAsItsPictureWithItsBorders) {
    const auto window = ShowStartupWindowBox([] {});
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    // The picture is 640 by 400; two borders of 1 pixel and 2 pixels more.
    EXPECT_EQ(window->size(), QSize(644, 404));
    EXPECT_EQ(window->objectName(), "TonewrightStartupScreen");
    EXPECT_TRUE(window->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(window->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(window->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_EQ(window->cursor().shape(), Qt::WaitCursor);
    const QPoint distance = window->geometry().center() -
                            QGuiApplication::primaryScreen()->availableGeometry().center();
    EXPECT_LE(distance.manhattanLength(), 2);
}

TEST(StartupWindow, TheCaptionIsWhiteWithABlackOutlineInTheLowerRightCorner) {
    const auto window = ShowStartupWindowBox([] {});
    const QImage image = window->grab().toImage();
    const QRect caption(644 - 342, 404 - 58, 330, 50);
    int white = 0, black = 0, whiteNearRightEdge = 0;
    for (int y = caption.top(); y <= caption.bottom(); ++y) {
        for (int x = caption.left(); x <= caption.right(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            white += pixel == QColor(Qt::white);
            black += pixel == QColor(Qt::black);
            whiteNearRightEdge += pixel == QColor(Qt::white) && x > caption.right() - 8;
        }
    }
    EXPECT_GT(white, 500);
    EXPECT_GT(black, 500);
    EXPECT_GT(whiteNearRightEdge, 0);
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::black));
}

TEST(StartupWindow, AMessageIsNotCoveredAndTheWindowComesBackAfterIt) {
    const auto window = ShowStartupWindowBox([] {});
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    QDialog message;
    bool covered = true;
    QTimer::singleShot(50, &message, [&] {
        covered = window->isVisible();
        message.reject();
    });
    message.exec();
    EXPECT_FALSE(covered);
    EXPECT_TRUE(window->isVisible());
}

TEST(StartupWindow, ItsTimePassesWhileAMessageStands) {
    int calls = 0;
    QElapsedTimer timer;
    timer.start();
    const auto window = ShowStartupWindowBox([&] { ++calls; });
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    QDialog message;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &message, [&] {
        EXPECT_FALSE(window->isVisible());
        if (calls > 0 || timer.elapsed() > 15000) {
            message.reject();
        }
    });
    look.start(100);
    message.exec();
    EXPECT_EQ(calls, 1);
    EXPECT_GE(timer.elapsed(), 7900);
    EXPECT_FALSE(window->isVisible()) << "it does not come back";
    QTest::qWait(20);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(calls, 1);
}

TEST(StartupWindow, TheReleaseOfAnyMouseButtonClosesIt) {
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton}) {
        int calls = 0;
        const auto window = ShowStartupWindowBox([&] { ++calls; });
        QTest::mousePress(window.get(), button);
        EXPECT_TRUE(window->isVisible());
        EXPECT_EQ(calls, 0);
        QTest::mouseRelease(window.get(), button);
        EXPECT_FALSE(window->isVisible());
        EXPECT_EQ(calls, 1);
    }
}

TEST(StartupWindow, ItTellsItsClosingOnce) {
    int calls = 0;
    const auto window = ShowStartupWindowBox([&] { ++calls; });
    window->close();
    window->close();
    QTest::mouseRelease(window.get(), Qt::LeftButton);
    EXPECT_EQ(calls, 1);
}

TEST(StartupWindow, DestroyingItTellsNothing) {
    int calls = 0;
    auto window = ShowStartupWindowBox([&] { ++calls; });
    window.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 0);
}

TEST(StartupWindow, ItClosesByItselfAfter8Seconds) {
    int calls = 0;
    QElapsedTimer timer;
    timer.start();
    const auto window = ShowStartupWindowBox([&] { ++calls; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return calls == 1; }, 15000));
    EXPECT_GE(timer.elapsed(), 7900);
    EXPECT_FALSE(window->isVisible());
}

} // namespace
} // namespace tonewright
