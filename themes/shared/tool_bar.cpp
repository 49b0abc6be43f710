#include "shared/tool_bar.h"

#include "shared/shapes.h"

#include <QGuiApplication>
#include <QPainter>

namespace tonewright::theme {
namespace {

// In the order of the tool bar.
struct ToolRow {
    int picture;
    const char *name;
    bool gapBehind;
    unsigned previewState;
};
constexpr ToolRow Tools[] = {
    {THEME_TOOL_OPEN, "open", false, 0},
    {THEME_TOOL_SAVE, "save", false, THEME_STATE_HOVER},
    {THEME_TOOL_UPLOAD, "upload", false, 0},
    {THEME_TOOL_DOWNLOAD, "download", false, 0},
    {THEME_TOOL_UNDO, "undo", true, THEME_STATE_DISABLED},
    {THEME_TOOL_MANUAL, "manual", false, 0},
    {THEME_TOOL_SETTINGS, "settings", false, 0},
    {THEME_TOOL_EXIT, "exit", false, 0},
};

constexpr int PreviewWidth = 280; // pixels; the preview ends with the last tool that fits
constexpr double PreviewRadius = 6;

} // namespace

const char *ToolPictureName(int picture) {
    for (const ToolRow &tool : Tools) {
        if (tool.picture == picture) {
            return tool.name;
        }
    }
    return nullptr;
}

QImage PreviewOfToolBar(double ratio) {
    const QPalette palette = QGuiApplication::palette();
    const QRect bar(0, 0, PreviewWidth, MetricOf(THEME_METRIC_TOOLBAR_HEIGHT));
    QImage image((QSizeF(bar.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    TheLook.drawBackground(painter, palette, bar);
    QRect button(MetricOf(THEME_METRIC_TOOL_LEFT), MetricOf(THEME_METRIC_TOOL_TOP),
                 MetricOf(THEME_METRIC_TOOL_WIDTH), MetricOf(THEME_METRIC_TOOL_HEIGHT));
    for (const ToolRow &tool : Tools) {
        if (button.right() >= bar.right()) {
            break;
        }
        painter.save();
        TheLook.drawButton(painter, palette, button, tool.picture, tool.previewState);
        painter.restore();
        button.translate(button.width() + MetricOf(THEME_METRIC_TOOL_GAP) +
                             (tool.gapBehind ? MetricOf(THEME_METRIC_TOOL_GROUP_GAP) : 0),
                         0);
    }
    // Rounded corners, so that it looks like a card on whatever ground it is shown.
    QPainterPath corners;
    corners.addRect(QRectF(bar));
    QPainterPath card;
    card.addRoundedRect(QRectF(bar), PreviewRadius, PreviewRadius);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.fillPath(corners - card, Qt::black);
    painter.end();
    return image;
}

} // namespace tonewright::theme
