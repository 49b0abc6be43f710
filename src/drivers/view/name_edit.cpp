// What goes into the name of a voice.
#include "drivers/view/name_edit.h"

#include "common/view/fonts.h"

namespace tonewright {
namespace {

constexpr char32_t FirstNotTyped = 128;
constexpr char32_t LastOfLatin1 = 0xFF;

bool IsTyped(char32_t character) {
    return character < FirstNotTyped;
}

bool IsPasted(char32_t character) {
    return character <= LastOfLatin1 && QChar::category(character) != QChar::Other_Control;
}

} // namespace

NameEdit::NameEdit(QWidget *parent) : FilteredEdit({.takes = IsPasted, .types = IsTyped}, parent) {
    setFont(FontOfHeight(QStringLiteral("TIMES NEW ROMAN"), 30, 700));
}

void NameEdit::SetLength(int characters) {
    setMaxLength(characters);
    updateGeometry();
}

// A whole name of wide letters.
QSize NameEdit::sizeHint() const {
    const QSize hint = FilteredEdit::minimumSizeHint();
    return {hint.width() + maxLength() * fontMetrics().horizontalAdvance(u'N'), hint.height()};
}

QSize NameEdit::minimumSizeHint() const {
    return sizeHint();
}

} // namespace tonewright
