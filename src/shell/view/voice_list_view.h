// Control 170: the list box of the voices, with what clicks, drags and dropped files do to them.
#pragma once

#include "common/view/list_box_view.h"
#include "shell/command_queue.h"
#include "shell/row_audition.h"

#include <QTimer>

#include <optional>

namespace tonewright {

class VoiceListView : public ListBoxView {
public:
    explicit VoiceListView(QWidget *parent);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // What is dragged from elsewhere: files, or voices of the archive.
    void AcceptDrop(QDropEvent &event);
    void ShowDropRow(int row);
    void ShowContextMenu(int row, QRect beside);
    void PlaySelectedRow();
    void EndPlayedRow();
    void EndStatus();

    // Keys and posted commands wait while the left button is held on a row.
    std::optional<RunningMark> pressMark;
    bool spaceIsHeld = false; // with SpaceAuditions
    PlayedRow playedRow;      // as long as it is
    int dropRow = NoRow;      // over which voices of the archive are dragged
    QTimer statusEnd;         // of what the end of a row has said
};

} // namespace tonewright
