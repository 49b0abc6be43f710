// Picture and buttons of the program's boxes.
#include "common/view/box_controls.h"

#include "common/settings.h"
#include "support/pixels.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace tonewright {
namespace {

// A box with a picture and the buttons of some numbers, as a form makes it.
class BoxControls : public testing::Test {
protected:
    BoxControls() { picture.setObjectName("control_10"); }
    QPushButton *Add(int number) {
        auto *button = new QPushButton(&box); // a child of the box
        button->setObjectName(QString("control_%1").arg(number));
        return button;
    }

    ScriptedDesktop desktop;
    QDialog box;
    QLabel picture{&box};
    QPushButton *help = Add(9);
    QPushButton *accept = Add(1);
};

TEST_F(BoxControls, ThePictureHasTheMeasuresOfTheTheme) {
    SetUpBoxControls(box, "SELECT");
    EXPECT_EQ(picture.size(), QSize(96, 96));
    EXPECT_TRUE(HasInk(picture));
}

TEST_F(BoxControls, ButtonsAcceptRejectAndHelp) {
    QPushButton *reject = Add(2);
    SetUpBoxControls(box, "SELECT");
    EXPECT_EQ(box.focusWidget(), accept);
    std::vector<int> results;
    QObject::connect(&box, &QDialog::finished, [&](int result) { results.push_back(result); });
    box.show();
    help->click();
    EXPECT_EQ(desktop.helpTopics, std::vector<std::string>{"SELECT"});
    box.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&box));
    QTest::keyClick(accept, Qt::Key_F1);
    EXPECT_EQ(desktop.helpTopics, std::vector<std::string>(2, "SELECT"));
    EXPECT_TRUE(results.empty()) << "the box stays";
    accept->click();
    box.show();
    reject->click();
    EXPECT_EQ(results, (std::vector<int>{QDialog::Accepted, QDialog::Rejected}));
}

} // namespace
} // namespace tonewright
