// What stands below the keyboard of the Audition box while it plays a built-in instrument: how loud
// that is, its volume, silence at once, and why nothing is heard.
#pragma once

#include "synth/player.h"

#include <QTimer>
#include <QWidget>

#include <functional>

class QLabel;
class QPushButton;
class QSlider;

namespace tonewright {

class LevelMeter;

class InstrumentStrip : public QWidget {
public:
    explicit InstrumentStrip(QWidget *box);

    std::function<void()> panic;   // everything has been silenced; notes that are held are to end
    std::function<void()> resized; // the strip needs another height

    int HeightFor(int width) const; // pixels
    // Tab goes from a control of the box to those of the strip.
    void FollowInTabOrder(QWidget *control);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void Look();
    void ShowLine(const QString &text);

    LevelMeter *meter;
    QSlider *volume;
    QPushButton *panicButton;
    QLabel *line;
    QTimer look;             // while the strip can be seen
    bool toldReason = false; // in the status bar, once for each box
};

// How loud it is, from -48 dB to full scale, and behind it a mark that is lit while the limiter
// works and for a second after it.
class LevelMeter : public QWidget {
public:
    explicit LevelMeter(QWidget *parent);

    // The level since the last call, `milliseconds` ago: what falls is shown to fall slowly.
    void Take(const PlayerLevel &level, int milliseconds);
    double Shown() const { return shown; } // 0 to 1
    bool LimiterIsLit() const { return litFor > 0; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double shown = 0.0;
    int litFor = 0; // milliseconds
};

} // namespace tonewright
