// A line of text that takes some characters only.
#pragma once

#include <QLineEdit>
#include <QStringList>

#include <functional>

namespace tonewright {

// What may be written into a line of text.
struct TextFilter {
    std::function<bool(char32_t character)> takes;
    char32_t replacement =
        0; // of each other one that is pasted; 0: none, it is left out with a beep
    QStringList takesWhole = {}; // texts that may stand whatever their characters
    std::function<bool(char32_t character)> types = {}; // what may be typed; empty: what it takes
};

// A character that the filter does not take cannot be typed; the attempt beeps. A text that is set
// from outside obeys it too. What stands in the line is not judged again while the line is edited.
class FilteredEdit : public QLineEdit {
public:
    explicit FilteredEdit(TextFilter filter, QWidget *parent = nullptr);

    // Sets a text that the filter does not judge.
    void SetTextAsItIs(const QString &text);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    bool MayBeTyped(const QString &text) const;

    const TextFilter filter;
};

} // namespace tonewright
