// The picture and the buttons of a box.
#include "common/view/box_controls.h"

#include "common/desktop.h"
#include "common/view/dialog_controls.h"
#include "common/view/theme.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>

namespace tonewright {
namespace {

constexpr std::uint32_t AcceptButton = 1;
constexpr std::uint32_t RejectButton = 2;
constexpr std::uint32_t HelpButton = 9;
constexpr std::uint32_t Picture = 10;

} // namespace

void SetUpBoxControls(QDialog &box, const char *helpTopic) {
    const QSize pictureSize(ThemeGetMetric(MetricPictureWidth),
                            ThemeGetMetric(MetricPictureHeight));
    ControlOf<QLabel>(&box, Picture)
        ->setPixmap(PictureOf(ApplicationPicture, pictureSize, box.devicePixelRatioF()));
    for (QPushButton *button : box.findChildren<QPushButton *>()) {
        MakeSoftButton(button);
    }
    auto *accept = ControlOf<QPushButton>(&box, AcceptButton);
    QObject::connect(accept, &QPushButton::clicked, &box, &QDialog::accept);
    if (auto *reject = ControlOf<QPushButton>(&box, RejectButton)) {
        QObject::connect(reject, &QPushButton::clicked, &box, &QDialog::reject);
    }
    QObject::connect(ControlOf<QPushButton>(&box, HelpButton), &QPushButton::clicked, &box,
                     [&box, helpTopic] { ShowHelp(&box, helpTopic); });
    accept->setFocus();
}

} // namespace tonewright
