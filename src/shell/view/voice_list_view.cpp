// What clicks, drags and dropped files do in the list of voices.
#include "shell/view/voice_list_view.h"

#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "extras/voice_parcel.h"
#include "shell/archive_flow.h"
#include "shell/careful.h"
#include "shell/command_table.h"
#include "shell/list_state.h"
#include "shell/reorder.h"
#include "shell/shell_window.h"
#include "shell/voice_commands.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QUrl>

#include <utility>

namespace tonewright {
namespace {

constexpr int StatusMilliseconds = 5000; // for reading why a row was not heard

QString NameOfRow(int row) {
    const VoiceObject *voice = ListVoice(MainList, row);
    return voice ? QString::fromLatin1(VoiceObjectName(*voice)) : QString();
}

QString WordsOfRow(int row) {
    return QString::fromStdString(VoiceInWords(ListVoice(MainList, row), row));
}

void PaintVoice(const ListRowPainting &painting) {
    const VoiceObject *voice = ListVoice(MainList, painting.row);
    if (!voice) {
        return;
    }
    const QRect &area = painting.area;
    DrawVoiceObject({.painter = &painting.painter,
                     .rectangle = {area.left(), area.top(), area.left() + area.width(),
                                   area.top() + area.height()},
                     .itemIndex = painting.row,
                     .selected = painting.selected},
                    *voice, MainItemFonts);
}

void ListTouched() {
    RefreshCopy();
    CarefulForgetClickedRow();
}

// The row under the click, also where a context menu was dismissed over another one before.
void EditRow(int row) {
    MainListState.clickedIndex = row;
    RunUserCommand(CommandEdit);
}

void AuditionRow(int row) {
    if (MiddleButtonAudition != 0) {
        MainListState.clickedIndex = row;
        PostCommand(CommandAudition);
    }
}

bool HoldsArchiveVoices(const QDropEvent &event) {
    return event.mimeData()->hasFormat(VoiceParcelType);
}

} // namespace

VoiceListView::VoiceListView(QWidget *parent)
    : ListBoxView(MainList,
                  {.name = NameOfRow,
                   .words = WordsOfRow,
                   .paint = PaintVoice,
                   .touched = ListTouched,
                   .hold =
                       [this](bool held) {
                           pressMark.reset();
                           if (held) {
                               pressMark.emplace();
                           }
                       },
                   .clickedAgain = [] { RunCommand(CommandNothing); },
                   .drop = DropVoiceAt,
                   .doubleClick = EditRow,
                   .middlePress = AuditionRow,
                   .menu = [this](int row, QRect beside) { ShowContextMenu(row, beside); }},
                  parent) {
    setObjectName("control_170");
    setAccessibleName("Voices");
    setAcceptDrops(true);
    statusEnd.setSingleShot(true);
    connect(&statusEnd, &QTimer::timeout, this, [this] { EndStatus(); });
}

void VoiceListView::ShowContextMenu(int row, QRect beside) {
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
        chosen = menu.exec(PlaceOfListMenu(menu.sizeHint(), beside));
    }
    if (chosen) {
        RunCommand(chosen->data().toInt());
    } else {
        CarefulForgetClickedRow();
    }
}

// The space bar may be let go while a message stands, or somewhere else: it is looked for all over
// the program.
void VoiceListView::PlaySelectedRow() {
    EndPlayedRow();
    spaceIsHeld = true;
    qApp->installEventFilter(this);
    PlayedRow played = PlayRow(MainList.selection);
    if (spaceIsHeld) {
        playedRow = std::move(played);
    }
}

void VoiceListView::EndPlayedRow() {
    spaceIsHeld = false;
    qApp->removeEventFilter(this);
    if (playedRow) {
        playedRow.reset();
        statusEnd.start(StatusMilliseconds);
    }
}

void VoiceListView::EndStatus() {
    if (SomethingIsRunning() || QApplication::activePopupWidget()) {
        statusEnd.start(StatusMilliseconds); // it has its own words there
    } else {
        RefreshStatus();
    }
}

void VoiceListView::keyPressEvent(QKeyEvent *event) {
    const bool plays = SpaceAuditions != 0 && event->key() == Qt::Key_Space &&
                       event->modifiers() == Qt::NoModifier && ListCount(MainList) > 0;
    if (!plays) {
        ListBoxView::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {
        PlaySelectedRow();
    }
}

bool VoiceListView::event(QEvent *event) {
    switch (event->type()) {
    case QEvent::FocusOut:
    case QEvent::WindowDeactivate:
    case QEvent::WindowBlocked:
    case QEvent::Hide:
        EndPlayedRow(); // the space bar may be let go where nobody hears of it
        break;
    default:
        break;
    }
    return ListBoxView::event(event);
}

bool VoiceListView::eventFilter(QObject *watched, QEvent *event) {
    if (spaceIsHeld && event->type() == QEvent::KeyRelease) {
        const auto &release = static_cast<QKeyEvent &>(*event);
        if (release.key() == Qt::Key_Space && !release.isAutoRepeat()) {
            EndPlayedRow();
        }
    }
    return ListBoxView::eventFilter(watched, event);
}

// The answer is never Move, though the source may propose it: the source would delete its files.
// Voices of the archive need a row, but in an empty list.
void VoiceListView::AcceptDrop(QDropEvent &event) {
    const bool holdsVoices = HoldsArchiveVoices(event);
    const int row = holdsVoices ? RowAt(event.position().toPoint()) : NoRow;
    ShowDropRow(row);
    if (holdsVoices ? row == NoRow && ListCount(MainList) > 0 : !event.mimeData()->hasUrls()) {
        event.ignore();
        return;
    }
    // A source that offers no copy is told of no action.
    event.setDropAction(event.possibleActions() & Qt::CopyAction ? Qt::CopyAction
                                                                 : Qt::IgnoreAction);
    event.accept();
}

void VoiceListView::ShowDropRow(int row) {
    if (std::exchange(dropRow, row) != row) {
        viewport()->update();
    }
}

void VoiceListView::paintEvent(QPaintEvent *event) {
    ListBoxView::paintEvent(event);
    if (dropRow != NoRow) {
        QPainter painter(viewport());
        constexpr int Weight = 2; // black around white, so that it shows on any row
        const QRect row = RowRectangle(dropRow).adjusted(0, 0, -1, -1);
        painter.setPen(QPen(Qt::black, 2 * Weight));
        painter.drawRect(row.adjusted(Weight, Weight, -Weight, -Weight));
        painter.setPen(QPen(Qt::white, 1));
        painter.drawRect(row.adjusted(Weight, Weight, -Weight, -Weight));
    }
}

void VoiceListView::dragEnterEvent(QDragEnterEvent *event) {
    AcceptDrop(*event);
}

void VoiceListView::dragMoveEvent(QDragMoveEvent *event) {
    AcceptDrop(*event);
}

void VoiceListView::dragLeaveEvent(QDragLeaveEvent *) {
    ShowDropRow(NoRow);
}

void VoiceListView::dropEvent(QDropEvent *event) {
    AcceptDrop(*event);
    ShowDropRow(NoRow);
    if (!event->isAccepted()) {
        return;
    }
    if (HoldsArchiveVoices(*event)) {
        const QByteArray bytes = event->mimeData()->data(VoiceParcelType);
        const int row = RowAt(event->position().toPoint());
        Post([row, parcel = std::vector<std::uint8_t>(bytes.begin(), bytes.end())] {
            DropArchiveVoices(row, parcel);
        });
        return;
    }
    std::vector<std::string> paths;
    for (const QUrl &url : event->mimeData()->urls()) {
        if (url.isLocalFile()) {
            paths.push_back(QDir::toNativeSeparators(url.toLocalFile()).toStdString());
        }
    }
    // Queued, so that the file manager does not wait while a question stands.
    Post([paths = std::move(paths)] { DropFiles(paths); });
}

} // namespace tonewright
