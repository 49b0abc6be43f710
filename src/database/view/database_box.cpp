// Lays the catalogue window out and hands its events on to its engine.
#include "database/view/database_box.h"

#include "common/settings.h"
#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/dialog_controls.h"
#include "common/view/fonts.h"
#include "common/view/system_colours.h"
#include "core/current.h"
#include "database/database_window.h"
#include "database/view/new_database_box.h"
#include "database/view/print_reports.h"
#include "database/view/record_list_view.h"
#include "midi/view/audition_box.h"
#include "ui_DatabaseManageBox.h"

#include <QAbstractButton>
#include <QDialog>
#include <qdrawutil.h>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionFocusRect>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <functional>
#include <initializer_list>
#include <optional>
#include <utility>

namespace tonewright {
namespace {

constexpr const char *HelpTopic = "DATABASE";

// Pixels.
constexpr int HeaderPadding = 6; // that a header is higher than its text
constexpr int FewestRows = 8;    // that the list shows
constexpr int SignHeight = 18;   // of the font of "+" and "-"
constexpr int SignWeight = 500;

// Where a header begins, from the left edge of the list, and how wide it is; the last one reaches
// over the scroll bar.
struct HeaderPlace {
    int left, width;
};
constexpr std::array<HeaderPlace, 4> HeaderPlaces = {{{3, 166}, {169, 166}, {335, 156}, {491, 54}}};

// The header of a column: sunken while the list is sorted by it, which is when it is checked, and
// what those who hear it are told. Whatever would check or uncheck it sorts instead.
class HeaderButton : public QAbstractButton {
public:
    HeaderButton(const RecordColumn &column, QWidget *parent)
        : QAbstractButton(parent), sort(column.sort) {
        setObjectName(ControlName(column.sort));
        setText(column.title);
        setCheckable(true);
        setFocusPolicy(Qt::TabFocus);
    }

    const std::uint32_t sort;

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        const QBrush face(SystemColourOf(SystemColour::ButtonFace));
        qDrawWinPanel(&painter, rect(), palette(), isChecked() || isDown(), &face);
        painter.setPen(SystemColourOf(SystemColour::ButtonText));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
        if (hasFocus()) {
            QStyleOptionFocusRect option;
            option.initFrom(this);
            option.rect = rect().adjusted(2, 2, -2, -2);
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
        }
    }
};

class DatabaseDialog : public QDialog {
public:
    DatabaseDialog(QWidget *owner, DatabaseWindow &state)
        : QDialog(owner ? owner->window() : nullptr), state(state) {
        ui.setupUi(this);
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setFont(DialogFont());
        SetUpBoxControls(*this, HelpTopic);
        MakeList();
        MakeHeaders();
        ConnectButtons();
        ConnectNames();
        SetTabOrder();
        // In the proportion of a screen.
        const int width = sizeHint().width();
        setFixedWidth(width);
        resize(width, width * 3 / 4);
        layout()->activate();
        resize(width, height() - list->height() + list->HeightForWholeRows(list->height()));
        CentreWindow(*this);
        winId(); // so that messages during the opening have a window to belong to
        OpenDatabaseWindow(state, this);
        FollowOrder();
        list->setFocus();
    }

    ~DatabaseDialog() override {
        state.namesChanged = nullptr;
        CloseDatabaseWindow(state);
    }

    void accept() override {
        RunAlone([this] { EndWith(AcceptDatabaseWindow(state)); });
    }
    void reject() override {
        RunAlone([this] {
            EndWith(CancelDatabaseWindow(state) ? std::optional<int>(Rejected) : std::nullopt);
        });
    }

protected:
    void wheelEvent(QWheelEvent *event) override {
        ListScrollByWheel(state.records, event->angleDelta().y());
        event->accept();
    }
    // Shift keeps the voice back at OK, by the keyboard too.
    void keyPressEvent(QKeyEvent *event) override {
        const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (isEnter && event->modifiers().testFlag(Qt::ShiftModifier)) {
            QKeyEvent plain(event->type(), event->key(),
                            event->modifiers() & ~Qt::KeyboardModifiers(Qt::ShiftModifier));
            QDialog::keyPressEvent(&plain);
            return;
        }
        QDialog::keyPressEvent(event);
    }
    // A button that was pressed on something else.
    void mouseReleaseEvent(QMouseEvent *event) override {
        if (event->button() == Qt::RightButton) {
            list->ReleaseRightButton(event->globalPosition().toPoint());
        }
        QDialog::mouseReleaseEvent(event);
    }
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (watched == namesPopup && event->type() == QEvent::Hide) {
            // Once the drop-down list has taken over what was chosen in it, or with what runs next.
            isNameChosen = !isBusy;
            QMetaObject::invokeMethod(
                this, [this] { RunAlone([] {}); }, Qt::QueuedConnection);
        } else if (watched == ui.control_101 && event->type() == QEvent::Wheel) {
            wheelEvent(static_cast<QWheelEvent *>(event)); // the list's, not that of a closed box
            return true;
        }
        return QDialog::eventFilter(watched, event);
    }

private:
    void MakeList() {
        list = new RecordListView(
            state, [this](int command) { Run(command); }, this);
        const int scrollBar = list->verticalScrollBar()->sizeHint().width();
        list->setFixedWidth(RecordRowWidth + scrollBar + 2 * list->frameWidth());
        list->setMinimumHeight(FewestRows * state.records.itemHeight + 2 * list->frameWidth());
        ui.left->addWidget(list, 1);
    }

    void MakeHeaders() {
        const int height = fontMetrics().ascent() + fontMetrics().descent() + HeaderPadding;
        const int scrollBar = list->verticalScrollBar()->sizeHint().width();
        ui.headers->setFixedHeight(height);
        for (std::size_t i = 0; i < HeaderPlaces.size(); ++i) {
            auto *header = new HeaderButton(RecordColumns[i], ui.headers);
            const bool isLast = i + 1 == HeaderPlaces.size();
            header->setGeometry(HeaderPlaces[i].left, 0,
                                HeaderPlaces[i].width + (isLast ? scrollBar : 0), height);
            connect(header, &QAbstractButton::toggled, this,
                    [this, header] { Run(static_cast<int>(header->sort)); });
            headers[i] = header;
        }
    }

    void ConnectButtons() {
        const std::pair<QPushButton *, int> buttons[] = {
            {ui.control_103, CommandNewDatabase},
            {ui.control_104, CommandDeleteDatabase},
            {ui.control_105, CommandAuditionRecord},
            {ui.control_106, CommandRemoveRecord},
        };
        for (const auto &[button, command] : buttons) {
            connect(button, &QPushButton::clicked, this,
                    [this, command = command] { Run(command); });
        }
        const QFont sign = FontOfHeight("Arial", SignHeight, SignWeight);
        ui.control_103->setFont(sign);
        ui.control_104->setFont(sign);
    }

    void ConnectNames() {
        QComboBox &combo = *ui.control_101;
        state.namesChanged = [this, &combo] {
            const QSignalBlocker blocker(combo);
            combo.clear();
            for (const std::string &name : state.names) {
                combo.addItem(QString::fromStdString(name));
            }
            const auto shown = std::ranges::find(state.names, state.shownName);
            combo.setCurrentIndex(
                shown != state.names.end() ? static_cast<int>(shown - state.names.begin()) : -1);
        };
        // By its place: a name that is not UTF-8 is shown as another text.
        connect(&combo, &QComboBox::currentIndexChanged, this, [this](int index) {
            state.shownName = index < 0 ? "" : state.names[static_cast<std::size_t>(index)];
        });
        combo.installEventFilter(this);
        namesPopup = combo.view()->window();
        namesPopup->installEventFilter(this);
    }

    void SetTabOrder() {
        QWidget *last = ui.control_101;
        const auto putBehind = [&last](QWidget *next) {
            setTabOrder(last, next);
            last = next;
        };
        putBehind(ui.control_103);
        putBehind(ui.control_104);
        std::ranges::for_each(headers, putBehind);
        for (QWidget *next : std::initializer_list<QWidget *>{
                 list, ui.control_1, ui.control_2, ui.control_9, ui.control_105, ui.control_106}) {
            putBehind(next);
        }
    }

    // One thing at a time, which sees what came before it: an open editor is accepted, and the
    // records of a name that was chosen are shown. What comes meanwhile, or behind the end, is
    // dropped.
    void RunAlone(const std::function<void()> &act) {
        if (std::exchange(isBusy, true)) {
            return;
        }
        list->AcceptEditor();
        if (std::exchange(isNameChosen, false)) {
            ShowChosenDatabase(state);
        }
        act();
        isBusy = isEnded;
    }

    void EndWith(std::optional<int> result) {
        if (result) {
            isEnded = true;
            done(*result);
        }
    }

    void Run(int command) {
        if (command == CommandDatabaseOk) {
            PostOk();
            return;
        }
        RunAlone([this, command] {
            if (command == CommandEditRecord) {
                list->EditFieldUnderCursor();
            } else {
                RunDatabaseCommand(state, command);
            }
        });
        FollowOrder();
    }

    // OK, once the mouse or the menu that it came from is done; until then nothing else runs.
    void PostOk() {
        if (std::exchange(isBusy, true)) {
            return;
        }
        const auto accepts = [this] {
            isBusy = false;
            accept();
        };
        QMetaObject::invokeMethod(this, accepts, Qt::QueuedConnection);
    }

    void FollowOrder() {
        for (HeaderButton *header : headers) {
            const QSignalBlocker blocker(header);
            header->setChecked(header->sort == DatabaseSortMode);
        }
    }

    Ui::DatabaseManageBox ui;
    DatabaseWindow &state;
    RecordListView *list = nullptr;
    std::array<HeaderButton *, HeaderPlaces.size()> headers = {};
    QWidget *namesPopup = nullptr; // of control 101
    bool isNameChosen = false;     // control 101 has closed; its records are not shown yet
    bool isBusy = false;           // something runs, or nothing will any more
    bool isEnded = false;
};

int ShowDatabaseBox(QWidget *owner, DatabaseWindow &state) {
    DatabaseDialog box(owner, state);
    return box.exec();
}

void AuditionVoice(QWidget *owner, const VoiceObject &voice) {
    AuditionBox(owner, nullptr, &voice, CurrentDriverId, CurrentMidiPorts(), 0);
}

} // namespace

void UseDatabaseBox() {
    TheDatabaseViews.ShowBox = ShowDatabaseBox;
    TheDatabaseViews.AskForNewName = RunNewDatabaseBox;
    TheDatabaseViews.Audition = AuditionVoice;
    TheDatabaseViews.Print = PrintDatabase;
}

} // namespace tonewright
