// The archive window as a user has it: mouse, keyboard, and an archive of real files.
#include "extras/view/archive_window.h"

#include "common/folders.h"
#include "extras/archive_store.h"
#include "extras/archive_update.h"
#include "extras/list_access.h"
#include "extras/voice_parcel.h"
#include "support/archive_contents.h"
#include "support/bank_bytes.h"
#include "support/mouse_buttons.h"
#include "support/reface_bytes.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDrag>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <filesystem>

namespace tonewright {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

class ArchiveWindowView : public testing::Test {
protected:
    void SetUp() override {
        PlatformFolders = {.applicationData = home.path.string(),
                           .documents = home.path.string(),
                           .pictures = home.path.string(),
                           .programs = home.path.string()};
        MakeProgramFolders();
        fs::create_directory(files.path / "banks");
        WriteTestFile(files.File("banks/first.syx"), TestBank());
        TheListAccess = {
            .Post = [this](std::function<void()> work) { posted.push_back(std::move(work)); },
            .RowCount = [] { return 32; },
            .SelectedRow = [] { return 5; },
            .PutVoices =
                [this](QWidget *owner, int row, std::span<const KeptVoice> voices,
                       const std::string &from) {
                    EXPECT_EQ(owner, window);
                    EXPECT_EQ(row, 5);
                    put.push_back(NamesOf(voices));
                    source = from;
                    return static_cast<int>(voices.size());
                },
            .NewBank =
                [this](QWidget *owner, std::span<const KeptVoice> voices, const std::string &from) {
                    EXPECT_EQ(owner, window);
                    banks.push_back(NamesOf(voices));
                    source = from;
                    return true;
                },
            .Audition =
                [this](QWidget *owner, const KeptVoice &voice) {
                    EXPECT_EQ(owner, window);
                    played.push_back(NameOfVoice(voice.Voice()));
                    return true;
                }};
    }
    void TearDown() override {
        DropArchiveWindow();
        TheListAccess = {};
    }

    std::string Banks() const { return ArchiveFolderPath(files.File("banks")); }
    static Strings NamesOf(std::span<const KeptVoice> voices) {
        Strings names;
        for (const KeptVoice &voice : voices) {
            names.push_back(NameOfVoice(voice.Voice()));
        }
        return names;
    }

    // The archive as a former run of the program has left it.
    void MakeArchive() {
        ArchiveError error;
        const auto store = OpenArchive(ArchivePath(), ArchiveUse::Write, error);
        ASSERT_TRUE(store) << error.text;
        const std::string folder = Banks();
        AddToArchive(*store, {&folder, 1}, {}, error);
        ASSERT_FALSE(error) << error.text;
    }
    void Open() {
        ShowArchiveWindow();
        for (QWidget *one : QApplication::topLevelWidgets()) {
            if (one->objectName() == "ArchiveWindow") {
                window = qobject_cast<QDialog *>(one);
            }
        }
        ASSERT_NE(window, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
        table = window->findChild<QTableView *>("voices");
        search = window->findChild<QLineEdit *>("search");
    }
    void OpenFilled() {
        MakeArchive();
        Open();
        ASSERT_TRUE(WaitForRows());
    }
    // Another program adds a folder with a bank of voices of its own.
    void AddBankFromElsewhere() {
        fs::create_directory(files.path / "other");
        WriteTestFile(files.File("other/one.syx"), NumberedBank(7));
        ArchiveError error;
        const auto store = OpenArchive(ArchivePath(), ArchiveUse::Write, error);
        ASSERT_TRUE(store) << error.text;
        const std::string other = files.File("other");
        AddToArchive(*store, {&other, 1}, {}, error);
        ASSERT_FALSE(error) << error.text;
    }
    bool WaitForRows() {
        return QTest::qWaitFor([this] { return Rows() > 0; });
    }

    int Rows() const { return table->model()->rowCount(); }
    std::string CellAt(const QTableView &view, int row, int column = 0) const {
        return view.model()->index(row, column).data().toString().toStdString();
    }
    Strings Names() const {
        Strings names;
        for (int row = 0; row < Rows(); ++row) {
            names.push_back(CellAt(*table, row));
        }
        return names;
    }
    template <typename Widget> Widget *Part(const char *name) const {
        return window->findChild<Widget *>(name);
    }
    QPushButton *Button(const char *name) const { return Part<QPushButton>(name); }
    std::string Label(const char *name) const { return Part<QLabel>(name)->text().toStdString(); }
    void Click(QWidget *widget) { QTest::mouseClick(widget, Qt::LeftButton); }
    QPoint PointOf(int row) const {
        return table->visualRect(table->model()->index(row, 0)).center();
    }
    void ClickRow(int row, Qt::MouseButton button = Qt::LeftButton,
                  Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QTest::mouseClick(table->viewport(), button, keys, PointOf(row));
    }
    void Key(int key, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), keys);
    }
    void Type(const char *text) { QTest::keyClicks(QApplication::focusWidget(), text); }
    // What waits behind a running command.
    void RunPosted() {
        for (const auto &work : std::exchange(posted, {})) {
            work();
        }
    }
    void ExpectMessageAtPosted(const std::string &text) {
        desktop.ExpectMessage(text);
        RunPosted();
        desktop.ExpectNothingLeft();
    }

    TempFolder home, files;
    ScriptedDesktop desktop;
    QDialog *window = nullptr;
    QTableView *table = nullptr;
    QLineEdit *search = nullptr;
    std::vector<std::function<void()>> posted;
    std::vector<Strings> put, banks;
    Strings played;
    std::string source;
};

TEST_F(ArchiveWindowView, WithoutAFolderItSaysWhatToDo) {
    Open();
    EXPECT_TRUE(search->hasFocus());
    ASSERT_TRUE(QTest::qWaitFor([this] { return Label("empty").starts_with("No folder yet."); }));
    EXPECT_TRUE(Part<QLabel>("empty")->isVisible());
    EXPECT_FALSE(table->isVisible());
    EXPECT_TRUE(Button("add")->isEnabled());
    EXPECT_FALSE(Button("update")->isEnabled());
    EXPECT_FALSE(Button("forget")->isEnabled());
    EXPECT_FALSE(Button("put")->isEnabled());
    EXPECT_FALSE(Part<QProgressBar>("progress")->isVisible());
    EXPECT_FALSE(Button("cancel")->isVisible());
    Key(Qt::Key_Down); // there are no rows
    EXPECT_TRUE(search->hasFocus());
}

TEST_F(ArchiveWindowView, AFolderThatIsAddedIsReadWhileTheWindowGoesOn) {
    Open();
    ASSERT_TRUE(QTest::qWaitFor([this] { return Label("empty").starts_with("No folder yet."); }));
    Click(Button("add"));
    desktop.Expect(ExpectedFileDialog{
        .kind = FileDialogKind::Folder, .answer = Banks(), .start = home.path.string()});
    RunPosted();
    EXPECT_TRUE(Part<QProgressBar>("progress")->isVisible());
    EXPECT_TRUE(Button("cancel")->isVisible());
    EXPECT_FALSE(Button("add")->isEnabled());
    EXPECT_EQ(Label("empty"), "Looking through the folder...");
    Type("voice 1");
    EXPECT_EQ(search->text(), "voice 1");
    ASSERT_TRUE(WaitForRows());
    EXPECT_TRUE(QTest::qWaitFor([this] { return Button("add")->isEnabled(); }));
    EXPECT_EQ(Rows(), 13);
    EXPECT_TRUE(table->isVisible());
    EXPECT_FALSE(Part<QProgressBar>("progress")->isVisible());
    EXPECT_FALSE(Button("cancel")->isVisible());
    EXPECT_TRUE(Button("update")->isEnabled());
    EXPECT_EQ(Label("progressText"), "1 file with 32 voices: 1 new.");
}

TEST_F(ArchiveWindowView, WhoChoosesNoFolderAddsNone) {
    Open();
    Click(Button("add"));
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Folder, .answer = std::nullopt});
    RunPosted();
    EXPECT_FALSE(Part<QProgressBar>("progress")->isVisible());
    EXPECT_FALSE(fs::exists(ArchivePath()));
}

TEST_F(ArchiveWindowView, TheRowsFollowEachLetter) {
    OpenFilled();
    EXPECT_EQ(Rows(), 32);
    EXPECT_EQ(Label("count"), "32 voices, found at 32 places");
    Type("v");
    EXPECT_EQ(Rows(), 32);
    Type("oice 3");
    EXPECT_EQ(Names(),
              (Strings{"VOICE 03", "VOICE 13", "VOICE 23", "VOICE 30", "VOICE 31", "VOICE 32"}));
    EXPECT_EQ(Label("count"), "6 of 32 voices, found at 32 places");
    Type("x");
    EXPECT_EQ(Rows(), 0);
    EXPECT_EQ(Label("empty"), "No voice is called so. Take away letters, or a filter.");
    EXPECT_TRUE(Part<QLabel>("empty")->isVisible());
    Key(Qt::Key_Backspace);
    EXPECT_EQ(Rows(), 6);
    EXPECT_TRUE(table->isVisible());
}

TEST_F(ArchiveWindowView, TheKeyboardGoesFromTheSearchToTheRowsAndBack) {
    OpenFilled();
    Key(Qt::Key_Down);
    EXPECT_TRUE(table->hasFocus());
    EXPECT_EQ(table->currentIndex().row(), 0);
    EXPECT_TRUE(table->selectionModel()->isRowSelected(0));
    Key(Qt::Key_Down);
    EXPECT_EQ(table->currentIndex().row(), 1);
    Type("e");
    EXPECT_TRUE(search->hasFocus());
    Type(" 2");
    EXPECT_EQ(search->text(), "e 2");
    EXPECT_EQ(Rows(), 13);
    Key(Qt::Key_Return);
    EXPECT_TRUE(table->hasFocus());
    Key(Qt::Key_Home);
    Key(Qt::Key_Up);
    EXPECT_TRUE(search->hasFocus());
    Key(Qt::Key_Down);
    Key(Qt::Key_Backspace);
    EXPECT_TRUE(search->hasFocus());
    EXPECT_EQ(search->text(), "e ");
    Key(Qt::Key_Down);
    Key(Qt::Key_Escape);
    EXPECT_EQ(search->text(), "");
    EXPECT_TRUE(search->hasFocus());
    EXPECT_TRUE(window->isVisible());
    Key(Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(ArchiveWindowView, SelectedVoicesStaySelectedWhereTheyAreStillFound) {
    OpenFilled();
    ClickRow(2);
    ClickRow(12, Qt::LeftButton, Qt::ControlModifier);
    search->setFocus();
    Type("3");
    EXPECT_EQ(Names()[0], "VOICE 03");
    EXPECT_EQ(Names()[1], "VOICE 13");
    EXPECT_TRUE(table->selectionModel()->isRowSelected(0));
    EXPECT_TRUE(table->selectionModel()->isRowSelected(1));
    EXPECT_FALSE(table->selectionModel()->isRowSelected(2));
    EXPECT_TRUE(search->hasFocus());
    EXPECT_EQ(Label("count"), "6 of 32 voices, found at 32 places; 2 selected");
    Type("2");
    EXPECT_EQ(Names(), Strings{"VOICE 32"});
    EXPECT_FALSE(table->selectionModel()->hasSelection());
}

TEST_F(ArchiveWindowView, AClickOnAHeaderSortsAndASecondOneTurnsTheOrder) {
    OpenFilled();
    QHeaderView *header = table->horizontalHeader();
    const auto click = [&](int column) {
        const int x = header->sectionViewportPosition(column) + header->sectionSize(column) / 2;
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                          {x, header->height() / 2});
    };
    EXPECT_EQ(header->sortIndicatorSection(), 0);
    click(2);
    EXPECT_EQ(header->sortIndicatorSection(), 2);
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::AscendingOrder);
    EXPECT_EQ(CellAt(*table, 0, 2), "1");
    EXPECT_EQ(CellAt(*table, 31, 2), "32");
    click(2);
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
    EXPECT_EQ(CellAt(*table, 0, 2), "32");
    // By keyboard, too.
    table->setFocus();
    Key(Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(header->sortIndicatorSection(), 0);
    EXPECT_EQ(Names()[0], "VOICE 01");
    Key(Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(Names()[0], "VOICE 32");
    Key(Qt::Key_7, Qt::ControlModifier); // no such column
    EXPECT_EQ(Names()[0], "VOICE 32");
    EXPECT_EQ(search->text(), "");
}

TEST_F(ArchiveWindowView, TheFiltersLimitTheRows) {
    fs::create_directory(files.path / "banks/below");
    WriteTestFile(files.File("banks/below/reface.srx"), TestRefaceBank(2));
    WriteTestFile(files.File("banks/below/again.syx"), TestBank());
    OpenFilled();
    EXPECT_EQ(Rows(), 34);
    Part<QComboBox>("instrument")->setCurrentText("reface DX");
    EXPECT_EQ(Rows(), 2);
    auto *algorithm = Part<QComboBox>("algorithm");
    EXPECT_EQ(algorithm->count(), 13);
    Part<QComboBox>("instrument")->setCurrentText("All instruments");
    EXPECT_EQ(algorithm->count(), 33);
    algorithm->setCurrentText("Algorithm 20");
    EXPECT_EQ(Names(), Strings{"VOICE 20"});
    Part<QComboBox>("instrument")->setCurrentText("reface DX"); // which has no such algorithm
    EXPECT_EQ(algorithm->currentText(), "All algorithms");
    EXPECT_EQ(Rows(), 2);
    Part<QComboBox>("instrument")->setCurrentIndex(0);
    Click(Part<QCheckBox>("repeated"));
    EXPECT_EQ(Rows(), 32);
    Part<QCheckBox>("repeated")->setChecked(false);
    auto *folder = Part<QComboBox>("folder");
    ASSERT_EQ(folder->count(), 3);
    EXPECT_EQ(folder->itemText(1).toStdString(), Banks());
    EXPECT_EQ(folder->itemText(2), "    below");
    folder->setCurrentIndex(2);
    EXPECT_EQ(Rows(), 34);
    EXPECT_EQ(CellAt(*table, 2, 4), Banks() + "/below/again.syx");
}

TEST_F(ArchiveWindowView, ReturnAndADoubleClickPutTheSelectedVoicesIntoTheList) {
    OpenFilled();
    ClickRow(3);
    Key(Qt::Key_Return);
    EXPECT_TRUE(put.empty()); // not before what runs has ended
    RunPosted();
    EXPECT_EQ(put, std::vector<Strings>{{"VOICE 04"}});
    EXPECT_EQ(source, Banks() + "/first.syx");
    EXPECT_EQ(Label("progressText"), "1 voice put into the list.");
    put.clear();
    ClickRow(5, Qt::LeftButton, Qt::ShiftModifier);
    ClickRow(7, Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(Label("count"), "32 voices, found at 32 places; 4 selected");
    Key(Qt::Key_Enter);
    RunPosted();
    EXPECT_EQ(put, (std::vector<Strings>{{"VOICE 04", "VOICE 05", "VOICE 06", "VOICE 08"}}));
    put.clear();
    ClickRow(0);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(0));
    RunPosted();
    EXPECT_EQ(put, std::vector<Strings>{{"VOICE 01"}});
    put.clear();
    Click(Button("put"));
    RunPosted();
    EXPECT_EQ(put, std::vector<Strings>{{"VOICE 01"}});
    EXPECT_EQ(window->isVisible(), true);
}

TEST_F(ArchiveWindowView, WhatWaitedIsDroppedWhenTheWindowHasGone) {
    OpenFilled();
    ClickRow(3);
    Key(Qt::Key_Return);
    window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    RunPosted();
    EXPECT_TRUE(put.empty());
}

TEST_F(ArchiveWindowView, MoreVoicesThanABankAreRefusedInWords) {
    WriteTestFile(files.File("banks/more.syx"), NumberedBank(1));
    WriteTestFile(files.File("banks/most.syx"), NumberedBank(2));
    OpenFilled();
    table->setFocus();
    table->selectAll();
    EXPECT_EQ(Label("count"), "96 voices, found at 96 places; 96 selected");
    Key(Qt::Key_Return);
    ExpectMessageAtPosted("A bank holds 32 voices, and 96 are selected. Select fewer of them.");
    Click(Button("newBank"));
    ExpectMessageAtPosted("A bank holds 32 voices, and 96 are selected. Select fewer of them.");
    EXPECT_TRUE(put.empty());
    EXPECT_TRUE(banks.empty());
}

TEST_F(ArchiveWindowView, APathThatLooksLikeMarkUpIsShownAsItIs) {
    fs::create_directory(files.path / "banks/<b>x");
    WriteTestFile(files.File("banks/<b>x/first.syx"), NumberedBank(4));
    fs::remove(files.File("banks/first.syx"));
    OpenFilled();
    const QString tip = table->model()->index(0, 4).data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(tip.contains("&lt;b&gt;x")) << tip.toStdString();
    ClickRow(0);
    fs::remove(files.File("banks/<b>x/first.syx"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !Label("similarText").empty(); }));
    for (const char *name : {"empty", "similarText", "progressText", "title"}) {
        EXPECT_EQ(Part<QLabel>(name)->textFormat(), Qt::PlainText) << name;
    }
}

TEST_F(ArchiveWindowView, ANewBankIsMadeOfTheSelectedVoices) {
    OpenFilled();
    ClickRow(8);
    ClickRow(9, Qt::LeftButton, Qt::ShiftModifier);
    Click(Button("newBank"));
    RunPosted();
    EXPECT_EQ(banks, (std::vector<Strings>{{"VOICE 09", "VOICE 10"}}));
    EXPECT_EQ(source, Banks() + "/first.syx");
}

TEST_F(ArchiveWindowView, TheMiddleButtonAndTheSpaceBarPlayAVoice) {
    OpenFilled();
    ClickRow(2);
    ClickRow(6, Qt::MiddleButton);
    RunPosted();
    EXPECT_EQ(played, Strings{"VOICE 07"});
    EXPECT_EQ(table->currentIndex().row(), 2);
    Key(Qt::Key_Space);
    RunPosted();
    Click(Button("audition"));
    RunPosted();
    EXPECT_EQ(played, (Strings{"VOICE 07", "VOICE 03", "VOICE 03"}));
    QTest::mouseClick(table->viewport(), Qt::MiddleButton, Qt::NoModifier,
                      {10, table->viewport()->height() - 2});
    RunPosted();
    search->setFocus();
    Type("e 4");
    EXPECT_EQ(search->text(), "e 4"); // there a blank is a blank
}

TEST_F(ArchiveWindowView, AVoiceThatIsNotAnyMoreWhereItWasIsTold) {
    OpenFilled();
    fs::remove(files.File("banks/first.syx"));
    ClickRow(0);
    Key(Qt::Key_Return);
    ExpectMessageAtPosted("The voice \"VOICE 01\" is not any more where it was found:\n\n" +
                          Banks() + "/first.syx\n\nUpdate the archive, and look for it again.");
}

TEST_F(ArchiveWindowView, ThePaneShowsWhereTheVoiceStandsAndWhatIsLikeIt) {
    WriteTestFile(files.File("banks/second.syx"), TestBank());
    OpenFilled();
    auto *places = Part<QTableView>("places"), *similar = Part<QTableView>("similar");
    EXPECT_TRUE(Label("about").starts_with("Go to a voice"));
    ClickRow(4);
    ASSERT_TRUE(QTest::qWaitFor([&] { return similar->model()->rowCount() == 31; }));
    EXPECT_EQ(Label("title"), "VOICE 05");
    EXPECT_TRUE(Label("about").starts_with("DX7, algorithm 5, ")) << Label("about");
    ASSERT_EQ(places->model()->rowCount(), 2);
    EXPECT_EQ(CellAt(*places, 1), Banks() + "/second.syx");
    EXPECT_EQ(CellAt(*places, 1, 1), "5");
    EXPECT_TRUE(similar->isVisible());
    // Its rows are voices like others.
    similar->setFocus();
    similar->selectRow(0);
    const std::string name = CellAt(*similar, 0);
    Key(Qt::Key_Return);
    RunPosted();
    EXPECT_EQ(put, std::vector<Strings>{{name}});
    Click(Button("audition"));
    RunPosted();
    EXPECT_EQ(played, Strings{name});
}

TEST_F(ArchiveWindowView, RowsAreDraggedAsVoices) {
    OpenFilled();
    ClickRow(2);
    ClickRow(3, Qt::LeftButton, Qt::ShiftModifier);
    std::optional<std::vector<KeptVoice>> dragged;
    // While it is dragged, or as soon as that is over: not every platform waits.
    const auto look = [&] {
        if (const auto *drag = table->findChild<QDrag *>()) {
            const QByteArray bytes = drag->mimeData()->data(VoiceParcelType);
            dragged = UnpackVoices(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
            QDrag::cancel();
        }
    };
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, look);
    timer.start(5);
    QTest::mousePress(table->viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(2));
    for (const int distance : {30, 60}) {
        const QPoint point = PointOf(2) + QPoint(distance, 5);
        QMouseEvent move(QEvent::MouseMove, point, table->viewport()->mapToGlobal(point),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(table->viewport(), &move);
    }
    look();
    ReleaseMouseButtons(table->viewport());
    ASSERT_TRUE(dragged);
    EXPECT_EQ(NamesOf(*dragged), (Strings{"VOICE 03", "VOICE 04"}));
}

TEST_F(ArchiveWindowView, TheMenuOffersWhatButtonsAndHeadersDo) {
    OpenFilled();
    ClickRow(1);
    Key(Qt::Key_F10, Qt::ShiftModifier);
    QMenu *menu = window->findChild<QMenu *>();
    ASSERT_NE(menu, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([menu] { return menu->isVisible(); }));
    Strings texts;
    for (const QAction *action : menu->actions()) {
        texts.push_back(action->isSeparator() ? "-" : action->text().toStdString());
    }
    EXPECT_EQ(texts, (Strings{"&Put into the list", "Audi&tion", "&New bank from these", "-",
                              "Show its &file in the file manager", "&Sort by"}));
    menu->actions().back()->menu()->actions()[2]->trigger();
    EXPECT_EQ(table->horizontalHeader()->sortIndicatorSection(), 2);
    menu->actions().front()->trigger();
    menu->close();
    RunPosted();
    EXPECT_EQ(put, std::vector<Strings>{{"VOICE 02"}});
}

TEST_F(ArchiveWindowView, AFolderIsForgottenAfterAQuestion) {
    OpenFilled();
    const auto choose = [this] {
        Click(Button("forget"));
        QMenu *menu = window->findChild<QMenu *>();
        ASSERT_NE(menu, nullptr);
        ASSERT_EQ(menu->actions().size(), 1);
        EXPECT_EQ(menu->actions()[0]->text().toStdString(), Banks());
        menu->actions()[0]->trigger();
        menu->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    const std::string question =
        "Shall the archive forget this folder?\n\n" + Banks() + "\n\nIts files stay as they are.";
    choose();
    desktop.ExpectYesNo(question, ResultNo);
    RunPosted();
    EXPECT_EQ(Rows(), 32);
    EXPECT_FALSE(Button("cancel")->isVisible());
    choose();
    desktop.ExpectYesNo(question, ResultYes);
    RunPosted();
    ASSERT_TRUE(QTest::qWaitFor([this] { return Rows() == 0; }));
    EXPECT_TRUE(Label("empty").starts_with("No folder yet."));
    EXPECT_TRUE(fs::exists(files.File("banks/first.syx")));
}

TEST_F(ArchiveWindowView, ScreenReadersHearRowsAndColumns) {
    OpenFilled();
    QAccessibleInterface *all = QAccessible::queryAccessibleInterface(table);
    ASSERT_NE(all, nullptr);
    EXPECT_EQ(all->text(QAccessible::Name), "Voices");
    QAccessibleTableInterface *rows = all->tableInterface();
    ASSERT_NE(rows, nullptr);
    EXPECT_EQ(rows->rowCount(), 32);
    EXPECT_EQ(rows->columnCount(), 6);
    Strings titles;
    for (int column = 0; column < 6; ++column) {
        titles.push_back(rows->columnDescription(column).toStdString());
    }
    EXPECT_EQ(titles, (Strings{"Name", "Instrument", "Algorithm", "Found", "File", "Place"}));
    EXPECT_EQ(rows->cellAt(6, 0)->text(QAccessible::Name), "VOICE 07");
    EXPECT_EQ(rows->cellAt(6, 2)->text(QAccessible::Name), "7");
    rows->selectRow(6);
    EXPECT_TRUE(table->selectionModel()->isRowSelected(6));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(search)->text(QAccessible::Name),
              "Find voices by their names");
    for (const char *name : {"instrument", "algorithm", "folder", "places", "similar"}) {
        const auto *part = QAccessible::queryAccessibleInterface(Part<QWidget>(name));
        EXPECT_FALSE(part->text(QAccessible::Name).isEmpty()) << name;
    }
}

TEST_F(ArchiveWindowView, TheHelpKeyAndItsButtonOpenTheParagraph) {
    Open();
    QTest::keyClick(window, Qt::Key_F1);
    Click(Button("help"));
    EXPECT_EQ(desktop.helpTopics, (Strings{"EXTRAS_ARCHIVE", "EXTRAS_ARCHIVE"}));
}

TEST_F(ArchiveWindowView, ThereIsOneWindowWhichComesToTheTop) {
    Open();
    QDialog *first = window;
    Open();
    EXPECT_EQ(window, first);
    Click(Button("close"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Open();
    EXPECT_TRUE(window->isVisible());
}

TEST_F(ArchiveWindowView, CancelEndsTheReadingOfAFolder) {
    Open();
    const OtherArchiveUpdate other; // so that it is not at its end already
    Click(Button("add"));
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Folder, .answer = Banks()});
    RunPosted();
    Click(Button("cancel"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !Button("cancel")->isVisible(); }, 20000));
    EXPECT_TRUE(Label("progressText").starts_with("Cancelled; what was looked at stays."))
        << Label("progressText");
    EXPECT_TRUE(Button("add")->isEnabled());
}

TEST_F(ArchiveWindowView, TheWindowMayBeClosedWhileAFolderIsRead) {
    for (int number = 0; number < 300; ++number) {
        WriteTestFile(files.File("banks/" + std::to_string(number) + ".syx"), NumberedBank(number));
    }
    Open();
    Click(Button("add"));
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Folder, .answer = Banks()});
    RunPosted();
    QTest::qWait(20);
    window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ArchiveError error;
    if (const auto store = OpenArchive(ArchivePath(), ArchiveUse::Read, error)) {
        EXPECT_EQ(CheckArchive(*store, error), Strings());
    }
    EXPECT_FALSE(error) << error.text;
    // What was read is there the next time.
    Open();
    EXPECT_FALSE(Button("cancel")->isVisible());
}

TEST_F(ArchiveWindowView, ADamagedArchiveIsToldInTheWindow) {
    WriteTestText(ArchivePath(), std::string(5000, 'x'));
    Open();
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return Label("empty").starts_with("The archive is damaged."); }));
    Type("a");
    Key(Qt::Key_Down);
    EXPECT_TRUE(search->hasFocus());
}

TEST_F(ArchiveWindowView, WhatAnotherProgramAddsComesByItself) {
    OpenFilled();
    ClickRow(31);
    AddBankFromElsewhere();
    ASSERT_TRUE(QTest::qWaitFor([this] { return Rows() == 64; }, 20000));
    EXPECT_EQ(Part<QComboBox>("folder")->count(), 3);
    ASSERT_EQ(table->selectionModel()->selectedRows().size(), 1);
    EXPECT_EQ(table->selectionModel()->selectedRows()[0].data(), "VOICE 32");
}

TEST_F(ArchiveWindowView, OfThePlacesOfAVoiceTheSelectedOneStaysSelectedAlone) {
    WriteTestFile(files.File("banks/second.syx"), TestBank());
    WriteTestFile(files.File("banks/third.syx"), TestBank());
    OpenFilled();
    ClickRow(4);
    auto *places = Part<QTableView>("places"), *similar = Part<QTableView>("similar");
    ASSERT_EQ(QTest::qWaitFor([&] { return similar->model()->rowCount() == 31; }), true);
    ASSERT_EQ(places->model()->rowCount(), 3);
    places->setFocus();
    places->selectRow(1);
    AddBankFromElsewhere();
    ASSERT_TRUE(QTest::qWaitFor([this] { return Rows() == 64; }, 20000));
    ASSERT_EQ(places->selectionModel()->selectedRows().size(), 1);
    EXPECT_EQ(places->selectionModel()->selectedRows()[0].row(), 1);
    EXPECT_EQ(places->currentIndex().row(), 1);
    Key(Qt::Key_Return);
    RunPosted();
    EXPECT_EQ(put, std::vector<Strings>{{"VOICE 05"}});
}

TEST_F(ArchiveWindowView, WhatIsAddedElsewhereLeavesTheRowsInSightWhereTheyAre) {
    OpenFilled();
    ClickRow(0);
    QScrollBar *bar = table->verticalScrollBar();
    ASSERT_GT(bar->maximum(), 0);
    bar->setValue(bar->maximum());
    const int value = bar->value();
    AddBankFromElsewhere();
    ASSERT_TRUE(QTest::qWaitFor([this] { return Rows() == 64; }, 20000));
    QTest::qWait(50); // a layout may wait
    EXPECT_EQ(bar->value(), value);
    EXPECT_EQ(table->currentIndex().data(), "VOICE 01");
    // Who types goes where the voice is.
    search->setFocus();
    Type("v");
    EXPECT_EQ(bar->value(), table->currentIndex().row());
}

TEST_F(ArchiveWindowView, BytesThatNoInstrumentTakesAreAskedAbout) {
    auto bank = TestBank();
    bank[TestBankVoiceOffset(3)] |= 0x80;
    FixTestChecksum(bank);
    WriteTestFile(files.File("banks/first.syx"), bank);
    OpenFilled();
    const std::string question =
        "One of these voices has bytes above 7F, which no instrument sends or takes. The file is "
        "probably damaged there.\n\nDo you wish to take them all the same?";
    for (const char *button : {"put", "newBank"}) {
        for (const int answer : {ResultNo, ResultYes}) {
            ClickRow(3);
            Click(Button(button));
            desktop.ExpectYesNo(question, answer);
            RunPosted();
            desktop.ExpectNothingLeft();
            EXPECT_EQ(put.size() + banks.size(), answer == ResultYes ? 1 : 0) << button;
        }
        put.clear();
        banks.clear();
    }
    ClickRow(4); // which has none
    Click(Button("put"));
    RunPosted();
    EXPECT_EQ(put, std::vector<Strings>{{"VOICE 05"}});
}

TEST_F(ArchiveWindowView, AMinimizedWindowIsRestored) {
    Open();
    window->showMinimized();
    ASSERT_TRUE(window->isMinimized());
    ShowArchiveWindow();
    EXPECT_FALSE(window->isMinimized());
    EXPECT_TRUE(window->isVisible());
}

} // namespace
} // namespace tonewright
