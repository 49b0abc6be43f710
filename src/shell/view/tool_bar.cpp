// The tool bar and its buttons, painted by the theme.
#include "shell/view/tool_bar.h"

#include "common/view/accessible_role.h"
#include "common/view/theme.h"
#include "common/view/tool_tip.h"
#include "shell/command_table.h"

#include <QApplication>
#include <QCursor>
#include <QPainter>

namespace tonewright {

ToolButton::ToolButton(int commandId, const QString &name, const QString &tip, QWidget *parent)
    : QAbstractButton(parent), commandId(commandId) {
    setObjectName(QString("control_%1").arg(commandId));
    setAccessibleName(name);
    setAccessibleDescription(tip);
    MakeToolTip(this, tip);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
}

void ToolButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const unsigned state = (isDown() ? ButtonPressed : 0) | (isEnabled() ? 0 : ButtonDisabled) |
                           (underMouse() && isEnabled() ? ButtonHover : 0);
    ThemeDrawButton(painter, rect(), state,
                    PictureOf(static_cast<std::uint32_t>(commandId),
                              {ToolPictureSize, ToolPictureSize}, devicePixelRatioF()));
}

bool ToolButton::event(QEvent *event) {
    // The toolkit does not tell of a mouse that leaves while a dialog keeps it from the window.
    if (event->type() == QEvent::WindowUnblocked && underMouse() &&
        QApplication::widgetAt(QCursor::pos()) != this) {
        setAttribute(Qt::WA_UnderMouse, false);
        update();
    }
    return QAbstractButton::event(event);
}

ToolBar::ToolBar(QWidget *parent) : QWidget(parent) {
    setObjectName("TonewrightBar");
    SetAccessibleRole(*this, QAccessible::ToolBar);
    setAccessibleName("Tool bar");
    setFixedHeight(ThemeGetMetric(MetricToolBarHeight));
    int left = ThemeGetMetric(MetricToolLeft);
    for (const ToolRow &tool : ReadToolBar(ToolBarList)) {
        auto *button =
            new ToolButton(tool.id, QString::fromStdString(CommandName(*CommandOf(tool.id))),
                           QString::fromStdString(tool.tip), this);
        button->setGeometry(left, ThemeGetMetric(MetricToolTop), ThemeGetMetric(MetricToolWidth),
                            ThemeGetMetric(MetricToolHeight));
        button->setEnabled(CommandEnabled(tool.id));
        QObject::connect(button, &QAbstractButton::clicked, [id = tool.id] { PostCommand(id); });
        buttons[tool.id] = button;
        left += button->width() + ThemeGetMetric(MetricToolGap) +
                (tool.gapBehind ? ThemeGetMetric(MetricToolGroupGap) : 0);
    }
}

void ToolBar::FollowCommands() {
    for (const auto &[commandId, button] : buttons) {
        button->setEnabled(CommandEnabled(commandId));
    }
}

void ToolBar::RepaintButtons() {
    for (const auto &[commandId, button] : buttons) {
        button->update();
    }
}

void ToolBar::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    ThemeDrawToolbarBackground(painter, rect());
}

} // namespace tonewright
