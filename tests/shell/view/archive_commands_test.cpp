// The archive's window beside the main window: opened from the menu, its voices dropped on the
// list, and the end of the program while it works.
#include "window_fixture.h"

#include "common/folders.h"
#include "extras/archive_store.h"
#include "extras/archive_update.h"
#include "extras/voice_parcel.h"
#include "shell/command_queue.h"
#include "support/archive_contents.h"
#include "support/reface_bytes.h"

#include <QLabel>
#include <QLineEdit>
#include <QTableView>

#include <filesystem>

namespace tonewright {
namespace {

class ArchiveCommands : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        MakeProgramFolders();
        OpenBank();
    }

    static QDialog *Archive() {
        for (QWidget *one : QApplication::topLevelWidgets()) {
            if (one->objectName() == "ArchiveWindow") {
                return qobject_cast<QDialog *>(one);
            }
        }
        return nullptr;
    }
    // An archive of one bank, "FOUND 01" and so on, in the window.
    void OpenArchive() {
        std::filesystem::create_directory(files.path / "banks");
        std::vector<std::uint8_t> bank = TestBank();
        for (std::size_t voice = 0; voice < 32; ++voice) {
            std::ranges::copy(std::string("FOUND"), bank.begin() + 6 + 128 * voice + 118);
            bank[6 + 128 * voice] = 1; // other voices than those of the list
        }
        FixTestChecksum(bank);
        WriteTestFile(files.File("banks/found.syx"), bank);
        ArchiveError error;
        const auto store = tonewright::OpenArchive(ArchivePath(), ArchiveUse::Write, error);
        ASSERT_TRUE(store) << error.text;
        const std::string folder = files.File("banks");
        AddToArchive(*store, {&folder, 1}, {}, error);
        ASSERT_FALSE(error) << error.text;
        Trigger(CommandArchive);
        ASSERT_NE(Archive(), nullptr);
        rows = Archive()->findChild<QTableView *>("voices");
        ASSERT_TRUE(QTest::qWaitFor([this] { return rows->model()->rowCount() == 32; }));
    }
    void SelectRows(int first, int last) {
        rows->setFocus();
        rows->selectRow(first);
        for (int row = first; row < last; ++row) {
            QTest::keyClick(rows, Qt::Key_Down, Qt::ShiftModifier);
        }
    }

    static std::vector<KeptVoice> Dragged(int count) {
        std::vector<KeptVoice> voices;
        for (int number = 0; number < count; ++number) {
            std::vector<std::uint8_t> bytes = TestPackedVoice(number);
            std::ranges::copy(std::string("DRAGGED") + static_cast<char>('A' + number),
                              bytes.begin() + 118);
            voices.push_back({.form = VoiceForm::Dx7Packed, .bytes = bytes});
        }
        return voices;
    }
    static QByteArray Parcel(const std::vector<KeptVoice> &voices) {
        const auto bytes = PackVoices(voices);
        return {reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())};
    }
    // Drags over the point and drops there; whether it was taken.
    bool Drop(const QByteArray &parcel, QPoint point) {
        QMimeData data;
        data.setData(VoiceParcelType, parcel);
        QDragEnterEvent enter(point, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(Viewport(), &enter);
        QDragMoveEvent move(point, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(Viewport(), &move);
        EXPECT_EQ(enter.isAccepted(), move.isAccepted());
        if (!move.isAccepted()) {
            QDragLeaveEvent leave;
            QApplication::sendEvent(Viewport(), &leave);
            return false;
        }
        EXPECT_EQ(move.dropAction(), Qt::CopyAction);
        QDropEvent drop(point, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(Viewport(), &drop);
        return drop.isAccepted();
    }

    TempFolder files;
    QTableView *rows = nullptr;
};

TEST_F(ArchiveCommands, TheMenuOpensTheWindowAndBothWindowsWork) {
    OpenArchive();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(Archive()->isVisible());
    EXPECT_FALSE(SomethingIsRunning());
    ClickRow(3);
    EXPECT_EQ(MainList.selection, 3);
    Trigger(CommandArchive);
    EXPECT_TRUE(Archive()->isVisible());
}

TEST_F(ArchiveCommands, ReturnPutsVoicesAtTheSelectedRowAndUndoTakesThemBack) {
    OpenArchive();
    ListSelect(MainList, 4);
    SelectRows(8, 9);
    QTest::keyClick(rows, Qt::Key_Return);
    RunPosted();
    EXPECT_EQ(Names(3, 7), (std::vector<std::string>{"VOICE 04", "FOUND 09", "FOUND 10", "VOICE 07",
                                                     "VOICE 08"}));
    EXPECT_EQ(MainList.selection, 6);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(rows->hasFocus());
    RunCommand(CommandUndo);
    EXPECT_EQ(Names(4, 5), (std::vector<std::string>{"VOICE 05", "VOICE 06"}));
}

TEST_F(ArchiveCommands, NothingIsPutWhileACommandRuns) {
    OpenArchive();
    ListSelect(MainList, 4);
    SelectRows(8, 8);
    {
        const RunningMark running;
        QTest::keyClick(rows, Qt::Key_Return);
        RunPosted();
        EXPECT_EQ(NameAt(4), "VOICE 05");
    }
    RunPosted();
    EXPECT_EQ(NameAt(4), "FOUND 09");
}

TEST_F(ArchiveCommands, ANewBankOfVoicesStandsInTheList) {
    OpenArchive();
    SelectRows(0, 2);
    QTest::mouseClick(Archive()->findChild<QPushButton *>("newBank"), Qt::LeftButton);
    RunPosted();
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(Names(0, 2), (std::vector<std::string>{"FOUND 01", "FOUND 02", "FOUND 03"}));
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(desktop.statusTexts.back().starts_with(
        "From " + ArchiveFolderPath(files.File("banks/found.syx"))))
        << desktop.statusTexts.back();
}

TEST_F(ArchiveCommands, VoicesAreDroppedOnTheRowUnderTheMouse) {
    ListSelect(MainList, 0);
    EXPECT_TRUE(Drop(Parcel(Dragged(2)), RowPoint(5)));
    EXPECT_EQ(NameAt(5), "VOICE 06"); // the source is not held up
    RunPosted();
    EXPECT_EQ(Names(4, 7),
              (std::vector<std::string>{"VOICE 05", "DRAGGEDA", "DRAGGEDB", "VOICE 08"}));
    EXPECT_TRUE(MainListState.dirty);
    RunCommand(CommandUndo);
    EXPECT_EQ(NameAt(5), "VOICE 06");
}

TEST_F(ArchiveCommands, TheRowIsMarkedWhileVoicesAreOverIt) {
    const QImage before = Viewport()->grab().toImage();
    QMimeData data;
    data.setData(VoiceParcelType, Parcel(Dragged(1)));
    QDragEnterEvent enter(RowPoint(2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(Viewport(), &enter);
    const QImage marked = Viewport()->grab().toImage();
    const QRect row = list->RowRectangle(2);
    EXPECT_NE(marked.copy(row), before.copy(row));
    EXPECT_EQ(marked.copy(list->RowRectangle(1)), before.copy(list->RowRectangle(1)));
    QDragLeaveEvent leave;
    QApplication::sendEvent(Viewport(), &leave);
    EXPECT_EQ(Viewport()->grab().toImage(), before);
}

TEST_F(ArchiveCommands, VoicesBesideTheRowsAreNotTaken) {
    while (ListCount(MainList) > 2) {
        ListDelete(MainList, 2);
    }
    EXPECT_FALSE(Drop(Parcel(Dragged(1)), {20, Viewport()->height() - 3}));
    RunPosted();
    EXPECT_EQ(NameAt(0), "VOICE 01");
}

TEST_F(ArchiveCommands, InAnEmptyListDroppedVoicesBecomeANewBank) {
    RunCommand(CommandClear);
    ASSERT_EQ(ListCount(MainList), 0);
    EXPECT_TRUE(Drop(Parcel(Dragged(1)), {20, 20}));
    desktop.ExpectYesNo("The list is empty.\n\nDo you wish to make a new bank of them?", ResultYes);
    RunPosted();
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(NameAt(0), "DRAGGEDA");
}

TEST_F(ArchiveCommands, OfVoicesOfTwoFamiliesThoseOfTheFirstAreTaken) {
    std::vector<KeptVoice> voices = Dragged(1);
    std::vector<std::uint8_t> reface = TestRefaceCommon(1);
    for (int index = 0; index < 4; ++index) {
        const auto block = TestRefaceOperator(index);
        reface.insert(reface.end(), block.begin(), block.end());
    }
    voices.push_back({.form = VoiceForm::Reface, .bytes = reface});
    voices.push_back(Dragged(2)[1]);
    EXPECT_TRUE(Drop(Parcel(voices), RowPoint(0)));
    RunPosted();
    EXPECT_EQ(Names(0, 2), (std::vector<std::string>{"DRAGGEDA", "DRAGGEDB", "VOICE 03"}));
}

TEST_F(ArchiveCommands, BytesThatAreNoVoicesDoNothing) {
    QByteArray parcel = Parcel(Dragged(1));
    parcel.chop(1);
    Drop(parcel, RowPoint(0));
    RunPosted();
    EXPECT_EQ(NameAt(0), "VOICE 01");
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(ArchiveCommands, TheArchiveGoesWithTheMainWindow) {
    OpenArchive();
    window.reset();
    EXPECT_EQ(Archive(), nullptr);
}

// What stands at the end of the session: the window while it reads a folder, and a box over it.
class ArchiveAtSessionEnd : public ArchiveCommands {
protected:
    void BeginToRead() {
        for (int number = 0; number < 300; ++number) {
            WriteTestFile(files.File(std::to_string(number) + ".syx"), NumberedBank(number));
        }
        OpenArchive();
        desktop.Expect(
            ExpectedFileDialog{.kind = FileDialogKind::Folder, .answer = files.path.string()});
        {
            const OtherArchiveUpdate other; // so that it is not at its end already
            QTest::mouseClick(Archive()->findChild<QPushButton *>("add"), Qt::LeftButton);
            QTest::qWait(1);
            EXPECT_TRUE(Archive()->findChild<QPushButton *>("cancel")->isVisible());
        }
        QTest::qWait(60); // what it waits for at a time
    }
    // A loop that ends by itself lets the toolkit forget that the program was to end.
    static void ForgetTheEnd() {
        QTimer::singleShot(0, [] { QCoreApplication::exit(); });
        QApplication::exec();
    }
    void ExpectWholeArchive() {
        ArchiveError error;
        const auto store = tonewright::OpenArchive(ArchivePath(), ArchiveUse::Read, error);
        ASSERT_TRUE(store) << error.text;
        EXPECT_EQ(CheckArchive(*store, error), std::vector<std::string>());
        EXPECT_FALSE(error) << error.text;
    }
};

TEST_F(ArchiveAtSessionEnd, TheEndComesWhileAFolderIsRead) {
    BeginToRead();
    window->EndAtOnce();
    EXPECT_FALSE(Archive()->isVisible());
    ForgetTheEnd();
    window.reset();
    EXPECT_EQ(Archive(), nullptr);
    ExpectWholeArchive();
}

TEST_F(ArchiveAtSessionEnd, TheMainWindowIsClosedWhileAFolderIsRead) {
    BeginToRead();
    MainListState.dirty = false;
    window->close();
    RunPosted();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(Archive()->isVisible());
    ForgetTheEnd();
    window.reset();
    ExpectWholeArchive();
}

TEST_F(ArchiveAtSessionEnd, TheEndComesWhileABoxStandsOverTheArchive) {
    OpenArchive();
    TheDesktop.ChooseFolder = [](QWidget *owner, const std::string &) {
        QDialog box(owner);
        box.exec();
        return std::optional<std::string>();
    };
    EndInBox([] { QTest::mouseClick(Archive()->findChild<QPushButton *>("add"), Qt::LeftButton); },
             [](QDialog &) {});
    EXPECT_FALSE(Archive()->isVisible());
    window.reset();
    EXPECT_EQ(Archive(), nullptr);
}

} // namespace
} // namespace tonewright
