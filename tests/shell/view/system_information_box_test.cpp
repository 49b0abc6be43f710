// The box "System Information", used with mouse and keys.
#include "window_fixture.h"

#include "common/platform.h"
#include "shell/shell_window.h"
#include "shell/view/desktop_qt.h"
#include "shell/view/system_information_box.h"
#include "support/modal_box.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QListWidget>
#include <QScreen>
#include <QScrollBar>

namespace tonewright {
namespace {

class SystemInformationBox : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(home.path / "Quillbrook");
        PlatformFolders = {.applicationData = home.Folder(),
                           .documents = home.File("documents"),
                           .pictures = "",
                           .programs = ""};
    }
    // Opens the box of made-up facts and hands it and its list to `use`, which closes it.
    void WithBox(const std::function<void(QDialog &, QListWidget &)> &use) {
        WithModalBox(
            [] {
                ShowSystemInformation(nullptr,
                                      {.system = "Some Linux 12",
                                       .build = "6.1",
                                       .processor = ProcessorFacts{7, "Maker", "Fast", {"fpu"}}});
            },
            [&](QDialog &box) {
                auto *list = box.findChild<QListWidget *>("control_61");
                ASSERT_NE(list, nullptr);
                QTRY_COMPARE(list->item(list->count() - 1)->text(), "Patch:\t1");
                use(box, *list);
            });
    }
    static QPushButton &Button(QDialog &box, const QString &caption) {
        for (QPushButton *button : box.findChildren<QPushButton *>()) {
            if (button->text() == caption) {
                return *button;
            }
        }
        throw std::runtime_error("no button " + caption.toStdString());
    }
    static void Click(QDialog &box, const QString &caption) {
        QTest::mouseClick(&Button(box, caption), Qt::LeftButton);
    }
    static QStringList Texts(const QListWidget &list) {
        QStringList texts;
        for (int row = 0; row < list.count(); ++row) {
            texts += list.item(row)->text();
        }
        return texts;
    }

    TempFolder home;
    ScriptedDesktop desktop;
};

TEST_F(SystemInformationBox, ListsTheMachineThenTheProgram) {
    WithBox([](QDialog &box, QListWidget &list) {
        EXPECT_EQ(box.windowTitle(), "System Information");
        const QStringList texts = Texts(list);
        EXPECT_EQ(texts[0], "Operating system:\tSome Linux 12");
        EXPECT_EQ(texts[1], "Operating system build:\t6.1");
        const QScreen *screen = QGuiApplication::primaryScreen();
        EXPECT_EQ(texts[2], QString("Screen width:\t%1 pixels").arg(screen->size().width()));
        EXPECT_EQ(texts[3], QString("Screen depth:\t%1 pixels").arg(screen->size().height()));
        EXPECT_TRUE(texts[4].startsWith("Screen colors:\t"));
        EXPECT_EQ(texts[5], "Monitors:\t1");
        const auto features = texts.indexOf("CPUID features:\tfpu");
        ASSERT_GT(features, 0);
        EXPECT_TRUE(texts[features + 1].startsWith("Date:\t"));
        EXPECT_EQ(texts[features + 2], "Application:\tTonewright");
        Click(box, "Dismiss");
    });
    EXPECT_EQ(desktop.clipboardTexts, std::vector<std::string>{});
}

TEST_F(SystemInformationBox, TheProgramsOwnLinesComeWhenTheBoxStands) {
    bool seen = false;
    struct ShowFilter : QObject {
        bool &seen;
        explicit ShowFilter(bool &flag) : seen(flag) {}
        bool eventFilter(QObject *watched, QEvent *event) override {
            auto *box = qobject_cast<QDialog *>(watched);
            if (box && event->type() == QEvent::Show) {
                auto *list = box->findChild<QListWidget *>("control_61");
                seen = list && list->item(list->count() - 1)->text() == "CPUID features:\tfpu";
            }
            return false;
        }
    } filter(seen);
    qApp->installEventFilter(&filter);
    WithBox([](QDialog &box, QListWidget &) { Click(box, "Dismiss"); });
    EXPECT_TRUE(seen);
}

TEST_F(SystemInformationBox, DismissWithCtrlCopiesTheReportWithTheConfigurationFileFirst) {
    home.WriteText("Quillbrook/Tonewright 17.ini", "[Tonewright]\n");
    desktop.controlDown = true;
    WithBox([](QDialog &box, QListWidget &) { Click(box, "Dismiss"); });
    ASSERT_EQ(desktop.clipboardTexts.size(), 1u);
    const std::string &text = desktop.clipboardTexts[0];
    EXPECT_TRUE(text.starts_with("Operating system:       Some Linux 12\r\n"
                                 "Operating system build: 6.1\r\n"))
        << text;
    EXPECT_TRUE(text.ends_with("\r\nPatch:                  1\r\n"
                               ";\r\n;\r\n;------ INI FILE ------\r\n;\r\n;\r\n[Tonewright]\n"))
        << text;
}

TEST_F(SystemInformationBox, WithTheConfigurationFileMissingTheClipboardHoldsTheReportAlone) {
    desktop.controlDown = true;
    WithBox([](QDialog &box, QListWidget &) { Click(box, "Dismiss"); });
    ASSERT_EQ(desktop.clipboardTexts.size(), 1u);
    EXPECT_TRUE(desktop.clipboardTexts[0].ends_with("\r\nPatch:                  1\r\n"))
        << desktop.clipboardTexts[0];
}

TEST_F(SystemInformationBox, KeysDismissItWithAndWithoutACopy) {
    WithBox([](QDialog &box, QListWidget &) {
        EXPECT_TRUE(Button(box, "Dismiss").hasFocus());
        QTest::keyClick(box.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(desktop.clipboardTexts.size(), 0u);
    desktop.controlDown = true;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
        desktop.clipboardTexts.clear();
        WithBox([key](QDialog &box, QListWidget &) {
            QTest::keyClick(box.focusWidget(), key, Qt::ControlModifier);
        });
        EXPECT_EQ(desktop.clipboardTexts.size(), 1u) << key;
    }
}

TEST_F(SystemInformationBox, EscAndTheCloseBoxCopyNothing) {
    desktop.controlDown = true;
    WithBox([](QDialog &box, QListWidget &) { QTest::keyClick(&box, Qt::Key_Escape); });
    WithBox([](QDialog &box, QListWidget &) { box.close(); });
    EXPECT_EQ(desktop.clipboardTexts.size(), 0u);
}

TEST_F(SystemInformationBox, ItsButtonsOpenTheFoldersOfTheProgram) {
    desktop.addressesOpen = false; // nothing is said about that
    WithBox([&](QDialog &box, QListWidget &list) {
        struct {
            const char *caption;
            FileManagerCall call;
        } const expected[] = {
            {"Open Quillbrook configuration folder",
             PlatformFileManagerCall(home.File("Quillbrook"), "Tonewright 17.ini")},
            {"Open Tonewright configuration folder",
             PlatformFileManagerCall(home.File("Quillbrook/Tonewright 17"), "")},
            {"Open Tonewright documents folder",
             PlatformFileManagerCall(home.File("documents/My Tonewright 17 Documents"), "")},
        };
        int bottom = list.mapTo(&box, QPoint(0, list.height())).y();
        for (const auto &row : expected) {
            QPushButton &button = Button(box, row.caption);
            EXPECT_EQ(button.width(), list.width());
            EXPECT_GE(button.y(), bottom);
            EXPECT_GE(button.width(), button.sizeHint().width());
            bottom = button.geometry().bottom();
            desktop.opened.clear();
            QTest::mouseClick(&button, Qt::LeftButton);
            ASSERT_EQ(desktop.opened.size(), 1u) << row.caption;
            EXPECT_EQ(desktop.opened[0].program, row.call.program);
            EXPECT_EQ(desktop.opened[0].address, row.call.argument);
            desktop.opened.clear();
            button.setFocus();
            QTest::keyClick(&button, Qt::Key_Space);
            EXPECT_EQ(desktop.opened.size(), 1u) << row.caption;
            EXPECT_TRUE(box.isVisible());
        }
        EXPECT_LE(bottom, box.height());
        Click(box, "Dismiss");
    });
}

TEST_F(SystemInformationBox, TabGoesThroughListButtonsAndDismiss) {
    WithBox([](QDialog &box, QListWidget &list) {
        std::vector<QWidget *> order;
        for (int step = 0; step < 5; ++step) {
            QTest::keyClick(box.focusWidget(), Qt::Key_Tab);
            order.push_back(box.focusWidget());
        }
        EXPECT_EQ(order,
                  (std::vector<QWidget *>{
                      &list, &Button(box, "Open Quillbrook configuration folder"),
                      &Button(box, "Open Tonewright configuration folder"),
                      &Button(box, "Open Tonewright documents folder"), &Button(box, "Dismiss")}));
        list.setFocus();
        QTest::keyClick(&list, Qt::Key_End);
        EXPECT_EQ(list.currentItem()->text(), "Patch:\t1");
        Click(box, "Dismiss");
    });
}

TEST_F(SystemInformationBox, ScreenReadersHearLabelAndValue) {
    WithBox([](QDialog &box, QListWidget &list) {
        QAccessibleInterface *rows = QAccessible::queryAccessibleInterface(&list);
        ASSERT_NE(rows, nullptr);
        EXPECT_EQ(rows->text(QAccessible::Name), "System information");
        EXPECT_EQ(rows->child(0)->text(QAccessible::Name), "Operating system: Some Linux 12");
        Click(box, "Dismiss");
    });
}

TEST_F(SystemInformationBox, TheLongPlaceOfAVolumeMovesNoOtherValue) {
    const auto widths = [](const std::string &place) {
        std::vector<int> widths;
        WithModalBox(
            [&] {
                ShowSystemInformation(
                    nullptr,
                    {.system = "Some Linux 12", .build = "6.1", .volumes = {{place, FixedVolume}}});
            },
            [&](QDialog &box) {
                auto *list = box.findChild<QListWidget *>("control_61");
                QTRY_COMPARE(list->item(list->count() - 1)->text(), "Patch:\t1");
                for (int row = 0; row < list->count(); ++row) {
                    if (!list->item(row)->text().startsWith("Drive") &&
                        !list->item(row)->text().startsWith("Date")) {
                        widths.push_back(
                            list->sizeHintForIndex(list->model()->index(row, 0)).width());
                    }
                }
                Click(box, "Dismiss");
            });
        return widths;
    };
    const std::vector<int> usual = widths("/");
    ASSERT_FALSE(usual.empty());
    EXPECT_EQ(widths("/" + std::string(100, 'm')), usual);
}

TEST_F(SystemInformationBox, ALongValueCanBeScrolledIntoSight) {
    WithModalBox(
        [] { ShowSystemInformation(nullptr, {.system = std::string(300, 'M'), .build = ""}); },
        [](QDialog &box) {
            auto *list = box.findChild<QListWidget *>("control_61");
            const int width = list->fontMetrics().horizontalAdvance(QString(300, 'M'));
            QTRY_VERIFY(list->horizontalScrollBar()->maximum() + list->viewport()->width() > width);
            Click(box, "Dismiss");
        });
}

class SystemInformationCommand : public WindowTest {};

TEST_F(SystemInformationCommand, TheEntryOfTheHelpMenuOpensTheBox) {
    WithModalBox(
        [&] {
            window->MenuAction(CommandSystemInformation)->trigger();
            RunPosted();
        },
        [](QDialog &box) {
            EXPECT_EQ(box.windowTitle(), "System Information");
            box.close();
        });
}

TEST_F(SystemInformationCommand, TextForTheClipboardLiesThereForOtherPrograms) {
    UseQtDesktop();
    PutClipboardText("a\r\n\xc3\xa9");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("a\r\n\xc3\xa9"));
    QGuiApplication::clipboard()->clear();
}

} // namespace
} // namespace tonewright
