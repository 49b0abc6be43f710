// The status bar: its panes, its meter, and painting at once.
#include "common/view/status_bar.h"
#include "common/view/system_colours.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QEvent>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QTest>
#include <QWidget>

#include <climits>

namespace tonewright {
namespace {

// Counts the painting of a widget.
class PaintCounter : public QObject {
public:
    int count = 0;
    bool eventFilter(QObject *, QEvent *event) override {
        count += event->type() == QEvent::Paint;
        return false;
    }
};

// A window of 829 by 300 with the two panes of the main window.
class StatusBarTest : public testing::Test {
protected:
    void SetUp() override {
        window.resize(829, 300);
        bar = CreateStatusBar(&window);
        AddStatusPane(&window, "", 300, StatusPaneText);
        AddStatusPane(&window, "", 300, StatusPaneMeter);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    // Filled pixels of the meter, in the middle row of the bar.
    int MeterLength() const {
        const QImage image = bar->grab().toImage();
        const QRgb filled = SystemColourOf(SystemColour::ButtonShadow).rgb();
        int length = 0;
        for (int x = MeterLeft; x < MeterRight; ++x) {
            length += image.pixel(x, image.height() / 2) == filled;
        }
        return length;
    }

    // The second pane begins 4 behind the first one's end at 302 and ends at 602 + 4; the meter
    // lies 2 inside of its outline.
    static constexpr int MeterLeft = 308;
    static constexpr int MeterRight = 604;
    static constexpr int MeterFull = MeterRight - MeterLeft;

    QWidget window;
    QWidget *bar = nullptr;
};

TEST_F(StatusBarTest, AScreenReaderFindsItsText) {
    QAccessibleInterface *found = QAccessible::queryAccessibleInterface(bar);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->role(), QAccessible::StatusBar);
    EXPECT_EQ(found->text(QAccessible::Name), "");
    SetStatusBarText(&window, "Yamaha DX7");
    EXPECT_EQ(found->text(QAccessible::Name), "Yamaha DX7");
}

TEST_F(StatusBarTest, MeasuresComeFromTheFrameWidthAndTheFont) {
    const StatusBarState *state = StatusBarStateOf(&window);
    ASSERT_NE(state, nullptr);
    EXPECT_EQ(state->gap, 2);
    EXPECT_EQ(state->font.pixelSize(), 12);
    const QFontMetrics metrics(state->font);
    EXPECT_EQ(state->height, metrics.ascent() + metrics.descent() + 8);
    EXPECT_EQ(bar->height(), state->height);
    EXPECT_EQ(state->paneCount, 2);
    EXPECT_EQ(state->panes[0].end, 302);
    EXPECT_EQ(state->panes[1].end, 606);
}

TEST_F(StatusBarTest, ASecondCreationReturnsTheBarThatIsThere) {
    EXPECT_EQ(CreateStatusBar(&window), bar);
    EXPECT_EQ(StatusBarStateOf(&window)->paneCount, 2);
}

TEST_F(StatusBarTest, NoWindowHasNoBar) {
    EXPECT_EQ(CreateStatusBar(nullptr), nullptr);
    EXPECT_EQ(StatusBarStateOf(nullptr), nullptr);
    EXPECT_FALSE(AddStatusPane(nullptr, "text", 100, StatusPaneText));
    EXPECT_FALSE(SetStatusBarText(nullptr, "text"));
}

TEST_F(StatusBarTest, TheBarStaysAtTheFootOfItsWindow) {
    EXPECT_EQ(bar->geometry(), QRect(0, 300 - bar->height(), 829, bar->height()));
    window.resize(500, 400);
    EXPECT_EQ(bar->geometry(), QRect(0, 400 - bar->height(), 500, bar->height()));
    EXPECT_TRUE(bar->isVisible());
}

TEST_F(StatusBarTest, EveryPixelOfTheBarIsWhereItsMeasuresSay) {
    SetStatusBarProgress(32, 32);
    const int height = bar->height();
    QImage expected(829, height, QImage::Format_RGB32);
    expected.fill(SystemColourOf(SystemColour::ButtonFace));
    {
        QPainter painter(&expected);
        painter.fillRect(0, 0, 829, 1, Qt::black);
        painter.fillRect(0, 1, 829, 1, Qt::white);
        const QColor shadow = SystemColourOf(SystemColour::ButtonShadow);
        painter.setPen(shadow);
        painter.drawRect(4, 3, 297, height - 7); // to 301 and three pixels above the foot
        painter.drawRect(306, 3, 299, height - 7);
        painter.fillRect(308, 5, 296, height - 10, shadow);
    }
    const QImage image = bar->grab().toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(image, expected);
}

TEST_F(StatusBarTest, APaneThatGoesOnBehindTheBarHasNoRightEdge) {
    window.resize(500, 300); // the second pane begins at 306 and ends at 606
    const QImage image = bar->grab().toImage();
    const QRgb face = SystemColourOf(SystemColour::ButtonFace).rgb();
    for (int x = 480; x < 500; ++x) {
        EXPECT_EQ(image.pixel(x, bar->height() / 2), face) << x;
    }
    EXPECT_EQ(image.pixel(499, 3), SystemColourOf(SystemColour::ButtonShadow).rgb());
    window.resize(200, 300); // the first pane ends at 302, the second lies outside
    const QImage narrow = bar->grab().toImage();
    EXPECT_EQ(narrow.pixel(199, bar->height() / 2), face);
    EXPECT_EQ(narrow.pixel(4, bar->height() / 2), SystemColourOf(SystemColour::ButtonShadow).rgb());
}

TEST_F(StatusBarTest, ATextBeginsThreePixelsInsideOfItsOutline) {
    SetStatusBarText(&window, "Yamaha DX7");
    const StatusBarState &state = *StatusBarStateOf(&window);
    const int height = bar->height();
    QImage expected(829, height, QImage::Format_RGB32);
    expected.fill(SystemColourOf(SystemColour::ButtonFace));
    {
        QPainter painter(&expected);
        painter.setFont(state.font);
        painter.setPen(SystemColourOf(SystemColour::ButtonText));
        // In the middle between 4 and height - 4.
        const QFontMetrics metrics(state.font);
        const int cell = metrics.ascent() + metrics.descent();
        painter.drawText(7, 4 + (height - 8 - cell) / 2 + metrics.ascent(), "Yamaha DX7");
    }
    const QRect inside(5, 4, 296, height - 8);
    const QImage image = bar->grab().toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(image.copy(inside), expected.copy(inside));
}

TEST_F(StatusBarTest, HalfWayTheMeterIsHalfFull) {
    EXPECT_TRUE(SetStatusBarProgress(50, 100));
    EXPECT_EQ(MeterLength(), MeterFull / 2);
}

TEST_F(StatusBarTest, AMeterLengthIsRoundedDown) {
    EXPECT_TRUE(SetStatusBarProgress(1, 32));
    EXPECT_EQ(MeterLength(), MeterFull / 32);
}

TEST_F(StatusBarTest, APositionAboveTheTotalShowsAFullMeter) {
    EXPECT_TRUE(SetStatusBarProgress(33, 32));
    EXPECT_EQ(MeterLength(), MeterFull);
}

TEST_F(StatusBarTest, Position0OfTotal1EmptiesTheMeter) {
    SetStatusBarProgress(32, 32);
    EXPECT_TRUE(SetStatusBarProgress(0, 1));
    EXPECT_EQ(MeterLength(), 0);
}

TEST_F(StatusBarTest, TheMeterOnlyGrowsUntilPosition0ClearsIt) {
    SetStatusBarProgress(24, 32);
    EXPECT_TRUE(SetStatusBarProgress(8, 32));
    EXPECT_EQ(MeterLength(), MeterFull * 3 / 4);
    SetStatusBarProgress(0, 32);
    SetStatusBarProgress(8, 32);
    EXPECT_EQ(MeterLength(), MeterFull / 4);
}

TEST_F(StatusBarTest, HugeAndSenselessProgressIsDrawnWithinThePane) {
    EXPECT_TRUE(SetStatusBarProgress(INT_MAX, INT_MAX));
    EXPECT_EQ(MeterLength(), MeterFull);
    EXPECT_TRUE(SetStatusBarProgress(0, 0));
    EXPECT_EQ(MeterLength(), 0);
    EXPECT_TRUE(SetStatusBarProgress(INT_MAX / 2, INT_MAX));
    EXPECT_EQ(MeterLength(), MeterFull / 2 - 1);
    EXPECT_TRUE(SetStatusBarProgress(5, 0));
    EXPECT_EQ(MeterLength(), 0);
    SetStatusBarProgress(1, 1);
    EXPECT_TRUE(SetStatusBarProgress(INT_MIN, INT_MAX));
    EXPECT_EQ(MeterLength(), 0);
    EXPECT_TRUE(SetStatusBarProgress(-5, -9));
    EXPECT_EQ(MeterLength(), 0);
}

TEST_F(StatusBarTest, TextAndProgressArePaintedBeforeTheCallReturns) {
    PaintCounter counter;
    bar->installEventFilter(&counter);
    SetStatusBarText(&window, "Downloading");
    EXPECT_EQ(counter.count, 1);
    SetStatusBarProgress(3, 32);
    EXPECT_EQ(counter.count, 2);
}

TEST_F(StatusBarTest, TheTextIsWrittenIntoThePane) {
    const QImage before = bar->grab().toImage();
    EXPECT_TRUE(SetStatusBarText(&window, "Yamaha DX7"));
    EXPECT_EQ(StatusBarStateOf(&window)->panes[0].text, "Yamaha DX7");
    EXPECT_NE(bar->grab().toImage(), before);
}

TEST_F(StatusBarTest, AnEmptyTextLeavesThePaneOutlinedAndBlank) {
    const QImage blank = bar->grab().toImage();
    SetStatusBarText(&window, "Yamaha DX7");
    EXPECT_TRUE(SetStatusBarText(&window, ""));
    EXPECT_EQ(bar->grab().toImage(), blank);
    const QRgb outline = SystemColourOf(SystemColour::ButtonShadow).rgb();
    EXPECT_EQ(blank.pixel(4, 3), outline);
    EXPECT_EQ(blank.pixel(301, bar->height() - 4), outline);
    EXPECT_EQ(blank.pixel(150, bar->height() / 2), SystemColourOf(SystemColour::ButtonFace).rgb());
}

TEST_F(StatusBarTest, ALongTextEndsInsideOfItsPane) {
    const QImage blank = bar->grab().toImage();
    SetStatusBarText(&window, std::string(5000, 'W') + "\nsecond line");
    const QImage image = bar->grab().toImage();
    const QRect right(302, 0, 829 - 302, bar->height());
    EXPECT_EQ(image.copy(right), blank.copy(right));
    EXPECT_NE(image, blank);
}

TEST_F(StatusBarTest, ATextIsWrittenWholeWithAnyCharacterInIt) {
    // The last column of the first pane that holds ink.
    const auto end = [this](const QString &text) {
        SetStatusBarText(&window, text.toStdString());
        const QImage image = bar->grab().toImage();
        const QRgb face = SystemColourOf(SystemColour::ButtonFace).rgb();
        int last = 0;
        for (int x = 8; x < 298; ++x) {
            for (int y = 6; y < image.height() - 6; ++y) {
                last = image.pixel(x, y) != face ? x : last;
            }
        }
        return last;
    };
    const int wholeEnd = end("ABCDEFGH");
    EXPECT_GT(wholeEnd, end("AB") + 20);
    for (int code = 0x80; code <= 0x9F; ++code) {
        EXPECT_GE(end(QString("AB") + QChar(code) + "CDEFGH"), wholeEnd) << std::hex << code;
    }
}

TEST_F(StatusBarTest, AnEleventhPaneIsRefused) {
    for (int pane = 3; pane <= 10; ++pane) {
        EXPECT_TRUE(AddStatusPane(&window, "x", 20, StatusPaneText)) << pane;
    }
    EXPECT_FALSE(AddStatusPane(&window, "x", 20, StatusPaneText));
    EXPECT_EQ(StatusBarStateOf(&window)->paneCount, 10);
}

TEST(StatusBar, AMeterAskedForWithAWidthOf50Is300Wide) {
    QWidget window;
    CreateStatusBar(&window);
    EXPECT_TRUE(AddStatusPane(&window, "", 50, StatusPaneMeter));
    EXPECT_EQ(StatusBarStateOf(&window)->panes[0].end, 302);
}

TEST(StatusBar, AWidthOfMinusOneIsTheTextsWidthAndThreeGaps) {
    QWidget window;
    CreateStatusBar(&window);
    EXPECT_TRUE(AddStatusPane(&window, "Synthesizer", -1, StatusPaneText));
    const StatusBarState *state = StatusBarStateOf(&window);
    EXPECT_EQ(state->panes[0].end,
              2 + QFontMetrics(state->font).horizontalAdvance("Synthesizer") + 6);
}

TEST(StatusBar, AWidthOfMinusOneWithoutATextIsRefused) {
    QWidget window;
    CreateStatusBar(&window);
    EXPECT_FALSE(AddStatusPane(&window, "", -1, StatusPaneText));
    EXPECT_EQ(StatusBarStateOf(&window)->paneCount, 0);
}

TEST(StatusBar, ANewPaneHasPosition0OfRange1) {
    QWidget window;
    CreateStatusBar(&window);
    AddStatusPane(&window, "", 0, StatusPaneMeter);
    const StatusPane &pane = StatusBarStateOf(&window)->panes[0];
    EXPECT_EQ(pane.position, 0);
    EXPECT_EQ(pane.range, 1);
    EXPECT_EQ(pane.alignment, 0);
    EXPECT_EQ(pane.kind, StatusPaneMeter);
}

TEST(StatusBar, WithoutABarOrAPaneThereIsNothingToSet) {
    QWidget window;
    EXPECT_FALSE(SetStatusBarText(&window, "text"));
    EXPECT_FALSE(SetStatusBarProgress(1, 2));
    CreateStatusBar(&window);
    EXPECT_FALSE(SetStatusBarText(&window, "text"));
    AddStatusPane(&window, "", 300, StatusPaneText);
    EXPECT_TRUE(SetStatusBarText(&window, "text"));
    EXPECT_FALSE(SetStatusBarProgress(1, 2));
    AddStatusPane(&window, "", 300, StatusPaneMeter);
    EXPECT_TRUE(SetStatusBarProgress(1, 2));
}

TEST(StatusBar, AfterItsWindowHasGoneThereIsNoBar) {
    {
        QWidget window;
        CreateStatusBar(&window);
        AddStatusPane(&window, "", 300, StatusPaneText);
        AddStatusPane(&window, "", 300, StatusPaneMeter);
        EXPECT_TRUE(SetStatusBarProgress(1, 2));
    }
    EXPECT_FALSE(SetStatusBarProgress(1, 2));
}

TEST(StatusBar, HugeWidthsStayWithinTheRangeOfNumbers) {
    QWidget window;
    window.resize(829, 100);
    QWidget *bar = CreateStatusBar(&window);
    EXPECT_TRUE(AddStatusPane(&window, "a", INT_MAX, StatusPaneText));
    EXPECT_TRUE(AddStatusPane(&window, "b", INT_MAX, StatusPaneText));
    EXPECT_TRUE(AddStatusPane(&window, "c", INT_MIN, StatusPaneText));
    EXPECT_TRUE(AddStatusPane(&window, "d", -2, StatusPaneText));
    EXPECT_EQ(StatusBarStateOf(&window)->panes[1].end, INT_MAX);
    EXPECT_FALSE(bar->grab().isNull());
    EXPECT_TRUE(SetStatusBarText(&window, "still there"));
}

} // namespace
} // namespace tonewright
