// Builds and lays out the main window and hands its events on to the shell's engine.
#include "shell/view/main_window.h"

#include "common/desktop.h"
#include "common/folders.h"
#include "common/settings.h"
#include "common/view/accessible_role.h"
#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "common/view/status_bar.h"
#include "common/view/system_colours.h"
#include "common/view/pictures.h"
#include "common/view/theme.h"
#include "common/view/window_title.h"
#include "core/current.h"
#include "database/database_window.h"
#include "database/view/database_box.h"
#include "database/view/print_reports.h"
#include "extras/list_access.h"
#include "extras/view/archive_window.h"
#include "extras/view/dump_box.h"
#include "midi/midi_api.h"
#include "midi/view/audition_box.h"
#include "shell/clipboard.h"
#include "shell/command_queue.h"
#include "shell/command_table.h"
#include "shell/history.h"
#include "shell/list_access_shell.h"
#include "shell/list_state.h"
#include "shell/save_at_end.h"
#include "shell/settings_file.h"
#include "shell/shell_window.h"
#include "shell/show_document.h"
#include "shell/view/about_box.h"
#include "shell/view/history_menu.h"
#include "shell/view/instruments_box.h"
#include "shell/view/midi_devices_box.h"
#include "shell/view/select_synth_box.h"
#include "shell/view/settings_sheet.h"
#include "shell/view/system_information_box.h"
#include "shell/view/tip_box.h"
#include "shell/view/tool_bar.h"
#include "shell/view/voice_list_view.h"
#include "shell/view/wizard_box.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QProxyStyle>
#include <QShortcut>
#include <QStatusTipEvent>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>

namespace tonewright {
namespace {

constexpr int ListInset = 16; // pixels between the list and the bars and edges
constexpr int ProgramIcon = 103;
// What the platform's frame adds to a window that cannot be resized, in pixels.
constexpr int FrameWidth = 4;
constexpr int CaptionHeight = 23;

// Has the menus behind the menu bar's separator stand at its right end.
class RightMenuStyle : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override {
        return hint == SH_DrawMenuBarSeparator ? 1
                                               : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

// The toolkit takes the first mark of a text for its key, and leaves a second one in what it says
// of the entry to those who do not see it.
QString WithOneMnemonic(const std::string &text) {
    QString marked = QString::fromStdString(text);
    const auto first = marked.indexOf('&');
    marked.remove('&');
    return first < 0 ? marked : marked.insert(first, '&');
}

} // namespace

MainWindow::MainWindow(WindowSize size, bool readSettings) {
    setObjectName("TonewrightApplication");
    SetAccessibleRole(*this, QAccessible::Window);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                   Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                   Qt::WindowCloseButtonHint);
    setWindowIcon(QIcon(PictureOf(ProgramIcon, {256, 256})));
    setFixedSize(size.width - 2 * FrameWidth, size.height - CaptionHeight - 2 * FrameWidth);
    backgroundPath = PicturesFile();
    ConnectShell();
    MakeMenus();
    if (readSettings) {
        ConfigRead();
        FollowCommands(); // what is checked is a setting
    }
    QObject::connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
                     ClipboardChanged);
    MakeAccelerators();
    CentreWindow(*this);
    MainListState = {};
    RefreshCopy();
    RefreshCommands();
    MainListState.dirty = false;
}

MainWindow::~MainWindow() {
    DropArchiveWindow();
    delete list; // before the voices that it shows
    FreeListBlocks(MainList);
    MainItemFonts = {};
    HistoryMenuChanged = nullptr;
    MainListState = {};
    TheShellWindow = {};
    TheListAccess = {};
    TheDatabaseViews = {};
}

void MainWindow::ConnectShell() {
    TheShellWindow.window = this;
    TheShellWindow.SetTitle = [this](const std::string &title) {
        setWindowTitle(WindowTitleOf(QString::fromStdString(title)));
    };
    TheShellWindow.CommandStatesChanged = [this] { FollowCommands(); };
    TheShellWindow.RepaintList = [this] {
        if (list) {
            list->viewport()->update();
        }
    };
    TheShellWindow.Raise = [this] {
        raise();
        activateWindow();
    };
    TheShellWindow.Close = [this] {
        closing = true;
        close();
    };
    TheShellWindow.Wake = [this] { QTimer::singleShot(0, this, [] { RunNextPosted(); }); };
    TheShellWindow.ShowAboutBox = [this] { ShowAboutBox(this); };
    TheShellWindow.ShowTipBox = [this] { ShowTipBox(this); };
    TheShellWindow.ShowSystemInformation = [this] {
        ShowSystemInformation(this, ReadSystemFacts());
    };
    TheShellWindow.AskForWizard = [this] { return AskForWizard(this); };
    TheShellWindow.ShowWizard = ShowWizardBox;
    TheShellWindow.ShowSettings = [this] { SetupShow(this); };
    TheShellWindow.DropBackground = [this] { DropBackground(); };
    TheShellWindow.RepaintWindow = [this] { update(); };
    TheShellWindow.RepaintTools = [this] {
        if (toolBar) {
            toolBar->RepaintButtons();
        }
    };
    TheShellWindow.ShowAuditionBox = [this](int row) {
        return AuditionBox(this, &MainList, nullptr, CurrentDriverId, CurrentMidiPorts(), row);
    };
    TheShellWindow.AuditionVoice = [](QWidget *owner, const VoiceObject &voice, DriverId family,
                                      MidiPorts ports) {
        return AuditionBox(owner, nullptr, &voice, family, ports, 0);
    };
    TheShellWindow.ShowSelectSynthBox = [this] {
        return SelectSynthesizer(this, CurrentSelectParams());
    };
    TheShellWindow.ShowMidiDevicesBox = [this] { ShowMidiDevices(this); };
    TheShellWindow.ShowInstrumentsBox = [this] { ShowInstrumentsBox(this); };
    TheShellWindow.ShowDumpBox = [this](const std::string &path) { ShowDumpBox(this, path); };
    TheShellWindow.ShowArchive = ShowArchiveWindow;
    UseMainList();
    UseDatabaseBox();
    TheDatabaseViews.RepaintVoices = RepaintList;
    TheShellWindow.PrintList = [this] {
        return PrintVoiceList(this, MainList, CurrentDocumentPath.c_str());
    };
}

void MainWindow::MakeMenus() {
    menuBar = new QMenuBar(this);
    auto *style = new RightMenuStyle;
    style->setParent(menuBar);
    menuBar->setStyle(style);
    for (const MenuRow &row : MenuBar()) {
        if (row.atTheRight) {
            menuBar->addSeparator();
        }
        AddMenu(row);
    }
    QMenu *fileMenu = menuBar->actions().constFirst()->menu();
    PrepareHistoryMenu(fileMenu);
    HistoryMenuChanged = [fileMenu] { RebuildHistoryMenu(fileMenu); };
}

void MainWindow::AddMenu(const MenuRow &row) {
    QMenu *menu = menuBar->addMenu(row.label);
    menu->setObjectName(row.label);
    menu->installEventFilter(this);
    for (const int id : row.items) {
        if (id == 0) {
            menu->addSeparator();
            continue;
        }
        const CommandRow &command = *CommandOf(id);
        QAction *action = menu->addAction(WithOneMnemonic(MenuText(command)));
        action->setMenuRole(QAction::NoRole);
        action->setEnabled(CommandAllowed(id));
        action->setCheckable(command.toggles != nullptr);
        action->setStatusTip(command.hint);
        QObject::connect(action, &QAction::triggered, [id] { RunUserCommand(id); });
        if (command.toggles) {
            // The toolkit toggles the check mark by itself, whatever the command does.
            QObject::connect(action, &QAction::triggered, this, &MainWindow::FollowCommands);
        }
        actions[id] = action;
    }
}

void MainWindow::FollowCommands() {
    for (const auto &[id, action] : actions) {
        action->setEnabled(CommandAllowed(id));
        if (const BoolSettingValue *setting = CommandOf(id)->toggles) {
            action->setChecked(*setting != 0);
        }
    }
    if (toolBar) {
        toolBar->FollowCommands();
    }
}

void MainWindow::MakeAccelerators() {
    for (const CommandRow &row : Commands()) {
        if (!row.key) {
            continue;
        }
        auto *shortcut = new QShortcut(QKeySequence(row.key), this);
        QObject::connect(shortcut, &QShortcut::activated, [id = row.id] { RunUserCommand(id); });
    }
}

void MainWindow::AddBars() {
    statusBar = CreateStatusBar(this);
    AddStatusPane(this, "", 300, StatusPaneText);
    AddStatusPane(this, "", 300, StatusPaneMeter);
    toolBar = new ToolBar(this);
    PlaceChildren();
}

void MainWindow::AddList() {
    list = new VoiceListView(this);
    // Not the window itself: the menu bar has the desktop's font, as its menus have.
    for (QWidget *child : std::initializer_list<QWidget *>{toolBar, statusBar, list}) {
        child->setFont(DialogFont());
    }
    PlaceChildren();
    list->setFocus();
}

QAction *MainWindow::MenuAction(int commandId) const {
    const auto found = actions.find(commandId);
    return found == actions.end() ? nullptr : found->second;
}

void MainWindow::PlaceChildren() {
    const int menuHeight = menuBar->sizeHint().height();
    menuBar->setGeometry(0, 0, width(), menuHeight);
    int top = menuHeight;
    if (toolBar) {
        const int barHeight = ThemeGetMetric(THEME_METRIC_TOOLBAR_HEIGHT);
        toolBar->setGeometry(0, top, width(), barHeight);
        top += barHeight;
    }
    const int bottom = statusBar ? height() - statusBar->height() : height();
    if (list) {
        // A list box shows whole rows only.
        const int available = bottom - top - 2 * ListInset;
        list->setGeometry(ListInset, top + ListInset, width() - 2 * ListInset,
                          list->HeightForWholeRows(available));
    }
}

void MainWindow::DropBackground() {
    backgroundState = Background::NotLoaded;
    background = {};
}

void MainWindow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QColor workspace = SystemColourOf(SystemColour::AppWorkspace);
    if (backgroundState == Background::NotLoaded) {
        QImage picture(QString::fromStdString(backgroundPath));
        backgroundState = picture.isNull() ? Background::Missing : Background::Loaded;
        if (picture.hasAlphaChannel()) {
            QImage blended(picture.size(), QImage::Format_RGB32);
            blended.fill(workspace);
            QPainter(&blended).drawImage(0, 0, picture);
            picture = blended;
        }
        background = QPixmap::fromImage(picture);
    }
    if (backgroundState == Background::Missing) {
        painter.fillRect(rect(), SystemColourOf(SystemColour::ButtonFace));
        return;
    }
    painter.fillRect(rect(), workspace);
    painter.drawPixmap(width() - background.width(), height() - background.height(), background);
}

void MainWindow::resizeEvent(QResizeEvent *) {
    PlaceChildren();
}

void MainWindow::changeEvent(QEvent *event) {
    if (event->type() == QEvent::FontChange) {
        PlaceChildren(); // the menu bar has another height
    }
    QWidget::changeEvent(event);
}

void MainWindow::wheelEvent(QWheelEvent *event) {
    ListScrollByWheel(MainList, event->angleDelta().y());
}

bool MainWindow::event(QEvent *event) {
    if (event->type() != QEvent::StatusTip) {
        return QWidget::event(event);
    }
    // An empty one takes the last one away.
    const QString hint = static_cast<QStatusTipEvent *>(event)->tip();
    if (!hint.isEmpty()) {
        SetStatusText(this, hint.toStdString());
    } else if (hintShown) {
        RefreshStatus();
    }
    hintShown = !hint.isEmpty();
    return true;
}

// F1 on an entry of a menu.
bool MainWindow::eventFilter(QObject *object, QEvent *event) {
    auto *menu = qobject_cast<QMenu *>(object);
    if (!menu || event->type() != QEvent::KeyPress ||
        static_cast<QKeyEvent *>(event)->key() != Qt::Key_F1) {
        return false;
    }
    const auto chosen = std::ranges::find_if(
        actions, [menu](const auto &entry) { return entry.second == menu->activeAction(); });
    if (chosen == actions.end() || !CommandOf(chosen->first)->topic.name) {
        return false;
    }
    while (QWidget *popup = QApplication::activePopupWidget()) {
        popup->close();
    }
    ShowHelpTopic(this, CommandOf(chosen->first)->topic);
    return true;
}

void MainWindow::closeEvent(QCloseEvent *event) {
    if (!closing && !SomethingIsRunning()) {
        // The frame's close button takes the same way as Exit, so that the prompt runs.
        RunUserCommand(CommandExit);
    }
    if (!closing) {
        event->ignore();
        return;
    }
    Finish([] {
        SaveSettings();
        SaveHistory();
    });
    event->accept();
    QCoreApplication::quit();
}

void MainWindow::Finish(void (*save)()) {
    if (!finished) {
        finished = true;
        ClearPosted();
        EndArchiveWindow();
        save();
    }
}

void MainWindow::EndAtOnce() {
    closing = true;
    TheMidi.TransferCancelled = [] { return true; }; // nothing is sent behind a prompt that goes
    Finish(SaveWhatChanged); // the session may have had it saved before it ended the program
    hide();
    // Out of every loop of events, that of the program and those of dialogs, which then count as
    // cancelled; a dialog that a command goes on to show is cancelled at once.
    QCoreApplication::exit();
}

} // namespace tonewright
