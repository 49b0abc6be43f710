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
namespace {

// The pictures that themes have for tools.
struct ToolPictureRow {
    int command;
    int picture;
};
constexpr ToolPictureRow ToolPictures[] = {
    {CommandOpen, THEME_TOOL_OPEN},     {CommandSave, THEME_TOOL_SAVE},
    {CommandManual, THEME_TOOL_MANUAL}, {CommandSettings, THEME_TOOL_SETTINGS},
    {CommandExit, THEME_TOOL_EXIT},     {CommandDownload, THEME_TOOL_DOWNLOAD},
    {CommandUpload, THEME_TOOL_UPLOAD}, {CommandUndo, THEME_TOOL_UNDO},
};

// 0, which is no picture, for a command that is no tool.
int ToolPictureOf(int command) {
    for (const ToolPictureRow &row : ToolPictures) {
        if (row.command == command) {
            return row.picture;
        }
    }
    return 0;
}

} // namespace

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
    ThemeDrawButton(*this, painter, rect(), ToolPictureOf(commandId), state);
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
    setFixedHeight(ThemeGetMetric(THEME_METRIC_TOOLBAR_HEIGHT));
    int left = ThemeGetMetric(THEME_METRIC_TOOL_LEFT);
    for (const ToolRow &tool : ReadToolBar(ToolBarList)) {
        auto *button =
            new ToolButton(tool.id, QString::fromStdString(CommandName(*CommandOf(tool.id))),
                           QString::fromStdString(tool.tip), this);
        button->setGeometry(left, ThemeGetMetric(THEME_METRIC_TOOL_TOP),
                            ThemeGetMetric(THEME_METRIC_TOOL_WIDTH),
                            ThemeGetMetric(THEME_METRIC_TOOL_HEIGHT));
        button->setEnabled(CommandAllowed(tool.id));
        QObject::connect(button, &QAbstractButton::clicked, [id = tool.id] { PostCommand(id); });
        buttons[tool.id] = button;
        left += button->width() + ThemeGetMetric(THEME_METRIC_TOOL_GAP) +
                (tool.gapBehind ? ThemeGetMetric(THEME_METRIC_TOOL_GROUP_GAP) : 0);
    }
}

void ToolBar::FollowCommands() {
    for (const auto &[commandId, button] : buttons) {
        button->setEnabled(CommandAllowed(commandId));
    }
}

void ToolBar::RepaintButtons() {
    for (const auto &[commandId, button] : buttons) {
        button->update();
    }
}

void ToolBar::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    ThemeDrawToolbarBackground(*this, painter);
}

} // namespace tonewright
