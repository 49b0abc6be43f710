// The size of a line of text for a number.
#include "common/view/number_edit.h"

#include <QIntValidator>

namespace tonewright {
namespace {

constexpr const char *WidestNumber = "-000.00"; // "31.99" with room for what is typed meanwhile
constexpr int LettersOfToolkit = 17;            // "x", for which the toolkit makes room

// The toolkit's own takes a number that is too large, as long as it has no more digits.
class NumberLimit : public QIntValidator {
public:
    using QIntValidator::QIntValidator;
    State validate(QString &text, int &position) const override {
        return text.toInt() > top() ? Invalid : QIntValidator::validate(text, position);
    }
};

} // namespace

NumberEdit::NumberEdit(QWidget *parent) : QLineEdit(parent) {
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize NumberEdit::sizeHint() const {
    const QFontMetrics metrics(font());
    const QSize hint = QLineEdit::sizeHint();
    return {hint.width() - LettersOfToolkit * metrics.horizontalAdvance(u'x') +
                metrics.horizontalAdvance(WidestNumber),
            hint.height()};
}

QSize NumberEdit::minimumSizeHint() const {
    return sizeHint();
}

void TakeNumbersUpTo(QLineEdit *edit, int largest) {
    edit->setValidator(new NumberLimit(0, largest, edit)); // a child of the edit
}

} // namespace tonewright
