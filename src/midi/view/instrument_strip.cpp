// Asks what sounds a few times a second, and shows it.
#include "midi/view/instrument_strip.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/view/accessible_role.h"
#include "common/view/system_colours.h"
#include "midi/instrument_settings.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSlider>

#include <algorithm>
#include <cmath>

namespace tonewright {
namespace {

constexpr int LookMilliseconds = 40;
constexpr int LitMilliseconds = 1000;
constexpr double LowestLevel = -48.0;  // dB of full scale
constexpr double FallInASecond = 24.0; // dB
constexpr QColor LitColour(0xE0, 0x30, 0x20);
constexpr int Margin = 14; // pixels, as in the head of the box
constexpr int Spacing = 10;
constexpr int MeterHeight = 14;
constexpr int LeastMeterWidth = 120;
constexpr int VolumeWidth = 120;

// 0 to 1 of the meter's length.
double PlaceOf(double peak) {
    return peak > 0.0 ? std::clamp(1.0 - 20.0 * std::log10(peak) / LowestLevel, 0.0, 1.0) : 0.0;
}

// Rows and not letters: the places of the keys count, whatever is printed on them.
const QString &KeysLine() {
    static const QString text = "The computer's keyboard plays as well: the lowest row of letters, "
                                "and an octave higher the highest one.";
    return text;
}

} // namespace

LevelMeter::LevelMeter(QWidget *parent) : QWidget(parent) {
    SetAccessibleRole(*this, QAccessible::Indicator);
    setAccessibleName("Level");
    setObjectName("instrument_level");
    setToolTip("Level; the mark at the end is lit when the limiter works");
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMinimumSize(LeastMeterWidth, MeterHeight);
}

QSize LevelMeter::sizeHint() const {
    return minimumSize();
}

void LevelMeter::Take(const PlayerLevel &level, int milliseconds) {
    const double fallen = shown + FallInASecond / LowestLevel * milliseconds / 1000.0;
    const double next = std::max(PlaceOf(static_cast<double>(level.peak)), std::max(0.0, fallen));
    const int nextLit = level.limited ? LitMilliseconds : std::max(0, litFor - milliseconds);
    if (next != shown || (nextLit > 0) != (litFor > 0)) {
        update();
    }
    shown = next;
    litFor = nextLit;
}

void LevelMeter::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QColor frame = SystemColourOf(SystemColour::DarkShadow3D);
    const auto box = [&](const QRect &area, double part, const QColor &filled) {
        painter.fillRect(area, frame);
        const QRect inside = area.adjusted(1, 1, -1, -1);
        painter.fillRect(inside, palette().color(QPalette::Base));
        QRect bar = inside;
        bar.setWidth(static_cast<int>(std::lround(inside.width() * part)));
        painter.fillRect(bar, filled);
    };
    const int lamp = height();
    const int gap = 4;
    box({0, 0, width() - lamp - gap, height()}, shown, palette().color(QPalette::Highlight));
    box({width() - lamp, 0, lamp, height()}, LimiterIsLit() ? 1.0 : 0.0, LitColour);
}

InstrumentStrip::InstrumentStrip(QWidget *box)
    : QWidget(box), meter(new LevelMeter(this)), volume(new QSlider(Qt::Horizontal, this)),
      panicButton(new QPushButton("&Panic", this)), line(new QLabel(this)) {
    setObjectName("instrument_strip");
    auto *level = new QLabel("Level:", this);
    auto *volumeName = new QLabel("&Volume:", this);
    volumeName->setBuddy(volume);
    volume->setObjectName("instrument_volume");
    volume->setAccessibleName("Volume");
    volume->setRange(0, HighestInstrumentVolume);
    volume->setPageStep(HighestInstrumentVolume / 10);
    volume->setValue(InstrumentVolumeOfSetting());
    volume->setMinimumWidth(VolumeWidth);
    volume->setFocusPolicy(Qt::StrongFocus);
    panicButton->setObjectName("instrument_panic");
    panicButton->setAutoDefault(false);
    panicButton->setMinimumSize(100, 30);
    panicButton->setToolTip("Silence, whatever sounds");
    line->setObjectName("instrument_line");
    line->setWordWrap(true);
    line->setText(KeysLine());

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(Margin, Margin, Margin, Margin);
    rows->setSpacing(Spacing);
    auto *controls = new QHBoxLayout;
    controls->setSpacing(Spacing);
    controls->addWidget(level);
    controls->addWidget(meter, 1);
    controls->addSpacing(Spacing);
    controls->addWidget(volumeName);
    controls->addWidget(volume);
    controls->addSpacing(Spacing);
    controls->addWidget(panicButton);
    rows->addLayout(controls);
    rows->addWidget(line);

    QObject::connect(volume, &QSlider::valueChanged, this, [](int value) {
        InstrumentVolume = static_cast<IntegerSettingValue>(value);
        FollowInstrumentSettings();
    });
    QObject::connect(panicButton, &QPushButton::clicked, this, [this] {
        PanicInstruments();
        if (panic) {
            panic();
        }
    });
    look.setInterval(LookMilliseconds);
    QObject::connect(&look, &QTimer::timeout, this, [this] { Look(); });
}

void InstrumentStrip::FollowInTabOrder(QWidget *control) {
    setTabOrder(control, volume);
    setTabOrder(volume, panicButton);
}

int InstrumentStrip::HeightFor(int width) const {
    layout()->activate();
    return layout()->totalHeightForWidth(width);
}

void InstrumentStrip::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    look.start();
}

void InstrumentStrip::hideEvent(QHideEvent *event) {
    look.stop();
    QWidget::hideEvent(event);
}

void InstrumentStrip::ShowLine(const QString &text) {
    if (line->text() != text) {
        line->setText(text);
        if (resized) {
            resized();
        }
    }
}

void InstrumentStrip::Look() {
    meter->Take(InstrumentLevel(), LookMilliseconds);
    std::string why;
    if (StateOfInstrumentSound(why) != InstrumentSoundState::Failed) {
        ShowLine(KeysLine());
        return;
    }
    const std::string text = "No sound: " + why + ".";
    ShowLine(QString::fromStdString(text));
    if (!toldReason) {
        toldReason = true;
        QWidget *main = window(); // which has the status bar, behind boxes over boxes
        while (main->parentWidget()) {
            main = main->parentWidget()->window();
        }
        SetStatusText(main, text);
    }
}

} // namespace tonewright
