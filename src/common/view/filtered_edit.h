// A line of text that takes some characters only.
#pragma once

#include <QLineEdit>

#include <functional>

namespace tonewright {

// What may be written into a line of text.
struct TextFilter {
    std::function<bool(char32_t character)> takes;
    char32_t replacement =
        0; // of each other one that is pasted; 0: none, it is left out with a beep
};

// A character that the filter does not take cannot be typed; the attempt beeps. The text is set
// after the filter's edit is made, and obeys it too.
class FilteredEdit : public QLineEdit {
public:
    explicit FilteredEdit(TextFilter filter, QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    bool TakesAll(const QString &text) const;

    const TextFilter filter;
};

} // namespace tonewright
