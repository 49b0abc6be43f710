// Every control of every page, used by the keyboard and again by the mouse: afterwards each byte of
// the voice is the one that is written here.
#include "sheet_window.h"

namespace tonewright {
namespace {

// What is typed or chosen: a value from 0 to `maximum`, another one for each control and page.
int Value(std::uint32_t control, int page, int maximum) {
    return (static_cast<int>(control) * 3 + page * 11) % (maximum + 1);
}

// clang-format off
// Six operators of 21 bytes, of which the page Operator 6 writes the fifth once more and none the
// last; pitch envelope, algorithm and so on; the name; the bits of the operators that are on.
const Bytes Dx7ByKeys = {
    17, 20, 23, 26, 29, 32, 35, 38, 16, 44, 47, 2, 1, 41, 0, 68, 71, 1, 5, 25, 8,
    28, 31, 34, 37, 40, 43, 46, 49, 27, 55, 58, 1, 0, 52, 0, 79, 82, 1, 10, 25, 4,
    39, 42, 45, 48, 51, 54, 57, 60, 38, 66, 69, 0, 3, 63, 0, 90, 93, 1, 15, 25, 0,
    50, 53, 56, 59, 62, 65, 68, 71, 49, 77, 80, 3, 2, 74, 0, 1, 4, 1, 20, 25, 11,
    72, 75, 78, 81, 84, 87, 90, 93, 71, 99, 2, 1, 0, 96, 0, 23, 26, 0, 30, 25, 3,
    95, 29, 20, 50, 99, 95, 0, 0, 41, 0, 19, 0, 3, 3, 3, 6, 79, 1, 31, 9, 0,
    33, 36, 39, 42, 45, 48, 51, 54, 30, 0, 1, 24, 27, 30, 66, 1, 3, 3, 12, 75, 69,
    89, 83, 0, 0, 0, 0, 0, 0, 215,
};
const Bytes Dx7ByMouse = {
    99, 28, 28, 70, 99, 78, 3, 3, 3, 3, 3, 2, 1, 6, 0, 9, 82, 1, 1, 1, 13,
    98, 53, 38, 81, 99, 78, 3, 3, 3, 3, 3, 1, 0, 6, 0, 3, 61, 1, 14, 1, 8,
    98, 23, 23, 53, 99, 98, 3, 3, 3, 3, 3, 0, 3, 6, 0, 5, 99, 1, 1, 1, 8,
    98, 32, 23, 53, 99, 98, 3, 3, 3, 3, 3, 3, 2, 6, 0, 9, 92, 1, 1, 1, 8,
    99, 26, 26, 56, 99, 99, 6, 6, 6, 6, 6, 1, 0, 9, 0, 8, 99, 0, 1, 2, 13,
    95, 29, 20, 50, 99, 95, 0, 0, 41, 0, 19, 0, 3, 3, 3, 6, 79, 1, 31, 9, 0,
    97, 70, 98, 63, 53, 53, 53, 53, 30, 7, 1, 37, 36, 3, 3, 1, 3, 6, 25, 69, 46,
    80, 73, 65, 78, 79, 32, 49, 120, 215,
};
// The common block, and four operators of 28 bytes.
const Bytes RefaceByKeys = {
    75, 69, 89, 83, 0, 0, 0, 0, 0, 0, 81, 82, 28, 0, 56, 37, 6, 6, 68,
    71, 74, 77, 80, 83, 86, 89, 92, 95, 98, 5, 104, 107, 6, 113, 116, 97, 98, 99,
    0, 105, 108, 111, 114, 117, 120, 123, 126, 1, 4, 7, 2, 1, 16, 0, 1, 25, 28, 31, 0, 1, 5, 25, 43, 113, 114, 115,
    1, 116, 119, 122, 125, 0, 3, 6, 9, 12, 15, 18, 1, 0, 27, 0, 1, 36, 39, 42, 1, 0, 10, 25, 54, 113, 114, 116,
    0, 127, 2, 5, 8, 11, 14, 17, 20, 23, 26, 29, 0, 3, 38, 0, 1, 47, 50, 53, 0, 1, 15, 25, 65, 113, 114, 117,
    1, 10, 13, 16, 19, 22, 25, 28, 31, 34, 37, 40, 3, 2, 49, 0, 1, 58, 61, 64, 1, 0, 20, 25, 76, 113, 114, 118,
};
const Bytes RefaceByMouse = {
    82, 69, 70, 65, 67, 69, 32, 48, 49, 0, 81, 82, 53, 0, 20, 43, 6, 6, 3,
    24, 25, 104, 105, 106, 107, 67, 68, 69, 70, 5, 34, 35, 6, 36, 37, 97, 98, 99,
    0, 123, 83, 43, 93, 127, 103, 73, 3, 18, 8, 9, 2, 1, 12, 0, 1, 36, 93, 48, 0, 1, 3, 51, 65, 113, 114, 115,
    1, 123, 83, 43, 93, 127, 103, 73, 3, 18, 8, 9, 1, 0, 12, 0, 1, 36, 94, 48, 1, 0, 3, 51, 65, 113, 114, 116,
    0, 123, 83, 43, 93, 127, 103, 73, 3, 18, 8, 9, 0, 3, 12, 0, 1, 36, 95, 48, 0, 1, 3, 51, 65, 113, 114, 117,
    1, 123, 83, 43, 93, 127, 103, 73, 3, 18, 8, 9, 3, 2, 12, 0, 1, 36, 96, 48, 1, 0, 3, 51, 65, 113, 114, 118,
};
// clang-format on

class EveryControl : public SheetWindow {
protected:
    // Every operator on, and sensitivities of 3, which no page has a control for.
    static VoiceObject VoiceOf(const SheetFamily &sheets) {
        VoiceObject voice = sheets.voice;
        if (&sheets == &Dx7Sheets) {
            for (std::size_t block = 0; block < 6; ++block) {
                voice.bytes[VoiceObjectHeaderSize + 21 * block + 14] = 3;
            }
            voice.bytes[VoiceObjectHeaderSize + 155] = 0xFF;
        }
        return voice;
    }

    // Uses all controls of the page: those that enable others first, and the switch of the operator
    // last, which stays on where the number of the page is even.
    void UsePage(int page, const std::function<void(const VoiceParameter &row)> &use,
                 const std::function<void(std::uint32_t check)> &toggle) const {
        if (page > 0 && !Control<QCheckBox>(201)->isChecked()) {
            toggle(201);
        }
        if (auto *envelope = Control<QCheckBox>(217); envelope && !envelope->isChecked()) {
            toggle(217);
        }
        for (const VoiceParameter &row :
             page == 0 ? family->parameters.voice : family->parameters.operators) {
            if (row.control == 201 || row.control == 217 || !HasControls(row)) {
                continue;
            }
            if (row.IsCheck()) {
                toggle(row.control);
            } else if (row.taken != ParameterTaken::Never) {
                use(row);
            }
        }
        if (page % 2 == 1) {
            toggle(201);
        }
    }

    void UseKeys(int page) const {
        UsePage(
            page,
            [&](const VoiceParameter &row) {
                const int value = Value(row.control, page, row.maximum - row.minimum);
                if (row.kind == ParameterKind::Name) {
                    Type(row.control, "KEYS");
                } else if (row.kind == ParameterKind::Frequency) {
                    Type(row.control, QString("%1.25").arg(5 * page));
                } else if (row.IsList()) {
                    Choose(row.control, value);
                } else {
                    Type(row.control, QString::number(row.minimum + value));
                }
            },
            [&](std::uint32_t check) {
                Focus(check);
                Key(Qt::Key_Space);
            });
    }

    void UseMouse(int page) const {
        UsePage(
            page,
            [&](const VoiceParameter &row) {
                if (row.kind == ParameterKind::Name) {
                    return;
                }
                if (row.IsList()) {
                    ChooseByMouse(row.control, Value(row.control, page, row.maximum));
                    return;
                }
                ClickArrow(row.control, "up");
                ClickArrow(row.control, "up");
                ClickArrow(row.control, "down");
                if (row.hasBar) {
                    ClickBar(row.control, QStyle::SC_ScrollBarAddLine);
                    ClickBar(row.control, QStyle::SC_ScrollBarAddLine);
                }
            },
            [&](std::uint32_t check) {
                QTest::mouseClick(Control(check), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
            });
    }
    void ChooseByMouse(std::uint32_t number, int index) const {
        auto *list = Control<QComboBox>(number);
        list->showPopup();
        QAbstractItemView *items = list->view();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(items->window()));
        items->scrollTo(list->model()->index(index, 0));
        const QPoint point = items->visualRect(list->model()->index(index, 0)).center();
        QTest::mouseMove(items->viewport(), point);
        QTest::mouseClick(items->viewport(), Qt::LeftButton, Qt::NoModifier, point);
        ASSERT_EQ(list->currentIndex(), index) << number;
        list->hidePopup();
    }

    Bytes UsedByKeys(const SheetFamily &sheets) {
        VoiceObject voice = VoiceOf(sheets);
        Edit(sheets, voice, [&] {
            for (int page = 0; page < Tabs()->count(); ++page) {
                if (page > 0) {
                    Key(Qt::Key_PageDown, Qt::ControlModifier);
                }
                UseKeys(page);
            }
            Focus(1);
            Key(Qt::Key_Space);
        });
        return VoiceBytes(voice);
    }
    Bytes UsedByMouse(const SheetFamily &sheets) {
        VoiceObject voice = VoiceOf(sheets);
        Edit(sheets, voice, [&] {
            for (int page = 0; page < Tabs()->count(); ++page) {
                ShowTab(page);
                UseMouse(page);
            }
            Ok();
        });
        return VoiceBytes(voice);
    }
};

TEST_F(EveryControl, OfADx7IsStoredByKeys) {
    EXPECT_EQ(UsedByKeys(Dx7Sheets), Dx7ByKeys);
}

TEST_F(EveryControl, OfADx7IsStoredByTheMouse) {
    EXPECT_EQ(UsedByMouse(Dx7Sheets), Dx7ByMouse);
}

TEST_F(EveryControl, OfARefaceDxIsStoredByKeys) {
    EXPECT_EQ(UsedByKeys(RefaceSheets), RefaceByKeys);
}

TEST_F(EveryControl, OfARefaceDxIsStoredByTheMouse) {
    EXPECT_EQ(UsedByMouse(RefaceSheets), RefaceByMouse);
}

} // namespace
} // namespace tonewright
