// Fills drop-down lists and keeps the wheel from changing one in passing.
#include "common/view/drop_down.h"

#include "common/text.h"

#include <QComboBox>
#include <QEvent>

namespace tonewright {
namespace {

class WheelGuard : public QObject {
public:
    explicit WheelGuard(QComboBox *list) : QObject(list) {}

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() != QEvent::Wheel || static_cast<QWidget *>(watched)->hasFocus()) {
            return false;
        }
        event->ignore();
        return true;
    }
};

} // namespace

int FillComboFromList(QComboBox *list, const char *items) {
    list->clear();
    for (const std::string &item : SplitList(items)) {
        list->addItem(QString::fromStdString(item));
    }
    list->setCurrentIndex(-1);
    return list->count();
}

void TakeWheelWithFocusOnly(QComboBox *list) {
    list->setFocusPolicy(Qt::StrongFocus);
    list->installEventFilter(new WheelGuard(list));
}

} // namespace tonewright
