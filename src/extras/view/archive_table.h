// Tables of voices of the archive: a row for each hit, of which only those in sight cost anything.
#pragma once

#include "extras/archive_window.h"

#include <QAbstractTableModel>
#include <QTableView>

#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tonewright {

// What a table shows, and whom it tells. What is empty is not called.
struct ArchiveTableOwner {
    std::span<const ArchiveColumn> columns;
    bool rowsArePlaces = false; // of one voice; else each row is another voice
    std::function<std::string(const std::string &path)> folder = {}; // of a file, as it is shown
    std::function<void()> chosen = {};             // Return or a double click: the selected voices
    std::function<void(ArchiveHit)> audition = {}; // the middle button on a row, or the space bar
    std::function<void(QKeyEvent &)> typed = {};   // what belongs into the search field
    std::function<void()> leftUpwards = {};        // Up in the first row
    std::function<void()> lookedAt = {};           // another row is the current one
    std::function<void()> selectionChanged = {};
    std::function<void(ArchiveColumn)> sortBy = {}; // a click on a header, or Ctrl and its number
    std::function<void(QPoint global)> menu = {};
    // The selected voices, to be dragged, under VoiceParcelType; empty: they are not.
    std::function<QByteArray()> parcel = {};
};

// A tool tip that says the text as it is, also where it looks like mark-up.
QString PlainToolTip(const QString &text);

// The rows as the toolkit asks for them.
class ArchiveRows : public QAbstractTableModel {
public:
    ArchiveRows(std::span<const ArchiveColumn> columns, QObject *parent);

    void Show(std::shared_ptr<const ArchiveIndex> index, ArchiveHits hits);

    const std::shared_ptr<const ArchiveIndex> &Index() const { return archive; }
    const ArchiveHits &Hits() const { return hits; }
    std::optional<ArchiveHit> HitAt(int row) const;
    ArchiveColumn ColumnAt(int column) const { return columns[static_cast<std::size_t>(column)]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &cell, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &cell) const override;

private:
    const std::span<const ArchiveColumn> columns;
    std::shared_ptr<const ArchiveIndex> archive;
    ArchiveHits hits;
    int rows = 0;
};

class ArchiveTable : public QTableView {
public:
    ArchiveTable(ArchiveTableOwner owner, QWidget *parent);

    // Shows other hits; what was selected stays selected where it is among them. Those of another
    // archive leave what is in sight where it is; others bring the current row into sight.
    void Show(std::shared_ptr<const ArchiveIndex> index, ArchiveHits hits);
    void ShowOrder(ArchiveColumn column, bool descending);

    // From the top, at most `most`.
    std::vector<ArchiveHit>
    SelectedHits(std::size_t most = std::numeric_limits<std::size_t>::max()) const;
    std::size_t SelectedCount() const;
    std::optional<ArchiveHit> CurrentHit() const;
    void TakeKeyboard();

protected:
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void startDrag(Qt::DropActions actions) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &former) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &gone) override;
    void changeEvent(QEvent *event) override;

private:
    void MeasureColumns();
    void Audition(const QModelIndex &cell);
    void SelectAgain(const ArchiveIndex &former, const std::vector<ArchiveHit> &selected,
                     std::optional<ArchiveHit> current);

    const ArchiveTableOwner owner;
    ArchiveRows *rows;   // a child
    bool showing = true; // other rows are being shown, which is not the user's doing
};

} // namespace tonewright
