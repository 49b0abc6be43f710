// What the window does when the session is about to end, and when the program is asked to.
#include "window_fixture.h"

#include "shell/end_signals.h"
#include "shell/history.h"
#include "shell/view/session_end.h"

#include <QGuiApplication>

namespace tonewright {
namespace {

class WindowAtSessionEnd : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        MakeProgramFolders();
        HistoryInit();
        FollowSessionEnd(*window);
        ReleaseEndSignals();
        OpenBank();
    }
    // The session manager's word, which nobody here answers.
    static void Say(const char *request) {
        int manager = 0;
        ASSERT_TRUE(QMetaObject::invokeMethod(qGuiApp, request, Qt::DirectConnection,
                                              QGenericArgument("QSessionManager&", &manager)));
    }
    std::string Settings() const { return ReadTestText(home.File("Quillbrook/Tonewright 17.ini")); }
};

TEST_F(WindowAtSessionEnd, SettingsAndHistoryAreWrittenAndNothingIsAsked) {
    const std::string history = "Quillbrook/Tonewright 17/FileMenuHistory.txt";
    for (const char *request : {"commitDataRequest", "saveStateRequest"}) {
        std::filesystem::remove(home.File("Quillbrook/Tonewright 17.ini"));
        std::filesystem::remove(home.File(history));
        MainListState.dirty = true;
        Say(request);
        EXPECT_NE(Settings().find("\nRecentDocumentPath = " + home.File("bank.syx") + "\n"),
                  std::string::npos);
        EXPECT_TRUE(ReadTestText(home.File(history)).starts_with(home.File("bank.syx") + ","));
        // The session may go on, and the program with it.
        EXPECT_TRUE(window->isVisible());
        EXPECT_TRUE(MainListState.dirty);
    }
}

TEST_F(WindowAtSessionEnd, SettingsThatStandInTheirFileKeepTheVersionsBeforeThem) {
    MaxUndoLevel = 5;
    Say("saveStateRequest");
    MaxUndoLevel = 6;
    Say("commitDataRequest");
    const std::string backup = "Quillbrook/Backup of Tonewright 17.ini";
    EXPECT_NE(ReadTestText(home.File(backup)).find("\nMaxUndoLevel = 5\n"), std::string::npos);
    Say("saveStateRequest");
    Say("commitDataRequest");
    EXPECT_NE(ReadTestText(home.File(backup)).find("\nMaxUndoLevel = 5\n"), std::string::npos);
    EXPECT_NE(Settings().find("\nMaxUndoLevel = 6\n"), std::string::npos);
}

} // namespace
} // namespace tonewright
