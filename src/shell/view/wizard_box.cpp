// Puts the controls of all pages into one frame, and shows those of one page at a time.
#include "shell/view/wizard_box.h"

#include "common/desktop.h"
#include "common/text.h"
#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/dialog_controls.h"
#include "common/view/drop_down.h"
#include "common/view/fonts.h"
#include "common/view/pictures.h"
#include "common/view/wrapped_text.h"
#include "shell/view/wizard_page.h"
#include "shell/wizard.h"
#include "ui_WelcomeWizardBox.h"
#include "ui_WizardQuestionBox.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMetaEnum>
#include <QRadioButton>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

constexpr std::uint32_t FirstPagedControl = 100; // those below it are never hidden
// What of the screen the pages may take; a title bar comes above them.
constexpr int WidthPercent = 98, HeightPercent = 90;

constexpr int UsualWeight = 400; // what a page means by 0

constexpr int QuestionFontHeight = 15;
constexpr int QuestionFontWeight = 500;
constexpr int QuestionWidth = 440;             // pixels
constexpr QSize QuestionPictureExtent{64, 64}; // pixels
constexpr const char *QuestionText =
    "Tonewright is about to open its welcome wizard, which will guide you through configuring some "
    "of the initial options of this application.\n\n"
    "Click on Proceed to run the welcome wizard.\n\n"
    "Click on Skip if you'd like to bypass the welcome wizard, for example, if you're happy with "
    "the configuration of Tonewright as it is.\n\n"
    "If you skip the welcome wizard, it won't appear again. You can subsequently run it manually "
    "through the Help menu, and all the configurable options for Tonewright can be managed through "
    "its Setup window and user interface.";

constexpr Qt::WindowFlags BoxFlags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                     Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;

void OpenHelpByF1(QDialog &box) {
    QObject::connect(new QShortcut(Qt::Key_F1, &box), &QShortcut::activated, &box,
                     [&box] { ShowHelp(&box, "WELCOME"); });
}

// Dialog units in pixels, as the font of dialogs has them, which is of one size everywhere: four to
// the average width of its letters, eight to its height.
QRect PixelsOf(const QRect &units) {
    constexpr int Width = 7, Height = 16; // pixels
    return {units.x() * Width / 4, units.y() * Height / 8, units.width() * Width / 4,
            units.height() * Height / 8};
}

// ---- the kinds of controls that a template may have

QWidget *MakeLabel(const PageControl &, const ControlRecord &record, QWidget *parent) {
    const QString text = QString::fromStdString(record.text);
    if (record.kind == ControlKind::AlphaGraphic) {
        auto *picture = new QLabel(parent);
        const QSize size = PictureSize(record.picture);
        if (!size.isEmpty()) {
            picture->setPixmap(PictureOf(record.picture, size, parent->devicePixelRatioF()));
        }
        picture->setAccessibleName(text);
        return picture;
    }
    auto *label = new WrappedText(parent);
    label->setText(text);
    if (record.kind == ControlKind::Static && !record.fontFace.empty()) {
        QFont font = FontOfHeight(QString::fromStdString(record.fontFace), record.fontHeight,
                                  record.fontWeight == 0 ? UsualWeight : record.fontWeight);
        font.setItalic(record.italic);
        label->setFont(font);
    }
    return label;
}

template <typename Button>
QWidget *MakeButton(const PageControl &, const ControlRecord &record, QWidget *parent) {
    auto *button = new Button(QString::fromStdString(record.text), parent);
    if (button->isCheckable()) {
        LeaveReturnToBox(button);
    }
    return button;
}

// What screen readers say of a list, whose text is shown nowhere.
void NameList(QWidget &list, const ControlRecord &record) {
    if (record.kind == ControlKind::ListBox) {
        list.setAccessibleName(QString::fromStdString(record.text));
    }
}

QWidget *MakeDropDown(const PageControl &control, const ControlRecord &record, QWidget *parent) {
    auto *list = new QComboBox(parent);
    list->addItems(control.items);
    list->setCurrentIndex(-1);
    NameList(*list, record);
    LeaveReturnToBox(list);
    TakeWheelWithFocusOnly(list);
    return list;
}

QWidget *MakeList(const PageControl &control, const ControlRecord &record, QWidget *parent) {
    auto *list = new QListWidget(parent);
    list->addItems(control.items);
    NameList(*list, record);
    return list;
}

// Frames lie below what stands in them.
QWidget *MakeGroup(const PageControl &, const ControlRecord &record, QWidget *parent) {
    auto *group = new QGroupBox(QString::fromStdString(record.text), parent);
    group->lower();
    return group;
}

QWidget *MakeFrameOf(int shape, QWidget *parent) {
    auto *frame = new QFrame(parent);
    frame->setFrameStyle(shape | QFrame::Sunken);
    frame->lower();
    return frame;
}

QWidget *MakeFrame(const PageControl &control, const ControlRecord &, QWidget *parent) {
    const QByteArray name = control.frameShape.section("::", -1).toLatin1();
    const int shape = QMetaEnum::fromType<QFrame::Shape>().keyToValue(name.constData());
    return MakeFrameOf(std::max<int>(shape, QFrame::NoFrame), parent);
}

QWidget *MakeRule(const PageControl &control, const ControlRecord &, QWidget *parent) {
    const bool isUpright = control.place.height() > control.place.width();
    return MakeFrameOf(isUpright ? QFrame::VLine : QFrame::HLine, parent);
}

QWidget *MakeLineEdit(const PageControl &, const ControlRecord &record, QWidget *parent) {
    return new QLineEdit(QString::fromStdString(record.text), parent);
}

struct ClassRow {
    const char *name;
    QWidget *(*make)(const PageControl &control, const ControlRecord &record, QWidget *parent);
};
constexpr ClassRow Classes[] = {
    {"QCheckBox", MakeButton<QCheckBox>},
    {"QRadioButton", MakeButton<QRadioButton>},
    {"QPushButton", MakeButton<QPushButton>},
    {"QComboBox", MakeDropDown},
    {"QListWidget", MakeList},
    {"QLineEdit", MakeLineEdit},
    {"QGroupBox", MakeGroup},
    {"QFrame", MakeFrame},
    {"Line", MakeRule},
};

// A label, and what is of no class in the table, shows its text.
QWidget *MakeWidget(const PageControl &control, const ControlRecord &record, QWidget *parent) {
    const auto row = std::ranges::find_if(
        Classes, [&](const ClassRow &one) { return control.className == one.name; });
    return (row == std::end(Classes) ? MakeLabel : row->make)(control, record, parent);
}

// Where a control stands: its place, or more where what is in it would be cut off.
QRect RoomFor(QRect place, const QWidget &widget) {
    if (const auto *picture = qobject_cast<const QLabel *>(&widget);
        picture && !picture->pixmap().isNull()) {
        place.setSize(picture->pixmap().deviceIndependentSize().toSize());
    } else if (widget.hasHeightForWidth()) {
        place.setHeight(std::max(place.height(), widget.heightForWidth(place.width())));
    } else if (qobject_cast<const QAbstractButton *>(&widget)) {
        place.setSize(place.size().expandedTo(widget.sizeHint()));
    }
    return place;
}

// ---- values

void ShowValue(QWidget &widget, const PageControl &control, const ControlRecord &record,
               std::span<const ConfigKey> rows) {
    if (auto *button = qobject_cast<QAbstractButton *>(&widget)) {
        button->setChecked(IsChecked(record, rows).value_or(control.checked));
        return;
    }
    const auto indexIn = [&](const auto &list, const auto &find) {
        if (const auto index = SelectedIndex(record, rows)) {
            return *index < static_cast<std::uint32_t>(list.count()) ? static_cast<int>(*index)
                                                                     : -1;
        }
        const auto text = SelectedText(record, rows);
        return text ? find(QString::fromStdString(*text)) : -1;
    };
    if (auto *list = qobject_cast<QComboBox *>(&widget)) {
        list->setCurrentIndex(indexIn(*list, [&](const QString &text) {
            return list->findText(text, Qt::MatchFixedString);
        }));
    } else if (auto *rowList = qobject_cast<QListWidget *>(&widget)) {
        rowList->setCurrentRow(indexIn(*rowList, [&](const QString &text) {
            const auto items = rowList->findItems(text, Qt::MatchFixedString);
            return items.isEmpty() ? -1 : rowList->row(items.front());
        }));
    }
}

void StoreValue(const QWidget &widget, const ControlRecord &record,
                std::span<const ConfigKey> rows) {
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
        StoreChecked(record, button->isChecked(), rows);
    } else if (const auto *list = qobject_cast<const QComboBox *>(&widget)) {
        StoreSelected(record, list->currentIndex(), list->currentText().toStdString(), rows);
    } else if (const auto *rowList = qobject_cast<const QListWidget *>(&widget)) {
        const QListWidgetItem *item = rowList->currentItem();
        StoreSelected(record, rowList->currentRow(), item ? item->text().toStdString() : "", rows);
    }
}

// ---- the frame

// A control of a page in the frame.
struct PagedControl {
    QWidget *widget = nullptr;
    ControlRecord record;
    std::uint32_t number = 0;
    int page = 0;
};

class WizardDialog : public QDialog {
public:
    explicit WizardDialog(const WizardRequest &request)
        : QDialog(request.owner ? request.owner->window() : nullptr),
          request(request), pages{.current = std::clamp(request.startPage, 0,
                                                        std::max(0, request.pageCount - 1)),
                                  .count = request.pageCount} {
        ui.setupUi(this);
        setWindowFlags(BoxFlags);
        setFont(DialogFont());
        for (int page = 0; page < pages.count; ++page) {
            AddPage(page);
        }
        for (QPushButton *button : {ui.control_12, ui.control_11, ui.control_10}) {
            Follow(button);
        }
        connect(ui.control_10, &QPushButton::clicked, this, [this] { Dismiss(); });
        connect(ui.control_11, &QPushButton::clicked, this, [this] {
            GoNext(pages);
            ShowPage();
        });
        connect(ui.control_12, &QPushButton::clicked, this, [this] {
            GoPrevious(pages);
            ShowPage();
        });
        // A control that the tab key comes to is scrolled to.
        connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *control) {
            if (control && ui.page->isAncestorOf(control)) {
                ui.pages->ensureWidgetVisible(control);
            }
        });
        OpenHelpByF1(*this);
        ShowPage();
        (HasNext(pages) ? ui.control_11 : ui.control_10)->setFocus();
        PlacePages();
        adjustSize();
        CentreWindow(*this);
    }

private:
    void AddPage(int page) {
        const auto read = ReadWizardPage(request.firstPage + static_cast<std::uint32_t>(page));
        if (!read) {
            return;
        }
        if (page == 0) {
            ui.page->resize(PixelsOf({QPoint(), read->size}).size());
        }
        std::map<QString, QButtonGroup *> groups; // of radio buttons, by their variable
        for (const PageControl &control : read->controls) {
            PagedControl made{.record = ReadControlRecord(control.title.toStdString()),
                              .number = control.number,
                              .page = page};
            made.widget = MakeWidget(control, made.record, ui.page);
            if (auto *radio = qobject_cast<QRadioButton *>(made.widget)) {
                QButtonGroup *&group =
                    groups[QString::fromStdString(made.record.variable).toLower()];
                group = group ? group : new QButtonGroup(this);
                group->addButton(radio);
            }
            made.widget->setObjectName(ControlName(made.number));
            made.widget->setGeometry(RoomFor(PixelsOf(control.place), *made.widget));
            ShowValue(*made.widget, control, made.record, request.rows);
            Follow(made.widget);
            if (auto *radio = qobject_cast<QRadioButton *>(made.widget);
                radio && !made.record.variable.empty()) {
                connect(radio, &QRadioButton::toggled, this, [this, radio](bool on) {
                    if (on) {
                        ClearOnOtherPages(*radio);
                    }
                });
            }
            controls.push_back(std::move(made));
        }
    }

    // A setting has one value: what is chosen on one page is chosen on no other any more.
    void ClearOnOtherPages(const QRadioButton &chosen) {
        const auto own = std::ranges::find(controls, &chosen, &PagedControl::widget);
        for (const PagedControl &control : controls) {
            auto *radio = qobject_cast<QRadioButton *>(control.widget);
            if (radio && radio->isChecked() && control.page != own->page &&
                EqualNoCase(control.record.variable, own->record.variable)) {
                radio->group()->setExclusive(false);
                radio->setChecked(false);
                radio->group()->setExclusive(true);
            }
        }
    }

    // Puts a control behind the last one in the order of the tab key.
    void Follow(QWidget *control) {
        if (lastControl) {
            setTabOrder(lastControl, control);
        }
        lastControl = control;
    }

    // Gives the pages the room that they need, as far as the screen has it; the rest is scrolled.
    void PlacePages() {
        QRect used = ui.page->rect();
        for (const PagedControl &control : controls) {
            used = used.united(control.widget->geometry());
        }
        ui.page->resize(used.right() + 1, used.bottom() + 1);
        const QSize largest = screen()->availableSize();
        const int foot = sizeHint().height() - ui.pages->sizeHint().height();
        const QSize room(largest.width() * WidthPercent / 100,
                         largest.height() * HeightPercent / 100 - foot);
        QSize size = ui.page->size();
        const int bar = ui.pages->verticalScrollBar()->sizeHint().width();
        if (size.height() > room.height()) {
            size.rwidth() += bar;
        }
        if (size.width() > room.width()) {
            size.rheight() += bar;
        }
        if (size.height() <= room.height() && size.width() <= room.width()) {
            ui.pages->setFocusPolicy(Qt::NoFocus); // there is nothing for its keys to scroll
        }
        ui.pages->setFixedSize(size.boundedTo(room));
    }

    void ShowPage() {
        QString heading; // the first text of the page
        for (const PagedControl &control : controls) {
            if (control.number >= FirstPagedControl) {
                control.widget->setVisible(control.page == pages.current);
            }
            if (control.page == pages.current && heading.isEmpty()) {
                heading = QString::fromStdString(control.record.text);
            }
        }
        ui.page->setAccessibleName(heading);
        ui.pages->verticalScrollBar()->setValue(0);
        ui.control_13->setText(QString::fromStdString(PageLabel(pages)));
        ui.control_10->setText(DismissCaption(pages));
        ui.control_12->setEnabled(HasPrevious(pages));
        ui.control_11->setEnabled(HasNext(pages));
        // What the Return key presses. A button that has become grey leaves the keyboard to it too.
        QPushButton *usual = HasNext(pages) ? ui.control_11 : ui.control_10;
        usual->setDefault(true);
        if (!focusWidget() || !focusWidget()->isEnabled() || !focusWidget()->isVisibleTo(this)) {
            usual->setFocus();
        }
    }

    void Dismiss() {
        for (const PagedControl &control : controls) {
            StoreValue(*control.widget, control.record, request.rows);
        }
        done(WizardDismissed);
    }

    const WizardRequest &request;
    WizardPages pages;
    Ui::WelcomeWizardBox ui;
    std::vector<PagedControl> controls; // of all pages; the widgets belong to the frame
    QWidget *lastControl = nullptr;     // in the order of the tab key
};

} // namespace

int AskForWizard(QWidget *owner) {
    QDialog box(owner ? owner->window() : nullptr);
    Ui::WizardQuestionBox ui;
    ui.setupUi(&box);
    box.setWindowFlags(BoxFlags);
    box.setFont(DialogFont());
    ui.control_10->setPixmap(
        PictureOf(ApplicationPicture, QuestionPictureExtent, box.devicePixelRatioF()));
    ui.control_65->setFont(FontOfHeight("Verdana", QuestionFontHeight, QuestionFontWeight));
    ui.control_65->setText(QuestionText);
    ui.control_65->setFixedSize(QuestionWidth, ui.control_65->heightForWidth(QuestionWidth));
    OpenHelpByF1(box);
    QObject::connect(ui.control_6, &QPushButton::clicked, &box, [&box] { box.done(ResultYes); });
    QObject::connect(ui.control_7, &QPushButton::clicked, &box, [&box] { box.done(ResultNo); });
    ui.control_6->setFocus();
    box.adjustSize();
    CentreWindow(box);
    return box.exec() == ResultYes ? ResultYes : ResultNo;
}

int ShowWizardBox(const WizardRequest &request) {
    WizardDialog box(request);
    return box.exec() == WizardDismissed ? WizardDismissed : 0;
}

} // namespace tonewright
