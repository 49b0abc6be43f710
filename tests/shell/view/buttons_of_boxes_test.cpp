// The push buttons of every box, each opened as the user does, in the look of the settings.
#include "window_fixture.h"

#include "common/desktop.h"
#include "database/view/file_time_box.h"
#include "database/view/new_database_box.h"
#include "drivers/reface_dx/view/settings_box.h"
#include "shell/view/colour_box.h"
#include "shell/view/colour_table_boxes.h"
#include "shell/view/desktop_qt.h"
#include "support/builtin_midi.h"
#include "support/modal_box.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTabWidget>

namespace tonewright {
namespace {

class ButtonsOfBoxes : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        UseQtDesktop();
        MakeProgramFolders();
        PendingOpenPath = home.Write("bank.syx", TestBank());
        ASSERT_EQ(RunCommand(CommandOpen), 1);
        ASSERT_EQ(RunCommand(CommandFind), 1);
    }

    BuiltinMidi midi; // for the Audition box

    struct BoxRow {
        std::string name;
        std::function<void()> open;
    };
    std::vector<BoxRow> Boxes() {
        std::vector<BoxRow> rows;
        for (const int command :
             {CommandOpen, CommandSaveAs, CommandImport, CommandExport, CommandSettings,
              CommandPrint, CommandTip, CommandEdit, CommandMidiDevices, CommandSelectSynth,
              CommandAudition, CommandInsertFromDatabase, CommandSystemInformation, CommandAbout}) {
            rows.push_back({"command " + std::to_string(command), [command] {
                                MainListState.clickedIndex = 3;
                                RunCommand(command);
                            }});
        }
        rows.push_back({"question", [this] { AskYesNoCancel(window.get(), "Is it so?"); }});
        rows.push_back({"file time", [this] {
                            std::uint32_t seconds = 1'000'000'000;
                            RunFileTimeBox(window.get(), FileTimeParts::Both, seconds);
                        }});
        rows.push_back({"new database", [this] { RunNewDatabaseBox(window.get(), {}, ""); }});
        rows.push_back({"reface settings", [this] {
                            SynthConfigBlock block;
                            RunRefaceSettingsBox(window.get(), block);
                        }});
        rows.push_back({"colour", [this] { ChooseColour(window.get(), 0x00FF8800); }});
        rows.push_back({"colours", [this] {
                            std::vector<ColourOption> options = {{"One", 1}, {"Two", 2}};
                            ChooseColours(window.get(), options);
                        }});
        rows.push_back({"new colour", [this] { RunAddColourBox(window.get(), {"1", "2", "3"}); }});
        rows.push_back({"colour table", [this] { RunColourTableBox(window.get()); }});
        return rows;
    }

    // By Cancel, or by the only button where that is the way out.
    static void Close(QDialog &box) {
        for (const char *name : {"control_2", "control_1"}) {
            if (auto *button = box.findChild<QPushButton *>(name)) {
                button->click();
                return;
            }
        }
        box.reject();
    }

    // Every push button that can be seen in a box; their number.
    static int ExpectLook(const QDialog &box, std::uint32_t style, const std::string &name) {
        int count = 0;
        for (const QPushButton *button : box.findChildren<QPushButton *>()) {
            if (button->isVisible()) {
                ++count;
                EXPECT_EQ(button->findChild<QObject *>("SoftButtonPainter") != nullptr, style != 0)
                    << name << ", style " << style << ": " << button->text().toStdString();
            }
        }
        return count;
    }
};

TEST_F(ButtonsOfBoxes, EveryBoxHasThemWhileTheSettingIsNotNone) {
    for (const std::uint32_t style : {0u, 1u, 2u, 3u}) {
        for (const BoxRow &row : Boxes()) {
            SCOPED_TRACE(row.name);
            SoftButtons = style;
            WithModalBox(row.open, [&](QDialog &box) {
                EXPECT_GT(ExpectLook(box, style, row.name), 0) << row.name;
                if (auto *pages = box.findChild<QTabWidget *>()) {
                    for (int page = 0; page < pages->count(); ++page) {
                        pages->setCurrentIndex(page);
                        ExpectLook(box, style, row.name);
                    }
                }
                Close(box);
            });
        }
    }
}

TEST_F(ButtonsOfBoxes, ABoxThatTheFileDialogOpensByItselfHasThemToo) {
    for (const std::uint32_t style : {0u, 1u}) {
        SoftButtons = style;
        WithModalBox([] { RunCommand(CommandSaveAs); },
                     [&](QDialog &box) {
                         auto *name = box.findChild<QLineEdit *>("fileNameEdit");
                         ASSERT_NE(name, nullptr);
                         name->setText("bank.syx");
                         WithModalBox([&] { QTest::keyClick(name, Qt::Key_Return); },
                                      [&](QDialog &question) {
                                          EXPECT_EQ(ExpectLook(question, style, "question"), 2);
                                          question.reject();
                                      });
                         Close(box);
                     });
    }
}

} // namespace
} // namespace tonewright
