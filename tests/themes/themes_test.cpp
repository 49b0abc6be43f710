// The default theme and those beside the program, each through its exported entry points.
#include "common/text.h"
#include "support/environment.h"
#include "support/paths.h"
#include "support/pixels.h"
#include "support/run_program.h"
#include "tonewright_theme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLibrary>
#include <QPainter>
#include <QPalette>
#include <QtEndian>
#include <QWidget>

#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>

namespace tonewright {
namespace {

struct Sizes {
    int height, tool, groupGap, left, top, gap, picture;
    int toolPicture; // of the picture in a button
};
constexpr Sizes Medium{56, 48, 16, 8, 4, 4, 96, 32};
constexpr Sizes Compact{40, 34, 10, 6, 3, 3, 64, 24};

struct ThemeCase {
    const char *name;    // of the test
    const char *library; // beside the program, without suffix
    Sizes sizes;
    QRgb upper, lower; // of the boxes in the emblem of the program
};
void PrintTo(const ThemeCase &theme, std::ostream *stream) {
    *stream << theme.name;
}
constexpr ThemeCase Base{"Base", "basetheme_x64", Medium, 0xFF22AB9C, 0xFFF4AC3C};
constexpr ThemeCase SlateMedium{"SlateMedium", "theme/THEME_Slate Medium_x64", Medium, 0xFF4FD0BF,
                                0xFFFFBF5E};
constexpr ThemeCase SlateCompact{"SlateCompact", "theme/THEME_Slate Compact_x64", Compact,
                                 0xFF4FD0BF, 0xFFFFBF5E};

constexpr int Tools[] = {8, 7, 2, 4, 5, 34, 33, 30};
constexpr unsigned OfBox = 0x10000000;
constexpr unsigned Pictures[] = {0x8000001 | OfBox, 103 | OfBox, 8804 | OfBox};

constexpr unsigned Pressed = 0x1, Disabled = 0x4, Focus = 0x10, Default = 0x20, Hover = 0x40;

// A theme, its file beside the program, that is loaded as long as this lives. The entry points are
// typed by the header.
class LoadedTheme {
public:
    explicit LoadedTheme(const char *file) {
        library.setFileName(QString::fromStdString(FolderOfPath(WindowProgram()) + file));
        EXPECT_TRUE(library.load()) << library.errorString().toStdString();
        EXPECT_EQ(Call<decltype(THEMEInit)>("THEMEInit")(18, 17, 0, 1), 1);
    }
    ~LoadedTheme() {
        if (Exports("THEMEDeInit")) {
            Call<decltype(THEMEDeInit)>("THEMEDeInit")();
        }
        library.unload();
    }
    bool Exports(const char *name) { return library.resolve(name) != nullptr; }
    template <typename Function> Function *Call(const char *name) {
        return reinterpret_cast<Function *>(library.resolve(name));
    }
    int Metric(int number) { return Call<decltype(THEMEGetMetric)>("THEMEGetMetric")(number); }
    int DrawButton(QWidget *window, QPainter *painter, const ThemeRectangle *rectangle, int picture,
                   unsigned state) {
        return Call<decltype(THEMEDrawButton)>("THEMEDrawButton")(window, painter, rectangle,
                                                                  picture, state);
    }
    int DrawBackground(QWidget *window, QPainter *painter) {
        return Call<decltype(THEMEDrawToolbarBackground)>("THEMEDrawToolbarBackground")(
            window, painter, 0, 0);
    }

    struct FreeBlock {
        void operator()(uchar *block) const { std::free(block); }
    };
    using Block = std::unique_ptr<uchar, FreeBlock>;
    Block Bitmap(unsigned number) {
        return Block(
            static_cast<uchar *>(Call<decltype(THEMEGetBitmap)>("THEMEGetBitmap")(number)));
    }

private:
    QLibrary library;
};

// The pixels of a bitmap whose header is right.
QImage ImageOf(const LoadedTheme::Block &bitmap) {
    const auto side = [&](int place) { return qFromLittleEndian<qint32>(bitmap.get() + place); };
    QImage image(side(4), side(8), QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const uchar *pixel =
                bitmap.get() + 40 + ((image.height() - 1 - y) * image.width() + x) * 4;
            image.setPixel(x, y, qRgba(pixel[2], pixel[1], pixel[0], pixel[3]));
        }
    }
    return image;
}

QPalette LightPalette() {
    QPalette palette(QColor(0xEF, 0xEF, 0xEF));
    palette.setColor(QPalette::Highlight, QColor(0x30, 0x8C, 0xC6));
    return palette;
}

QPalette DarkPalette() {
    QPalette palette(QColor(0x2D, 0x2D, 0x30));
    palette.setColor(QPalette::Highlight, QColor(0x3D, 0x7E, 0xC8));
    return palette;
}

// A tool bar with one button at (x, y), painted at a scale.
struct DrawnBar {
    QImage image;
    int drawn;
};
DrawnBar DrawBar(LoadedTheme &theme, const QPalette &palette, int tool, unsigned state,
                 QPoint corner = {6, 4}, double scale = 1) {
    QWidget window;
    window.setPalette(palette);
    window.resize(80, theme.Metric(1));
    DrawnBar bar{QImage((QSizeF(window.size()) * scale).toSize(), QImage::Format_RGB32), 0};
    bar.image.fill(Untouched);
    bar.image.setDevicePixelRatio(scale);
    QPainter painter(&bar.image);
    theme.DrawBackground(&window, &painter);
    const ThemeRectangle rectangle{corner.x(), corner.y(), corner.x() + theme.Metric(2),
                                   corner.y() + theme.Metric(3)};
    bar.drawn = theme.DrawButton(&window, &painter, &rectangle, tool, state);
    painter.end();
    bar.image.setDevicePixelRatio(1);
    return bar;
}

constexpr int NoTool = 99;

double Luminance(QRgb colour) {
    const auto linear = [](int channel) {
        const double value = channel / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

double Contrast(QRgb first, QRgb second) {
    const double one = Luminance(first) + 0.05;
    const double other = Luminance(second) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

// How many pixels of a picture have at least this contrast to what lies behind them.
int PixelsOfContrast(const QImage &image, const QImage &ground, double contrast) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += Contrast(image.pixel(x, y), ground.pixel(x, y)) >= contrast;
        }
    }
    return count;
}

double HighestContrast(const QImage &image, const QImage &ground) {
    double highest = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            highest = std::max(highest, Contrast(image.pixel(x, y), ground.pixel(x, y)));
        }
    }
    return highest;
}

class Themes : public testing::TestWithParam<ThemeCase> {
protected:
    LoadedTheme theme{GetParam().library};
    Sizes sizes = GetParam().sizes;
};

INSTANTIATE_TEST_SUITE_P(Each, Themes, testing::Values(Base, SlateMedium, SlateCompact),
                         [](const auto &info) { return info.param.name; });

TEST_P(Themes, ExportWhatTheProgramLooksFor) {
    for (const char *name :
         {"THEMEGetSupport", "THEMEInit", "THEMEDeInit", "THEMEDrawButton", "THEMEDrawSmallButton",
          "THEMEDrawTool", "THEMEDrawToolbarBackground", "THEMEGetMetric", "THEMEGetBitmap"}) {
        EXPECT_TRUE(theme.Exports(name)) << name;
    }
    EXPECT_FALSE(theme.Exports("THEMEConfigure")) << "there is nothing to configure";
}

TEST_P(Themes, SpeakVersion18Only) {
    auto *support = theme.Call<decltype(THEMEGetSupport)>("THEMEGetSupport");
    EXPECT_EQ(support(18), 1);
    EXPECT_EQ(support(17), 0);
    EXPECT_EQ(support(19), 0);
    auto *init = theme.Call<decltype(THEMEInit)>("THEMEInit");
    EXPECT_EQ(init(18, 17, 0, 1), 1);
    EXPECT_EQ(init(17, 17, 0, 1), 0);
}

TEST_P(Themes, MetricsAreThoseOfTheirSize) {
    const std::array<int, 21> metrics{0,
                                      sizes.height,
                                      sizes.tool,
                                      sizes.tool,
                                      0,
                                      sizes.groupGap,
                                      sizes.left,
                                      sizes.top,
                                      sizes.gap,
                                      0,
                                      0,
                                      0,
                                      0,
                                      0,
                                      0,
                                      0,
                                      0,
                                      sizes.picture,
                                      sizes.picture,
                                      0,
                                      0};
    for (int number = 0; number < 21; ++number) {
        EXPECT_EQ(theme.Metric(number), metrics[number]) << number;
    }
    EXPECT_EQ(theme.Metric(-1), 0);
}

// Runs at other scales too: see BitmapsHaveThePixelsOfTheScreensScale.
TEST_P(Themes, BitmapsHaveTheHeaderAndAlpha) {
    const double ratio = qApp->devicePixelRatio();
    std::vector<std::pair<unsigned, QSize>> bitmaps{{0, {280, sizes.height}}, {2, {400, 72}}};
    for (const unsigned number : Pictures) {
        bitmaps.push_back({number, {sizes.picture, sizes.picture}});
    }
    for (const auto &[number, size] : bitmaps) {
        SCOPED_TRACE(number);
        const LoadedTheme::Block bitmap = theme.Bitmap(number);
        ASSERT_TRUE(bitmap);
        const int width = qRound(size.width() * ratio), height = qRound(size.height() * ratio);
        const int metre = qRound(3780 * ratio);
        const quint32 header[10] = {40,
                                    quint32(width),
                                    quint32(height),
                                    1 | 32 << 16,
                                    0,
                                    quint32(width * height * 4),
                                    quint32(metre),
                                    quint32(metre),
                                    0,
                                    0};
        for (int place = 0; place < 10; ++place) {
            EXPECT_EQ(qFromLittleEndian<quint32>(bitmap.get() + place * 4), header[place])
                << "bytes from " << place * 4;
        }
        const QImage image = ImageOf(bitmap);
        EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << "a rounded corner";
        EXPECT_EQ(qAlpha(image.pixel(width - 1, height - 1)), 0);
        EXPECT_EQ(qAlpha(image.pixel(width / 2, height / 2)), 255);
        int between = 0;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const int alpha = qAlpha(image.pixel(x, y));
                between += alpha > 0 && alpha < 255;
            }
        }
        EXPECT_GT(between, 0) << "its edge is smooth";
    }
}

// A box in the upper row of the emblem and one in the lower: neither rows nor colours changed
// places.
TEST_P(Themes, BitmapsHaveRowsBottomUpAndColoursInTheirOrder) {
    const QImage emblem = ImageOf(theme.Bitmap(Pictures[0]));
    const int side = emblem.width();
    EXPECT_EQ(emblem.pixel(side / 4, side * 7 / 32), GetParam().upper);
    EXPECT_EQ(emblem.pixel(side / 4, side * 46 / 96), GetParam().lower);
    const int between = side * 37 / 96; // two boxes of a row
    EXPECT_GE(Contrast(emblem.pixel(between, side * 7 / 32), GetParam().upper), 3);
    EXPECT_GE(Contrast(emblem.pixel(between, side * 46 / 96), GetParam().lower), 3);
}

// Colours are not multiplied by alpha: where a picture fades out, it does not turn black.
TEST_P(Themes, BitmapsKeepTheirColourWhereTheyFade) {
    const QImage preview = ImageOf(theme.Bitmap(0));
    const QRgb solid = preview.pixel(preview.width() / 4, 0);
    for (int x = 0; x < preview.width() / 4; ++x) {
        const QRgb pixel = preview.pixel(x, 0);
        if (qAlpha(pixel) > 32) {
            EXPECT_NEAR(qGray(pixel), qGray(solid), 8) << x;
        }
    }
}

TEST_P(Themes, HaveNoOtherBitmap) {
    for (const unsigned number : {1u, 3u, 50u, 103u, 8804u, 9001u, 0x8000001u, 9001u | OfBox,
                                  0u | OfBox, 2u | OfBox, 103u | 0x20000000u, 0xFFFFFFFFu}) {
        EXPECT_FALSE(theme.Bitmap(number)) << number;
    }
}

TEST_P(Themes, BitmapsHaveThePixelsOfTheScreensScale) {
    const std::string self = QCoreApplication::applicationFilePath().toStdString();
    const EnvironmentVariable counts("TEST_COUNTS", std::nullopt);
    const EnvironmentVariable shards("GTEST_TOTAL_SHARDS", std::nullopt);
    const EnvironmentVariable shard("GTEST_SHARD_INDEX", std::nullopt);
    for (const char *scale : {"1.5", "2", "3"}) {
        const EnvironmentVariable factor("QT_SCALE_FACTOR", scale);
        const ProgramResult result = RunProgram(
            {self, std::string("--gtest_filter=*BitmapsHaveTheHeader*/") + GetParam().name});
        EXPECT_EQ(result.exitStatus, 0) << scale << result.output;
        EXPECT_NE(result.output.find("[  PASSED  ] 1 test"), std::string::npos) << result.output;
    }
}

TEST_P(Themes, PreviewsShowTheBarOfTheApplicationsPalette) {
    const QPalette former = QApplication::palette();
    std::array<QImage, 2> previews;
    for (const bool dark : {false, true}) {
        const QPalette palette = dark ? DarkPalette() : LightPalette();
        QApplication::setPalette(palette);
        previews[dark] = ImageOf(theme.Bitmap(0));
        const QImage bar = DrawBar(theme, palette, NoTool, 0).image;
        EXPECT_EQ(previews[dark].pixel(3, 20), bar.pixel(3, 20)) << dark;
    }
    QApplication::setPalette(former);
    EXPECT_NE(previews[0], previews[1]);
}

TEST_P(Themes, BackgroundCoversTheWholeWindowAndNoMore) {
    QWidget window;
    window.resize(100, sizes.height);
    QImage image = EmptyImage(120, sizes.height + 10);
    QPainter painter(&image);
    EXPECT_EQ(theme.DrawBackground(&window, &painter), 1);
    painter.end();
    EXPECT_FALSE(HasPixel(image, window.rect(), Untouched));
    EXPECT_TRUE(IsAll(image, QRect(100, 0, 20, image.height()), Untouched));
    EXPECT_TRUE(IsAll(image, QRect(0, sizes.height, 120, 10), Untouched));
}

TEST_P(Themes, DrawEachToolInEachStateWithinItsRectangle) {
    for (const QPalette &palette : {LightPalette(), DarkPalette()}) {
        const QImage ground = DrawBar(theme, palette, NoTool, 0).image;
        std::vector<QImage> tools;
        for (const int tool : Tools) {
            SCOPED_TRACE(tool);
            std::vector<QImage> states;
            for (const unsigned state : {0u, Hover, Hover | Pressed, Disabled, Focus}) {
                const auto [image, drawn] = DrawBar(theme, palette, tool, state);
                EXPECT_EQ(drawn, 1);
                EXPECT_NE(image, ground) << state;
                for (const QImage &other : states) {
                    EXPECT_NE(image, other) << state;
                }
                states.push_back(image);
                const QRect button(6, 4, sizes.tool, sizes.tool);
                for (int y = 0; y < image.height(); ++y) {
                    for (int x = 0; x < image.width(); ++x) {
                        if (!button.contains(x, y) && image.pixel(x, y) != ground.pixel(x, y)) {
                            FAIL() << "painted beside its rectangle at " << x << ", " << y;
                        }
                    }
                }
            }
            for (const QImage &other : tools) {
                EXPECT_NE(states[0], other);
            }
            tools.push_back(states[0]);
        }
    }
}

TEST_P(Themes, ADisabledButtonLooksTheSameUnderTheMouse) {
    const QImage disabled = DrawBar(theme, LightPalette(), 8, Disabled).image;
    EXPECT_EQ(DrawBar(theme, LightPalette(), 8, Disabled | Hover | Pressed | Focus).image,
              disabled);
    EXPECT_EQ(DrawBar(theme, LightPalette(), 8, Default).image,
              DrawBar(theme, LightPalette(), 8, Focus).image);
}

// A good part of each picture stands out as shapes have to. Disabled it is clearly fainter, and
// still to be seen.
TEST_P(Themes, PicturesStandOutOnLightAndDarkGround) {
    const int area = sizes.toolPicture * sizes.toolPicture;
    for (const bool dark : {false, true}) {
        const QPalette palette = dark ? DarkPalette() : LightPalette();
        const QImage ground = DrawBar(theme, palette, NoTool, 0).image;
        for (const int tool : Tools) {
            SCOPED_TRACE((dark ? "dark " : "light ") + std::to_string(tool));
            const QImage enabled = DrawBar(theme, palette, tool, 0).image;
            const QImage disabled = DrawBar(theme, palette, tool, Disabled).image;
            EXPECT_GE(PixelsOfContrast(enabled, ground, 3), area / 10);
            EXPECT_LE(HighestContrast(disabled, ground), HighestContrast(enabled, ground) / 2);
            EXPECT_GE(PixelsOfContrast(disabled, ground, 1.5), area / 10);
        }
    }
}

TEST(SlateThemes, FacesAreLighterUnderTheMouseAndDarkerWhilePressed) {
    for (const ThemeCase &size : {SlateMedium, SlateCompact}) {
        LoadedTheme theme(size.library);
        for (const QPalette &palette : {LightPalette(), DarkPalette()}) {
            const auto grey = [&](int tool, unsigned state) {
                return qGray(DrawBar(theme, palette, tool, state).image.pixel(9, 20));
            };
            EXPECT_GT(grey(8, Hover), grey(NoTool, 0) + 8);
            EXPECT_LT(grey(8, Hover | Pressed), grey(NoTool, 0) - 8);
        }
    }
}

TEST_P(Themes, DrawNothingForAPictureThatTheyDoNotHave) {
    const QImage ground = DrawBar(theme, LightPalette(), NoTool, 0).image;
    for (const int tool : {0, 1, 3, 31, 50, -1}) {
        const auto [image, drawn] = DrawBar(theme, LightPalette(), tool, Hover);
        EXPECT_EQ(drawn, 0) << tool;
        EXPECT_EQ(image, ground) << tool;
    }
}

TEST_P(Themes, DrawNothingWithoutPainterRectangleOrWindow) {
    QWidget window;
    QImage image = EmptyImage(60, 60);
    QPainter painter(&image);
    const ThemeRectangle rectangle{0, 0, 48, 48};
    EXPECT_EQ(theme.DrawButton(&window, nullptr, &rectangle, 8, 0), 0);
    EXPECT_EQ(theme.DrawButton(&window, &painter, nullptr, 8, 0), 0);
    EXPECT_EQ(theme.DrawBackground(nullptr, &painter), 0);
    EXPECT_EQ(theme.DrawBackground(&window, nullptr), 0);
    EXPECT_TRUE(IsAll(image, image.rect(), Untouched));
    EXPECT_EQ(theme.DrawButton(nullptr, &painter, &rectangle, 8, 0), 1) << "no window is needed";
}

TEST_P(Themes, LeaveThePaintersState) {
    QWidget window;
    window.resize(100, sizes.height);
    QImage image = EmptyImage(100, 60);
    QPainter painter(&image);
    painter.setPen(QPen(Qt::red, 3));
    painter.setBrush(Qt::green);
    painter.setOpacity(0.5);
    painter.translate(2, 1);
    painter.setRenderHints(QPainter::Antialiasing, false);
    const QTransform transform = painter.transform();
    const ThemeRectangle rectangle{6, 4, 6 + sizes.tool, 4 + sizes.tool};
    for (const unsigned state : {0u, Hover, Hover | Pressed, Disabled, Focus}) {
        theme.DrawBackground(&window, &painter);
        theme.DrawButton(&window, &painter, &rectangle, 8, state);
        EXPECT_EQ(painter.pen(), QPen(Qt::red, 3));
        EXPECT_EQ(painter.brush(), QBrush(Qt::green));
        EXPECT_EQ(painter.opacity(), 0.5);
        EXPECT_EQ(painter.transform(), transform);
        EXPECT_FALSE(painter.testRenderHint(QPainter::Antialiasing));
        EXPECT_EQ(painter.compositionMode(), QPainter::CompositionMode_SourceOver);
        EXPECT_FALSE(painter.hasClipping());
    }
}

// At a scale of one and a half every other place lies between two pixels. A picture there is as
// sharp as one place before it, where it begins with a pixel.
TEST_P(Themes, PicturesStaySharpBetweenPixels) {
    const int left = 10 - (sizes.tool - sizes.toolPicture) / 2;
    const QPoint whole(left, left), between(left + 1, left + 1);
    const int side = sizes.toolPicture * 3 / 2;
    const auto ink = [&](QPoint corner, int pixel) {
        QImage image = DrawBar(theme, LightPalette(), 8, 0, corner, 1.5).image;
        return image.copy(pixel, pixel, side, side);
    };
    int different = 0;
    const QImage first = ink(whole, 15), second = ink(between, 16);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            different += Contrast(first.pixel(x, y), second.pixel(x, y)) > 1.1;
        }
    }
    EXPECT_EQ(different, 0);
}

TEST(ThemesTogether, EachAnswersForItself) {
    LoadedTheme base(Base.library);
    auto medium = std::make_unique<LoadedTheme>(SlateMedium.library);
    LoadedTheme compact(SlateCompact.library);
    EXPECT_EQ(base.Metric(1), 56);
    EXPECT_EQ(medium->Metric(1), 56);
    EXPECT_EQ(compact.Metric(1), 40);
    const QImage drawn = DrawBar(compact, LightPalette(), 8, 0).image;
    EXPECT_NE(DrawBar(base, LightPalette(), 8, 0).image,
              DrawBar(*medium, LightPalette(), 8, 0).image);
    EXPECT_NE(ImageOf(base.Bitmap(2)), ImageOf(medium->Bitmap(2)));
    medium.reset();
    EXPECT_EQ(compact.Metric(1), 40);
    EXPECT_EQ(DrawBar(compact, LightPalette(), 8, 0).image, drawn);
    EXPECT_EQ(ImageOf(base.Bitmap(Pictures[0])).width(), qRound(96 * qApp->devicePixelRatio()));
}

// What themes/README.md shows is a theme: all that has to be there is there, and it does what the
// text says.
TEST(ThemeOfTheReadme, IsComplete) {
    LoadedTheme theme("tests/THEME_Plain_x64");
    for (const char *name : {"THEMEGetSupport", "THEMEDrawSmallButton", "THEMEDrawTool"}) {
        EXPECT_TRUE(theme.Exports(name)) << name;
    }
    EXPECT_EQ(theme.Metric(THEME_METRIC_TOOLBAR_HEIGHT), 44);
    EXPECT_EQ(theme.Metric(THEME_METRIC_PICTURE_WIDTH), 64);
    std::vector<QImage> tools;
    for (const int tool : Tools) {
        const auto [image, drawn] = DrawBar(theme, LightPalette(), tool, 0);
        EXPECT_EQ(drawn, 1) << tool;
        EXPECT_FALSE(HasPixel(image, image.rect(), Untouched));
        for (const QImage &other : tools) {
            EXPECT_NE(image, other) << tool;
        }
        tools.push_back(image);
        EXPECT_NE(DrawBar(theme, LightPalette(), tool, Hover).image, image) << tool;
        EXPECT_NE(DrawBar(theme, LightPalette(), tool, Disabled).image, image) << tool;
    }
    EXPECT_EQ(DrawBar(theme, LightPalette(), NoTool, 0).drawn, 0);
    const LoadedTheme::Block preview = theme.Bitmap(THEME_BITMAP_PREVIEW);
    ASSERT_TRUE(preview);
    const quint32 header[10] = {40, 200, 40, 1 | 24 << 16, 0, 200 * 40 * 3, 3780, 3780, 0, 0};
    for (int place = 0; place < 10; ++place) {
        EXPECT_EQ(qFromLittleEndian<quint32>(preview.get() + place * 4), header[place]) << place;
    }
    EXPECT_FALSE(theme.Bitmap(THEME_BITMAP_TIP_HEADING));
}

} // namespace
} // namespace tonewright
