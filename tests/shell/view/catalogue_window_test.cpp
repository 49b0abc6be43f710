// From the list of voices into the catalogue and back: the main window with the catalogue window
// over it.
#include "window_fixture.h"

#include "common/view/list_box_view.h"

#include <filesystem>

namespace tonewright {
namespace {

class CatalogueOverMainWindow : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        PlatformFolders.documents = home.Folder();
        MakeProgramFolders();
        OpenBank();
    }
    // Chooses an entry of the context menu of a row.
    void FromMenu(int row, int command) {
        EXPECT_TRUE(WithContextMenu(RowPoint(row), [command](QMenu &menu) {
            QAction *entry = ActionOf(menu, command);
            ASSERT_NE(entry, nullptr);
            menu.setActiveAction(entry);
            QTest::keyClick(&menu, Qt::Key_Return);
        }));
    }
    // The same of an entry that opens a box, which is handed to `use`.
    void FromMenu(int row, int command, const std::function<void(QDialog &)> &use) {
        bool opened = false;
        QTimer look;
        look.setInterval(5);
        QObject::connect(&look, &QTimer::timeout, [&] {
            if (auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
                look.stop();
                opened = true;
                use(*box);
            }
        });
        look.start();
        FromMenu(row, command);
        EXPECT_TRUE(opened);
    }
    static void Click(const QDialog &box, int button) {
        QTest::mouseClick(box.findChild<QWidget *>(QString("control_%1").arg(button)),
                          Qt::LeftButton);
    }
};

TEST_F(CatalogueOverMainWindow, AVoiceGoesIntoTheCatalogueAndIntoAnotherRow) {
    FromMenu(6, CommandAddToDatabase);
    FromMenu(2, CommandAddToDatabase);
    desktop.sounds.clear();
    MainListState.dirty = false;
    const QImage before = Viewport()->grab().toImage();
    FromMenu(10, CommandInsertFromDatabase, [this](QDialog &box) {
        EXPECT_EQ(box.parentWidget(), window.get());
        auto *records = dynamic_cast<ListBoxView *>(box.findChild<QWidget *>("control_102"));
        ASSERT_NE(records, nullptr);
        QTest::mouseClick(records->viewport(), Qt::LeftButton, {},
                          records->RowRectangle(1).center()); // "Voice 07"
        Click(box, 1);
    });
    EXPECT_EQ(Names(9, 11), (std::vector<std::string>{"VOICE 10", "VOICE 07", "VOICE 12"}));
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(desktop.sounds.size(), 1u);
    EXPECT_NE(Viewport()->grab().toImage(), before);
}

TEST_F(CatalogueOverMainWindow, TheEndOfTheProgramCancelsTheWindow) {
    FromMenu(6, CommandAddToDatabase);
    const auto file = home.path / "My Tonewright 17 Documents" / "Voices.syx_db";
    FromMenu(7, CommandAddToDatabase);
    const auto size = std::filesystem::file_size(file);
    EndInBox([&] { FromMenu(10, CommandInsertFromDatabase); },
             [](QDialog &box) { Click(box, 106); }); // an edit
    EXPECT_EQ(NameAt(10), "VOICE 11");
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(std::filesystem::file_size(file), size);
}

} // namespace
} // namespace tonewright
