// The dialog templates of the editors against the rows of the parameters, both ways.
#include "sheet_window.h"

#include <algorithm>
#include <set>

namespace tonewright {
namespace {

class VoiceTemplates : public SheetWindow {
protected:
    // Hands each page of both families to `look`.
    void
    OnEveryPage(const std::function<void(int page, std::span<const VoiceParameter> rows)> &look) {
        for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
            SCOPED_TRACE(sheets->name);
            VoiceObject voice = sheets->voice;
            Edit(*sheets, voice, [&] {
                for (int page = 0; page <= sheets->parameters.operatorCount; ++page) {
                    SCOPED_TRACE(page);
                    ShowTab(page);
                    look(page, page == 0 ? sheets->parameters.voice : sheets->parameters.operators);
                }
                Cancel();
            });
        }
    }

    // The controls of the page, by number.
    std::set<std::uint32_t> Numbers() const {
        std::set<std::uint32_t> numbers;
        for (const QWidget *widget : Page()->findChildren<QWidget *>()) {
            const QString name = widget->objectName();
            if (name.startsWith("control_")) {
                EXPECT_TRUE(numbers.insert(name.mid(8).toUInt()).second) << name.toStdString();
            }
        }
        return numbers;
    }
};

TEST_F(VoiceTemplates, EachRowHasItsControlsAndNoOtherControlStands) {
    OnEveryPage([&](int page, std::span<const VoiceParameter> rows) {
        std::set<std::uint32_t> expected = {125, 126};
        expected.insert(page == 0 ? 10 : 225);
        for (const VoiceParameter &row : rows) {
            if (!HasControls(row)) {
                continue;
            }
            expected.insert(row.control);
            if (!row.IsCheck()) {
                expected.insert(row.control + 20000);
            }
            if (row.IsEdit() && row.kind != ParameterKind::Name) {
                expected.insert(row.control + 10000);
            }
            if (row.hasBar) {
                expected.insert(row.control + 12000);
            }
        }
        EXPECT_EQ(Numbers(), expected);
    });
}

TEST_F(VoiceTemplates, LabelsAndCaptionsAreThoseOfTheRows) {
    OnEveryPage([&](int, std::span<const VoiceParameter> rows) {
        for (const VoiceParameter &row : rows) {
            if (!HasControls(row)) {
                continue;
            }
            if (row.IsCheck()) {
                EXPECT_EQ(Control<QCheckBox>(row.control)->text(), row.label) << row.control;
                continue;
            }
            auto *label = Control<QLabel>(row.control + 20000);
            EXPECT_EQ(label->text(), row.label) << row.control;
            EXPECT_EQ(label->buddy(), Control(row.control)) << row.control;
        }
    });
}

TEST_F(VoiceTemplates, TheArrowsTellTheRangesOfTheRows) {
    OnEveryPage([&](int, std::span<const VoiceParameter> rows) {
        for (const VoiceParameter &row : rows) {
            const auto *arrows = Control<UpDown>(row.control + 10000);
            if (row.kind == ParameterKind::Number && HasControls(row)) {
                EXPECT_EQ(arrows->RangeText(), RangeTextOf(row)) << row.control;
            } else if (arrows) {
                EXPECT_EQ(arrows->RangeText(), "") << row.control; // of a frequency
            }
        }
    });
}

TEST_F(VoiceTemplates, TheListsHoldTheItemsOfTheRows) {
    OnEveryPage([&](int, std::span<const VoiceParameter> rows) {
        for (const VoiceParameter &row : rows) {
            if (!row.IsList()) {
                continue;
            }
            QStringList items;
            for (int index = 0; index < Control<QComboBox>(row.control)->count(); ++index) {
                items.push_back(Control<QComboBox>(row.control)->itemText(index));
            }
            EXPECT_EQ(items.join(";"), row.items) << row.control;
            EXPECT_EQ(items.size(), row.maximum + 1) << row.control;
        }
    });
}

TEST_F(VoiceTemplates, BarsLieAcrossAndTakeTheFocusByClickOnly) {
    OnEveryPage([&](int, std::span<const VoiceParameter> rows) {
        for (const VoiceParameter &row : rows) {
            if (row.hasBar && HasControls(row)) {
                const auto *bar = Control<QScrollBar>(row.control + 12000);
                EXPECT_EQ(bar->orientation(), Qt::Horizontal);
                EXPECT_EQ(bar->focusPolicy(), Qt::ClickFocus);
                EXPECT_EQ(bar->minimum(), row.minimum);
                EXPECT_EQ(bar->maximum(), row.maximum);
            }
        }
    });
}

TEST_F(VoiceTemplates, TheHiddenTextHoldsThePageIndex) {
    OnEveryPage([&](int page, std::span<const VoiceParameter>) {
        const auto *index = Control<QLabel>(225);
        EXPECT_EQ(index != nullptr, page > 0);
        if (index) {
            EXPECT_EQ(index->text(), QString::number(page - 1));
            EXPECT_FALSE(index->isVisible());
        }
    });
}

} // namespace
} // namespace tonewright
