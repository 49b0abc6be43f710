// "Open any dump..." of the Extras menu: from the file to the list.
#include "window_fixture.h"

#include "extras/list_access.h"
#include "shell/view/desktop_qt.h"
#include "support/dump_bytes.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QSpinBox>
#include <QTableView>

#include <filesystem>
#include <fstream>

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

class OpenAnyDump : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        MakeProgramFolders();
        OpenBank();
    }

    // Chooses the command, and this file; the box is ready to be used.
    void WithDump(const std::string &path, const std::function<void(QDialog &)> &use) {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Any, .answer = path});
        EXPECT_TRUE(WithBox([this] { Trigger(CommandOpenAnyDump); },
                            [&](QDialog &box) {
                                ASSERT_EQ(box.objectName(), "DumpBox");
                                box.activateWindow();
                                ASSERT_TRUE(QTest::qWaitFor(
                                    [&] { return IsRead(box) && box.isActiveWindow(); }));
                                use(box);
                                if (box.isVisible()) {
                                    QTest::keyClick(&box, Qt::Key_Escape);
                                }
                            }));
    }
    void WithDump(const DumpBytes &bytes, const std::function<void(QDialog &)> &use) {
        WithDump(home.Write("found.bin", bytes), use);
    }
    static bool IsRead(QDialog &box) { return TextOf(box, "summary") != "Reading the file..."; }

    template <typename Widget> static Widget &Part(QDialog &box, const char *name) {
        auto *part = box.findChild<Widget *>(name);
        EXPECT_NE(part, nullptr) << name;
        return *part;
    }
    static QTableView &Dumps(QDialog &box) { return Part<QTableView>(box, "dumps"); }
    static QTableView &Voices(QDialog &box) { return Part<QTableView>(box, "voices"); }
    static std::string TextOf(QDialog &box, const char *label) {
        return Part<QLabel>(box, label).text().toStdString();
    }
    static void Click(QDialog &box, const char *button) {
        QTest::mouseClick(&Part<QPushButton>(box, button), Qt::LeftButton);
    }
    static void ClickRow(QTableView &table, int row, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QTest::mouseClick(table.viewport(), Qt::LeftButton, keys,
                          table.visualRect(table.model()->index(row, 1)).center());
    }
    // The texts of a row, with bars between them.
    static std::string RowOf(QTableView &table, int row) {
        std::string line;
        for (int column = 0; column < table.model()->columnCount(); ++column) {
            line += (column == 0 ? "" : "|") +
                    table.model()->index(row, column).data().toString().toStdString();
        }
        return line;
    }
    static int SelectedRows(QTableView &table) {
        return static_cast<int>(table.selectionModel()->selectedRows().size());
    }
};

// Two banks with faults, one of them for another channel, around something else.
DumpBytes TwoBanks() {
    DumpBytes second = TestBankMessage(3);
    second[4102] ^= 1;
    return Join({TestBank(), TextBytes("between"), second});
}

TEST_F(OpenAnyDump, ShowsDumpsAndVoicesInWords) {
    WithDump(TwoBanks(), [](QDialog &box) {
        EXPECT_EQ(box.windowTitle(), "Open Any Dump");
        EXPECT_EQ(TextOf(box, "title"), "found.bin");
        EXPECT_EQ(TextOf(box, "summary"),
                  "There are 64 voices in this file, in 2 dumps, of which one is not as it should "
                  "be.");
        ASSERT_EQ(Dumps(box).model()->rowCount(), 3);
        EXPECT_EQ(RowOf(Dumps(box), 0), "0|4,104|DX7 bank, 32 voices|");
        EXPECT_EQ(RowOf(Dumps(box), 1), "4,104|7|unknown data|");
        EXPECT_EQ(RowOf(Dumps(box), 2),
                  "4,111|4,104|DX7 bank, 32 voices|for channel 3, wrong checksum");
        EXPECT_EQ(SelectedRows(Dumps(box)), 1);
        EXPECT_EQ(Dumps(box).currentIndex().row(), 0);
        EXPECT_TRUE(Dumps(box).hasFocus());
        ASSERT_EQ(Voices(box).model()->rowCount(), 32);
        EXPECT_EQ(RowOf(Voices(box), 4), "5|VOICE 05|DX7|5|");
        EXPECT_EQ(SelectedRows(Voices(box)), 32);
        EXPECT_EQ(TextOf(box, "count"), "32 of 32 selected");
        ClickRow(Dumps(box), 2);
        EXPECT_EQ(TextOf(box, "about"), "DX7 bank, 32 voices, 4,104 bytes from 4,111 (hexadecimal "
                                        "100F): for channel 3, wrong checksum.");
        EXPECT_EQ(RowOf(Voices(box), 0), "33|VOICE 01|DX7|1|");
    });
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(OpenAnyDump, ABankOfItBecomesANewBankWithoutAName) {
    const std::string former = CurrentDocumentPath;
    WithDump(TestPackedVoices(64, 10), [](QDialog &box) {
        ClickRow(Voices(box), 0);
        ClickRow(Voices(box), 2, Qt::ControlModifier);
        EXPECT_EQ(TextOf(box, "count"), "2 of 64 selected");
        Click(box, "newBank");
        EXPECT_FALSE(box.isVisible());
    });
    EXPECT_EQ(Names(0, 2), (Strings{"VOICE 11", "VOICE 13", "INIT VOICE"}));
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(CurrentDocumentPath, DefaultDocumentName());
    EXPECT_NE(CurrentDocumentPath, former);
    const std::string source = "From " + home.File("found.bin");
    EXPECT_EQ(desktop.statusTexts.back().substr(0, source.size()), source);
    QStatusTipEvent hint("A hint"), noHint("");
    QCoreApplication::sendEvent(window.get(), &hint);
    QCoreApplication::sendEvent(window.get(), &noHint);
    EXPECT_EQ(desktop.statusTexts.back().substr(0, source.size()), source);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(NameAt(0), "VOICE 01");
}

TEST_F(OpenAnyDump, TheKeyboardAloneIsEnough) {
    WithDump(TwoBanks(), [](QDialog &box) {
        QTest::keyClick(&Dumps(box), Qt::Key_End);
        EXPECT_EQ(RowOf(Voices(box), 0), "33|VOICE 01|DX7|1|");
        QTest::keyClick(&Dumps(box), Qt::Key_Tab);
        ASSERT_TRUE(Voices(box).hasFocus());
        QTest::keyClick(&Voices(box), Qt::Key_Home);
        QTest::keyClick(&Voices(box), Qt::Key_Down);
        QTest::keyClick(&Voices(box), Qt::Key_Down, Qt::ShiftModifier);
        EXPECT_EQ(TextOf(box, "count"), "2 of 32 selected");
        QTest::keyClick(&box, Qt::Key_P, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return TextOf(box, "count") == "Put at rows 1 to 2"; }));
        EXPECT_TRUE(box.isVisible());
        QTest::keyClick(&Voices(box), Qt::Key_End);
        EXPECT_EQ(TextOf(box, "count"), "1 of 32 selected");
        QTest::keyClick(&box, Qt::Key_P, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return TextOf(box, "count") == "Put at row 3"; }));
        QTest::keyClick(&Voices(box), Qt::Key_Home);
        QTest::keyClick(&box, Qt::Key_Escape);
        EXPECT_FALSE(box.isVisible());
    });
    EXPECT_EQ(Names(0, 3), (Strings{"VOICE 02", "VOICE 03", "VOICE 32", "VOICE 04"}));
    EXPECT_EQ(MainList.selection, 3);
    EXPECT_EQ(UndoCount(), 2);
}

TEST_F(OpenAnyDump, VoicesGoToTheSelectedRowOrToAnother) {
    ListSelect(MainList, 9);
    WithDump(TestBank(), [](QDialog &box) {
        EXPECT_EQ(Part<QSpinBox>(box, "row").value(), 10);
        ClickRow(Voices(box), 0);
        Click(box, "put");
        EXPECT_EQ(Part<QSpinBox>(box, "row").value(), 11);
        Part<QSpinBox>(box, "row").setValue(32);
        ClickRow(Voices(box), 1);
        ClickRow(Voices(box), 2, Qt::ControlModifier);
        Click(box, "put"); // there is room for one of them
        EXPECT_EQ(TextOf(box, "count"), "Put at row 32, no room for 1");
    });
    EXPECT_EQ(Names(9, 10), (Strings{"VOICE 01", "VOICE 11"}));
    EXPECT_EQ(NameAt(31), "VOICE 02");
}

TEST_F(OpenAnyDump, OnlyRowsOfTheListCanBeChosenAndAllOfThem) {
    while (ListCount(MainList) < 40) {
        ListInsert(MainList, ListCount(MainList));
    }
    WithDump(TestPackedVoices(64), [](QDialog &box) {
        EXPECT_EQ(Part<QSpinBox>(box, "row").maximum(), 40);
        Click(box, "put");
        EXPECT_EQ(TextOf(box, "count"), "Put at rows 1 to 40, no room for 24");
    });
    ListDelete(MainList, 39);
    WithDump(TestBank(), [](QDialog &box) { EXPECT_EQ(Part<QSpinBox>(box, "row").maximum(), 39); });
}

TEST_F(OpenAnyDump, ReturnMakesANewBankOfTheSelectedDump) {
    ListReset(MainList);
    WithDump(TestBank(), [](QDialog &box) {
        QTest::keyClick(&Dumps(box), Qt::Key_Return);
        EXPECT_FALSE(box.isVisible());
    });
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(NameAt(31), "VOICE 32");
}

TEST_F(OpenAnyDump, SeveralDumpsTogetherAreOneBank) {
    WithDump(Join({TestVoiceMessage(), TestVoiceFile(), TestVoiceMessage(4)}), [](QDialog &box) {
        ASSERT_EQ(Dumps(box).model()->rowCount(), 3);
        EXPECT_EQ(Voices(box).model()->rowCount(), 1);
        QTest::keyClick(&Dumps(box), Qt::Key_A, Qt::ControlModifier);
        EXPECT_EQ(TextOf(box, "about"), "3 dumps are selected.");
        EXPECT_EQ(TextOf(box, "count"), "3 of 3 selected");
        Click(box, "newBank");
    });
    EXPECT_EQ(Names(0, 3), (Strings{"E.PIANO 1x", "E.PIANO 1x", "E.PIANO 1x", "INIT VOICE"}));
}

TEST_F(OpenAnyDump, AVoiceIsAuditionedByMouseAndKeyboard) {
    std::vector<std::string> played;
    TheListAccess.Audition = [&played](QWidget *owner, const KeptVoice &voice) {
        EXPECT_EQ(owner, QApplication::activeModalWidget());
        played.push_back(NameOfVoice(voice.Voice()));
        return true;
    };
    WithDump(TestBank(), [](QDialog &box) {
        QTableView &voices = Voices(box);
        QTest::mouseClick(voices.viewport(), Qt::MiddleButton, Qt::NoModifier,
                          voices.visualRect(voices.model()->index(4, 1)).center());
        QTest::mouseClick(voices.viewport(), Qt::MiddleButton, Qt::NoModifier,
                          QPoint(5, voices.viewport()->height() + 500)); // beside the rows
        EXPECT_EQ(SelectedRows(voices), 32);
        voices.setFocus();
        QTest::keyClick(&voices, Qt::Key_Down);
        QTest::keyClick(&voices, Qt::Key_Space);
        Click(box, "audition");
    });
    EXPECT_EQ(played, (Strings{"VOICE 05", "VOICE 02", "VOICE 02"}));
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(OpenAnyDump, TheFolderOfTheFileIsTheNextOne) {
    std::filesystem::create_directory(home.path / "deep");
    WithDump(home.Write("deep/found.bin", TestBank()), [](QDialog &) {});
    EXPECT_EQ(OpenPath, (home.path / "deep" / "").string());
}

TEST_F(OpenAnyDump, TheEndOfTheSessionEndsItWithoutAWord) {
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Any,
                                      .answer = home.Write("found.bin", TestBank())});
    EndInBox([this] { Trigger(CommandOpenAnyDump); }, [](QDialog &) {});
    EXPECT_EQ(UndoCount(), 0);
}

TEST_F(OpenAnyDump, TheEndOfTheSessionEndsTheReadingOfALargeFile) {
    const std::string path = home.Write("large.bin", TestBank());
    std::filesystem::resize_file(path, 64ull << 30); // takes no room, and minutes to be read
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Any, .answer = path});
    bool isReading = false;
    EndInBox([this] { Trigger(CommandOpenAnyDump); },
             [&](QDialog &box) { isReading = !IsRead(box); });
    EXPECT_TRUE(isReading);
}

// ---- what is asked

TEST_F(OpenAnyDump, BytesAbove7FAreAskedAbout) {
    DumpBytes bank = TestBank();
    bank[6 + 128] = 0x80;
    FixTestChecksum(bank);
    const std::string question =
        "One of these voices has bytes above 7F, which no instrument sends or takes. The file is "
        "probably damaged there.\n\nDo you wish to take them all the same?";
    WithDump(bank, [&](QDialog &box) {
        EXPECT_EQ(RowOf(Voices(box), 1), "2|VOICE 02|DX7|2|bytes above 7F");
        desktop.ExpectYesNo(question, ResultNo);
        Click(box, "newBank");
        EXPECT_TRUE(box.isVisible());
        desktop.ExpectYesNo(question, ResultNo);
        Click(box, "put");
        EXPECT_EQ(UndoCount(), 0);
        ClickRow(Voices(box), 0); // a voice without any
        Click(box, "put");
        EXPECT_EQ(UndoCount(), 1);
        ClickRow(Voices(box), 1);
        desktop.ExpectYesNo(question, ResultYes);
        Click(box, "put");
    });
    EXPECT_EQ(Names(0, 2), (Strings{"VOICE 01", "VOICE 02", "VOICE 03"}));
    EXPECT_EQ(PayloadOf(*ListVoice(MainList, 1))->payload[0], 0x80);
}

TEST_F(OpenAnyDump, MoreThanABankIsAskedAbout) {
    const std::string question = "A bank holds 32 voices, and you have 64 selected.\n\nDo you wish "
                                 "to take the first 32 of them?";
    WithDump(TestPackedVoices(64), [&](QDialog &box) {
        desktop.ExpectYesNo(question, ResultNo);
        Click(box, "newBank");
        EXPECT_TRUE(box.isVisible());
        desktop.ExpectYesNo(question, ResultYes);
        Click(box, "newBank");
        EXPECT_FALSE(box.isVisible());
    });
    EXPECT_EQ(NameAt(31), "VOICE 32");
}

TEST_F(OpenAnyDump, VoicesOfTwoInstrumentsAreNoBank) {
    WithDump(Join({TestVoiceMessage(), TestRefaceMessages(TestRefaceVoice(1))}), [&](QDialog &box) {
        QTest::keyClick(&Dumps(box), Qt::Key_A, Qt::ControlModifier);
        EXPECT_EQ(RowOf(Voices(box), 1), "2|Reface 01|reface DX|2|");
        desktop.ExpectMessage("These voices are for different instruments, and a bank "
                              "holds voices of one. Please select those of one "
                              "instrument.");
        Click(box, "newBank");
        EXPECT_TRUE(box.isVisible());
    });
    EXPECT_EQ(UndoCount(), 0);
}

TEST_F(OpenAnyDump, UnsavedChangesAreAskedAboutOverTheBox) {
    MainListState.dirty = true;
    WithDump(TestBank(), [&](QDialog &box) {
        desktop.Expect(ExpectedMessage{
            .text = "Your current document has not been saved. Do you wish to save it?\n\nClick on "
                    "Yes to save it, or click on No to abandon it.\n\nClick on Cancel to return to "
                    "the main window of Tonewright.",
            .buttons = {"Yes", "No", "Cancel"},
            .answer = ResultCancel,
            .during = [&](MessageRequest &request) { EXPECT_EQ(request.owner, &box); }});
        Click(box, "newBank");
        EXPECT_TRUE(box.isVisible());
    });
    EXPECT_EQ(UndoCount(), 0);
}

// ---- other files

TEST_F(OpenAnyDump, AFileWithoutVoicesSaysSo) {
    WithDump(TextBytes("Dear friend, here is nothing."), [](QDialog &box) {
        EXPECT_EQ(TextOf(box, "summary"), "There is no voice in this file that a list can hold.");
        EXPECT_FALSE(Part<QPushButton>(box, "newBank").isEnabled());
        EXPECT_FALSE(Part<QPushButton>(box, "put").isEnabled());
        EXPECT_FALSE(Part<QPushButton>(box, "audition").isEnabled());
        QTest::keyClick(&Dumps(box), Qt::Key_Return);
        EXPECT_TRUE(box.isVisible());
    });
    WithDump(DumpBytes{}, [](QDialog &box) {
        EXPECT_EQ(TextOf(box, "summary"), "There is nothing in this file.");
    });
    WithDump(home.File("none.syx"), [](QDialog &box) {
        EXPECT_EQ(TextOf(box, "summary"),
                  "This file could not be read: No such file or directory.");
    });
}

TEST_F(OpenAnyDump, ThousandsOfDumpsStayQuick) {
    DumpBytes file;
    for (int number = 0; number < 5000; ++number) {
        file += TestVoiceMessage(1 + number % 16);
    }
    WithDump(file, [](QDialog &box) {
        EXPECT_EQ(Dumps(box).model()->rowCount(), 5000);
        QTest::keyClick(&Dumps(box), Qt::Key_A, Qt::ControlModifier);
        EXPECT_EQ(Voices(box).model()->rowCount(), 5000);
        EXPECT_EQ(TextOf(box, "count"), "5,000 of 5,000 selected");
    });
}

TEST_F(OpenAnyDump, ReadingALargeFileShowsALifeSignAndCanBeCancelled) {
    const std::string path = home.Write("large.bin", TestBank());
    std::filesystem::resize_file(path, 4ull << 30); // takes no room on the disk
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Any, .answer = path});
    bool isCancelled = false, isShown = false;
    QTimer look; // whoever waited within the reading would hold it up
    QObject::connect(&look, &QTimer::timeout, [&] {
        auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!box || isShown) {
            return;
        }
        if (IsRead(*box)) {
            isShown = true;
            EXPECT_FALSE(Part<QProgressBar>(*box, "progress").isVisible());
            EXPECT_TRUE(QString::fromStdString(TextOf(*box, "summary"))
                            .endsWith(" The reading was cancelled, and there may be more."));
            EXPECT_EQ(Voices(*box).model()->rowCount(), 32);
            QTest::keyClick(box, Qt::Key_Escape);
        } else if (auto &cancel = Part<QPushButton>(*box, "cancel");
                   cancel.isVisible() && !isCancelled) {
            isCancelled = true;
            EXPECT_TRUE(Part<QProgressBar>(*box, "progress").isVisible());
            QTest::mouseClick(&cancel, Qt::LeftButton);
        }
    });
    look.start(5);
    Trigger(CommandOpenAnyDump);
    EXPECT_TRUE(isCancelled);
    EXPECT_TRUE(isShown);
}

TEST_F(OpenAnyDump, NoFileChosenChangesNothing) {
    desktop.Expect(ExpectedFileDialog{
        .kind = FileDialogKind::Any, .answer = std::nullopt, .start = home.Folder()});
    Trigger(CommandOpenAnyDump);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(OpenAnyDump, HelpOpensItsParagraph) {
    WithDump(TestBank(), [&](QDialog &box) {
        Click(box, "help");
        QTest::keyClick(&box, Qt::Key_F1);
    });
    EXPECT_EQ(desktop.helpTopics, (Strings{"EXTRAS_OPENANYDUMP", "EXTRAS_OPENANYDUMP"}));
}

TEST_F(OpenAnyDump, EveryPartHasANameForThoseWhoHearIt) {
    WithDump(TwoBanks(), [](QDialog &box) {
        for (const char *name : {"dumps", "voices", "row"}) {
            EXPECT_FALSE(Part<QWidget>(box, name).accessibleName().isEmpty()) << name;
        }
        EXPECT_EQ(Voices(box).model()->index(1, 1).data(Qt::AccessibleTextRole).toString(),
                  "VOICE 02");
    });
}

} // namespace
} // namespace tonewright
