// Painting, scrolling, selecting and dragging in a list box.
#include "common/view/list_box_view.h"

#include "common/view/pictures.h"

#include <QAbstractListModel>
#include <QApplication>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>
#include <optional>
#include <utility>

namespace tonewright {
namespace {

constexpr int DragCursorNumber = 9001;
constexpr int DragCursorSize = 32;

const QCursor &DragCursor() {
    static const QCursor cursor(PictureOf(DragCursorNumber, {DragCursorSize, DragCursorSize}), 0,
                                0);
    return cursor;
}

// The rows as the toolkit counts and names them.
class RowModel : public QAbstractListModel {
public:
    RowModel(const ListBox &box, const ListBoxOwner &owner, QObject *parent)
        : QAbstractListModel(parent), box(box), owner(owner) {}

    int rowCount(const QModelIndex &parent) const override { return parent.isValid() ? 0 : rows; }
    QVariant data(const QModelIndex &index, int role) const override {
        const bool isAsked = role == Qt::DisplayRole || role == Qt::AccessibleTextRole;
        return isAsked && owner.words && ListHasRow(box, index.row()) ? owner.words(index.row())
                                                                      : QVariant();
    }
    void Follow() {
        beginResetModel();
        rows = box.count;
        endResetModel();
    }

private:
    const ListBox &box;
    const ListBoxOwner &owner;
    int rows = 0;
};

qint64 NowInMilliseconds() {
    static const QElapsedTimer timer = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    return timer.elapsed();
}

std::optional<ListKey> ListKeyOf(int key) {
    switch (key) {
    case Qt::Key_Up:
        return ListKey::Up;
    case Qt::Key_Down:
        return ListKey::Down;
    case Qt::Key_PageUp:
        return ListKey::PageUp;
    case Qt::Key_PageDown:
        return ListKey::PageDown;
    case Qt::Key_Home:
        return ListKey::Home;
    case Qt::Key_End:
        return ListKey::End;
    default:
        return std::nullopt;
    }
}

// A line across the view with an arrow head at either end, white around black, so that it shows on
// any row; `y`: the edge between two rows, which it covers half and half, but it stays in the view.
void DrawDropLine(QPainter &painter, const QRect &view, int y) {
    constexpr int Weight = 2, Halo = 1, Head = 7;
    const int middle = std::clamp(y, Weight / 2, view.height() - Weight / 2);
    QPainterPath line;
    line.addRect(0, middle - Weight / 2, view.width(), Weight);
    QPainterPath heads;
    for (const int side : {1, -1}) {
        const int left = side > 0 ? 0 : view.width();
        heads.addPolygon(
            QPolygonF({QPointF(left, middle - Head), QPointF(left + side * Head, middle),
                       QPointF(left, middle + Head)}));
        heads.closeSubpath();
    }
    const QPainterPath shape = line.united(heads);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(shape, QPen(Qt::white, 2 * Halo));
    painter.fillPath(shape, Qt::black);
}

template <typename Function, typename... Arguments>
void Tell(const Function &function, Arguments &&...arguments) {
    if (function) {
        function(std::forward<Arguments>(arguments)...);
    }
}

} // namespace

QPoint PlaceOfListMenu(QSize size, const QRect &beside) {
    const QScreen *screen = QGuiApplication::screenAt(beside.topLeft());
    const bool fits = !screen || beside.isEmpty() ||
                      beside.bottom() + size.height() <= screen->availableGeometry().bottom();
    return {beside.left() + beside.width() / 2,
            fits ? beside.top() + beside.height() : beside.top() - size.height()};
}

ListBoxView::ListBoxView(ListBox &shown, ListBoxOwner shownOwner, QWidget *parent)
    : QListView(parent), box(shown), owner(std::move(shownOwner)) {
    setFrameShape(QFrame::Box);
    setLineWidth(1);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setFocusPolicy(Qt::StrongFocus);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setAttribute(Qt::WA_InputMethodEnabled, false); // letters select rows, nothing is written
    viewport()->setAutoFillBackground(false);
    setModel(new RowModel(box, owner, this));
    edgeTimer.setTimerType(Qt::PreciseTimer);
    edgeTimer.setInterval(ListEdgeScrollMilliseconds);
    QObject::connect(&edgeTimer, &QTimer::timeout, this, [this] {
        if (QGuiApplication::mouseButtons() & Qt::LeftButton) {
            ListDragScroll(box, drag, viewport()->height());
            SelectHeld();
        } else {
            EndPress();
        }
    });
    verticalScrollBar()->installEventFilter(this);
    box.observer = [this](ListChange change) {
        Follow(change);
        if (change == ListChange::TopRow || change == ListChange::Items) {
            Tell(owner.scrolled);
        }
    };
    Follow(ListChange::Items);
}

ListBoxView::~ListBoxView() {
    box.observer = nullptr;
}

int ListBoxView::RowAt(QPoint point) const {
    return ListRowAt(box, {.x = point.x(), .y = point.y()}, viewport()->width(),
                     viewport()->height());
}

QRect ListBoxView::RowRectangle(int row) const {
    const Rectangle area = ListRowRectangle(box, row, viewport()->width());
    return {area.left, area.top, area.right - area.left, area.bottom - area.top};
}

int ListBoxView::HeightForWholeRows(int available) const {
    const int frame = 2 * frameWidth();
    const int rows = std::max(1, (available - frame) / box.itemHeight);
    return rows * box.itemHeight + frame;
}

QModelIndex ListBoxView::indexAt(const QPoint &point) const {
    return model()->index(RowAt(point), 0);
}

QRect ListBoxView::visualRect(const QModelIndex &index) const {
    return index.isValid() ? RowRectangle(index.row()) : QRect();
}

void ListBoxView::scrollTo(const QModelIndex &index, ScrollHint) {
    ListShowRow(box, index.row());
}

int ListBoxView::verticalOffset() const {
    return box.topRow * box.itemHeight;
}

void ListBoxView::Follow(ListChange change) {
    switch (change) {
    case ListChange::Item:
        if (box.redraw) { // while the list is filled, nobody asks for what it was
            TellOfRow(QAccessible::NameChanged, box.toldRow);
        }
        return;
    case ListChange::State:
        // A widget that is disabled loses the keyboard; it comes back with the list.
        regainFocus = regainFocus || (!box.enabled && hasFocus());
        setEnabled(box.enabled);
        if (box.enabled && std::exchange(regainFocus, false)) {
            setFocus();
        }
        ListSetVisibleRows(box, viewport()->height() / box.itemHeight);
        break;
    case ListChange::Items:
        static_cast<RowModel *>(model())->Follow();
        FollowSelection();
        break;
    case ListChange::Selection:
        FollowSelection();
        break;
    case ListChange::TopRow:
        break;
    }
    FollowScrolling();
    if (box.redraw) {
        viewport()->update();
    }
}

void ListBoxView::FollowScrolling() {
    QScrollBar &bar = *verticalScrollBar();
    const QSignalBlocker blocker(bar);
    bar.setPageStep(std::max(1, box.visibleRows));
    bar.setRange(0, std::max(0, ListCount(box) - box.visibleRows));
    bar.setValue(box.topRow);
    bar.setEnabled(bar.maximum() > 0);
}

void ListBoxView::FollowSelection() {
    following = true;
    const int former = currentIndex().row();
    const QModelIndex index = model()->index(box.selection, 0); // not a valid one for NoRow
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    following = false;
    if (former != box.selection) {
        TellOfRow(QAccessible::SelectionRemove, former);
    }
    TellOfRow(QAccessible::Selection, box.selection);
    TellOfFocus();
}

// To screen readers.
void ListBoxView::TellOfRow(QAccessible::Event kind, int row) {
    if (QAccessible::isActive() && ListHasRow(box, row)) {
        QAccessibleEvent event(this, kind);
        event.setChild(row);
        QAccessible::updateAccessibility(&event);
    }
}

void ListBoxView::TellOfFocus() {
    if (hasFocus()) {
        TellOfRow(QAccessible::Focus, box.selection);
    }
}

void ListBoxView::selectionChanged(const QItemSelection &selected, const QItemSelection &) {
    if (following) {
        return;
    }
    // Others than us select a row on the user's behalf; none takes the selection away.
    if (selected.isEmpty()) {
        FollowSelection();
    } else {
        SelectByUser(selected.indexes().constFirst().row());
    }
}

void ListBoxView::paintEvent(QPaintEvent *event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), Qt::white);
    if (!box.redraw) {
        return;
    }
    const int count = ListCount(box);
    for (int row = box.topRow; row < count; ++row) {
        const QRect area = RowRectangle(row);
        if (area.top() > event->rect().bottom()) {
            break;
        }
        if (!area.intersects(event->rect())) {
            continue;
        }
        // While the list is disabled the selected row has the ground and the text of any other, but
        // its owner still paints it as selected.
        const bool selected = row == box.selection;
        const bool highlighted = selected && box.enabled;
        const QPalette &colours = palette();
        painter.save();
        painter.setClipRect(area);
        if (highlighted) {
            painter.fillRect(area, colours.color(QPalette::Active, QPalette::Highlight));
        }
        painter.setPen(
            !box.enabled ? colours.color(QPalette::Disabled, QPalette::Text)
                         : (highlighted ? colours.color(QPalette::Active, QPalette::HighlightedText)
                                        : QColor(Qt::black)));
        Tell(owner.paint,
             ListRowPainting{.painter = painter, .area = area, .row = row, .selected = selected});
        painter.restore();
    }
    const int target = DragTarget();
    if (target != NoRow) {
        DrawDropLine(painter, viewport()->rect(), RowRectangle(target).top());
    }
}

int ListBoxView::DragTarget() const {
    return owner.drop ? ListDragTarget(box, drag, viewport()->width(), viewport()->height())
                      : NoRow;
}

void ListBoxView::resizeEvent(QResizeEvent *) {
    ListSetVisibleRows(box, viewport()->height() / box.itemHeight);
    FollowScrolling();
}

void ListBoxView::scrollContentsBy(int, int) {
    ListSetTopRow(box, verticalScrollBar()->value());
    viewport()->update();
}

void ListBoxView::SelectByUser(int row) {
    ListSelect(box, row);
    Tell(owner.touched);
}

void ListBoxView::mousePressEvent(QMouseEvent *event) {
    const int row = RowAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton) {
        EndPress(); // a release that went elsewhere
        Tell(owner.touched);
        if (row == NoRow) {
            return;
        }
        ListDragPress(box, drag, row);
        Tell(owner.hold, true);
        if (!drag.onSelected) {
            SelectByUser(row);
        }
    } else if (event->button() == Qt::RightButton) {
        Tell(owner.menu, row, QRect(event->globalPosition().toPoint(), QSize(0, 0)));
    } else if (event->button() == Qt::MiddleButton && row != NoRow) {
        Tell(owner.middlePress, row);
    }
}

void ListBoxView::mouseMoveEvent(QMouseEvent *event) {
    const QPoint point = event->position().toPoint();
    const int formerTarget = DragTarget();
    ListDragMove(box, drag, {.x = point.x(), .y = point.y()}, viewport()->width());
    if (DragTarget() != formerTarget) {
        viewport()->update();
    }
    if (!ListDragAtEdge(drag, viewport()->height())) {
        edgeTimer.stop();
    } else if (!edgeTimer.isActive()) {
        edgeTimer.start();
    }
    SelectHeld();
    if (drag.begun && owner.drop) {
        viewport()->setCursor(viewport()->rect().contains(point) ? DragCursor()
                                                                 : QCursor(Qt::ForbiddenCursor));
    }
}

// Where no row is dragged: the row below the held button, or the last whole one on its side.
void ListBoxView::SelectHeld() {
    if (owner.drop || !drag.begun) {
        return;
    }
    const int lowest = box.topRow, highest = box.topRow + std::max(1, box.visibleRows) - 1;
    const int y = drag.cursor.y;
    const int row = y < 0                       ? lowest
                    : y >= viewport()->height() ? std::min(highest, ListCount(box) - 1)
                                                : RowAt({0, y});
    if (row != NoRow && row != box.selection) {
        SelectByUser(row);
    }
}

void ListBoxView::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() != Qt::LeftButton || drag.row == NoRow) {
        return;
    }
    const int to = RowAt(event->position().toPoint());
    const ListDrag ended = drag;
    EndPress();
    if (ended.onSelected && to == ended.row) {
        Tell(owner.clickedAgain);
    }
    Tell(owner.drop, ended.row, to);
    Tell(owner.touched);
}

void ListBoxView::mouseDoubleClickEvent(QMouseEvent *event) {
    if (event->button() == Qt::RightButton) {
        mousePressEvent(event);
        return;
    }
    if (event->button() != Qt::LeftButton) {
        return; // the first press of the middle button has been heard
    }
    const int row = RowAt(event->position().toPoint());
    if (row != NoRow) {
        Tell(owner.doubleClick, row);
    }
}

void ListBoxView::contextMenuEvent(QContextMenuEvent *event) {
    // The mouse opens the menu at the press of its button; this is the menu key.
    if (event->reason() == QContextMenuEvent::Keyboard) {
        TellMenuOfSelection();
    }
}

void ListBoxView::TellMenuOfSelection() {
    if (box.selection == NoRow) {
        return;
    }
    ListShowRow(box, box.selection);
    const QRect area = RowRectangle(box.selection);
    Tell(owner.menu, box.selection, QRect(viewport()->mapToGlobal(area.topLeft()), area.size()));
}

void ListBoxView::wheelEvent(QWheelEvent *event) {
    ListScrollByWheel(box, event->angleDelta().y());
    event->accept();
}

void ListBoxView::EndPress() {
    Tell(owner.hold, false);
    if (std::exchange(drag, {}).begun) {
        viewport()->update();
    }
    edgeTimer.stop();
    viewport()->unsetCursor();
}

bool ListBoxView::event(QEvent *event) {
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
    return QListView::event(event);
}

bool ListBoxView::eventFilter(QObject *watched, QEvent *event) {
    if (watched == verticalScrollBar() && event->type() == QEvent::Wheel) {
        wheelEvent(static_cast<QWheelEvent *>(event));
        return true;
    }
    return QListView::eventFilter(watched, event);
}

// The toolkit's own would make a row current, and repaint, because the keyboard comes or goes.
void ListBoxView::focusInEvent(QFocusEvent *event) {
    QAbstractScrollArea::focusInEvent(event);
    // Behind the toolkit's own word, that the list as a whole has the keyboard.
    QMetaObject::invokeMethod(
        this, [this] { TellOfFocus(); }, Qt::QueuedConnection);
}

void ListBoxView::focusOutEvent(QFocusEvent *event) {
    QAbstractScrollArea::focusOutEvent(event);
}

void ListBoxView::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Escape) {
        if (drag.row == NoRow) {
            event->ignore();
        }
        EndPress();
        return;
    }
    if (ListCount(box) == 0) {
        event->ignore();
        return;
    }
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        TellMenuOfSelection(); // not every platform takes it for the menu key
    } else if (const auto key = ListKeyOf(event->key())) {
        SelectByUser(ListRowOfKey(box, *key));
    } else if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) {
        event->ignore();
    } else {
        keyboardSearch(event->text());
    }
}

void ListBoxView::keyboardSearch(const QString &letters) {
    const qint64 now = NowInMilliseconds();
    if (now - std::exchange(lastLetter, now) > QApplication::keyboardInputInterval()) {
        typed.clear();
    }
    const auto beginsWith = [this](int row, const std::string &text) {
        return owner.name &&
               owner.name(row).startsWith(QString::fromStdString(text), Qt::CaseInsensitive);
    };
    for (const QChar letter : letters) {
        if (!letter.isPrint()) {
            return;
        }
        const int row = ListRowOfLetter(box, typed, QString(letter).toStdString(), beginsWith);
        if (row != NoRow) {
            SelectByUser(row);
        }
    }
}

} // namespace tonewright
