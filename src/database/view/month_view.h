// A calendar of one month, in which a day is chosen with the mouse.
#pragma once

#include "database/calendar.h"

#include <QWidget>

#include <functional>

namespace tonewright {

// The weeks begin as the setting StartMonday says at each painting.
class MonthView : public QWidget {
public:
    explicit MonthView(QWidget *parent = nullptr);

    // Called with the day that the left button is pressed on, and again with the one that it is
    // released on.
    std::function<void(int day)> picked;

    // Year, month and day are valid; the day is marked.
    void Show(const CalendarTime &shown);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    CalendarAreas Areas() const;
    int FirstColumn() const;
    void Pick(const QMouseEvent &event);

    CalendarTime time;
};

} // namespace tonewright
