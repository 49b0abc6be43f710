// Paints the items of the list of button styles.
#include "shell/view/soft_button_list.h"

#include "common/view/soft_button.h"

#include <QPainter>
#include <QStyledItemDelegate>
#include <QStyleOptionComboBox>

#include <algorithm>

namespace tonewright {
namespace {

constexpr int ItemHeight = 32;    // pixels
constexpr int SampleWidth = 132;  // at least
constexpr int SampleMargin = 3;   // between a sample and its item's edge
constexpr int CaptionMargin = 16; // beside the caption inside the sample

void DrawSample(QPainter &painter, const QRect &item, const QModelIndex &index) {
    DrawSoftButtonSample(
        painter, item.adjusted(2 * SampleMargin, SampleMargin, -2 * SampleMargin, -SampleMargin),
        static_cast<std::uint32_t>(index.row()), index.data().toString());
}

class SampleDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override {
        const QSize text = QStyledItemDelegate::sizeHint(option, index);
        return {text.width(), std::max(ItemHeight, text.height())};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override {
        const bool selected = option.state & QStyle::State_Selected;
        painter->fillRect(option.rect,
                          option.palette.brush(selected ? QPalette::Highlight : QPalette::Base));
        DrawSample(*painter, option.rect, index);
    }
};

} // namespace

SoftButtonList::SoftButtonList(QWidget *parent) : QComboBox(parent) {
    setItemDelegate(new SampleDelegate(this));
}

QSize SoftButtonList::sizeHint() const {
    int width = SampleWidth;
    for (int index = 0; index < count(); ++index) {
        width = std::max(width, fontMetrics().horizontalAdvance(itemText(index)) +
                                    2 * (CaptionMargin + 2 * SampleMargin));
    }
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QSize item(width, std::max(ItemHeight, fontMetrics().height() + 4 * SampleMargin));
    return style()->sizeFromContents(QStyle::CT_ComboBox, &option, item, this);
}

QSize SoftButtonList::minimumSizeHint() const {
    return sizeHint();
}

void SoftButtonList::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    style()->drawComplexControl(QStyle::CC_ComboBox, &option, &painter, this);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    if (currentIndex() >= 0) {
        DrawSample(painter, field, model()->index(currentIndex(), modelColumn(), rootModelIndex()));
    }
}

} // namespace tonewright
