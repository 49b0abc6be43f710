// Shows a list box (common/list_box) and turns mouse and keys into what the list does. The rows are
// painted by their owner. It is an item view of the toolkit for those who ask for rows instead of
// looking at them (screen readers); layout, painting and gestures are our own, and cost the same
// for 32 rows as for 120,000.
#pragma once

#include "common/list_box.h"

#include <QAccessible>
#include <QListView>
#include <QTimer>

#include <functional>
#include <string>

namespace tonewright {

// A row to be painted: its ground is filled, the pen has the colour of its text, and nothing beside
// it can be painted on.
struct ListRowPainting {
    QPainter &painter;
    QRect area;
    int row = 0;
    bool selected = false;
};

// What a list box shows, and whom it tells. What is empty is not called.
struct ListBoxOwner {
    std::function<QString(int row)> name = {};  // what letters typed look for
    std::function<QString(int row)> words = {}; // what screen readers say
    std::function<void(const ListRowPainting &)> paint = {};
    // After a press or release of the left button, and each time the user selects a row.
    std::function<void()> touched = {};
    std::function<void(bool held)> hold = {}; // the left button was pressed on a row, or is let go
    std::function<void()> clickedAgain = {};  // pressed and released on the selected row
    // The left button was released on `to` after it was pressed on `from`; NoRow beside the rows.
    // Where nothing is dropped, the selection follows the held button instead.
    std::function<void(int from, int to)> drop = {};
    std::function<void(int row)> doubleClick = {};
    std::function<void(int row)> middlePress = {};
    // The right button was pressed, on a row or beside them, or the keyboard asks for the menu of
    // the selected row, which is then in sight. The menu stands below `beside`, in global
    // coordinates, or above it: the row, or the place of the mouse as an empty rectangle.
    std::function<void(int row, QRect beside)> menu = {};
    std::function<void()> scrolled = {}; // other rows than before may be in sight
};

// Where a menu of that size stands: at the place of the mouse; or below a row, else above it, from
// the row's middle on, so that the names of all rows stay in sight.
QPoint PlaceOfListMenu(QSize size, const QRect &beside);

class ListBoxView : public QListView {
public:
    // The box lives longer than the view, which is its observer while it lives.
    ListBoxView(ListBox &box, ListBoxOwner owner, QWidget *parent);
    ~ListBoxView() override;

    // Row under a point of the viewport; NoRow beside the rows.
    int RowAt(QPoint point) const;
    // Rectangle of a row in the viewport, also of one that is scrolled out of it.
    QRect RowRectangle(int row) const;
    // Height that shows whole rows only, at most `available` pixels.
    int HeightForWholeRows(int available) const;

    // What the toolkit asks of an item view.
    QModelIndex indexAt(const QPoint &point) const override;
    QRect visualRect(const QModelIndex &index) const override;
    void scrollTo(const QModelIndex &index, ScrollHint hint) override;
    void keyboardSearch(const QString &letters) override;
    void doItemsLayout() override {}

protected:
    int verticalOffset() const override;
    void updateGeometries() override {}
    void currentChanged(const QModelIndex &, const QModelIndex &) override {}
    void selectionChanged(const QItemSelection &selected, const QItemSelection &) override;
    void dataChanged(const QModelIndex &, const QModelIndex &, const QList<int> &) override {}

    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Follow(ListChange change);
    void FollowScrolling();
    void FollowSelection();
    void TellOfRow(QAccessible::Event kind, int row);
    void TellOfFocus();
    void SelectByUser(int row);
    int DragTarget() const;
    void SelectHeld();
    void EndPress();
    void TellMenuOfSelection();

    ListBox &box;
    const ListBoxOwner owner;
    bool following = false;   // the toolkit's selection is being set, not used
    bool regainFocus = false; // the list had the keyboard when it was disabled
    std::string typed;        // letters of a name, in quick succession
    qint64 lastLetter = 0;    // when the last of them came, in milliseconds
    ListDrag drag;
    QTimer edgeTimer; // scrolls while a drag rests above or below the rows
};

} // namespace tonewright
