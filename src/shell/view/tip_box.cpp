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
#include <QScrollBar>

#include <cstdlib>

namespace tonewright {
namespace {

constexpr int TipFontHeight = 18;
constexpr int TipFontWeight = 700;
constexpr int TextMargin = 8; // pixels

// The colour of texts on information, which belongs to a light ground on many dark palettes: where
// it could not be read, that of the text of windows.
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

void ShowNextTip(QScrollArea &area, WrappedText &text) {
    const QString tip = QString::fromStdString(NextTip());
    text.setText(tip);
    area.setAccessibleName(tip);
    area.verticalScrollBar()->setValue(0);
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
    ShowNextTip(*ui.control_102, *text);
    Beep();
    ui.control_101->setChecked(ShowTipOfTheDay != 0);
    QObject::connect(ui.control_1, &QPushButton::clicked, &box, [&] {
        if (ShiftKeyDown()) {
            ShowNextTip(*ui.control_102, *text);
            return;
        }
        ShowTipOfTheDay = ui.control_101->isChecked() ? 1 : 0;
        box.accept();
    });
    ui.control_1->setFocus();
    box.adjustSize();
    CentreWindow(box);
    box.exec();
}

} // namespace tonewright
