// The real file dialogs: filters, the extension that is added, questions, and the size that is
// remembered.
#include "window_fixture.h"

#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "shell/settings_file.h"
#include "shell/view/desktop_qt.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>

namespace tonewright {
namespace {

using Answer = std::optional<std::string>;

class FileDialog : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        const Desktop scripted = TheDesktop;
        UseQtDesktop();
        const Desktop real = TheDesktop;
        TheDesktop = scripted;
        TheDesktop.ChooseOpenFile = real.ChooseOpenFile;
        TheDesktop.ChooseImportFile = real.ChooseImportFile;
        TheDesktop.ChooseExtraFile = real.ChooseExtraFile;
        TheDesktop.ChooseSaveFile = real.ChooseSaveFile;
        TheDesktop.ChooseExportFile = real.ChooseExportFile;
        TheDesktop.ChooseSaveExtraFile = real.ChooseSaveExtraFile;
        TheDesktop.ChooseAnyFile = real.ChooseAnyFile;
        FileWindowX = FileWindowY = 0;
        SoftButtons = 1;
    }

    // Hands the next file dialog to `use` as soon as it stands, and closes it afterwards.
    void WhenItStands(std::function<void(QFileDialog &)> use) {
        QTimer::singleShot(0, window.get(), [this, use] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog));
            stood = true;
            use(*dialog);
            if (dialog->isVisible()) {
                dialog->reject();
            }
        });
    }
    // Closes the message box that comes next, with one of its buttons.
    void WhenABoxStands(QMessageBox::StandardButton button) {
        QTimer::singleShot(0, window.get(), [this, button] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            boxText = box->text().toStdString();
            ASSERT_NE(box->button(button), nullptr);
            box->button(button)->click();
        });
    }
    static std::string FolderOf(const QFileDialog &dialog) {
        return QDir::toNativeSeparators(dialog.directory().absolutePath()).toStdString();
    }
    static QLineEdit &NameEdit(QFileDialog &dialog) {
        return *dialog.findChild<QLineEdit *>("fileNameEdit");
    }
    static void TypeName(QFileDialog &dialog, const QString &name) {
        NameEdit(dialog).clear();
        QTest::keyClicks(&NameEdit(dialog), name);
        QTest::keyClick(&NameEdit(dialog), Qt::Key_Return);
    }
    Answer Open(std::function<void(QFileDialog &)> use, DriverId driver = Dx7DriverId) {
        WhenItStands(std::move(use));
        return ChooseOpenFile(window.get(), home.Folder(), driver);
    }
    Answer Save(const std::string &proposal, std::function<void(QFileDialog &)> use) {
        WhenItStands(std::move(use));
        return ChooseSaveFile(window.get(), proposal, Dx7DriverId);
    }
    // The size in which a dialog stands.
    QSize SizeWith(std::uint32_t x, std::uint32_t y) {
        FileWindowX = x;
        FileWindowY = y;
        QSize size;
        Open([&](QFileDialog &dialog) {
            size = dialog.size();
            // The platform puts a frame of two pixels around it afterwards.
            const QRect screen = QGuiApplication::primaryScreen()->geometry();
            EXPECT_NEAR(dialog.frameGeometry().center().x(), screen.center().x(), 3);
            EXPECT_NEAR(dialog.frameGeometry().center().y(), screen.center().y(), 3);
        });
        return size;
    }

    bool stood = false;
    std::string boxText;
};

struct Kind {
    std::optional<std::string> (*choose)(QWidget *, const std::string &, std::uint32_t);
    QStringList dx7Filters, refaceFilters;
    QString dx7Extension, refaceExtension;
    bool saves;
};

TEST_F(FileDialog, FiltersAndExtensionAreTheDrivers) {
    const QString all = "All files (*)";
    const Kind kinds[] = {
        {ChooseOpenFile,
         {"syx files (*.syx)", all},
         {"srx files (*.srx)", all},
         "syx",
         "srx",
         false},
        {ChooseImportFile,
         {"sy1 files (*.sy1)", all},
         {"sr1 files (*.sr1)", all},
         "sy1",
         "sr1",
         false},
        {ChooseExtraFile,
         {"TwcDx7 files (*.TwcDx7)", all},
         {"crg files (*.crg)", all},
         "TwcDx7",
         "crg",
         false},
        {ChooseSaveFile,
         {"syx files (*.syx)", all},
         {"srx files (*.srx)", all},
         "syx",
         "srx",
         true},
        {ChooseExportFile,
         {"sy1 files (*.sy1)", all},
         {"sr1 files (*.sr1)", all},
         "sy1",
         "sr1",
         true},
        {ChooseSaveExtraFile,
         {"TwcDx7 files (*.TwcDx7)", all},
         {"crg files (*.crg)", all},
         "TwcDx7",
         "crg",
         true},
    };
    for (const Kind &kind : kinds) {
        const auto expect = [&](DriverId driver, QStringList filters, QString extension) {
            stood = false;
            WhenItStands([&](QFileDialog &dialog) {
                EXPECT_EQ(dialog.nameFilters(), filters);
                EXPECT_EQ(dialog.selectedNameFilter(), filters[0]);
                EXPECT_EQ(dialog.defaultSuffix(), extension);
                EXPECT_EQ(dialog.acceptMode(),
                          kind.saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
                EXPECT_EQ(dialog.fileMode(),
                          kind.saves ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
            });
            EXPECT_EQ(kind.choose(window.get(), home.Folder(), driver), std::nullopt);
            EXPECT_TRUE(stood);
        };
        expect(Dx7DriverId, kind.dx7Filters, kind.dx7Extension);
        expect(RefaceDriverId, kind.refaceFilters, kind.refaceExtension);
        expect(NoDriverId, {all}, "Twl");
    }
}

TEST_F(FileDialog, OpenStartsInTheFolderWithAnEmptyName) {
    EXPECT_EQ(Open([&](QFileDialog &dialog) {
                  EXPECT_EQ(FolderOf(dialog), home.path.string());
                  EXPECT_EQ(NameEdit(dialog).text(), "");
              }),
              std::nullopt);
    EXPECT_TRUE(stood);
}

TEST_F(FileDialog, OpenHandsBackTheWholePath) {
    const std::string path = home.Write("bank.syx", TestBank());
    EXPECT_EQ(Open([](QFileDialog &dialog) { TypeName(dialog, "bank.syx"); }), path);
}

TEST_F(FileDialog, ANameTypedWithoutAnExtensionGetsTheDriversOne) {
    const std::string path = home.Write("bank.syx", TestBank());
    EXPECT_EQ(Open([](QFileDialog &dialog) { TypeName(dialog, "bank"); }), path);
    EXPECT_EQ(Save(home.File("old.syx"), [](QFileDialog &dialog) { TypeName(dialog, "new"); }),
              home.File("new.syx"));
}

TEST_F(FileDialog, ANameWithADotGetsTheDriversExtensionUnlessItHasOneOfTheProgram) {
    const auto saved = [this](const char *name) {
        return Save(home.File("old.syx"), [=](QFileDialog &dialog) { TypeName(dialog, name); });
    };
    EXPECT_EQ(saved("My Bank v1.2"), home.File("My Bank v1.2.syx"));
    EXPECT_EQ(saved("bank.syx.old"), home.File("bank.syx.old.syx"));
    EXPECT_EQ(saved("bank."), home.File("bank.syx"));
    EXPECT_EQ(saved("\"My Bank v1.3\""), home.File("My Bank v1.3.syx"));
    std::filesystem::create_directory(home.path / "v1.0");
    EXPECT_EQ(saved("v1.0/Bank v1.2"), home.File("v1.0/Bank v1.2.syx"));
    for (const char *name : {"a.syx", "b.SYX", "c.sy1", "d.srx"}) {
        EXPECT_EQ(saved(name), home.File(name));
    }
}

TEST_F(FileDialog, WithTheFilterForAllFilesANameWithADotIsTakenAsItIsTyped) {
    const auto allFiles = [](QFileDialog &dialog) {
        auto *filters = dialog.findChild<QComboBox *>("fileTypeCombo");
        filters->setCurrentIndex(1);
        Q_EMIT filters->activated(1);
    };
    EXPECT_EQ(Save(home.File("old.syx"),
                   [&](QFileDialog &dialog) {
                       allFiles(dialog);
                       TypeName(dialog, "new.bin");
                   }),
              home.File("new.bin"));
    WhenItStands([](QFileDialog &dialog) { TypeName(dialog, "new.bin"); });
    EXPECT_EQ(ChooseSaveFile(window.get(), home.File("old.syx"), NoDriverId), home.File("new.bin"));
}

TEST_F(FileDialog, AnyFileIsTakenAsItIsTyped) {
    for (const char *name : {"bank", "bank.dat", "b.a.n.k"}) {
        home.Write(name, TestBank());
        WhenItStands([&](QFileDialog &dialog) {
            EXPECT_EQ(dialog.windowTitle(), "Open any dump");
            EXPECT_EQ(dialog.nameFilters(), QStringList{"All files (*)"});
            TypeName(dialog, name);
        });
        EXPECT_EQ(ChooseAnyFile(window.get(), home.Folder()), home.File(name));
    }
    WhenItStands([](QFileDialog &) {});
    EXPECT_EQ(ChooseAnyFile(window.get(), home.Folder()), std::nullopt);
}

TEST_F(FileDialog, AFolderThatIsTypedIsEnteredUnderItsOwnName) {
    std::filesystem::create_directory(home.path / "v1.0");
    EXPECT_EQ(Save(home.File("old.syx"),
                   [this](QFileDialog &dialog) {
                       TypeName(dialog, "v1.0");
                       EXPECT_TRUE(dialog.isVisible());
                       EXPECT_EQ(FolderOf(dialog), home.File("v1.0"));
                   }),
              std::nullopt);
}

TEST_F(FileDialog, AFileToOpenIsLookedForAsTypedAndThenWithTheExtension) {
    const std::string bank = home.Write("My Bank v1.2.syx", TestBank());
    EXPECT_EQ(Open([](QFileDialog &dialog) { TypeName(dialog, "My Bank v1.2"); }), bank);
    const std::string other = home.WriteText("My Bank v1.2", "other");
    EXPECT_EQ(Open([](QFileDialog &dialog) { TypeName(dialog, "My Bank v1.2"); }), other);
}

TEST_F(FileDialog, AFileThatDoesNotExistCannotBeOpened) {
    EXPECT_EQ(Open([this](QFileDialog &dialog) {
                  WhenABoxStands(QMessageBox::Ok);
                  TypeName(dialog, "missing.syx");
                  EXPECT_TRUE(dialog.isVisible());
              }),
              std::nullopt);
    EXPECT_NE(boxText.find("missing.syx"), std::string::npos);
}

TEST_F(FileDialog, SaveProposesThePathAndAsksBeforeItOverwrites) {
    const std::string path = home.Write("bank.syx", TestBank());
    const auto press = [](QFileDialog &dialog) {
        QTest::keyClick(&NameEdit(dialog), Qt::Key_Return);
    };
    EXPECT_EQ(Save(path,
                   [&](QFileDialog &dialog) {
                       EXPECT_EQ(NameEdit(dialog).text(), "bank.syx");
                       EXPECT_EQ(FolderOf(dialog), home.path.string());
                       WhenABoxStands(QMessageBox::No);
                       press(dialog);
                       EXPECT_TRUE(dialog.isVisible());
                   }),
              std::nullopt);
    EXPECT_NE(boxText.find("bank.syx"), std::string::npos);
    EXPECT_EQ(Save(path,
                   [&](QFileDialog &dialog) {
                       WhenABoxStands(QMessageBox::Yes);
                       press(dialog);
                   }),
              path);
}

TEST_F(FileDialog, TheExtensionIsAddedBeforeTheQuestion) {
    const std::string path = home.Write("bank.syx", TestBank());
    EXPECT_EQ(Save(home.File("x.syx"),
                   [&](QFileDialog &dialog) {
                       WhenABoxStands(QMessageBox::Yes);
                       TypeName(dialog, "bank");
                   }),
              path);
    EXPECT_NE(boxText.find("bank.syx"), std::string::npos);
}

TEST_F(FileDialog, TheQuestionIsAboutTheNameWithTheExtensionAlsoBehindADot) {
    home.Write("My Bank v1.2.syx", TestBank());
    home.WriteText("My Bank v1.2", "not in question");
    EXPECT_EQ(Save(home.File("x.syx"),
                   [&](QFileDialog &dialog) {
                       WhenABoxStands(QMessageBox::No);
                       TypeName(dialog, "My Bank v1.2");
                       EXPECT_TRUE(dialog.isVisible());
                       EXPECT_EQ(NameEdit(dialog).text(), "My Bank v1.2.syx");
                   }),
              std::nullopt);
    EXPECT_NE(boxText.find("My Bank v1.2.syx"), std::string::npos);
}

TEST_F(FileDialog, TheCurrentFolderIsUntouched) {
    const auto before = std::filesystem::current_path();
    home.Write("bank.syx", TestBank());
    Open([](QFileDialog &dialog) { TypeName(dialog, "bank.syx"); });
    EXPECT_EQ(std::filesystem::current_path(), before);
}

// ---- size

TEST_F(FileDialog, ASizeAbove127IsRestoredInTheMiddleOfTheScreen) {
    EXPECT_EQ(SizeWith(600, 500), QSize(600, 500));
}

TEST_F(FileDialog, ASizeIsCutToTheScreen) {
    const QSize screen = QGuiApplication::primaryScreen()->size();
    EXPECT_EQ(SizeWith(100000, 500), QSize(screen.width(), 500));
    EXPECT_EQ(SizeWith(600, 100000), QSize(600, screen.height()));
    EXPECT_EQ(SizeWith(4294967295, 2147483648), screen);
}

TEST_F(FileDialog, ASizeCountsOnlyWhenBothAreAbove127) {
    const QSize own = SizeWith(0, 0);
    EXPECT_NE(own, QSize(600, 500));
    EXPECT_EQ(SizeWith(127, 700), own);
    EXPECT_EQ(SizeWith(700, 127), own);
    EXPECT_EQ(SizeWith(0, 700), own);
    // 128 counts, though the dialog's controls need more.
    const QSize small = SizeWith(128, 128);
    EXPECT_LT(small.width(), own.width());
    EXPECT_LT(small.height(), own.height());
}

TEST_F(FileDialog, TheSizeGoesBackWhetherTheDialogIsAcceptedOrCancelled) {
    home.Write("bank.syx", TestBank());
    Open([](QFileDialog &dialog) { dialog.resize(640, 480); });
    EXPECT_EQ(FileWindowX, 640u);
    EXPECT_EQ(FileWindowY, 480u);
    Open([](QFileDialog &dialog) {
        EXPECT_EQ(dialog.size(), QSize(640, 480));
        dialog.resize(660, 520);
        TypeName(dialog, "bank.syx");
    });
    EXPECT_EQ(FileWindowX, 660u);
    EXPECT_EQ(FileWindowY, 520u);
    Save(home.File("x.syx"),
         [](QFileDialog &dialog) { EXPECT_EQ(dialog.size(), QSize(660, 520)); });
}

TEST_F(FileDialog, TheSizeIsKeptForTheNextRun) {
    std::filesystem::create_directory(home.path / "Quillbrook");
    Open([](QFileDialog &dialog) { dialog.resize(640, 480); });
    window->close();
    const std::string settings = ReadTestText(home.File("Quillbrook/Tonewright 17.ini"));
    EXPECT_NE(settings.find("\nFileWindowX = 640\nFileWindowY = 480\n"), std::string::npos);
}

// ---- buttons

TEST_F(FileDialog, ItsButtonsAreDrawnByTheProgramUnlessTheSettingIsOff) {
    for (const std::uint32_t style : {1u, 0u}) {
        SoftButtons = style;
        int buttons = 0;
        Open([&](QFileDialog &dialog) {
            for (QAbstractButton *button :
                 dialog.findChild<QDialogButtonBox *>("buttonBox")->buttons()) {
                ++buttons;
                EXPECT_EQ(button->findChild<QObject *>("SoftButtonPainter") != nullptr, style != 0);
            }
        });
        EXPECT_EQ(buttons, 2);
    }
}

TEST_F(FileDialog, SavingTheConfigurationWritesTheSettings) {
    UseQtDesktop();
    MakeProgramFolders();
    OpenExportPath = home.Folder();
    EXPECT_FALSE(ConfigIsWritten());
    SaveConfiguration();
    EXPECT_TRUE(ConfigIsWritten());
}

TEST_F(FileDialog, KeepingASettingWritesItsRow) {
    UseQtDesktop();
    MakeProgramFolders();
    InstrumentVolume = 12;
    KeepSetting(InstrumentVolume);
    EXPECT_TRUE(ReadTestText(home.File("Quillbrook/Tonewright 17/Extras.ini"))
                    .ends_with("[Extras]\nInstrumentVolume = 12\n"));
}

// ---- the trash

class Trash : public FileDialog {
protected:
    void SetUp() override {
        FileDialog::SetUp();
        qputenv("HOME", home.path.string().c_str());
        qunsetenv("XDG_DATA_HOME");
        std::filesystem::create_directory(home.path / "here");
        std::filesystem::current_path(home.path / "here");
        UseQtDesktop();
    }
    void TearDown() override {
        std::filesystem::current_path(formerFolder);
        qputenv("HOME", formerHome);
        if (!formerData.isNull()) {
            qputenv("XDG_DATA_HOME", formerData);
        }
        FileDialog::TearDown();
    }

    std::filesystem::path formerFolder = std::filesystem::current_path();
    QByteArray formerHome = qgetenv("HOME"), formerData = qgetenv("XDG_DATA_HOME");
};

TEST_F(Trash, TakesAFileInAHomeWithoutADataFolder) {
    for (const std::string &path : {home.File("here/a.syx_db"), std::string("b.syx_db")}) {
        WriteTestText(path, "voices");
        EXPECT_TRUE(TheDesktop.MoveToTrash(path));
        EXPECT_FALSE(std::filesystem::exists(path));
    }
    EXPECT_TRUE(std::filesystem::is_empty(home.path / "here"));
    EXPECT_EQ(ReadTestText(home.File(".local/share/Trash/files/a.syx_db")), "voices");
    EXPECT_EQ(ReadTestText(home.File(".local/share/Trash/files/b.syx_db")), "voices");
}

TEST_F(Trash, WithoutAPlaceForItTheFileStaysAndTheCallFails) {
    home.WriteText(".local", "no folder");
    WriteTestText("a.syx_db", "voices");
    EXPECT_FALSE(TheDesktop.MoveToTrash("a.syx_db"));
    EXPECT_EQ(ReadTestText("a.syx_db"), "voices");
    EXPECT_FALSE(std::filesystem::exists("files"));
    EXPECT_FALSE(TheDesktop.MoveToTrash("missing.syx_db"));
}

// ---- the commands over the real dialogs

TEST_F(FileDialog, CtrlOOpensTheChosenBank) {
    OpenPath = home.Folder();
    home.Write("bank.syx", TestBank());
    // No driver has been chosen yet, so that the name needs its extension.
    WhenItStands([](QFileDialog &dialog) { TypeName(dialog, "bank.syx"); });
    QTest::keyClick(window.get(), Qt::Key_O, Qt::ControlModifier);
    RunPosted();
    EXPECT_EQ(window->windowTitle(), "Tonewright [ bank.syx ]");
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(OpenPath, home.Folder());
}

TEST_F(FileDialog, SaveAsWritesUnderTheNewNameWithTheExtension) {
    OpenBank();
    WhenItStands([](QFileDialog &dialog) {
        EXPECT_EQ(NameEdit(dialog).text(), "bank.syx");
        TypeName(dialog, "copy");
    });
    EXPECT_EQ(RunCommand(CommandSaveAs), 1);
    EXPECT_EQ(ReadTestFile(home.File("copy.syx")), TestBank());
    EXPECT_EQ(window->windowTitle(), "Tonewright [ copy.syx ]");
}

TEST_F(FileDialog, ACancelledExportAndImportChangeNothing) {
    OpenBank();
    OpenExportPath = home.Folder();
    WhenItStands([this](QFileDialog &dialog) {
        EXPECT_EQ(NameEdit(dialog).text(), "VOICE 01.sy1");
        EXPECT_EQ(FolderOf(dialog), home.path.string());
    });
    EXPECT_EQ(RunCommand(CommandExport), 1);
    WhenItStands([](QFileDialog &) {});
    EXPECT_EQ(RunCommand(CommandImport), 1);
    EXPECT_EQ(NameAt(0), "VOICE 01");
    EXPECT_FALSE(home.Holds("VOICE 01.sy1"));
}

} // namespace
} // namespace tonewright
