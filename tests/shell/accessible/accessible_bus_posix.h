// What a screen reader is told of a running program: the bus between the programs of a desktop and
// its readers, and the tree of windows, controls and rows that a program offers there.
#pragma once

#include "support/x_display.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace tonewright {

// Numbers of roles and states, as the bus counts them.
enum class Role : std::uint32_t {
    CheckBox = 7,
    ComboBox = 11,
    Dialog = 16,
    Filler = 20, // what nothing is known of
    Frame = 23,
    Graphic = 27, // a picture
    List = 31,
    ListItem = 32,
    MenuItem = 35,
    PageTab = 37,
    Panel = 39,
    PushButton = 43,
    ScrollBar = 48,
    StatusBar = 54,
    Text = 61,
    ToolBar = 63,
    Application = 75,
};
enum class State {
    Enabled = 8,
    Focused = 12,
    Pressed = 20,
    Selected = 23,
};

// Something that a program offers on the bus.
struct Accessible {
    QString service, path;

    bool operator==(const Accessible &) const = default;
};

// What it says of itself, and of what it holds.
struct AccessibleNode {
    Accessible at;
    QString name, description;
    Role role = Role::Filler;
    std::uint64_t states = 0;
    std::vector<AccessibleNode> children;

    bool Has(State state) const;
    // The first one in the tree, itself or below, of that role, and of that name when one is given;
    // nullptr without one.
    const AccessibleNode *Find(Role wanted, const QString &called = {}) const;
    // All in the tree that `fits` is true for, in the order of the tree.
    std::vector<const AccessibleNode *>
    FindAll(const std::function<bool(const AccessibleNode &)> &fits) const;
    // A line for each, for people.
    std::string Text(int depth = 0) const;
};

// A desktop with a screen reader's bus.
class AccessibleBus : public QObject {
    Q_OBJECT

public:
    ~AccessibleBus() override;

    XDisplay display;
    struct Event {
        QString kind, detail;
        int number = 0;
        Accessible source;
    };
    std::vector<Event> events; // as they were told; Hear adds those since

    // False when there is no X server or no bus to be had.
    bool Start();
    // What a program on the display is to be started with beside that display's own, so that it
    // stands on the bus.
    Strings Environment() const;

    // The application of a name; nothing while there is none.
    std::optional<Accessible> Application(const QString &name) const;
    // Everything of it and below it, as far as it is there.
    AccessibleNode Tree(const Accessible &root) const;
    // It alone.
    AccessibleNode Node(const Accessible &at) const;
    std::vector<Accessible> Children(const Accessible &at) const;
    // Names of its actions.
    QStringList Actions(const Accessible &at) const;
    // Asks for an action; false when there is none of that name. What it opens may answer late.
    bool Act(const Accessible &at, const QString &action) const;
    bool SelectRow(const Accessible &list, int row) const;
    // Whether another one is its label.
    bool IsLabelled(const Accessible &at) const;
    // Where it stands on the screen.
    ScreenPlace PlaceOf(const Accessible &at) const;
    void Hear();

private Q_SLOTS:
    void Told(const QDBusMessage &message);

private:
    QDBusMessage Call(const Accessible &at, const QString &interface, const QString &method,
                      const QVariantList &arguments = {}) const;
    QVariant Property(const Accessible &at, const QString &interface, const QString &name) const;

    std::optional<Process> session;
    std::string address; // of the session's bus
    QDBusConnection bus{QString()};
};

} // namespace tonewright
