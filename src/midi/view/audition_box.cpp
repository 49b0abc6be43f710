// Paints the keys, takes presses and releases of mouse and computer keys, and keeps the two scroll
// bars.
#include "midi/view/audition_box.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/dialog_controls.h"
#include "common/view/fonts.h"
#include "common/view/scroll_actions.h"
#include "common/view/window_title.h"
#include "core/dispatch.h"
#include "midi/audition.h"
#include "midi/computer_keys.h"
#include "midi/view/instrument_strip.h"
#include "ui_AuditionBox.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <optional>
#include <utility>

namespace tonewright {
namespace {

constexpr int ThumbLength = 2; // of a scroll bar, in steps
constexpr int HeldKeyMilliseconds = 1000;
constexpr const char *HelpTopic = "AUDITION";

QColor ColourOf(KeyColour colour) {
    return QColor(colour.red, colour.green, colour.blue);
}

class KeyButton;

// The key that was pressed without a mouse, until its time is over.
struct HeldKey {
    KeyButton *key = nullptr;
    QTimer end;
};

// A part of a key: sounds at the press of the left button and ends the note at its release,
// wherever the mouse is by then.
class KeyButton : public QWidget {
public:
    KeyButton(const KeyPart &part, AuditionState &state, HeldKey &held, QWidget *keyboard)
        : QWidget(keyboard), part(part), state(state), held(held) {
        setObjectName(ControlName(part.control));
        setWindowTitle(QString::number(part.key));
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

    const KeyPart part;

    // The part that a finger would touch, of which the key's state is seen.
    KeyButton &Foot() const {
        return *ControlOf<KeyButton>(parentWidget(), LowerPartControl + part.key);
    }
    bool IsDown() const { return Foot().holders > 0; }
    // The key has one that holds it down more, or less.
    void MarkKey(bool down) {
        KeyButton &foot = Foot();
        foot.holders = std::max(0, foot.holders + (down ? 1 : -1));
        foot.update();
        QAccessible::State change;
        change.pressed = true;
        QAccessibleStateChangeEvent event(&foot, change);
        QAccessible::updateAccessibility(&event);
    }
    // Plays the note for a while, for those who press without holding. A key that the mouse holds
    // down plays on instead.
    void PlayForAWhile() {
        EndHeldKey(held);
        if (state.sustainedNote == NoNote) {
            Press();
            held.key = this;
            held.end.start(HeldKeyMilliseconds);
        }
    }
    static void EndHeldKey(HeldKey &held) {
        held.end.stop();
        if (KeyButton *key = std::exchange(held.key, nullptr)) {
            key->Release();
        }
    }

protected:
    void mousePressEvent(QMouseEvent *event) override {
        if (event->button() == Qt::LeftButton) {
            EndHeldKey(held);
            Press();
        }
    }
    void mouseReleaseEvent(QMouseEvent *event) override {
        if (event->button() == Qt::LeftButton) {
            Release();
        }
    }

    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        const bool black = part.kind == KeyPartKind::Black;
        painter.fillRect(rect(), ColourOf(black ? state.colours.blackKey : state.colours.whiteKey));
        if (holders > 0) {
            DrawMark(painter);
        }
        if (black) {
            return;
        }
        // Filled, not drawn as lines, so that edges of neighbours join at any scale of the screen.
        const QColor outline = ColourOf(state.colours.outline);
        painter.fillRect(0, 0, 1, height(), outline);
        painter.fillRect(width() - 1, 0, 1, height(), outline);
        const int edge = part.kind == KeyPartKind::UpperWhite ? 0 : height() - 1;
        painter.fillRect(0, edge, width(), 1, outline);
    }

private:
    void Press() {
        PressAuditionKey(state, part.key);
        MarkKey(true);
    }
    void Release() {
        ReleaseAuditionKey(state);
        MarkKey(false);
    }

    // A dot in the colour of the other keys.
    void DrawMark(QPainter &painter) const {
        const bool black = part.kind == KeyPartKind::Black;
        const double radius = height() / (black ? 24.0 : 14.0);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ColourOf(black ? state.colours.whiteKey : state.colours.blackKey));
        painter.drawEllipse(QPointF(width() / 2.0, height() - 3 * radius), radius, radius);
        painter.restore();
    }

    AuditionState &state;
    HeldKey &held;
    int holders = 0; // mouse and keys of the computer that hold it down
};

// A key as a screen reader finds it: one button, named by its note.
class AccessibleKey : public QAccessibleWidget {
public:
    explicit AccessibleKey(KeyButton &key)
        : QAccessibleWidget(&key, QAccessible::Button), key(key) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? QString::fromStdString(AuditionKeyName(key.part.key))
                                         : QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.pressed = key.IsDown();
        return state;
    }
    // Both parts of a white key.
    QRect rect() const override {
        const auto *upper =
            ControlOf<KeyButton>(key.parentWidget(), UpperPartControl + key.part.key);
        const QRect area = QAccessibleWidget::rect();
        return upper ? area.united({upper->mapToGlobal(QPoint()), upper->size()}) : area;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString &name) override {
        if (name == pressAction()) {
            key.PlayForAWhile();
        }
    }

private:
    KeyButton &key;
};

// The keys from left to right, each once.
class AccessibleKeyboard : public QAccessibleWidget {
public:
    explicit AccessibleKeyboard(QWidget *keyboard)
        : QAccessibleWidget(keyboard, QAccessible::Grouping) {}

    int childCount() const override { return AuditionKeyCount; }
    QAccessibleInterface *child(int index) const override {
        return QAccessible::queryAccessibleInterface(
            ControlOf<KeyButton>(widget(), LowerPartControl + index));
    }
    int indexOfChild(const QAccessibleInterface *child) const override {
        const auto *key = dynamic_cast<KeyButton *>(child->object());
        return key ? key->part.key : -1;
    }
    QAccessibleInterface *childAt(int x, int y) const override {
        const auto *key =
            dynamic_cast<KeyButton *>(widget()->childAt(widget()->mapFromGlobal(QPoint(x, y))));
        return key ? child(key->part.key) : nullptr;
    }
};

QAccessibleInterface *MakeAccessible(const QString & /*className*/, QObject *object) {
    if (auto *key = dynamic_cast<KeyButton *>(object)) {
        return new AccessibleKey(*key);
    }
    auto *widget = qobject_cast<QWidget *>(object);
    const bool holdsKeys = widget && !widget->children().isEmpty() &&
                           dynamic_cast<KeyButton *>(widget->children().constFirst());
    return holdsKeys ? new AccessibleKeyboard(widget) : nullptr;
}

// A scroll bar with its value beside it. `store` limits a position, keeps it and returns it.
struct BarRow {
    QScrollBar *bar;
    QLabel *text;
    int lowest, highest;
    int shownAbove; // what is added to the position where it is shown
    int (*store)(int position);
};

void SetUpBar(const BarRow &row, int position) {
    QScrollBar *bar = row.bar;
    bar->setRange(row.lowest, row.highest);
    bar->setSingleStep(1);
    bar->setPageStep(ThumbLength);
    bar->setValue(position);
    const auto show = [row](int value) {
        row.text->setText(QString::number(value + row.shownAbove));
    };
    show(bar->value());
    TakeScrollActions(bar, [bar](ScrollAction action, int thumb) {
        int target = bar->value();
        ScrollStep(action, thumb, bar->maximum(), target);
        bar->setSliderPosition(target); // which limits it to the range
    });
    QObject::connect(bar, &QScrollBar::valueChanged, bar,
                     [row, show](int value) { show(row.store(value)); });
}

// What a platform adds to the number that a PC keyboard gives the place of a key; nothing where the
// platform does not tell places.
std::optional<std::uint32_t> AddedToPlaces() {
    const QString platform = QGuiApplication::platformName();
    if (platform == "xcb" || platform.startsWith("wayland")) {
        return 8;
    }
    return platform == "windows" ? std::optional<std::uint32_t>(0) : std::nullopt;
}

// By its place, so that the piano has its shape whatever is printed on the keys.
std::optional<int> PianoKeyOf(const QKeyEvent &event) {
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) {
        return std::nullopt;
    }
    const auto added = AddedToPlaces();
    if (added && event.nativeScanCode() > *added) {
        return PianoKeyAtPlace(event.nativeScanCode() - *added);
    }
    const bool isOfNumberPad = event.modifiers().testFlag(Qt::KeypadModifier);
    return isOfNumberPad ? std::nullopt : PianoKeyOfLetter(event.key());
}

// The same for press and release, also when Shift has changed the letter meanwhile.
std::uint32_t IdOf(const QKeyEvent &event) {
    if (AddedToPlaces() && event.nativeScanCode() != 0) {
        return event.nativeScanCode();
    }
    return event.nativeVirtualKey() != 0 ? event.nativeVirtualKey()
                                         : static_cast<std::uint32_t>(event.key());
}

class AuditionDialog : public QDialog {
public:
    AuditionDialog(QWidget *owner, AuditionState &state)
        : QDialog(owner ? owner->window() : nullptr), state(state) {
        ui.setupUi(this);
        // No close button: the box ends by "Close" only.
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
        MakeControls();
        setFont(DialogFont());
        PlaceKeys();
        CentreWindow(*this);
        winId(); // so that messages during the opening have a window to belong to
        if (!OpenAudition(state, this)) {
            QMetaObject::invokeMethod(this, &QDialog::accept, Qt::QueuedConnection);
        }
    }

    ~AuditionDialog() override {
        qApp->removeEventFilter(this);
        EndAudition(state);
    }

    // Esc and the window manager's close do nothing.
    void reject() override {}

protected:
    void changeEvent(QEvent *event) override {
        QDialog::changeEvent(event);
        if (event->type() == QEvent::FontChange && !keys.empty()) {
            PlaceKeys();
        }
    }
    bool event(QEvent *event) override {
        if (event->type() == QEvent::WindowDeactivate || event->type() == QEvent::Hide) {
            ReleaseKeysOfComputer(); // what is let go by now is not heard of
        }
        return QDialog::event(event);
    }
    void keyPressEvent(QKeyEvent *event) override {
        const auto key = strip ? PianoKeyOf(*event) : std::nullopt;
        if (!key) {
            QDialog::keyPressEvent(event);
            return;
        }
        if (!event->isAutoRepeat() && PressComputerKey(state, IdOf(*event), *key)) {
            MarkPianoKey(*key, true);
            // A key that is pressed here may be let go elsewhere, in a menu for instance.
            qApp->installEventFilter(this);
        }
    }
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::KeyRelease) {
            const auto &release = static_cast<QKeyEvent &>(*event);
            if (!release.isAutoRepeat()) {
                ReleaseKeyOfComputer(IdOf(release));
            }
        }
        return QDialog::eventFilter(watched, event);
    }

private:
    void MakeControls() {
        // Before any key, which tells its title as it is made. Once, however often it is called.
        QAccessible::installFactory(MakeAccessible);
        if (PlaysBuiltinInstrument(state)) {
            strip = new InstrumentStrip(this);
            ui.rows->addWidget(strip);
            strip->FollowInTabOrder(ui.control_102);
            strip->panic = [this] { EndAllNotes(); };
            strip->resized = [this] { PlaceKeys(); };
        }
        SetUpBoxControls(*this, HelpTopic);
        setWindowTitle(WindowTitleOf(
            QString::fromStdString("Audition " + Latin1ToUtf8(VoiceObjectName(state.voice)))));
        for (const KeyPart &part : AuditionKeyParts(KeyboardUnitsWide, KeyboardUnitsHigh)) {
            // A child of the keyboard.
            keys.push_back(new KeyButton(part, state, heldKey, ui.keyboard));
        }
        heldKey.end.setSingleShot(true);
        QObject::connect(&heldKey.end, &QTimer::timeout, this,
                         [this] { KeyButton::EndHeldKey(heldKey); });
        ui.keyboard->setAccessibleName("Keyboard");
        SetUpBar({ui.control_102, ui.control_12102, 0, HighestAuditionOctave, 1, SetAuditionOctave},
                 AuditionOctave());
        SetUpBar({ui.control_101, ui.control_12101, LowestAuditionVelocity, HighestAuditionVelocity,
                  0, SetAuditionVelocity},
                 AuditionVelocity());
        QObject::connect(ui.control_102, &QScrollBar::valueChanged, this, [this] {
            for (KeyButton *key : keys) {
                QAccessibleEvent event(key, QAccessible::NameChanged);
                QAccessible::updateAccessibility(&event);
            }
        });
    }

    // The keyboard takes the whole width of the box and grows with the font.
    void PlaceKeys() {
        const QFontMetrics metrics(font());
        const QString letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        const int letterWidth = (metrics.horizontalAdvance(letters) / 26 + 1) / 2;
        const int letterHeight = metrics.ascent() + metrics.descent();
        const int widestValue = metrics.horizontalAdvance("127");
        ui.control_12101->setMinimumWidth(widestValue);
        ui.control_12102->setMinimumWidth(widestValue);
        layout()->activate(); // measures the new font in the inner layouts too
        const int width =
            std::max({KeyboardUnitsWide * letterWidth / 4, ui.head->totalMinimumSize().width(),
                      strip ? strip->minimumSizeHint().width() : 0});
        const int height = KeyboardUnitsHigh * letterHeight / 8;
        ui.keyboard->setFixedSize(width, height);
        const int stripHeight = strip ? strip->HeightFor(width) : 0;
        const auto parts = AuditionKeyParts(width, height);
        for (std::size_t i = 0; i < keys.size(); ++i) {
            const Rectangle &area = parts[i].area;
            keys[i]->setGeometry(area.left, area.top, area.right - area.left,
                                 area.bottom - area.top);
        }
        if (strip) {
            strip->setFixedSize(width, stripHeight);
        }
        setFixedSize(width, ui.head->totalHeightForWidth(width) + height + stripHeight);
    }

    void MarkPianoKey(int key, bool down) {
        if (key < AuditionKeyCount) {
            ControlOf<KeyButton>(ui.keyboard, LowerPartControl + static_cast<std::uint32_t>(key))
                ->MarkKey(down);
        }
    }
    void ReleaseKeyOfComputer(std::uint32_t id) {
        if (const auto key = ReleaseComputerKey(state, id)) {
            MarkPianoKey(*key, false);
        }
        if (state.computerKeys.empty()) {
            qApp->removeEventFilter(this);
        }
    }
    void ReleaseKeysOfComputer() {
        while (!state.computerKeys.empty()) {
            ReleaseKeyOfComputer(state.computerKeys.back().id);
        }
    }
    // Whatever holds a key, by now it holds none that sounds.
    void EndAllNotes() {
        KeyButton::EndHeldKey(heldKey);
        ReleaseKeysOfComputer();
        SilenceAudition(state);
    }

    Ui::AuditionBox ui;
    AuditionState &state;
    InstrumentStrip *strip = nullptr; // below the keys of a built-in instrument
    HeldKey heldKey;
    std::vector<KeyButton *> keys; // children, in the order of their parts
};

} // namespace

int AuditionBox(QWidget *owner, VoiceList *list, const VoiceObject *voice, DriverId driverId,
                MidiPorts ports, int itemIndex) {
    auto state = PrepareAudition(list, voice, driverId, ports, itemIndex);
    if (!state) {
        return 0;
    }
    int result = 0;
    const IntegerSettingValue formerVolume = InstrumentVolume;
    {
        AuditionDialog box(owner, *state);
        result = box.exec();
    }
    CloseAudition(*state);
    if (InstrumentVolume != formerVolume) {
        KeepSetting(InstrumentVolume);
    }
    return result;
}

} // namespace tonewright
