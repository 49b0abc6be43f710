// The box in which a theme is chosen, by mouse and keyboard.
#include "common/settings.h"
#include "common/theme_files.h"
#include "common/view/dialog_controls.h"
#include "common/view/list_box_view.h"
#include "common/view/theme.h"
#include "shell/view/select_theme_box.h"
#include "support/modal_box.h"
#include "support/pixels.h"
#include "support/scripted_desktop.h"
#include "support/test_themes.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QDialog>
#include <QPushButton>
#include <QTest>

namespace tonewright {
namespace {

using Calls = std::vector<std::string>;

class SelectThemeTest : public testing::Test {
protected:
    ThemeHouse house;
    ScriptedDesktop desktop;
    std::string theme = "THEME_A.dll";

    bool WithBox(const std::function<void(QDialog &)> &use) {
        bool chosen = false;
        WithModalBox([&] { chosen = SelectThemeBox(nullptr, theme); }, use);
        return chosen;
    }
    static ListBoxView &List(const QDialog &box) { return *ControlOf<ListBoxView>(&box, 101); }
    static void Press(const QDialog &box, std::uint32_t button) {
        QTest::mouseClick(ControlOf<QPushButton>(&box, button), Qt::LeftButton);
    }
    // What a screen reader says of the rows.
    static std::vector<std::string> Rows(const QDialog &box) {
        std::vector<std::string> rows;
        QAccessibleInterface *list = QAccessible::queryAccessibleInterface(&List(box));
        for (int row = 0; row < list->childCount(); ++row) {
            rows.push_back(list->child(row)->text(QAccessible::Name).toStdString());
        }
        return rows;
    }
    static int SelectedRow(const QDialog &box) { return List(box).currentIndex().row(); }
    static void ClickRow(const QDialog &box, int row) {
        QTest::mouseClick(List(box).viewport(), Qt::LeftButton, {},
                          List(box).RowRectangle(row).center());
    }
    // How a row looks.
    static QImage Picture(const QDialog &box, int row) {
        return List(box)
            .viewport()
            ->grab(List(box).RowRectangle(row))
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    }
};

TEST_F(SelectThemeTest, TheThemesOfBothFoldersStandInTheirOrderAndTheCurrentOneIsSelected) {
    house.Put("whole", "THEME_C.dll");
    house.Put("bits_24", "THEME__A.dll");
    house.PutForUser("tall", "THEME_B.dll");
    theme = "THEME_C.dll";
    EXPECT_FALSE(WithBox([&](QDialog &box) {
        EXPECT_EQ(box.windowTitle(), "Select Theme");
        EXPECT_EQ(ControlOf<QPushButton>(&box, 1)->text(), "&OK");
        EXPECT_EQ(ControlOf<QPushButton>(&box, 2)->text(), "&Cancel");
        EXPECT_EQ(ControlOf<QPushButton>(&box, 102)->text(), "Configure");
        EXPECT_EQ(Rows(box), (Calls{"C", "A", "B"}));
        EXPECT_EQ(SelectedRow(box), 0);
        EXPECT_TRUE(List(box).hasFocus());
        Press(box, 2);
    }));
    EXPECT_EQ(theme, "THEME_C.dll");
}

TEST_F(SelectThemeTest, AThemeWithoutAPreviewIsTakenOff) {
    house.Put("whole", "THEME_A.dll");
    for (const std::string &library : ThemesWithoutBitmaps) {
        house.Put(library, "THEME_" + library + ".dll");
    }
    house.Put("failing", "THEME_Failing.dll");
    house.Put("without_init", "THEME_Uninitialised.dll");
    house.Put("without_get_bitmap", "THEME_Unseen.dll");
    WriteTestText(house.PathOf("THEME_Text.dll"), "not a library");
    WithBox([&](QDialog &box) {
        EXPECT_EQ(Rows(box), Calls{"A"});
        Press(box, 2);
    });
}

TEST_F(SelectThemeTest, TheThemeThatDrawsIsAskedLiveAndOthersBetweenBeginningAndEnd) {
    house.Put("whole", "THEME_A.dll");
    house.Put("whole", "THEME_B.dll");
    ThemeCurrent = "THEME_A.dll";
    ASSERT_TRUE(ThemeLoad());
    house.Calls();
    WithBox([&](QDialog &box) {
        EXPECT_EQ(house.Calls(), (Calls{"THEMEGetBitmap 0", "THEMEInit 18 17 0 1",
                                        "THEMEGetBitmap 0", "THEMEDeInit"}));
        EXPECT_EQ(Rows(box), (Calls{"A", "B"}));
        Press(box, 2);
    });
    // The theme goes on drawing, also when another one was chosen meanwhile.
    theme = "THEME_B.dll";
    house.Calls();
    WithBox([&](QDialog &box) {
        EXPECT_EQ(house.Calls().front(), "THEMEGetBitmap 0");
        EXPECT_EQ(SelectedRow(box), 1);
        Press(box, 2);
    });
    EXPECT_EQ(ThemeGetMetric(THEME_METRIC_TOOLBAR_HEIGHT), 31);
}

TEST_F(SelectThemeTest, ARowHasTheHeightOfItsTextOfTheTallestPreviewAndTenMore) {
    house.Put("whole", "THEME_A.dll"); // 8 pixels high
    house.Put("tall", "THEME_B.dll");  // 60
    WithBox([&](QDialog &box) {
        const int text = List(box).fontMetrics().height();
        EXPECT_EQ(List(box).RowRectangle(0).height(), text + 10 + 60);
        EXPECT_EQ(List(box).RowRectangle(1).height(), text + 10 + 60);
        Press(box, 2);
    });
}

TEST_F(SelectThemeTest, APreviewThatIsTooWideIsCut) {
    house.Put("wide", "THEME_A.dll");
    WithBox([&](QDialog &box) {
        EXPECT_EQ(Rows(box), Calls{"A"});
        EXPECT_LE(box.width(), 800);
        Press(box, 2);
    });
}

TEST_F(SelectThemeTest, APreviewThatIsTooLargeIsCutSoThatItsNameIsSeen) {
    house.Put("large", "THEME_A.dll");
    WithBox([&](QDialog &box) {
        const int text = List(box).fontMetrics().height();
        EXPECT_EQ(List(box).RowRectangle(0).height(), text + 10 + 200);
        List(box).resize(box.size());
        const QImage row = Picture(box, 0);
        const QRgb grey = 0xFF808080, red = 0xFFFF0000;
        EXPECT_TRUE(IsAll(row, QRect(4, 4, 600, 200), red));
        EXPECT_TRUE(IsAll(row, QRect(0, 204, 4, text), grey));
        EXPECT_TRUE(HasPixel(row, QRect(4, 204, 20, text + 6), White));
        Press(box, 2);
    });
}

TEST_F(SelectThemeTest, WithoutAThemeTheBoxIsEmptyAndOkClosesItAsCancelDoes) {
    EXPECT_FALSE(WithBox([&](QDialog &box) {
        EXPECT_EQ(Rows(box), Calls());
        Press(box, 102);
        Press(box, 1);
    }));
    EXPECT_EQ(theme, "THEME_A.dll");
}

TEST_F(SelectThemeTest, ARowIsALineThePreviewAndTheNameOnWhiteOrOnGreyWhereItIsSelected) {
    house.Put("bits_24", "THEME_A.dll");
    house.Put("bits_24", "THEME_B.dll");
    WithBox([&](QDialog &box) {
        const QRgb grey = 0xFF808080, red = 0xFFFF0000;
        const QImage selected = Picture(box, 0), plain = Picture(box, 1);
        const int width = plain.width(), height = plain.height();
        for (const QImage &image : {selected, plain}) {
            const QRgb ground = image == plain ? White : grey;
            EXPECT_TRUE(IsAll(image, QRect(0, 0, width, 2), Black));
            EXPECT_TRUE(IsAll(image, QRect(4, 4, 8, 8), red));
            EXPECT_TRUE(IsAll(image, QRect(1, 2, 3, 10), ground));
            EXPECT_TRUE(IsAll(image, QRect(12, 2, width - 13, 10), ground));
            const QRgb ink = image == plain ? Black : White;
            EXPECT_TRUE(HasPixel(image, QRect(4, 12, 20, height - 13), ink));
        }
        const QRgb frame = box.palette().color(QPalette::Button).rgb();
        EXPECT_TRUE(IsAll(plain, QRect(0, 2, 1, height - 2), frame));
        EXPECT_TRUE(IsAll(plain, QRect(width - 1, 2, 1, height - 2), frame));
        EXPECT_TRUE(IsAll(plain, QRect(0, height - 1, width, 1), frame));
        Press(box, 2);
    });
}

TEST_F(SelectThemeTest, OkTakesTheNameOfTheSettings) {
    house.Put("whole", "THEME_A.dll");
    house.PutForUser("whole", "THEME_Slate Medium.dll");
    EXPECT_TRUE(WithBox([&](QDialog &box) {
        ClickRow(box, 1);
        Press(box, 1);
    }));
    EXPECT_EQ(theme, "THEME_Slate Medium.dll");
}

TEST_F(SelectThemeTest, ReturnInTheListIsOkAndLettersFindAName) {
    house.Put("whole", "THEME_A.dll");
    house.Put("whole", "THEME_Night.dll");
    EXPECT_TRUE(WithBox([&](QDialog &box) {
        QTest::keyClicks(&List(box), "n");
        EXPECT_EQ(SelectedRow(box), 1);
        QTest::keyClick(&List(box), Qt::Key_Return);
    }));
    EXPECT_EQ(theme, "THEME_Night.dll");
}

TEST_F(SelectThemeTest, ADoubleClickTakesARow) {
    house.Put("whole", "THEME_A.dll");
    house.Put("whole", "THEME_B.dll");
    EXPECT_TRUE(WithBox([&](QDialog &box) {
        ClickRow(box, 1);
        QTest::mouseDClick(List(box).viewport(), Qt::LeftButton, {},
                           List(box).RowRectangle(1).center());
    }));
    EXPECT_EQ(theme, "THEME_B.dll");
}

TEST_F(SelectThemeTest, CancelAndEscapeLeaveTheTheme) {
    house.Put("whole", "THEME_A.dll");
    house.Put("whole", "THEME_B.dll");
    EXPECT_FALSE(WithBox([&](QDialog &box) {
        ClickRow(box, 1);
        Press(box, 2);
    }));
    EXPECT_FALSE(WithBox([&](QDialog &box) {
        QTest::keyClick(&List(box), Qt::Key_Down);
        QTest::keyClick(&List(box), Qt::Key_Escape);
    }));
    EXPECT_EQ(theme, "THEME_A.dll");
}

TEST_F(SelectThemeTest, ConfigureCallsTheSelectedThemeWhichMayHaveNothingToConfigure) {
    house.Put("whole", "THEME_A.dll");
    house.Put("bare", "THEME_B.dll");
    WithBox([&](QDialog &box) {
        house.Calls();
        Press(box, 102);
        EXPECT_EQ(house.Calls(), Calls{"THEMEConfigure owner 18"});
        ClickRow(box, 1);
        Press(box, 102);
        EXPECT_EQ(house.Calls(), Calls());
        Press(box, 2);
    });
}

TEST_F(SelectThemeTest, ADialogThatAThemeLeavesBehindGoesWithTheBox) {
    house.Put("leaves_dialog", "THEME_A.dll");
    WithBox([&](QDialog &box) {
        house.Calls();
        Press(box, 102);
        EXPECT_EQ(house.Calls(), Calls{"THEMEConfigure owner 18"});
        Press(box, 2);
    });
    EXPECT_EQ(house.Calls(), Calls{"dialog gone"});
}

TEST_F(SelectThemeTest, ConfigureTakesTheFileBelowTheProgramFirst) {
    house.Put("bare", "THEME_A.dll");
    house.PutForUser("whole", "THEME_A.dll");
    house.PutForUser("whole", "THEME_B.dll");
    WithBox([&](QDialog &box) {
        EXPECT_EQ(Rows(box), (Calls{"A", "A", "B"}));
        house.Calls();
        ClickRow(box, 1);
        Press(box, 102);
        EXPECT_EQ(house.Calls(), Calls());
        ClickRow(box, 2);
        Press(box, 102);
        EXPECT_EQ(house.Calls(), Calls{"THEMEConfigure owner 18"});
        Press(box, 2);
    });
}

TEST_F(SelectThemeTest, F1OpensTheHelpOfThemes) {
    WithBox([&](QDialog &box) {
        QTest::keyClick(&List(box), Qt::Key_F1);
        Press(box, 2);
    });
    ASSERT_EQ(desktop.opened.size(), 1u);
    EXPECT_TRUE(desktop.opened[0].address.ends_with("html/referenc.html#THEME"));
}

} // namespace
} // namespace tonewright
