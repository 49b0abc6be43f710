// Copy and Paste in the real window over the real clipboard.
#include "window_fixture.h"

#include "shell/clipboard.h"
#include "shell/shell_window.h"
#include "shell/view/desktop_qt.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMimeData>

namespace tonewright {
namespace {

const QString VoiceType = "application/x-tonewright-voice";

class ClipboardWindow : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        const Desktop scripted = TheDesktop;
        UseQtDesktop();
        const Desktop real = TheDesktop;
        TheDesktop = scripted;
        TheDesktop.PutClipboard = real.PutClipboard;
        TheDesktop.ClipboardHasVoice = real.ClipboardHasVoice;
        TheDesktop.TakeClipboard = real.TakeClipboard;
        SystemClipboard().clear();
        ClipboardChanged();
        OpenBank();
    }
    void TearDown() override { SystemClipboard().clear(); }

    static QClipboard &SystemClipboard() { return *QGuiApplication::clipboard(); }
    // As another program would do it.
    static void Offer(const QByteArray &block) {
        auto *data = new QMimeData;
        data->setData(VoiceType, block);
        SystemClipboard().setMimeData(data);
    }
    QAction &PasteItem() const { return *window->MenuAction(CommandPaste); }
    void Press(Qt::Key key) {
        QTest::keyClick(window.get(), key, Qt::ControlModifier);
        RunPosted();
    }
};

TEST_F(ClipboardWindow, CtrlCAndCtrlVCarryAVoiceToAnotherRow) {
    ClickRow(2);
    Press(Qt::Key_C);
    ClickRow(6);
    Press(Qt::Key_V);
    EXPECT_EQ(Names(5, 7), (std::vector<std::string>{"VOICE 06", "VOICE 03", "VOICE 08"}));
    EXPECT_EQ(*ListVoice(MainList, 6), *ListVoice(MainList, 2));
    EXPECT_TRUE(MainListState.dirty);
    Press(Qt::Key_Z);
    EXPECT_EQ(NameAt(6), "VOICE 07");
}

TEST_F(ClipboardWindow, ATextEditorPastesTheVoicesName) {
    ClickRow(2);
    Press(Qt::Key_C);
    QLineEdit editor;
    editor.paste();
    EXPECT_EQ(editor.text(), "VOICE 03");
    EXPECT_TRUE(SystemClipboard().mimeData()->hasFormat(VoiceType));
    EXPECT_EQ(SystemClipboard().mimeData()->data(VoiceType).size(), 52 + 156);
    EXPECT_EQ(SystemClipboard().mimeData()->data(VoiceType).left(4), "oWNT");
}

TEST_F(ClipboardWindow, ANameBeyondAsciiIsTextLikeAnyOther) {
    auto payload = MutablePayloadOf(MainList.items[2]);
    payload[145] = 0xC4;
    ClickRow(2);
    Press(Qt::Key_C);
    EXPECT_EQ(SystemClipboard().text(), QString::fromUtf8("ÄOICE 03"));
}

TEST_F(ClipboardWindow, PasteFollowsTheChangesThatOtherProgramsMake) {
    EXPECT_FALSE(PasteItem().isEnabled());
    SystemClipboard().setText("some text");
    EXPECT_FALSE(PasteItem().isEnabled());
    Offer("anything");
    EXPECT_TRUE(PasteItem().isEnabled());
    SystemClipboard().setText("other text");
    EXPECT_FALSE(PasteItem().isEnabled());
    Offer("anything");
    SystemClipboard().clear();
    EXPECT_FALSE(PasteItem().isEnabled());
    ClickRow(1);
    Press(Qt::Key_C);
    EXPECT_TRUE(PasteItem().isEnabled());
}

TEST_F(ClipboardWindow, CtrlVWithoutAVoiceOnTheClipboardDoesNothing) {
    SystemClipboard().setText("VOICE 03");
    ClickRow(1);
    Press(Qt::Key_V);
    EXPECT_EQ(NameAt(1), "VOICE 02");
    EXPECT_EQ(UndoCount(), 0);
}

TEST_F(ClipboardWindow, ContentThatIsNoVoiceReportsAnErrorAndKeepsTheRow) {
    ClickRow(1);
    Press(Qt::Key_C);
    const QByteArray good = SystemClipboard().mimeData()->data(VoiceType);
    QByteArray foreign = good;
    foreign.replace(16, 4, "xdFR");
    QByteArray liar = good;
    liar[9] = '\x7F';
    QByteArray magic = good;
    magic[3] = 'X';
    const auto before = MainList.items;
    for (const QByteArray &block :
         {QByteArray(""), good.left(100), foreign, liar, magic, QByteArray(10'000'000, '\xFF')}) {
        Offer(block);
        desktop.ExpectMessage("Clipboard error");
        Press(Qt::Key_V);
        desktop.ExpectNothingLeft();
    }
    EXPECT_EQ(MainList.items, before);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(ClipboardWindow, TheContextMenuNamesTheVoiceOnTheClipboard) {
    EXPECT_TRUE(WithContextMenu(RowPoint(4), [](QMenu &menu) {
        EXPECT_EQ(ActionOf(menu, CommandPaste)->text(), "Paste");
        EXPECT_FALSE(ActionOf(menu, CommandPaste)->isEnabled());
        EXPECT_TRUE(ActionOf(menu, CommandCopy)->isEnabled());
        menu.setActiveAction(ActionOf(menu, CommandCopy));
        QTest::keyClick(&menu, Qt::Key_Return);
    }));
    EXPECT_TRUE(WithContextMenu(RowPoint(7), [](QMenu &menu) {
        EXPECT_EQ(ActionOf(menu, CommandPaste)->text(), "Paste VOICE 05");
        EXPECT_TRUE(ActionOf(menu, CommandPaste)->isEnabled());
        menu.setActiveAction(ActionOf(menu, CommandPaste));
        QTest::keyClick(&menu, Qt::Key_Return);
    }));
    EXPECT_EQ(NameAt(7), "VOICE 05");
    EXPECT_EQ(NameAt(0), "VOICE 01"); // the selected one
}

TEST_F(ClipboardWindow, AForeignVoiceLeavesThePlainPasteEnabled) {
    ClickRow(1);
    Press(Qt::Key_C);
    QByteArray foreign = SystemClipboard().mimeData()->data(VoiceType);
    foreign.replace(16, 4, "xdFR");
    Offer(foreign);
    EXPECT_TRUE(PasteItem().isEnabled());
    EXPECT_TRUE(WithContextMenu(RowPoint(4), [](QMenu &menu) {
        EXPECT_EQ(ActionOf(menu, CommandPaste)->text(), "Paste");
        EXPECT_TRUE(ActionOf(menu, CommandPaste)->isEnabled());
    }));
}

TEST_F(ClipboardWindow, AWindowThatIsGoneIsNotToldOfChanges) {
    window.reset();
    Offer("anything");
    SystemClipboard().clear();
    EXPECT_EQ(TheShellWindow.window, nullptr);
}

} // namespace
} // namespace tonewright
