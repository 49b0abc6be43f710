// Fills in the box with the tip of the day.
#include "shell/view/tip_box.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/view/accessible_role.h"
#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "common/view/system_colours.h"
#include "common/view/theme_picture.h"
#include "common/view/wrapped_text.h"
#include "shell/tips.h"
#include "ui_TipOfTheDayBox.h"

#include <QDialog>
#include <QKeySequence>
#include <QScrollBar>
#include <QShortcut>

#include <cstdlib>
#include <functional>

namespace tonewright {
namespace {

constexpr int TipFontHeight = 18;
constexpr int TipFontWeight = 700;
constexpr int TextMargin = 8; // pixels

// The colour of texts on information. The ground is not that of information: many dark desktops
// pair black letters with a yellow ground there, and black on the dark ground of this box could not
// be read. There it is the colour of the text of windows.
QColor TextColourOn(const QColor &ground) {
    constexpr int LeastDifference = 128; // of 255 steps from black to white
    const QColor text = SystemColourOf(SystemColour::InfoText);
    return std::abs(qGray(text.rgb()) - qGray(ground.rgb())) < LeastDifference
               ? SystemColourOf(SystemColour::WindowText)
               : text;
}

// A label for the text of tips, inside of `area`.
WrappedText *MakeTipText(QScrollArea &area) {
    auto *text = new WrappedText;
    text->setContentsMargins(TextMargin, TextMargin, TextMargin, TextMargin);
    text->setFont(FontOfHeight("Arial", TipFontHeight, TipFontWeight));
    text->setMinimumWidth(1); // a word that is too wide is broken
    QPalette colours = area.palette();
    const QColor ground = SystemColourOf(SystemColour::Highlight3D);
    colours.setColor(QPalette::Window, ground);
    colours.setColor(QPalette::WindowText, TextColourOn(ground));
    text->setPalette(colours);
    area.setWidget(text);
    SetAccessibleRole(area, QAccessible::StaticText);
    return text;
}

// A screen reader says the tip with "Done", which has the keyboard.
void ShowNextTip(const Ui::TipOfTheDayBox &ui, WrappedText &text) {
    const QString tip = QString::fromStdString(NextTip());
    text.setText(tip);
    ui.control_102->setAccessibleName(tip);
    ui.control_102->verticalScrollBar()->setValue(0);
    ui.control_1->setAccessibleDescription(tip);
}

void OnKeys(QDialog &box, const QList<QKeySequence> &keys, const std::function<void()> &then) {
    for (const QKeySequence &key : keys) {
        QObject::connect(new QShortcut(key, &box), &QShortcut::activated, &box, then);
    }
}

// Return is "Done" wherever the keyboard is, and so it is with Shift. The text takes no keyboard:
// a tip that is too long for it is scrolled from anywhere in the box.
void SetUpKeys(QDialog &box, const Ui::TipOfTheDayBox &ui) {
    OnKeys(box, {Qt::SHIFT | Qt::Key_Return, Qt::SHIFT | Qt::Key_Enter},
           [&ui] { ui.control_1->click(); });
    QScrollBar *bar = ui.control_102->verticalScrollBar();
    OnKeys(box, {Qt::Key_PageUp},
           [bar] { bar->triggerAction(QAbstractSlider::SliderPageStepSub); });
    OnKeys(box, {Qt::Key_PageDown},
           [bar] { bar->triggerAction(QAbstractSlider::SliderPageStepAdd); });
}

} // namespace

void ShowTipBox(QWidget *owner) {
    QDialog box(owner ? owner->window() : nullptr);
    Ui::TipOfTheDayBox ui;
    ui.setupUi(&box);
    box.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    box.setFont(DialogFont());
    LeaveReturnToBox(ui.control_101);
    ShowThemeBitmap(*ui.control_6101, THEME_BITMAP_TIP_HEADING);
    WrappedText *text = MakeTipText(*ui.control_102);
    ShowNextTip(ui, *text);
    Beep();
    ui.control_101->setChecked(ShowTipOfTheDay != 0);
    QObject::connect(ui.control_1, &QPushButton::clicked, &box, [&] {
        if (ShiftKeyDown()) {
            ShowNextTip(ui, *text);
            return;
        }
        ShowTipOfTheDay = ui.control_101->isChecked() ? 1 : 0;
        box.accept();
    });
    SetUpKeys(box, ui);
    ui.control_1->setFocus();
    box.adjustSize();
    CentreWindow(box);
    box.exec();
}

} // namespace tonewright
