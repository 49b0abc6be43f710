// Keeps the panes of the status bar and paints them into a picture that is then shown, so that one
// pane can be painted alone and at any time.
#include "common/view/status_bar.h"

#include "common/view/accessible_role.h"
#include "common/view/fonts.h"
#include "common/view/system_colours.h"
#include "common/view/text_line.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tonewright {
namespace {

constexpr int SizingFrameWidth = 4; // SM_CXFRAME, pixels
constexpr int PixelsPerInch = 96;
constexpr int FontPoints = 9;
constexpr int PointsPerInch = 72;
constexpr int TextInsetX = 3; // of a text pane inside its outline, pixels
constexpr int TextInsetY = 1;
constexpr int ProgressPane = 1;

int ClampToInt(std::int64_t value) {
    return static_cast<int>(std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max()));
}

int CellHeight(const QFont &font) {
    const QFontMetrics metrics(font);
    return metrics.ascent() + metrics.descent();
}

// Where a new pane starts, and where the painted rectangle of a pane begins: the first pane is
// painted one gap further in than it starts.
std::int64_t NextStart(const StatusBarState &state) {
    return state.paneCount == 0
               ? state.gap
               : std::int64_t{state.panes[state.paneCount - 1].end} + 2 * state.gap;
}

class StatusBar : public QWidget {
public:
    explicit StatusBar(QWidget *parent) : QWidget(parent) {
        setObjectName("StatusBar");
        SetAccessibleRole(*this, QAccessible::StatusBar);
        setAttribute(Qt::WA_OpaquePaintEvent);
        state.gap = (SizingFrameWidth + 1) / 2;
        state.font = FontOfHeight("Arial", -(PixelsPerInch * FontPoints / PointsPerInch));
        state.height = CellHeight(state.font) + 3 * state.gap + 2;
        parent->installEventFilter(this);
        PlaceAtFoot();
        setVisible(true);
    }

    StatusBarState state;

    // Paints the whole bar anew at the next painting.
    void RepaintAll() {
        picture = {};
        update();
    }

    // Paints one pane at once.
    void RepaintPane(int pane) {
        if (picture.isNull()) {
            repaint(); // which paints all panes
            return;
        }
        {
            QPainter painter(&picture);
            DrawPane(painter, pane);
        }
        repaint(PaneRectangle(pane));
    }

protected:
    bool eventFilter(QObject *object, QEvent *event) override {
        if (object == parent() && event->type() == QEvent::Resize) {
            PlaceAtFoot();
        }
        return false;
    }

    void changeEvent(QEvent *event) override {
        if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
            RepaintAll();
        }
        QWidget::changeEvent(event);
    }

    void paintEvent(QPaintEvent *) override {
        const double ratio = devicePixelRatioF();
        const QSize pixels(static_cast<int>(std::ceil(width() * ratio)),
                           static_cast<int>(std::ceil(height() * ratio)));
        if (picture.size() != pixels) {
            picture = QPixmap(pixels);
            picture.setDevicePixelRatio(ratio);
            DrawBar();
        }
        QPainter(this).drawPixmap(0, 0, picture);
    }

private:
    void PlaceAtFoot() {
        const QSize client = parentWidget()->size();
        setGeometry(0, client.height() - state.height, client.width(), state.height);
    }

    // The outline of a pane; what lies outside of the bar is left out.
    QRect PaneRectangle(int pane) const {
        const std::int64_t left =
            pane == 0 ? 2 * state.gap : std::int64_t{state.panes[pane - 1].end} + 2 * state.gap;
        const std::int64_t right = state.panes[pane].end;
        const int shownLeft = ClampToInt(std::clamp<std::int64_t>(left, -1, width() + 1));
        const int shownRight = ClampToInt(std::clamp<std::int64_t>(right, -1, width() + 1));
        const int top = state.gap + 1;
        return {shownLeft, top, shownRight - shownLeft, state.height - state.gap - 1 - top};
    }

    void DrawBar() {
        picture.fill(SystemColourOf(SystemColour::ButtonFace));
        QPainter painter(&picture);
        painter.fillRect(0, 0, width(), 1, Qt::black);
        painter.fillRect(0, 1, width(), 1, Qt::white);
        for (int pane = 0; pane < state.paneCount; ++pane) {
            DrawPane(painter, pane);
        }
    }

    void DrawPane(QPainter &painter, int pane) const {
        const QRect outline = PaneRectangle(pane);
        if (outline.isEmpty()) {
            return;
        }
        painter.setPen(SystemColourOf(SystemColour::ButtonShadow));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(outline.adjusted(0, 0, -1, -1));
        if (state.panes[pane].kind == StatusPaneMeter) {
            DrawMeter(painter, state.panes[pane], outline);
        } else {
            DrawText(painter, state.panes[pane], outline);
        }
    }

    void DrawText(QPainter &painter, const StatusPane &pane, const QRect &outline) const {
        const QRect inside = outline.adjusted(TextInsetX, TextInsetY, -TextInsetX, -TextInsetY);
        painter.fillRect(inside, SystemColourOf(SystemColour::ButtonFace));
        if (pane.text.isEmpty()) {
            return;
        }
        painter.setFont(state.font);
        painter.setPen(SystemColourOf(SystemColour::ButtonText));
        DrawTextLine(painter, inside, pane.text, Qt::Alignment(pane.alignment));
    }

    // What is filled already stays filled until a position of 0 empties the meter.
    void DrawMeter(QPainter &painter, const StatusPane &pane, const QRect &outline) const {
        const QRect inside = outline.adjusted(state.gap, state.gap, -state.gap, -state.gap);
        if (pane.position <= 0 || pane.range <= 0) {
            painter.fillRect(inside, SystemColourOf(SystemColour::ButtonFace));
            return;
        }
        const std::int64_t filled = std::int64_t{inside.width()} * pane.position / pane.range;
        painter.fillRect(QRect(inside.left(), inside.top(), ClampToInt(filled), inside.height()),
                         SystemColourOf(SystemColour::ButtonShadow));
    }

    QPixmap picture; // null: to be painted anew
};

// The bar of the main window.
QPointer<StatusBar> MainStatusBar;

StatusBar *StatusBarOf(const QWidget *owner) {
    if (!owner) {
        return nullptr;
    }
    return dynamic_cast<StatusBar *>(
        owner->findChild<QWidget *>("StatusBar", Qt::FindDirectChildrenOnly));
}

} // namespace

QWidget *CreateStatusBar(QWidget *mainWindow) {
    if (!mainWindow) {
        return nullptr;
    }
    if (StatusBar *present = StatusBarOf(mainWindow)) {
        return present;
    }
    MainStatusBar = new StatusBar(mainWindow);
    return MainStatusBar;
}

const StatusBarState *StatusBarStateOf(const QWidget *owner) {
    const StatusBar *bar = StatusBarOf(owner);
    return bar ? &bar->state : nullptr;
}

bool AddStatusPane(QWidget *owner, const std::string &text, int width, StatusPaneKind kind) {
    StatusBar *bar = StatusBarOf(owner);
    if (!bar || bar->state.paneCount >= StatusPaneLimit) {
        return false;
    }
    StatusBarState &state = bar->state;
    StatusPane pane;
    pane.text = QString::fromStdString(text);
    pane.kind = kind;
    std::int64_t paneWidth = width;
    if (kind == StatusPaneMeter) {
        paneWidth = StatusMeterWidth;
    } else if (width == StatusWidthOfText) {
        if (text.empty()) {
            return false;
        }
        paneWidth = QFontMetrics(state.font).horizontalAdvance(pane.text) + 3 * state.gap;
    }
    pane.end = ClampToInt(NextStart(state) + paneWidth);
    state.panes[state.paneCount++] = pane;
    bar->RepaintAll();
    return true;
}

bool SetStatusBarText(QWidget *owner, const std::string &text) {
    StatusBar *bar = StatusBarOf(owner);
    if (!bar || bar->state.paneCount == 0) {
        return false;
    }
    bar->state.panes[0].text = QString::fromStdString(text);
    bar->setAccessibleName(bar->state.panes[0].text);
    bar->RepaintPane(0);
    return true;
}

bool SetStatusBarProgress(int position, int total) {
    if (!MainStatusBar || MainStatusBar->state.paneCount <= ProgressPane) {
        return false;
    }
    StatusPane &pane = MainStatusBar->state.panes[ProgressPane];
    pane.position = std::min(position, total);
    pane.range = total;
    MainStatusBar->RepaintPane(ProgressPane);
    return true;
}

} // namespace tonewright
