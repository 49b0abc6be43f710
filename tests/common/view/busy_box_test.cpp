// The busy box, and how it keeps the user out while it stands.
#include "common/view/busy_box.h"
#include "common/view/message_dialog.h"
#include "common/view/show_at_once.h"
#include "common/view/system_colours.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <qtestspontaneevent.h>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace tonewright {
namespace {

QWidget *Box() {
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == "BusyBox") {
            return window;
        }
    }
    return nullptr;
}

// A window that writes down what the user does to it.
class Recorder : public QWidget {
public:
    Recorder() {
        resize(400, 300);
        show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(this));
    }
    QStringList seen;

protected:
    void mousePressEvent(QMouseEvent *) override { seen += "press"; }
    void mouseReleaseEvent(QMouseEvent *) override { seen += "release"; }
    void keyPressEvent(QKeyEvent *) override { seen += "key"; }
    void wheelEvent(QWheelEvent *) override { seen += "wheel"; }
    void contextMenuEvent(QContextMenuEvent *) override { seen += "menu"; }
    void dragEnterEvent(QDragEnterEvent *event) override {
        seen += "enter";
        event->accept();
    }
    void dropEvent(QDropEvent *) override { seen += "drop"; }
};

class PaintCounter : public QObject {
public:
    int count = 0;
    bool eventFilter(QObject *, QEvent *event) override {
        count += event->type() == QEvent::Paint;
        return false;
    }
};

void PostMouse(QWidget &target, QEvent::Type type, Qt::MouseButtons buttons) {
    QCoreApplication::postEvent(&target, new QMouseEvent(type, QPointF(10, 10),
                                                         target.mapToGlobal(QPointF(10, 10)),
                                                         Qt::LeftButton, buttons, Qt::NoModifier));
}

TEST(BusyBox, ItIsOnTheScreenWhenTheCallReturns) {
    Recorder owner;
    EXPECT_TRUE(ShowBusyBoxWindow(&owner, "Downloading"));
    QWidget *box = Box();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->isVisible());
    EXPECT_TRUE(box->windowHandle()->isExposed());
    EXPECT_EQ(box->windowTitle(), "Downloading");
    EXPECT_TRUE(box->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(box->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(box->isModal());
    EXPECT_EQ(box->parentWidget(), &owner);
    EXPECT_TRUE(box->findChildren<QWidget *>().isEmpty());
    const QPoint distance =
        box->geometry().center() - QGuiApplication::primaryScreen()->availableGeometry().center();
    EXPECT_LE(distance.manhattanLength(), 2);
    CloseBusyBoxWindow();
    EXPECT_EQ(Box(), nullptr);
}

TEST(BusyBox, ItHasAThinBorderAndItsTextOnTheFaceColour) {
    ShowBusyBoxWindow(nullptr, "Downloading");
    const QImage image = Box()->grab().toImage();
    const QRgb ink = SystemColourOf(SystemColour::DarkShadow3D).rgb();
    EXPECT_EQ(image.pixel(0, 0), ink);
    EXPECT_EQ(image.pixel(image.width() - 1, image.height() - 1), ink);
    EXPECT_EQ(image.pixel(3, 3), SystemColourOf(SystemColour::ButtonFace).rgb());
    CloseBusyBoxWindow();
}

TEST(BusyBox, AnotherTextIsPaintedAtOnceAndLeavesTheTitle) {
    ShowBusyBoxWindow(nullptr, "Downloading");
    QWidget *box = Box();
    const QImage before = box->grab().toImage();
    PaintCounter counter;
    box->installEventFilter(&counter);
    SetBusyBoxText("Downloading voice 2 of 32");
    EXPECT_EQ(counter.count, 1);
    EXPECT_EQ(box->windowTitle(), "Downloading");
    EXPECT_NE(box->grab().toImage(), before);
    CloseBusyBoxWindow();
}

TEST(BusyBox, ALongTextStaysInsideOfTheBox) {
    ShowBusyBoxWindow(nullptr, std::string(3000, 'W'));
    EXPECT_LE(Box()->width(), 400);
    const QImage image = Box()->grab().toImage();
    for (int y = 1; y < image.height() - 1; ++y) {
        EXPECT_EQ(image.pixel(5, y), SystemColourOf(SystemColour::ButtonFace).rgb());
        EXPECT_EQ(image.pixel(image.width() - 6, y),
                  SystemColourOf(SystemColour::ButtonFace).rgb());
    }
    CloseBusyBoxWindow();
}

TEST(BusyBox, ATextIsWrittenWholeInTheMiddleWithAnyCharacterInIt) {
    ShowBusyBoxWindow(nullptr, "Downloading");
    // The columns of ink, from the first to the last one.
    const auto columns = [](const QString &text) {
        SetBusyBoxText(text.toStdString());
        const QImage image = Box()->grab().toImage();
        const QRgb face = SystemColourOf(SystemColour::ButtonFace).rgb();
        std::pair<int, int> range(image.width(), 0);
        for (int x = 1; x < image.width() - 1; ++x) {
            for (int y = 1; y < image.height() - 1; ++y) {
                if (image.pixel(x, y) != face) {
                    range = {std::min(range.first, x), x};
                }
            }
        }
        return range;
    };
    const auto whole = columns("ABCDEFGH");
    EXPECT_NEAR(whole.first, Box()->width() - 1 - whole.second, 2);
    const auto start = columns("AB");
    EXPECT_LT(whole.first, start.first - 10);
    for (int code = 0x80; code <= 0x9F; ++code) {
        const auto range = columns(QString("AB") + QChar(code) + "CDEFGH");
        EXPECT_LE(range.first, whole.first) << std::hex << code;
        EXPECT_GE(range.second, whole.second) << std::hex << code;
    }
    CloseBusyBoxWindow();
}

TEST(BusyBox, WhatTheUserDoesWhileItStandsDoesNotReachTheWindow) {
    Recorder owner;
    ShowBusyBoxWindow(&owner, "Downloading");
    QTest::mouseClick(&owner, Qt::LeftButton);
    QTest::mouseClick(owner.windowHandle(), Qt::LeftButton);
    QTest::keyClick(&owner, Qt::Key_Space);
    EXPECT_EQ(owner.seen, QStringList());
    CloseBusyBoxWindow();
    QTest::keyClick(&owner, Qt::Key_Space);
    EXPECT_EQ(owner.seen, QStringList("key"));
}

TEST(BusyBox, WhatHasPiledUpInTheMeantimeDoesNotReachTheWindowAfterwards) {
    Recorder owner;
    ShowBusyBoxWindow(&owner, "Downloading");
    PostMouse(owner, QEvent::MouseButtonPress, Qt::LeftButton);
    PostMouse(owner, QEvent::MouseButtonRelease, Qt::NoButton);
    QCoreApplication::postEvent(&owner, new QKeyEvent(QEvent::KeyPress, Qt::Key_A, {}));
    CloseBusyBoxWindow();
    QCoreApplication::processEvents();
    EXPECT_EQ(owner.seen, QStringList());
}

TEST(BusyBox, AButtonHeldSinceBeforeIsReleased) {
    Recorder owner;
    QTest::mousePress(&owner, Qt::LeftButton);
    ShowBusyBoxWindow(&owner, "Downloading");
    QTest::mouseRelease(&owner, Qt::LeftButton);
    CloseBusyBoxWindow();
    EXPECT_EQ(owner.seen, (QStringList{"press", "release"}));
}

TEST(BusyBox, AButtonOfAWindowHeldSinceBeforeComesUpWithoutAClick) {
    Recorder owner;
    QPushButton button("Exit", &owner);
    button.show();
    int clicks = 0;
    QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
    QTest::mousePress(&button, Qt::LeftButton);
    EXPECT_TRUE(button.isDown());
    ShowBusyBoxWindow(&owner, "Downloading");
    QTest::mouseRelease(&button, Qt::LeftButton);
    EXPECT_FALSE(button.isDown());
    CloseBusyBoxWindow();
    EXPECT_EQ(clicks, 0);
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
}

TEST(BusyBox, WheelMenusAndDropsOfFilesStayOutAndSoDoesClosing) {
    Recorder owner;
    owner.setAcceptDrops(true);
    ShowBusyBoxWindow(&owner, "Downloading");
    const QPointF place(5, 5);
    QWheelEvent wheel(place, owner.mapToGlobal(place), {}, {0, 120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QContextMenuEvent menu(QContextMenuEvent::Mouse, place.toPoint(),
                           owner.mapToGlobal(place.toPoint()));
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile("/voice.syx")});
    QDragEnterEvent enter(place.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, {});
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    for (QEvent *event : std::initializer_list<QEvent *>{&wheel, &menu, &enter, &drop}) {
        QCoreApplication::sendEvent(&owner, event);
    }
    EXPECT_EQ(owner.seen, QStringList());
    QCloseEvent close; // the window manager's
    QSpontaneKeyEvent::setSpontaneous(&close);
    qApp->notify(&owner, &close);
    EXPECT_FALSE(close.isAccepted());
    CloseBusyBoxWindow();
    QCoreApplication::sendEvent(&owner, &wheel);
    QCoreApplication::sendEvent(&owner, &menu);
    QCoreApplication::sendEvent(&owner, &enter);
    QCoreApplication::sendEvent(&owner, &drop);
    EXPECT_EQ(owner.seen, (QStringList{"wheel", "menu", "enter", "drop"}));
}

TEST(ShowAtOnce, AWindowIsPaintedWhenItReturns) {
    QWidget window;
    PaintCounter paints;
    window.installEventFilter(&paints);
    ShowAtOnce(window);
    EXPECT_TRUE(window.windowHandle()->isExposed());
    EXPECT_GT(paints.count, 0);
}

TEST(BusyBox, AMessageAskedMeanwhileIsSeenAndAnswered) {
    Recorder owner;
    ShowBusyBoxWindow(&owner, "Downloading");
    MessageRequest request;
    request.owner = &owner;
    request.flags = MessageFlagBase | MessageFlagButton1 | MessageFlagButton2 | MessageFlagCaption;
    request.button1 = "Yes";
    request.button2 = "No";
    QTimer::singleShot(0, [] {
        QWidget *dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        EXPECT_FALSE(Box()->isVisible());
        QTest::mouseClick(dialog->findChild<QPushButton *>("control_7"), Qt::LeftButton);
    });
    RunMessageDialog(request);
    EXPECT_EQ(request.result, ResultNo);
    QCoreApplication::processEvents();
    EXPECT_TRUE(Box()->isVisible());
    QTest::keyClick(&owner, Qt::Key_Space);
    EXPECT_EQ(owner.seen, QStringList());
    CloseBusyBoxWindow();
}

TEST(BusyBox, ADialogThatOwnsItIsShutOutAsWell) {
    QDialog owner;
    auto *button = new QPushButton("Close", &owner);
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, [&] { ++clicks; });
    QTimer::singleShot(0, [&] {
        ShowBusyBoxWindow(&owner, "Downloading");
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_EQ(clicks, 0);
        CloseBusyBoxWindow();
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_EQ(clicks, 1);
        owner.accept();
    });
    owner.exec();
}

TEST(BusyBox, ClosingBringsTheOwnerToTheTop) {
    Recorder owner, other;
    ShowBusyBoxWindow(&owner, "Downloading");
    CloseBusyBoxWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&owner));
    EXPECT_TRUE(owner.isActiveWindow());
}

TEST(BusyBox, WithoutABoxThereIsNothingToSetOrClose) {
    SetBusyBoxText("text");
    CloseBusyBoxWindow();
    EXPECT_EQ(Box(), nullptr);
}

TEST(BusyBox, ASecondBoxIsClosedFirst) {
    ShowBusyBoxWindow(nullptr, "First");
    QWidget *first = Box();
    ShowBusyBoxWindow(nullptr, "Second");
    CloseBusyBoxWindow();
    EXPECT_EQ(Box(), first);
    CloseBusyBoxWindow();
    EXPECT_EQ(Box(), nullptr);
}

TEST(BusyBox, AnOwnerThatGoesTakesItsBoxAlong) {
    {
        Recorder owner;
        ShowBusyBoxWindow(&owner, "Downloading");
    }
    EXPECT_EQ(Box(), nullptr);
    SetBusyBoxText("text");
    CloseBusyBoxWindow();
}

} // namespace
} // namespace tonewright
