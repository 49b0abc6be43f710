// The sheet of the voice editor as a user meets it: its frame, buttons, keys, tabs and focus.
#include "sheet_window.h"

#include "common/view/fonts.h"
#include "support/builtin_midi.h"
#include "support/comma_locale.h"
#include "support/program_texts.h"

#include <QAccessible>
#include <QClipboard>
#include <QScrollArea>
#include <QShortcut>
#include <QTimer>

#include <algorithm>
#include <initializer_list>

namespace tonewright {
namespace {

constexpr std::uint32_t Buttons[] = {1, 2, 12321, 9};

class VoiceSheetWindow : public SheetWindow {
protected:
    // Every control of the page that takes keys, by number.
    std::vector<std::uint32_t> KeyControls() const {
        std::vector<std::uint32_t> numbers;
        for (const QWidget *widget : Page()->findChildren<QWidget *>()) {
            const QString name = widget->objectName();
            if (name.startsWith("control_") && widget->focusPolicy() != Qt::NoFocus &&
                widget->isEnabled()) {
                numbers.push_back(name.mid(8).toUInt());
            }
        }
        return numbers;
    }
    static std::uint32_t NumberOf(const QWidget *widget) {
        return widget ? widget->objectName().section('_', -1).toUInt() : 0;
    }
    // The numbers of what the Tab key reaches from the first control of the page on, until it comes
    // back; 0 stands for the tabs.
    std::vector<std::uint32_t> TabOrder(std::uint32_t first) const {
        std::vector<std::uint32_t> order;
        Focus(first);
        do {
            order.push_back(NumberOf(QApplication::focusWidget()));
            Key(Qt::Key_Tab);
        } while (NumberOf(QApplication::focusWidget()) != first && order.size() < 100);
        return order;
    }
    static QString NameOf(QWidget *widget) {
        return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
    }
    QScrollArea *Area() const { return qobject_cast<QScrollArea *>(Page()); }
    static bool ScrollsDown(const QScrollArea &area) {
        return area.verticalScrollBar()->isVisible();
    }
    static bool ScrollsAcross(const QScrollArea &area) {
        return area.horizontalScrollBar()->isVisible();
    }
};

// ---- frame, tabs and buttons

TEST_F(VoiceSheetWindow, TheSheetHasItsPagesAndFourButtons) {
    const std::pair<const SheetFamily *, QStringList> families[] = {
        {&Dx7Sheets,
         {"Voice", "Operator 1", "Operator 2", "Operator 3", "Operator 4", "Operator 5",
          "Operator 6"}},
        {&RefaceSheets, {"Voice", "Operator 1", "Operator 2", "Operator 3", "Operator 4"}}};
    for (const auto &[sheets, titles] : families) {
        Edited(*sheets, [&, titles = titles] {
            EXPECT_EQ(sheet->windowTitle(), "Edit Voice");
            EXPECT_FALSE(sheet->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
            EXPECT_TRUE(sheet->windowFlags().testFlag(Qt::WindowCloseButtonHint));
            QStringList shown;
            for (int page = 0; page < Tabs()->count(); ++page) {
                shown.push_back(Tabs()->tabText(page));
            }
            EXPECT_EQ(shown, titles);
            for (const QToolButton *arrow : Tabs()->tabBar()->findChildren<QToolButton *>()) {
                EXPECT_FALSE(arrow->isVisible());
            }
            const QStringList captions = {"OK", "Cancel", "Audition...", "Help"};
            for (int button = 0; button < 4; ++button) {
                auto *push = Control<QPushButton>(Buttons[button]);
                EXPECT_EQ(push->text(), captions[button]);
                EXPECT_TRUE(push->isEnabled());
                EXPECT_EQ(push->isDefault(), button == 0);
            }
            Cancel();
        });
    }
}

TEST_F(VoiceSheetWindow, TheButtonsHaveTheLookOfTheSetting) {
    for (const std::uint32_t style : {0u, 1u, 2u, 3u}) {
        SoftButtons = style;
        Edited(Dx7Sheets, [&] {
            for (const std::uint32_t button : Buttons) {
                const bool drawn = Control(button)->findChild<QObject *>("SoftButtonPainter");
                EXPECT_EQ(drawn, style != 0) << style << ' ' << button;
            }
            Cancel();
        });
    }
}

TEST_F(VoiceSheetWindow, EveryPageIsWholeIn800By600AndTheSheetKeepsOneSize) {
    constexpr int Frame = 8, CaptionAndFrame = 31;
    for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
        VoiceObject voice = sheets->voice;
        Edit(
            *sheets, voice,
            [&] {
                const QSize size = sheet->size();
                EXPECT_LE(size.width(), 800 - Frame);
                EXPECT_LE(size.height(), 600 - CaptionAndFrame);
                EXPECT_EQ(sheet->minimumSize(), sheet->maximumSize());
                for (int page = 0; page < Tabs()->count(); ++page) {
                    ShowTab(page);
                    QTest::qWait(1);
                    EXPECT_EQ(sheet->size(), size) << page;
                    EXPECT_FALSE(ScrollsDown(*Area())) << page;
                    EXPECT_FALSE(ScrollsAcross(*Area())) << page;
                    const QWidget *contents = Area()->widget();
                    EXPECT_GE(contents->width(), contents->sizeHint().width()) << page;
                    EXPECT_GE(contents->height(), contents->sizeHint().height()) << page;
                }
                Cancel();
            },
            31); // a place of many letters
    }
}

TEST_F(VoiceSheetWindow, ALargerFontScrollsThePagesAndCutsNoText) {
    for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
        Edited(*sheets, [&] {
            const QSize size = sheet->size();
            sheet->setFont(FontOfHeight("Arial", 26));
            for (int page = 0; page < 2; ++page) {
                Tabs()->setCurrentIndex(page);
                QTest::qWait(1);
                EXPECT_EQ(sheet->size(), size);
                EXPECT_TRUE(ScrollsDown(*Area()));
                for (const QWidget *control : Page()->findChildren<QWidget *>()) {
                    if (!control->objectName().startsWith("control_") || !control->isVisible()) {
                        continue;
                    }
                    const QSize least = control->minimumSizeHint();
                    EXPECT_GE(control->width(), least.width())
                        << control->objectName().toStdString();
                    EXPECT_GE(control->height(), least.height())
                        << control->objectName().toStdString();
                }
                for (const std::uint32_t button : Buttons) {
                    const QRect place(Control(button)->mapTo(sheet, QPoint()),
                                      Control(button)->size());
                    EXPECT_TRUE(sheet->rect().contains(place)) << button;
                    EXPECT_GE(place.height(), Control(button)->minimumSizeHint().height());
                }
            }
            Cancel();
        });
    }
}

TEST_F(VoiceSheetWindow, TheWheelScrollsAPageThatIsNotWholeAndChangesOnlyWhatHasTheFocus) {
    for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
        VoiceEditPage = 1;
        Edited(*sheets, [&] {
            sheet->setFont(FontOfHeight("Arial", 26));
            QTest::qWait(1);
            QScrollBar *scroll = Area()->verticalScrollBar();
            ASSERT_TRUE(scroll->isVisible());
            Control(1)->setFocus();
            const QString before = Text(220);
            for (const std::uint32_t control : {220u, 10220u, 12220u}) {
                Area()->ensureWidgetVisible(Control(control));
                const int value = scroll->value();
                WheelInWindow(Control(control), value > 0 ? 1 : -1);
                EXPECT_EQ(Text(220), before) << control;
                EXPECT_NE(scroll->value(), value) << control;
            }
            for (const std::uint32_t control : {220u, 10220u, 12220u}) {
                Type(220, "50");
                Area()->ensureWidgetVisible(Control(control));
                const int value = scroll->value();
                WheelInWindow(Control(control), -1);
                EXPECT_EQ(Text(220), "49") << control;
                EXPECT_EQ(scroll->value(), value) << control;
            }
            Cancel();
        });
    }
}

TEST_F(VoiceSheetWindow, EachEdgeOfAPageAlignsItsNumbers) {
    for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
        Edited(*sheets, [&] {
            for (int page = 0; page < 2; ++page) {
                ShowTab(page);
                std::vector<int> edges;
                for (const VoiceParameter &row :
                     page == 0 ? sheets->parameters.voice : sheets->parameters.operators) {
                    const bool isInGrid = row.IsEdit() && row.kind != ParameterKind::Name;
                    if (isInGrid && HasControls(row)) {
                        edges.push_back(Control(row.control)->mapTo(Page(), QPoint()).x());
                    }
                }
                std::ranges::sort(edges);
                edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
                EXPECT_EQ(edges.size(), 2u) << page;
            }
            Cancel();
        });
    }
}

// ---- ways out

TEST_F(VoiceSheetWindow, OkAcceptsWhetherByMouseSpaceReturnOrScreenReader) {
    const std::function<void()> ways[] = {
        [&] { Ok(); },
        [&] {
            Focus(1);
            Key(Qt::Key_Space);
        },
        [&] {
            Focus(1);
            Key(Qt::Key_Return);
        },
        [&] {
            Focus(1);
            Key(Qt::Key_Enter, Qt::KeypadModifier);
        },
        [&] {
            QAccessible::queryAccessibleInterface(Control(1))
                ->actionInterface()
                ->doAction(QAccessibleActionInterface::pressAction());
            QTest::qWait(200); // the toolkit shows the button pressed before it clicks
        },
    };
    for (const auto &way : ways) {
        VoiceObject voice = Dx7Sheets.voice;
        EXPECT_EQ(Edit(Dx7Sheets, voice,
                       [&] {
                           Type(108, "77");
                           way();
                       }),
                  1);
        EXPECT_EQ(VoiceBytes(voice)[137], 77);
    }
}

TEST_F(VoiceSheetWindow, ReturnInAnyControlOfAPageClosesTheSheetAndDropsTheEdits) {
    for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
        for (int page = 0; page < 2; ++page) {
            std::vector<std::uint32_t> controls;
            VoiceEditPage = 0;
            Edited(*sheets, [&] {
                ShowTab(page);
                controls = KeyControls();
                Cancel();
            });
            ASSERT_GT(controls.size(), 20u);
            for (const std::uint32_t control : controls) {
                VoiceEditPage = 0;
                VoiceObject voice = sheets->voice;
                EXPECT_EQ(Edit(*sheets, voice,
                               [&] {
                                   Type(108, "77");
                                   ShowTab(page);
                                   Focus(control);
                                   Key(Qt::Key_Return);
                                   EXPECT_FALSE(sheet->isVisible()) << control;
                               }),
                          0);
                EXPECT_EQ(voice, sheets->voice) << control;
            }
        }
    }
}

TEST_F(VoiceSheetWindow, ReturnOnATabClosesTheSheetAndDropsTheEdits) {
    EXPECT_EQ(Edited(Dx7Sheets,
                     [&] {
                         Type(108, "77");
                         Tabs()->tabBar()->setFocus();
                         Key(Qt::Key_Return);
                         EXPECT_FALSE(sheet->isVisible());
                     }),
              VoiceBytes(Dx7Sheets.voice));
}

TEST_F(VoiceSheetWindow, InCarefulModeReturnInAControlAccepts) {
    CarefulMode = 1;
    EXPECT_EQ(Edited(Dx7Sheets,
                     [&] {
                         Type(108, "77");
                         Key(Qt::Key_Return);
                     })[137],
              77);
}

TEST_F(VoiceSheetWindow, InCarefulModeEscAsksBeforeItDropsEdits) {
    CarefulMode = 1;
    Edited(Dx7Sheets, [&] {
        Type(108, "77");
        const auto question = [](int answer) {
            return ExpectedMessage{
                "You have changed the voice E.PIANO 1x. Do you wish to drop the changes?",
                {"Go on editing", "Drop changes"},
                answer};
        };
        desktop.Expect(question(ResultCancel));
        Key(Qt::Key_Escape);
        EXPECT_TRUE(sheet->isVisible());
        desktop.Expect(question(ResultYes));
        Key(Qt::Key_Escape);
        EXPECT_TRUE(sheet->isVisible());
        desktop.Expect(question(ResultNo));
        sheet->close();
        EXPECT_FALSE(sheet->isVisible());
    });
}

TEST_F(VoiceSheetWindow, ReturnOnCancelOrHelpPressesThatButton) {
    const Bytes before = VoiceBytes(Dx7Sheets.voice);
    EXPECT_EQ(Edited(Dx7Sheets,
                     [&] {
                         Type(108, "77");
                         Focus(9);
                         Key(Qt::Key_Return);
                         EXPECT_EQ(desktop.helpTopics, std::vector<std::string>{"VOICEEDIT"});
                         EXPECT_TRUE(sheet->isVisible());
                         Focus(2);
                         Key(Qt::Key_Return);
                         EXPECT_FALSE(sheet->isVisible());
                     }),
              before);
}

TEST_F(VoiceSheetWindow, EscAndTheCloseButtonOfTheFrameCancelAndKeepTheLastPage) {
    const std::function<void()> ways[] = {[&] { Key(Qt::Key_Escape); }, [&] { sheet->close(); },
                                          [&] { Cancel(); }};
    for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
        for (const auto &way : ways) {
            VoiceEditPage = 0;
            VoiceObject voice = sheets->voice;
            EXPECT_EQ(Edit(*sheets, voice,
                           [&] {
                               Type(108, "77");
                               ShowTab(3);
                               Type(220, "1");
                               way();
                               EXPECT_FALSE(sheet->isVisible());
                           }),
                      0);
            EXPECT_EQ(voice, sheets->voice);
            EXPECT_EQ(VoiceEditPage, 3u);
        }
    }
}

TEST_F(VoiceSheetWindow, AVoiceOfTheOtherFamilyIsRefusedWithAMessageAndNoSheetOpens) {
    const auto refuses = [&](const SheetFamily &sheets, VoiceObject voice) {
        const VoiceObject before = voice;
        desktop.ExpectMessage(NoSuchText);
        EXPECT_EQ(sheets.edit(nullptr, voice, {}, 0), 0);
        EXPECT_EQ(voice, before);
        desktop.ExpectNothingLeft();
    };
    refuses(Dx7Sheets, TestRefaceVoice());
    refuses(RefaceSheets, TestDx7Voice());
    refuses(RefaceSheets, VoiceObject{});
}

// ---- help and audition

TEST_F(VoiceSheetWindow, F1InAnyControlAndHelpOpenTheSameTopicAndTheSheetStays) {
    Edited(RefaceSheets, [&] {
        std::size_t opened = 0;
        for (int page = 0; page < 2; ++page) {
            ShowTab(page);
            for (const std::uint32_t control : KeyControls()) {
                Focus(control);
                Key(Qt::Key_F1);
                ASSERT_EQ(desktop.helpTopics.size(), ++opened) << control;
            }
        }
        Press(9);
        ++opened;
        EXPECT_EQ(desktop.helpTopics, std::vector<std::string>(opened, "VOICEEDIT"));
        EXPECT_TRUE(sheet->isVisible());
        Cancel();
    });
}

TEST_F(VoiceSheetWindow, AuditionPlaysTheVoiceAsItStandsAndKeepsTheSheet) {
    const BuiltinMidi midi;
    std::vector<std::string> titles;
    const auto auditions = [&](const std::function<void()> &press) {
        QTimer close;
        QObject::connect(&close, &QTimer::timeout, [&] {
            QWidget *box = QApplication::activeModalWidget();
            if (box != sheet) {
                titles.push_back(box->windowTitle().toStdString());
                EXPECT_EQ(box->parentWidget(), sheet);
                QTest::mouseClick(ControlOf(box, 1), Qt::LeftButton);
            }
        });
        close.start(5);
        press();
        EXPECT_TRUE(sheet->isVisible());
        EXPECT_TRUE(Control(12321)->isEnabled());
    };
    const int count = TheMidi.Pm_CountDevices();
    MidiPorts ports;
    for (int device = 0; device < count; ++device) {
        (TheMidi.Pm_GetDeviceInfo(device)->input ? ports.in : ports.out) = device;
    }
    VoiceObject voice = Dx7Sheets.voice;
    EXPECT_EQ(Edit(
                  Dx7Sheets, voice,
                  [&] {
                      Type(101, "BELL");
                      auditions([&] { Press(12321); });
                      sheet->activateWindow();
                      ASSERT_TRUE(QTest::qWaitForWindowActive(sheet));
                      ShowTab(1);
                      for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
                          auditions([&] {
                              Focus(12321);
                              Key(key);
                          });
                          sheet->activateWindow();
                          ASSERT_TRUE(QTest::qWaitForWindowActive(sheet));
                      }
                      Cancel();
                  },
                  0, ports),
              0);
    EXPECT_EQ(titles, std::vector<std::string>(3, "Audition BELL"));
    EXPECT_EQ(voice, Dx7Sheets.voice); // accepted is not touched
}

// ---- pages

TEST_F(VoiceSheetWindow, CtrlPageDownCtrlPageUpAndCtrlTabTurnThePagesFromAnyControl) {
    Edited(RefaceSheets, [&] {
        for (const std::uint32_t control : {101u, 106u, 108u, 107u}) {
            Tabs()->setCurrentIndex(0);
            Focus(control);
            Key(Qt::Key_PageDown, Qt::ControlModifier);
            EXPECT_EQ(Tabs()->currentIndex(), 1) << control;
            EXPECT_TRUE(Page()->isAncestorOf(QApplication::focusWidget())) << control;
            Key(Qt::Key_PageUp, Qt::ControlModifier);
            EXPECT_EQ(Tabs()->currentIndex(), 0) << control;
            EXPECT_TRUE(Control(control)->hasFocus());
            Key(Qt::Key_PageUp, Qt::ControlModifier);
            EXPECT_EQ(Tabs()->currentIndex(), 4) << control;
            Key(Qt::Key_PageDown, Qt::ControlModifier);
            EXPECT_EQ(Tabs()->currentIndex(), 0) << control;
            Key(Qt::Key_Tab, Qt::ControlModifier);
            EXPECT_EQ(Tabs()->currentIndex(), 1) << control;
            Key(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
            EXPECT_EQ(Tabs()->currentIndex(), 0) << control;
        }
        Cancel();
    });
}

TEST_F(VoiceSheetWindow, AClickOnATabLeavesTheFocusOnTheFirstControlOfThatPage) {
    Edited(Dx7Sheets, [&] {
        EXPECT_TRUE(Control(101)->hasFocus());
        ShowTab(2);
        EXPECT_TRUE(Control(201)->hasFocus()); // the name is disabled there
        Cancel();
    });
}

TEST_F(VoiceSheetWindow, TheArrowKeysOnATabKeepTheFocusThere) {
    Edited(Dx7Sheets, [&] {
        Tabs()->tabBar()->setFocus();
        Key(Qt::Key_Right);
        EXPECT_EQ(Tabs()->currentIndex(), 1);
        EXPECT_TRUE(Tabs()->tabBar()->hasFocus());
        Cancel();
    });
}

TEST_F(VoiceSheetWindow, TheSheetOpensOnThePageOfTheSettingAndOnTheVoicesWhereThereIsNone) {
    const std::tuple<const SheetFamily *, std::uint32_t, int, std::uint32_t> starts[] = {
        {&Dx7Sheets, 5, 5, 5},    {&Dx7Sheets, 6, 6, 5},    {&Dx7Sheets, 7, 0, 0},
        {&RefaceSheets, 4, 4, 4}, {&RefaceSheets, 5, 0, 0}, {&RefaceSheets, 0xFFFFFFFF, 0, 0}};
    for (const auto &[sheets, setting, page, after] : starts) {
        VoiceEditPage = setting;
        Edited(*sheets, [&, page = page] {
            EXPECT_EQ(Tabs()->currentIndex(), page);
            Cancel();
        });
        EXPECT_EQ(VoiceEditPage, after) << setting;
    }
}

TEST_F(VoiceSheetWindow, APageThatWasNeverShownNeitherReadsNorWrites) {
    VoiceObject voice = Dx7Sheets.voice;
    for (const char c : std::string("BRASS     ")) {
        static std::size_t at = 0;
        voice.bytes[VoiceObjectHeaderSize + 145 + at++] = static_cast<std::uint8_t>(c);
    }
    const Bytes before = VoiceBytes(voice);
    VoiceEditPage = 3;
    EXPECT_EQ(Edit(Dx7Sheets, voice, [&] { Ok(); }), 1);
    Bytes expected = before;
    expected[42 + 14] = 0; // the sensitivity, which has no control
    EXPECT_EQ(VoiceBytes(voice), expected);
}

TEST_F(VoiceSheetWindow, APageShownAgainKeepsItsValuesAndAnOperatorPageTakesTheName) {
    Edited(RefaceSheets, [&] {
        ShowTab(1);
        EXPECT_EQ(Text(101), "REFACE 01");
        Type(210, "120000");
        ShowTab(0);
        Type(101, "BELL");
        ShowTab(1);
        EXPECT_EQ(Text(101), "BELL");
        EXPECT_EQ(Text(210), "120000"); // a limit rewrites no box
        EXPECT_EQ(Bar(210), 127);
        Cancel();
    });
}

TEST_F(VoiceSheetWindow, ThePagesShowTheNameInTheTitleFontAndThePlace) {
    for (const auto &[sheets, place] :
         {std::pair{&Dx7Sheets, "Voice 9"}, std::pair{&RefaceSheets, "9 (Bank 2 - 1)"}}) {
        VoiceObject voice = sheets->voice;
        Edit(
            *sheets, voice,
            [&, place = place] {
                for (int page = 0; page < Tabs()->count(); ++page) {
                    ShowTab(page);
                    EXPECT_EQ(Control<QLabel>(126)->text(), place);
                    const QFontMetrics metrics(Control(101)->font());
                    EXPECT_EQ(metrics.ascent() + metrics.descent(), 30);
                    EXPECT_EQ(Control(101)->font().weight(), QFont::Bold);
                    EXPECT_EQ(Control(101)->isEnabled(), page == 0);
                }
                Cancel();
            },
            8);
    }
}

// ---- focus, keys and wheel

TEST_F(VoiceSheetWindow, FocusThatComesToAListOrABoxIsACommandAndFillingIsNone) {
    VoiceObject voice = Dx7Sheets.voice;
    voice.bytes[VoiceObjectHeaderSize + 134] = 40; // no such algorithm
    Edit(Dx7Sheets, voice, [&] {
        auto *list = Control<QComboBox>(106);
        EXPECT_EQ(list->currentIndex(), -1);
        EXPECT_EQ(NameOf(Control(125)), "Algorithm 41");
        Focus(104);
        EXPECT_EQ(NameOf(Control(125)), "Algorithm 41");
        Focus(106);
        EXPECT_EQ(NameOf(Control(125)), "Algorithm 1"); // nothing selected is stored as 0
        EXPECT_EQ(list->currentIndex(), -1);
        Cancel();
    });
}

TEST_F(VoiceSheetWindow, TheTabKeyReachesEachRowOnceInReadingOrderAndThenTheButtons) {
    using Order = std::vector<std::uint32_t>;
    const std::tuple<const SheetFamily *, int, Order> pages[] = {
        {&Dx7Sheets, 0, {101, 106, 104, 102, 105, 120, 107, 108, 109, 110, 122,
                         121, 123, 111, 115, 112, 116, 113, 117, 114, 118}},
        {&Dx7Sheets, 1, {201, 221, 223, 224, 220, 219, 202, 206, 203, 207,
                         204, 208, 205, 209, 215, 210, 213, 211, 214, 212}},
        {&RefaceSheets, 0, {101, 106, 103, 104, 102, 105, 107, 108, 109, 110, 111, 115,
                            112, 116, 113, 117, 114, 118, 119, 120, 121, 122, 123, 124}},
        {&RefaceSheets, 1, {201, 222, 223, 224, 215, 219, 218, 220, 221, 216, 217, 202,
                            206, 203, 207, 204, 208, 205, 209, 210, 213, 211, 214, 212}}};
    for (const auto &[sheets, page, rows] : pages) {
        VoiceObject voice = sheets->voice;
        if (sheets == &RefaceSheets) {
            voice.bytes[VoiceObjectHeaderSize + 38 + 16] = 1; // the envelope is enabled
        }
        VoiceEditPage = 0;
        Edit(*sheets, voice, [&, sheets = sheets, page = page, rows = rows] {
            ShowTab(2); // a page that was made before
            ShowTab(page);
            Order expected = rows;
            expected.insert(expected.end(), {1, 2, 12321, 9, 0});
            EXPECT_EQ(TabOrder(rows.front()), expected) << sheets->name << ' ' << page;
            Cancel();
        });
    }
}

TEST_F(VoiceSheetWindow, UpDownAndTheWheelStepEveryNumberAlsoWithoutTheFocus) {
    Edited(Dx7Sheets, [&] {
        for (int page = 0; page < 2; ++page) {
            ShowTab(page);
            for (const VoiceParameter &row :
                 page == 0 ? Dx7Parameters.voice : Dx7Parameters.operators) {
                if (!row.IsEdit() || row.kind == ParameterKind::Name || !HasControls(row)) {
                    continue;
                }
                SCOPED_TRACE(row.control);
                const bool isFrequency = row.kind == ParameterKind::Frequency;
                Type(row.control, isFrequency ? "1.50" : "3");
                Key(Qt::Key_Up);
                EXPECT_EQ(Text(row.control), isFrequency ? "1.51" : "4");
                Key(Qt::Key_Down);
                Key(Qt::Key_Down);
                EXPECT_EQ(Text(row.control), isFrequency ? "1.49" : "2");
                sheet->setFocus();
                Wheel(Control(row.control), 1);
                EXPECT_EQ(Text(row.control), isFrequency ? "1.50" : "3");
                Wheel(Control(row.control + 10000), -1);
                EXPECT_EQ(Text(row.control), isFrequency ? "1.49" : "2");
                EXPECT_FALSE(Control(row.control)->hasFocus());
                if (row.hasBar) {
                    EXPECT_EQ(Bar(row.control), 2);
                    Wheel(Control(row.control + 12000), 1);
                    EXPECT_EQ(Text(row.control), "3");
                    EXPECT_EQ(Bar(row.control), 3);
                }
            }
        }
        Cancel();
    });
}

TEST_F(VoiceSheetWindow, PageUpAndPageDownInABoxAreThoseOfItsBar) {
    Edited(Dx7Sheets, [&] {
        Type(108, "50");
        Key(Qt::Key_PageUp);
        EXPECT_EQ(Text(108), "62"); // an eighth of 99
        EXPECT_EQ(Bar(108), 62);
        Key(Qt::Key_PageDown);
        Key(Qt::Key_PageDown);
        EXPECT_EQ(Text(108), "38");
        Type(108, "95");
        Key(Qt::Key_PageUp);
        EXPECT_EQ(Text(108), "99");
        Type(104, "3"); // up to 7: an eighth of that is nothing
        Key(Qt::Key_PageUp);
        EXPECT_EQ(Text(104), "3");
        Type(102, "3"); // no bar
        Key(Qt::Key_PageUp);
        EXPECT_EQ(Text(102), "3");
        EXPECT_EQ(Tabs()->currentIndex(), 0);
        Cancel();
    });
}

TEST_F(VoiceSheetWindow, AListTakesTheWheelOnlyWithTheFocus) {
    Edited(RefaceSheets, [&] {
        for (const std::uint32_t number : {106u, 103u, 107u, 119u, 122u}) {
            Choose(number, 1);
            Focus(101);
            Wheel(Control(number), -1);
            EXPECT_EQ(Control<QComboBox>(number)->currentIndex(), 1) << number;
            EXPECT_TRUE(Control(101)->hasFocus());
            Focus(number);
            Wheel(Control(number), -1);
            EXPECT_EQ(Control<QComboBox>(number)->currentIndex(), 2) << number;
        }
        Cancel();
    });
}

TEST_F(VoiceSheetWindow, TheKeysOfAFocusedBarMoveIt) {
    Edited(RefaceSheets, [&] {
        Type(108, "50");
        auto *bar = Control<QScrollBar>(12108);
        bar->setFocus();
        const std::pair<Qt::Key, const char *> keys[] = {
            {Qt::Key_Right, "51"}, {Qt::Key_Left, "50"},   {Qt::Key_Up, "51"},
            {Qt::Key_Down, "50"},  {Qt::Key_PageUp, "65"}, {Qt::Key_PageDown, "50"},
            {Qt::Key_End, "127"},  {Qt::Key_Home, "0"}};
        for (const auto &[key, text] : keys) {
            Key(key);
            EXPECT_EQ(Text(108), text);
            EXPECT_EQ(QString::number(Bar(108)), text);
        }
        Cancel();
    });
}

TEST_F(VoiceSheetWindow, ABarIsMovedByItsArrowsItsTroughAndItsThumb) {
    Edited(Dx7Sheets, [&] {
        Type(108, "50");
        ClickBar(108, QStyle::SC_ScrollBarAddLine);
        EXPECT_EQ(Text(108), "51");
        ClickBar(108, QStyle::SC_ScrollBarSubLine);
        EXPECT_EQ(Text(108), "50");
        ClickBar(108, QStyle::SC_ScrollBarAddPage);
        EXPECT_EQ(Text(108), "62");
        ClickBar(108, QStyle::SC_ScrollBarSubPage);
        EXPECT_EQ(Text(108), "50");
        Type(104, "3");
        ClickBar(104, QStyle::SC_ScrollBarAddPage); // up to 7: an eighth of that is nothing
        EXPECT_EQ(Text(104), "3");
        EXPECT_EQ(Bar(104), 3);
        auto *bar = Control<QScrollBar>(12108);
        const QPoint thumb = BarPart(108, QStyle::SC_ScrollBarSlider).center();
        QTest::mousePress(bar, Qt::LeftButton, Qt::NoModifier, thumb);
        QTest::mouseMove(bar, thumb + QPoint(12, 0));
        EXPECT_GT(Bar(108), 52);
        EXPECT_EQ(Text(108).toInt(), Bar(108)); // while it is drawn
        QTest::mouseMove(bar, thumb + QPoint(1000, 0));
        QTest::mouseMove(bar, QPoint(bar->width() - 1, thumb.y()));
        QTest::mouseRelease(bar, Qt::LeftButton, Qt::NoModifier,
                            QPoint(bar->width() - 1, thumb.y()));
        EXPECT_EQ(Text(108), "99");
        EXPECT_EQ(Bar(108), 99);
        EXPECT_TRUE(bar->hasFocus()); // by the click
        Ok();
    });
}

TEST_F(VoiceSheetWindow, TypingMovesTheBarAndALimitRewritesNoBox) {
    Edited(Dx7Sheets, [&] {
        for (int page = 0; page < 2; ++page) {
            ShowTab(page);
            const std::uint32_t row = page == 0 ? 108 : 202;
            Type(row, "120");
            EXPECT_EQ(Text(row), "120");
            EXPECT_EQ(Bar(row), 99);
            Type(row, "-5");
            EXPECT_EQ(Text(row), "-5");
            EXPECT_EQ(Bar(row), 0);
            Type(row, "33");
            EXPECT_EQ(Bar(row), 33);
        }
        Cancel();
    });
}

TEST_F(VoiceSheetWindow, TheRowOfPitchBendOfADx7IsEmptyAndStoresNothing) {
    const Bytes untouched = Edited(Dx7Sheets, [&] { Ok(); });
    EXPECT_EQ(Edited(Dx7Sheets,
                     [&] {
                         EXPECT_EQ(Text(105), "");
                         EXPECT_TRUE(Control(105)->isEnabled());
                         EXPECT_EQ(QAccessible::queryAccessibleInterface(Control(105))
                                       ->text(QAccessible::Description),
                                   "Means nothing: a voice of the DX7 holds no pitch bend.");
                         Type(105, "7");
                         ClickArrow(105, "up");
                         EXPECT_EQ(Text(105), "8");
                         Ok();
                     }),
              untouched);
}

// ---- the frequency

TEST_F(VoiceSheetWindow, Typing40IntoTheFrequencyBoxGives31And99) {
    for (const auto &[sheets, coarse] :
         {std::pair{&Dx7Sheets, 18}, std::pair{&RefaceSheets, 38 + 22}}) {
        VoiceEditPage = 1;
        const Bytes bytes = Edited(*sheets, [&] {
            Type(223, "40");
            EXPECT_EQ(Text(223), "40");
            Ok();
        });
        EXPECT_EQ(bytes[static_cast<std::size_t>(coarse)], 31);
        EXPECT_EQ(bytes[static_cast<std::size_t>(coarse) + 1], 99);
    }
}

TEST_F(VoiceSheetWindow, ATypedFrequencyOf1Point15Becomes1Point14) {
    VoiceEditPage = 1;
    const Bytes bytes = Edited(RefaceSheets, [&] {
        Type(223, "1.15");
        Ok();
    });
    EXPECT_EQ(bytes[38 + 22], 1);
    EXPECT_EQ(bytes[38 + 23], 14);
}

TEST_F(VoiceSheetWindow, TheFrequencyBoxHasADotWhateverTheLanguage) {
    const CommaLocale comma;
    VoiceEditPage = 1;
    const Bytes bytes = Edited(RefaceSheets, [&] {
        Type(223, "1.50");
        Key(Qt::Key_Up);
        EXPECT_EQ(Text(223), "1.51");
        Ok();
    });
    EXPECT_EQ(bytes[38 + 22], 1);
    EXPECT_EQ(bytes[38 + 23], 51);
}

TEST_F(VoiceSheetWindow, AStoredFrequencyOf1Point15IsTakenAs1Point14ByAPageThatWasOpened) {
    for (const auto &[sheets, coarse] :
         {std::pair{&Dx7Sheets, 18u}, std::pair{&RefaceSheets, 38u + 22}}) {
        VoiceObject voice = sheets->voice;
        voice.bytes[VoiceObjectHeaderSize + coarse] = 1;
        voice.bytes[VoiceObjectHeaderSize + coarse + 1] = 15;
        VoiceEditPage = 1;
        Edit(*sheets, voice, [&] {
            EXPECT_EQ(Text(223), "1.15");
            Ok();
        });
        EXPECT_EQ(VoiceBytes(voice)[coarse], 1);
        EXPECT_EQ(VoiceBytes(voice)[coarse + 1], 14);
    }
}

TEST_F(VoiceSheetWindow, AnOpenedPageOfADx7ClearsTheSensitivityThatItDoesNotShow) {
    VoiceObject voice = Dx7Sheets.voice;
    voice.bytes[VoiceObjectHeaderSize + 14] = 3; // of Operator 1
    voice.bytes[VoiceObjectHeaderSize + 21 + 14] = 3;
    VoiceEditPage = 1;
    Edit(Dx7Sheets, voice, [&] { Ok(); });
    EXPECT_EQ(VoiceBytes(voice)[14], 0);
    EXPECT_EQ(VoiceBytes(voice)[21 + 14], 3); // its page was not opened
}

// ---- values at their limits

TEST_F(VoiceSheetWindow, TransposeMinus24IsStoredAs0AndTranspose24As48) {
    for (const auto &[text, stored] :
         {std::pair{"-24", 0}, std::pair{"24", 48}, std::pair{"-99", 0}, std::pair{"99", 48}}) {
        EXPECT_EQ(Edited(Dx7Sheets,
                         [&, text = text] {
                             Type(102, text);
                             EXPECT_EQ(Text(102), text);
                             Ok();
                         })[144],
                  stored);
    }
}

TEST_F(VoiceSheetWindow, AStoredTransposeOf0OfARefaceDxShowsMinus40UntilItIsCollectedAs16) {
    VoiceObject voice = RefaceSheets.voice;
    voice.bytes[VoiceObjectHeaderSize + 12] = 0;
    Edit(RefaceSheets, voice, [&] {
        EXPECT_EQ(Text(102), "-40");
        ShowTab(1);
        ShowTab(0);
        EXPECT_EQ(Text(102), "-40");
        Ok();
    });
    EXPECT_EQ(VoiceBytes(voice)[12], 16);
}

TEST_F(VoiceSheetWindow, AVoiceOfARefaceDxThatIsCountedAbout64KeepsItsBend) {
    RefaceZero64 = 1;
    VoiceObject voice = RefaceSheets.voice;
    voice.bytes[VoiceObjectHeaderSize + 12] = 64;
    voice.bytes[VoiceObjectHeaderSize + 15] = 66;
    Edit(RefaceSheets, voice, [&] {
        EXPECT_EQ(Text(102), "0");
        EXPECT_EQ(Text(105), "2");
        Type(102, "-12");
        Ok();
    });
    EXPECT_EQ(VoiceBytes(voice)[12], 52);
    EXPECT_EQ(VoiceBytes(voice)[15], 66);
}

TEST_F(VoiceSheetWindow, WhatThePageOperator6ShowsOverwritesWhatWasChangedOnOperator5) {
    const Bytes bytes = Edited(Dx7Sheets, [&] {
        ShowTab(6);
        EXPECT_EQ(Text(220), "99");
        ShowTab(5);
        Type(220, "12");
        ShowTab(6);
        EXPECT_EQ(Text(220), "99"); // as it was when the page was made
        Ok();
    });
    EXPECT_EQ(bytes[84 + 16], 99);
    EXPECT_EQ(bytes[105 + 16], 79); // the last block stays
}

// ---- enabling

TEST_F(VoiceSheetWindow, AnOperatorThatIsSwitchedOffDisablesItsPage) {
    VoiceEditPage = 2;
    VoiceObject voice = Dx7Sheets.voice;
    voice.bytes[VoiceObjectHeaderSize + 155] = 0xFF;
    Edit(Dx7Sheets, voice, [&] {
        QTest::mouseClick(Control(201), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
        for (const VoiceParameter &row : Dx7Parameters.operators) {
            const bool enabled = row.control == 201;
            for (const std::uint32_t offset : {0u, 10000u, 12000u, 20000u}) {
                const QWidget *control = Control(row.control + offset);
                if (control && row.control != 101) {
                    EXPECT_EQ(control->isEnabled(), enabled) << row.control + offset;
                }
            }
        }
        const QString before = Text(220);
        Wheel(Control(220), 1);
        Wheel(Control(12220), 1);
        ClickArrow(220, "up");
        EXPECT_EQ(Text(220), before);
        Ok();
    });
    const Bytes bytes = VoiceBytes(voice);
    EXPECT_EQ(bytes[21 + 16], 58); // the level stays
    EXPECT_EQ(bytes[155], 0xEF);
}

TEST_F(VoiceSheetWindow, AnOperatorOfARefaceDxThatIsSwitchedOffKeepsItsValues) {
    VoiceEditPage = 2;
    VoiceObject voice = RefaceSheets.voice;
    voice.bytes[VoiceObjectHeaderSize + 66] = 1;
    Bytes expected;
    Edit(RefaceSheets, voice, [&] { Ok(); });
    expected = VoiceBytes(voice);
    expected[66] = 0;
    VoiceEditPage = 2;
    Edit(RefaceSheets, voice, [&] {
        QTest::mouseClick(Control(201), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
        for (const VoiceParameter &row : RefaceParameters.operators) {
            const bool isEnabled = row.control == 201;
            const QWidget *control = Control(row.control);
            if (control && row.control != 101) {
                EXPECT_EQ(control->isEnabled(), isEnabled) << row.control;
            }
        }
        const QString before = Text(220);
        Wheel(Control(220), 1);
        ClickArrow(220, "up");
        EXPECT_EQ(Text(220), before);
        Ok();
    });
    EXPECT_EQ(VoiceBytes(voice), expected);
}

TEST_F(VoiceSheetWindow, PitchEgEnablesTheEnvelopeOfARefaceDxAndItsValuesStay) {
    VoiceEditPage = 1;
    const Bytes bytes = Edited(RefaceSheets, [&] {
        for (std::uint32_t row = 202; row <= 209; ++row) {
            for (const std::uint32_t offset : {0u, 10000u, 12000u, 20000u}) {
                EXPECT_FALSE(Control(row + offset)->isEnabled()) << row + offset;
            }
        }
        Focus(217);
        Key(Qt::Key_Space);
        for (std::uint32_t row = 202; row <= 209; ++row) {
            for (const std::uint32_t offset : {0u, 10000u, 12000u, 20000u}) {
                EXPECT_TRUE(Control(row + offset)->isEnabled()) << row + offset;
            }
        }
        Key(Qt::Key_Space);
        EXPECT_FALSE(Control(202)->isEnabled());
        Ok();
    });
    EXPECT_EQ(bytes[38 + 1], 120);
    EXPECT_EQ(bytes[38 + 16], 0);
}

// ---- for those who hear the sheet

TEST_F(VoiceSheetWindow, EveryControlHasANameForAScreenReader) {
    for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
        Edited(*sheets, [&] {
            for (int page = 0; page < 2; ++page) {
                ShowTab(page);
                for (QWidget *control : Page()->findChildren<QWidget *>()) {
                    if (control->objectName().startsWith("control_") && control->isVisible()) {
                        EXPECT_NE(NameOf(control), "") << control->objectName().toStdString();
                    }
                }
            }
            EXPECT_EQ(NameOf(Control(202)), "EG rate 1:");
            EXPECT_EQ(NameOf(Control(10202)), "EG rate 1");
            EXPECT_EQ(NameOf(Control(12202)), "EG rate 1");
            EXPECT_EQ(NameOf(Control(10223)), "Frequency");
            Cancel();
        });
    }
}

TEST_F(VoiceSheetWindow, ThePictureAndTheItemsOfTheListSayTheirAlgorithm) {
    Edited(Dx7Sheets, [&] {
        EXPECT_EQ(NameOf(Control(125)), "Algorithm 5");
        auto *list = Control<QComboBox>(106);
        EXPECT_EQ(list->itemData(0, Qt::AccessibleTextRole), "Algorithm 1");
        EXPECT_EQ(list->itemData(31, Qt::AccessibleTextRole), "Algorithm 32");
        EXPECT_EQ(QAccessible::queryAccessibleInterface(list)->text(QAccessible::Value),
                  "Algorithm 5");
        ShowTab(1);
        EXPECT_EQ(NameOf(Control(125)), "Algorithm 5");
        ShowTab(0);
        Choose(106, 7);
        EXPECT_EQ(NameOf(Control(125)), "Algorithm 8");
        ShowTab(1); // shown again
        EXPECT_EQ(NameOf(Control(125)), "Algorithm 8");
        Cancel();
    });
}

} // namespace
} // namespace tonewright
