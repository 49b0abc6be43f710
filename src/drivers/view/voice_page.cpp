// Joins the controls of a page with the rows of the sheet.
#include "drivers/view/voice_page.h"

#include "common/scroll_step.h"
#include "common/text.h"
#include "common/view/box_controls.h"
#include "common/view/dialog_controls.h"
#include "common/view/drop_down.h"
#include "common/view/scroll_actions.h"
#include "common/view/theme_picture.h"
#include "common/view/up_down.h"
#include "drivers/view/name_edit.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>

#include <algorithm>

namespace tonewright {
namespace {

// Controls that no row stands for.
constexpr std::uint32_t ControlDecoration = 10;
constexpr std::uint32_t ControlPicture = 125;
constexpr std::uint32_t ControlPlace = 126;
constexpr std::uint32_t ControlPageIndex = 225; // a hidden text, of an operator's page

// The label of a row as the name of its other controls.
QString NameOf(const VoiceParameter &row) {
    QString name = QString::fromUtf8(row.label);
    return name.endsWith(u':') ? name.chopped(1) : name;
}

void FillList(const VoiceParameter &row, QComboBox *list) {
    FillComboFromList(list, row.items);
    TakeWheelWithFocusOnly(list);
    LeaveReturnToBox(list);
    if (auto *algorithms = dynamic_cast<AlgorithmList *>(list)) {
        algorithms->NameItems();
    }
}

} // namespace

VoicePageView::VoicePageView(const VoicePagesLook &pagesLook, VoiceSheet &shown, int pageNumber,
                             QSize wantedSize)
    : look(pagesLook), sheet(shown), page(pageNumber), wanted(wantedSize) {
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    viewport()->setAutoFillBackground(false); // the sheet's ground shows
}

QWidget *VoicePageView::MakeContents(const VoicePagesLook &look, int page, int itemIndex) {
    auto *contents = new QWidget;
    (page == VoicePage ? look.makeVoicePage : look.makeOperatorPage)(contents);
    for (const VoiceParameter &row : RowsOf(look.family, page)) {
        auto *list = ControlOf<QComboBox>(contents, row.control);
        if (auto *algorithms = dynamic_cast<AlgorithmList *>(list)) {
            algorithms->SetLook(look.algorithms);
        }
        if (list && row.IsList()) {
            FillList(row, list);
        }
        if (auto *name = ControlOf<NameEdit>(contents, row.control)) {
            name->SetLength(static_cast<int>(look.family.nameSize));
        }
    }
    if (auto *picture = ControlOf<AlgorithmPicture>(contents, ControlPicture)) {
        picture->SetLook(look.algorithms);
    }
    if (auto *decoration = ControlOf<QLabel>(contents, ControlDecoration)) {
        ShowThemePicture(*decoration, THEME_PICTURE_VOICE);
    }
    if (auto *place = ControlOf<QLabel>(contents, ControlPlace)) {
        place->setText(QString::fromStdString(look.family.PlaceText(itemIndex)));
    }
    if (auto *index = ControlOf<QLabel>(contents, ControlPageIndex)) {
        index->setText(QString::number(page - 1));
    }
    return contents;
}

QSize VoicePageView::SizeOf(const VoicePagesLook &look, int page, int itemIndex,
                            const QFont &font) {
    QWidget ground;
    ground.setFont(font);
    QWidget *contents = MakeContents(look, page, itemIndex);
    contents->setParent(&ground);
    return contents->sizeHint();
}

void VoicePageView::Make() {
    setWidget(MakeContents(look, page, sheet.itemIndex));
    widget()->setAutoFillBackground(false);
    for (const VoiceParameter &row : RowsOf(look.family, page)) {
        controls.push_back({.label = ControlOf<QLabel>(this, row.control + LabelOffset),
                            .edit = ControlOf<QLineEdit>(this, row.control),
                            .list = ControlOf<QComboBox>(this, row.control),
                            .check = ControlOf<QCheckBox>(this, row.control),
                            .arrows = ControlOf<UpDown>(this, row.control + UpDownOffset),
                            .bar = ControlOf<QScrollBar>(this, row.control + BarOffset)});
        ConnectRow(controls.size() - 1);
    }
}

PageControls VoicePageView::Controls() const {
    return {.has = [this](std::uint32_t control) { return ControlOf(this, control) != nullptr; },
            .rangeText =
                [this](std::uint32_t control) {
                    const auto *arrows = ControlOf<UpDown>(this, control + UpDownOffset);
                    return arrows ? arrows->RangeText() : std::string();
                }};
}

void VoicePageView::ConnectRow(std::size_t row) {
    const auto &[label, edit, list, check, arrows, bar] = controls[row];
    const QString name = NameOf(RowsOf(look.family, page)[row]);
    const auto tell = [this](const auto &act) {
        if (TakesCommands()) {
            act();
        }
    };
    if (edit) {
        connect(edit, &QLineEdit::textChanged, this, [=, this](const QString &text) {
            tell([&] { TypeInRow(sheet, row, text.toStdString()); });
        });
    }
    if (list) {
        connect(list, &QComboBox::currentIndexChanged, this,
                [=, this](int index) { tell([&] { SelectInRow(sheet, row, index); }); });
    }
    if (check) {
        LeaveReturnToBox(check);
        connect(check, &QCheckBox::toggled, this,
                [=, this](bool checked) { tell([&] { CheckRow(sheet, row, checked); }); });
    }
    if (edit && arrows) {
        arrows->setAccessibleName(name);
        arrows->FollowEdit(edit);
        arrows->stepped = [=, this, edit = edit](int step) {
            tell([&] {
                StepRow(sheet, row, step);
                edit->selectAll();
            });
        };
    }
    if (bar) {
        bar->setAccessibleName(name);
        TakeScrollActions(bar, [=, this, bar = bar](ScrollAction action, int thumb) {
            tell([&] { ScrollRow(sheet, row, action, thumb); });
            bar->setSliderPosition(sheet.pages[static_cast<std::size_t>(page)].rows[row].bar);
        });
    }
    // Last, so that the page hears of their events first.
    for (QWidget *control : std::initializer_list<QWidget *>{edit, list, arrows, bar}) {
        if (control) {
            control->installEventFilter(this);
        }
    }
}

// A page that comes to be shown has the focus before it is the sheet's, and an arrow that is held
// while the page changes goes on stepping.
bool VoicePageView::TakesCommands() const {
    return !isFilling && sheet.activePage == page;
}

void VoicePageView::FillRow(std::size_t row) {
    const RowState &state = sheet.pages[static_cast<std::size_t>(page)].rows[row];
    const auto &[label, edit, list, check, arrows, bar] = controls[row];
    if (const QString text = QString::fromStdString(state.text); edit && edit->text() != text) {
        if (auto *name = dynamic_cast<NameEdit *>(edit)) {
            name->SetTextAsItIs(text);
        } else {
            edit->setText(text);
        }
    }
    if (list) {
        list->setCurrentIndex(state.selection);
    }
    if (check) {
        check->setChecked(state.checked);
    }
    if (bar && state.range) {
        bar->setRange(state.range->minimum, state.range->maximum);
        // The thumb is as long as one action on the trough moves it.
        bar->setPageStep(std::max(1, state.range->maximum / PagesInARange));
        bar->setValue(state.bar);
    }
    for (QWidget *control :
         std::initializer_list<QWidget *>{label, edit, list, check, arrows, bar}) {
        if (control) {
            control->setEnabled(state.enabled);
        }
    }
}

void VoicePageView::ShowAll() {
    for (std::size_t row = 0; row < controls.size(); ++row) {
        ShowRow(row);
    }
    ShowAlgorithm();
}

void VoicePageView::ShowRow(std::size_t row) {
    isFilling = true;
    FillRow(row);
    isFilling = false;
}

void VoicePageView::ShowAlgorithm() {
    if (auto *picture = ControlOf<AlgorithmPicture>(this, ControlPicture)) {
        picture->ShowAlgorithm(AlgorithmOf(sheet));
    }
}

void VoicePageView::FocusFirstControl() {
    for (const RowControls &row : controls) {
        for (QWidget *control : std::initializer_list<QWidget *>{row.edit, row.list, row.check}) {
            if (control && control->isEnabled()) {
                control->setFocus();
                return;
            }
        }
    }
}

QWidget *VoicePageView::LastControl() const {
    QWidget *last = nullptr;
    for (const RowControls &row : controls) {
        for (QWidget *control : std::initializer_list<QWidget *>{row.edit, row.list, row.check}) {
            last = control ? control : last;
        }
    }
    return last;
}

// Focus that comes and goes is a command of an edit or list. Page Up and Page Down in an edit are
// those of its bar. The wheel over a number without the focus scrolls a page that has more than is
// seen of it, so that what passes under the pointer stays as it is.
bool VoicePageView::eventFilter(QObject *watched, QEvent *event) {
    const auto found = std::ranges::find_if(controls, [watched](const RowControls &row) {
        return watched == row.edit || watched == row.list || watched == row.arrows ||
               watched == row.bar;
    });
    if (found == controls.end()) {
        return QScrollArea::eventFilter(watched, event);
    }
    const auto row = static_cast<std::size_t>(found - controls.begin());
    switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        if (TakesCommands() && (watched == found->edit || watched == found->list)) {
            RowCommand(sheet, row);
        }
        return false;
    case QEvent::Wheel:
        if (verticalScrollBar()->isVisible() && !HasFocus(*found)) {
            event->ignore();
            return true;
        }
        return false;
    case QEvent::KeyPress:
        return watched == found->edit && TakesPageKey(row, static_cast<QKeyEvent &>(*event));
    default:
        return false;
    }
}

bool VoicePageView::HasFocus(const RowControls &row) {
    return (row.edit && row.edit->hasFocus()) || (row.list && row.list->hasFocus()) ||
           (row.bar && row.bar->hasFocus());
}

bool VoicePageView::TakesPageKey(std::size_t row, const QKeyEvent &key) {
    const bool isPage = key.key() == Qt::Key_PageUp || key.key() == Qt::Key_PageDown;
    const bool isPlain = (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!controls[row].bar || !isPage || !isPlain) {
        return false;
    }
    ScrollRow(sheet, row,
              key.key() == Qt::Key_PageUp ? ScrollAction::PageForward : ScrollAction::PageBack, 0);
    controls[row].edit->selectAll();
    return true;
}

} // namespace tonewright
