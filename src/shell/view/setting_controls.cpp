// One way to show and to store a setting for each kind of control.
#include "shell/view/setting_controls.h"

#include "common/settings.h"
#include "common/text.h"
#include "common/view/dialog_controls.h"
#include "common/view/soft_button.h"
#include "common/view/up_down.h"
#include "shell/shell_window.h"
#include "shell/view/colour_box.h"
#include "shell/view/colour_field.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QEvent>
#include <QFontDatabase>
#include <QLineEdit>
#include <QPainter>
#include <QValidator>

#include <algorithm>
#include <charconv>
#include <optional>

namespace tonewright {
namespace {

constexpr std::uint32_t BrowseOffset = 15000;
constexpr const char *UserData = "userData";

std::uint32_t *NumberOf(const ConfigKey &key) {
    std::uint32_t *const *number = std::get_if<std::uint32_t *>(&key.value);
    return number ? *number : nullptr;
}

std::string *TextOf(const ConfigKey &key) {
    std::string *const *text = std::get_if<std::string *>(&key.value);
    return text ? *text : nullptr;
}

const SettingChoice *ChoicesOf(const ConfigKey &key) {
    const SettingChoice *const *choices = std::get_if<const SettingChoice *>(&key.items);
    return choices ? *choices : nullptr;
}

void ShowColour(const QWidget *, QWidget *control, const ConfigKey &key) {
    if (const std::uint32_t *number = NumberOf(key)) {
        control->setProperty(UserData, *number);
        control->update();
    }
}

void StoreColour(const QWidget *, const QWidget *control, const ConfigKey &key) {
    if (std::uint32_t *number = NumberOf(key)) {
        *number = control->property(UserData).toUInt();
    }
}

// The place of a value among choices that are told apart by value; -1 when none has it.
int IndexOfValue(const SettingChoice *choices, std::uint32_t value) {
    for (int index = 0; choices[index].text; ++index) {
        if (choices[index].value == value) {
            return index;
        }
    }
    return -1;
}

void ShowList(const QWidget *, QWidget *control, const ConfigKey &key) {
    auto *list = qobject_cast<QComboBox *>(control);
    if (!list) {
        return;
    }
    const SettingChoice *choices = ChoicesOf(key);
    if (choices) {
        list->clear();
        for (const SettingChoice *choice = choices; choice->text; ++choice) {
            list->addItem(choice->text);
        }
    } else if (key.flags & SettingFontList) {
        list->clear();
        list->addItems(QFontDatabase::families());
    }
    if (const std::string *text = TextOf(key)) {
        list->setCurrentIndex(list->findText(QString::fromStdString(*text)));
    } else if (choices && (key.flags & SettingByValue)) {
        list->setCurrentIndex(IndexOfValue(choices, *NumberOf(key)));
    } else {
        const std::uint32_t index = *NumberOf(key);
        const bool exists = index < static_cast<std::uint32_t>(list->count());
        list->setCurrentIndex(exists ? static_cast<int>(index) : -1);
    }
}

void StoreList(const QWidget *, const QWidget *control, const ConfigKey &key) {
    const auto *list = qobject_cast<const QComboBox *>(control);
    if (!list) {
        return;
    }
    const SettingChoice *choices = ChoicesOf(key);
    const int index = list->currentIndex();
    if (std::string *text = TextOf(key)) {
        if (index >= 0) {
            *text = CutText(list->currentText().toStdString(), SettingTextLimit);
        }
        return;
    }
    std::uint32_t &number = *NumberOf(key);
    if (index < 0) {
        number = choices ? number : 0;
    } else if (choices && (key.flags & SettingByValue)) {
        number = choices[index].value;
    } else {
        number = static_cast<std::uint32_t>(index);
    }
}

void ShowInteger(const QWidget *page, QWidget *control, const ConfigKey &key) {
    auto *edit = qobject_cast<QLineEdit *>(control);
    const std::uint32_t *number = NumberOf(key);
    if (!edit || !number) {
        return;
    }
    if (key.flags & SettingSpin) {
        if (const std::optional<SpinRange> range = SpinRangeOf(page, key.control)) {
            StepNumberIn(edit, ControlOf<UpDown>(page, key.control + UpDownOffset), *range);
        }
    }
    edit->setText(QString::number(*number));
}

// The number at the beginning of a text; 0 when there is none, or none of 32 bits.
std::uint32_t UnsignedOf(const std::string &text) {
    const char *end = text.data() + text.size();
    const char *begin = std::find_if(text.data(), end, [](char c) { return c != ' '; });
    std::uint32_t number = 0;
    std::from_chars(begin, end, number);
    return number;
}

void StoreInteger(const QWidget *page, const QWidget *control, const ConfigKey &key) {
    const auto *edit = qobject_cast<const QLineEdit *>(control);
    std::uint32_t *number = NumberOf(key);
    if (!edit || !number || !(key.flags & SettingSpin)) {
        return;
    }
    *number = SpinRangeOf(page, key.control)
                  ? static_cast<std::uint32_t>(ClampedDlgInt(page, key.control))
                  : UnsignedOf(edit->text().toStdString());
}

// Cuts what is put into an edit to the bytes that a setting holds.
class ByteLimit : public QValidator {
public:
    using QValidator::QValidator;
    State validate(QString &input, int &position) const override {
        const std::string text = input.toStdString();
        if (text.size() > SettingTextLimit) {
            input = QString::fromStdString(std::string(CutText(text, SettingTextLimit)));
            position = std::min<int>(position, static_cast<int>(input.size()));
        }
        return Acceptable;
    }
};

void ShowText(const QWidget *, QWidget *control, const ConfigKey &key) {
    auto *edit = qobject_cast<QLineEdit *>(control);
    const std::string *text = TextOf(key);
    if (!edit || !text) {
        return;
    }
    if (!edit->validator()) {
        edit->setValidator(new ByteLimit(edit)); // a child of the edit
    }
    edit->setText(QString::fromStdString(*text));
}

void StoreText(const QWidget *, const QWidget *control, const ConfigKey &key) {
    const auto *edit = qobject_cast<const QLineEdit *>(control);
    std::string *text = TextOf(key);
    if (edit && text) {
        *text = CutText(edit->text().toStdString(), SettingTextLimit);
    }
}

void ShowBool(const QWidget *, QWidget *control, const ConfigKey &key) {
    auto *box = qobject_cast<QAbstractButton *>(control);
    if (const std::uint32_t *number = NumberOf(key); box && number) {
        box->setChecked(*number != 0);
    }
}

void StoreBool(const QWidget *, const QWidget *control, const ConfigKey &key) {
    const auto *box = qobject_cast<const QAbstractButton *>(control);
    if (std::uint32_t *number = NumberOf(key); box && number) {
        *number = box->isChecked() ? 1 : 0;
    }
}

// The kinds of rows. The first one whose flag a row has serves it.
struct Kind {
    std::uint32_t flag;
    void (*show)(const QWidget *page, QWidget *control, const ConfigKey &key);
    void (*store)(const QWidget *page, const QWidget *control, const ConfigKey &key);
};
constexpr Kind Kinds[] = {
    {SettingColour, ShowColour, StoreColour},    {SettingDropDown, ShowList, StoreList},
    {SettingInteger, ShowInteger, StoreInteger}, {SettingText, ShowText, StoreText},
    {SettingBool, ShowBool, StoreBool},
};

const Kind *KindOf(const ConfigKey &key) {
    for (const Kind &kind : Kinds) {
        if (key.flags & kind.flag) {
            return &kind;
        }
    }
    return nullptr;
}

QWidget *KeyControl(const QWidget *page, const ConfigKey &key) {
    return key.control != 0 ? ControlOf(page, key.control) : nullptr;
}

// Paints a button as a swatch of the colour that it holds.
class SwatchPainter : public QObject {
public:
    explicit SwatchPainter(QWidget *control) : QObject(control), control(control) {
        control->installEventFilter(this);
        KeepOwnPainting(control);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() != QEvent::Paint) {
            return false;
        }
        QPainter painter(control);
        const QRect frame = control->rect().adjusted(0, 0, -1, -1);
        painter.setPen(control->palette().color(QPalette::Shadow));
        painter.setBrush(QColourOf(control->property(UserData).toUInt()));
        painter.drawRect(frame);
        if (control->hasFocus()) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(control->palette().color(QPalette::Light));
            painter.drawRect(frame.adjusted(1, 1, -1, -1));
            painter.setPen(control->palette().color(QPalette::Highlight));
            painter.drawRect(frame);
        }
        return true;
    }

private:
    QWidget *control; // owns this object
};

void ChooseColourOf(QWidget *control) {
    if (const auto chosen = ChooseColour(control, control->property(UserData).toUInt())) {
        control->setProperty(UserData, *chosen);
        control->update();
    }
}

void Browse(QLineEdit *edit, SettingBrowseFunction ask) {
    const std::optional<std::string> path = ask(edit->window(), OpenImportPath);
    if (path) {
        edit->setText(QString::fromStdString(*path));
        OpenImportPath = FolderOfPath(*path);
    }
}

// Shows each command of an edit in the main window's title: a change of its text, and the keyboard
// coming and going.
class CommandTrace : public QObject {
public:
    CommandTrace(QWidget *page, QLineEdit *edit, const ConfigKey &key)
        : QObject(edit), page(page), key(key) {
        connect(edit, &QLineEdit::textChanged, this, [this] { Show(); });
        edit->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
            Show();
        }
        return false;
    }

private:
    void Show() const {
        if (page->isVisible() && TheShellWindow.SetTitle) {
            TheShellWindow.SetTitle(FormatText("%s %x", key.name, key.flags));
        }
    }

    const QWidget *page;
    const ConfigKey &key;
};

void ConnectSwatch(QWidget *page, QWidget *control) {
    new SwatchPainter(control); // a child of the control
    if (auto *button = qobject_cast<QAbstractButton *>(control)) {
        QObject::connect(button, &QAbstractButton::clicked, page, [page, button] {
            if (page->isVisible()) {
                ChooseColourOf(button);
            }
        });
    }
}

void ConnectBrowseButton(QWidget *page, QWidget *control, const ConfigKey &key) {
    auto *edit = qobject_cast<QLineEdit *>(control);
    auto *button = ControlOf<QAbstractButton>(page, key.control + BrowseOffset);
    const SettingBrowseFunction *ask = std::get_if<SettingBrowseFunction>(&key.items);
    if (!edit || !button || !ask || !*ask) {
        return;
    }
    QObject::connect(button, &QAbstractButton::clicked, page, [page, edit, ask = *ask] {
        if (page->isVisible()) {
            Browse(edit, ask);
        }
    });
}

} // namespace

void KeysToControls(QWidget *page, std::span<const ConfigKey> keys) {
    for (const ConfigKey &key : keys) {
        QWidget *control = KeyControl(page, key);
        if (!control) {
            continue;
        }
        control->setProperty(UserData, 0u);
        if (const Kind *kind = KindOf(key)) {
            kind->show(page, control, key);
        }
    }
}

void ControlsToKeys(const QWidget *page, std::span<const ConfigKey> keys) {
    for (const ConfigKey &key : keys) {
        const QWidget *control = KeyControl(page, key);
        const Kind *kind = KindOf(key);
        if (control && kind) {
            kind->store(page, control, key);
        }
    }
}

void ConnectKeyControls(QWidget *page, std::span<const ConfigKey> keys) {
    for (const ConfigKey &key : keys) {
        QWidget *control = KeyControl(page, key);
        if (!control) {
            continue;
        }
        if (key.flags & SettingColour) {
            ConnectSwatch(page, control);
        }
        if (key.flags & SettingBrowse) {
            ConnectBrowseButton(page, control, key);
        }
        if (auto *edit = qobject_cast<QLineEdit *>(control); edit && (key.flags & SettingSpin)) {
            new CommandTrace(page, edit, key); // a child of the edit
        }
    }
}

const ConfigKey *SettingOf(const QWidget *control, std::span<const ConfigKey> keys) {
    for (const ConfigKey &key : keys) {
        if (control && key.control != 0 && control->objectName() == ControlName(key.control)) {
            return &key;
        }
    }
    return nullptr;
}

} // namespace tonewright
