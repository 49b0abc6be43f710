// The message dialog, driven with mouse and keys.
#include "common/settings.h"
#include "common/sound.h"
#include "common/strings.h"
#include "common/view/dialog_controls.h"
#include "common/view/message_dialog.h"
#include "common/view/wrapped_text.h"
#include "support/paths.h"

#include "support/pixels.h"
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <functional>

namespace tonewright {
namespace {

constexpr std::uint32_t TitledFlags = MessageFlagBase | MessageFlagButton1 | MessageFlagCaption;

QDialog *StandingDialog() {
    QWidget *window = QApplication::activeModalWidget();
    return qobject_cast<QDialog *>(window ? window : QApplication::activePopupWidget());
}

// Runs a request and does something with its dialog. A dialog that still stands afterwards is
// closed, and the test fails.
void RunWith(MessageRequest &request, const std::function<void(QDialog &)> &act) {
    bool seen = false;
    QTimer::singleShot(0, [&] {
        QDialog *dialog = StandingDialog();
        ASSERT_NE(dialog, nullptr);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(dialog));
        seen = true;
        act(*dialog);
        if (dialog->isVisible()) {
            ADD_FAILURE() << "the dialog is still open";
            dialog->done(0);
        }
    });
    RunMessageDialog(request);
    EXPECT_TRUE(seen);
}

QPushButton *ButtonOf(const QDialog &dialog, int control) {
    return dialog.findChild<QPushButton *>(QString("control_%1").arg(control));
}

QCheckBox *CheckOf(const QDialog &dialog, int control) {
    return dialog.findChild<QCheckBox *>(QString("control_%1").arg(control));
}

WrappedText *TextOf(const QDialog &dialog) {
    return ControlOf<WrappedText>(&dialog, 65);
}

void Click(const QDialog &dialog, int control) {
    QPushButton *button = ButtonOf(dialog, control);
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton);
}

MessageRequest ThreeButtons() {
    MessageRequest request;
    request.flags = TitledFlags | MessageFlagButton2 | MessageFlagButton3;
    request.text = "Do you wish to go on?";
    request.button1 = "Yes";
    request.button2 = "No";
    request.button3 = "Cancel";
    request.caption = "Message";
    return request;
}

TEST(MessageDialog, EachButtonGivesItsResult) {
    const std::pair<int, int> results[] = {{1, 6}, {7, 7}, {2, 2}};
    for (const auto &[control, result] : results) {
        MessageRequest request = ThreeButtons();
        RunWith(request, [control = control](QDialog &dialog) { Click(dialog, control); });
        EXPECT_EQ(request.result, result) << control;
    }
}

TEST(MessageDialog, TheCloseBoxActsAsControl2) {
    MessageRequest request = ThreeButtons();
    RunWith(request, [](QDialog &dialog) { dialog.close(); });
    EXPECT_EQ(request.result, 2);
}

TEST(MessageDialog, TheCloseBoxOfADialogWithOneButtonActsAsControl2) {
    MessageRequest request;
    request.flags = TitledFlags;
    RunWith(request, [](QDialog &dialog) {
        EXPECT_EQ(ButtonOf(dialog, 2), nullptr);
        dialog.close();
    });
    EXPECT_EQ(request.result, 2);
}

TEST(MessageDialog, EscActsAsControl2) {
    MessageRequest request = ThreeButtons();
    RunWith(request, [](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(request.result, 2);
}

TEST(MessageDialog, TheFirstButtonHasTheFocusAndTakesTheReturnKey) {
    MessageRequest request = ThreeButtons();
    RunWith(request, [](QDialog &dialog) {
        EXPECT_EQ(dialog.focusWidget(), ButtonOf(dialog, 1));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(request.result, 6);
}

TEST(MessageDialog, TheTabKeyReachesTheSecondButton) {
    MessageRequest request = ThreeButtons();
    RunWith(request, [](QDialog &dialog) {
        dialog.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(&dialog, Qt::Key_Tab);
        EXPECT_EQ(dialog.focusWidget(), ButtonOf(dialog, 7));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(request.result, 7);
}

TEST(MessageDialog, CaptionsComeFromTheRequestAndTheFirstOneFromTheTemplateWithoutItsFlag) {
    MessageRequest request = ThreeButtons();
    request.flags |= MessageFlagButton4;
    request.button4 = "Help";
    RunWith(request, [](QDialog &dialog) {
        EXPECT_EQ(ButtonOf(dialog, 1)->text(), "Yes");
        EXPECT_EQ(ButtonOf(dialog, 7)->text(), "No");
        EXPECT_EQ(ButtonOf(dialog, 2)->text(), "Cancel");
        EXPECT_EQ(ButtonOf(dialog, 9)->text(), "Help");
        EXPECT_EQ(TextOf(dialog)->text(), "Do you wish to go on?");
        EXPECT_EQ(dialog.windowTitle(), "Message");
        Click(dialog, 1);
    });
    request.flags = MessageFlagBase | MessageFlagCaption;
    RunWith(request, [](QDialog &dialog) {
        EXPECT_EQ(ButtonOf(dialog, 1)->text(), "Dismiss");
        for (const int control : {7, 2, 9}) {
            EXPECT_EQ(ButtonOf(dialog, control), nullptr) << control;
        }
        Click(dialog, 1);
    });
}

TEST(MessageDialog, ButtonsStandInOneColumnWithGapsOf80PercentOfTheFirstOnesTop) {
    MessageRequest request = ThreeButtons();
    request.flags |= MessageFlagButton4;
    request.button4 = "Help";
    RunWith(request, [](QDialog &dialog) {
        const QRect first = ButtonOf(dialog, 1)->geometry();
        const int step = first.height() + first.top() * 80 / 100;
        int expectedTop = first.top();
        for (const int control : {7, 2, 9}) {
            expectedTop += step;
            EXPECT_EQ(ButtonOf(dialog, control)->geometry(),
                      QRect(QPoint(first.left(), expectedTop), first.size()))
                << control;
        }
        Click(dialog, 1);
    });
}

TEST(MessageDialog, ALongCaptionWidensTheWholeColumn) {
    MessageRequest request = ThreeButtons();
    request.button2 = "Do not replace any of the documents";
    RunWith(request, [](QDialog &dialog) {
        const QPushButton *second = ButtonOf(dialog, 7);
        EXPECT_GE(second->width(), second->fontMetrics().horizontalAdvance(second->text()));
        EXPECT_EQ(ButtonOf(dialog, 1)->width(), second->width());
        EXPECT_LE(second->geometry().right(), dialog.rect().right());
        Click(dialog, 1);
    });
}

TEST(MessageDialog, AShortTextIsAsHighAsThreeButtonsAndTwoMargins) {
    MessageRequest request = ThreeButtons();
    RunWith(request, [](QDialog &dialog) {
        const QRect first = ButtonOf(dialog, 1)->geometry();
        EXPECT_EQ(TextOf(dialog)->height(), 3 * first.height() + 2 * first.top());
        Click(dialog, 1);
    });
}

TEST(MessageDialog, CheckBoxesOpenInTheirStatesAndWriteThemAtEachChange) {
    MessageRequest request = ThreeButtons();
    request.flags |= MessageFlagCheck1 | MessageFlagCheck2 | MessageFlagCheck3;
    request.check1 = "One";
    request.check2 = "Two";
    request.check3 = "Three";
    request.state1 = 1;
    request.state2 = 0;
    request.state3 = 1;
    RunWith(request, [&](QDialog &dialog) {
        EXPECT_TRUE(CheckOf(dialog, 500)->isChecked());
        EXPECT_FALSE(CheckOf(dialog, 501)->isChecked());
        EXPECT_TRUE(CheckOf(dialog, 502)->isChecked());
        EXPECT_EQ(CheckOf(dialog, 501)->text(), "Two");
        QTest::keyClick(CheckOf(dialog, 500), Qt::Key_Space);
        EXPECT_EQ(request.state1, 0);
        QTest::keyClick(CheckOf(dialog, 501), Qt::Key_Space);
        EXPECT_EQ(request.state2, 1);
        QTest::keyClick(CheckOf(dialog, 501), Qt::Key_Space);
        EXPECT_EQ(request.state2, 0);
        QTest::keyClick(CheckOf(dialog, 501), Qt::Key_Space);
        Click(dialog, 7);
    });
    EXPECT_EQ(request.result, 7);
    EXPECT_EQ(request.state1, 0);
    EXPECT_EQ(request.state2, 1);
    EXPECT_EQ(request.state3, 1);
}

TEST(MessageDialog, CheckBoxesAndNotesStandUnderTheTextWithTheMarginBetween) {
    MessageRequest request = ThreeButtons();
    request.flags |= MessageFlagCheck1 | MessageFlagCheck3 | MessageFlagNote1 | MessageFlagNote2 |
                     MessageFlagNote3;
    request.check1 = "One";
    request.check3 = "Three";
    request.note1 = "First note";
    request.note2 = "Second note, which is so long that it does not fit into one line of the text.";
    request.note3 = "Third note";
    RunWith(request, [](QDialog &dialog) {
        EXPECT_EQ(CheckOf(dialog, 501), nullptr);
        const int margin = ButtonOf(dialog, 1)->y();
        std::vector<QWidget *> lines = {TextOf(dialog), CheckOf(dialog, 500), CheckOf(dialog, 502)};
        for (const char *text : {"First note", "Second note", "Third note"}) {
            for (QLabel *note : dialog.findChildren<QLabel *>()) {
                if (note->text().startsWith(text)) {
                    EXPECT_GE(note->height(), note->heightForWidth(note->width()));
                    lines.push_back(note);
                }
            }
        }
        ASSERT_EQ(lines.size(), 6u);
        for (std::size_t i = 1; i < lines.size(); ++i) {
            EXPECT_EQ(lines[i]->y(), lines[i - 1]->geometry().bottom() + 1 + margin) << i;
            EXPECT_EQ(lines[i]->x(), TextOf(dialog)->x());
        }
        EXPECT_GE(CheckOf(dialog, 500)->height(), 16);
        EXPECT_EQ(dialog.height(),
                  lines.back()->geometry().bottom() + 1 + margin + margin * 30 / 100);
        Click(dialog, 1);
    });
}

TEST(MessageDialog, AskOnceSwitchesItselfOffAlsoWhenTheAnswerIsNo) {
    TheDesktop.RunMessage = RunMessageDialog;
    std::uint32_t flag = 1;
    QTimer::singleShot(0, [] {
        QDialog *dialog = StandingDialog();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(CheckOf(*dialog, 500)->text(), "Show me this message again next time.");
        QTest::keyClick(CheckOf(*dialog, 500), Qt::Key_Space);
        Click(*dialog, 7);
    });
    EXPECT_EQ(AskOnce(nullptr, "Do you wish to save it?", flag), 7);
    EXPECT_EQ(flag, 0u);
}

TEST(MessageDialog, TheFourthButtonCallsTheHelpHandlerAndEndsNothing) {
    MessageRequest request = ThreeButtons();
    request.flags |= MessageFlagButton4;
    request.button4 = "Help";
    request.helpTopic = "SETUP";
    std::vector<std::string> topics;
    const QWidget *handlerDialog = nullptr;
    request.helpHandler = [&](QWidget *dialog, const std::string &topic) {
        handlerDialog = dialog;
        topics.push_back(topic);
    };
    RunWith(request, [&](QDialog &dialog) {
        Click(dialog, 9);
        Click(dialog, 9);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(handlerDialog, &dialog);
        Click(dialog, 7);
    });
    EXPECT_EQ(topics, (std::vector<std::string>{"SETUP", "SETUP"}));
    EXPECT_EQ(request.result, 7);
}

TEST(MessageDialog, TheFourthButtonDoesNothingWithoutATopicOrAHandler) {
    MessageRequest request = ThreeButtons();
    request.flags |= MessageFlagButton4;
    int calls = 0;
    request.helpHandler = [&](QWidget *, const std::string &) { ++calls; };
    RunWith(request, [](QDialog &dialog) {
        Click(dialog, 9);
        Click(dialog, 1);
    });
    EXPECT_EQ(calls, 0);
    request.helpTopic = "SETUP";
    request.helpHandler = nullptr;
    RunWith(request, [](QDialog &dialog) {
        Click(dialog, 9);
        Click(dialog, 1);
    });
    EXPECT_EQ(request.result, 6);
}

TEST(MessageDialog, APressOutsideAPopUpYieldsTheCommandThatItsButtonsSelect) {
    const std::pair<std::uint32_t, int> results[] = {
        {0, 6},
        {MessageFlagButton2, 7},
        {MessageFlagButton3, 2},
        {MessageFlagButton2 | MessageFlagButton3, 2},
    };
    for (const auto &[buttons, result] : results) {
        MessageRequest request;
        request.flags = MessageFlagBase | MessageFlagButton1 | MessageFlagPopup | buttons;
        request.button1 = "Yes";
        RunWith(request, [](QDialog &dialog) {
            QTest::mousePress(&dialog, Qt::LeftButton, {}, QPoint(5, 5));
            EXPECT_TRUE(dialog.isVisible());
            QTest::mousePress(&dialog, Qt::LeftButton, {}, QPoint(-20, 5));
            EXPECT_FALSE(dialog.isVisible());
        });
        EXPECT_EQ(request.result, result) << buttons;
    }
}

TEST(MessageDialog, APressOutsideADialogThatIsNoPopUpDoesNothing) {
    MessageRequest request = ThreeButtons();
    RunWith(request, [](QDialog &dialog) {
        QTest::mousePress(&dialog, Qt::LeftButton, {}, QPoint(-20, 5));
        EXPECT_TRUE(dialog.isVisible());
        Click(dialog, 1);
    });
}

TEST(MessageDialog, APopUpWithATitleDrawsItAboveEverythingElse) {
    MessageRequest request = ThreeButtons();
    request.flags |= MessageFlagPopup;
    RunWith(request, [](QDialog &dialog) {
        const QImage image = dialog.grab().toImage();
        const QRgb bar = dialog.palette().color(QPalette::Highlight).rgb();
        EXPECT_EQ(image.pixel(3, 3), bar);
        EXPECT_NE(image.pixel(3, ButtonOf(dialog, 1)->y()), bar);
        Click(dialog, 1);
    });
}

TEST(MessageDialog, TheCaptionFlagChoosesBetweenTitleBarAndThinBorder) {
    MessageRequest request = ThreeButtons();
    RunWith(request, [](QDialog &dialog) {
        EXPECT_TRUE(dialog.windowFlags().testFlag(Qt::WindowTitleHint));
        EXPECT_TRUE(dialog.windowFlags().testFlag(Qt::WindowCloseButtonHint));
        EXPECT_FALSE(dialog.windowFlags().testFlag(Qt::FramelessWindowHint));
        Click(dialog, 1);
    });
    request.flags &= ~MessageFlagCaption;
    RunWith(request, [](QDialog &dialog) {
        EXPECT_TRUE(dialog.windowFlags().testFlag(Qt::FramelessWindowHint));
        const QImage image = dialog.grab().toImage();
        const QRgb border = dialog.palette().color(QPalette::Shadow).rgb();
        EXPECT_EQ(image.pixel(0, 0), border);
        EXPECT_EQ(image.pixel(dialog.width() - 1, dialog.height() - 1), border);
        EXPECT_NE(image.pixel(1, 1), border);
        Click(dialog, 1);
    });
}

TEST(MessageDialog, ThePictureStandsInControl10OnlyWithItsFlag) {
    MessageRequest request = ThreeButtons();
    request.picture = ApplicationPicture;
    int textLeftWithout = 0;
    RunWith(request, [&](QDialog &dialog) {
        EXPECT_FALSE(dialog.findChild<QLabel *>("control_10")->isVisible());
        textLeftWithout = TextOf(dialog)->x();
        Click(dialog, 1);
    });
    request.flags |= MessageFlagPicture;
    RunWith(request, [&](QDialog &dialog) {
        auto *picture = dialog.findChild<QLabel *>("control_10");
        EXPECT_TRUE(picture->isVisible());
        EXPECT_EQ(picture->size(), QSize(96, 96));
        EXPECT_TRUE(HasInk(*picture));
        EXPECT_GT(TextOf(dialog)->x(), picture->geometry().right());
        EXPECT_GT(TextOf(dialog)->x(), textLeftWithout);
        Click(dialog, 1);
    });
}

TEST(MessageDialog, TheFontIsSetOnTheTextOnlyWithItsFlag) {
    MessageRequest request = ThreeButtons();
    request.font = {"Times New Roman", 40, 700};
    RunWith(request, [](QDialog &dialog) {
        EXPECT_EQ(TextOf(dialog)->font().family(), "Arial");
        Click(dialog, 1);
    });
    request.flags |= MessageFlagFont;
    RunWith(request, [](QDialog &dialog) {
        EXPECT_EQ(TextOf(dialog)->font().family(), "Times New Roman");
        EXPECT_TRUE(TextOf(dialog)->font().bold());
        EXPECT_EQ(ButtonOf(dialog, 1)->font().family(), "Arial");
        Click(dialog, 1);
    });
}

TEST(MessageDialog, NothingIsCutOffWhateverTheFontAndTheText) {
    const std::string texts[] = {
        "Short",
        LoadProgramString(111),
        "/a/path/" + std::string(300, 'x') + ".syx may be damaged.",
        LoadProgramString(12000),
    };
    for (const std::string &text : texts) {
        for (const int height : {8, 16, 31, 64}) {
            MessageRequest request = ThreeButtons();
            request.flags |= MessageFlagFont | MessageFlagPicture | MessageFlagCheck1;
            request.check1 = "Show me this message again next time, and the time after that one.";
            request.picture = ApplicationPicture;
            request.text = text;
            request.font = {"Arial", height, 400};
            RunWith(request, [](QDialog &dialog) {
                const WrappedText *label = TextOf(dialog);
                EXPECT_GE(label->height(), label->heightForWidth(label->width()));
                EXPECT_GE(CheckOf(dialog, 500)->width(), CheckOf(dialog, 500)->sizeHint().width());
                for (const QWidget *child :
                     dialog.findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
                    EXPECT_TRUE(dialog.rect().contains(child->geometry()));
                }
                EXPECT_LT(label->mapTo(&dialog, QPoint(label->width(), 0)).x(),
                          ButtonOf(dialog, 1)->x());
                Click(dialog, 1);
            });
        }
    }
}

TEST(MessageDialog, ATextHigherThanTheScreenIsWidenedAndThenScrolled) {
    MessageRequest request = ThreeButtons();
    RunWith(request, [](QDialog &dialog) {
        EXPECT_EQ(dialog.findChild<QScrollArea *>(), nullptr);
        Click(dialog, 1);
    });
    for (int i = 0; i < 300; ++i) {
        request.text += "One more sentence for the screen.\n";
    }
    RunWith(request, [](QDialog &dialog) {
        const QSize screen = QGuiApplication::primaryScreen()->availableSize();
        EXPECT_LE(dialog.width(), screen.width());
        EXPECT_LE(dialog.height(), screen.height());
        EXPECT_NE(dialog.findChild<QScrollArea *>(), nullptr);
        Click(dialog, 1);
    });
}

TEST(MessageDialog, ItOpensInTheMiddleOfTheScreenAndCannotBeResized) {
    MessageRequest request = ThreeButtons();
    RunWith(request, [](QDialog &dialog) {
        // The frame of the platform is not counted.
        const QPoint distance = dialog.geometry().center() -
                                QGuiApplication::primaryScreen()->availableGeometry().center();
        EXPECT_LE(distance.manhattanLength(), 4);
        EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
        Click(dialog, 1);
    });
}

TEST(MessageDialog, ButtonsAreSoftWhileTheSettingIsNotNone) {
    MessageRequest request = ThreeButtons();
    const auto softCount = [](const QDialog &dialog) {
        return dialog.findChildren<QObject *>("SoftButtonPainter").size();
    };
    SoftButtons = 1;
    RunWith(request, [&](QDialog &dialog) {
        EXPECT_EQ(softCount(dialog), 3);
        Click(dialog, 1);
    });
    SoftButtons = 0;
    RunWith(request, [&](QDialog &dialog) {
        EXPECT_EQ(softCount(dialog), 0);
        Click(dialog, 1);
    });
    SoftButtons = 1;
}

TEST(MessageDialog, TheWaitCursorGivesWayToAnArrowWhileItAsks) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    MessageRequest request = ThreeButtons();
    RunWith(request, [](QDialog &dialog) {
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
        Click(dialog, 1);
    });
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    QApplication::restoreOverrideCursor();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(MessageDialog, TheSoundPlaysFromTheStartAndIsSilentAtTheEnd) {
    std::atomic<int> opened = 0, closed = 0;
    TheSoundDevice = {
        .Open =
            [&](const SoundFormat &) {
                ++opened;
                return true;
            },
        .Write = [](std::span<const std::uint8_t>) -> std::ptrdiff_t { return 0; },
        .Playing = [] { return true; },
        .Close = [&] { ++closed; },
    };
    TheDesktop.PlaySoundFile = [](const std::string &path) { return PlaySoundFile(path.c_str()); };
    MessageRequest request = ThreeButtons();
    request.soundName = SourceFile("resources/sounds/confirm.wav");
    RunWith(request, [](QDialog &dialog) { Click(dialog, 1); });
    EXPECT_EQ(opened, 0) << "without its flag the sound does not play";
    request.flags |= MessageFlagSound;
    RunWith(request, [&](QDialog &dialog) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return opened == 1; }));
        EXPECT_EQ(closed, 0);
        Click(dialog, 1);
    });
    EXPECT_EQ(closed, 1);
}

TEST(MessageDialog, AnOwnerIsItsParentWindow) {
    QWidget window;
    auto *child = new QWidget(&window);
    window.show();
    MessageRequest request = ThreeButtons();
    request.owner = child;
    RunWith(request, [&](QDialog &dialog) {
        EXPECT_EQ(dialog.parentWidget(), &window);
        Click(dialog, 1);
    });
}

} // namespace
} // namespace tonewright
