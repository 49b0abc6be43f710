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

// Edits the field under the cursor, after the button was held on it; no command of the engine.
constexpr int CommandEditRecord = 112;

class RecordListView : public ListBoxView {
public:
    // Both live longer than the view. `run`: what is chosen from the menu, OK for a double click,
    // and the editing after a hold.
    RecordListView(DatabaseWindow &state, std::function<void(int command)> run, QWidget *parent);

    // Over the selected record, and bound to it. Those of texts and positions stay open behind the
    // call.
    void EditFieldUnderCursor();
    // Accepts the editor that is open, if one is.
    void AcceptEditor();

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
    void AcceptEditorLater();
    void EndGesture();

    DatabaseWindow &state;
    const std::function<void(int command)> run;
    FileTip *tip;          // a child
    QPoint cursor;         // in the viewport, at the last press or move
    QTimer holdTimer;      // runs while the left button is held
    QTimer tipTimer;       // runs while the mouse rests on a row
    int editedRow = NoRow; // over which an editor is open, or the box of its date
};

} // namespace tonewright
