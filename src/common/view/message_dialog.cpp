// Builds the message dialog of a request on top of its template, and runs it.
#include "common/view/message_dialog.h"

#include "common/sound.h"
#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "common/view/theme_picture.h"
#include "ui_MessageBox.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>

#include <algorithm>
#include <vector>

namespace tonewright {
namespace {

constexpr int ControlFirst = 1;
constexpr int ControlSecond = 7;
constexpr int ControlThird = 2;
constexpr int ControlHelp = 9;

// The buttons in the order of their column. Only the first one stands in the template.
struct ButtonRow {
    int control;
    std::uint32_t flag;
    std::string MessageRequest::*caption;
    int result; // 0: does not end the dialog
};
constexpr ButtonRow Buttons[] = {
    {ControlFirst, MessageFlagButton1, &MessageRequest::button1, ResultYes},
    {ControlSecond, MessageFlagButton2, &MessageRequest::button2, ResultNo},
    {ControlThird, MessageFlagButton3, &MessageRequest::button3, ResultCancel},
    {ControlHelp, MessageFlagButton4, &MessageRequest::button4, 0},
};

struct CheckRow {
    int control;
    std::uint32_t flag;
    std::string MessageRequest::*caption;
    int MessageRequest::*state;
};
constexpr CheckRow Checks[] = {
    {500, MessageFlagCheck1, &MessageRequest::check1, &MessageRequest::state1},
    {501, MessageFlagCheck2, &MessageRequest::check2, &MessageRequest::state2},
    {502, MessageFlagCheck3, &MessageRequest::check3, &MessageRequest::state3},
};

struct NoteRow {
    std::uint32_t flag;
    std::string MessageRequest::*text;
};
constexpr NoteRow Notes[] = {
    {MessageFlagNote1, &MessageRequest::note1},
    {MessageFlagNote2, &MessageRequest::note2},
    {MessageFlagNote3, &MessageRequest::note3},
};

constexpr int CheckHeight = 16;            // pixels, at least
constexpr int ButtonGapPercent = 80;       // of the margin
constexpr int FootPercent = 30;            // of the margin
constexpr int LeastCharactersInALine = 24; // a large font widens the text
// What of the screen the dialog may take in width, and its text in height.
constexpr int WidthPercent = 95;
constexpr int HeightPercent = 75;

QString ControlName(int control) {
    return QStringLiteral("control_%1").arg(control);
}

class MessageDialog : public QDialog {
public:
    explicit MessageDialog(MessageRequest &request)
        : QDialog(request.owner ? request.owner->window() : nullptr), request(request) {
        ui.setupUi(this);
        margin = ui.control_1->y();
        columnGap = ui.control_65->x() - ui.control_10->geometry().right() - 1;
        setFont(DialogFont());
        SetFrame();
        SetText();
        SetPicture();
        MakeButtons();
        MakeChecksAndNotes();
        PlaceControls();
        ui.control_1->setFocus();
        CentreWindow(*this);
    }

    void reject() override { End(ResultCancel); }

protected:
    void paintEvent(QPaintEvent *) override {
        if (HasTitleBar()) {
            return;
        }
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::Shadow));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
        if (captionHeight > 0) {
            painter.fillRect(1, 1, width() - 2, captionHeight,
                             palette().color(QPalette::Highlight));
            painter.setPen(palette().color(QPalette::HighlightedText));
            painter.drawText(QRect(margin, 1, width() - 2 * margin, captionHeight),
                             Qt::AlignVCenter | Qt::TextSingleLine, windowTitle());
        }
    }

    // A pop-up gets the presses outside of it as well.
    void mousePressEvent(QMouseEvent *event) override {
        if (IsPopup() && !rect().contains(event->position().toPoint())) {
            End(Has(MessageFlagButton3)   ? ResultCancel
                : Has(MessageFlagButton2) ? ResultNo
                                          : ResultYes);
            return;
        }
        QDialog::mousePressEvent(event);
    }

private:
    bool Has(std::uint32_t flag) const { return request.flags & flag; }
    bool IsPopup() const { return Has(MessageFlagPopup); }
    bool HasTitleBar() const { return Has(MessageFlagCaption) && !IsPopup(); }

    void End(int result) {
        request.result = result;
        done(result);
    }

    void SetFrame() {
        setWindowTitle(QString::fromStdString(request.caption));
        if (IsPopup()) {
            // The platform gives a pop-up no title bar, so that this dialog draws its own.
            setWindowFlags(Qt::Popup);
            captionHeight = Has(MessageFlagCaption) ? fontMetrics().height() + margin / 2 : 0;
        } else if (HasTitleBar()) {
            setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        } else {
            setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
        }
    }

    void SetText() {
        if (Has(MessageFlagFont) && request.font.height != 0) {
            ui.control_65->setFont(FontOfHeight(QString::fromStdString(request.font.family),
                                                request.font.height, request.font.weight));
        }
        ui.control_65->setText(QString::fromStdString(request.text));
    }

    void SetPicture() {
        if (Has(MessageFlagPicture)) {
            ShowThemePicture(*ui.control_10, request.picture);
        } else {
            ui.control_10->hide();
        }
    }

    void MakeButtons() {
        for (const ButtonRow &row : Buttons) {
            QPushButton *button = row.control == ControlFirst ? ui.control_1 : nullptr;
            if (!button && Has(row.flag)) {
                button = new QPushButton(this);
                button->setObjectName(ControlName(row.control));
            }
            if (!button) {
                continue;
            }
            if (Has(row.flag)) {
                button->setText(QString::fromStdString(request.*row.caption));
            }
            connect(button, &QPushButton::clicked, this, [this, &row] {
                if (row.result != 0) {
                    End(row.result);
                } else if (!request.helpTopic.empty() && request.helpHandler) {
                    request.helpHandler(this, request.helpTopic);
                }
            });
            buttons.push_back(button);
        }
    }

    void MakeChecksAndNotes() {
        for (const CheckRow &row : Checks) {
            if (!Has(row.flag)) {
                continue;
            }
            auto *box = new QCheckBox(QString::fromStdString(request.*row.caption), this);
            box->setObjectName(ControlName(row.control));
            box->setChecked(request.*row.state != 0);
            connect(box, &QCheckBox::toggled, this,
                    [this, &row](bool checked) { request.*row.state = checked ? 1 : 0; });
            lines.push_back(box);
        }
        for (const NoteRow &row : Notes) {
            if (Has(row.flag)) {
                auto *note = new WrappedText(this);
                note->setText(QString::fromStdString(request.*row.text));
                lines.push_back(note);
            }
        }
    }

    // Width of the text: the template's. A font so large that lines would hold a few letters only,
    // a caption of a check box, and a text that would be higher than the screen widen it.
    int TextWidth(QSize largest) const {
        int width =
            std::max(ui.control_65->width(),
                     ui.control_65->fontMetrics().averageCharWidth() * LeastCharactersInALine);
        for (const QWidget *line : lines) {
            if (qobject_cast<const QCheckBox *>(line)) {
                width = std::max(width, line->sizeHint().width());
            }
        }
        while (width < largest.width() && ui.control_65->heightForWidth(width) > largest.height()) {
            width += width / 4;
        }
        return std::min(width, largest.width());
    }

    // Places everything inside the margin, which is the first button's distance from the top.
    void PlaceControls() {
        const int top = captionHeight + margin;
        QSize buttonSize = ui.control_1->size();
        for (const QPushButton *button : buttons) {
            buttonSize = buttonSize.expandedTo(button->sizeHint());
        }
        const bool hasPicture = Has(MessageFlagPicture);
        const int textLeft = margin + (hasPicture ? ui.control_10->width() + columnGap : 0);
        const QSize screen = Screen();
        const QSize largest(screen.width() - textLeft - buttonSize.width() - columnGap - 2 * margin,
                            screen.height());
        const int textWidth = TextWidth(largest);
        const int textHeight = PlaceText(QRect(textLeft, top, textWidth, largest.height()),
                                         3 * buttonSize.height() + 2 * margin);
        int foot = top + textHeight;
        for (QWidget *line : lines) {
            const int height = line->hasHeightForWidth()
                                   ? line->heightForWidth(textWidth)
                                   : std::max(CheckHeight, line->sizeHint().height());
            line->setGeometry(textLeft, foot + margin, textWidth, height);
            foot += margin + height;
        }
        if (hasPicture) {
            ui.control_10->move(margin, top);
            foot = std::max(foot, top + ui.control_10->height());
        }
        const int buttonLeft = textLeft + textWidth + columnGap;
        int buttonTop = top;
        for (QPushButton *button : buttons) {
            button->setGeometry(QRect(QPoint(buttonLeft, buttonTop), buttonSize));
            foot = std::max(foot, buttonTop + buttonSize.height());
            buttonTop += buttonSize.height() + margin * ButtonGapPercent / 100;
        }
        setFixedSize(buttonLeft + buttonSize.width() + margin,
                     foot + margin + margin * FootPercent / 100);
    }

    // Gives the text its place; its height, which is `least` or more. A short text stands beside
    // the middle of the picture, or of the first button, and one that no width makes low enough is
    // scrolled.
    int PlaceText(QRect area, int least) {
        const int textHeight = ui.control_65->heightForWidth(area.width());
        const QWidget *beside =
            Has(MessageFlagPicture) ? static_cast<QWidget *>(ui.control_10) : ui.control_1;
        const int above = std::max(0, (beside->height() - textHeight) / 2);
        ui.control_65->setContentsMargins(0, above, 0, 0);
        const int height = std::max(least, above + textHeight);
        if (height <= area.height()) {
            area.setHeight(height);
            ui.control_65->setGeometry(area);
            return height;
        }
        auto *scroller = new QScrollArea(this);
        scroller->setFrameShape(QFrame::NoFrame);
        scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        scroller->setGeometry(area);
        const int width = area.width() - scroller->verticalScrollBar()->sizeHint().width();
        ui.control_65->resize(width, ui.control_65->heightForWidth(width));
        scroller->setWidget(ui.control_65);
        return area.height();
    }

    static QSize Screen() {
        const QScreen *screen = QGuiApplication::primaryScreen();
        const QSize size = screen ? screen->availableSize() : QSize(800, 600);
        return {size.width() * WidthPercent / 100, size.height() * HeightPercent / 100};
    }

    Ui::MessageBox ui;
    MessageRequest &request;
    std::vector<QPushButton *> buttons; // children, as the lines are
    std::vector<QWidget *> lines;       // check boxes and notes under the text
    int margin = 0;                     // pixels
    int columnGap = 0;                  // between picture, text and buttons
    int captionHeight = 0;              // of the title bar of a pop-up
};

// A wait cursor means nothing while the program waits for an answer.
struct ArrowWhileAsking {
    bool needed = QApplication::overrideCursor() != nullptr;
    ArrowWhileAsking() {
        if (needed) {
            QApplication::setOverrideCursor(Qt::ArrowCursor);
        }
    }
    ~ArrowWhileAsking() {
        if (needed) {
            QApplication::restoreOverrideCursor();
        }
    }
};

} // namespace

void RunMessageDialog(MessageRequest &request) {
    MessageDialog dialog(request);
    const ArrowWhileAsking arrow;
    const bool hasSound = request.flags & MessageFlagSound;
    if (hasSound && TheDesktop.PlaySoundFile) {
        TheDesktop.PlaySoundFile(request.soundName);
    }
    dialog.exec();
    if (hasSound) {
        StopSounds();
    }
}

} // namespace tonewright
