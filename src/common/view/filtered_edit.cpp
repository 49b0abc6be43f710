// Refuses what is typed, and mends what is pasted.
#include "common/view/filtered_edit.h"

#include "common/desktop.h"

#include <QKeyEvent>
#include <QValidator>

namespace tonewright {
namespace {

// Sees each change of a text, whatever it comes from; what is typed has passed the filter before.
class Mend : public QValidator {
public:
    Mend(const TextFilter &filter, QObject *parent) : QValidator(parent), filter(filter) {}

    State validate(QString &text, int &cursor) const override {
        const QString front = Mended(text.left(cursor));
        const QString mended = front + Mended(text.mid(cursor));
        if (mended != text) {
            text = mended;
            cursor = static_cast<int>(front.size());
            if (filter.replacement == 0) {
                Beep();
            }
        }
        return Acceptable;
    }

private:
    QString Mended(const QString &text) const {
        QString mended;
        for (const char32_t character : text.toUcs4()) {
            const char32_t kept = filter.takes(character) ? character : filter.replacement;
            if (kept != 0) {
                mended += QString::fromUcs4(&kept, 1);
            }
        }
        return mended;
    }

    const TextFilter &filter;
};

// Keys that write nothing have a text too: a control character.
bool WritesText(const QKeyEvent &event) {
    const bool isShortcut = event.modifiers().testFlag(Qt::ControlModifier) &&
                            !event.modifiers().testFlag(Qt::AltModifier);
    return !isShortcut && !event.text().isEmpty() && event.text().at(0) >= u' ' &&
           event.text().at(0) != u'\x7F';
}

} // namespace

FilteredEdit::FilteredEdit(TextFilter rule, QWidget *parent)
    : QLineEdit(parent), filter(std::move(rule)) {
    setValidator(new Mend(filter, this));
}

bool FilteredEdit::TakesAll(const QString &text) const {
    const QList<uint> characters = text.toUcs4();
    return std::all_of(characters.begin(), characters.end(), filter.takes);
}

void FilteredEdit::keyPressEvent(QKeyEvent *event) {
    if (WritesText(*event) && !TakesAll(event->text())) {
        Beep();
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

void FilteredEdit::inputMethodEvent(QInputMethodEvent *event) {
    if (!TakesAll(event->commitString())) {
        Beep();
        event->setCommitString(QString());
    }
    QLineEdit::inputMethodEvent(event);
}

} // namespace tonewright
