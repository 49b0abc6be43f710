// The main window as a user meets it.
#include "window_fixture.h"

#include "common/platform.h"
#include "common/view/busy_box.h"
#include "common/view/fonts.h"
#include "common/view/status_bar.h"
#include "common/view/tool_tip.h"
#include "drivers/dx7/voice_codec.h"
#include "shell/command_queue.h"
#include "shell/shell_window.h"
#include "shell/view/tool_bar.h"

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QWindow>

namespace tonewright {
namespace {

using MainWindowTest = WindowTest;

TEST_F(MainWindowTest, CannotBeResizedAndIs95PercentOfTheScreensHeight) {
    // The frame of the window counts: 4 pixels on each side and 23 for the caption.
    EXPECT_EQ(window->size(), QSize(829 - 8, 1026 - 31));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
}

TEST_F(MainWindowTest, TheTitleNamesTheDocument) {
    RefreshTitle();
    EXPECT_EQ(window->windowTitle(), "Tonewright [ Untitled.Twl ]");
    OpenBank();
    EXPECT_EQ(window->windowTitle(), "Tonewright [ bank.syx ]");
}

TEST_F(MainWindowTest, TheTitleShowsPlaceholdersOfTheToolkitInAFilesName) {
    for (const std::string name : {"a[*].syx", "[*][*]b.syx", "[*", "[*[*]]"}) {
        CurrentDocumentPath = home.File(name);
        RefreshTitle();
        EXPECT_EQ(window->windowHandle()->title().toStdString(), "Tonewright [ " + name + " ]");
    }
}

TEST_F(MainWindowTest, AFileThatCannotBeReadShowsInTheTitleAndTheWindowStaysUp) {
    desktop.ExpectMessage("There has been an error reading this file. It might be corrupted.");
    PendingOpenPath = home.File("missing.syx");
    PostCommand(CommandOpen);
    RunPosted();
    EXPECT_EQ(window->windowTitle(), "Tonewright [ missing.syx ]");
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(ListCount(MainList), 0);
}

TEST_F(MainWindowTest, AnEmptyListDisablesSaveSaveAsPrintAndUpload) {
    RefreshCommands();
    for (const int id : {CommandSave, CommandSaveAs, CommandPrint, CommandUpload}) {
        EXPECT_FALSE(CommandAllowed(id)) << id;
        EXPECT_FALSE(window->MenuAction(id)->isEnabled()) << id;
    }
    OpenBank();
    EXPECT_TRUE(window->MenuAction(CommandSave)->isEnabled());
    EXPECT_TRUE(window->MenuAction(CommandSaveAs)->isEnabled());
    EXPECT_TRUE(CommandAllowed(CommandPrint));
    EXPECT_TRUE(CommandAllowed(CommandUpload));
}

TEST_F(MainWindowTest, TheMenusStandInTheirOrder) {
    const auto bars = window->findChildren<QMenuBar *>();
    ASSERT_EQ(bars.size(), 1);
    QList<QAction *> titles;
    for (QAction *action : bars[0]->actions()) {
        if (!action->isSeparator()) {
            titles.push_back(action);
        }
    }
    ASSERT_EQ(titles.size(), 4);
    EXPECT_EQ(titles[0]->text(), "&File");
    EXPECT_EQ(titles[1]->text(), "&Edit");
    EXPECT_EQ(titles[2]->text(), "E&xtras");
    EXPECT_EQ(titles[3]->text(), "&Help");
    EXPECT_GT(bars[0]->actionGeometry(titles[3]).right(), bars[0]->width() - 12);
    EXPECT_LT(bars[0]->actionGeometry(titles[2]).right(), bars[0]->width() / 4);
    EXPECT_EQ(TextsOf(*titles[0]->menu()),
              (std::vector<std::string>{"&New\tCtrl+N", "&Open\tCtrl+0", "&Save\tCtrl+S",
                                        "Save &as...", "&Print", "-", "Set&tings", "E&xit"}));
    EXPECT_EQ(TextsOf(*titles[1]->menu()),
              (std::vector<std::string>{
                  "&Undo\tCtrl+Z", "-", "Cu&t\tCtrl+X", "&Copy\tCtrl+C", "&Paste\tCtrl+V", "-",
                  "&Find synthesizer", "Con&figure synthesizer", "&Download current voices",
                  "&Upload current voices", "&MIDI devices", "-", "Select &synthesizer"}));
    EXPECT_EQ(
        TextsOf(*titles[2]->menu()),
        (std::vector<std::string>{
            "&Careful mode", "&Keep all detune steps", "&Audition plays the voice that was sent",
            "Count as the &reface DX counts", "&Space bar plays the selected voice", "-",
            "&Open any dump...", "Arc&hive...", "-", "&Built-in instruments..."}));
    EXPECT_EQ(TextsOf(*titles[3]->menu()),
              (std::vector<std::string>{"&Help", "&Manual", "&System information",
                                        "&Tip of the day", "-", "&About", "-", "Welcome wi&zard"}));
}

TEST_F(MainWindowTest, MenuBarAndMenusAreInTheDesktopsFont) {
    QFont desktops = QApplication::font();
    const QFont former = desktops;
    desktops.setPointSize(18);
    QApplication::setFont(desktops);
    MakeWindow();
    OpenBank();
    const auto *bar = window->findChild<QMenuBar *>();
    const auto looksLike = [](const QFont &font, const QFont &other) {
        return font.family() == other.family() && font.pointSize() == other.pointSize() &&
               font.pixelSize() == other.pixelSize() && font.weight() == other.weight();
    };
    EXPECT_TRUE(looksLike(bar->font(), desktops)) << bar->font().toString().toStdString();
    for (const QAction *title : bar->actions()) {
        if (title->menu()) {
            EXPECT_TRUE(looksLike(title->menu()->font(), desktops));
        }
    }
    EXPECT_TRUE(WithContextMenu(
        RowPoint(2), [&](const QMenu &menu) { EXPECT_TRUE(looksLike(menu.font(), desktops)); }));
    EXPECT_GE(bar->height(), QFontMetrics(desktops).height());
    // The window's own controls have the font of the dialogs.
    EXPECT_TRUE(looksLike(list->font(), DialogFont()));
    QApplication::setFont(former);
    QCoreApplication::processEvents();
    EXPECT_TRUE(looksLike(bar->font(), former)) << "it follows";
    EXPECT_EQ(bar->height(), bar->sizeHint().height());
}

TEST_F(MainWindowTest, NewUndoAndCutAreGreyFromTheStart) {
    for (const int id : {CommandNew, CommandUndo, CommandCut}) {
        EXPECT_FALSE(window->MenuAction(id)->isEnabled()) << id;
    }
}

TEST_F(MainWindowTest, CtrlNAndCtrlXDoNothing) {
    OpenBank();
    const auto before = MainList.items;
    ClickRow(3);
    QTest::keyClick(window.get(), Qt::Key_N, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_X, Qt::ControlModifier);
    RunPosted();
    EXPECT_EQ(MainList.items, before);
    EXPECT_FALSE(UndoAvailable());
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(MainWindowTest, CtrlOOpensAFileOfTheDialog) {
    const std::string path = home.Write("other.syx", TestBank());
    desktop.Expect(
        ExpectedFileDialog{.kind = FileDialogKind::Open,
                           .answer = path,
                           .start = home.Folder() + "My Tonewright 17 Documents" + PathSeparator});
    QTest::keyClick(window.get(), Qt::Key_O, Qt::ControlModifier);
    RunPosted();
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(window->windowTitle(), "Tonewright [ other.syx ]");
}

TEST_F(MainWindowTest, CtrlSSavesAndCtrlZTakesAMoveBack) {
    OpenBank();
    DragRow(4, 1);
    EXPECT_EQ(NameAt(1), "VOICE 05");
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(window->MenuAction(CommandUndo)->isEnabled());
    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    RunPosted();
    EXPECT_EQ(NameAt(1), "VOICE 02");
    EXPECT_FALSE(window->MenuAction(CommandUndo)->isEnabled());
    DragRow(4, 1);
    QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier);
    RunPosted();
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(ReadTestText(home.File("bank.syx")).substr(6 + 128 + 118, 10), "VOICE 05  ");
    EXPECT_TRUE(home.Holds("Backup of bank.syx"));
}

TEST_F(MainWindowTest, AVoiceDraggedUpwardLandsOnTheTargetRowAndIsSelected) {
    OpenBank();
    DragRow(5, 2);
    EXPECT_EQ(Names(1, 6), (std::vector<std::string>{"VOICE 02", "VOICE 06", "VOICE 03", "VOICE 04",
                                                     "VOICE 05", "VOICE 07"}));
    EXPECT_EQ(MainList.selection, 2);
    EXPECT_EQ(NameAt(MainList.selection), "VOICE 06");
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_EQ(ListCount(MainList), 32);
}

TEST_F(MainWindowTest, AVoiceDraggedDownwardLandsAboveTheTargetAndTheVoiceBelowItIsSelected) {
    OpenBank();
    DragRow(2, 5);
    EXPECT_EQ(Names(1, 6), (std::vector<std::string>{"VOICE 02", "VOICE 04", "VOICE 05", "VOICE 03",
                                                     "VOICE 06", "VOICE 07"}));
    EXPECT_EQ(MainList.selection, 5);
    EXPECT_EQ(NameAt(MainList.selection), "VOICE 06");
    EXPECT_EQ(ListCount(MainList), 32);
}

TEST_F(MainWindowTest, ADragThatComesBackChangesNothing) {
    OpenBank();
    const auto before = MainList.items;
    QTest::mousePress(Viewport(), Qt::LeftButton, Qt::NoModifier, RowPoint(3));
    SendMove(RowPoint(6));
    EXPECT_EQ(Viewport()->cursor().shape(), Qt::BitmapCursor);
    SendMove(RowPoint(3));
    EXPECT_EQ(Viewport()->cursor().shape(), Qt::BitmapCursor); // the drag has begun for good
    QTest::mouseRelease(Viewport(), Qt::LeftButton, Qt::NoModifier, RowPoint(3));
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_NE(Viewport()->cursor().shape(), Qt::BitmapCursor);
}

TEST_F(MainWindowTest, ADragOutOfTheListShowsTheForbiddenCursorAndDropsNothing) {
    OpenBank();
    const auto before = MainList.items;
    const QPoint outside(Viewport()->width() + 40, 100);
    QTest::mousePress(Viewport(), Qt::LeftButton, Qt::NoModifier, RowPoint(3));
    SendMove(outside);
    EXPECT_EQ(Viewport()->cursor().shape(), Qt::ForbiddenCursor);
    QTest::mouseRelease(Viewport(), Qt::LeftButton, Qt::NoModifier, outside);
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(UndoCount(), 0);
}

TEST_F(MainWindowTest, ADragBelowTheListScrollsIt) {
    OpenBank();
    const auto inWindow = [&](QPoint point) { return Viewport()->mapTo(window.get(), point); };
    const QPoint below(50, Viewport()->height() + 5);
    QTest::mousePress(window->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      inWindow(RowPoint(3)));
    SendMove(below);
    EXPECT_TRUE(QTest::qWaitFor([] { return MainList.topRow == 2; }));
    QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, inWindow(below));
    EXPECT_EQ(UndoCount(), 0);
}

TEST_F(MainWindowTest, AClickOnTheSelectedVoiceChangesNothing) {
    OpenBank();
    ClickRow(4);
    EXPECT_EQ(MainList.selection, 4);
    ClickRow(4);
    EXPECT_EQ(MainList.selection, 4);
    EXPECT_EQ(UndoCount(), 0);
}

TEST_F(MainWindowTest, SelectingARowAllowsCopy) {
    OpenBank();
    ListSelect(MainList, NoRow);
    RefreshCopy();
    EXPECT_FALSE(CommandAllowed(CommandCopy));
    ClickRow(2);
    EXPECT_TRUE(CommandAllowed(CommandCopy));
}

TEST_F(MainWindowTest, ADisabledListTakesNoMouse) {
    OpenBank();
    ListEnable(MainList, false);
    const auto before = MainList.items;
    DragRow(5, 2);
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(MainList.selection, 0);
    ListEnable(MainList, true);
}

TEST_F(MainWindowTest, TheWheelMovesOneRowAMessage) {
    OpenBank();
    const auto wheel = [&](int delta) {
        QWheelEvent event(RowPoint(2), Viewport()->mapToGlobal(RowPoint(2)), QPoint(),
                          QPoint(0, delta), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(Viewport(), &event);
    };
    wheel(-120);
    wheel(-1200);
    EXPECT_EQ(MainList.topRow, 2);
    wheel(120);
    EXPECT_EQ(MainList.topRow, 1);
    wheel(0);
    EXPECT_EQ(MainList.topRow, 1);
    wheel(120);
    wheel(120);
    EXPECT_EQ(MainList.topRow, 0);
    for (int i = 0; i < 100; ++i) {
        wheel(-120);
    }
    EXPECT_EQ(MainList.topRow, 32 - MainList.visibleRows);
    EXPECT_EQ(list->verticalScrollBar()->value(), MainList.topRow);
}

TEST_F(MainWindowTest, TheScrollBarMovesTheList) {
    OpenBank();
    list->verticalScrollBar()->setValue(7);
    EXPECT_EQ(MainList.topRow, 7);
    EXPECT_EQ(list->RowAt(QPoint(10, 5)), 7);
}

TEST_F(MainWindowTest, KeysMoveTheSelection) {
    OpenBank();
    const auto key = [&](Qt::Key k) { QTest::keyClick(list, k); };
    EXPECT_EQ(MainList.selection, 0);
    key(Qt::Key_Down);
    EXPECT_EQ(MainList.selection, 1);
    key(Qt::Key_End);
    EXPECT_EQ(MainList.selection, 31);
    key(Qt::Key_Down);
    EXPECT_EQ(MainList.selection, 31);
    key(Qt::Key_PageUp);
    EXPECT_EQ(MainList.selection, 32 - MainList.visibleRows);
    key(Qt::Key_Home);
    EXPECT_EQ(MainList.selection, 0);
    key(Qt::Key_Up);
    EXPECT_EQ(MainList.selection, 0);
    key(Qt::Key_V); // every name begins with V
    EXPECT_EQ(MainList.selection, 1);
    key(Qt::Key_Q);
    EXPECT_EQ(MainList.selection, 1);
}

TEST_F(MainWindowTest, LettersTypedQuicklySpellAName) {
    OpenBank();
    QTest::keyClicks(list, "voice 27");
    EXPECT_EQ(MainList.selection, 26);
}

TEST_F(MainWindowTest, AScreenReaderFindsTheVoicesByName) {
    OpenBank();
    QAccessibleInterface *voices = QAccessible::queryAccessibleInterface(list);
    ASSERT_NE(voices, nullptr);
    EXPECT_EQ(voices->text(QAccessible::Name), "Voices");
    EXPECT_EQ(voices->role(), QAccessible::List);
    ASSERT_EQ(voices->childCount(), 32);
    EXPECT_EQ(voices->child(31)->text(QAccessible::Name), "Voice 32, VOICE 32, algorithm 32");
    EXPECT_TRUE(voices->child(0)->state().selected);
    EXPECT_FALSE(voices->child(1)->state().selected);
}

TEST_F(MainWindowTest, TheListKeepsTheKeyboardThroughAnOpen) {
    OpenBank();
    EXPECT_EQ(window->focusWidget(), list);
    QTest::keyClick(window->windowHandle(), Qt::Key_Down);
    EXPECT_EQ(MainList.selection, 1);
    ListEnable(MainList, false);
    ListEnable(MainList, true);
    QTest::keyClick(window->windowHandle(), Qt::Key_Down);
    EXPECT_EQ(MainList.selection, 2);
}

TEST_F(MainWindowTest, TheWheelOverTheScrollBarMovesOneRowToo) {
    OpenBank();
    QScrollBar *bar = list->verticalScrollBar();
    QWheelEvent event(QPointF(3, 50), bar->mapToGlobal(QPointF(3, 50)), QPoint(), QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(bar, &event);
    EXPECT_EQ(MainList.topRow, 1);
}

TEST_F(MainWindowTest, KeysAndPostedCommandsWaitWhileAVoiceIsHeld) {
    OpenBank();
    DragRow(4, 1);
    QTest::mousePress(Viewport(), Qt::LeftButton, Qt::NoModifier, RowPoint(3));
    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    PostCommand(CommandUndo);
    RunPosted();
    EXPECT_EQ(NameAt(1), "VOICE 05");
    QTest::mouseRelease(Viewport(), Qt::LeftButton, Qt::NoModifier, RowPoint(3));
    RunPosted();
    EXPECT_EQ(NameAt(1), "VOICE 02");
}

TEST_F(MainWindowTest, AReleaseThatWentElsewhereMovesNothingLater) {
    OpenBank();
    const auto before = MainList.items;
    QTest::mousePress(Viewport(), Qt::LeftButton, Qt::NoModifier, RowPoint(3));
    QEvent blocked(QEvent::WindowBlocked);
    QApplication::sendEvent(list, &blocked);
    QTest::mouseRelease(Viewport(), Qt::LeftButton, Qt::NoModifier, RowPoint(7));
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_FALSE(SomethingIsRunning());
}

TEST_F(MainWindowTest, ADragsMessageLetsNoPostedWorkIn) {
    MaxUndoLevel = 0;
    desktop.Expect({.text = "There has been an error initializing the Undo function.\n\nUndo will "
                            "be unavailable for this session of Tonewright.",
                    .buttons = {"Dismiss"},
                    .answer = ResultYes});
    UndoInit(window.get());
    OpenBank();
    desktop.Expect({.text = "No undo level could be created.",
                    .buttons = {"Dismiss"},
                    .answer = ResultYes,
                    .during = [](MessageRequest &) {
                        PostCommand(CommandClear);
                        QTest::qWait(20);
                        EXPECT_EQ(ListCount(MainList), 32);
                    }});
    MainListState.dirty = false;
    DragRow(5, 2);
    EXPECT_EQ(NameAt(2), "VOICE 06");
    MainListState.dirty = false;
    RunPosted();
    EXPECT_EQ(ListCount(MainList), 0);
}

TEST_F(MainWindowTest, NothingPostedRunsAfterTheWindowHasClosed) {
    OpenBank();
    PostCommand(CommandClear);
    window->close();
    RunPosted();
    EXPECT_EQ(ListCount(MainList), 32);
}

TEST_F(MainWindowTest, TheCloseButtonWaitsWhileSomethingRuns) {
    OpenBank();
    {
        const RunningMark running;
        window->close();
        EXPECT_TRUE(window->isVisible());
    }
    window->close();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MainWindowTest, ARowWithoutAVoiceIsDrawnAsNothing) {
    OpenBank();
    ListTakeVoice(MainList, 2);
    const QImage image = Viewport()->grab(list->RowRectangle(2)).toImage();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ASSERT_EQ(image.pixelColor(x, y), QColor(Qt::white)) << x << ' ' << y;
        }
    }
}

TEST_F(MainWindowTest, ADisabledListIsGreyOnWhite) {
    OpenBank();
    ListEnable(MainList, false);
    const QImage image = Viewport()->grab(list->RowRectangle(0)).toImage();
    EXPECT_EQ(image.pixelColor(200, 2), QColor(Qt::white)); // though the row is selected
    const QColor grey = window->palette().color(QPalette::Disabled, QPalette::Text);
    bool greyFound = false;
    for (int x = 0; x < 200; ++x) {
        for (int y = 0; y < image.height(); ++y) {
            greyFound = greyFound || image.pixelColor(x, y) == grey;
            EXPECT_NE(image.pixelColor(x, y), QColor(Qt::black));
        }
    }
    EXPECT_TRUE(greyFound);
    ListEnable(MainList, true);
}

TEST_F(MainWindowTest, TheSelectedRowOfADisabledListShowsItsPictureInTheHighlightColours) {
    OpenBank();
    ListSelect(MainList, 2);
    const QColor highlight = window->palette().color(QPalette::Active, QPalette::Highlight);
    const QImage enabled = Viewport()->grab(list->RowRectangle(2)).toImage();
    ListEnable(MainList, false);
    const QImage image = Viewport()->grab(list->RowRectangle(2)).toImage();
    const QImage other = Viewport()->grab(list->RowRectangle(3)).toImage();
    // The picture's rectangle: from 280 to 24 before the right edge, 4 from top and bottom.
    const QRect picture(QPoint(280, 4), QPoint(image.width() - 25, image.height() - 5));
    EXPECT_EQ(image.copy(picture), enabled.copy(picture));
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (!picture.contains(x, y)) {
                ASSERT_NE(image.pixelColor(x, y), highlight) << x << ' ' << y;
            }
            ASSERT_NE(other.pixelColor(x, y), highlight) << x << ' ' << y;
        }
    }
    ListEnable(MainList, true);
}

TEST_F(MainWindowTest, AnEmptyListShowsNoContextMenu) {
    EXPECT_FALSE(WithContextMenu(QPoint(20, 20), [](QMenu &) {}));
}

TEST_F(MainWindowTest, TheContextMenuCarriesTheVoicesName) {
    OpenBank();
    std::vector<std::string> texts;
    EXPECT_TRUE(WithContextMenu(RowPoint(2), [&](QMenu &menu) { texts = TextsOf(menu); }));
    EXPECT_EQ(texts,
              (std::vector<std::string>{
                  "Edit VOICE 03", "Upload VOICE 03 to synthesizer",
                  "Audition VOICE 03 on synthesizer", "-", "Cut VOICE 03", "Copy VOICE 03", "-",
                  "Add VOICE 03 to current database (Shift for all)",
                  "Insert a voice from the current database", "-", "Paste", "-", "Export VOICE 03",
                  "Import to replace VOICE 03", "-", "Move VOICE 03 up", "Move VOICE 03 down"}));
    EXPECT_EQ(MainList.selection, 0); // a press of the right button selects nothing
}

TEST_F(MainWindowTest, ThePlainContextMenuNamesNoVoice) {
    OpenBank();
    VerboseRightClickMenu = 0;
    std::vector<std::string> texts;
    EXPECT_TRUE(WithContextMenu(RowPoint(2), [&](QMenu &menu) { texts = TextsOf(menu); }));
    EXPECT_EQ(texts, (std::vector<std::string>{
                         "Edit", "Upload to synthesizer", "Audition", "-", "Cut", "Copy", "-",
                         "Add to current database", "Insert a voice from the current database", "-",
                         "Paste", "-", "Export", "Import", "-", "Move up", "Move down"}));
}

TEST_F(MainWindowTest, AnAmpersandInANameIsShownAsItIs) {
    OpenBank();
    auto payload = MutablePayloadOf(MainList.items[2]);
    payload[145] = '&';
    WithContextMenu(RowPoint(2), [&](QMenu &menu) {
        EXPECT_EQ(ActionOf(menu, CommandExport)->text(), "Export &&OICE 03");
    });
}

TEST_F(MainWindowTest, MoveUpIsNotOfferedOnTheFirstRowNorMoveDownOnTheLast) {
    OpenBank();
    EXPECT_TRUE(WithContextMenu(RowPoint(0), [](QMenu &menu) {
        EXPECT_EQ(ActionOf(menu, CommandMoveUp), nullptr);
        EXPECT_NE(ActionOf(menu, CommandMoveDown), nullptr);
    }));
    ListSetTopRow(MainList, 31);
    EXPECT_TRUE(WithContextMenu(RowPoint(31), [](QMenu &menu) {
        EXPECT_NE(ActionOf(menu, CommandMoveUp), nullptr);
        EXPECT_EQ(ActionOf(menu, CommandMoveDown), nullptr);
    }));
}

TEST_F(MainWindowTest, CutIsGreyInTheContextMenuAndNothingElseIs) {
    OpenBank();
    EXPECT_TRUE(WithContextMenu(RowPoint(4), [](QMenu &menu) {
        EXPECT_FALSE(ActionOf(menu, CommandCut)->isEnabled());
        for (const QAction *action : menu.actions()) {
            const int id = action->data().toInt();
            if (!action->isSeparator() && id != CommandCut && id != CommandPaste) {
                EXPECT_TRUE(action->isEnabled()) << action->text().toStdString();
            }
        }
    }));
}

TEST_F(MainWindowTest, AChoiceInTheContextMenuActsOnTheClickedRow) {
    OpenBank();
    WithContextMenu(RowPoint(4), [](QMenu &menu) {
        menu.setActiveAction(ActionOf(menu, CommandMoveUp));
        QTest::keyClick(&menu, Qt::Key_Return);
    });
    EXPECT_EQ(NameAt(3), "VOICE 05");
    EXPECT_EQ(NameAt(4), "VOICE 04");
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_EQ(MainListState.clickedIndex, -1);
}

TEST_F(MainWindowTest, ARightClickOutsideAnyRowLetsTheCommandsActOnTheSelection) {
    OpenBank();
    // The list shows whole rows only, so a place beside the rows needs a list that is not full.
    while (ListCount(MainList) > 3) {
        ListDelete(MainList, 3);
    }
    ListSelect(MainList, 1);
    const std::string path = home.File("out.sy1");
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Export, .answer = path});
    EXPECT_TRUE(WithContextMenu(QPoint(30, Viewport()->height() - 10), [](QMenu &menu) {
        EXPECT_EQ(MainListState.clickedIndex, -1);
        EXPECT_EQ(ActionOf(menu, CommandExport)->text(), "Export");
        menu.setActiveAction(ActionOf(menu, CommandExport));
        QTest::keyClick(&menu, Qt::Key_Return);
    }));
    EXPECT_EQ(ReadTestText(path).substr(6 + 145, 8), "VOICE 02");
}

TEST_F(MainWindowTest, ShiftF10OpensTheMenuOfTheSelectedRowBesideIt) {
    OpenBank();
    const QRect screen = window->screen()->availableGeometry();
    const auto press = [&] { QTest::keyClick(list, Qt::Key_F10, Qt::ShiftModifier); };
    const auto area = [&](int row) {
        const QRect shown = list->RowRectangle(row);
        return QRect(Viewport()->mapToGlobal(shown.topLeft()), shown.size());
    };
    window->move(0, 0);
    ListSelect(MainList, 1);
    EXPECT_TRUE(WithContextMenuOf(press, [&](const QMenu &menu) {
        EXPECT_EQ(MainListState.clickedIndex, 1);
        EXPECT_EQ(menu.geometry().top(), area(1).bottom() + 1);
        EXPECT_EQ(menu.actions().constFirst()->text(), "Edit VOICE 02");
    }));
    // Above the row where there is no room below it.
    int row = 1;
    while (area(row + 1).bottom() < screen.bottom()) {
        ++row;
    }
    ListSelect(MainList, row);
    EXPECT_TRUE(WithContextMenuOf(press, [&](const QMenu &menu) {
        EXPECT_EQ(MainListState.clickedIndex, row);
        EXPECT_EQ(menu.geometry().bottom(), area(row).top() - 1);
        EXPECT_GE(menu.geometry().left(), area(row).center().x());
    }));
}

TEST_F(MainWindowTest, AChoiceInTheMenuOfTheKeyboardActsOnTheSelectedRow) {
    OpenBank();
    ListSelect(MainList, 4);
    MainListState.clickedIndex = 9; // from a menu that was closed without a choice
    EXPECT_TRUE(WithContextMenuOf([&] { QTest::keyClick(list, Qt::Key_F10, Qt::ShiftModifier); },
                                  [](QMenu &menu) {
                                      menu.setActiveAction(ActionOf(menu, CommandMoveUp));
                                      QTest::keyClick(&menu, Qt::Key_Return);
                                  }));
    EXPECT_EQ(NameAt(3), "VOICE 05");
    EXPECT_EQ(MainListState.clickedIndex, -1);
}

TEST_F(MainWindowTest, DroppedVoicesFillTheRowsDownwardFromTheSelection) {
    OpenBank();
    ClickRow(3);
    const auto voice = TestVoiceFile();
    const QStringList paths = {QString::fromStdString(home.Write("a.sy1", voice)),
                               QString::fromStdString(home.WriteText("note.txt", "no voice")),
                               QString::fromStdString(home.Write("b.SY1", voice))};
    DropPaths(paths);
    EXPECT_EQ(NameAt(3), "VOICE 04"); // the drop is queued
    RunPosted();
    EXPECT_EQ(Names(2, 6), (std::vector<std::string>{"VOICE 03", "E.PIANO 1x", "E.PIANO 1x",
                                                     "VOICE 06", "VOICE 07"}));
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(desktop.sounds.size(), 1u);
}

TEST_F(MainWindowTest, ADropNeverAnswersMove) {
    OpenBank();
    ClickRow(3);
    const QStringList paths = {QString::fromStdString(home.Write("a.sy1", TestVoiceFile()))};
    EXPECT_EQ(DropPaths(paths, Qt::CopyAction), Qt::CopyAction);
    EXPECT_EQ(DropPaths(paths, Qt::CopyAction | Qt::MoveAction), Qt::CopyAction);
    // Shift proposes a move.
    EXPECT_EQ(DropPaths(paths, Qt::CopyAction | Qt::MoveAction, Qt::ShiftModifier), Qt::CopyAction);
    EXPECT_EQ(DropPaths(paths, Qt::MoveAction), Qt::IgnoreAction); // the only one that it offers
    RunPosted();
    EXPECT_EQ(NameAt(3), "E.PIANO 1x");
    EXPECT_EQ(UndoCount(), 3); // of four drops, as many levels as are kept
}

TEST_F(MainWindowTest, ADroppedBankFileChangesNothingButCostsALevel) {
    OpenBank();
    const auto before = MainList.items;
    DropPaths({QString::fromStdString(home.Write("more.syx", TestBank()))});
    RunPosted();
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(MainWindowTest, ThreeVoicesDroppedOnTheLastRowRunPastTheEndWithoutARefresh) {
    OpenBank();
    ListSelect(MainList, 31);
    const auto voice = TestVoiceFile();
    DropPaths({QString::fromStdString(home.Write("a.sy1", voice)),
               QString::fromStdString(home.Write("b.sy1", voice)),
               QString::fromStdString(home.Write("c.sy1", voice))});
    RunPosted();
    EXPECT_EQ(NameAt(31), "E.PIANO 1x");
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(MainWindowTest, TheCloseButtonAsksForADirtyDocument) {
    OpenBank();
    MainListState.dirty = true;
    desktop.ExpectYesNoCancel(
        "Your current document has not been saved. Do you wish to save it?\n\nClick on Yes to save "
        "it, or click on No to abandon it.\n\nClick on Cancel to return to the main window of "
        "Tonewright.",
        ResultCancel);
    window->close();
    EXPECT_TRUE(window->isVisible());
}

TEST_F(MainWindowTest, ClosingWritesTheSettings) {
    OpenBank();
    std::filesystem::create_directory(home.path / "Quillbrook");
    window->close();
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(home.Holds("Quillbrook/Tonewright 17.ini"));
}

TEST_F(MainWindowTest, AToolForwardsItsCommandByPosting) {
    OpenBank();
    DragRow(4, 1);
    QAbstractButton *undo = nullptr;
    for (auto *button : window->Tools()->findChildren<QAbstractButton *>()) {
        if (button->accessibleDescription() == "Undoes changes to your current voice list") {
            undo = button;
        }
    }
    ASSERT_NE(undo, nullptr);
    EXPECT_TRUE(undo->isEnabled());
    QTest::mouseClick(undo, Qt::LeftButton);
    EXPECT_EQ(NameAt(1), "VOICE 05");
    RunPosted();
    EXPECT_EQ(NameAt(1), "VOICE 02");
    EXPECT_FALSE(undo->isEnabled());
}

TEST_F(MainWindowTest, AToolIsLitOnlyWhileTheMouseIsOverItAfterABox) {
    OpenBank();
    const auto *tool = window->Tools()->findChild<QWidget *>("control_55");
    const auto moveTo = [&](const QWidget *widget) {
        const QPoint point = widget->mapTo(window.get(), widget->rect().center());
        QCursor::setPos(window->mapToGlobal(point));
        QTest::mouseMove(window->windowHandle(), point);
        RunPosted();
    };
    const auto picture = [&] { return window->Tools()->grab(tool->geometry()).toImage(); };
    window->move(0, 0);
    moveTo(Viewport());
    const QImage unlit = picture();
    moveTo(tool);
    const QImage lit = picture();
    EXPECT_NE(lit, unlit);

    // A box that keeps what the user does from the window.
    ShowBusyBoxWindow(window.get(), "Working");
    moveTo(Viewport());
    CloseBusyBoxWindow();
    EXPECT_EQ(picture(), unlit);

    moveTo(tool);
    EXPECT_EQ(picture(), lit);
    EXPECT_TRUE(
        WithBox([&] { PostCommand(CommandSettings); }, [&](QDialog &) { moveTo(Viewport()); }));
    EXPECT_EQ(picture(), unlit);
}

TEST_F(MainWindowTest, AToolShowsItsTipBelowItWhileTheMouseRests) {
    RegisterToolTipClass();
    MakeWindow();
    const auto *tool = window->Tools()->findChild<QWidget *>("control_55");
    const auto *tip = tool->findChild<QWidget *>("TonewrightTip");
    ASSERT_NE(tip, nullptr);
    const QPoint point = tool->mapTo(window.get(), tool->rect().center());
    QCursor::setPos(window->mapToGlobal(point));
    QTest::mouseMove(window->windowHandle(), point);
    EXPECT_TRUE(QTest::qWaitFor([&] { return tip->isVisible(); }));
    EXPECT_EQ(tip->accessibleName(), "Allows Tonewright's options to be configured");
    EXPECT_EQ(tip->pos(), tool->mapToGlobal(QPoint(12, tool->height() + 1)));
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_FALSE(tip->isVisible());
}

TEST_F(MainWindowTest, TheToolsStandInTheirOrderWithTheirTips) {
    std::vector<std::pair<int, std::string>> tools;
    for (auto *button : window->Tools()->findChildren<QAbstractButton *>()) {
        tools.emplace_back(button->x(), button->accessibleDescription().toStdString());
    }
    std::sort(tools.begin(), tools.end());
    std::vector<std::string> tips;
    for (const auto &[x, tip] : tools) {
        tips.push_back(tip);
    }
    EXPECT_EQ(tips, (std::vector<std::string>{
                        "Loads a document from disk", "Saves the document to disk",
                        "Uploads the current voice list to your synthesizer",
                        "Download your synthesizer's current voice list",
                        "Undoes changes to your current voice list", "Displays the manual document",
                        "Allows Tonewright's options to be configured", "Exits Tonewright"}));
    EXPECT_EQ(tools[0].first, 8);
    EXPECT_EQ(tools[1].first, 8 + 48 + 4);
    EXPECT_EQ(tools[5].first - tools[4].first, 48 + 4 + 16);
    EXPECT_EQ(window->Tools()->height(), 56);
    EXPECT_EQ(window->Tools()->width(), window->width());
}

TEST_F(MainWindowTest, TheListLeavesSixteenPixelsOnItsSides) {
    EXPECT_EQ(list->x(), 16);
    EXPECT_EQ(list->width(), window->width() - 32);
    EXPECT_EQ(list->y(), window->Tools()->geometry().bottom() + 1 + 16);
    // At the foot there is what whole rows leave over, too.
    const int below =
        window->height() - StatusBarStateOf(window.get())->height - (list->geometry().bottom() + 1);
    EXPECT_GE(below, 16);
    EXPECT_LT(below, 16 + MainList.itemHeight);
    EXPECT_EQ((list->height() - 2 * list->frameWidth()) % MainList.itemHeight, 0);
}

TEST_F(MainWindowTest, TheBackgroundPictureStandsInTheLowerRightCorner) {
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(Qt::magenta);
    ASSERT_TRUE(picture.save(QString::fromStdString(home.File("Tonewright Background.bmp"))));
    MakeWindow();
    QPixmap grabbed(window->size());
    window->render(&grabbed, QPoint(), QRegion(), QWidget::DrawWindowBackground);
    const QImage image = grabbed.toImage();
    EXPECT_EQ(image.pixelColor(image.width() - 1, image.height() - 1), QColor(Qt::magenta));
    EXPECT_EQ(image.pixelColor(image.width() - 40, image.height() - 30), QColor(Qt::magenta));
    EXPECT_NE(image.pixelColor(image.width() - 41, image.height() - 30), QColor(Qt::magenta));
}

TEST_F(MainWindowTest, TheMiddleButtonIsLeftToTheListWhenItsSettingIsOff) {
    OpenBank();
    MiddleButtonAudition = 0;
    ClickRow(3, Qt::MiddleButton);
    EXPECT_EQ(MainListState.clickedIndex, -1);
    MiddleButtonAudition = 1;
    ClickRow(3, Qt::MiddleButton);
    EXPECT_EQ(MainListState.clickedIndex, 3);
}

TEST_F(MainWindowTest, SettingsThatLieDoNotKeepTheWindowFromOpening) {
    std::filesystem::create_directory(home.path / "Quillbrook");
    std::string file = "[Tonewright]\nMaxUndoLevel = 2000000000\nFileTipDelay = 2147483648\n"
                       "FileWindowX = 2147483648\nRememberFileHistorySize = 4294967295\n"
                       "SelectKeyboardName = ";
    file += std::string(1 << 20, 'x') + "\n";
    home.WriteText("Quillbrook/Tonewright 17.ini", file);
    desktop.ExpectMessage("There has been an error initializing the Undo function.\n\nUndo will be "
                          "unavailable for this session of Tonewright.");
    MakeWindow();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(SelectKeyboardName.size(), 260u - std::string("SelectKeyboardName = ").size() - 1);
    OpenBank();
    desktop.ExpectMessage("No undo level could be created.");
    DragRow(3, 1);
    EXPECT_EQ(NameAt(1), "VOICE 04");
}

} // namespace
} // namespace tonewright
