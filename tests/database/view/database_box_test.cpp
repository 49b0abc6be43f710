// The catalogue window, used with mouse, keys and time.
#include "database/view/database_box.h"

#include "common/view/file_tip.h"
#include "common/view/fonts.h"
#include "common/view/list_box_view.h"
#include "database/database_undo.h"
#include "database/database_window.h"
#include "database/local_time.h"
#include "database/test_catalogue.h"
#include "support/modal_box.h"
#include "support/scripted_desktop.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <tuple>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

constexpr int RowHeight = 20;

// The dialog over catalogues of the DX7: "Voices" with three records, "Brass" with two.
const std::string LoseChanges =
    "Do you want to lose the changes you've made to this database?\n\nClick on Yes to abandon your "
    "changes, or click on No to return to the Database window.";

class DatabaseBox : public testing::Test {
protected:
    ScriptedDesktop desktop;
    TempFolder folder;
    VoiceList voices;
    DatabaseWindow *state = nullptr; // while the dialog stands
    QDialog *box = nullptr;
    ListBoxView *list = nullptr;

    DatabaseBox() {
        PlatformFolders.documents = folder.Folder();
        fs::create_directory(folder.path / "My Tonewright 17 Documents");
        Write("Voices",
              {{"charlie", "Moon", 31, 7}, {"Alpha", "zoo", 5, 9}, {"Bravo", "Zoo", 0, 8}});
        Write("Brass", {{"Horn", "b.syx", 1, 2}, {"Tuba", "b.syx", 2, 1}});
        DatabaseManFieldDelay = 0; // which counts as 10 milliseconds
        FileTipDelay = 0;
        UseDatabaseBox();
    }

    std::string PathOf(const std::string &name) const {
        return folder.File("My Tonewright 17 Documents/" + name + ".syx_db");
    }
    void Write(const std::string &name, const std::vector<TestEntry> &entries) const {
        TestBytes file =
            TestCatalogueHeader(TestFamilies[0], static_cast<std::uint32_t>(entries.size()));
        int number = 0;
        for (const TestEntry &entry : entries) {
            const TestBytes record = TestRecord(TestFamilies[0], number++ % 32, entry);
            file.insert(file.end(), record.begin(), record.end());
        }
        WriteTestFile(PathOf(name), file);
    }
    // "Voices" with records "Name 100" onwards, in this order.
    void WriteMany(int count) const {
        std::vector<TestEntry> entries;
        for (int index = 0; index < count; ++index) {
            entries.push_back({"Name " + std::to_string(100 + index), "s", 0, 0});
        }
        Write("Voices", entries);
    }
    Names InFile(const std::string &name) const {
        const TestBytes bytes = ReadTestFile(PathOf(name));
        Names names;
        for (std::size_t at = 152; at + 446 <= bytes.size(); at += 446) {
            names.emplace_back(TestTextAt(bytes, at + 28, 64).c_str());
        }
        return names;
    }

    // The question whether to lose the edits, while which `during` looks about.
    void ExpectToBeAsked(int answer, std::function<void(MessageRequest &)> during = {}) {
        desktop.Expect({.text = LoseChanges,
                        .buttons = {"Yes", "No"},
                        .answer = answer,
                        .during = std::move(during)});
    }

    // Opens the dialog and hands it to `use`, which closes it. The result of the launcher.
    int WithBox(const std::function<void()> &use) {
        // What the view fills in is looked at on the way.
        const auto show = TheDatabaseViews.ShowBox;
        TheDatabaseViews.ShowBox = [this, show](QWidget *owner, DatabaseWindow &opened) {
            state = &opened;
            const int result = show(owner, opened);
            chosen = opened.chosen;
            state = nullptr;
            return result;
        };
        int result = -1;
        WithModalBox([&] { result = RunDatabaseWindow(nullptr, voices, NoRow, 0); },
                     [&](QDialog &dialog) {
                         box = &dialog;
                         list =
                             dynamic_cast<ListBoxView *>(box->findChild<QWidget *>("control_102"));
                         ASSERT_NE(list, nullptr);
                         // The toolkit remembers buttons that a test has left pressed.
                         for (const auto button : {Qt::LeftButton, Qt::RightButton}) {
                             if (QGuiApplication::mouseButtons() & button) {
                                 QTest::mouseRelease(box, button);
                             }
                         }
                         use();
                         box = nullptr;
                     });
        TheDatabaseViews.ShowBox = show;
        return result;
    }
    VoiceObject chosen;

    template <typename Widget = QWidget> Widget *Control(int number) const {
        return dynamic_cast<Widget *>(box->findChild<QWidget *>(QString("control_%1").arg(number)));
    }
    void Click(int number) const { QTest::mouseClick(Control(number), Qt::LeftButton); }
    void Cancel() const { Click(2); }
    QComboBox &Combo() const { return *Control<QComboBox>(101); }

    Names Shown() const {
        Names names;
        for (const DatabaseRecord &record : state->records.items) {
            names.emplace_back(RecordFields(record)->name);
        }
        return names;
    }
    QWidget *Viewport() const { return list->viewport(); }
    // Whether anything is painted from one column of pixels to another in the first row.
    std::function<bool(int left, int right)> InkOfFirstRow() const {
        return [picture = Viewport()->grab().toImage()](int left, int right) {
            for (int x = left; x < right; ++x) {
                for (int y = 0; y < RowHeight; ++y) {
                    if (picture.pixelColor(x, y) != QColor(Qt::white)) {
                        return true;
                    }
                }
            }
            return false;
        };
    }
    QPoint PointOf(int row, int x = 20) const {
        const QRect area = list->RowRectangle(row);
        return {area.left() + x, area.center().y()};
    }
    void Press(int row, int x = 20) const {
        QTest::mousePress(Viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(row, x));
    }
    void Release(int row, int x = 20) const {
        QTest::mouseRelease(Viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(row, x));
    }
    // A move with these buttons held, seen by the list alone.
    void Move(QPoint point, Qt::MouseButtons held = Qt::NoButton) const {
        QMouseEvent move(QEvent::MouseMove, point, Viewport()->mapToGlobal(point), Qt::NoButton,
                         held, Qt::NoModifier);
        QApplication::sendEvent(Viewport(), &move);
    }
    // Holds the left button until an editor is open or the gesture is over.
    void Hold(int row, int x) const {
        const auto sounds = desktop.sounds.size();
        Press(row, x);
        EXPECT_TRUE(QTest::qWaitFor([this, sounds] {
            return TextEditor() || ChoiceEditor() || desktop.sounds.size() > sounds;
        }));
    }
    // Lets `use` look at the menu that `open` opens.
    static void WithMenu(const std::function<void()> &open,
                         const std::function<void(QMenu &)> &use) {
        bool opened = false;
        QTimer::singleShot(0, [&] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            opened = true;
            use(*menu);
            menu->close();
        });
        open();
        EXPECT_TRUE(opened);
    }
    void RightRelease(int row) const {
        QTest::mouseRelease(Viewport(), Qt::RightButton, Qt::NoModifier, PointOf(row));
    }
    static QAction *Entry(const QMenu &menu, const QString &text) {
        for (QAction *action : menu.actions()) {
            if (action->text() == text) {
                return action;
            }
        }
        return nullptr;
    }
    // Hands the box that opens over the dialog to `use`, which closes it.
    void WithSecondBox(const std::function<void()> &open,
                       const std::function<void(QDialog &)> &use) const {
        bool opened = false;
        QTimer look;
        look.setInterval(5);
        QObject::connect(&look, &QTimer::timeout, [&] {
            auto *second = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!second || second == box) {
                return;
            }
            look.stop();
            opened = true;
            use(*second);
            if (second->isVisible()) {
                ADD_FAILURE() << "the second box is still open";
                second->done(0);
            }
        });
        look.start();
        open();
        EXPECT_TRUE(QTest::qWaitFor([&opened] { return opened; }));
    }
    QLineEdit *TextEditor() const { return Viewport()->findChild<QLineEdit *>(); }
    QComboBox *ChoiceEditor() const { return Viewport()->findChild<QComboBox *>(); }
    FileTip &Tip() const {
        for (QObject *child : Viewport()->children()) {
            if (auto *tip = dynamic_cast<FileTip *>(child)) {
                return *tip;
            }
        }
        throw std::runtime_error("there is no tip");
    }
    // Chooses an entry of the menu over a row by the keyboard.
    void FromMenu(int row, const QString &text) const {
        WithMenu([this, row] { RightRelease(row); },
                 [text](QMenu &menu) {
                     QAction *entry = Entry(menu, text);
                     ASSERT_NE(entry, nullptr) << text.toStdString();
                     menu.setActiveAction(entry);
                     QTest::keyClick(&menu, Qt::Key_Return);
                 });
    }
};

// ---- the dialog

TEST_F(DatabaseBox, ShowsWhatWasOpened) {
    WithBox([this] {
        EXPECT_EQ(box->windowTitle(), "Database");
        EXPECT_EQ(Combo().currentText(), "Voices");
        EXPECT_EQ(Combo().count(), 2);
        EXPECT_EQ(box->findChild<QLabel *>("label_101")->text(), "Current database:");
        const std::pair<int, const char *> captions[] = {
            {1, "OK"},       {2, "Cancel"},          {9, "Help"},      {103, "+"},
            {104, "-"},      {105, "Audition"},      {106, "Delete"},  {107, "Name"},
            {108, "Source"}, {109, "Time and Date"}, {110, "Position"}};
        for (const auto &[number, caption] : captions) {
            ASSERT_NE(Control<QAbstractButton>(number), nullptr) << number;
            EXPECT_EQ(Control<QAbstractButton>(number)->text(), caption);
        }
        for (const int number : {103, 104}) {
            EXPECT_EQ(Control(number)->font(), FontOfHeight("Arial", 18, 500));
        }
        EXPECT_EQ(Shown(), (Names{"Alpha", "Bravo", "charlie"}));
        EXPECT_TRUE(list->hasFocus());
        Cancel();
    });
}

TEST_F(DatabaseBox, LaysTheHeadersOutOverTheColumns) {
    WithBox([this] {
        const int left = list->mapTo(box, QPoint()).x();
        const int scrollBar = list->verticalScrollBar()->width();
        const struct {
            int number, left, width;
        } places[] = {{107, 3, 166}, {108, 169, 166}, {109, 335, 156}, {110, 491, 54 + scrollBar}};
        for (const auto &place : places) {
            const QWidget *header = Control(place.number);
            EXPECT_EQ(header->mapTo(box, QPoint()).x(), left + place.left) << place.number;
            EXPECT_EQ(header->width(), place.width) << place.number;
            EXPECT_EQ(header->mapTo(box, QPoint(0, header->height())).y(),
                      list->mapTo(box, QPoint()).y());
        }
        EXPECT_GE(Viewport()->width(), RecordRowWidth);
        EXPECT_EQ(list->RowRectangle(0).height(), RowHeight);
        EXPECT_TRUE(box->rect().contains(list->geometry()));
        Cancel();
    });
}

TEST_F(DatabaseBox, HelpOpensItsTopicAndTheBoxStays) {
    WithBox([this] {
        Click(9);
        EXPECT_EQ(desktop.helpTopics, Names{"DATABASE"});
        EXPECT_TRUE(box->isVisible());
        Cancel();
    });
}

TEST_F(DatabaseBox, OkHandsTheSelectedVoiceOver) {
    EXPECT_EQ(WithBox([this] {
                  QTest::mouseClick(Viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(2));
                  Click(1);
              }),
              1);
    EXPECT_EQ(chosen, TestVoiceOf(TestFamilies[0], 0));
}

TEST_F(DatabaseBox, ShiftAndOkStoresAndHandsNothingOver) {
    desktop.shiftDown = true;
    EXPECT_EQ(WithBox([this] {
                  EndRecordGesture(*state);
                  Click(1);
              }),
              0);
    EXPECT_TRUE(chosen.bytes.empty());
    EXPECT_EQ(InFile("Voices"), (Names{"Alpha", "Bravo", "charlie"}));
}

TEST_F(DatabaseBox, ADoubleClickOnARowIsOk) {
    EXPECT_EQ(WithBox([this] {
                  QTest::mouseClick(Viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(1));
                  QTest::mouseDClick(Viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(1));
                  EXPECT_TRUE(box->isVisible()); // it is posted
                  QTest::qWait(1);
                  EXPECT_FALSE(box->isVisible());
              }),
              1);
    EXPECT_EQ(chosen, TestVoiceOf(TestFamilies[0], 2));
}

TEST_F(DatabaseBox, TwoDoubleClicksAtOnceStoreOnce) {
    EXPECT_EQ(WithBox([this] {
                  Click(106); // Alpha
                  QTest::mouseDClick(Viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(1));
                  QTest::mouseDClick(Viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(1));
                  QTest::qWait(1);
                  EXPECT_FALSE(box->isVisible());
              }),
              1);
    EXPECT_EQ(InFile("Voices"), (Names{"Bravo", "charlie"}));
    // The backup is the former catalogue, as it was on the disk.
    const TestBytes backup = ReadTestFile(folder.File(
        std::string("My Tonewright 17 Documents/Voices") + TestFamilies[0].backupExtension));
    EXPECT_EQ(backup.size(), 152u + 3 * 446u);
}

TEST_F(DatabaseBox, NothingElseRunsOnceADoubleClickHasSaidOk) {
    EXPECT_EQ(WithBox([this] {
                  QTest::mouseDClick(Viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(1));
                  Click(106);
                  Click(110);
                  Click(2);
                  EXPECT_TRUE(box->isVisible());
                  EXPECT_EQ(Shown(), (Names{"Alpha", "Bravo", "charlie"}));
                  EXPECT_TRUE(Control<QAbstractButton>(107)->isChecked());
                  EXPECT_FALSE(Control<QAbstractButton>(110)->isChecked());
                  QTest::qWait(1);
                  EXPECT_FALSE(box->isVisible());
              }),
              1);
    EXPECT_EQ(DatabaseSortMode, 107u);
}

TEST_F(DatabaseBox, NothingElseRunsWhileOkAsks) {
    CreateBackups = 0;
    EXPECT_EQ(WithBox([this] {
                  Click(106); // Alpha
                  fs::remove(PathOf("Voices"));
                  fs::create_directory(PathOf("Voices"));
                  desktop.Expect({.text = "There has been an error updating the current database.",
                                  .buttons = {"Dismiss"},
                                  .during = [this](MessageRequest &) {
                                      Control<QAbstractButton>(1)->click();
                                      Control<QAbstractButton>(2)->click();
                                      Control<QAbstractButton>(106)->click();
                                      Combo().showPopup();
                                      Combo().hidePopup();
                                      QTest::mouseDClick(Viewport(), Qt::LeftButton, Qt::NoModifier,
                                                         PointOf(0));
                                      QTest::qWait(1);
                                      EXPECT_EQ(Shown(), (Names{"Bravo", "charlie"}));
                                      EXPECT_TRUE(box->isVisible());
                                  }});
                  Click(1);
                  EXPECT_FALSE(box->isVisible());
              }),
              1);
    EXPECT_EQ(desktop.sounds.size(), 1u);
}

TEST_F(DatabaseBox, OkWaitsForNoQuestionOfACommand) {
    WithBox([this] {
        desktop.ExpectYesNoCancel("Do you want to copy the contents of your existing database, "
                                  "Voices, to your new database, Strings?",
                                  ResultCancel);
        TheDatabaseViews.AskForNewName = [this](QWidget *, const Names &, const std::string &) {
            Control<QAbstractButton>(1)->click();
            EXPECT_TRUE(box->isVisible());
            return std::optional<std::string>("Strings");
        };
        Click(103);
        EXPECT_TRUE(box->isVisible());
        Cancel();
    });
}

TEST_F(DatabaseBox, ADoubleClickWithShiftHandsNothingOver) {
    desktop.shiftDown = true;
    EXPECT_EQ(WithBox([this] {
                  QTest::mouseDClick(Viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(1));
                  QTest::qWait(1);
              }),
              0);
    EXPECT_TRUE(chosen.bytes.empty());
}

TEST_F(DatabaseBox, ADoubleClickBesideTheRowsDoesNothing) {
    WithBox([this] {
        QTest::mouseDClick(Viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 200));
        QTest::qWait(1);
        EXPECT_TRUE(box->isVisible());
        Cancel();
    });
}

TEST_F(DatabaseBox, EnterInTheListIsOkAndEscIsCancel) {
    EXPECT_EQ(WithBox([this] { QTest::keyClick(list, Qt::Key_Return); }), 1);
    EXPECT_EQ(WithBox([this] { QTest::keyClick(list, Qt::Key_Enter); }), 1);
    EXPECT_EQ(WithBox([this] { QTest::keyClick(list, Qt::Key_Escape); }), 0);
}

TEST_F(DatabaseBox, ShiftAndEnterHandsNothingOver) {
    desktop.shiftDown = true;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        EXPECT_EQ(WithBox([this, key] {
                      EndRecordGesture(*state);
                      QTest::keyClick(list, key, Qt::ShiftModifier);
                      EXPECT_FALSE(box->isVisible());
                  }),
                  0);
        EXPECT_TRUE(chosen.bytes.empty());
    }
    EXPECT_EQ(InFile("Voices"), (Names{"Alpha", "Bravo", "charlie"}));
}

TEST_F(DatabaseBox, EnterOnCancelIsCancel) {
    EXPECT_EQ(WithBox([this] {
                  Control(2)->setFocus();
                  QTest::keyClick(Control(2), Qt::Key_Return);
              }),
              0);
}

TEST_F(DatabaseBox, CancelAsksAboutChangesAndNoReturns) {
    WithBox([this] {
        EndRecordGesture(*state);
        const ExpectedMessage no = {
            .text = LoseChanges, .buttons = {"Yes", "No"}, .answer = ResultNo};
        desktop.Expect(no);
        Cancel();
        EXPECT_TRUE(box->isVisible());
        desktop.Expect(no);
        box->close();
        EXPECT_TRUE(box->isVisible());
        desktop.Expect(no);
        QTest::keyClick(list, Qt::Key_Escape);
        EXPECT_TRUE(box->isVisible());
        ExpectedMessage yes = no;
        yes.answer = ResultYes;
        desktop.Expect(yes);
        Cancel();
        EXPECT_FALSE(box->isVisible());
    });
    EXPECT_FALSE(DatabaseUndoAvailable());
}

TEST_F(DatabaseBox, StaysOpenInCarefulModeAfterAStoreThatFails) {
    CarefulMode = 1;
    CreateBackups = 0;
    WithBox([this] {
        EndRecordGesture(*state);
        fs::remove(PathOf("Voices"));
        fs::create_directory(PathOf("Voices"));
        desktop.ExpectMessage("There has been an error updating the current database.\n\n" +
                              PathOf("Voices") +
                              ": Is a directory.\n\nThe Database window stays open, and your "
                              "changes are still in its list.");
        Click(1);
        EXPECT_TRUE(box->isVisible());
        fs::remove(PathOf("Voices"));
        Click(1);
        EXPECT_FALSE(box->isVisible());
    });
}

TEST_F(DatabaseBox, TheWheelOverTheDialogScrollsTheList) {
    WriteMany(100);
    WithBox([this] {
        const auto wheel = [this](const QWidget *over, int delta) {
            const QPoint place = over->mapTo(box, QPoint(3, 3));
            QWheelEvent event(place, box->mapToGlobal(place), {}, {0, delta}, Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            // As if it came from the system: no other one reaches parents.
            QSpontaneKeyEvent::setSpontaneous(&event);
            qApp->notify(box->windowHandle(), &event);
        };
        wheel(box, -120);
        EXPECT_EQ(state->records.topRow, 1);
        wheel(Control(1), -120);
        EXPECT_EQ(state->records.topRow, 2);
        // A closed drop-down list keeps its text.
        wheel(&Combo(), -120);
        EXPECT_EQ(state->records.topRow, 3);
        wheel(&Combo(), 120);
        EXPECT_EQ(state->records.topRow, 2);
        EXPECT_EQ(Combo().currentText(), "Voices");
        Cancel();
    });
}

TEST_F(DatabaseBox, TabReachesEveryControl) {
    WithBox([this] {
        std::vector<QString> names;
        for (int i = 0; i < 13; ++i) {
            names.push_back(QApplication::focusWidget()->objectName().remove("control_"));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(names, (std::vector<QString>{"102", "1", "2", "9", "105", "106", "101", "103",
                                               "104", "107", "108", "109", "110"}));
        Cancel();
    });
}

// ---- rows

TEST_F(DatabaseBox, PaintsTextsWithinTheirColumns) {
    Write("Voices", {{std::string(64, 'W'), std::string(64, 'M'), 0x7FFFFFF0, 4'000'000'000}});
    WithBox([this] {
        ListSelect(state->records, NoRow);
        const auto isInked = InkOfFirstRow();
        for (const auto &[left, right] : {std::pair(6, 166), {172, 332}, {338, 488}, {494, 530}}) {
            EXPECT_TRUE(isInked(left, right)) << left;
        }
        for (const auto &[left, right] :
             {std::pair(0, 6), {166, 172}, {332, 338}, {488, 494}, {530, Viewport()->width()}}) {
            EXPECT_FALSE(isInked(left, right)) << left;
        }
        Cancel();
    });
}

TEST_F(DatabaseBox, TextsBeginAtTheLeftAndPositionsEndAtTheRight) {
    Write("Voices", {{"Ib", "b", 0, 0}});
    WithBox([this] {
        ListSelect(state->records, NoRow);
        const auto isInked = InkOfFirstRow();
        for (const int left : {6, 172, 338}) {
            EXPECT_TRUE(isInked(left, left + 12)) << left;
        }
        EXPECT_FALSE(isInked(40, 166));
        EXPECT_FALSE(isInked(494, 515));
        EXPECT_TRUE(isInked(515, 530));
        Cancel();
    });
}

TEST_F(DatabaseBox, ShowsTheWholeDate) {
    // One of the widest, in two years that differ in the last digit alone: Wed May 30 10:08:08 AM
    // 2001 and 2007. Nothing of that digit would be left of a text that is cut.
    const auto paintedDate = [this](int year) {
        const std::int64_t date = LocalTime(year, 5, 30, 10, 8, 8);
        Write("Voices", {{"Alpha", "zoo", 0, static_cast<std::uint32_t>(date)}});
        QImage picture;
        WithBox([this, &picture] {
            ListSelect(state->records, NoRow);
            picture = Viewport()->grab(QRect(338, 0, 150, RowHeight)).toImage();
            Cancel();
        });
        return picture;
    };
    const QImage one = paintedDate(2001), other = paintedDate(2007);
    int first = one.width(), last = -1;
    for (int x = 0; x < one.width(); ++x) {
        if (one.copy(x, 0, 1, RowHeight) != other.copy(x, 0, 1, RowHeight)) {
            first = std::min(first, x);
            last = x;
        }
    }
    EXPECT_GE(last, 0);
    EXPECT_LT(last - first, 8); // no more than a digit
}

TEST_F(DatabaseBox, PaintsTheWholeOfATextWithTheByteThatPartsItsForms) {
    const auto painted = [this](const char *name) {
        Write("Voices", {{name, name, 0, 0}});
        QImage picture;
        WithBox([this, &picture] {
            ListSelect(state->records, NoRow);
            picture = Viewport()->grab(QRect(0, 0, 332, RowHeight)).toImage();
            Cancel();
        });
        return picture;
    };
    EXPECT_NE(painted("xy\x9C"), painted("xy\x9Cyz"));
    EXPECT_NE(painted("xy\x9Cyz"), painted("xy\x9Cyy"));
}

TEST_F(DatabaseBox, TellsTheRowsToThoseWhoHearThem) {
    WithBox([this] {
        EXPECT_TRUE(list->model()
                        ->index(0, 0)
                        .data(Qt::AccessibleTextRole)
                        .toString()
                        .startsWith("Alpha, zoo, "));
        EXPECT_EQ(list->accessibleName(), "Records");
        EXPECT_EQ(Control(103)->accessibleName(), "New database");
        EXPECT_EQ(Control(104)->accessibleName(), "Delete database");
        Cancel();
    });
}

TEST_F(DatabaseBox, AHeldButtonTakesTheSelectionAlong) {
    DatabaseManFieldDelay = 100000;
    WriteMany(100);
    WithBox([this] {
        Press(1);
        EXPECT_EQ(state->records.selection, 1);
        Move(PointOf(3), Qt::LeftButton);
        EXPECT_EQ(state->records.selection, 3);
        EXPECT_EQ(Viewport()->cursor().shape(), Qt::ArrowCursor);
        Move(PointOf(1), Qt::LeftButton);
        EXPECT_EQ(state->records.selection, 1);
        Release(1);
        Move(PointOf(4));
        EXPECT_EQ(state->records.selection, 1);
        Cancel();
    });
}

TEST_F(DatabaseBox, KeysAndLettersSelect) {
    WithBox([this] {
        QTest::keyClick(list, Qt::Key_Down);
        EXPECT_EQ(state->records.selection, 1);
        QTest::keyClick(list, Qt::Key_C);
        EXPECT_EQ(state->records.selection, 2);
        Cancel();
    });
}

// ---- headers

TEST_F(DatabaseBox, AHeaderSortsAndIsSunken) {
    WithBox([this] {
        const auto marked = [this] {
            std::vector<int> numbers;
            for (const int number : {107, 108, 109, 110}) {
                if (Control<QAbstractButton>(number)->isChecked()) {
                    numbers.push_back(number);
                }
            }
            return numbers;
        };
        EXPECT_EQ(marked(), std::vector<int>{107});
        Click(110);
        EXPECT_EQ(DatabaseSortMode, 110u);
        EXPECT_EQ(marked(), std::vector<int>{110});
        EXPECT_EQ(Shown(), (Names{"Bravo", "Alpha", "charlie"}));
        EXPECT_EQ(state->records.selection, 1); // still Alpha
        Click(110);
        EXPECT_EQ(marked(), std::vector<int>{110});
        Control(109)->setFocus();
        QTest::keyClick(Control(109), Qt::Key_Space);
        EXPECT_EQ(marked(), std::vector<int>{109});
        EXPECT_EQ(Shown(), (Names{"charlie", "Bravo", "Alpha"}));
        const QImage sunken = Control(109)->grab().toImage();
        const QImage raised = Control(108)->grab().toImage();
        EXPECT_LT(sunken.pixelColor(0, 0).lightness(), raised.pixelColor(0, 0).lightness());
        EXPECT_EQ(state->changed, 0u);
        Cancel();
    });
}

TEST_F(DatabaseBox, WhoHearsAHeaderSortsByItsOneAction) {
    WithBox([this] {
        const auto act = [this](int number) {
            QAccessibleActionInterface *header =
                QAccessible::queryAccessibleInterface(Control(number))->actionInterface();
            const QStringList names = header->actionNames();
            ASSERT_FALSE(names.isEmpty());
            header->doAction(names.front());
        };
        const auto expectMarked = [this](int marked) {
            for (const int number : {107, 108, 109, 110}) {
                EXPECT_EQ(Control<QAbstractButton>(number)->isChecked(), number == marked);
                EXPECT_EQ(QAccessible::queryAccessibleInterface(Control(number))->state().checked !=
                              0,
                          number == marked);
            }
        };
        act(110);
        EXPECT_EQ(DatabaseSortMode, 110u);
        EXPECT_EQ(Shown(), (Names{"Bravo", "Alpha", "charlie"}));
        expectMarked(110);
        act(110);
        EXPECT_EQ(DatabaseSortMode, 110u);
        expectMarked(110);
        act(107);
        EXPECT_EQ(Shown(), (Names{"Alpha", "Bravo", "charlie"}));
        expectMarked(107);
        Cancel();
    });
}

TEST_F(DatabaseBox, NoHeaderIsSunkenWithAModeThatIsNone) {
    DatabaseSortMode = 200;
    WithBox([this] {
        for (const int number : {107, 108, 109, 110}) {
            EXPECT_FALSE(Control<QAbstractButton>(number)->isChecked());
        }
        Cancel();
    });
    EXPECT_EQ(DatabaseSortMode, 200u);
}

TEST_F(DatabaseBox, TheHeadersFollowAnUndo) {
    WithBox([this] {
        Click(109);
        Click(106); // Alpha
        EXPECT_EQ(Shown(), (Names{"charlie", "Bravo"}));
        FromMenu(0, "Undo");
        EXPECT_TRUE(Control<QAbstractButton>(107)->isChecked());
        EXPECT_FALSE(Control<QAbstractButton>(109)->isChecked());
        EXPECT_EQ(Shown(), (Names{"Alpha", "Bravo", "charlie"}));
        Cancel(); // nothing is changed any more
        EXPECT_FALSE(box->isVisible());
    });
}

// ---- the menu

TEST_F(DatabaseBox, TheMenuOpensAtTheRelease) {
    Write("Voices", {{"A & B", "", 0, 0}, {"Zulu", "", 0, 0}});
    WithBox([this] {
        QTest::mousePress(Viewport(), Qt::RightButton, Qt::NoModifier, PointOf(1));
        QTest::qWait(1);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        // It names the row under the cursor, and selects nothing.
        WithMenu([this] { RightRelease(0); },
                 [this](QMenu &menu) {
                     std::vector<QString> texts;
                     for (const QAction *action : menu.actions()) {
                         texts.push_back(action->isSeparator() ? "" : action->text());
                     }
                     EXPECT_EQ(texts, (std::vector<QString>{
                                          "Audition A && B", "Remove A && B from this database",
                                          "Select A && B", "", "Sort by name", "Sort by source",
                                          "Sort by date", "Sort by position", "", "Undo", "",
                                          "Print the Voices database"}));
                     EXPECT_TRUE(Entry(menu, "Sort by name")->isChecked());
                     EXPECT_FALSE(Entry(menu, "Sort by date")->isChecked());
                     EXPECT_FALSE(Entry(menu, "Undo")->isEnabled());
                     EXPECT_EQ(state->records.selection, 0);
                 });
        Cancel();
    });
}

TEST_F(DatabaseBox, NoMenuOpensBesideTheRows) {
    WithBox([this] {
        QTest::mousePress(Viewport(), Qt::RightButton, Qt::NoModifier, PointOf(0));
        QTest::mouseRelease(Viewport(), Qt::RightButton, Qt::NoModifier, QPoint(20, 200));
        QTest::qWait(1);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        Cancel();
    });
}

TEST_F(DatabaseBox, AReleaseCountsAfterAPressElsewhere) {
    WithBox([this] {
        QTest::mousePress(Control(108), Qt::RightButton);
        WithMenu(
            [this] {
                QTest::mouseRelease(Control(108), Qt::RightButton, Qt::NoModifier,
                                    Control(108)->mapFrom(box, Viewport()->mapTo(box, PointOf(1))));
            },
            [](QMenu &menu) { EXPECT_NE(Entry(menu, "Audition Bravo"), nullptr); });
        Cancel();
    });
}

TEST_F(DatabaseBox, TheMenuActsOnTheSelection) {
    WithBox([this] {
        ListSelect(state->records, 2);
        FromMenu(0, "Remove Alpha from this database");
        EXPECT_EQ(Shown(), (Names{"Alpha", "Bravo"}));
        FromMenu(0, "Sort by position");
        EXPECT_EQ(Shown(), (Names{"Bravo", "Alpha"}));
        EXPECT_TRUE(Control<QAbstractButton>(110)->isChecked());
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, SelectInTheMenuIsOk) {
    EXPECT_EQ(WithBox([this] {
                  ListSelect(state->records, 2);
                  FromMenu(0, "Select Alpha");
                  QTest::qWait(1);
                  EXPECT_FALSE(box->isVisible());
              }),
              1);
    EXPECT_EQ(chosen, TestVoiceOf(TestFamilies[0], 0)); // charlie
}

TEST_F(DatabaseBox, AMenuThatIsClosedDoesNothing) {
    WithBox([this] {
        WithMenu([this] { RightRelease(0); },
                 [](QMenu &menu) { QTest::keyClick(&menu, Qt::Key_Escape); });
        EXPECT_TRUE(box->isVisible());
        EXPECT_EQ(Shown().size(), 3u);
        Cancel();
    });
}

TEST_F(DatabaseBox, TheMenuKeyOpensTheMenuOfTheSelectedRow) {
    WithBox([this] {
        ListSelect(state->records, 1);
        WithMenu([this] { QTest::keyClick(list, Qt::Key_F10, Qt::ShiftModifier); },
                 [](QMenu &menu) { EXPECT_NE(Entry(menu, "Audition Bravo"), nullptr); });
        Cancel();
    });
}

TEST_F(DatabaseBox, AuditionsByButtonAndMenu) {
    int heard = 0;
    TheDatabaseViews.Audition = [&](QWidget *owner, const VoiceObject &voice) {
        ++heard;
        EXPECT_EQ(owner, box);
        EXPECT_EQ(voice, TestVoiceOf(TestFamilies[0], 1)); // Alpha
    };
    WithBox([this] {
        Click(105);
        FromMenu(2, "Audition charlie");
        Cancel();
    });
    EXPECT_EQ(heard, 2);
}

TEST_F(DatabaseBox, PrintsFromTheMenu) {
    std::string heading;
    TheDatabaseViews.Print = [&heading](QWidget *, const RecordList &, const std::string &text) {
        heading = text;
        return 1;
    };
    WithBox([this] {
        FromMenu(0, "Print the Voices database");
        Cancel();
    });
    EXPECT_EQ(heading, std::string("Voices for ") + SynthDrivers[0]->name);
}

// ---- the tip

TEST_F(DatabaseBox, TheTipTellsOfTheRowUnderTheRestingMouse) {
    WithBox([this] {
        Move(PointOf(1));
        EXPECT_FALSE(Tip().isVisible());
        EXPECT_TRUE(QTest::qWaitFor([this] { return Tip().isVisible(); }));
        EXPECT_EQ(Tip().accessibleName().toStdString(), RecordTip(state->records.items[1]));
        EXPECT_TRUE(Viewport()->rect().contains(Tip().geometry()));
        Move(PointOf(1)); // the mouse has not moved
        EXPECT_TRUE(Tip().isVisible());
        Move(PointOf(1, 40));
        EXPECT_FALSE(Tip().isVisible());
        EXPECT_TRUE(QTest::qWaitFor([this] { return Tip().isVisible(); }));
        Cancel();
    });
}

TEST_F(DatabaseBox, TheTipGoesWithWhateverElseHappens) {
    WriteMany(100);
    WithBox([this] {
        const std::pair<const char *, std::function<void()>> happenings[] = {
            {"the mouse leaves",
             [this] {
                 QEvent leave(QEvent::Leave);
                 QApplication::sendEvent(Viewport(), &leave);
             }},
            {"the list scrolls", [this] { ListSetTopRow(state->records, 3); }},
            {"the list is sorted", [this] { Click(108); }},
            {"a button is pressed", [this] { QTest::mousePress(Viewport(), Qt::RightButton); }},
            {"the menu opens",
             [this] {
                 WithMenu([this] { RightRelease(0); },
                          [this](QMenu &) { EXPECT_FALSE(Tip().isVisible()); });
             }},
            {"another window is active",
             [this] {
                 QEvent inactive(QEvent::WindowDeactivate);
                 QApplication::sendEvent(box, &inactive);
             }},
        };
        int x = 20;
        for (const auto &[what, happen] : happenings) {
            Move(PointOf(1 + state->records.topRow, ++x));
            ASSERT_TRUE(QTest::qWaitFor([this] { return Tip().isVisible(); })) << what;
            happen();
            EXPECT_FALSE(Tip().isVisible()) << what;
            QTest::qWait(30); // and stays away
            EXPECT_FALSE(Tip().isVisible()) << what;
        }
        Cancel();
    });
}

TEST_F(DatabaseBox, NoTipShowsBesideTheRowsOrWhenItIsOff) {
    WithBox([this] {
        Move(QPoint(20, 200));
        QTest::qWait(40);
        EXPECT_FALSE(Tip().isVisible());
        // From a row on, before the time is over.
        FileTipDelay = 30;
        Move(PointOf(1));
        Move(QPoint(20, 201));
        QTest::qWait(60);
        EXPECT_FALSE(Tip().isVisible());
        FileTipShow = 0;
        Move(PointOf(1));
        QTest::qWait(60);
        EXPECT_FALSE(Tip().isVisible());
        Cancel();
    });
}

// ---- the hold

TEST_F(DatabaseBox, AShortClickEditsNothing) {
    DatabaseManFieldDelay = 100;
    WithBox([this] {
        Press(1);
        Release(1);
        QTest::qWait(150);
        EXPECT_EQ(TextEditor(), nullptr);
        EXPECT_EQ(state->changed, 0u);
        Cancel();
    });
}

TEST_F(DatabaseBox, AHeldNameIsEditedOverItsColumn) {
    WithBox([this] {
        Hold(1, 20);
        QLineEdit *editor = TextEditor();
        ASSERT_NE(editor, nullptr);
        EXPECT_EQ(editor->text(), "Bravo");
        EXPECT_EQ(editor->maxLength(), 64);
        EXPECT_EQ(editor->geometry(), QRect(6, RowHeight - 1, 160, RowHeight + 2));
        EXPECT_EQ(editor->font(), list->font());
        EXPECT_TRUE(editor->hasFocus());
        // The release that ends the hold does not end the editor.
        Release(1);
        EXPECT_EQ(TextEditor(), editor);
        EXPECT_EQ(state->changed, 0u);
        editor->selectAll();
        QTest::keyClicks(editor, "Zulu");
        QTest::keyClick(editor, Qt::Key_Return);
        EXPECT_TRUE(box->isVisible());
        EXPECT_EQ(Shown(), (Names{"Alpha", "charlie", "Zulu"}));
        EXPECT_EQ(state->records.selection, 2);
        EXPECT_EQ(state->changed, 1u);
        EXPECT_TRUE(DatabaseUndoAvailable());
        EXPECT_EQ(desktop.sounds.size(), 1u);
        EXPECT_TRUE(list->hasFocus());
        Click(1);
    });
    EXPECT_EQ(InFile("Voices"), (Names{"Alpha", "charlie", "Zulu"}));
}

TEST_F(DatabaseBox, AHeldSourceIsEditedOverItsColumn) {
    WithBox([this] {
        Hold(0, 172);
        Release(0, 172);
        ASSERT_NE(TextEditor(), nullptr);
        EXPECT_EQ(TextEditor()->text(), "zoo");
        EXPECT_EQ(TextEditor()->geometry(), QRect(172, -1, 160, RowHeight + 2));
        TextEditor()->setText(QString::fromLatin1("b\xE4nk"));
        QTest::keyClick(TextEditor(), Qt::Key_Enter);
        EXPECT_EQ(RecordFields(state->records.items[0])->source, "b\xE4nk");
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, EscInAnEditorCancelsItAloneAndTheGestureCountsAsAChange) {
    WithBox([this] {
        Hold(1, 20);
        Release(1);
        ASSERT_NE(TextEditor(), nullptr);
        QTest::keyClicks(TextEditor(), "Zulu");
        QTest::keyClick(TextEditor(), Qt::Key_Escape);
        EXPECT_EQ(TextEditor(), nullptr);
        EXPECT_TRUE(box->isVisible());
        EXPECT_EQ(Shown(), (Names{"Alpha", "Bravo", "charlie"}));
        EXPECT_EQ(state->changed, 1u);
        EXPECT_FALSE(DatabaseUndoAvailable());
        EXPECT_EQ(desktop.sounds.size(), 1u);
        ExpectToBeAsked(ResultYes);
        Cancel();
    });
}

TEST_F(DatabaseBox, APressOutsideAcceptsTheEditorAndDoesNothingElse) {
    WithBox([this] {
        Hold(1, 20);
        Release(1);
        ASSERT_NE(TextEditor(), nullptr);
        TextEditor()->selectAll();
        QTest::keyClicks(TextEditor(), "Beta");
        QTest::mouseClick(Viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(2));
        EXPECT_EQ(TextEditor(), nullptr);
        EXPECT_EQ(Shown(), (Names{"Alpha", "Beta", "charlie"}));
        EXPECT_EQ(state->records.selection, 1); // not the row that was pressed
        Hold(1, 20);
        Release(1);
        ASSERT_NE(TextEditor(), nullptr);
        TextEditor()->selectAll();
        QTest::keyClicks(TextEditor(), "Gamma");
        Click(2); // Cancel takes the editor away, and no more
        EXPECT_TRUE(box->isVisible());
        EXPECT_EQ(Shown(), (Names{"Alpha", "charlie", "Gamma"}));
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, TheWheelAcceptsTheEditor) {
    WithBox([this] {
        Hold(1, 20);
        Release(1);
        ASSERT_NE(TextEditor(), nullptr);
        QWheelEvent event(QPointF(5, 5), box->mapToGlobal(QPointF(5, 5)), {}, {0, -120},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(box, &event);
        EXPECT_EQ(TextEditor(), nullptr);
        EXPECT_TRUE(DatabaseUndoAvailable());
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, TheCloseBoxAcceptsTheEditorAndThenActs) {
    WithBox([this] {
        Hold(1, 20);
        Release(1);
        ASSERT_NE(TextEditor(), nullptr);
        TextEditor()->setText("Beta");
        ExpectToBeAsked(ResultYes, [this](MessageRequest &) {
            EXPECT_EQ(Shown(), (Names{"Alpha", "Beta", "charlie"}));
        });
        box->close();
    });
}

TEST_F(DatabaseBox, AnUnchangedEditIsAnEdit) {
    WithBox([this] {
        Hold(1, 20);
        Release(1);
        ASSERT_NE(TextEditor(), nullptr);
        QTest::keyClick(TextEditor(), Qt::Key_Return);
        EXPECT_TRUE(DatabaseUndoAvailable());
        EXPECT_EQ(state->changed, 1u);
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, AHeldDateIsSetInABox) {
    WithBox([this] {
        WithSecondBox([this] { Hold(0, 338); },
                      [this](QDialog &second) {
                          EXPECT_EQ(second.windowTitle(), "Time and Date");
                          EXPECT_EQ(second.parentWidget(), box);
                          auto *field = second.findChild<QLineEdit *>("control_103");
                          EXPECT_EQ(field->text().toInt(), 9);
                          field->setText("30");
                          QTest::mouseClick(second.findChild<QPushButton *>("control_1"),
                                            Qt::LeftButton);
                      });
        EXPECT_EQ(RecordFields(state->records.items[0])->date, 30u);
        EXPECT_TRUE(DatabaseUndoAvailable());
        EXPECT_EQ(state->changed, 1u);
        EXPECT_EQ(desktop.sounds.size(), 1u);
        Release(0, 338);
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, ACancelledDateStaysAndCountsAsAChange) {
    WithBox([this] {
        WithSecondBox([this] { Hold(0, 487); },
                      [](QDialog &second) {
                          second.findChild<QLineEdit *>("control_103")->setText("30");
                          QTest::mouseClick(second.findChild<QWidget *>("control_109"),
                                            Qt::LeftButton, {}, {5, 5});
                          EXPECT_EQ(StartMonday, 1u);
                          QTest::mouseClick(second.findChild<QPushButton *>("control_2"),
                                            Qt::LeftButton);
                      });
        EXPECT_EQ(RecordFields(state->records.items[0])->date, 9u);
        EXPECT_EQ(StartMonday, 0u);
        EXPECT_FALSE(DatabaseUndoAvailable());
        EXPECT_EQ(state->changed, 1u);
        Release(0, 487);
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, AHeldPositionIsChosenFromAList) {
    WithBox([this] {
        for (const int x : {494, 541}) { // as far as it is hit, not as far as it is drawn
            Hold(0, x);
            Release(0, x);
            QComboBox *editor = ChoiceEditor();
            ASSERT_NE(editor, nullptr) << x;
            EXPECT_EQ(editor->geometry(), QRect(494, 0, 48, RowHeight));
            EXPECT_EQ(editor->count(), 32);
            EXPECT_EQ(editor->itemText(0), "1");
            EXPECT_EQ(editor->itemText(31), "32");
            EXPECT_EQ(editor->currentIndex(), 5);
            editor->setCurrentIndex(31);
            QTest::keyClick(editor, Qt::Key_Escape);
            EXPECT_EQ(RecordFields(state->records.items[0])->position, 5u);
            EXPECT_FALSE(DatabaseUndoAvailable());
        }
        Hold(0, 500);
        Release(0, 500);
        ChoiceEditor()->setCurrentIndex(31);
        QTest::keyClick(ChoiceEditor(), Qt::Key_Return);
        EXPECT_EQ(RecordFields(state->records.items[0])->position, 31u);
        EXPECT_TRUE(DatabaseUndoAvailable());
        EXPECT_TRUE(box->isVisible());
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, APositionBehindTheBankSelectsNoEntryAndStays) {
    for (const std::uint32_t position : {32u, 0xFFFFFFFFu}) {
        Write("Voices", {{"Alpha", "", position, 0}});
        WithBox([this, position] {
            Hold(0, 500);
            Release(0, 500);
            ASSERT_NE(ChoiceEditor(), nullptr);
            EXPECT_EQ(ChoiceEditor()->currentIndex(), -1);
            QTest::keyClick(ChoiceEditor(), Qt::Key_Return);
            EXPECT_EQ(RecordFields(state->records.items[0])->position, position);
            EXPECT_FALSE(DatabaseUndoAvailable());
            EXPECT_EQ(state->changed, 1u);
            EXPECT_FALSE(desktop.sounds.empty());
            WarnDatabaseChanged = 0;
            Cancel();
        });
    }
}

TEST_F(DatabaseBox, AHeldGapBetweenColumnsCountsAsAChange) {
    for (const int x : {5, 166, 171, 332, 337, 488, 493, 542}) {
        WithBox([this, x] {
            DatabaseSortMode = 110; // without sorting
            Hold(0, x);
            EXPECT_EQ(TextEditor(), nullptr) << x;
            EXPECT_EQ(ChoiceEditor(), nullptr) << x;
            EXPECT_EQ(state->changed, 1u) << x;
            EXPECT_EQ(Shown(), (Names{"Bravo", "Alpha", "charlie"})) << x;
            EXPECT_FALSE(DatabaseUndoAvailable());
            Release(0, x);
            WarnDatabaseChanged = 0;
            DatabaseSortMode = 107;
            Cancel();
        });
    }
    EXPECT_EQ(desktop.sounds.size(), 8u);
}

TEST_F(DatabaseBox, AHoldBesideTheRowsIsNone) {
    WithBox([this] {
        QTest::mousePress(Viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 200));
        QTest::qWait(60);
        EXPECT_EQ(state->changed, 0u);
        QTest::mouseRelease(Viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 200));
        // Let go before the mouse comes to a row.
        DatabaseManFieldDelay = 30;
        QTest::mousePress(Viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 200));
        QTest::mouseRelease(Viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 200));
        Move(PointOf(1));
        QTest::qWait(80);
        EXPECT_EQ(state->changed, 0u);
        // From a row on beside the list.
        Press(1);
        Move(QPoint(-5, PointOf(1).y()), Qt::LeftButton);
        QTest::qWait(80);
        EXPECT_EQ(state->changed, 0u);
        Release(1);
        Cancel();
    });
}

TEST_F(DatabaseBox, AHoldThatMovesToAnotherRowEditsThatOne) {
    DatabaseManFieldDelay = 30;
    WithBox([this] {
        Press(0);
        Move(PointOf(2), Qt::LeftButton);
        ASSERT_TRUE(QTest::qWaitFor([this] { return TextEditor() != nullptr; }));
        EXPECT_EQ(TextEditor()->text(), "charlie");
        Release(2);
        QTest::keyClick(TextEditor(), Qt::Key_Escape);
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, AnEditorAndNoTip) {
    DatabaseManFieldDelay = 400;
    WithBox([this] {
        Press(1);
        Move(PointOf(1, 30), Qt::LeftButton);
        EXPECT_TRUE(QTest::qWaitFor([this] { return Tip().isVisible(); }));
        EXPECT_TRUE(QTest::qWaitFor([this] { return TextEditor() != nullptr; }));
        EXPECT_FALSE(Tip().isVisible());
        Move(PointOf(2, 40));
        QTest::qWait(40);
        EXPECT_FALSE(Tip().isVisible());
        Release(1);
        QTest::keyClick(TextEditor(), Qt::Key_Escape);
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, AMoveJustBeforeTheEditorOpensBringsNoTip) {
    struct MoveBefore : QObject {
        std::function<void()> move;
        bool eventFilter(QObject *, QEvent *event) override {
            if (event->type() == QEvent::MetaCall) {
                move();
            }
            return false;
        }
    };
    WithBox([this] {
        MoveBefore filter;
        filter.move = [this] { Move(PointOf(1, 40), Qt::LeftButton); };
        list->installEventFilter(&filter); // between the end of the hold and what it has posted
        Hold(1, 20);
        list->removeEventFilter(&filter);
        Release(1);
        ASSERT_NE(TextEditor(), nullptr);
        QTest::qWait(40);
        EXPECT_FALSE(Tip().isVisible());
        QTest::keyClick(TextEditor(), Qt::Key_Escape);
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, AHoldThatEditsNothingStillMakesCancelPrompt) {
    WithBox([this] {
        Hold(1, 168); // between name and source
        Release(1, 168);
        const ExpectedMessage question = {
            .text = LoseChanges, .buttons = {"Yes", "No"}, .answer = ResultNo};
        desktop.Expect(question);
        Cancel();
        EXPECT_TRUE(box->isVisible());
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, AHoldIsOverWhenTheWindowIsLeft) {
    DatabaseManFieldDelay = 40;
    WithBox([this] {
        Press(1);
        QEvent inactive(QEvent::WindowDeactivate);
        QApplication::sendEvent(list, &inactive);
        QTest::qWait(80);
        EXPECT_EQ(TextEditor(), nullptr);
        EXPECT_EQ(state->changed, 0u);
        Release(1);
        Cancel();
    });
}

// ---- an editor and those who use the window without mouse and keys

TEST_F(DatabaseBox, ACommandAcceptsTheEditorFirst) {
    WithBox([this] {
        Hold(0, 20);
        Release(0);
        ASSERT_NE(TextEditor(), nullptr);
        TextEditor()->setText("Zulu");
        Control<QAbstractButton>(106)->click();
        EXPECT_EQ(TextEditor(), nullptr);
        EXPECT_EQ(Shown(), (Names{"Bravo", "charlie"})); // Zulu was selected
        FromMenu(0, "Undo");
        EXPECT_EQ(Shown(), (Names{"Bravo", "charlie", "Zulu"}));
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, AHeaderThatIsToggledAcceptsTheEditorFirst) {
    WithBox([this] {
        Hold(1, 20);
        Release(1);
        ASSERT_NE(TextEditor(), nullptr);
        TextEditor()->setText("Zulu");
        Control<QAbstractButton>(110)->toggle();
        EXPECT_EQ(TextEditor(), nullptr);
        EXPECT_EQ(Shown(), (Names{"Zulu", "Alpha", "charlie"}));
        EXPECT_EQ(state->records.selection, 0);
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, OkStoresWhatStandsInTheEditor) {
    EXPECT_EQ(WithBox([this] {
                  Hold(0, 20);
                  Release(0);
                  ASSERT_NE(TextEditor(), nullptr);
                  TextEditor()->setText("Zulu");
                  Control<QAbstractButton>(1)->click();
                  EXPECT_FALSE(box->isVisible());
              }),
              1);
    EXPECT_EQ(InFile("Voices"), (Names{"Bravo", "charlie", "Zulu"}));
    EXPECT_EQ(desktop.sounds.size(), 1u);
}

TEST_F(DatabaseBox, CancelAsksAboutWhatStandsInTheEditor) {
    WithBox([this] {
        Hold(0, 20);
        Release(0);
        ASSERT_NE(TextEditor(), nullptr);
        TextEditor()->setText("Zulu");
        ExpectToBeAsked(ResultYes, [this](MessageRequest &) {
            EXPECT_EQ(Shown(), (Names{"Bravo", "charlie", "Zulu"}));
        });
        Control<QAbstractButton>(2)->click();
    });
}

TEST_F(DatabaseBox, AnotherRowThatIsSelectedLeavesTheEditToItsRecord) {
    const QString texts[] = {"Zulu", "Aaa"};
    for (const QString &text : texts) {
        WithBox([this, text] {
            Hold(1, 20);
            Release(1);
            ASSERT_NE(TextEditor(), nullptr);
            EXPECT_EQ(TextEditor()->text(), "Bravo");
            TextEditor()->setText(text);
            QAccessible::queryAccessibleInterface(list)->tableInterface()->selectRow(2);
            EXPECT_TRUE(QTest::qWaitFor([this] { return !TextEditor(); }));
            EXPECT_EQ(Shown(), text == "Zulu" ? (Names{"Alpha", "charlie", "Zulu"})
                                              : (Names{"Aaa", "Alpha", "charlie"}));
            ASSERT_NE(state->records.selection, NoRow);
            const auto selected = static_cast<std::size_t>(state->records.selection);
            EXPECT_EQ(Shown()[selected], "charlie");
            EXPECT_EQ(list->currentIndex().row(), state->records.selection);
            WarnDatabaseChanged = 0;
            Cancel();
        });
    }
}

TEST_F(DatabaseBox, AnotherRowAndACommandLeaveTheEditToItsRecord) {
    WithBox([this] {
        Hold(1, 500);
        Release(1, 500);
        ASSERT_NE(ChoiceEditor(), nullptr);
        ChoiceEditor()->setCurrentIndex(20);
        QAccessible::queryAccessibleInterface(list)->tableInterface()->selectRow(2);
        Control<QAbstractButton>(106)->click(); // charlie
        EXPECT_EQ(ChoiceEditor(), nullptr);
        EXPECT_EQ(Shown(), (Names{"Alpha", "Bravo"}));
        EXPECT_EQ(RecordFields(state->records.items[1])->position, 20u);
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, AListThatIsScrolledFromElsewhereAcceptsTheEditor) {
    WriteMany(100);
    WithBox([this] {
        Hold(0, 20);
        Release(0);
        ASSERT_NE(TextEditor(), nullptr);
        TextEditor()->setText("Aaa");
        list->scrollTo(list->model()->index(99, 0), QAbstractItemView::EnsureVisible);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !TextEditor(); }));
        EXPECT_EQ(Shown()[0], "Aaa");
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, NothingRunsBehindTheBoxOfADate) {
    WithBox([this] {
        WithSecondBox(
            [this] { Hold(0, 338); },
            [this](QDialog &second) {
                Control<QAbstractButton>(106)->click();
                Control<QAbstractButton>(1)->click();
                EXPECT_TRUE(box->isVisible());
                second.findChild<QLineEdit *>("control_103")->setText("30");
                QAccessible::queryAccessibleInterface(list)->tableInterface()->selectRow(2);
                QTest::mouseClick(second.findChild<QPushButton *>("control_1"), Qt::LeftButton);
            });
        EXPECT_EQ(Shown(), (Names{"Alpha", "Bravo", "charlie"}));
        EXPECT_EQ(RecordFields(state->records.items[0])->date, 30u);
        EXPECT_EQ(RecordFields(state->records.items[2])->date, 7u);
        Release(0, 338);
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, TheEndOfTheProgramTellsNothingOfAnOpenEditor) {
    std::uint32_t changed = 1;
    const auto show = TheDatabaseViews.ShowBox;
    TheDatabaseViews.ShowBox = [&](QWidget *owner, DatabaseWindow &opened) {
        state = &opened;
        const int result = show(owner, opened); // which destroys the box as it stands
        changed = opened.changed;
        return result;
    };
    QTimer::singleShot(0, [this] {
        box = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        list = dynamic_cast<ListBoxView *>(box->findChild<QWidget *>("control_102"));
        Hold(0, 20);
        Release(0);
        EXPECT_NE(TextEditor(), nullptr);
        QCoreApplication::exit();
        EXPECT_TRUE(box->isVisible());
    });
    EXPECT_EQ(RunDatabaseWindow(nullptr, voices, NoRow, 0), 0);
    EXPECT_EQ(changed, 0u);
    EXPECT_TRUE(desktop.sounds.empty());
    // A loop that ends by itself lets the toolkit forget that the program was to end.
    QTimer::singleShot(0, [] { QCoreApplication::exit(); });
    QApplication::exec();
}

// ---- the databases

TEST_F(DatabaseBox, ADatabaseIsShownWhenTheDropDownListCloses) {
    WithBox([this] {
        Combo().showPopup();
        QTest::keyClick(Combo().view(), Qt::Key_Up);
        EXPECT_EQ(Shown().size(), 3u);
        QTest::keyClick(Combo().view(), Qt::Key_Return);
        QTest::qWait(1);
        EXPECT_EQ(DatabaseCurrentName, "Brass");
        EXPECT_EQ(Shown(), (Names{"Horn", "Tuba"}));
        EXPECT_EQ(desktop.sounds.size(), 1u);
        Cancel();
    });
}

TEST_F(DatabaseBox, TheDropDownListThatClosesOnTheSameNameLoadsItAnew) {
    WithBox([this] {
        Click(106);
        EXPECT_EQ(Shown().size(), 2u);
        Combo().showPopup();
        QTest::keyClick(Combo().view(), Qt::Key_Escape);
        QTest::qWait(1);
        EXPECT_TRUE(box->isVisible());
        EXPECT_EQ(Shown().size(), 3u);
        EXPECT_EQ(state->changed, 1u);
        EXPECT_TRUE(DatabaseUndoAvailable());
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, ArrowsOnTheClosedBoxLoadNothing) {
    WithBox([this] {
        Combo().setFocus();
        QTest::keyClick(&Combo(), Qt::Key_Up);
        EXPECT_EQ(Combo().currentText(), "Brass");
        EXPECT_EQ(state->shownName, "Brass");
        QTest::qWait(1);
        EXPECT_EQ(Shown().size(), 3u);
        EXPECT_EQ(DatabaseCurrentName, "Voices");
        EXPECT_TRUE(desktop.sounds.empty());
        desktop.ExpectYesNo("Do you really want to delete the Brass database?", ResultNo);
        Click(104);
        Combo().showPopup();
        Combo().hidePopup();
        QTest::qWait(1);
        EXPECT_EQ(DatabaseCurrentName, "Brass");
        Cancel();
    });
}

TEST_F(DatabaseBox, TheBoxGoesBackToTheOldNameWhenTheUserStays) {
    CarefulMode = 1;
    WithBox([this] {
        Click(106);
        desktop.ExpectYesNoCancel("The changes that you have made to the Voices database have not "
                                  "been saved.\n\nClick on Yes to save them, click on No to lose "
                                  "them, or click on Cancel to return to the Database window.",
                                  ResultCancel);
        Combo().showPopup();
        QTest::keyClick(Combo().view(), Qt::Key_Up);
        QTest::keyClick(Combo().view(), Qt::Key_Return);
        QTest::qWait(1);
        EXPECT_EQ(Combo().currentText(), "Voices");
        EXPECT_EQ(Shown().size(), 2u);
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, TheBoxKeepsAListedNameWhenTheUserStaysInAnUnlistedDatabase) {
    CarefulMode = 1;
    TheDatabaseViews.AskForNewName = [](QWidget *, const Names &, const std::string &) {
        return std::optional<std::string>("Strings");
    };
    WithBox([this] {
        desktop.ExpectYesNoCancel("Do you want to copy the contents of your existing database, "
                                  "Voices, to your new database, Strings?",
                                  ResultNo);
        Click(103);
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
            desktop.ExpectYesNoCancel(
                "The changes that you have made to the Strings database have not been "
                "saved.\n\nClick on Yes to save them, click on No to lose them, or click on Cancel "
                "to return to the Database window.",
                ResultCancel);
            Combo().showPopup();
            QTest::keyClick(Combo().view(), Qt::Key_Up);
            QTest::keyClick(Combo().view(), key);
            QTest::qWait(1);
            EXPECT_EQ(Combo().currentText(), "Voices");
            EXPECT_EQ(state->shownName, "Voices");
            EXPECT_EQ(DatabaseCurrentName, "Strings");
        }
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

TEST_F(DatabaseBox, NamesThatLookTheSameAreDifferentDatabases) {
    // Neither is UTF-8.
    Write("A\xFE", {{"one", "", 0, 0}});
    Write("A\xFF", {{"other", "", 0, 0}});
    WithBox([this] {
        EXPECT_EQ(Combo().itemText(0), Combo().itemText(1));
        for (const auto &[index, name, record] :
             {std::tuple(1, "A\xFF", "other"), {0, "A\xFE", "one"}, {1, "A\xFF", "other"}}) {
            Combo().showPopup();
            Combo().setCurrentIndex(index);
            Combo().hidePopup();
            QTest::qWait(1);
            EXPECT_EQ(DatabaseCurrentName, name);
            EXPECT_EQ(Shown(), Names{record});
        }
        desktop.ExpectYesNo("Do you really want to delete the A\xFF database?", ResultYes);
        Click(104);
        EXPECT_EQ(desktop.trashed, Names{PathOf("A\xFF")});
        Cancel();
    });
}

TEST_F(DatabaseBox, NewKeepsTheNameThatIsShown) {
    TheDatabaseViews.AskForNewName = [this](QWidget *owner, const Names &existing,
                                            const std::string &start) {
        EXPECT_EQ(owner, box);
        EXPECT_EQ(existing, (Names{"Brass", "Voices"}));
        EXPECT_EQ(start, "Voices");
        return std::optional<std::string>("Strings");
    };
    WithBox([this] {
        desktop.ExpectYesNoCancel("Do you want to copy the contents of your existing database, "
                                  "Voices, to your new database, Strings?",
                                  ResultNo);
        Click(103);
        EXPECT_EQ(Combo().currentText(), "Voices");
        EXPECT_EQ(Combo().count(), 2);
        EXPECT_EQ(Shown(), Names());
        Click(1);
    });
    EXPECT_EQ(ReadTestFile(PathOf("Strings")).size(), 152u);
}

TEST_F(DatabaseBox, NewAsksForANameInABox) {
    WithBox([this] {
        desktop.ExpectYesNoCancel("Do you want to copy the contents of your existing database, "
                                  "Voices, to your new database, Strings?",
                                  ResultYes);
        WithSecondBox([this] { Click(103); },
                      [](QDialog &second) {
                          EXPECT_EQ(second.windowTitle(), "New Database");
                          auto *names = second.findChild<QComboBox *>("control_65");
                          EXPECT_EQ(names->currentText(), "Voices");
                          names->setCurrentText("Strings");
                          QTest::mouseClick(second.findChild<QPushButton *>("control_1"),
                                            Qt::LeftButton);
                      });
        EXPECT_EQ(Shown().size(), 3u);
        EXPECT_EQ(DatabaseCurrentName, "Strings");
        WarnDatabaseChanged = 0;
        Cancel();
    });
    EXPECT_EQ(InFile("Strings"), (Names{"charlie", "Alpha", "Bravo"}));
}

TEST_F(DatabaseBox, DeleteTakesTheNameAway) {
    DatabaseCurrentName = "Brass";
    WithBox([this] {
        desktop.ExpectYesNo("Do you really want to delete the Brass database?", ResultYes);
        Click(104);
        EXPECT_EQ(Combo().count(), 1);
        EXPECT_EQ(Combo().currentText(), "Voices");
        EXPECT_EQ(Shown().size(), 3u);
        EXPECT_EQ(desktop.trashed, Names{PathOf("Brass")});
        desktop.ExpectMessage("The default database can't be removed.");
        Click(104);
        Cancel();
    });
}

TEST_F(DatabaseBox, ShowsNoNameWhenTheCurrentOneIsNoFile) {
    DatabaseCurrentName = "no such folder/Strings";
    WithBox([this] {
        EXPECT_EQ(Combo().currentText(), "");
        EXPECT_EQ(Combo().count(), 2);
        Combo().showPopup();
        Combo().hidePopup();
        QTest::qWait(1);
        EXPECT_EQ(DatabaseCurrentName, "no such folder/Strings");
        Cancel();
    });
}

TEST_F(DatabaseBox, TheDeleteButtonRemovesTheSelectedRecord) {
    WithBox([this] {
        Click(106);
        EXPECT_EQ(Shown(), (Names{"Bravo", "charlie"}));
        Click(106);
        Click(106);
        EXPECT_EQ(Shown(), Names{"charlie"});
        WarnDatabaseChanged = 0;
        Cancel();
    });
}

} // namespace
} // namespace tonewright
