// Paints the items of the list of algorithms, and the picture beside it.
#include "drivers/view/algorithm_list.h"

#include "common/view/accessible_role.h"
#include "common/view/fonts.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyledItemDelegate>
#include <QStyleOptionComboBox>

namespace tonewright {
namespace {

// Pixels.
constexpr int NumberLeft = 4; // the strip of an item's number
constexpr int NumberRight = 32;
constexpr int PictureLeft = 48;     // from the left edge of an item
constexpr int PictureRight = 8;     // from its right edge
constexpr int NarrowestField = 220; // has room for six boxes beside each other
constexpr int DroppedHeight = 432;

Rectangle RectangleOf(const QRect &area) {
    return {.left = area.left(),
            .top = area.top(),
            .right = area.left() + area.width(),
            .bottom = area.top() + area.height()};
}

void DrawItem(QPainter &painter, const QRect &area, const AlgorithmLook &look, int algorithm,
              bool enabled, bool selected) {
    const AlgorithmColours colours = AlgorithmItemColours(enabled && selected);
    painter.save();
    painter.setClipRect(area);
    painter.fillRect(area, colours.paper);
    if (look.drawItem) {
        look.drawItem(painter, RectangleOf(area.adjusted(PictureLeft, 0, -PictureRight, 0)),
                      algorithm, enabled && selected);
    }
    painter.setFont(FontOfHeight(QStringLiteral("ARIAL"), 28, 700));
    painter.setPen(enabled ? colours.ink : SystemColourOf(look.disabledText));
    painter.drawText(
        QRect(area.left() + NumberLeft, area.top(), NumberRight - NumberLeft, area.height()),
        Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip,
        QStringLiteral("%1").arg(algorithm + 1, 2));
    painter.restore();
}

class ItemDelegate : public QStyledItemDelegate {
public:
    ItemDelegate(const AlgorithmLook &look, QObject *parent)
        : QStyledItemDelegate(parent), look(look) {}

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override {
        return {NarrowestField, look.itemHeight};
    }
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override {
        DrawItem(*painter, option.rect, look, index.row(), option.state & QStyle::State_Enabled,
                 option.state & QStyle::State_Selected);
    }

private:
    const AlgorithmLook &look;
};

// Drops the list down with a scroll bar, where some styles would fill the screen with its items.
class DropDownStyle : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override {
        return hint == SH_ComboBox_Popup ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

// The list as a screen reader finds it: its value is the algorithm in words.
class AccessibleAlgorithmList : public QAccessibleWidget {
public:
    explicit AccessibleAlgorithmList(AlgorithmList &list)
        : QAccessibleWidget(&list, QAccessible::ComboBox), list(list) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? list.currentData(Qt::AccessibleTextRole).toString()
                                          : QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = true;
        state.expanded = list.view()->isVisible();
        return state;
    }
    int childCount() const override { return 1; }
    QAccessibleInterface *child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(list.view()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override {
        return child->object() == list.view() ? 0 : -1;
    }
    QStringList actionNames() const override { return {showMenuAction()}; }
    void doAction(const QString &name) override {
        if (name != showMenuAction()) {
            return;
        }
        if (list.view()->isVisible()) {
            list.hidePopup();
        } else {
            list.showPopup();
        }
    }

private:
    AlgorithmList &list;
};

QAccessibleInterface *MakeAccessible(const QString & /*className*/, QObject *object) {
    auto *list = dynamic_cast<AlgorithmList *>(object);
    return list ? new AccessibleAlgorithmList(*list) : nullptr;
}

} // namespace

QString AlgorithmName(int algorithm) {
    return QStringLiteral("Algorithm %1").arg(algorithm + 1);
}

AlgorithmColours AlgorithmItemColours(bool selected) {
    return selected ? AlgorithmColours{SystemColourOf(SystemColour::HighlightText),
                                       SystemColourOf(SystemColour::Highlight)}
                    : AlgorithmColours{Qt::black, Qt::white};
}

AlgorithmColours AlgorithmPictureColours() {
    return {SystemColourOf(SystemColour::DarkShadow3D), SystemColourOf(SystemColour::ButtonFace)};
}

AlgorithmList::AlgorithmList(QWidget *parent) : QComboBox(parent) {
    auto *dropDown = new DropDownStyle(style()->name());
    dropDown->setParent(this);
    setStyle(dropDown);
    view()->installEventFilter(this);
    QAccessible::installFactory(MakeAccessible); // once, however often it is called
}

void AlgorithmList::SetLook(const AlgorithmLook &newLook) {
    look = &newLook;
    setItemDelegate(new ItemDelegate(*look, this));
    setMaxVisibleItems(DroppedHeight / look->itemHeight);
    updateGeometry();
}

void AlgorithmList::NameItems() {
    for (int index = 0; index < count(); ++index) {
        setItemData(index, AlgorithmName(index), Qt::AccessibleTextRole);
    }
}

QRect AlgorithmList::FieldIn(const QSize &size) const {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.rect = QRect(QPoint(0, 0), size);
    return style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField,
                                   this);
}

// Whatever the style puts around it, the field is an item high.
QSize AlgorithmList::sizeHint() const {
    const QSize item(NarrowestField, look ? look->itemHeight : 0);
    return item + (item - FieldIn(item).size());
}

QSize AlgorithmList::minimumSizeHint() const {
    return sizeHint();
}

void AlgorithmList::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    style()->drawComplexControl(QStyle::CC_ComboBox, &option, &painter, this);
    if (look && currentIndex() >= 0) {
        DrawItem(painter, FieldIn(size()), *look, currentIndex(), isEnabled(), hasFocus());
    }
}

bool AlgorithmList::TakesDigit(const QKeyEvent &key, int &item) {
    const QString text = key.text();
    if (text.size() != 1 || text[0] < u'0' || text[0] > u'9') {
        return false;
    }
    const int digit = text[0].digitValue();
    const bool isQuick =
        sinceDigit.isValid() && !sinceDigit.hasExpired(QApplication::keyboardInputInterval());
    typed = isQuick && typed * 10 + digit <= count() ? typed * 10 + digit : digit;
    sinceDigit.start();
    item = typed <= count() ? typed - 1 : -1;
    return true;
}

void AlgorithmList::keyPressEvent(QKeyEvent *event) {
    int item = -1;
    if (!TakesDigit(*event, item)) {
        QComboBox::keyPressEvent(event);
    } else if (item >= 0) {
        setCurrentIndex(item);
    }
}

bool AlgorithmList::eventFilter(QObject *watched, QEvent *event) {
    int item = -1;
    if (event->type() != QEvent::KeyPress || !TakesDigit(static_cast<QKeyEvent &>(*event), item)) {
        return QComboBox::eventFilter(watched, event);
    }
    if (item >= 0) {
        view()->setCurrentIndex(model()->index(item, modelColumn()));
    }
    return true;
}

AlgorithmPicture::AlgorithmPicture(QWidget *parent) : QWidget(parent) {
    SetAccessibleRole(*this, QAccessible::Graphic);
}

void AlgorithmPicture::SetLook(const AlgorithmLook &newLook) {
    look = &newLook;
}

void AlgorithmPicture::ShowAlgorithm(int number) {
    algorithm = number;
    setAccessibleName(AlgorithmName(number));
    update();
}

void AlgorithmPicture::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), AlgorithmPictureColours().paper);
    if (look && look->drawPicture) {
        look->drawPicture(painter, RectangleOf(rect()), algorithm);
    }
}

} // namespace tonewright
