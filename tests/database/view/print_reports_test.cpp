// Printing by the real dialog, into files: what it offers, and what stands on the screen meanwhile.
#include "../test_catalogue.h"

#include "common/view/soft_button.h"
#include "database/view/print_reports.h"
#include "support/modal_box.h"
#include "support/run_program.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include <functional>

namespace tonewright {
namespace {

// Another printer than a file, on a machine that has one, is never printed on.
void ChooseFile(QDialog &dialog) {
    auto *printers = dialog.findChild<QComboBox *>("printers");
    ASSERT_NE(printers, nullptr);
    printers->setCurrentIndex(printers->count() - 1);
    ASSERT_TRUE(printers->currentText().contains("PDF")) << printers->currentText().toStdString();
}

QPushButton *ButtonOf(const QDialog &dialog, QDialogButtonBox::StandardButton which) {
    const auto *buttons = dialog.findChild<QDialogButtonBox *>();
    return buttons ? buttons->button(which) : nullptr;
}

void Press(const QDialog &dialog, QDialogButtonBox::StandardButton which) {
    QPushButton *button = ButtonOf(dialog, which);
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton);
}

QLineEdit *FileOf(const QDialog &dialog) {
    return dialog.findChild<QLineEdit *>("filename");
}

class PrintReports : public testing::Test {
protected:
    void SetUp() override {
        OpenExportPath = folder.Folder();
        CurrentDriverId = SynthDrivers[0]->id;
        for (int index = 0; index < 32; ++index) {
            ListAdd(voices);
            ListSetVoice(voices, index, TestVoiceOf(TestFamilies[0], index));
        }
        owner.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&owner));
    }
    void PrintVoices(const std::function<void(QDialog &)> &use) {
        WithModalBox([this] { EXPECT_EQ(PrintVoiceList(&owner, voices, "/banks/My bank.syx"), 1); },
                     use);
    }
    void PrintRecords(int count, const std::function<void(QDialog &)> &use) {
        RecordList list;
        list.sorted = false;
        for (int index = 0; index < count; ++index) {
            RecordListAdd(list, {TestRecordAt(TestFamilies[0], index)});
        }
        WithModalBox([&] { EXPECT_EQ(PrintDatabase(&owner, list, "Voices for Yamaha DX7"), 1); },
                     use);
    }
    // What is told of a PDF under a heading.
    std::string Told(const std::string &file, const std::string &heading) const {
        const auto result = RunProgram({"/usr/bin/env", "pdfinfo", folder.File(file)});
        EXPECT_EQ(result.exitStatus, 0) << result.errors;
        const std::size_t at = result.output.find(heading + ":");
        if (at == std::string::npos) {
            return "";
        }
        const std::size_t from = result.output.find_first_not_of(' ', at + heading.size() + 1);
        return result.output.substr(from, result.output.find('\n', from) - from);
    }

    const TempFolder folder;
    ScriptedDesktop desktop;
    VoiceList voices;
    QWidget owner;
};

TEST_F(PrintReports, TheVoicesGoIntoTheFileThatIsProposed) {
    PrintVoices([this](QDialog &dialog) {
        EXPECT_EQ(dialog.parentWidget(), &owner);
        const QLineEdit &file = *FileOf(dialog);
        EXPECT_EQ(file.text().toStdString(), folder.File("My bank.pdf"));
        EXPECT_GE(file.width(), std::min(480, file.fontMetrics().horizontalAdvance(file.text())));
        ChooseFile(dialog);
        EXPECT_EQ(desktop.busyBoxesShown, 0);
        EXPECT_EQ(desktop.waitsBegun, 0);
        Press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_EQ(Told("My bank.pdf", "Pages"), "1");
    EXPECT_EQ(Told("My bank.pdf", "Title"), "My bank.syx");
    EXPECT_EQ(Told("My bank.pdf", "Creator"), "Tonewright");
    EXPECT_EQ(desktop.busyTexts, std::vector<std::string>{"Printing My bank.syx"});
    EXPECT_EQ(desktop.busyBoxesOpen, 0);
    EXPECT_EQ(desktop.deepestWait, 1);
    EXPECT_EQ(desktop.waitDepth, 0);
}

TEST_F(PrintReports, TheBoxStandsBeforeTheFirstPage) {
    bool stood = false;
    const auto former = TheDesktop.ShowBusyBox;
    TheDesktop.ShowBusyBox = [&](QWidget *window, const std::string &text) {
        stood = true;
        EXPECT_EQ(window, &owner);
        EXPECT_EQ(desktop.waitDepth, 1);
        EXPECT_FALSE(folder.Holds("Voices.pdf"));
        return former(window, text);
    };
    const auto close = TheDesktop.CloseBusyBox;
    TheDesktop.CloseBusyBox = [&] {
        EXPECT_EQ(desktop.waitDepth, 1);
        EXPECT_EQ(Told("Voices.pdf", "Pages"), "2"); // whole by then
        close();
    };
    PrintRecords(120, [](QDialog &dialog) {
        ChooseFile(dialog);
        Press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_TRUE(stood);
    EXPECT_EQ(desktop.busyTexts, std::vector<std::string>{"Printing Voices for Yamaha DX7"});
}

TEST_F(PrintReports, TheCatalogueGoesIntoAFileOfItsName) {
    PrintRecords(1, [this](QDialog &dialog) {
        EXPECT_EQ(FileOf(dialog)->text().toStdString(), folder.File("Voices.pdf"));
        ChooseFile(dialog);
        FileOf(dialog)->setText(QString::fromStdString(folder.File("other.pdf")));
        Press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_EQ(Told("other.pdf", "Pages"), "1");
    EXPECT_EQ(Told("other.pdf", "Title"), "Voices for Yamaha DX7");
    EXPECT_FALSE(folder.Holds("Voices.pdf"));
}

TEST_F(PrintReports, ACatalogueWithoutRecordsIsNoFile) {
    PrintRecords(0, [](QDialog &dialog) {
        ChooseFile(dialog);
        Press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_FALSE(folder.Holds("Voices.pdf"));
    EXPECT_EQ(desktop.busyBoxesShown, 1);
    EXPECT_EQ(desktop.busyBoxesOpen, 0);
}

TEST_F(PrintReports, CancelledNothingHappens) {
    PrintVoices([](QDialog &dialog) { Press(dialog, QDialogButtonBox::Cancel); });
    PrintRecords(1, [](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_FALSE(folder.Holds("My bank.pdf"));
    EXPECT_FALSE(folder.Holds("Voices.pdf"));
    EXPECT_EQ(desktop.busyBoxesShown, 0);
    EXPECT_EQ(desktop.waitsBegun, 0);
}

TEST_F(PrintReports, AFileHoldsTheFirstCopyOnly) {
    for (const int voiceList : {1, 0}) {
        const auto twice = [](QDialog &dialog) {
            ChooseFile(dialog);
            auto *copies = dialog.findChild<QSpinBox *>("copies");
            ASSERT_NE(copies, nullptr);
            EXPECT_TRUE(copies->isEnabled());
            copies->setValue(2);
            Press(dialog, QDialogButtonBox::Ok);
        };
        if (voiceList) {
            PrintVoices(twice);
            EXPECT_EQ(Told("My bank.pdf", "Pages"), "1");
        } else {
            PrintRecords(100, twice);
            EXPECT_EQ(Told("Voices.pdf", "Pages"), "2");
        }
    }
}

TEST_F(PrintReports, TheDialogAsksForAPrinterInPortraitFormatAndForCopies) {
    PrintVoices([](QDialog &dialog) {
        auto *print = qobject_cast<QPrintDialog *>(&dialog);
        ASSERT_NE(print, nullptr);
        for (const auto partOf :
             {QAbstractPrintDialog::PrintSelection, QAbstractPrintDialog::PrintPageRange,
              QAbstractPrintDialog::PrintCurrentPage}) {
            EXPECT_FALSE(print->testOption(partOf)) << partOf;
        }
        EXPECT_EQ(print->printer()->pageLayout().orientation(), QPageLayout::Portrait);
        EXPECT_EQ(print->printer()->copyCount(), 1);
        Press(dialog, QDialogButtonBox::Cancel);
    });
}

TEST_F(PrintReports, TheButtonsHaveTheLookOfTheSettings) {
    QImage looks[2];
    for (const std::uint32_t style : {SoftButtonNone, SoftButtonWedge}) {
        SoftButtons = style;
        PrintVoices([&](QDialog &dialog) {
            looks[style == SoftButtonNone ? 0 : 1] =
                ButtonOf(dialog, QDialogButtonBox::Cancel)->grab().toImage();
            Press(dialog, QDialogButtonBox::Cancel);
        });
    }
    EXPECT_NE(looks[0], looks[1]);
}

TEST_F(PrintReports, AFolderThatIsGoneByThenLeavesThingsAsTheyAre) {
    std::filesystem::create_directory(folder.path / "sub");
    PrintRecords(300, [this](QDialog &dialog) {
        ChooseFile(dialog);
        FileOf(dialog)->setText(QString::fromStdString(folder.File("sub/a.pdf")));
        // The dialog has looked at the folder when it ends.
        QObject::connect(&dialog, &QDialog::finished,
                         [this] { std::filesystem::remove_all(folder.path / "sub"); });
        Press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_FALSE(folder.Holds("sub"));
    EXPECT_EQ(desktop.busyBoxesOpen, 0);
    EXPECT_EQ(desktop.waitDepth, 0);
}

} // namespace
} // namespace tonewright
