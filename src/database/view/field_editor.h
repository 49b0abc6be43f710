// Editors that open over a cell of a list. Enter accepts, and so does a press of a mouse button
// beside the editor in its dialog, with no other effect, and scrolling; Esc cancels the editor and
// nothing else. The release of a button that was down when the editor opened leaves it open, and so
// does a switch to another program. A dialog that is closed accepts the editor before it acts, and
// so does a button of it that is pressed without the mouse; a dialog that is hidden cancels it,
// once the events of the moment are done.
#pragma once

#include <QFont>
#include <QRect>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <string>

class QWidget;

namespace tonewright {

// Where an editor opens.
struct EditedCell {
    QWidget *parent;
    QRect area; // in pixels of the parent
    QFont font;
    QString title; // of its column, for screen readers
};

// Both return at once. `done` is called once, after the editor is
// gone: with the result, or with nothing when it was cancelled; never when it is destroyed with its
// dialog.

// A line of at most 64 Latin-1 characters over a cell, one pixel higher on either side. Other
// characters and control characters cannot be typed; pasted ones become question marks.
void EditTextOver(const EditedCell &cell, const std::string &latin1,
                  std::function<void(std::optional<std::string>)> done);

// A drop-down list with `entries`, of which `selected` is chosen at first, or none for -1. The
// result is the place of the chosen one, -1 for none.
void ChooseOver(const EditedCell &cell, const QStringList &entries, int selected,
                std::function<void(std::optional<int>)> done);

// Accepts the editor over `parent`, if there is one.
void AcceptEditorOver(const QWidget *parent);

} // namespace tonewright
