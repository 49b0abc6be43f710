// Painting, scrolling, selecting and dragging in the list of voices.
#include "shell/view/voice_list_view.h"

#include "common/settings.h"
#include "common/view/theme.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "shell/command_table.h"
#include "shell/list_state.h"
#include "shell/reorder.h"
#include "shell/voice_commands.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>
#include <QUrl>

#include <utility>

namespace tonewright {
namespace {

constexpr int EdgeScrollMilliseconds = 80;
constexpr int DragCursorNumber = 9001;
constexpr int DragCursorSize = 32;

const QCursor &DragCursor() {
    static const QCursor cursor(PictureOf(DragCursorNumber, {DragCursorSize, DragCursorSize}), 0,
                                0);
    return cursor;
}

} // namespace

VoiceListView::VoiceListView(QWidget *parent) : QAbstractScrollArea(parent) {
    setObjectName("control_170");
    setAccessibleName("Voices");
    setFrameShape(QFrame::Box);
    setLineWidth(1);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    viewport()->setAutoFillBackground(false);
    edgeTimer.setInterval(EdgeScrollMilliseconds);
    QObject::connect(&edgeTimer, &QTimer::timeout, this, [this] {
        if (QGuiApplication::mouseButtons() & Qt::LeftButton) {
            ScrollAtEdges(viewport()->mapFromGlobal(QCursor::pos()));
        } else {
            EndPress();
        }
    });
    verticalScrollBar()->installEventFilter(this);
    MainList.observer = [this](VoiceListChange change) { Follow(change); };
    FollowRows();
}

VoiceListView::~VoiceListView() {
    MainList.observer = nullptr;
}

int VoiceListView::RowAt(QPoint point) const {
    if (!viewport()->rect().contains(point)) {
        return NoRow;
    }
    const int row = MainList.topRow + point.y() / MainList.itemHeight;
    return row < ListCount(MainList) ? row : NoRow;
}

QRect VoiceListView::RowRectangle(int row) const {
    return {0, (row - MainList.topRow) * MainList.itemHeight, viewport()->width(),
            MainList.itemHeight};
}

int VoiceListView::HeightForWholeRows(int available) const {
    const int frame = 2 * frameWidth();
    const int rows = std::max(1, (available - frame) / MainList.itemHeight);
    return rows * MainList.itemHeight + frame;
}

void VoiceListView::Follow(VoiceListChange change) {
    switch (change) {
    case VoiceListChange::Voice:
        return;
    case VoiceListChange::State:
        // A widget that is disabled loses the keyboard; it comes back with the list.
        regainFocus = regainFocus || (!MainList.enabled && hasFocus());
        setEnabled(MainList.enabled);
        if (MainList.enabled && std::exchange(regainFocus, false)) {
            setFocus();
        }
        ListSetVisibleRows(MainList, viewport()->height() / MainList.itemHeight);
        break;
    case VoiceListChange::Items:
    case VoiceListChange::TopRow:
    case VoiceListChange::Selection:
        break;
    }
    FollowRows();
    if (MainList.redraw) {
        viewport()->update();
    }
}

void VoiceListView::FollowRows() {
    QScrollBar &bar = *verticalScrollBar();
    const QSignalBlocker blocker(bar);
    bar.setPageStep(std::max(1, MainList.visibleRows));
    bar.setRange(0, std::max(0, ListCount(MainList) - MainList.visibleRows));
    bar.setValue(MainList.topRow);
    bar.setEnabled(bar.maximum() > 0);
}

void VoiceListView::paintEvent(QPaintEvent *event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), Qt::white);
    if (!MainList.redraw) {
        return;
    }
    const int count = ListCount(MainList);
    for (int row = MainList.topRow; row < count; ++row) {
        const QRect rectangle = RowRectangle(row);
        if (rectangle.top() > event->rect().bottom()) {
            break;
        }
        if (!rectangle.intersects(event->rect())) {
            continue;
        }
        const bool selected = row == MainList.selection && MainList.enabled;
        const QPalette &colours = palette();
        painter.save();
        painter.setClipRect(rectangle);
        if (selected) {
            painter.fillRect(rectangle, colours.color(QPalette::Active, QPalette::Highlight));
        }
        painter.setPen(!MainList.enabled
                           ? colours.color(QPalette::Disabled, QPalette::Text)
                           : (selected ? colours.color(QPalette::Active, QPalette::HighlightedText)
                                       : QColor(Qt::black)));
        if (const VoiceObject *voice = ListVoice(MainList, row)) {
            DrawVoiceObject({.painter = &painter,
                             .rectangle = {rectangle.left(), rectangle.top(),
                                           rectangle.left() + rectangle.width(),
                                           rectangle.top() + rectangle.height()},
                             .itemIndex = row,
                             .selected = selected},
                            *voice, MainItemFonts);
        }
        painter.restore();
    }
}

void VoiceListView::resizeEvent(QResizeEvent *) {
    ListSetVisibleRows(MainList, viewport()->height() / MainList.itemHeight);
    FollowRows();
}

void VoiceListView::scrollContentsBy(int, int) {
    ListSetTopRow(MainList, verticalScrollBar()->value());
    viewport()->update();
}

void VoiceListView::SelectByUser(int row) {
    ListSelect(MainList, row);
    RefreshCopy();
}

void VoiceListView::mousePressEvent(QMouseEvent *event) {
    const int row = RowAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton) {
        EndPress(); // a release that went elsewhere
        RefreshCopy();
        if (row == NoRow) {
            return;
        }
        BeginPress(row);
        if (!pressedOnSelected) {
            SelectByUser(row);
        }
    } else if (event->button() == Qt::RightButton) {
        ShowContextMenu(row, event->globalPosition().toPoint());
    } else if (event->button() == Qt::MiddleButton && MiddleButtonAudition != 0 && row != NoRow) {
        MainListState.clickedIndex = row;
        PostCommand(CommandAudition);
    }
}

void VoiceListView::mouseMoveEvent(QMouseEvent *event) {
    if (pressedRow == NoRow) {
        return;
    }
    const QPoint point = event->position().toPoint();
    ScrollAtEdges(point);
    if (!RowRectangle(pressedRow).contains(point)) {
        dragging = true; // for good, also when the cursor comes back
    }
    if (dragging) {
        ShowDragCursor(point);
    }
}

void VoiceListView::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() != Qt::LeftButton || pressedRow == NoRow) {
        return;
    }
    const int row = RowAt(event->position().toPoint());
    const int from = pressedRow;
    const bool clickedSelection = pressedOnSelected && row == from;
    EndPress();
    if (clickedSelection) {
        RunCommand(CommandNothing);
    }
    DropVoiceAt(from, row);
    RefreshCopy();
}

void VoiceListView::mouseDoubleClickEvent(QMouseEvent *event) {
    if (event->button() == Qt::RightButton) {
        mousePressEvent(event);
        return;
    }
    if (event->button() != Qt::LeftButton) {
        return; // the first press of the middle button has been heard
    }
    if (RowAt(event->position().toPoint()) != NoRow) {
        RunUserCommand(CommandEdit);
    }
}

void VoiceListView::contextMenuEvent(QContextMenuEvent *event) {
    // The mouse opens the menu at the press of its button; this is the keyboard's way.
    if (event->reason() == QContextMenuEvent::Keyboard && MainList.selection != NoRow) {
        const QRect row = RowRectangle(MainList.selection);
        ShowContextMenu(MainList.selection, viewport()->mapToGlobal(row.center()));
    }
}

void VoiceListView::ShowContextMenu(int row, QPoint globalPosition) {
    if (ListCount(MainList) == 0) {
        return;
    }
    MainListState.clickedIndex = row;
    QMenu menu(this);
    for (const ContextEntry &entry : BuildContextMenu(row)) {
        if (entry.id == 0) {
            menu.addSeparator();
            continue;
        }
        QAction *action = menu.addAction(QString::fromStdString(entry.text).replace("&", "&&"));
        action->setData(entry.id);
        action->setEnabled(entry.enabled);
    }
    const QAction *chosen = nullptr;
    {
        const RunningMark running; // posted work does not start under an open menu
        chosen = menu.exec(globalPosition);
    }
    if (chosen) {
        RunCommand(chosen->data().toInt());
    }
}

void VoiceListView::ScrollAtEdges(QPoint point) {
    const int height = viewport()->height();
    const bool above = point.y() < 0;
    const bool below = point.y() >= height;
    if (pressedRow == NoRow || (!above && !below)) {
        edgeTimer.stop();
        return;
    }
    ListSetTopRow(MainList, MainList.topRow + (above ? -1 : 1));
    if (!edgeTimer.isActive()) {
        edgeTimer.start();
    }
}

void VoiceListView::ShowDragCursor(QPoint point) {
    viewport()->setCursor(viewport()->rect().contains(point) ? DragCursor()
                                                             : QCursor(Qt::ForbiddenCursor));
}

void VoiceListView::BeginPress(int row) {
    pressMark.emplace();
    pressedRow = row;
    pressedOnSelected = row == MainList.selection;
    dragging = false;
}

void VoiceListView::EndPress() {
    pressMark.reset();
    pressedRow = NoRow;
    pressedOnSelected = false;
    dragging = false;
    edgeTimer.stop();
    viewport()->unsetCursor();
}

bool VoiceListView::event(QEvent *event) {
    switch (event->type()) {
    case QEvent::EnabledChange:
    case QEvent::FocusOut:
    case QEvent::WindowBlocked:
    case QEvent::WindowDeactivate:
        EndPress(); // the release will not come here
        break;
    default:
        break;
    }
    return QAbstractScrollArea::event(event);
}

bool VoiceListView::eventFilter(QObject *watched, QEvent *event) {
    if (watched == verticalScrollBar() && event->type() == QEvent::Wheel) {
        wheelEvent(static_cast<QWheelEvent *>(event));
        return true;
    }
    return QAbstractScrollArea::eventFilter(watched, event);
}

void VoiceListView::keyPressEvent(QKeyEvent *event) {
    const int count = ListCount(MainList);
    if (count == 0) {
        event->ignore();
        return;
    }
    const int row = MainList.selection;
    const int page = std::max(1, MainList.visibleRows - 1);
    int target = row;
    switch (event->key()) {
    case Qt::Key_Up:
        target = row - 1;
        break;
    case Qt::Key_Down:
        target = row + 1;
        break;
    case Qt::Key_PageUp:
        target = row - page;
        break;
    case Qt::Key_PageDown:
        target = row + page;
        break;
    case Qt::Key_Home:
        target = 0;
        break;
    case Qt::Key_End:
        target = count - 1;
        break;
    default:
        if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) {
            event->ignore();
        } else {
            SelectByLetter(event->text());
        }
        return;
    }
    SelectByUser(std::clamp(target, 0, count - 1));
}

void VoiceListView::SelectByLetter(const QString &text) {
    if (text.isEmpty() || !text.front().isPrint()) {
        return;
    }
    const int count = ListCount(MainList);
    for (int step = 1; step <= count; ++step) {
        const int row = (std::max(MainList.selection, NoRow) + step) % count;
        const VoiceObject *voice = ListVoice(MainList, row);
        if (voice && QString::fromLatin1(VoiceObjectName(*voice))
                         .startsWith(text.front(), Qt::CaseInsensitive)) {
            SelectByUser(row);
            return;
        }
    }
}

void VoiceListView::wheelEvent(QWheelEvent *event) {
    const int delta = event->angleDelta().y();
    if (delta != 0) {
        ListSetTopRow(MainList, MainList.topRow + (delta > 0 ? -1 : 1));
    }
    event->accept();
}

void VoiceListView::dragEnterEvent(QDragEnterEvent *event) {
    if (event->mimeData()->hasUrls()) {
        event->acceptProposedAction();
    }
}

void VoiceListView::dragMoveEvent(QDragMoveEvent *event) {
    if (event->mimeData()->hasUrls()) {
        event->acceptProposedAction();
    }
}

void VoiceListView::dropEvent(QDropEvent *event) {
    std::vector<std::string> paths;
    for (const QUrl &url : event->mimeData()->urls()) {
        if (url.isLocalFile()) {
            paths.push_back(url.toLocalFile().toStdString());
        }
    }
    event->acceptProposedAction();
    // Queued, so that the file manager does not wait while a question stands.
    Post([paths = std::move(paths)] { DropFiles(paths); });
}

} // namespace tonewright
