// The picture and the buttons of a box.
#include "common/view/box_controls.h"

#include "common/desktop.h"
#include "common/view/dialog_controls.h"
#include "common/view/theme_picture.h"

#include <QCheckBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>

namespace tonewright {
namespace {

constexpr std::uint32_t AcceptButton = 1;
constexpr std::uint32_t RejectButton = 2;
constexpr std::uint32_t HelpButton = 9;
constexpr std::uint32_t Picture = 10;

class ReturnGuard : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() != QEvent::KeyPress) {
            return false;
        }
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key != Qt::Key_Return && key != Qt::Key_Enter) {
            return false;
        }
        event->ignore();
        return true;
    }
};

} // namespace

void SetUpBoxControls(QDialog &box, ReferenceTopic helpTopic) {
    if (auto *picture = ControlOf<QLabel>(&box, Picture)) {
        ShowThemePicture(*picture, ApplicationPicture);
    }
    for (QCheckBox *check : box.findChildren<QCheckBox *>()) {
        LeaveReturnToBox(check);
    }
    auto *accept = ControlOf<QPushButton>(&box, AcceptButton);
    QObject::connect(accept, &QPushButton::clicked, &box, &QDialog::accept);
    if (auto *reject = ControlOf<QPushButton>(&box, RejectButton)) {
        QObject::connect(reject, &QPushButton::clicked, &box, &QDialog::reject);
    }
    const auto help = [&box, helpTopic] { ShowHelp(&box, helpTopic); };
    QObject::connect(ControlOf<QPushButton>(&box, HelpButton), &QPushButton::clicked, &box, help);
    QObject::connect(new QShortcut(Qt::Key_F1, &box), &QShortcut::activated, &box, help);
    accept->setFocus();
}

void LeaveReturnToBox(QWidget *control) {
    control->installEventFilter(new ReturnGuard(control));
}

} // namespace tonewright
