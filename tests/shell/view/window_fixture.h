// The real main window over a temporary home, driven by mouse and keyboard events.
#pragma once

#include "common/folders.h"
#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "shell/command_table.h"
#include "shell/documents.h"
#include "shell/list_state.h"
#include "shell/start_up.h"
#include "shell/undo.h"
#include "shell/view/main_window.h"
#include "shell/view/voice_list_view.h"
#include "support/bank_bytes.h"
#include "support/mouse_buttons.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

namespace tonewright {

// A menu takes a click for a choice only when the pointer has moved about in it before.
inline void ComeTo(QMenu &menu, QPoint point) {
    for (int distance = 10; distance >= 0; --distance) {
        const QPointF at = point - QPoint(distance, 0);
        QMouseEvent move(QEvent::MouseMove, at, menu.mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QApplication::sendEvent(&menu, &move);
    }
}

class WindowTest : public testing::Test {
protected:
    void SetUp() override {
        PlatformFolders = {.applicationData = home.path.string(),
                           .documents = home.path.string(),
                           .pictures = home.path.string(),
                           .programs = home.path.string()};
        FillDefaultFolders();
        MakeWindow();
        ReleaseMouseButtons(Viewport());
    }

    void MakeWindow(int screenHeight = 1080) {
        window.reset();
        window = std::make_unique<MainWindow>(MainWindowSize(screenHeight), true);
        UndoInit(window.get());
        window->AddBars();
        window->AddList();
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        list = window->List();
    }

    // Opens a bank of the voices "VOICE 01" to "VOICE 32".
    void OpenBank() {
        PendingOpenPath = home.Write("bank.syx", TestBank());
        ASSERT_EQ(RunCommand(CommandOpen), 1);
        desktop.sounds.clear();
    }

    // Posted commands run from the event loop.
    static void RunPosted() { QTest::qWait(20); }

    std::string NameAt(int row) const {
        const VoiceObject *voice = ListVoice(MainList, row);
        return voice ? VoiceObjectName(*voice) : "(none)";
    }
    std::vector<std::string> Names(int first, int last) const {
        std::vector<std::string> names;
        for (int row = first; row <= last; ++row) {
            names.push_back(NameAt(row));
        }
        return names;
    }

    QWidget *Viewport() const { return list->viewport(); }
    QPoint RowPoint(int row) const { return list->RowRectangle(row).center(); }
    void ClickRow(int row, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(Viewport(), button, Qt::NoModifier, RowPoint(row));
    }
    void Drag(QPoint from, QPoint to) {
        QTest::mousePress(Viewport(), Qt::LeftButton, Qt::NoModifier, from);
        const QPoint middle = (from + to) / 2;
        QTest::mouseMove(Viewport(), middle);
        SendMove(middle);
        SendMove(to);
        QTest::mouseRelease(Viewport(), Qt::LeftButton, Qt::NoModifier, to);
    }
    void DragRow(int from, int to) { Drag(RowPoint(from), RowPoint(to)); }
    // A move with the left button held.
    void SendMove(QPoint point) {
        QMouseEvent move(QEvent::MouseMove, point, Viewport()->mapToGlobal(point), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(Viewport(), &move);
    }

    // Does what opens the context menu, and hands the menu to `look`; it is closed afterwards.
    // False when none opened.
    bool WithContextMenuOf(const std::function<void()> &open,
                           const std::function<void(QMenu &)> &look) {
        bool opened = false;
        QTimer::singleShot(0, [&] {
            if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
                opened = true;
                look(*menu);
                menu->close();
            }
        });
        open();
        QTest::qWait(1);
        return opened;
    }
    // At a press of the right button.
    bool WithContextMenu(QPoint point, const std::function<void(QMenu &)> &look) {
        return WithContextMenuOf(
            [&] { QTest::mousePress(Viewport(), Qt::RightButton, Qt::NoModifier, point); }, look);
    }
    static std::vector<std::string> TextsOf(const QMenu &menu) {
        std::vector<std::string> texts;
        for (const QAction *action : menu.actions()) {
            texts.push_back(action->isSeparator() ? "-" : action->text().toStdString());
        }
        return texts;
    }
    static QAction *ActionOf(QMenu &menu, int commandId) {
        for (QAction *action : menu.actions()) {
            if (action->data().toInt() == commandId) {
                return action;
            }
        }
        return nullptr;
    }

    // Runs `start`, which opens a box at once or from the event loop, and hands the box to `use`.
    // The box is closed by its button 1 unless `use` has done so. False when none opened.
    bool WithBox(const std::function<void()> &start, const std::function<void(QDialog &)> &use) {
        bool opened = false;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, [&] {
            auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!box) {
                return;
            }
            look.stop();
            opened = true;
            use(*box);
            if (box->isVisible()) {
                QTest::mouseClick(box->findChild<QPushButton *>("control_1"), Qt::LeftButton);
            }
            if (box->isVisible()) {
                ADD_FAILURE() << "the box is still open";
                box->done(0);
            }
        });
        look.start(5);
        start();
        // The round of the event loop that begins what is posted stays in it. What was posted may
        // post the box; so rounds are counted, not the time that a busy machine takes for one.
        constexpr int Rounds = 12;
        for (int round = 0; round < Rounds && !opened; ++round) {
            QTest::qWait(5);
        }
        return opened;
    }
    // Runs `start`, which opens a box at once or from the event loop, hands the box to `use`, and
    // then asks the program to end, as a signal does. The test fails when the box stays.
    void EndInBox(const std::function<void()> &start, const std::function<void(QDialog &)> &use) {
        bool stood = false;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, [&] {
            if (auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
                look.stop();
                stood = true;
                use(*box);
                window->EndAtOnce();
            }
        });
        look.start(5);
        start();
        EXPECT_TRUE(QTest::qWaitFor([&] { return stood; }));
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        // A loop that ends by itself lets the toolkit forget that the program was to end.
        QTimer::singleShot(0, [] { QCoreApplication::exit(); });
        QApplication::exec();
    }
    // Chooses a command in the menu bar.
    void Trigger(int command) {
        ASSERT_NE(window->MenuAction(command), nullptr);
        window->MenuAction(command)->trigger();
    }

    // Drops files of a source that offers `actions` and proposes what its keys ask for, and returns
    // what it is answered.
    Qt::DropAction DropPaths(const QStringList &paths, Qt::DropActions actions = Qt::CopyAction,
                             Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &path : paths) {
            urls.push_back(QUrl::fromLocalFile(path));
        }
        data.setUrls(urls);
        const QPointF point = RowPoint(0);
        QDragEnterEvent enter(point.toPoint(), actions, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(Viewport(), &enter);
        EXPECT_TRUE(enter.isAccepted());
        EXPECT_NE(enter.dropAction(), Qt::MoveAction);
        QDragMoveEvent move(point.toPoint(), actions, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(Viewport(), &move);
        EXPECT_TRUE(move.isAccepted());
        EXPECT_NE(move.dropAction(), Qt::MoveAction);
        QDropEvent drop(point, actions, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(Viewport(), &drop);
        EXPECT_TRUE(drop.isAccepted());
        return drop.dropAction();
    }

    TempFolder home;
    ScriptedDesktop desktop;
    std::unique_ptr<MainWindow> window;
    VoiceListView *list = nullptr;
};

} // namespace tonewright
