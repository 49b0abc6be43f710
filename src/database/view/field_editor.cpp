// Opens editors over cells and watches over them.
#include "database/view/field_editor.h"

#include "common/view/filtered_edit.h"
#include "common/view/system_colours.h"
#include "database/database_record.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QStyleHints>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace tonewright {
namespace {

constexpr int ShownEntries = 16; // of a list that has dropped down

// What an editor has to say as it ends: takes the value out of it while it is there, and returns
// the call that hands it on.
using EditorEnd = std::function<std::function<void()>(bool accepted)>;

// Sees what happens in the dialog before anybody else does, ends the editor and keeps back the rest
// of the click or key that ended it.
class EditorWatch : public QObject {
public:
    EditorWatch(QWidget *editor, EditorEnd end)
        : QObject(editor->window()), dialog(editor->window()), parent(editor->parentWidget()),
          editor(editor), former(dialog->focusWidget()), end(std::move(end)) {
        if (auto *area = qobject_cast<QAbstractScrollArea *>(parent->parentWidget())) {
            connect(area->verticalScrollBar(), &QScrollBar::valueChanged, this,
                    [this] { End(true); });
        }
        // Of those that are pressed without the mouse.
        for (const QAbstractButton *button : dialog->findChildren<QAbstractButton *>()) {
            connect(button, &QAbstractButton::pressed, this, [this] { End(true); });
        }
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override {
        return editor ? WatchEditor(watched, *event) : KeepBack(watched, *event);
    }

    bool IsOver(const QWidget *widget) const { return editor && parent == widget; }
    void Accept() { End(true); }

private:
    // Mouse events come to the window first, and from there to the widgets.
    bool IsInDialog(QObject *watched) const {
        if (const auto *widget = qobject_cast<QWidget *>(watched)) {
            return widget->window() == dialog;
        }
        return watched == dialog->windowHandle();
    }
    bool IsBesideEditor(QObject *watched, const QMouseEvent &event) const {
        if (QApplication::activePopupWidget()) { // the editor's, which hears of each press
            const QPoint place = event.globalPosition().toPoint();
            return QApplication::topLevelAt(place) == dialog &&
                   !editor->rect().contains(editor->mapFromGlobal(place));
        }
        if (!IsInDialog(watched)) {
            return false;
        }
        const auto *widget = qobject_cast<QWidget *>(watched);
        if (!widget) {
            widget = dialog->childAt(event.position().toPoint());
        }
        return widget != editor && !editor->isAncestorOf(widget);
    }

    bool WatchEditor(QObject *watched, const QEvent &event) {
        switch (event.type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            return EndByPress(watched, static_cast<const QMouseEvent &>(event));
        case QEvent::KeyPress:
            return watched == editor && EndByKey(static_cast<const QKeyEvent &>(event));
        case QEvent::Wheel:
            if (!IsInDialog(watched) || QApplication::activePopupWidget()) {
                return false;
            }
            End(true);
            return true;
        case QEvent::FocusOut:
            if (watched == editor) {
                EndByFocus();
            }
            return false;
        case QEvent::Resize:
            if (watched == parent) {
                End(true);
            }
            return false;
        case QEvent::Close:
            if (watched == dialog) {
                End(true);
            }
            return false;
        case QEvent::Hide:
            if (watched == dialog && !event.spontaneous()) {
                EndByHiding();
            }
            return false;
        default:
            return false;
        }
    }

    bool EndByPress(QObject *watched, const QMouseEvent &event) {
        if (!IsBesideEditor(watched, event)) {
            return false;
        }
        button = event.button();
        pressedAt = event.globalPosition();
        pressedWhen = event.timestamp();
        End(true);
        return true;
    }

    bool EndByKey(const QKeyEvent &event) {
        switch (event.key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
        case Qt::Key_Escape:
            key = event.key();
            End(event.key() != Qt::Key_Escape);
            return true;
        default:
            return false;
        }
    }

    // Another widget of the dialog has asked for the focus. Later, since a press of the mouse comes
    // after the focus that it moves, an editor that is destroyed with its dialog loses the focus
    // too, and one whose list drops down gets it back.
    void EndByFocus() {
        const auto end = [this] {
            if (editor && dialog->focusWidget() != editor) {
                former = nullptr;
                End(true);
            }
        };
        QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
    }

    // Later, since a dialog that is destroyed hides itself first, and this watch goes with it.
    void EndByHiding() {
        const auto end = [this] {
            if (!dialog->isVisible()) {
                End(false);
            }
        };
        QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
    }

    void End(bool accepted) {
        if (!editor) {
            return;
        }
        if (QWidget *popup = QApplication::activePopupWidget()) {
            popup->close();
        }
        const std::function<void()> tell = end(accepted);
        QWidget *gone = editor;
        editor = nullptr;
        if (former) {
            former->setFocus();
        }
        gone->setParent(nullptr);
        gone->deleteLater();
        if (button == Qt::NoButton && key == 0) {
            Leave();
        }
        tell();
    }

    // The click or key that has ended the editor goes on: releases, the second press of a double
    // click and repetitions of the key. Whatever comes new ends the watch.
    bool KeepBack(QObject *watched, const QEvent &event) {
        switch (event.type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick: {
            const auto &press = static_cast<const QMouseEvent &>(event);
            if (button != Qt::NoButton && IsInDialog(watched) && IsSecondPress(press)) {
                return true;
            }
            Leave();
            return false;
        }
        case QEvent::MouseButtonRelease:
            return static_cast<const QMouseEvent &>(event).button() == button &&
                   IsInDialog(watched);
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            return key != 0 && qobject_cast<QWidget *>(watched) &&
                   KeepBackKey(watched, static_cast<const QKeyEvent &>(event));
        default:
            return false;
        }
    }

    bool KeepBackKey(QObject *watched, const QKeyEvent &stroke) {
        const bool isRelease = stroke.type() == QEvent::KeyRelease;
        // On a busy machine X11 does not say of each repetition that it is one; it begins at the
        // very time at which the key seems to be released.
        const bool isRepeated =
            stroke.isAutoRepeat() || (releasedWhen != 0 && stroke.timestamp() == releasedWhen);
        if (stroke.key() != key || !IsInDialog(watched) || (!isRelease && !isRepeated)) {
            Leave();
            return false;
        }
        if (isRelease) {
            releasedWhen = stroke.timestamp();
        }
        return true;
    }

    void Leave() {
        qApp->removeEventFilter(this);
        deleteLater();
    }

    bool IsSecondPress(const QMouseEvent &press) const {
        const QStyleHints &hints = *QGuiApplication::styleHints();
        const QPointF moved = press.globalPosition() - pressedAt;
        return press.button() == button &&
               press.timestamp() - pressedWhen <
                   static_cast<quint64>(hints.mouseDoubleClickInterval()) &&
               moved.manhattanLength() <= hints.mouseDoubleClickDistance();
    }

    QWidget *const dialog;
    QWidget *const parent;
    QPointer<QWidget> editor; // none once it has ended
    QPointer<QWidget> former; // what had the focus
    const EditorEnd end;
    Qt::MouseButton button = Qt::NoButton; // that ended the editor
    QPointF pressedAt;
    quint64 pressedWhen = 0; // milliseconds
    int key = 0;             // that ended the editor
    quint64 releasedWhen = 0;
};

// An editor that hands no key and no button on to the list that it stands over.
template <typename Control> class Keeping : public Control {
public:
    using Control::Control;

protected:
    void keyPressEvent(QKeyEvent *event) override {
        Control::keyPressEvent(event);
        event->accept();
    }
};

void Open(QWidget *editor, const EditedCell &cell, QRect area, EditorEnd end) {
    editor->setAttribute(Qt::WA_NoMousePropagation);
    editor->setAccessibleName(cell.title);
    editor->setFont(cell.font);
    editor->setGeometry(area);
    new EditorWatch(editor, std::move(end)); // a child of the dialog
    editor->show();
    editor->setFocus();
}

bool IsLatin1(char32_t character) {
    return (character >= 0x20 && character < 0x7F) || (character >= 0xA0 && character <= 0xFF);
}

} // namespace

void EditTextOver(const EditedCell &cell, const std::string &latin1,
                  std::function<void(std::optional<std::string>)> done) {
    // What the text has held stays, even where it cannot be written anew.
    const auto takes = [latin1](char32_t character) {
        return IsLatin1(character) ||
               (character <= 0xFF &&
                latin1.find(static_cast<char>(character)) != std::string::npos);
    };
    auto *edit = new Keeping<FilteredEdit>(TextFilter{takes, U'?'}, cell.parent);
    edit->setMaxLength(static_cast<int>(DatabaseTextSize));
    edit->setText(QString::fromLatin1(latin1));
    edit->selectAll();
    edit->setFrame(false);
    edit->setTextMargins(-2, 0, 0, 0); // the text begins where it stood in the list
    QPalette colours = edit->palette();
    colours.setColor(QPalette::Base, SystemColourOf(SystemColour::Highlight3D));
    colours.setColor(QPalette::Text, SystemColourOf(SystemColour::DarkShadow3D));
    edit->setPalette(colours);
    Open(edit, cell, cell.area.adjusted(0, -1, 0, 1), [edit, done](bool accepted) {
        std::optional<std::string> result;
        if (accepted) {
            result = edit->text().toLatin1().toStdString();
        }
        return [done, result] { done(result); };
    });
}

void ChooseOver(const EditedCell &cell, const QStringList &entries, int selected,
                std::function<void(std::optional<int>)> done) {
    auto *combo = new Keeping<QComboBox>(cell.parent);
    combo->addItems(entries);
    combo->setCurrentIndex(selected);
    combo->setStyleSheet("QComboBox { combobox-popup: 0; }"); // a list that scrolls, not a menu
    combo->setMaxVisibleItems(ShownEntries);
    Open(combo, cell, cell.area, [combo, done](bool accepted) {
        const auto result = accepted ? std::optional(combo->currentIndex()) : std::nullopt;
        return [done, result] { done(result); };
    });
}

void AcceptEditorOver(const QWidget *parent) {
    for (QObject *child : parent->window()->children()) {
        auto *watch = dynamic_cast<EditorWatch *>(child);
        if (watch && watch->IsOver(parent)) {
            watch->Accept();
            return; // there is one at most
        }
    }
}

} // namespace tonewright
