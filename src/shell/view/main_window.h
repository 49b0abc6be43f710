// The main window: menu bar, tool bar, the list of voices, status bar, and the background behind
// them.
#pragma once

#include "shell/start_up.h"

#include <QPixmap>
#include <QWidget>

#include <map>
#include <string>
#include <vector>

class QAction;
class QMenuBar;

namespace tonewright {

class ToolBar;
class VoiceListView;
struct MenuRow;

class MainWindow : public QWidget {
public:
    // A window of `size` pixels with its frame, centred on the screen, connected to TheShellWindow.
    // Its creation reads the settings when `readSettings`.
    MainWindow(WindowSize size, bool readSettings);
    ~MainWindow() override;

    // The two parts that start-up adds once the window stands.
    void AddBars();
    void AddList();

    VoiceListView *List() const { return list; }
    ToolBar *Tools() const { return toolBar; }
    // The action of a command in the menu bar, or nullptr.
    QAction *MenuAction(int commandId) const;

    // Ends the program as a close does, out of whatever dialog stands and without a question.
    void EndAtOnce();

    // Path of the picture in the lower right corner of the background.
    std::string backgroundPath;
    // Has the picture loaded anew at the next painting.
    void DropBackground();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void ConnectShell();
    void MakeMenus();
    void AddMenu(const MenuRow &row);
    void FollowCommands(); // which are enabled, and which checked
    void MakeAccelerators();
    void PlaceChildren();
    void Finish(void (*save)());

    QMenuBar *menuBar = nullptr; // children, owned by this widget
    ToolBar *toolBar = nullptr;
    QWidget *statusBar = nullptr;
    VoiceListView *list = nullptr;
    std::map<int, QAction *> actions;

    enum class Background { NotLoaded, Loaded, Missing };
    Background backgroundState = Background::NotLoaded;
    QPixmap background;
    bool hintShown = false; // the status bar tells of an entry of a menu
    bool closing = false;   // the close message has been sent
    bool finished = false;  // what a close writes has been written
};

} // namespace tonewright
