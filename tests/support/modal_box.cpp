// Reaches a modal box from its own event loop.
#include "support/modal_box.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>

namespace tonewright {

void WithModalBox(const std::function<void()> &open, const std::function<void(QDialog &)> &use) {
    bool opened = false;
    QTimer::singleShot(0, [&] {
        auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        opened = true;
        box->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(box));
        use(*box);
        if (box->isVisible()) {
            ADD_FAILURE() << "the box is still open";
            box->done(0);
        }
    });
    open();
    EXPECT_TRUE(opened);
}

} // namespace tonewright
