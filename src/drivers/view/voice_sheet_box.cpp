// Frame, buttons and keys of the editor's sheet.
#include "drivers/view/voice_sheet_box.h"

#include "common/view/centre_window.h"
#include "common/view/dialog_controls.h"
#include "common/view/fonts.h"
#include "drivers/view/voice_page.h"
#include "midi/view/audition_box.h"

#include <QDialog>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <utility>
#include <vector>

namespace tonewright {
namespace {

// Pixels.
constexpr int SheetMargin = 6;
constexpr int FrameWidth = 8; // what a window manager puts around the sheet
constexpr int FrameHeight = 31;
constexpr QSize SmallestButton(96, 30);

class VoiceSheetBox : public QDialog {
public:
    VoiceSheetBox(QWidget *owner, const VoicePagesLook &look, DriverId driverId, VoiceSheet &sheet)
        : QDialog(owner ? owner->window() : nullptr), sheet(sheet) {
        setWindowTitle("Edit Voice");
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setFont(DialogFont());
        MakeFrame(look);
        sheet.showRow = [this](int page, std::size_t row) { PageAt(page)->ShowRow(row); };
        sheet.showAlgorithm = [this] { PageAt(tabs->currentIndex())->ShowAlgorithm(); };
        sheet.audition = [this, driverId](const VoiceObject &voice) {
            AuditionBox(this, nullptr, &voice, driverId, this->sheet.ports, 0);
        };
        tabs->setCurrentIndex(StartPage(sheet));
        ActivatePage(tabs->currentIndex());
        connect(tabs, &QTabWidget::currentChanged, this, &VoiceSheetBox::ActivatePage);
        TurnPagesWith(QKeySequence(Qt::CTRL | Qt::Key_PageDown), 1);
        TurnPagesWith(QKeySequence(Qt::CTRL | Qt::Key_PageUp), -1);
        // The toolkit's tabs have these too, but some controls would take them for letters.
        TurnPagesWith(QKeySequence(Qt::CTRL | Qt::Key_Tab), 1);
        TurnPagesWith(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), -1);
        PageAt(tabs->currentIndex())->FocusFirstControl();
        setFixedSize(
            sizeHint().boundedTo(screen()->availableSize() - QSize(FrameWidth, FrameHeight)));
        CentreWindow(*this);
    }

    void reject() override { Press(SheetCancel, SheetCancel); }

protected:
    void showEvent(QShowEvent *event) override {
        QDialog::showEvent(event);
        sheet.isShown = true;
    }
    void hideEvent(QHideEvent *event) override {
        sheet.isShown = false;
        QDialog::hideEvent(event);
    }
    void changeEvent(QEvent *event) override {
        QDialog::changeEvent(event);
        if (event->type() == QEvent::FontChange) {
            SizeButtons();
        }
    }
    // Whoever turns the wheel over the tabs did not mean to collect one page after the other.
    bool eventFilter(QObject *, QEvent *event) override { return event->type() == QEvent::Wheel; }
    // Return that no button has taken is pressed in a control or on a tab.
    void keyPressEvent(QKeyEvent *event) override {
        switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Press(SheetOk, NumberOf(focusWidget()));
            break;
        case Qt::Key_F1:
            Press(SheetHelp, NumberOf(focusWidget()));
            break;
        default:
            QDialog::keyPressEvent(event);
        }
    }

private:
    void MakeFrame(const VoicePagesLook &look) {
        auto *rows = new QVBoxLayout(this);
        rows->setContentsMargins(SheetMargin, SheetMargin, SheetMargin, SheetMargin);
        rows->setSpacing(SheetMargin);
        tabs = new QTabWidget(this);
        tabs->tabBar()->installEventFilter(this);
        const QSize size =
            VoicePageView::SizeOf(look, VoicePage, sheet.itemIndex, font())
                .expandedTo(VoicePageView::SizeOf(look, VoicePage + 1, sheet.itemIndex, font()));
        for (int page = 0; page < PageCount(look.family); ++page) {
            tabs->addTab(new VoicePageView(look, sheet, page, size),
                         QString::fromStdString(PageTitle(page)));
        }
        rows->addWidget(tabs);
        rows->addLayout(MakeButtons());
    }

    QLayout *MakeButtons() {
        auto *row = new QHBoxLayout;
        row->setSpacing(SheetMargin);
        row->addStretch();
        const std::pair<std::uint32_t, const char *> captions[] = {{SheetOk, "OK"},
                                                                   {SheetCancel, "Cancel"},
                                                                   {SheetAudition, "Audition..."},
                                                                   {SheetHelp, "Help"}};
        for (const auto &[number, caption] : captions) {
            auto *button = new QPushButton(caption, this);
            button->setObjectName(ControlName(number));
            connect(button, &QPushButton::clicked, this,
                    [this, number = number] { Press(number, number); });
            row->addWidget(button);
            buttons.push_back(button);
        }
        buttons.front()->setDefault(true);
        SizeButtons();
        return row;
    }

    // So that they are not squeezed where the pages want more room than there is.
    void SizeButtons() {
        for (QPushButton *button : buttons) {
            button->setMinimumSize(SmallestButton.expandedTo(button->minimumSizeHint()));
        }
    }

    VoicePageView *PageAt(int page) const {
        return static_cast<VoicePageView *>(tabs->widget(page));
    }

    void ActivatePage(int index) {
        VoicePageView *page = PageAt(index);
        const bool isNew = !page->IsMade();
        if (isNew) {
            page->Make();
            PutButtonsBehind(page->LastControl());
        }
        ShowPage(sheet, index, page->Controls());
        page->ShowAll();
        if (page->hasFocus()) { // came from the former page, when this one had no controls yet
            page->FocusFirstControl();
        }
    }

    // For the Tab key, which else meets controls in the order in which they were made.
    void PutButtonsBehind(QWidget *last) {
        for (QPushButton *button : buttons) {
            setTabOrder(last, button);
            last = button;
        }
    }

    void TurnPagesWith(const QKeySequence &keys, int step) {
        auto *shortcut = new QShortcut(keys, this);
        connect(shortcut, &QShortcut::activated, this, [this, step] {
            tabs->setCurrentIndex((tabs->currentIndex() + step + tabs->count()) % tabs->count());
        });
    }

    // The number of a control; 0 for one without.
    static std::uint32_t NumberOf(const QWidget *control) {
        const QString name = control ? control->objectName() : QString();
        const std::uint32_t number = name.section(u'_', -1).toUInt();
        return name == ControlName(number) ? number : 0;
    }

    void Press(std::uint32_t button, std::uint32_t focused) {
        if (PressSheetButton(sheet, this, button, focused)) {
            done(sheet.accepted ? Accepted : Rejected);
        }
    }

    VoiceSheet &sheet;
    QTabWidget *tabs = nullptr;         // a child
    std::vector<QPushButton *> buttons; // children, in the order of the Tab key
};

} // namespace

int ShowVoiceSheet(QWidget *window, const VoicePagesLook &look, DriverId driverId,
                   VoiceObject &voice, MidiPorts ports, int index) {
    std::optional<VoiceSheet> sheet = BeginVoiceSheet(window, look.family, voice, ports, index);
    if (!sheet) {
        return 0;
    }
    VoiceSheetBox(window, look, driverId, *sheet).exec();
    return EndVoiceSheet(*sheet, voice);
}

} // namespace tonewright
