// The tip that tells of a row of a list while the cursor rests on it.
#pragma once

#include <QString>
#include <QWidget>

namespace tonewright {

// Hidden at first. The mouse passes through it.
class FileTip : public QWidget {
public:
    explicit FileTip(QWidget *list);

    // Shows a text of one line, which is centred, or of several, at a place of the cursor in pixels
    // of the list.
    void ShowAt(const QString &text, QPoint cursor);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace tonewright
