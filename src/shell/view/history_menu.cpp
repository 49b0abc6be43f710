// Builds and paints the entries of the history in the File menu.
#include "shell/view/history_menu.h"

#include "common/settings.h"
#include "common/view/system_colours.h"
#include "common/view/text_line.h"
#include "common/view/pictures.h"
#include "shell/command_table.h"
#include "shell/history.h"

#include <QAction>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QProxyStyle>
#include <QScreen>
#include <QStyleOptionMenuItem>

#include <algorithm>

namespace tonewright {
namespace {

constexpr int TextMargin = 12;      // beside the text, both sides together
constexpr int CheckMarkWidth = 19;  // that a menu keeps free at its left
constexpr int PictureMargin = 6;    // above and below a picture, both together
constexpr int LargestPicture = 256; // pixels, whatever the setting says
constexpr int BoldWeight = 700;
constexpr double WidestPartOfScreen = 0.9;

// How the entries were made at the last rebuild.
bool WithPictures = false;

int PictureSide() {
    return static_cast<int>(std::min<std::uint32_t>(RememberFileHistorySize, LargestPicture));
}

// The text of a menu item: an ampersand would underline the letter behind it.
QString ItemText(const HistoryEntry &entry) {
    return QString::fromStdString(entry.path).replace("&", "&&");
}

// Null while entries are plain menu items.
const HistoryEntry *EntryOfText(const QString &text) {
    if (!WithPictures) {
        return nullptr;
    }
    const auto entries = HistoryEntries();
    const auto found = std::ranges::find_if(
        entries, [&](const HistoryEntry &entry) { return ItemText(entry) == text; });
    return found == entries.end() ? nullptr : &*found;
}

// Paints the items that are entries of the history; everything else is the platform's.
class HistoryMenuStyle : public QProxyStyle {
public:
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override {
        if (type == CT_MenuItem) {
            const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
            if (const HistoryEntry *entry = item ? EntryOfText(item->text) : nullptr) {
                return SizeOfEntry(*entry, item->font);
            }
        }
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    }

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override {
        if (element == CE_MenuItem) {
            const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
            if (const HistoryEntry *entry = item ? EntryOfText(item->text) : nullptr) {
                DrawEntry(*painter, *item, *entry);
                return;
            }
        }
        QProxyStyle::drawControl(element, option, painter, widget);
    }

private:
    static QSize SizeOfEntry(const HistoryEntry &entry, const QFont &menuFont) {
        const QFontMetrics metrics(menuFont);
        const int text = TextLineWidth(QString::fromStdString(entry.path), menuFont);
        int width = text + TextMargin + PictureSide() + CheckMarkWidth;
        if (const QScreen *screen = QGuiApplication::primaryScreen()) {
            width = std::min(width, static_cast<int>(screen->size().width() * WidestPartOfScreen));
        }
        return {width, std::max(PictureSide() + PictureMargin, metrics.height())};
    }

    static void DrawEntry(QPainter &painter, const QStyleOptionMenuItem &item,
                          const HistoryEntry &entry) {
        const bool selected = item.state & QStyle::State_Selected;
        const QRect area = item.rect;
        const int side = PictureSide();
        const QRect picture(area.right() + 1 - side, area.top() + (area.height() - side) / 2, side,
                            side);
        painter.save();
        if (selected) {
            painter.fillRect(area, SystemColourOf(SystemColour::Highlight));
        } // else the menu's own ground shows, and its frame
        if (side > 0) {
            // Its ground is transparent, so that it needs no frame.
            painter.drawPixmap(picture.topLeft(),
                               PictureOf(DocumentPictureOf(PlainPath(entry)), picture.size(),
                                         painter.device()->devicePixelRatioF()));
        }
        QFont font = item.font;
        if (IsPinned(entry)) {
            font.setWeight(QFont::Weight(BoldWeight));
        }
        const QRect text = area.adjusted(CheckMarkWidth, 0, -side - TextMargin / 2, 0);
        painter.setFont(font);
        painter.setPen(
            SystemColourOf(selected ? SystemColour::HighlightText : SystemColour::MenuText));
        DrawTextLine(painter, text, QString::fromStdString(PlainPath(entry)));
        painter.restore();
    }
};

} // namespace

void PrepareHistoryMenu(QMenu *fileMenu) {
    auto *style = new HistoryMenuStyle; // kept by the menu
    style->setParent(fileMenu);
    fileMenu->setStyle(style);
}

void RebuildHistoryMenu(QMenu *fileMenu) {
    for (QAction *action : fileMenu->actions()) {
        if (action->data().toInt() >= HistorySeparatorItem) {
            fileMenu->removeAction(action);
            action->deleteLater(); // it may be the one whose click is being handled
        }
    }
    WithPictures = RememberFileHistoryEnable != 0;
    const auto entries = HistoryEntries();
    if (entries.empty()) {
        return;
    }
    fileMenu->addSeparator()->setData(HistorySeparatorItem);
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const int item = HistoryFirstItem + static_cast<int>(index);
        QAction *action = fileMenu->addAction(ItemText(entries[index]));
        action->setData(item);
        action->setMenuRole(QAction::NoRole);
        QObject::connect(action, &QAction::triggered, [item] { RunCommand(item); });
    }
}

} // namespace tonewright
