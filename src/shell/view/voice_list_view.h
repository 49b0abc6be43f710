// Control 170: shows the voice list and turns mouse and keys into what the list does.
#pragma once

#include "core/voice_list.h"
#include "shell/command_queue.h"

#include <QAbstractScrollArea>
#include <QTimer>

#include <optional>

namespace tonewright {

class VoiceListView : public QAbstractScrollArea {
public:
    explicit VoiceListView(QWidget *parent);
    ~VoiceListView() override;

    // Row under a point of the viewport; NoRow beside the rows.
    int RowAt(QPoint point) const;
    // Rectangle of a row in the viewport, also of one that is scrolled out of it.
    QRect RowRectangle(int row) const;
    // Height that shows whole rows only, at most `available` pixels.
    int HeightForWholeRows(int available) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Follow(VoiceListChange change);
    void FollowRows();
    void SelectByUser(int row);
    void SelectByLetter(const QString &text);
    void ScrollAtEdges(QPoint point);
    void ShowDragCursor(QPoint point);
    void ShowContextMenu(int row, QPoint globalPosition);
    void BeginPress(int row);
    void EndPress();

    bool regainFocus = false; // the list had the keyboard when it was disabled
    // Keys and posted commands wait while the left button is held on a row.
    std::optional<RunningMark> pressMark;
    int pressedRow = NoRow; // row of the left button, while it is held
    bool pressedOnSelected = false;
    bool dragging = false;
    QTimer edgeTimer; // scrolls on while a drag rests above or below the rows
};

} // namespace tonewright
