// Every box, each opened as the user does: its push buttons in the look of the settings, and its
// texts, which must have room.
#include "window_fixture.h"

#include "common/desktop.h"
#include "database/view/file_time_box.h"
#include "database/view/new_database_box.h"
#include "drivers/reface_dx/view/settings_box.h"
#include "drivers/reface_dx/view/voice_editor.h"
#include "drivers/reface_dx/voice_codec.h"
#include "extras/view/dump_box.h"
#include "shell/view/colour_box.h"
#include "shell/view/colour_table_boxes.h"
#include "shell/view/desktop_qt.h"
#include "shell/view/select_theme_box.h"
#include "shell/view/wizard_box.h"
#include "support/builtin_midi.h"
#include "support/modal_box.h"
#include "support/paths.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QTabWidget>

#include <filesystem>
#include <set>

namespace tonewright {
namespace {

class ButtonsOfBoxes : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        UseQtDesktop();
        MakeProgramFolders();
        OpenBank();
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
              CommandAudition, CommandInsertFromDatabase, CommandSystemInformation, CommandAbout,
              CommandWizard, CommandInstruments}) {
            rows.push_back({"command " + std::to_string(command), [command] {
                                MainListState.clickedIndex = 3;
                                MainListState.dirty = false; // no question comes before the box
                                RunCommand(command);
                            }});
        }
        rows.push_back({"reface voice", [this] {
                            VoiceObject voice = MakeRefaceVoiceObject();
                            RefaceEditVoice(window.get(), voice, {}, 0);
                        }});
        rows.push_back({"themes", [this] {
                            std::string theme = ThemeCurrent;
                            SelectThemeBox(window.get(), theme);
                        }});
        rows.push_back({"first start", [this] { AskForWizard(window.get()); }});
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
        rows.push_back({"dumps", [this] { ShowDumpBox(window.get(), home.File("bank.syx")); }});
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

    // The forms in resources/dialogs of which a box is made: each names its outermost widget.
    static void NoteForms(const QDialog &box, std::set<std::string> &forms) {
        forms.insert(box.objectName().toStdString());
        for (const QWidget *part : box.findChildren<QWidget *>()) {
            forms.insert(part->objectName().toStdString());
        }
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

    // What a widget needs to show its text; nothing for one without any.
    static QSize NeededForText(const QWidget &widget) {
        if (auto *label = qobject_cast<const QLabel *>(&widget)) {
            if (label->text().isEmpty()) {
                return {};
            }
            return label->wordWrap() ? QSize(0, label->heightForWidth(label->width()))
                                     : label->sizeHint();
        }
        if (auto *button = qobject_cast<const QPushButton *>(&widget)) {
            constexpr int Margin = 4; // pixels, of the caption on each side
            return button->fontMetrics().size(Qt::TextShowMnemonic, button->text()) +
                   QSize(2 * Margin, 0);
        }
        if (qobject_cast<const QCheckBox *>(&widget) ||
            qobject_cast<const QRadioButton *>(&widget)) {
            return widget.sizeHint();
        }
        if (auto *group = qobject_cast<const QGroupBox *>(&widget)) {
            return group->fontMetrics().size(Qt::TextShowMnemonic, group->title());
        }
        return {};
    }

    // That every text in a box that can be seen has room, and stands inside the box; their number.
    static int ExpectWholeTexts(const QDialog &box) {
        int count = 0;
        for (const QWidget *widget : box.findChildren<QWidget *>()) {
            const QSize needed = NeededForText(*widget);
            if (!widget->isVisible() || !needed.isValid()) {
                continue;
            }
            ++count;
            const std::string name =
                widget->objectName().toStdString() + " " + widget->accessibleName().toStdString();
            EXPECT_LE(needed.width(), widget->width()) << name;
            EXPECT_LE(needed.height(), widget->height()) << name;
            if (widget->window() == &box) {
                const QRect place(widget->mapTo(&box, QPoint()), widget->size());
                EXPECT_TRUE(box.rect().contains(place)) << name;
            }
        }
        return count;
    }
};

TEST_F(ButtonsOfBoxes, EveryBoxHasThemWhileTheSettingIsNotNone) {
    std::set<std::string> forms;
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
                NoteForms(box, forms);
                Close(box);
            });
        }
    }
    // No box of the program is missing among those above.
    for (const auto &file : std::filesystem::directory_iterator(SourceFile("resources/dialogs"))) {
        EXPECT_TRUE(forms.contains(file.path().stem().string())) << file.path();
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

TEST_F(ButtonsOfBoxes, NoTextIsCutWithALargeFontOfTheDesktop) {
    constexpr int LargeFont = 16; // points
    struct FontGuard {
        const QFont former = QApplication::font();
        ~FontGuard() { QApplication::setFont(former); }
    } const guard;
    QFont large = guard.former;
    large.setPointSize(LargeFont);
    QApplication::setFont(large);
    for (const BoxRow &row : Boxes()) {
        SCOPED_TRACE(row.name);
        WithModalBox(row.open, [](QDialog &box) {
            EXPECT_GT(ExpectWholeTexts(box), 0);
            if (auto *pages = box.findChild<QTabWidget *>()) {
                for (int page = 1; page < pages->count(); ++page) {
                    pages->setCurrentIndex(page);
                    QTest::qWait(1); // a page gets its places from the event loop
                    ExpectWholeTexts(box);
                }
            }
            Close(box);
        });
    }
}

} // namespace
} // namespace tonewright
