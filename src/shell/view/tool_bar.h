// The tool bar: one drawn button for each command of the tool bar's list.
#pragma once

#include <QAbstractButton>
#include <QWidget>

#include <map>

namespace tonewright {

class ToolButton : public QAbstractButton {
public:
    // `name` is for those who do not see the picture.
    ToolButton(int commandId, const QString &name, const QString &tip, QWidget *parent);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int commandId;
};

class ToolBar : public QWidget {
public:
    explicit ToolBar(QWidget *parent);
    void FollowCommands(); // a button is enabled as its command is
    void RepaintButtons();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::map<int, ToolButton *> buttons; // owned by this widget as their parent
};

} // namespace tonewright
