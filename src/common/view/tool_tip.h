// The tool tip: a line of text, with a picture above it perhaps, that is shown below a control
// while the mouse rests on it.
#pragma once

class QPixmap;
class QString;
class QWidget;

namespace tonewright {

// Makes the font of tool tips out of the setting TipFont01Size, before controls get their tips.
void RegisterToolTipClass();
// Ends what the first made; controls that are made afterwards get no tips.
void UnregisterToolTipClass();

// Gives a control a tip, which goes with it. Returns the tip, a hidden window that the control
// owns; null without a registered class, control or text, and for a control that is a tip itself.
QWidget *MakeToolTip(QWidget *control, const QString &text);

// Puts a picture above the text of a tip, which grows by it.
void SetToolTipPicture(QWidget &tip, const QPixmap &picture);

} // namespace tonewright
