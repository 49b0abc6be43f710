// Starts the buses, and asks over them.
#include "accessible_bus_posix.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <algorithm>
#include <filesystem>

namespace tonewright {
namespace {

using namespace std::chrono_literals;

constexpr auto StartTime = 60s;   // of a bus, on a machine that has much to do
constexpr int AnswerTime = 30000; // milliseconds

const QString SessionName = "tonewright-test-session";
const QString BusName = "tonewright-test-accessibility";
const QString AccessibleInterface = "org.a11y.atspi.Accessible";
const QString ActionInterface = "org.a11y.atspi.Action";
const QString PropertiesInterface = "org.freedesktop.DBus.Properties";
const Accessible Registry = {"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};

// Connects as soon as there is a bus that answers.
std::optional<QDBusConnection> Connect(const QString &address, const QString &name) {
    std::optional<QDBusConnection> connection;
    Becomes(
        [&] {
            QDBusConnection::disconnectFromBus(name);
            connection = QDBusConnection::connectToBus(address, name);
            return connection->isConnected();
        },
        StartTime);
    return connection->isConnected() ? connection : std::nullopt;
}

std::vector<Accessible> ReadAccessibles(const QDBusArgument &list) {
    std::vector<Accessible> read;
    for (list.beginArray(); !list.atEnd();) {
        Accessible next;
        QDBusObjectPath path;
        list.beginStructure();
        list >> next.service >> path;
        list.endStructure();
        next.path = path.path();
        read.push_back(next);
    }
    list.endArray();
    return read;
}

} // namespace

bool AccessibleNode::Has(State state) const {
    return states >> static_cast<int>(state) & 1;
}

const AccessibleNode *AccessibleNode::Find(Role wanted, const QString &called) const {
    const auto found = FindAll([&](const AccessibleNode &node) {
        return node.role == wanted && (called.isNull() || node.name == called);
    });
    return found.empty() ? nullptr : found.front();
}

std::vector<const AccessibleNode *>
AccessibleNode::FindAll(const std::function<bool(const AccessibleNode &)> &fits) const {
    std::vector<const AccessibleNode *> found;
    if (fits(*this)) {
        found.push_back(this);
    }
    for (const AccessibleNode &child : children) {
        std::ranges::copy(child.FindAll(fits), std::back_inserter(found));
    }
    return found;
}

std::string AccessibleNode::Text(int depth) const {
    std::string text(2 * static_cast<std::size_t>(depth), ' ');
    text += "role " + std::to_string(static_cast<int>(role)) + " \"" + name.toStdString() + "\"";
    if (!description.isEmpty()) {
        text += " (" + description.toStdString() + ")";
    }
    const std::pair<State, const char *> words[] = {
        {State::Enabled, "enabled"},
        {State::Focused, "focused"},
        {State::Pressed, "pressed"},
        {State::Selected, "selected"},
    };
    for (const auto &[state, word] : words) {
        text += Has(state) ? std::string(" ") + word : "";
    }
    text += "\n";
    for (const AccessibleNode &child : children) {
        text += child.Text(depth + 1);
    }
    return text;
}

AccessibleBus::~AccessibleBus() {
    bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(BusName);
    QDBusConnection::disconnectFromBus(SessionName);
}

bool AccessibleBus::Start() {
    if (!display.Start()) {
        return false;
    }
    const std::string runtime = display.folder.File("runtime");
    std::filesystem::create_directory(runtime);
    std::filesystem::permissions(runtime, std::filesystem::perms::owner_all);
    address = "unix:path=" + runtime + "/session";
    Strings environment = display.environment;
    std::ranges::copy(Environment(), std::back_inserter(environment));
    environment.push_back("XDG_RUNTIME_DIR=" + runtime);
    environment.push_back("GSETTINGS_BACKEND=memory");
    session.emplace(
        Strings{"dbus-daemon", "--session", "--nofork", "--nosyslog", "--address", address},
        environment, -1, -1);
    const auto connection = Connect(QString::fromStdString(address), SessionName);
    if (!connection) {
        return false;
    }
    // The first who asks for the other bus has it started.
    auto question = QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus",
                                                   "GetAddress");
    const QDBusMessage answer = connection->call(question, QDBus::Block, AnswerTime);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        return false;
    }
    const auto accessibility = Connect(answer.arguments().value(0).toString(), BusName);
    if (!accessibility) {
        return false;
    }
    bus = *accessibility;
    // Programs tell what somebody wants to hear.
    for (const QString kind : {"object:", "focus:", "window:"}) {
        Call({Registry.service, "/org/a11y/atspi/registry"}, "org.a11y.atspi.Registry",
             "RegisterEvent", {kind});
    }
    return bus.connect(QString(), QString(), "org.a11y.atspi.Event.Object", QString(), this,
                       SLOT(Told(QDBusMessage))) &&
           bus.connect(QString(), QString(), "org.a11y.atspi.Event.Focus", QString(), this,
                       SLOT(Told(QDBusMessage)));
}

Strings AccessibleBus::Environment() const {
    return {"DBUS_SESSION_BUS_ADDRESS=" + address, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"};
}

QDBusMessage AccessibleBus::Call(const Accessible &at, const QString &interface,
                                 const QString &method, const QVariantList &arguments) const {
    auto question = QDBusMessage::createMethodCall(at.service, at.path, interface, method);
    question.setArguments(arguments);
    return bus.call(question, QDBus::Block, AnswerTime);
}

QVariant AccessibleBus::Property(const Accessible &at, const QString &interface,
                                 const QString &name) const {
    const QVariantList answer = Call(at, PropertiesInterface, "Get", {interface, name}).arguments();
    return answer.value(0).value<QDBusVariant>().variant();
}

std::vector<Accessible> AccessibleBus::Children(const Accessible &at) const {
    const QDBusMessage answer = Call(at, AccessibleInterface, "GetChildren");
    return answer.signature() == "a(so)"
               ? ReadAccessibles(answer.arguments().value(0).value<QDBusArgument>())
               : std::vector<Accessible>();
}

AccessibleNode AccessibleBus::Node(const Accessible &at) const {
    AccessibleNode node;
    node.at = at;
    node.name = Property(at, AccessibleInterface, "Name").toString();
    node.description = Property(at, AccessibleInterface, "Description").toString();
    node.role =
        static_cast<Role>(Call(at, AccessibleInterface, "GetRole").arguments().value(0).toUInt());
    const auto words =
        qdbus_cast<QList<quint32>>(Call(at, AccessibleInterface, "GetState").arguments().value(0));
    for (qsizetype i = 0; i < words.size() && i < 2; ++i) {
        node.states |= std::uint64_t{words[i]} << 32 * i;
    }
    return node;
}

AccessibleNode AccessibleBus::Tree(const Accessible &root) const {
    AccessibleNode node = Node(root);
    for (const Accessible &child : Children(root)) {
        node.children.push_back(Tree(child));
    }
    return node;
}

std::optional<Accessible> AccessibleBus::Application(const QString &name) const {
    for (const Accessible &application : Children(Registry)) {
        if (Property(application, AccessibleInterface, "Name").toString() == name) {
            return application;
        }
    }
    return std::nullopt;
}

QStringList AccessibleBus::Actions(const Accessible &at) const {
    QStringList names;
    const int count = Property(at, ActionInterface, "NActions").toInt();
    for (int index = 0; index < count; ++index) {
        names += Call(at, ActionInterface, "GetName", {index}).arguments().value(0).toString();
    }
    return names;
}

bool AccessibleBus::Act(const Accessible &at, const QString &action) const {
    const auto index = static_cast<int>(Actions(at).indexOf(action));
    auto request = QDBusMessage::createMethodCall(at.service, at.path, ActionInterface, "DoAction");
    request.setArguments({index});
    return index >= 0 && bus.send(request);
}

bool AccessibleBus::SelectRow(const Accessible &list, int row) const {
    const QDBusMessage answer = Call(list, "org.a11y.atspi.Table", "AddRowSelection", {row});
    return answer.signature() == "b" && answer.arguments().value(0).toBool();
}

bool AccessibleBus::IsLabelled(const Accessible &at) const {
    constexpr std::uint32_t LabelledBy = 2;
    const QDBusMessage answer = Call(at, AccessibleInterface, "GetRelationSet");
    if (answer.signature() != "a(ua(so))") {
        return false;
    }
    bool isLabelled = false;
    const auto relations = answer.arguments().value(0).value<QDBusArgument>();
    for (relations.beginArray(); !relations.atEnd();) {
        std::uint32_t kind = 0;
        relations.beginStructure();
        relations >> kind;
        ReadAccessibles(relations);
        relations.endStructure();
        isLabelled = isLabelled || kind == LabelledBy;
    }
    return isLabelled;
}

ScreenPlace AccessibleBus::PlaceOf(const Accessible &at) const {
    constexpr std::uint32_t OnTheScreen = 0;
    const QDBusMessage answer = Call(at, "org.a11y.atspi.Component", "GetExtents", {OnTheScreen});
    ScreenPlace place;
    if (answer.signature() == "(iiii)") {
        const auto area = answer.arguments().value(0).value<QDBusArgument>();
        area.beginStructure();
        area >> place.x >> place.y >> place.width >> place.height;
        area.endStructure();
    }
    return place;
}

void AccessibleBus::Hear() {
    QCoreApplication::processEvents();
}

void AccessibleBus::Told(const QDBusMessage &message) {
    const QVariantList arguments = message.arguments();
    events.push_back({.kind = message.member(),
                      .detail = arguments.value(0).toString(),
                      .number = arguments.value(1).toInt(),
                      .source = {message.service(), message.path()}});
}

} // namespace tonewright
