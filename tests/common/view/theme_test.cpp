// The theme that draws: the linked one, and loaded ones, whole and broken.
#include "common/platform.h"
#include "common/settings.h"
#include "common/theme_files.h"
#include "common/view/theme.h"
#include "common/view/theme_library.h"
#include "common/view/theme_picture.h"
#include "support/scripted_desktop.h"
#include "support/test_themes.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QTabWidget>

namespace tonewright {
namespace {

constexpr const char *Failure = "There has been an error initializing the current theme for this "
                                "application. The default theme will be used.";

using Calls = std::vector<std::string>;

// The height of the linked theme's tool bar, and of that of the themes for tests.
constexpr int LinkedHeight = 56, TestHeight = 31;

int BarHeight() {
    return ThemeGetMetric(THEME_METRIC_TOOLBAR_HEIGHT);
}

QImage Ground(QSize size, const QColor &colour) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

std::vector<std::uint32_t> Pixels(std::size_t width, std::size_t height) {
    return std::vector<std::uint32_t>(width * height, 0xFF336699);
}

QImage DrawnButton(unsigned state, int picture = THEME_TOOL_OPEN) {
    QImage image = Ground({48, 48}, Qt::white);
    QWidget window;
    QPainter painter(&image);
    ThemeDrawButton(window, painter, image.rect(), picture, state);
    return image;
}

TEST(LinkedTheme, MetricsHaveTheirValuesAndOthersAre0) {
    const std::pair<int, int> metrics[] = {{1, 56}, {2, 48}, {3, 48},  {4, 0},   {5, 16}, {6, 8},
                                           {7, 4},  {8, 4},  {17, 96}, {18, 96}, {19, 0}, {-1, 0}};
    for (const auto &[number, pixels] : metrics) {
        EXPECT_EQ(ThemeGetMetric(number), pixels) << number;
    }
}

TEST(LinkedTheme, EachStateOfAToolButtonLooksDifferent) {
    const unsigned states[] = {0, ButtonHover, ButtonPressed, ButtonDisabled, ButtonFocus};
    for (const unsigned first : states) {
        for (const unsigned second : states) {
            if (first != second) {
                EXPECT_NE(DrawnButton(first), DrawnButton(second)) << first << " " << second;
            }
        }
    }
    EXPECT_EQ(DrawnButton(ButtonDisabled), DrawnButton(ButtonDisabled | ButtonHover));
}

TEST(LinkedTheme, ThePictureOfABoxIsPaintedIntoItsRectangle) {
    QImage image = Ground({120, 120}, Qt::white);
    {
        QPainter painter(&image);
        ThemeDrawPicture(painter, QRect(0, 0, 48, 48), ApplicationPicture, Qt::white);
    }
    EXPECT_NE(image.copy(0, 0, 48, 48), Ground({48, 48}, Qt::white));
    EXPECT_EQ(image.copy(48, 0, 72, 120), Ground({72, 120}, Qt::white));
}

TEST(LinkedTheme, TheBackgroundOfTheToolBarFillsItsWindow) {
    QImage image = Ground({20, 80}, Qt::magenta);
    QWidget window;
    window.resize(20, 56);
    {
        QPainter painter(&image);
        ThemeDrawToolbarBackground(window, painter);
    }
    EXPECT_NE(image.pixelColor(10, 0), QColor(Qt::magenta));
    EXPECT_NE(image.pixelColor(19, 55), QColor(Qt::magenta));
    EXPECT_EQ(image.pixelColor(10, 56), QColor(Qt::magenta));
}

class ThemeLoading : public testing::Test {
protected:
    ThemeHouse house;
    ScriptedDesktop desktop;

    // The theme in ThemeCurrent does not start: it is told once, and the linked one draws.
    void ExpectFailure() {
        desktop.ExpectMessage(Failure);
        EXPECT_FALSE(ThemeLoad());
        desktop.ExpectNothingLeft();
        EXPECT_EQ(BarHeight(), LinkedHeight);
        EXPECT_NE(DrawnButton(0), Ground({48, 48}, Qt::white));
        EXPECT_TRUE(ThemeGetBitmap(ApplicationPicture | THEME_BITMAP_OF_BOX));
    }
};

TEST_F(ThemeLoading, AWholeThemeIsAskedInItsOrderAndDraws) {
    const std::string path = house.Put("whole", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    EXPECT_TRUE(ThemeLoad());
    EXPECT_EQ(house.Calls(), (Calls{"THEMEGetSupport 18", "THEMEInit 18 17 0 1"}));
    EXPECT_EQ(BarHeight(), TestHeight);
    EXPECT_TRUE(ThemeIsLoadedFrom(path));
    EXPECT_TRUE(
        ThemeIsLoadedFrom(house.program.File("theme/../theme/" + ThemeDiskName("THEME_A.dll"))));
    EXPECT_FALSE(ThemeIsLoadedFrom(house.program.File("nothing")));
    ThemeUnload();
    EXPECT_EQ(house.Calls(), Calls{"THEMEDeInit"});
    EXPECT_EQ(BarHeight(), LinkedHeight);
    EXPECT_FALSE(ThemeIsLoadedFrom(path));
}

TEST_F(ThemeLoading, EntriesAreCalledWithWhatIsDrawn) {
    house.Put("whole", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    ASSERT_TRUE(ThemeLoad());
    house.Calls();
    QImage image = Ground({48, 48}, Qt::white);
    QWidget window;
    {
        QPainter painter(&image);
        ThemeDrawButton(window, painter, QRect(3, 4, 10, 20), THEME_TOOL_UNDO,
                        ButtonPressed | ButtonHover);
        ThemeDrawButton(window, painter, QRect(0, 0, 48, 34), THEME_TOOL_OPEN, ButtonDisabled);
        ThemeDrawToolbarBackground(window, painter);
        ThemeDrawPicture(painter, image.rect(), ApplicationPicture, Qt::white);
    }
    EXPECT_EQ(house.Calls(),
              (Calls{"THEMEDrawButton window painter 3 4 13 24 picture 30 state 41",
                     "THEMEDrawButton window painter 0 0 48 34 picture 8 state 4",
                     "THEMEDrawToolbarBackground window painter 0 0", "THEMEGetBitmap 18000001"}));
}

TEST_F(ThemeLoading, SenselessMetricsAreKeptWithinReason) {
    house.Put("whole", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    ASSERT_TRUE(ThemeLoad());
    EXPECT_EQ(ThemeGetMetric(THEME_METRIC_TOOL_LEFT), 0);
    EXPECT_EQ(ThemeGetMetric(THEME_METRIC_TOOL_TOP), 128);
    ThemeUnload();
    house.Put("senseless", "THEME_B.dll");
    ThemeCurrent = "THEME_B.dll";
    ASSERT_TRUE(ThemeLoad());
    for (const int number : {1, 2, 3, 5, 6, 7, 8}) {
        EXPECT_EQ(ThemeGetMetric(number), 128) << number;
    }
    EXPECT_EQ(ThemeGetMetric(THEME_METRIC_PICTURE_WIDTH), 192);
    EXPECT_EQ(ThemeGetMetric(THEME_METRIC_PICTURE_HEIGHT), 192);
}

TEST(ThemeBitmapImage, HasThePixelsOfTheScreen) {
    const ThemeBitmap bitmap{.width = 20, .height = 10, .ratio = 2, .pixels = Pixels(20, 10)};
    EXPECT_EQ(SizeOfThemeBitmap(bitmap), QSizeF(10, 5));
    EXPECT_EQ(ImageOfThemeBitmap(bitmap, 1).size(), QSize(10, 5));
    EXPECT_EQ(ImageOfThemeBitmap(bitmap, 2).size(), QSize(20, 10));
    EXPECT_EQ(ImageOfThemeBitmap(bitmap, 3).size(), QSize(30, 15));
    EXPECT_EQ(ImageOfThemeBitmap(bitmap, 3).deviceIndependentSize(), QSizeF(10, 5));
}

TEST(ThemeBitmapImage, IsNeverLargerThanTheLargestBitmap) {
    const ThemeBitmap bitmap{.width = 3000, .height = 300, .pixels = Pixels(3000, 300)};
    const QImage image = ImageOfThemeBitmap(bitmap, 2);
    EXPECT_EQ(image.size(), QSize(4096, 410));
    EXPECT_NEAR(image.deviceIndependentSize().width(), 3000, 0.5); // where it is painted
    EXPECT_EQ(ImageOfThemeBitmap(bitmap, 1).size(), QSize(3000, 300));
}

TEST_F(ThemeLoading, AThemeWithoutDeInitAndConfigureLoads) {
    house.Put("bare", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    EXPECT_TRUE(ThemeLoad());
    ThemeUnload();
    EXPECT_EQ(house.Calls(), (Calls{"THEMEGetSupport 18", "THEMEInit 18 17 0 1"}));
}

TEST_F(ThemeLoading, EachWayNotToStartIsToldOnceAndTheDefaultThemeIsUsed) {
    for (const std::string &library : ThemesThatDoNotStart) {
        SCOPED_TRACE(library);
        const std::string theme = "THEME_" + library + ".dll";
        house.Put(library, theme);
        ThemeCurrent = theme;
        ExpectFailure();
        EXPECT_EQ(ThemeCurrent, theme);
        const Calls calls = house.Calls();
        ASSERT_FALSE(calls.empty());
        EXPECT_EQ(calls.back(), "THEMEDeInit");
        EXPECT_FALSE(ThemeIsLoadedFrom(house.PathOf(theme)));
    }
}

TEST_F(ThemeLoading, AThemeThatCallsAFunctionWhichNobodyHasFailsBeforeItIsAsked) {
    house.Put("unresolved", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    ExpectFailure();
    EXPECT_EQ(house.Calls(), Calls());
    EXPECT_FALSE(ThemePreviewOf(house.PathOf("THEME_A.dll")));
    // The system tells the name of the function, or that of the library that needs it.
    const std::string fault = StartTheme(house.PathOf("THEME_A.dll")).fault;
    const bool tellsLibrary = std::string(PlatformLibraryExtension) == "dll";
    EXPECT_NE(fault.find(tellsLibrary ? "THEME_A" : "TonewrightTestFunctionThatNobodyHas"),
              std::string::npos)
        << fault;
}

TEST_F(ThemeLoading, AThemeThatExportsAllButDrawToolFailsAlthoughItIsNeverCalled) {
    house.Put("without_draw_tool", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    ExpectFailure();
    EXPECT_EQ(house.Calls(), (Calls{"THEMEGetSupport 18", "THEMEInit 18 17 0 1", "THEMEDeInit"}));
}

TEST_F(ThemeLoading, TheChainStopsAtTheFirstStep) {
    house.Put("refusing", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    ExpectFailure();
    EXPECT_EQ(house.Calls(), (Calls{"THEMEGetSupport 18", "THEMEDeInit"}));
}

TEST_F(ThemeLoading, AFileThatIsNoLibraryFails) {
    std::filesystem::create_directories(house.program.path / "theme");
    for (const char *text : {"", "not a library\n"}) {
        WriteTestText(house.PathOf("THEME_A.dll"), text);
        ThemeCurrent = "THEME_A.dll";
        ExpectFailure();
        EXPECT_EQ(ThemeCurrent, "THEME_A.dll");
    }
}

TEST_F(ThemeLoading, ThemeCurrentOfADeletedFileFallsBackToTheMediumTheme) {
    house.Put("whole", ThemeMedium);
    ThemeCurrent = "THEME_Deleted.dll";
    EXPECT_TRUE(ThemeLoad());
    EXPECT_EQ(ThemeCurrent, "THEME_Slate Medium.dll");
    EXPECT_EQ(BarHeight(), TestHeight);
}

TEST_F(ThemeLoading, ThemeCurrentOfADeletedFileFallsBackByNameWhetherOrNotTheMediumThemeIsThere) {
    ThemeCurrent = "THEME_Deleted.dll";
    ExpectFailure();
    EXPECT_EQ(ThemeCurrent, "THEME_Slate Medium.dll");
}

TEST_F(ThemeLoading, NoLibraryOfAnotherNameIsLoadedInThePlaceOfAMissingOne) {
    const std::string path = house.Put("whole", ThemeMedium);
    std::filesystem::rename(path, house.program.File("theme/lib" + ThemeDiskName(ThemeMedium)));
    ThemeCurrent = "THEME_Deleted.dll";
    ExpectFailure();
    EXPECT_EQ(StartTheme(path).fault, "there is no such file");
    EXPECT_FALSE(ThemePreviewOf(path));
    EXPECT_EQ(house.Calls(), Calls());
}

TEST_F(ThemeLoading, ANameThatLeadsOutOfTheFolderCountsAsAFileThatIsNotThere) {
    // There is a theme at each of these places.
    house.Put("whole", "THEME_A.dll");
    std::filesystem::copy_file(house.PathOf("THEME_A.dll"),
                               house.program.File(ThemeDiskName("x.dll")));
    for (const std::string &name :
         {std::string("../x.dll"), house.program.File("x.dll"), std::string("../theme/THEME_A.dll"),
          std::string(1100, 'x'), std::string()}) {
        ThemeCurrent = name;
        ExpectFailure();
        EXPECT_EQ(ThemeCurrent, "THEME_Slate Medium.dll") << name;
        EXPECT_EQ(house.Calls(), Calls()) << name;
    }
}

TEST_F(ThemeLoading, AThemeOfTheUsersFolderIsNotLoadedAtStart) {
    house.PutForUser("whole", "THEME_A.dll");
    house.Put("whole", ThemeMedium);
    ThemeCurrent = "THEME_A.dll";
    EXPECT_TRUE(ThemeLoad());
    EXPECT_EQ(ThemeCurrent, "THEME_Slate Medium.dll");
}

TEST_F(ThemeLoading, ABitmapThatLiesIsNone) {
    for (const std::string &library : ThemesWithoutBitmaps) {
        SCOPED_TRACE(library);
        const std::string theme = "THEME_" + library + ".dll";
        house.Put(library, theme);
        ThemeCurrent = theme;
        ASSERT_TRUE(ThemeLoad());
        EXPECT_FALSE(ThemeGetBitmap(THEME_BITMAP_PREVIEW));
        QImage image = Ground({40, 40}, Qt::white);
        {
            QPainter painter(&image);
            ThemeDrawPicture(painter, image.rect(), 1, Qt::blue);
        }
        EXPECT_EQ(image, Ground({40, 40}, Qt::white));
        ThemeUnload();
        EXPECT_FALSE(ThemePreviewOf(house.PathOf(theme)));
    }
}

QImage DrawnPicture(double ratio = 1) {
    QImage image = Ground(QSize(40, 40) * ratio, Qt::yellow);
    image.setDevicePixelRatio(ratio);
    QPainter painter(&image);
    ThemeDrawPicture(painter, QRect(4, 4, 30, 30), 1, QColor(0x10, 0x80, 0xF0));
    return image;
}

TEST_F(ThemeLoading, ABitmapOf24BitsDrawsAsItStands) {
    house.Put("bits_24", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    ASSERT_TRUE(ThemeLoad());
    QImage expected = Ground({40, 40}, Qt::yellow);
    QPainter(&expected).fillRect(4, 4, 8, 8, Qt::red);
    EXPECT_EQ(DrawnPicture(), expected);
}

TEST_F(ThemeLoading, ABitmapOf32BitsBlendsWithTheColourOfTheBox) {
    house.Put("whole", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    ASSERT_TRUE(ThemeLoad());
    // 255 * 128 / 255 + 0x10 * 127 / 255 = 128 + 7, 0x80 * 127 / 255 = 63, 0xF0 * 127 / 255 = 119
    QImage expected = Ground({40, 40}, Qt::yellow);
    QPainter(&expected).fillRect(4, 4, 8, 8, QColor(135, 63, 119));
    EXPECT_EQ(DrawnPicture(), expected);
    EXPECT_EQ(DrawnPicture(2).pixelColor(23, 23), QColor(135, 63, 119));
    EXPECT_EQ(DrawnPicture(2).pixelColor(24, 24), QColor(Qt::yellow));
    EXPECT_EQ(DrawnPicture(1.5).pixelColor(17, 17), QColor(135, 63, 119));
}

TEST_F(ThemeLoading, ALabelShowsThePictureInTheSizeOfTheThemeOverTheGroundBehindIt) {
    house.Put("whole", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    ASSERT_TRUE(ThemeLoad());
    QWidget box;
    QPalette colours;
    colours.setColor(QPalette::Window, QColor(0x10, 0x80, 0xF0));
    box.setPalette(colours);
    auto *label = new QLabel(&box);
    ShowThemePicture(*label, 103);
    EXPECT_EQ(label->size(), QSize(40, 24));
    house.Calls();
    EXPECT_EQ(box.grab().toImage().pixelColor(5, 5), QColor(135, 63, 119));
    EXPECT_EQ(house.Calls(), Calls{"THEMEGetBitmap 10000067"});
    // Another palette, as a desktop changes from light to dark.
    colours.setColor(QPalette::Window, Qt::black);
    box.setPalette(colours);
    EXPECT_EQ(box.grab().toImage().pixelColor(5, 5), QColor(128, 0, 0));
}

TEST_F(ThemeLoading, ALabelOnAPageOfASheetHasTheGroundOfThePage) {
    QTabWidget tabs;
    auto *page = new QWidget;
    tabs.addTab(page, "Page");
    tabs.resize(200, 200);
    tabs.show();
    house.Put("whole", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    ASSERT_TRUE(ThemeLoad());
    auto *label = new QLabel(page);
    ShowThemePicture(*label, 1);
    label->move(20, 20);
    label->show();
    const QImage image = tabs.grab().toImage();
    const QPoint corner = label->mapTo(&tabs, QPoint(0, 0));
    const QColor ground = image.pixelColor(corner + QPoint(-3, -3));
    EXPECT_EQ(image.pixelColor(corner + QPoint(2, 2)).green(), ground.green() * 127 / 255);
}

TEST_F(ThemeLoading, ALabelOfABitmapHasItsSizeAndHidesWhereThereIsNone) {
    house.Put("whole", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    ASSERT_TRUE(ThemeLoad());
    QWidget box;
    auto *heading = new QLabel(&box), *none = new QLabel(&box);
    ShowThemeBitmap(*heading, THEME_BITMAP_TIP_HEADING);
    ShowThemeBitmap(*none, 99);
    EXPECT_EQ(heading->size(), QSize(8, 8));
    EXPECT_FALSE(heading->isHidden());
    EXPECT_TRUE(none->isHidden());
}

TEST_F(ThemeLoading, ALabelOfALargeBitmapLeavesRoomForItsBox) {
    house.Put("large", "THEME_A.dll");
    ThemeCurrent = "THEME_A.dll";
    ASSERT_TRUE(ThemeLoad());
    QLabel heading;
    ShowThemeBitmap(heading, THEME_BITMAP_TIP_HEADING);
    EXPECT_EQ(heading.size(), QSize(600, 200));
    EXPECT_EQ(heading.grab().toImage().pixelColor(599, 199), QColor(Qt::red));
}

TEST_F(ThemeLoading, APreviewIsAskedForBetweenABeginningAndAnEnd) {
    const auto preview = ThemePreviewOf(house.Put("whole", "THEME_A.dll"));
    ASSERT_TRUE(preview);
    EXPECT_EQ(preview->width, 8);
    EXPECT_EQ(house.Calls(), (Calls{"THEMEInit 18 17 0 1", "THEMEGetBitmap 0", "THEMEDeInit"}));
    EXPECT_TRUE(ThemePreviewOf(house.Put("bare", "THEME_B.dll")));
    EXPECT_FALSE(ThemePreviewOf(house.Put("failing", "THEME_C.dll")));
    EXPECT_FALSE(ThemePreviewOf(house.Put("without_get_bitmap", "THEME_D.dll")));
    EXPECT_FALSE(ThemePreviewOf(house.program.File("nothing")));
}

TEST_F(ThemeLoading, ConfiguringDoesNothingWhereThereIsNothingToConfigure) {
    QWidget owner;
    ConfigureTheme(house.Put("whole", "THEME_A.dll"), &owner);
    EXPECT_EQ(house.Calls(), Calls{"THEMEConfigure owner 18"});
    ConfigureTheme(house.Put("bare", "THEME_B.dll"), &owner);
    ConfigureTheme(house.program.File("nothing"), &owner);
    EXPECT_EQ(house.Calls(), Calls());
}

TEST_F(ThemeLoading, TheReasonOfAFaultIsTold) {
    const auto fault = [this](const std::string &library) {
        StartedTheme theme = StartTheme(house.Put(library, "THEME_" + library + ".dll"));
        EndTheme(std::move(theme.module));
        return theme.fault;
    };
    EXPECT_EQ(fault("whole"), "");
    EXPECT_EQ(fault("without_get_support"), "has no THEMEGetSupport");
    EXPECT_EQ(fault("refusing"), "does not support version 18 of the interface");
    EXPECT_EQ(fault("without_init"), "has no THEMEInit");
    EXPECT_EQ(fault("failing"), "THEMEInit failed");
    EXPECT_EQ(fault("without_draw_button"), "has no THEMEDrawButton");
    EXPECT_EQ(fault("without_draw_small_button"), "has no THEMEDrawSmallButton");
    EXPECT_EQ(fault("without_draw_tool"), "has no THEMEDrawTool");
    EXPECT_EQ(fault("without_draw_toolbar_background"), "has no THEMEDrawToolbarBackground");
    EXPECT_EQ(fault("without_get_metric"), "has no THEMEGetMetric");
    EXPECT_EQ(fault("without_get_bitmap"), "has no THEMEGetBitmap");
    const StartedTheme none = StartTheme(house.program.File("nothing"));
    EXPECT_FALSE(none.module);
    EXPECT_NE(none.fault, "");
}

} // namespace
} // namespace tonewright
