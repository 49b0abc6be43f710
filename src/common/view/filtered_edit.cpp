// Refuses what is typed, and mends what is pasted.
#include "common/view/filtered_edit.h"

#include "common/desktop.h"

#include <QKeyEvent>
#include <QValidator>

#include <algorithm>
#include <utility>

namespace tonewright {
namespace {

// Sees each change of a text, whatever it comes from; what is typed has passed the filter before.
class Mend : public QValidator {
public:
    Mend(const TextFilter &filter, QLineEdit *edit) : QValidator(edit), filter(filter) {
        QObject::connect(edit, &QLineEdit::textChanged, this,
                         [this, edit] { former = edit->text(); });
    }

    State validate(QString &text, int &cursor) const override {
        if (filter.takesWhole.contains(text)) {
            return Acceptable;
        }
        const auto characters = text.toUcs4();
        const auto [begin, end] = NewPart(characters);
        const auto cursorAt = text.left(cursor).toUcs4().size();
        QString mended, front;
        for (qsizetype at = 0; at < characters.size(); ++at) {
            if (at == cursorAt) {
                front = mended;
            }
            const char32_t character = characters[at];
            const bool isKept = at < begin || at >= end || filter.takes(character);
            const char32_t written = isKept ? character : filter.replacement;
            if (written != 0) {
                mended += QString::fromUcs4(&written, 1);
            }
        }
        if (mended != text) {
            cursor = static_cast<int>(cursorAt < characters.size() ? front.size() : mended.size());
            text = mended;
            if (filter.replacement == 0) {
                Beep();
            }
        }
        return Acceptable;
    }

private:
    // What neither the beginning nor the end of the text has from before: from the first place up
    // to the second.
    std::pair<qsizetype, qsizetype> NewPart(const QList<uint> &characters) const {
        const auto before = former.toUcs4();
        const auto shorter = std::min(before.size(), characters.size());
        qsizetype begin = 0, behind = 0;
        while (begin < shorter && before[begin] == characters[begin]) {
            ++begin;
        }
        while (behind < shorter - begin &&
               before[before.size() - 1 - behind] == characters[characters.size() - 1 - behind]) {
            ++behind;
        }
        return {begin, characters.size() - behind};
    }

    const TextFilter &filter;
    QString former; // what stands in the line
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

void FilteredEdit::SetTextAsItIs(const QString &text) {
    const QValidator *judge = validator();
    setValidator(nullptr);
    setText(text);
    setValidator(judge);
}

bool FilteredEdit::MayBeTyped(const QString &text) const {
    const QList<uint> characters = text.toUcs4();
    return std::all_of(characters.begin(), characters.end(),
                       filter.types ? filter.types : filter.takes);
}

void FilteredEdit::keyPressEvent(QKeyEvent *event) {
    if (WritesText(*event) && !MayBeTyped(event->text())) {
        Beep();
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

void FilteredEdit::inputMethodEvent(QInputMethodEvent *event) {
    if (!MayBeTyped(event->commitString())) {
        Beep();
        event->setCommitString(QString());
    }
    QLineEdit::inputMethodEvent(event);
}

} // namespace tonewright
