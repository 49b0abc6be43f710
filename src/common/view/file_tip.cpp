// Measures, places and paints the tip of a list.
#include "common/view/file_tip.h"

#include "common/tip_area.h"
#include "common/view/accessible_role.h"
#include "common/view/fonts.h"
#include "common/view/text_line.h"
#include "common/view/tip_ground.h"
#include "common/view/wrapped_text.h"

#include <QPainter>

namespace tonewright {
namespace {

QFont SmallFont() {
    constexpr int SmallFontHeight = 14;
    return FontOfHeight(QStringLiteral("Arial"), SmallFontHeight);
}

bool HasLineBreaks(const QString &text) {
    return text.contains(u'\n');
}

} // namespace

FileTip::FileTip(QWidget *list) : QWidget(list) {
    SetAccessibleRole(*this, QAccessible::ToolTip);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    setFont(SmallFont());
    hide();
}

void FileTip::ShowAt(const QString &text, QPoint cursor) {
    setAccessibleName(text);
    const QSize size = TextSize(text, font());
    const QWidget &list = *parentWidget();
    const Rectangle area =
        TipAreaOf(size.width(), size.height(), {.x = cursor.x(), .y = cursor.y()}, list.width(),
                  list.height());
    setGeometry(area.left, area.top, area.right - area.left, area.bottom - area.top);
    raise();
    show();
    update();
}

void FileTip::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    PaintTipGround(painter, rect(), Qt::black, 1);
    const QString text = accessibleName();
    if (HasLineBreaks(text)) {
        constexpr int Margin = 5; // hundredths of the box
        const int across = width() * Margin / 100, down = height() * Margin / 100;
        DrawWrappedText(painter, rect().adjusted(across, down, -across, -down), text);
    } else {
        constexpr int Margin = 2;
        DrawTextLine(painter, rect().adjusted(Margin, Margin, -Margin, -Margin), text,
                     Qt::AlignHCenter);
    }
}

} // namespace tonewright
