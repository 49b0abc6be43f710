// Lays the window out and hands what the user does on to its engine.
#include "extras/view/dump_box.h"

#include "common/desktop.h"
#include "common/text.h"
#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "common/view/window_title.h"
#include "core/synth_driver.h"
#include "extras/dump_contents.h"
#include "extras/list_access.h"
#include "extras/rescue.h"

#include <QAbstractTableModel>
#include <QBoxLayout>
#include <QCoreApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSpinBox>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTimer>

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

constexpr ReferenceTopic HelpTopic = "EXTRAS_OPENANYDUMP";

// Milliseconds.
constexpr int LookInterval = 40;  // between two looks at what the user does
constexpr int QuietReading = 150; // for so long nothing says that the file is read
constexpr int ProgressSteps = 1000;

// Pixels.
constexpr QSize UsualSize = {860, 640};
constexpr int Margin = 14;
constexpr int FontOfTitle = 22;
constexpr int RowPadding = 6; // that a row is higher than its text
constexpr char16_t EnSpace = 0x2002;
constexpr int CellInset = 8;    // at the left and right of a cell
constexpr int ButtonInset = 12; // of a caption
constexpr QSize ButtonSize = {100, 30};
constexpr int FewestDumps = 3, FewestVoices = 6; // rows that are in sight at least

QString Text(const std::string &utf8) {
    return QString::fromStdString(utf8);
}

// ---- the two tables

struct TableColumn {
    const char *title;
    Qt::Alignment alignment;
    const char *widest; // text that there is room for; nullptr: the rest of the table
};
constexpr std::array<TableColumn, 4> DumpColumns = {{{"Offset", Qt::AlignRight, "4,294,967,296"},
                                                     {"Bytes", Qt::AlignRight, "4,294,967,296"},
                                                     {"What", Qt::AlignLeft, nullptr},
                                                     {"Remarks", Qt::AlignLeft, nullptr}}};
constexpr std::array<TableColumn, 5> VoiceColumns = {{{"Place", Qt::AlignRight, "100,000"},
                                                      {"Name", Qt::AlignLeft, "WWWWWWWWWW"},
                                                      {"Instrument", Qt::AlignLeft, "reface DX"},
                                                      {"Algorithm", Qt::AlignRight, "Algorithm"},
                                                      {"Remarks", Qt::AlignLeft, nullptr}}};

// Rows of texts, made as they come in sight.
class TextRows : public QAbstractTableModel {
public:
    using TextOfCell = std::function<QString(std::size_t row, int column)>;

    TextRows(std::span<const TableColumn> columns, TextOfCell text, QObject *parent)
        : QAbstractTableModel(parent), columns(columns), text(std::move(text)) {}

    void Show(std::size_t count) {
        beginResetModel();
        rows = static_cast<int>(count);
        endResetModel();
    }

    int rowCount(const QModelIndex &parent = {}) const override {
        return parent.isValid() ? 0 : rows;
    }
    int columnCount(const QModelIndex &parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(columns.size());
    }
    QVariant data(const QModelIndex &cell, int role) const override {
        switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole: // of what the column has no room for
        case Qt::AccessibleTextRole:
            return text(static_cast<std::size_t>(cell.row()), cell.column());
        case Qt::TextAlignmentRole:
            return AlignmentOf(cell.column());
        default:
            return {};
        }
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal) {
            return {};
        }
        switch (role) {
        case Qt::DisplayRole:
            // As far from its edges as the texts below it.
            return QChar(EnSpace) + QString(ColumnAt(section).title) + QChar(EnSpace);
        case Qt::AccessibleTextRole:
            return ColumnAt(section).title;
        case Qt::TextAlignmentRole:
            return AlignmentOf(section);
        default:
            return {};
        }
    }

    const TableColumn &ColumnAt(int column) const {
        return columns[static_cast<std::size_t>(column)];
    }

private:
    QVariant AlignmentOf(int column) const {
        return int(ColumnAt(column).alignment | Qt::AlignVCenter);
    }

    const std::span<const TableColumn> columns;
    const TextOfCell text;
    int rows = 0;
};

// A cell with room at both sides of its text.
class RoomyCell : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &cell) const override {
        QStyleOptionViewItem inner = option;
        initStyleOption(&inner, cell);
        const QStyle *style = option.widget->style();
        const QString text = std::exchange(inner.text, QString());
        style->drawControl(QStyle::CE_ItemViewItem, &inner, painter, option.widget);
        const QRect area = option.rect.adjusted(CellInset, 0, -CellInset, 0);
        const bool isSelected = option.state & QStyle::State_Selected;
        painter->save();
        painter->setFont(inner.font);
        painter->setPen(
            inner.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
        painter->drawText(area, int(inner.displayAlignment) | Qt::TextSingleLine,
                          inner.fontMetrics.elidedText(text, Qt::ElideRight, area.width()));
        painter->restore();
    }
};

// Rows of which several can be selected. A press of the middle button on one, or of the space bar,
// auditions it.
class RowsView : public QTableView {
public:
    explicit RowsView(TextRows *rows, QWidget *parent) : QTableView(parent), rows(rows) {
        setModel(rows);
        setItemDelegate(new RoomyCell(this));
        setSelectionBehavior(SelectRows);
        setSelectionMode(ExtendedSelection);
        setEditTriggers(NoEditTriggers);
        setAlternatingRowColors(true);
        setShowGrid(false);
        setWordWrap(false);
        setTabKeyNavigation(false);
        verticalHeader()->hide();
        verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        horizontalHeader()->setHighlightSections(false);
    }

    std::function<void(int row)> audition; // may be empty

    // Rows and columns as high and wide as the font needs them.
    void Measure(int fewestRows) {
        const QFontMetrics metrics(font());
        const int height = metrics.height() + RowPadding;
        verticalHeader()->setMinimumSectionSize(height);
        verticalHeader()->setDefaultSectionSize(height);
        for (int column = 0; column < rows->columnCount(); ++column) {
            const TableColumn &kind = rows->ColumnAt(column);
            horizontalHeader()->setSectionResizeMode(column, kind.widest ? QHeaderView::Interactive
                                                                         : QHeaderView::Stretch);
            if (kind.widest) {
                const int text = std::max(metrics.horizontalAdvance(kind.widest),
                                          metrics.horizontalAdvance(kind.title));
                setColumnWidth(column, text + 2 * CellInset);
            }
        }
        setMinimumHeight(horizontalHeader()->sizeHint().height() + fewestRows * height +
                         2 * frameWidth());
    }

    // In rising order.
    std::vector<std::size_t> SelectedRows() const {
        QList<QItemSelectionRange> ranges = selectionModel()->selection();
        std::ranges::sort(ranges, {}, &QItemSelectionRange::top);
        std::vector<std::size_t> selected;
        for (const QItemSelectionRange &range : ranges) {
            for (int row = range.top(); row <= range.bottom(); ++row) {
                selected.push_back(static_cast<std::size_t>(row));
            }
        }
        return selected;
    }

protected:
    // Home and End go to the first and the last row, where the toolkit means the columns.
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers keys) override {
        const int last = rows->rowCount() - 1;
        if ((action == MoveHome || action == MoveEnd) && last >= 0) {
            return rows->index(action == MoveHome ? 0 : last, std::max(0, currentIndex().column()));
        }
        return QTableView::moveCursor(action, keys);
    }
    void keyPressEvent(QKeyEvent *event) override {
        const int key = event->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            event->ignore(); // the box's
        } else if (key == Qt::Key_Space && event->modifiers() == Qt::NoModifier && audition) {
            audition(currentIndex().row());
        } else {
            QTableView::keyPressEvent(event);
        }
    }
    void mousePressEvent(QMouseEvent *event) override {
        if (event->button() == Qt::MiddleButton && audition) {
            audition(indexAt(event->position().toPoint()).row());
            return;
        }
        QTableView::mousePressEvent(event);
    }

private:
    TextRows *rows;
};

// ---- the window

class DumpDialog : public QDialog {
public:
    DumpDialog(QWidget *owner, const std::string &path)
        : QDialog(owner ? owner->window() : nullptr) {
        contents.path = path;
        setObjectName("DumpBox");
        setWindowTitle("Open Any Dump");
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowMaximizeButtonHint |
                       Qt::WindowCloseButtonHint);
        setFont(DialogFont());
        MakeControls();
        LayOut();
        Connect();
        ShowSelection();
        const QScreen *screen = QGuiApplication::primaryScreen();
        resize(screen ? UsualSize.boundedTo(screen->availableSize()) : UsualSize);
        CentreWindow(*this);
        QTimer::singleShot(0, this, [this] { Read(); }); // over the window that shows it
    }

    void reject() override {
        if (isReading) {
            isCancelled = isClosing = true;
            return;
        }
        QDialog::reject();
    }

protected:
    void keyPressEvent(QKeyEvent *event) override {
        if (isReading && event->key() == Qt::Key_Escape) {
            isCancelled = true;
            return;
        }
        QDialog::keyPressEvent(event);
    }

private:
    QLabel *Label(const char *name, const QString &text = {}) {
        auto *label = new QLabel(text, this);
        label->setObjectName(name);
        return label;
    }
    QLabel *Lines(const char *name) {
        QLabel *label = Label(name);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        return label;
    }
    QPushButton *Button(const char *name, const QString &text) {
        auto *button = new QPushButton(text, this);
        button->setObjectName(name);
        button->setMinimumSize(ButtonSize.expandedTo(
            QSize(fontMetrics().horizontalAdvance(text) + 2 * ButtonInset, 0)));
        button->setAutoDefault(false);
        return button;
    }
    RowsView *Table(const char *name, const QString &words, TextRows *rows) {
        auto *table = new RowsView(rows, this);
        table->setObjectName(name);
        table->setAccessibleName(words);
        return table;
    }

    void MakeControls() {
        title = Label("title", Text(FileNameOfPath(contents.path.c_str())));
        title->setTextFormat(Qt::PlainText);
        title->setFont(FontOfHeight("Arial", FontOfTitle, 700));
        title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        title->setToolTip(Text(contents.path));
        summary = Lines("summary");
        summary->setText("Reading the file...");
        progress = new QProgressBar(this);
        progress->setObjectName("progress");
        progress->setAccessibleName("How much of the file has been read");
        progress->setTextVisible(false);
        cancel = Button("cancel", "&Cancel");
        progress->hide();
        cancel->hide();

        dumpRows = new TextRows(
            DumpColumns, [this](std::size_t row, int column) { return DumpText(row, column); },
            this);
        dumps = Table("dumps", "Dumps", dumpRows);
        about = Lines("about");
        voiceRows = new TextRows(
            VoiceColumns, [this](std::size_t row, int column) { return VoiceText(row, column); },
            this);
        voices = Table("voices", "Voices", voiceRows);
        dumps->Measure(FewestDumps);
        voices->Measure(FewestVoices);
        count = Label("count");

        newBank = Button("newBank", "&New bank from these");
        newBank->setDefault(true);
        put = Button("put", "&Put at row");
        row = new QSpinBox(this);
        row->setObjectName("row");
        row->setAccessibleName("Row of the list");
        row->setMinimumHeight(ButtonSize.height());
        audition = Button("audition", "&Audition");
        help = Button("help", "&Help");
        closeButton = Button("close", "Close");
        FollowRow();
    }

    void LayOut() {
        auto *column = new QVBoxLayout(this);
        column->setContentsMargins(Margin, Margin, Margin, Margin);
        column->addWidget(title);
        column->addWidget(summary);
        auto *reading = new QHBoxLayout;
        reading->addWidget(progress, 1);
        reading->addWidget(cancel);
        column->addLayout(reading);
        QLabel *dumpsTitle = Label("dumpsTitle", "&Dumps");
        dumpsTitle->setBuddy(dumps);
        column->addWidget(dumpsTitle);
        column->addWidget(dumps, 2);
        column->addWidget(about);
        auto *voicesLine = new QHBoxLayout;
        QLabel *voicesTitle = Label("voicesTitle", "&Voices");
        voicesTitle->setBuddy(voices);
        voicesLine->addWidget(voicesTitle);
        voicesLine->addStretch();
        voicesLine->addWidget(count);
        column->addLayout(voicesLine);
        column->addWidget(voices, 3);
        auto *buttons = new QHBoxLayout;
        buttons->addWidget(newBank);
        buttons->addSpacing(Margin);
        buttons->addWidget(put);
        buttons->addWidget(row);
        buttons->addSpacing(Margin);
        buttons->addWidget(audition);
        buttons->addStretch();
        buttons->addWidget(help);
        buttons->addWidget(closeButton);
        column->addLayout(buttons);
        QWidget *const inOrder[] = {dumps, voices, newBank, put, row, audition, help, closeButton};
        for (std::size_t at = 1; at < std::size(inOrder); ++at) {
            setTabOrder(inOrder[at - 1], inOrder[at]);
        }
    }

    void Connect() {
        connect(cancel, &QPushButton::clicked, this, [this] { isCancelled = true; });
        connect(dumps->selectionModel(), &QItemSelectionModel::selectionChanged, this,
                [this] { ShowVoices(); });
        connect(voices->selectionModel(), &QItemSelectionModel::selectionChanged, this,
                [this] { ShowSelection(); });
        connect(dumps, &QTableView::doubleClicked, this, [this] { TakeBank(); });
        connect(voices, &QTableView::doubleClicked, this, [this] { Put(); });
        connect(newBank, &QPushButton::clicked, this, [this] { TakeBank(); });
        connect(put, &QPushButton::clicked, this, [this] { Put(); });
        connect(audition, &QPushButton::clicked, this,
                [this] { Audition(voices->currentIndex().row()); });
        voices->audition = [this](int at) { Audition(at); };
        const auto showHelp = [this] { ShowHelp(this, HelpTopic); };
        connect(help, &QPushButton::clicked, this, showHelp);
        connect(new QShortcut(Qt::Key_F1, this), &QShortcut::activated, this, showHelp);
        connect(closeButton, &QPushButton::clicked, this, &QDialog::reject);
    }

    // ---- reading

    void Read() {
        isReading = true;
        QElapsedTimer sinceStart, sinceLook;
        sinceStart.start();
        sinceLook.start();
        contents = ReadDumpContents(contents.path, [&](std::uint64_t read, std::uint64_t size) {
            if (sinceLook.elapsed() >= LookInterval) {
                sinceLook.restart();
                if (sinceStart.elapsed() >= QuietReading) {
                    ShowProgress(read, size);
                }
                QCoreApplication::processEvents();
                // The main window goes when the program is to end.
                isCancelled = isCancelled || (parentWidget() && !parentWidget()->isVisible());
            }
            return !isCancelled;
        });
        isReading = false;
        progress->hide();
        cancel->hide();
        if (isClosing) {
            QDialog::reject();
            return;
        }
        summary->setText(Text(DumpsInWords(contents)));
        dumpRows->Show(contents.dumps.size());
        const auto first = std::ranges::find_if(
            contents.dumps, [](const FoundDump &dump) { return dump.voices != 0; });
        if (!contents.dumps.empty()) {
            dumps->selectRow(first == contents.dumps.end()
                                 ? 0
                                 : static_cast<int>(first - contents.dumps.begin()));
        }
        dumps->setFocus();
        layout()->activate(); // the texts have room at the first painting
    }

    void ShowProgress(std::uint64_t read, std::uint64_t size) {
        progress->setRange(0, size != 0 ? ProgressSteps : 0);
        if (size != 0) {
            progress->setValue(static_cast<int>(static_cast<double>(std::min(read, size)) /
                                                static_cast<double>(size) * ProgressSteps));
        }
        if (!progress->isVisible()) {
            progress->show();
            cancel->show();
            cancel->setFocus();
        }
    }

    // ---- what is shown

    QString DumpText(std::size_t at, int column) const {
        const FoundDump &dump = contents.dumps[at];
        switch (column) {
        case 0:
            return locale().toString(static_cast<qulonglong>(dump.offset));
        case 1:
            return locale().toString(static_cast<qulonglong>(dump.length));
        case 2:
            return Text(TextOfDump(dump));
        default:
            return Text(RemarksOfDump(dump));
        }
    }

    QString VoiceText(std::size_t at, int column) const {
        const KeptVoice &voice = contents.voices[numbers[at]];
        switch (column) {
        case 0:
            return locale().toString(static_cast<qulonglong>(numbers[at] + 1));
        case 1:
            return Text(Latin1ToUtf8(NameOfVoice(voice.Voice())));
        case 2:
            return Text(InstrumentOfVoice(voice));
        case 3:
            return QString::number(AlgorithmOfVoice(voice.Voice()));
        default:
            return HighBytesOf(voice.Voice()) != 0 ? "bytes above 7F" : QString();
        }
    }

    // Those of the selected dumps, all selected.
    void ShowVoices() {
        numbers.clear();
        const std::vector<std::size_t> selected = dumps->SelectedRows();
        for (const std::size_t dump : selected) {
            for (std::size_t voice = 0; voice < ShownVoicesOf(contents, dump); ++voice) {
                numbers.push_back(contents.firstVoices[dump] + voice);
            }
        }
        about->setText(selected.size() == 1
                           ? Text(DumpInWords(contents.dumps[selected.front()]))
                           : QString("%1 dumps are selected.").arg(selected.size()));
        voiceRows->Show(numbers.size());
        voices->selectAll();
        if (!numbers.empty()) {
            voices->selectionModel()->setCurrentIndex(voiceRows->index(0, 0),
                                                      QItemSelectionModel::NoUpdate);
        }
        ShowSelection();
    }

    void ShowSelection() {
        const std::size_t selected = voices->SelectedRows().size();
        count->setText(numbers.empty() ? QString()
                                       : QString("%1 of %2 selected")
                                             .arg(locale().toString(qulonglong(selected)),
                                                  locale().toString(qulonglong(numbers.size()))));
        newBank->setEnabled(selected != 0);
        put->setEnabled(selected != 0);
        row->setEnabled(selected != 0);
        audition->setEnabled(!numbers.empty());
    }

    void FollowRow() {
        const int selected = TheListAccess.SelectedRow ? TheListAccess.SelectedRow() : -1;
        const int rows = TheListAccess.RowCount ? TheListAccess.RowCount() : 0;
        row->setRange(1, std::max(1, rows));
        row->setValue(std::max(0, selected) + 1);
    }

    // ---- what the user does

    std::vector<std::size_t> SelectedNumbers() const {
        std::vector<std::size_t> selected = voices->SelectedRows();
        for (std::size_t &number : selected) {
            number = numbers[number];
        }
        return selected;
    }

    void TakeBank() {
        if (newBank->isEnabled() && TakeAsNewBank(this, contents, SelectedNumbers())) {
            accept();
        }
    }

    void Put() {
        if (!put->isEnabled()) {
            return;
        }
        const int first = row->value();
        const std::vector<std::size_t> selected = SelectedNumbers();
        const int taken = TakeIntoList(this, contents, selected, first - 1);
        if (taken > 0) {
            count->setText(Text(PutInWords(first, taken, selected.size())));
            FollowRow();
        }
    }

    void Audition(int at) {
        if (at >= 0 && static_cast<std::size_t>(at) < numbers.size() && TheListAccess.Audition) {
            TheListAccess.Audition(this, contents.voices[numbers[static_cast<std::size_t>(at)]]);
        }
    }

    DumpContents contents;
    std::vector<std::size_t> numbers; // of the voices that are shown
    bool isReading = false, isCancelled = false, isClosing = false;

    QLabel *title = nullptr, *summary = nullptr, *about = nullptr, *count = nullptr;
    QProgressBar *progress = nullptr;
    TextRows *dumpRows = nullptr, *voiceRows = nullptr;
    RowsView *dumps = nullptr, *voices = nullptr;
    QSpinBox *row = nullptr;
    QPushButton *cancel = nullptr, *newBank = nullptr, *put = nullptr, *audition = nullptr,
                *help = nullptr, *closeButton = nullptr;
};

} // namespace

void ShowDumpBox(QWidget *owner, const std::string &path) {
    DumpDialog box(owner, path);
    box.exec();
}

} // namespace tonewright
