// Paints records and turns the mouse into menu, tip and editors.
#include "database/view/record_list_view.h"

#include "common/settings.h"
#include "common/view/file_tip.h"
#include "common/view/text_line.h"
#include "database/view/field_editor.h"
#include "database/view/file_time_box.h"

#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>

#include <optional>

namespace tonewright {
namespace {

constexpr int RowPadding = 4; // pixels that a row is higher than its text
// Per cent of their usual width that letters of a date have: no column is as wide as the year would
// need otherwise.
constexpr int NarrowLetters = QFont::Condensed;

QString NameOfRow(const DatabaseWindow &state, int row) {
    const DatabaseRecord *record = ListRecord(state.records, row);
    const auto fields = record ? RecordFields(*record) : std::nullopt;
    return fields ? QString::fromLatin1(fields->name.data(), static_cast<int>(fields->name.size()))
                  : QString();
}

QString WordsOfRow(const DatabaseWindow &state, int row) {
    const DatabaseRecord *record = ListRecord(state.records, row);
    return record ? QString::fromStdString(RecordInWords(*record)) : QString();
}

// Numbers from 1.
QStringList Positions(int count) {
    QStringList texts;
    for (int position = 1; position <= count; ++position) {
        texts.append(QString::number(position));
    }
    return texts;
}

} // namespace

RecordListView::RecordListView(DatabaseWindow &state, std::function<void(int command)> runs,
                               QWidget *parent)
    : ListBoxView(state.records,
                  {.name = [&state](int row) { return NameOfRow(state, row); },
                   .words = [&state](int row) { return WordsOfRow(state, row); },
                   .paint = [this](const ListRowPainting &painting) { PaintRecord(painting); },
                   .touched =
                       [this] {
                           if (this->state.records.selection != editedRow) {
                               AcceptEditorLater();
                           }
                       },
                   .hold =
                       [this](bool held) {
                           if (!held) {
                               holdTimer.stop();
                           }
                       },
                   .doubleClick = [this](int) { run(CommandDatabaseOk); },
                   .menu = [this](int row, QRect beside) { ShowMenu(row, beside); },
                   .scrolled =
                       [this] {
                           HideTip();
                           AcceptEditorLater();
                       }},
                  parent),
      state(state), run(std::move(runs)), tip(new FileTip(viewport())) {
    setObjectName("control_102");
    setAccessibleName("Records");
    viewport()->setMouseTracking(true);
    ListSetItemHeight(state.records, fontMetrics().ascent() + fontMetrics().descent() + RowPadding);
    for (QTimer *timer : {&holdTimer, &tipTimer}) {
        timer->setSingleShot(true);
    }
    QObject::connect(&holdTimer, &QTimer::timeout, this, [this] { HoldOver(); });
    QObject::connect(&tipTimer, &QTimer::timeout, this, [this] { ShowTip(); });
}

void RecordListView::PaintRecord(const ListRowPainting &painting) const {
    const DatabaseRecord *record = ListRecord(state.records, painting.row);
    if (!record) {
        return;
    }
    const RecordTexts texts = TextsOfRecord(*record);
    QFont narrow = font();
    narrow.setStretch(NarrowLetters);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const RecordColumn &column = RecordColumns[i];
        const QRect cell(painting.area.left() + column.left, painting.area.top(),
                         column.right - column.left, painting.area.height());
        painting.painter.setFont(column.field == RecordField::Date ? narrow : font());
        DrawTextLine(painting.painter, cell, QString::fromStdString(texts[i]),
                     column.atTheRight ? Qt::AlignRight : Qt::AlignLeft);
    }
}

// ---- the menu

void RecordListView::ShowMenu(int row, QRect beside) {
    HideTip();
    QMenu menu(this);
    for (const DatabaseMenuRow &entry : DatabaseMenu(state, row)) {
        if (entry.command == 0) {
            menu.addSeparator();
            continue;
        }
        QAction *action = menu.addAction(QString::fromStdString(entry.text).replace("&", "&&"));
        action->setData(entry.command);
        action->setEnabled(entry.enabled);
        action->setCheckable(entry.checked);
        action->setChecked(entry.checked);
    }
    if (const QAction *chosen = menu.exec(PlaceOfListMenu(menu.sizeHint(), beside))) {
        run(chosen->data().toInt());
    }
}

void RecordListView::ReleaseRightButton(QPoint global) {
    const int row = RowAt(viewport()->mapFromGlobal(global));
    if (row != NoRow) {
        ShowMenu(row, QRect(global, QSize(0, 0)));
    }
}

// ---- the tip

void RecordListView::HideTip() {
    tipTimer.stop();
    tip->hide();
}

void RecordListView::ShowTip() {
    const DatabaseRecord *record = ListRecord(state.records, RowAt(cursor));
    const std::string text = record ? RecordTip(*record) : std::string();
    if (!text.empty()) {
        tip->ShowAt(QString::fromStdString(text), cursor);
    }
}

// ---- the hold

void RecordListView::HoldOver() {
    if (RowAt(cursor) == NoRow) {
        return;
    }
    HideTip();
    // Once the timer's event is over: a box may open.
    QMetaObject::invokeMethod(
        this, [this] { run(CommandEditRecord); }, Qt::QueuedConnection);
}

void RecordListView::AcceptEditor() {
    AcceptEditorOver(viewport());
}

// Once the list is done with what has happened to it: the edit sorts it.
void RecordListView::AcceptEditorLater() {
    if (editedRow != NoRow) {
        QMetaObject::invokeMethod(
            this, [this] { AcceptEditor(); }, Qt::QueuedConnection);
    }
}

void RecordListView::EditFieldUnderCursor() {
    const RecordField field = FieldUnder(state.records, {.x = cursor.x(), .y = cursor.y()},
                                         viewport()->width(), viewport()->height());
    const int row = state.records.selection;
    const DatabaseRecord *record = ListRecord(state.records, row);
    const auto fields = record ? RecordFields(*record) : std::nullopt;
    const auto column = std::ranges::find(RecordColumns, field, &RecordColumn::field);
    if (!fields || column == RecordColumns.end()) {
        EndGesture();
        return;
    }
    const QRect area = RowRectangle(row);
    const EditedCell cell = {viewport(),
                             QRect(area.left() + column->left, area.top(),
                                   column->hitRight - column->left, area.height()),
                             font(), column->title};
    editedRow = row;
    HideTip();
    switch (field) {
    case RecordField::Name:
    case RecordField::Source:
        EditTextOver(cell, std::string(field == RecordField::Name ? fields->name : fields->source),
                     [this, row, field](const std::optional<std::string> &text) {
                         if (text) {
                             AcceptRecordText(state, row, field, *text);
                         }
                         EndGesture();
                     });
        break;
    case RecordField::Position: {
        const int count = PositionsToChoose(state);
        const bool isListed = fields->position < static_cast<std::uint32_t>(count);
        ChooseOver(cell, Positions(count), isListed ? static_cast<int>(fields->position) : -1,
                   [this, row](std::optional<int> chosen) {
                       if (chosen) {
                           AcceptRecordPosition(state, row, *chosen);
                       }
                       EndGesture();
                   });
        break;
    }
    case RecordField::Date: {
        std::uint32_t seconds = fields->date;
        if (RunFileTimeBox(window(), FileTimeParts::Both, seconds)) {
            AcceptRecordDate(state, row, seconds);
        }
        EndGesture();
        break;
    }
    case RecordField::None:
        break;
    }
}

void RecordListView::EndGesture() {
    editedRow = NoRow;
    EndRecordGesture(state);
}

// ---- events

bool RecordListView::viewportEvent(QEvent *event) {
    switch (event->type()) {
    case QEvent::Leave:
    case QEvent::WindowBlocked:
    case QEvent::WindowDeactivate:
        HideTip();
        break;
    default:
        break;
    }
    return ListBoxView::viewportEvent(event);
}

void RecordListView::mousePressEvent(QMouseEvent *event) {
    HideTip();
    if (event->button() == Qt::RightButton) {
        return; // the menu opens at the release
    }
    cursor = event->position().toPoint();
    ListBoxView::mousePressEvent(event);
    if (event->button() == Qt::LeftButton) {
        holdTimer.start(TimerMilliseconds(DatabaseManFieldDelay));
    }
}

void RecordListView::mouseMoveEvent(QMouseEvent *event) {
    const QPoint point = event->position().toPoint();
    if (point != cursor) {
        HideTip();
    }
    cursor = point;
    if (FileTipShow && editedRow == NoRow && RowAt(point) != NoRow) {
        tipTimer.start(TimerMilliseconds(FileTipDelay));
    }
    ListBoxView::mouseMoveEvent(event);
}

void RecordListView::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() == Qt::RightButton) {
        ReleaseRightButton(event->globalPosition().toPoint());
        return;
    }
    if (event->button() == Qt::LeftButton) {
        holdTimer.stop();
    }
    ListBoxView::mouseReleaseEvent(event);
}

void RecordListView::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->ignore(); // the default button's
        return;
    }
    ListBoxView::keyPressEvent(event);
}

} // namespace tonewright
