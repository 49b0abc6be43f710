// Lays the archive window out, and hands what the user does on to its engine.
#include "extras/view/archive_window.h"

#include "common/desktop.h"
#include "common/folders.h"
#include "common/text.h"
#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "common/view/pictures.h"
#include "extras/archive_window.h"
#include "extras/list_access.h"
#include "extras/view/archive_table.h"
#include "extras/voice_parcel.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>

#include <algorithm>
#include <array>
#include <utility>

namespace tonewright {
namespace {

constexpr ReferenceTopic HelpTopic = "EXTRAS_ARCHIVE";
constexpr int ProgramIcon = 103;
constexpr int FollowMilliseconds = 1000;
// How long a row stays the current one until what is similar is looked for.
constexpr int LookMilliseconds = 120;
constexpr std::size_t MostFailuresTold = 15;

// Pixels.
constexpr QSize UsualSize = {1180, 720};
constexpr int PaneInset = 6;
constexpr int NarrowestPane = 350;
constexpr int FolderComboWidth = 200;
constexpr int FontOfTitle = 22;

constexpr std::array AllColumns = {ArchiveColumn::Name,      ArchiveColumn::Instrument,
                                   ArchiveColumn::Algorithm, ArchiveColumn::Times,
                                   ArchiveColumn::File,      ArchiveColumn::Place};
constexpr std::array PlaceColumns = {ArchiveColumn::File, ArchiveColumn::Place,
                                     ArchiveColumn::Name};
constexpr std::array SimilarColumns = {ArchiveColumn::Name, ArchiveColumn::Algorithm,
                                       ArchiveColumn::Times};

constexpr int Dx7Algorithms = 32, RefaceAlgorithms = 12;

QString Text(const std::string &utf8) {
    return QString::fromStdString(utf8);
}

class ArchiveDialog : public QDialog {
public:
    ArchiveDialog()
        : QDialog(nullptr),
          state({.deliver =
                     [this](std::function<void()> work) {
                         QMetaObject::invokeMethod(this, std::move(work), Qt::QueuedConnection);
                     },
                 .rowsChanged = [this] { ShowRows(); },
                 .voiceChanged = [this] { ShowVoice(); },
                 .stateChanged = [this] { ShowState(); }}) {
        setObjectName("ArchiveWindow");
        setWindowTitle("Archive");
        setWindowFlags(Qt::Window);
        setWindowIcon(QIcon(PictureOf(ProgramIcon, {256, 256})));
        setFont(DialogFont());
        MakeControls();
        LayOut();
        Connect();
        const QScreen *screen = QGuiApplication::primaryScreen();
        resize(screen ? UsualSize.boundedTo(screen->availableSize()) : UsualSize);
        CentreWindow(*this);
        search->setFocus();
        BeginArchive(state);
        ShowRows();
        ShowVoice();
        follow.start(FollowMilliseconds);
    }

    void End() {
        hide();
        follow.stop();
        state.reader.Cancel();
        state.indexer.Cancel();
    }

protected:
    void keyPressEvent(QKeyEvent *event) override {
        if (event->key() != Qt::Key_Escape) {
            if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
                QDialog::keyPressEvent(event);
            }
            return;
        }
        if (search->text().isEmpty()) {
            close();
        } else {
            search->clear();
            search->setFocus();
        }
    }

    // Down goes from the search field to the rows, and so does Return.
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (watched == search && event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent *>(event)->key();
            if (key == Qt::Key_Down || key == Qt::Key_PageDown || key == Qt::Key_Return ||
                key == Qt::Key_Enter) {
                if (!state.hits->empty()) {
                    table->TakeKeyboard();
                }
                return true;
            }
        }
        return QDialog::eventFilter(watched, event);
    }

private:
    using Hits = std::vector<ArchiveHit>;

    // ---- what there is

    QPushButton *Button(const char *name, const QString &text, const QString &tip = {}) {
        auto *button = new QPushButton(text, this);
        button->setObjectName(name);
        button->setAutoDefault(false); // Return belongs to the rows
        button->setToolTip(tip);
        return button;
    }

    QComboBox *Combo(const char *name, const QString &words) {
        auto *combo = new QComboBox(this);
        combo->setObjectName(name);
        combo->setAccessibleName(words);
        combo->setToolTip(words);
        return combo;
    }

    ArchiveTable *Table(const char *name, const QString &words, ArchiveTableOwner owner) {
        owner.folder = [this](const std::string &path) { return ArchiveFolderText(state, path); };
        owner.audition = [this](ArchiveHit hit) { AuditionLater(hit); };
        owner.typed = [this](QKeyEvent &event) {
            search->setFocus();
            QApplication::sendEvent(search, &event);
        };
        auto *made = new ArchiveTable(std::move(owner), this);
        made->setObjectName(name);
        made->setAccessibleName(words);
        return made;
    }

    // Of the pane.
    ArchiveTable *SideTable(const char *name, const QString &words,
                            std::span<const ArchiveColumn> columns, ArchiveTable *&variable) {
        variable = Table(name, words,
                         {.columns = columns,
                          .rowsArePlaces = &variable == &places,
                          .chosen = [this, &variable] { PutLater(variable); },
                          .selectionChanged = [this] { ShowSelection(); },
                          .menu = [this, &variable](QPoint at) { ShowMenu(variable, at); },
                          .parcel = [this, &variable] { return ParcelOf(variable); }});
        return variable;
    }

    void MakeControls() {
        search = new QLineEdit(this);
        search->setObjectName("search");
        search->setAccessibleName("Find voices by their names");
        search->setPlaceholderText("Find voices by their names");
        search->setClearButtonEnabled(true);
        search->setFont(FontOfHeight("Arial", FontOfTitle));
        search->installEventFilter(this);

        instrument = Combo("instrument", "Instrument");
        instrument->addItem("All instruments", -1);
        for (const std::uint8_t family : {ArchiveFamilyDx7, ArchiveFamilyReface}) {
            instrument->addItem(Text(ArchiveInstrumentText(family)), family);
        }
        algorithm = Combo("algorithm", "Algorithm");
        FillAlgorithms();
        folder = Combo("folder", "Folder");
        folder->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        folder->setMinimumWidth(FolderComboWidth);
        FillFolders();
        repeated = new QCheckBox("Found &more than once", this);
        repeated->setObjectName("repeated");

        table = Table("voices", "Voices",
                      {.columns = AllColumns,
                       .chosen = [this] { PutLater(table); },
                       .leftUpwards = [this] { search->setFocus(); },
                       .lookedAt = [this] { look.start(LookMilliseconds); },
                       .selectionChanged = [this] { ShowSelection(); },
                       .sortBy =
                           [this](ArchiveColumn column) {
                               SortArchive(state, column);
                               table->ShowOrder(state.query.sort, state.query.descending);
                           },
                       .menu = [this](QPoint at) { ShowMenu(table, at); },
                       .parcel = [this] { return ParcelOf(table); }});
        table->ShowOrder(state.query.sort, state.query.descending);
        empty = new QLabel(this);
        empty->setObjectName("empty");
        empty->setAlignment(Qt::AlignCenter);
        empty->setWordWrap(true);
        empty->setAutoFillBackground(true);
        empty->setBackgroundRole(QPalette::Base);
        empty->setForegroundRole(QPalette::Text);
        empty->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
        empty->setMargin(40);
        stack = new QStackedWidget(this);
        stack->addWidget(table);
        stack->addWidget(empty);

        title = new QLabel(this);
        title->setObjectName("title");
        title->setFont(FontOfHeight("Arial", FontOfTitle, 700));
        title->setTextFormat(Qt::PlainText);
        about = new QLabel(this);
        about->setObjectName("about");
        about->setTextInteractionFlags(Qt::TextSelectableByMouse);
        about->setWordWrap(true);
        placesTitle = new QLabel("W&here it stands", this);
        similarTitle = new QLabel("&Similar voices", this);
        SideTable("places", "Where it stands", PlaceColumns, places);
        SideTable("similar", "Similar voices", SimilarColumns, similar);
        placesTitle->setBuddy(places);
        similarTitle->setBuddy(similar);
        similarText = new QLabel(this);
        similarText->setObjectName("similarText");
        similarText->setWordWrap(true);
        similarText->setAlignment(Qt::AlignCenter);

        count = new QLabel(this);
        count->setObjectName("count");
        progressText = new QLabel(this);
        progressText->setObjectName("progressText");
        for (QLabel *label : {empty, similarText, progressText}) {
            label->setTextFormat(Qt::PlainText); // there are paths in it
        }
        progressText->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        progressText->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        progress = new QProgressBar(this);
        progress->setObjectName("progress");
        progress->setAccessibleName("Progress of the update");
        progress->setTextVisible(false);
        progress->setFixedWidth(160);
        cancel = Button("cancel", "&Cancel");
        failures = Button("failures", "&What could not be read...");

        put = Button("put", "&Put into the list",
                     "From the selected row of the main list on (Return)");
        audition = Button("audition", "Audi&tion", "Plays the voice (space bar, middle button)");
        newBank = Button("newBank", "&New bank from these");
        add = Button("add", "&Add folder...");
        update = Button("update", "&Update",
                        "Looks through all folders for what is new, changed or gone");
        forget = Button("forget", "&Forget folder...");
        help = Button("help", "Help");
        quit = Button("close", "Close");
    }

    void LayOut() {
        auto *filters = new QHBoxLayout;
        filters->addWidget(instrument);
        filters->addWidget(algorithm);
        filters->addWidget(folder, 1);
        filters->addWidget(repeated);

        auto *found = new QWidget(this);
        auto *left = new QVBoxLayout(found);
        left->setContentsMargins({});
        left->addWidget(search);
        left->addLayout(filters);
        left->addWidget(stack, 1);

        similarStack = new QStackedWidget(this);
        similarStack->addWidget(similar);
        similarStack->addWidget(similarText);
        pane = new QWidget(this);
        auto *right = new QVBoxLayout(pane);
        right->setContentsMargins(PaneInset, 0, 0, 0);
        pane->setMinimumWidth(NarrowestPane);
        right->addWidget(title);
        right->addWidget(about);
        right->addWidget(placesTitle);
        right->addWidget(places, 1);
        right->addWidget(similarTitle);
        right->addWidget(similarStack, 1);

        auto *splitter = new QSplitter(this);
        splitter->setChildrenCollapsible(false);
        splitter->addWidget(found);
        splitter->addWidget(pane);
        splitter->setStretchFactor(0, 5);
        splitter->setStretchFactor(1, 2);

        auto *line = new QHBoxLayout;
        line->addWidget(count);
        line->addWidget(progressText, 1);
        line->addWidget(failures);
        line->addWidget(progress);
        line->addWidget(cancel);

        auto *buttons = new QHBoxLayout;
        for (QPushButton *button : {put, audition, newBank}) {
            buttons->addWidget(button);
        }
        buttons->addStretch(1);
        for (QPushButton *button : {add, update, forget}) {
            buttons->addWidget(button);
        }
        buttons->addStretch(1);
        buttons->addWidget(help);
        buttons->addWidget(quit);

        auto *all = new QVBoxLayout(this);
        all->addWidget(splitter, 1);
        all->addLayout(line);
        all->addLayout(buttons);

        QWidget *last = search;
        for (QWidget *next : std::initializer_list<QWidget *>{
                 instrument, algorithm, folder, repeated, table, places, similar, put, audition,
                 newBank, add, update, forget, failures, cancel, help, quit}) {
            setTabOrder(last, next);
            last = next;
        }
    }

    void Connect() {
        connect(search, &QLineEdit::textChanged, this,
                [this](const QString &text) { SetArchiveText(state, text.toStdString()); });
        connect(instrument, &QComboBox::currentIndexChanged, this, [this] {
            FillAlgorithms();
            FollowFilters();
        });
        connect(algorithm, &QComboBox::currentIndexChanged, this, [this] { FollowFilters(); });
        connect(folder, &QComboBox::currentIndexChanged, this, [this] { FollowFilters(); });
        connect(repeated, &QCheckBox::toggled, this, [this] { FollowFilters(); });
        connect(put, &QPushButton::clicked, this, [this] { PutLater(ActiveTable()); });
        connect(audition, &QPushButton::clicked, this, [this] {
            const Hits hits = ActiveTable()->SelectedHits(1);
            if (!hits.empty()) {
                AuditionLater(hits.front());
            }
        });
        connect(newBank, &QPushButton::clicked, this, [this] { NewBankLater(ActiveTable()); });
        connect(add, &QPushButton::clicked, this, [this] { AddFolderLater(); });
        connect(update, &QPushButton::clicked, this, [this] { UpdateArchiveFolders(state); });
        connect(forget, &QPushButton::clicked, this, [this] { ShowForgetMenu(); });
        connect(cancel, &QPushButton::clicked, this, [this] { CancelArchiveUpdate(state); });
        connect(failures, &QPushButton::clicked, this, [this] { ShowFailuresLater(); });
        const auto showHelp = [this] { ShowHelp(this, HelpTopic); };
        connect(help, &QPushButton::clicked, this, showHelp);
        connect(new QShortcut(Qt::Key_F1, this), &QShortcut::activated, this, showHelp);
        connect(quit, &QPushButton::clicked, this, [this] { close(); });
        connect(&follow, &QTimer::timeout, this, [this] { FollowArchive(state); });
        look.setSingleShot(true);
        connect(&look, &QTimer::timeout, this, [this] {
            const auto hit = table->CurrentHit();
            if (hit != state.voice) {
                LookAtArchiveVoice(state, hit);
            }
        });
    }

    // ---- filters

    void FillAlgorithms() {
        const int chosen = algorithm->currentData().toInt();
        const int family = instrument->currentData().toInt();
        const int number = family == ArchiveFamilyReface ? RefaceAlgorithms : Dx7Algorithms;
        const QSignalBlocker blocker(algorithm);
        algorithm->clear();
        algorithm->addItem("All algorithms", 0);
        for (int one = 1; one <= number; ++one) {
            algorithm->addItem(QString("Algorithm %1").arg(one), one);
        }
        algorithm->setCurrentIndex(std::max(0, algorithm->findData(chosen)));
    }

    // Each folder that was added, and below it those with files.
    void FillFolders() {
        const QSignalBlocker blocker(folder);
        const std::string chosen = FolderOf(folder->currentIndex());
        folder->clear();
        shownFolders = {""};
        folder->addItem("All folders");
        for (const ArchiveFolderChoice &one : ArchiveFolderChoices(state.folders)) {
            folder->addItem(Text(one.text));
            folder->setItemData(folder->count() - 1, PlainToolTip(Text(one.path)), Qt::ToolTipRole);
            shownFolders.push_back(one.path);
        }
        const auto again = std::ranges::find(shownFolders, chosen);
        folder->setCurrentIndex(
            again == shownFolders.end() ? 0 : static_cast<int>(again - shownFolders.begin()));
    }

    // By its place: a name that is not UTF-8 is shown as another text.
    std::string FolderOf(int row) const {
        return row < 0 ? "" : shownFolders[static_cast<std::size_t>(row)];
    }

    void FollowFilters() {
        ArchiveQuery query = state.query;
        query.family = instrument->currentData().toInt();
        query.algorithm = algorithm->currentData().toInt();
        query.folder = FolderOf(folder->currentIndex());
        query.onlyRepeated = repeated->isChecked();
        SetArchiveQuery(state, query);
    }

    // ---- what is shown

    void ShowRows() {
        table->Show(state.index, state.hits);
        const QString text = Text(ArchiveEmptyText(state));
        empty->setText(text);
        const bool hadKeyboard = table->hasFocus();
        stack->setCurrentWidget(text.isEmpty() ? static_cast<QWidget *>(table) : empty);
        if (hadKeyboard && !text.isEmpty()) {
            search->setFocus();
        }
        ShowSelection();
    }

    void ShowVoice() {
        const bool isThere = state.voice && state.index;
        pane->setVisible(state.index && VoiceCount(*state.index) > 0);
        title->setText(isThere
                           ? Text(ArchiveCellText(*state.index, *state.voice, ArchiveColumn::Name))
                           : QString());
        title->setVisible(isThere);
        about->setText(isThere ? AboutVoice()
                               : "Go to a voice: where it stands, and what sounds alike, is shown "
                                 "here.");
        places->Show(state.index, state.places);
        similar->Show(state.index, state.similar);
        similarText->setText(Text(state.similarText));
        similarStack->setCurrentWidget(state.similarText.empty() ? static_cast<QWidget *>(similar)
                                                                 : similarText);
    }

    QString AboutVoice() const {
        const ArchiveVoiceInfo voice = VoiceInfo(*state.index, state.voice->voice);
        return QString("%1, algorithm %2, %3")
            .arg(Text(ArchiveInstrumentText(voice.family)), QString::number(voice.algorithm),
                 Text(TextOfIdentity(voice.identity)));
    }

    void ShowState() {
        if (std::exchange(shownVersion, state.version) != state.version) {
            FillFolders();
            if (FolderOf(folder->currentIndex()) != state.query.folder) {
                FollowFilters(); // the folder is gone
            }
        } else if (state.hits->empty()) {
            empty->setText(Text(ArchiveEmptyText(state)));
        }
        const bool hasFolder = std::ranges::any_of(state.folders, &ArchiveFolder::root);
        add->setEnabled(!state.updating);
        update->setEnabled(!state.updating && hasFolder);
        forget->setEnabled(!state.updating && hasFolder);
        progress->setVisible(state.updating);
        cancel->setVisible(state.updating);
        const int perMille = ArchiveUpdatePerMille(state);
        progress->setRange(0, perMille < 0 ? 0 : 1000); // 0 to 0: nobody knows how much is left
        progress->setValue(perMille);
        failures->setVisible(!state.updating && !state.failures.empty());
        ShowLine(Text(ArchiveUpdateText(state)));
        ShowSelection();
    }

    void ShowLine(const QString &text) {
        progressText->setText(text);
        progressText->setToolTip(PlainToolTip(text));
    }

    ArchiveTable *ActiveTable() {
        for (ArchiveTable *side : {places, similar}) {
            if (side == lastTable && side->SelectedCount() > 0) {
                return side;
            }
        }
        return table;
    }

    void ShowSelection() {
        for (ArchiveTable *one : {places, similar, table}) {
            if (one->hasFocus()) {
                lastTable = one;
            }
        }
        const std::size_t selected = ActiveTable()->SelectedCount();
        put->setEnabled(selected > 0);
        newBank->setEnabled(selected > 0);
        audition->setEnabled(selected == 1);
        QString text = Text(ArchiveCountText(state));
        if (selected > 1) {
            text +=
                QString("; %1 selected").arg(FormatThousands(static_cast<std::uint32_t>(selected)));
        }
        count->setText(text);
    }

    // ---- what is done

    // Behind what runs, and not at all when the window has gone meanwhile.
    void Later(std::function<void()> work) {
        if (TheListAccess.Post) {
            TheListAccess.Post([self = QPointer<ArchiveDialog>(this), work = std::move(work)] {
                if (self && self->isVisible()) {
                    work();
                }
            });
        }
    }

    ArchiveVoices Read(const Hits &hits) {
        const WaitCursor wait;
        return state.index ? ReadArchiveVoices(*state.index, hits) : ArchiveVoices();
    }

    // With the voices, or their refusal told.
    void WithVoicesLater(Hits hits,
                         std::function<void(const std::vector<KeptVoice> &, const Hits &)> use) {
        if (hits.empty()) {
            return;
        }
        Later([this, index = state.index, hits = std::move(hits), use = std::move(use)] {
            ArchiveVoices read;
            {
                const WaitCursor wait;
                read = ReadArchiveVoices(*index, hits);
            }
            if (!read.error.empty()) {
                ShowMessage(this, read.error);
            } else {
                use(read.voices, hits);
            }
        });
    }

    void PutLater(const ArchiveTable *from) {
        WithVoicesLater(from->SelectedHits(), [this, index = state.index](
                                                  const std::vector<KeptVoice> &voices,
                                                  const Hits &hits) {
            if (TheListAccess.PutVoices && TheListAccess.SelectedRow &&
                MayTakeHighBytes(this, voices)) {
                const int row = TheListAccess.SelectedRow();
                TellPut(TheListAccess.PutVoices(this, row, voices, ArchiveSourceText(*index, hits)),
                        voices.size());
            }
        });
    }

    void TellPut(int count, std::size_t wanted) {
        if (count >= 0 && !state.updating) {
            ShowLine(Text(ArchivePutText(static_cast<std::size_t>(count), wanted)));
        }
    }

    void NewBankLater(const ArchiveTable *from) {
        WithVoicesLater(
            from->SelectedHits(),
            [this, index = state.index](const std::vector<KeptVoice> &voices, const Hits &hits) {
                if (TheListAccess.NewBank && MayTakeHighBytes(this, voices)) {
                    TheListAccess.NewBank(this, voices, ArchiveSourceText(*index, hits));
                }
            });
    }

    void AuditionLater(ArchiveHit hit) {
        WithVoicesLater({hit}, [this](const std::vector<KeptVoice> &voices, const Hits &) {
            if (TheListAccess.Audition) {
                TheListAccess.Audition(this, voices.front());
            }
        });
    }

    QByteArray ParcelOf(const ArchiveTable *from) {
        const Hits hits = from->SelectedHits();
        const ArchiveVoices read = Read(hits);
        if (!read.error.empty()) {
            Later([this, error = read.error] { ShowMessage(this, error); });
            return {};
        }
        const std::vector<std::uint8_t> bytes = PackVoices(read.voices);
        return QByteArray(reinterpret_cast<const char *>(bytes.data()),
                          static_cast<qsizetype>(bytes.size()));
    }

    void AddFolderLater() {
        Later([this] {
            if (const auto chosen = ChooseFolder(this, PlatformFolders.documents)) {
                AddArchiveFolder(state, *chosen);
                search->setFocus();
            }
        });
    }

    void ShowForgetMenu() {
        auto *menu = new QMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        for (const ArchiveFolder &one : state.folders) {
            if (one.root) {
                menu->addAction(
                    Text(ArchiveRootText(one.path)).replace("&", "&&"), this,
                    [this, path = one.path] { Later([this, path] { ForgetFolderNow(path); }); });
            }
        }
        menu->popup(forget->mapToGlobal(QPoint(0, forget->height())));
    }

    void ForgetFolderNow(const std::string &path) {
        if (AskYesNo(this, "Shall the archive forget this folder?\n\n" + ArchiveRootText(path) +
                               "\n\nIts files stay as they are.") == ResultYes) {
            ForgetArchiveFolder(state, path);
        }
    }

    void ShowFailuresLater() {
        Later([this] {
            std::string text = "This could not be read:\n";
            for (std::size_t i = 0; i < std::min(state.failures.size(), MostFailuresTold); ++i) {
                text += "\n" + state.failures[i];
            }
            if (state.failures.size() > MostFailuresTold) {
                text += FormatText("\n\nand %zu more", state.failures.size() - MostFailuresTold);
            }
            ShowMessage(this, text);
        });
    }

    void ShowMenu(ArchiveTable *from, QPoint at) {
        const auto hit = from->CurrentHit();
        if (!hit || !state.index) {
            return;
        }
        from->setFocus();
        lastTable = from;
        ShowSelection();
        auto *menu = new QMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        const auto addButton = [&](QPushButton *button) {
            menu->addAction(button->text(), button, &QPushButton::click)
                ->setEnabled(button->isEnabled());
        };
        addButton(put);
        addButton(audition);
        addButton(newBank);
        menu->addSeparator();
        const std::string path = PlaceInfo(*state.index, hit->place).path;
        menu->addAction("Show its &file in the file manager", this, [path] {
            ShowInExplorer(FolderOfPath(path), FileNameOfPath(path.c_str()));
        });
        if (from == table) {
            AddSorting(*menu);
        }
        menu->popup(at);
    }

    void AddSorting(QMenu &menu) {
        QMenu *sorting = menu.addMenu("&Sort by");
        for (std::size_t i = 0; i < AllColumns.size(); ++i) {
            const QString name =
                table->model()->headerData(static_cast<int>(i), Qt::Horizontal).toString();
            QAction *action =
                sorting->addAction(QString("&%1\tCtrl+%2").arg(name).arg(i + 1), this, [this, i] {
                    SortArchive(state, AllColumns[i]);
                    table->ShowOrder(state.query.sort, state.query.descending);
                });
            action->setCheckable(true);
            action->setChecked(state.query.sort == AllColumns[i]);
        }
    }

    QLineEdit *search;
    QComboBox *instrument, *algorithm, *folder;
    QCheckBox *repeated;
    ArchiveTable *table, *places, *similar;
    ArchiveTable *lastTable = nullptr; // that had the keyboard
    QStackedWidget *stack, *similarStack;
    QLabel *empty, *title, *about, *placesTitle, *similarTitle, *similarText, *count, *progressText;
    QWidget *pane;
    QProgressBar *progress;
    QPushButton *put, *audition, *newBank, *add, *update, *forget, *failures, *cancel, *help, *quit;
    std::int64_t shownVersion = -1;        // of the archive whose folders are shown
    std::vector<std::string> shownFolders; // of the drop-down list; the first: all
    QTimer follow, look;
    // The last one: what it does ends before the controls go.
    ArchiveWindow state;
};

QPointer<ArchiveDialog> TheArchiveDialog;

} // namespace

void ShowArchiveWindow() {
    if (!TheArchiveDialog) {
        TheArchiveDialog = new ArchiveDialog;
        TheArchiveDialog->setAttribute(Qt::WA_DeleteOnClose);
    }
    TheArchiveDialog->setWindowState(TheArchiveDialog->windowState() & ~Qt::WindowMinimized);
    TheArchiveDialog->show();
    TheArchiveDialog->raise();
    TheArchiveDialog->activateWindow();
}

void EndArchiveWindow() {
    if (TheArchiveDialog) {
        TheArchiveDialog->End();
    }
}

void DropArchiveWindow() {
    delete TheArchiveDialog;
}

} // namespace tonewright
