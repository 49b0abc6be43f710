// Rows of the archive and how they are painted.
#include "extras/view/archive_table.h"

#include "common/text.h"
#include "common/view/fonts.h"
#include "drivers/dx7/view/algorithm_view.h"
#include "drivers/reface_dx/view/algorithm_view.h"
#include "extras/voice_parcel.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QHeaderView>
#include <QMimeData>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>
#include <limits>
#include <utility>

namespace tonewright {
namespace {

// Pixels.
constexpr int RowHeight = 40;
constexpr int CellInset = 4;    // at the left and right of a cell
constexpr int NumberInset = 10; // at the right of a number
constexpr int PictureInset = 3; // above and below the picture of an algorithm
constexpr int LoopRoom = 2;     // around it
constexpr int PictureWidth = 116;
constexpr int NumberWidth = 26;  // of an algorithm
constexpr int NameHeight = 18;   // of the font of names
constexpr int FolderHeight = 13; // of the font of folders
constexpr int FileWidth = 260;

// How many selected voices are kept when other rows are shown.
constexpr std::size_t MostKept = 100;

struct ColumnRow {
    ArchiveColumn column;
    const char *title;
    Qt::Alignment alignment;
    const char *widest; // text for which there is room
};
constexpr ColumnRow Columns[] = {
    {ArchiveColumn::Name, "Name", Qt::AlignLeft, "MMMMMMMMM"},
    {ArchiveColumn::Instrument, "Instrument", Qt::AlignLeft, "Instrument "},
    {ArchiveColumn::Algorithm, "Algorithm", Qt::AlignLeft, ""},
    {ArchiveColumn::Times, "Found", Qt::AlignRight, "Found "},
    {ArchiveColumn::File, "File", Qt::AlignLeft, ""},
    {ArchiveColumn::Place, "Place", Qt::AlignRight, "10,000 "},
};

const ColumnRow &RowOf(ArchiveColumn column) {
    return *std::ranges::find(Columns, column, &ColumnRow::column);
}

template <typename Function, typename... Arguments>
void Tell(const Function &function, Arguments &&...arguments) {
    if (function) {
        function(std::forward<Arguments>(arguments)...);
    }
}

QString Text(const std::string &utf8) {
    return QString::fromStdString(utf8);
}

void DrawAlgorithm(QPainter &painter, const QRect &area, const ArchiveVoiceInfo &voice,
                   const QColor &ink, const QColor &paper) {
    const Rectangle place = {.left = area.left(),
                             .top = area.top(),
                             .right = area.left() + area.width(),
                             .bottom = area.top() + area.height()};
    const int algorithm = voice.algorithm - 1;
    if (voice.family == ArchiveFamilyReface) {
        DrawRefaceAlgorithmSmooth(painter, place, algorithm, ink, paper, 1, false);
    } else {
        DrawKeptDx7Algorithm(painter, place, algorithm, ink, paper, 1, 0);
    }
}

// Name and picture as in the main list, a file with its folder below it.
class CellPainter : public QStyledItemDelegate {
public:
    CellPainter(const ArchiveRows &rows, const ArchiveTableOwner &owner, QObject *parent)
        : QStyledItemDelegate(parent), rows(rows), owner(owner) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &given,
               const QModelIndex &cell) const override {
        const std::optional<ArchiveHit> hit = rows.HitAt(cell.row());
        if (!hit) {
            return;
        }
        QStyleOptionViewItem option = given;
        initStyleOption(&option, cell);
        const bool selected = option.state & QStyle::State_Selected;
        const QColor paper = option.palette.color(
            selected ? QPalette::Highlight
                     : (option.features & QStyleOptionViewItem::Alternate ? QPalette::AlternateBase
                                                                          : QPalette::Base));
        const QColor ink =
            option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
        painter->save();
        painter->setClipRect(option.rect);
        painter->fillRect(option.rect, paper);
        painter->setPen(ink);
        const bool isNumber =
            RowOf(rows.ColumnAt(cell.column())).alignment.testFlag(Qt::AlignRight);
        const QRect area =
            option.rect.adjusted(CellInset, 0, isNumber ? -NumberInset : -CellInset, 0);
        switch (rows.ColumnAt(cell.column())) {
        case ArchiveColumn::Name:
            painter->setFont(FontOfHeight("Arial", NameHeight, 500));
            WriteLine(*painter, area, Qt::AlignLeft, Qt::ElideRight, option.text);
            break;
        case ArchiveColumn::Algorithm:
            PaintAlgorithm(*painter, area, VoiceInfo(*rows.Index(), hit->voice), option.text, ink,
                           paper);
            break;
        case ArchiveColumn::File:
            PaintFile(*painter, area, PlaceInfo(*rows.Index(), hit->place).path, ink, paper);
            break;
        default:
            WriteLine(*painter, area, RowOf(rows.ColumnAt(cell.column())).alignment, Qt::ElideRight,
                      option.text);
        }
        if (option.state & QStyle::State_HasFocus && cell.column() == 0) {
            painter->setClipping(false);
            QStyleOptionFocusRect focus;
            focus.QStyleOption::operator=(option);
            focus.rect = option.rect.adjusted(1, 1, -1, -1);
            focus.backgroundColor = paper;
            QApplication::style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter,
                                                 option.widget);
        }
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override {
        return {0, RowHeight};
    }

private:
    static void WriteLine(QPainter &painter, const QRect &area, Qt::Alignment alignment,
                          Qt::TextElideMode elide, const QString &text) {
        painter.drawText(area, int(alignment | Qt::AlignVCenter) | Qt::TextSingleLine,
                         painter.fontMetrics().elidedText(text, elide, area.width()));
    }

    static void PaintAlgorithm(QPainter &painter, const QRect &area, const ArchiveVoiceInfo &voice,
                               const QString &number, const QColor &ink, const QColor &paper) {
        WriteLine(painter, {area.left(), area.top(), NumberWidth - CellInset, area.height()},
                  Qt::AlignRight, Qt::ElideNone, number);
        const QRect picture(area.left() + NumberWidth, area.top() + PictureInset,
                            std::min(PictureWidth, area.width() - NumberWidth),
                            area.height() - 2 * PictureInset);
        if (picture.width() > 0) {
            // Loops may leave the picture by a little.
            painter.setClipRect(picture.adjusted(-LoopRoom, -LoopRoom, LoopRoom, LoopRoom),
                                Qt::IntersectClip);
            DrawAlgorithm(painter, picture, voice, ink, paper);
        }
    }

    // Above: the name; below, smaller and paler: the folder.
    void PaintFile(QPainter &painter, const QRect &area, const std::string &path, const QColor &ink,
                   const QColor &paper) const {
        const int middle = area.top() + area.height() * 11 / 20;
        const QString name = Text(FileNameOfPath(path.c_str()));
        WriteLine(painter, {area.left(), area.top() + 1, area.width(), middle - area.top() - 1},
                  Qt::AlignLeft, Qt::ElideMiddle, name);
        painter.setFont(FontOfHeight("Arial", FolderHeight));
        const auto mixed = [](int one, int other) { return (2 * one + other) / 3; };
        painter.setPen(QColor(mixed(ink.red(), paper.red()), mixed(ink.green(), paper.green()),
                              mixed(ink.blue(), paper.blue())));
        WriteLine(painter, {area.left(), middle, area.width(), area.bottom() - middle},
                  Qt::AlignLeft, Qt::ElideMiddle, Text(owner.folder(path)));
    }

    const ArchiveRows &rows;
    const ArchiveTableOwner &owner;
};

} // namespace

QString PlainToolTip(const QString &text) {
    return "<span>" + text.toHtmlEscaped() + "</span>";
}

ArchiveRows::ArchiveRows(std::span<const ArchiveColumn> columns, QObject *parent)
    : QAbstractTableModel(parent), columns(columns) {}

void ArchiveRows::Show(std::shared_ptr<const ArchiveIndex> shown, ArchiveHits shownHits) {
    beginResetModel();
    archive = std::move(shown);
    hits = std::move(shownHits);
    rows = hits && archive ? static_cast<int>(std::min<std::size_t>(
                                 hits->size(), std::numeric_limits<int>::max() / RowHeight))
                           : 0;
    endResetModel();
}

std::optional<ArchiveHit> ArchiveRows::HitAt(int row) const {
    if (row < 0 || row >= rows) {
        return std::nullopt;
    }
    return (*hits)[static_cast<std::size_t>(row)];
}

int ArchiveRows::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : rows;
}

int ArchiveRows::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns.size());
}

QVariant ArchiveRows::data(const QModelIndex &cell, int role) const {
    const std::optional<ArchiveHit> hit = HitAt(cell.row());
    if (!hit) {
        return {};
    }
    const ArchiveColumn column = ColumnAt(cell.column());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return Text(ArchiveCellText(*archive, *hit, column));
    case Qt::ToolTipRole:
        return column == ArchiveColumn::File
                   ? PlainToolTip(Text(PlaceInfo(*archive, hit->place).path))
                   : QVariant();
    case Qt::TextAlignmentRole:
        return int(RowOf(column).alignment | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant ArchiveRows::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) {
        return {};
    }
    const ColumnRow &column = RowOf(ColumnAt(section));
    switch (role) {
    case Qt::DisplayRole:
        return column.title;
    case Qt::TextAlignmentRole:
        return int(column.alignment | Qt::AlignVCenter);
    default:
        return {};
    }
}

Qt::ItemFlags ArchiveRows::flags(const QModelIndex &cell) const {
    return cell.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled |
                                Qt::ItemNeverHasChildren
                          : Qt::NoItemFlags;
}

ArchiveTable::ArchiveTable(ArchiveTableOwner shownOwner, QWidget *parent)
    : QTableView(parent), owner(std::move(shownOwner)), rows(new ArchiveRows(owner.columns, this)) {
    setModel(rows);
    setItemDelegate(new CellPainter(*rows, owner, this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setDragEnabled(true);
    setDragDropMode(DragOnly);
    setDefaultDropAction(Qt::CopyAction);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setAttribute(Qt::WA_InputMethodEnabled, false); // letters go to the search field
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(RowHeight);
    verticalHeader()->setDefaultSectionSize(RowHeight);
    QHeaderView &header = *horizontalHeader();
    header.setHighlightSections(false);
    header.setStretchLastSection(false);
    if (owner.sortBy) {
        header.setSectionsClickable(true);
        header.setSortIndicatorShown(true);
        connect(&header, &QHeaderView::sectionClicked, this,
                [this](int section) { owner.sortBy(rows->ColumnAt(section)); });
    }
    MeasureColumns();
    showing = false;
}

void ArchiveTable::MeasureColumns() {
    const bool hasFile =
        std::ranges::find(owner.columns, ArchiveColumn::File) != owner.columns.end();
    for (int section = 0; section < rows->columnCount(); ++section) {
        const ColumnRow &column = RowOf(rows->ColumnAt(section));
        const QFontMetrics metrics(
            column.column == ArchiveColumn::Name ? FontOfHeight("Arial", NameHeight, 500) : font());
        const int text = metrics.horizontalAdvance(column.widest) + CellInset + NumberInset;
        const int width = column.column == ArchiveColumn::Algorithm
                              ? NumberWidth + PictureWidth + 2 * CellInset
                          : column.column == ArchiveColumn::File ? FileWidth
                                                                 : text;
        setColumnWidth(section, width);
        if (column.column == (hasFile ? ArchiveColumn::File : ArchiveColumn::Name)) {
            horizontalHeader()->setSectionResizeMode(section, QHeaderView::Stretch);
        }
    }
}

void ArchiveTable::Show(std::shared_ptr<const ArchiveIndex> index, ArchiveHits hits) {
    const std::shared_ptr<const ArchiveIndex> former = rows->Index();
    if (index == former && hits == rows->Hits()) {
        return;
    }
    const std::vector<ArchiveHit> selected = SelectedHits(MostKept);
    const std::optional<ArchiveHit> current = CurrentHit();
    const bool goesToCurrent = index == former;
    showing = true;
    setAutoScroll(false); // a row that becomes the current one again
    rows->Show(std::move(index), std::move(hits));
    if (former && rows->Index()) {
        SelectAgain(*former, selected, current);
    }
    setAutoScroll(true);
    if (goesToCurrent && currentIndex().isValid()) {
        scrollTo(currentIndex());
    }
    showing = false;
    Tell(owner.selectionChanged);
    Tell(owner.lookedAt);
}

// `former`: the archive of the hits.
void ArchiveTable::SelectAgain(const ArchiveIndex &former, const std::vector<ArchiveHit> &selected,
                               std::optional<ArchiveHit> current) {
    const ArchiveIndex &index = *rows->Index();
    if (selected.empty() && !current) {
        return;
    }
    std::vector<bool> wanted(VoiceCount(index));
    const auto numberOf = [&](ArchiveHit hit) {
        return VoiceOfIdentity(index, VoiceInfo(former, hit.voice).identity);
    };
    for (const ArchiveHit &hit : selected) {
        if (const auto voice = numberOf(hit)) {
            wanted[*voice] = true;
        }
    }
    // Of rows of the same voice.
    const auto isPlaceOf = [&](ArchiveHit now, ArchiveHit then) {
        const ArchivePlaceInfo one = PlaceInfo(index, now.place);
        const ArchivePlaceInfo other = PlaceInfo(former, then.place);
        return one.place == other.place && one.path == other.path;
    };
    const auto currentVoice = current ? numberOf(*current) : std::nullopt;
    QItemSelection again;
    const int last = rows->columnCount() - 1;
    for (int row = 0; row < rows->rowCount(); ++row) {
        const ArchiveHit hit = *rows->HitAt(row);
        if (wanted[hit.voice] &&
            (!owner.rowsArePlaces ||
             std::ranges::any_of(selected, [&](ArchiveHit one) { return isPlaceOf(hit, one); }))) {
            again.append(QItemSelectionRange(rows->index(row, 0), rows->index(row, last)));
        }
        if (hit.voice == currentVoice && (!owner.rowsArePlaces || isPlaceOf(hit, *current))) {
            selectionModel()->setCurrentIndex(rows->index(row, 0), QItemSelectionModel::NoUpdate);
        }
    }
    selectionModel()->select(again, QItemSelectionModel::ClearAndSelect);
}

void ArchiveTable::ShowOrder(ArchiveColumn column, bool descending) {
    for (int section = 0; section < rows->columnCount(); ++section) {
        if (rows->ColumnAt(section) == column) {
            horizontalHeader()->setSortIndicator(section, descending ? Qt::DescendingOrder
                                                                     : Qt::AscendingOrder);
        }
    }
}

// By ranges: of all rows of a large archive there may be one.
std::vector<ArchiveHit> ArchiveTable::SelectedHits(std::size_t most) const {
    QList<QItemSelectionRange> ranges = selectionModel()->selection();
    std::ranges::sort(ranges, {}, &QItemSelectionRange::top);
    std::vector<ArchiveHit> hits;
    for (const QItemSelectionRange &range : ranges) {
        for (int row = range.top(); row <= range.bottom() && hits.size() < most; ++row) {
            if (const auto hit = rows->HitAt(row)) {
                hits.push_back(*hit);
            }
        }
    }
    return hits;
}

std::size_t ArchiveTable::SelectedCount() const {
    std::size_t count = 0;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        count += static_cast<std::size_t>(range.height());
    }
    return count;
}

std::optional<ArchiveHit> ArchiveTable::CurrentHit() const {
    return rows->HitAt(currentIndex().row());
}

void ArchiveTable::TakeKeyboard() {
    setFocus(Qt::OtherFocusReason);
    scrollTo(currentIndex());
}

// The toolkit makes a row the current one, and leaves it at that.
void ArchiveTable::focusInEvent(QFocusEvent *event) {
    QTableView::focusInEvent(event);
    if (event->reason() != Qt::MouseFocusReason && rows->rowCount() > 0 &&
        !selectionModel()->hasSelection()) {
        selectRow(std::max(0, currentIndex().row()));
    }
}

void ArchiveTable::Audition(const QModelIndex &cell) {
    if (const auto hit = rows->HitAt(cell.row())) {
        Tell(owner.audition, *hit);
    }
}

void ArchiveTable::keyPressEvent(QKeyEvent *event) {
    const Qt::KeyboardModifiers keys = event->modifiers();
    const bool isPlain = !(keys & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    const int number = event->key() - Qt::Key_1;
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        Tell(owner.chosen);
    } else if (event->key() == Qt::Key_Space && keys == Qt::NoModifier) {
        Audition(currentIndex());
    } else if (event->key() == Qt::Key_Up && keys == Qt::NoModifier && owner.leftUpwards &&
               currentIndex().row() <= 0) {
        owner.leftUpwards();
    } else if (keys == Qt::ControlModifier && owner.sortBy && number >= 0 &&
               number < rows->columnCount()) {
        owner.sortBy(rows->ColumnAt(number));
    } else if (event->key() == Qt::Key_F10 && keys == Qt::ShiftModifier) {
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, {});
        contextMenuEvent(&menu); // not every platform takes it for the menu key
    } else if (isPlain && owner.typed &&
               (event->key() == Qt::Key_Backspace ||
                (!event->text().isEmpty() && event->text().front().isPrint()))) {
        owner.typed(*event);
    } else if (event->key() == Qt::Key_Escape) {
        event->ignore();
    } else {
        QTableView::keyPressEvent(event);
    }
}

void ArchiveTable::mousePressEvent(QMouseEvent *event) {
    if (event->button() == Qt::MiddleButton) {
        Audition(indexAt(event->position().toPoint()));
        return;
    }
    QTableView::mousePressEvent(event);
}

void ArchiveTable::mouseDoubleClickEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid()) {
        Tell(owner.chosen);
    }
}

void ArchiveTable::contextMenuEvent(QContextMenuEvent *event) {
    QPoint place = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const QRect row = visualRect(currentIndex());
        place = viewport()->mapToGlobal(
            QPoint(row.left() + CellInset, row.isValid() ? row.bottom() + 1 : 0));
    }
    Tell(owner.menu, place);
}

void ArchiveTable::startDrag(Qt::DropActions) {
    const QByteArray parcel = owner.parcel ? owner.parcel() : QByteArray();
    if (parcel.isEmpty()) {
        return;
    }
    auto *data = new QMimeData;
    data->setData(VoiceParcelType, parcel);
    auto *drag = new QDrag(this);
    drag->setMimeData(data);
    drag->exec(Qt::CopyAction);
}

void ArchiveTable::currentChanged(const QModelIndex &current, const QModelIndex &former) {
    QTableView::currentChanged(current, former);
    if (!showing) {
        Tell(owner.lookedAt);
    }
}

void ArchiveTable::selectionChanged(const QItemSelection &selected, const QItemSelection &gone) {
    QTableView::selectionChanged(selected, gone);
    if (!showing) {
        Tell(owner.selectionChanged);
    }
}

void ArchiveTable::changeEvent(QEvent *event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        MeasureColumns();
    }
}

} // namespace tonewright
