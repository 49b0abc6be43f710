// Windows in a theme whose measures are all senseless, on the smallest screen: what leads out of it
// can be reached.
#include "window_fixture.h"

#include "common/desktop.h"
#include "common/view/dialog_controls.h"
#include "common/view/theme.h"
#include "shell/view/settings_sheet.h"
#include "support/modal_box.h"
#include "support/test_themes.h"

namespace tonewright {
namespace {

constexpr QSize SmallestScreen{800, 480};

class SenselessTheme : public WindowTest {
protected:
    SenselessTheme() {
        house.Put("senseless", "THEME_A.dll");
        ThemeCurrent = "THEME_A.dll";
        EXPECT_TRUE(ThemeLoad());
    }

    static bool IsReached(const QWidget &button, const QWidget &box) {
        return button.isVisible() &&
               box.rect().contains(QRect(button.mapTo(&box, QPoint()), button.size()));
    }

    ThemeHouse house;
};

TEST_F(SenselessTheme, TheListKeepsItsPlaceInTheMainWindow) {
    MakeWindow(SmallestScreen.height());
    OpenBank();
    EXPECT_TRUE(window->rect().contains(list->geometry()));
    EXPECT_GE(list->height(), window->height() / 3);
    ClickRow(2);
    EXPECT_EQ(list->currentIndex().row(), 2);
}

TEST_F(SenselessTheme, ThemesAreChosenInTheSettings) {
    const auto withSheet = [this](const std::function<void(const QDialog &)> &use) {
        WithModalBox([this] { SetupShow(window.get()); },
                     [&](QDialog &sheet) {
                         use(sheet);
                         QTest::mouseClick(ControlOf<QPushButton>(&sheet, 2), Qt::LeftButton);
                     });
    };
    QSize senseless;
    withSheet([&](const QDialog &sheet) {
        senseless = sheet.size();
        for (const std::uint32_t button : {1, 2001}) { // OK, "Select theme..."
            EXPECT_TRUE(IsReached(*ControlOf<QPushButton>(&sheet, button), sheet)) << button;
        }
    });
    EXPECT_LE(senseless.width(), SmallestScreen.width());
    ThemeUnload();
    withSheet([&](const QDialog &sheet) { EXPECT_EQ(senseless.height(), sheet.height()); });
}

} // namespace
} // namespace tonewright
