// Control 102: the list box of the records of a catalogue, with its menu, its tip, and the editors
// that open over a field while the left button is held on it.
#pragma once

#include "common/view/list_box_view.h"
#include "database/database_window.h"

#include <QPoint>
#include <QTimer>

#include <functional>

namespace tonewright {

class FileTip;

class RecordListView : public ListBoxView {
public:
    // Both live longer than the view. `run`: what is chosen from the menu, and OK for a double
    // click.
    RecordListView(DatabaseWindow &state, std::function<void(int command)> run, QWidget *parent);

    // The right button was let go there: the menu opens if there is a row.
    void ReleaseRightButton(QPoint global);

protected:
    bool viewportEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void PaintRecord(const ListRowPainting &painting) const;
    void ShowMenu(int row, QRect beside);
    void ShowTip();
    void HideTip();
    void HoldOver();
    void EditFieldUnderCursor();
    void EndGesture();

    DatabaseWindow &state;
    const std::function<void(int command)> run;
    FileTip *tip;     // a child
    QPoint cursor;    // in the viewport, at the last press or move
    QTimer holdTimer; // runs while the left button is held
    QTimer tipTimer;  // runs while the mouse rests on a row
    bool editing = false;
};

} // namespace tonewright
