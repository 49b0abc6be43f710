// Builds the sheet of settings out of its two templates.
#include "shell/view/settings_sheet.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/view/centre_window.h"
#include "common/view/dialog_controls.h"
#include "common/view/fonts.h"
#include "common/view/theme_picture.h"
#include "shell/show_document.h"
#include "shell/view/select_theme_box.h"
#include "ui_SetupPropertyOne.h"
#include "ui_SetupPropertyTwo.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace tonewright {
namespace {

constexpr std::uint32_t LargestPageIndex = 2;
constexpr std::uint32_t ControlDecoration = 10;
constexpr std::uint32_t ControlSelectTheme = 2001;
constexpr int SheetMargin = 10; // pixels

void SelectTheme(QWidget *page) {
    if (SelectThemeBox(page, ThemeCurrent)) {
        ShowMessage(page, "You must restart this application for your new theme to become active.");
    }
}

void FillPageOne(QWidget *page) {
    ShowThemePicture(*ControlOf<QLabel>(page, ControlDecoration), THEME_PICTURE_SETTINGS);
    auto *selectTheme = ControlOf<QPushButton>(page, ControlSelectTheme);
    QObject::connect(selectTheme, &QPushButton::clicked, page, [page] { SelectTheme(page); });
}

void FillPageTwo(QWidget *page) {
    ControlOf<QComboBox>(page, 134)->addItems({"None", "Soft", "Flex", "Wedge"});
}

template <typename Template> void MakeTemplate(QWidget *page) {
    Template().setupUi(page);
}

struct PageRow {
    const char *title;
    void (*make)(QWidget *page); // puts the template's controls on the page
    void (*fill)(QWidget *page); // what no key says about them
};
constexpr PageRow Pages[] = {
    {"Options", MakeTemplate<Ui::SetupPropertyOne>, FillPageOne},
    {"Application", MakeTemplate<Ui::SetupPropertyTwo>, FillPageTwo},
};

// The room that a page needs, found out on one that is never shown.
QSize PageSize(const PageRow &row, const QFont &font) {
    QWidget page;
    page.setFont(font);
    row.make(&page);
    row.fill(&page);
    return page.sizeHint();
}

class SettingsSheet : public QDialog {
public:
    explicit SettingsSheet(QWidget *owner) : QDialog(owner) {
        setWindowTitle("Settings");
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setFont(DialogFont());
        MakeFrame();
        const auto first = std::min(SetupPageIndex, LargestPageIndex);
        tabs->setCurrentIndex(static_cast<int>(first)); // there is no page 2: stays on page 0
        ActivatePage(tabs->currentIndex());
        connect(tabs, &QTabWidget::currentChanged, this, &SettingsSheet::ActivatePage);
        FocusFirstControl();
        adjustSize();
        CentreWindow(*this);
    }

    void accept() override {
        for (int index = 0; index < tabs->count(); ++index) {
            if (PageIsMade(index)) {
                ControlsToKeys(tabs->widget(index), ProgramSettings.rows);
            }
        }
        QDialog::accept();
    }

protected:
    void keyPressEvent(QKeyEvent *event) override {
        if (event->key() == Qt::Key_F1) {
            ShowSettingHelp(this, SettingOf(focusWidget(), ProgramSettings.rows));
            return;
        }
        QDialog::keyPressEvent(event);
    }

private:
    void MakeFrame() {
        auto *rows = new QVBoxLayout(this);
        rows->setContentsMargins(SheetMargin, SheetMargin, SheetMargin, SheetMargin);
        rows->setSpacing(SheetMargin);
        tabs = new QTabWidget(this);
        QSize size;
        for (const PageRow &row : Pages) {
            size = size.expandedTo(PageSize(row, font()));
        }
        for (const PageRow &row : Pages) {
            auto *page = new QWidget;
            page->setMinimumSize(size);
            tabs->addTab(page, row.title);
        }
        rows->addWidget(tabs);
        rows->addWidget(MakeButtons());
        rows->setSizeConstraint(QLayout::SetFixedSize);
    }

    QWidget *MakeButtons() {
        auto *box = new QDialogButtonBox(this);
        const auto add = [&](const char *caption, QDialogButtonBox::ButtonRole role,
                             std::uint32_t number) {
            QPushButton *button = box->addButton(caption, role);
            button->setObjectName(ControlName(number));
            button->setMinimumSize(96, 30);
            return button;
        };
        add("OK", QDialogButtonBox::AcceptRole, 1)->setDefault(true);
        add("Cancel", QDialogButtonBox::RejectRole, 2);
        add("Help", QDialogButtonBox::HelpRole, 9);
        connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
        connect(box, &QDialogButtonBox::helpRequested, this,
                [this] { ShowSettingHelp(this, nullptr); });
        return box;
    }

    bool PageIsMade(int index) const { return tabs->widget(index)->layout() != nullptr; }

    void ActivatePage(int index) {
        SetupPageIndex = static_cast<std::uint32_t>(index);
        if (PageIsMade(index)) {
            return;
        }
        QWidget *page = tabs->widget(index);
        Pages[index].make(page);
        Pages[index].fill(page);
        KeysToControls(page, ProgramSettings.rows);
        ConnectKeyControls(page, ProgramSettings.rows);
        // Once the sheet is on the screen and its frame is known.
        QTimer::singleShot(0, page, [this] { CentreWindow(*this); });
    }

    void FocusFirstControl() {
        const QWidget *page = tabs->currentWidget();
        for (QWidget *control : page->findChildren<QWidget *>()) {
            if (control->isEnabled() && (control->focusPolicy() & Qt::TabFocus)) {
                control->setFocus();
                return;
            }
        }
    }

    QTabWidget *tabs = nullptr; // a child
};

} // namespace

void SetupShow(QWidget *window) {
    SettingsSheet sheet(window ? window->window() : nullptr);
    sheet.exec();
}

} // namespace tonewright
