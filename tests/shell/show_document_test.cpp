// Showing the manual and the help pages in a browser.
#include "shell/show_document.h"

#include "common/platform.h"
#include "shell_fixture.h"

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

const std::string DisplayError =
    "There has been an error displaying the manual page. Please ensure that there is an "
    "application installed on your system capable of opening HTML documents associated with the "
    "file extension .HTM.";

class Documents : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        DocumentBrowserPath.clear();
        DocumentBrowserFlags = 127;
        WarnShowManual = 0;
        TheDesktop.OpenAddress = [this](const std::string &program, const std::string &address,
                                        bool maximised) {
            tried.push_back(program);
            addresses.push_back(address + (maximised ? " maximised" : ""));
            return program == working;
        };
    }
    static Strings Browsers() {
        Strings names;
        for (const char *name : {"firefox.exe", "chrome.exe", "opera.exe", "safari.exe",
                                 "netscape.exe", "iexplore.exe", "msedge.exe"}) {
            names.push_back(PlatformBrowserProgram(name));
        }
        return names;
    }
    int Show() { return ShowDocument(nullptr, "/help/a.html", "#TOPIC", false); }

    std::string working = "(none works)"; // the program that starts
    Strings tried;
    Strings addresses;
};

TEST_F(Documents, AnAddressIsThePathWithItsFragmentAndBlanksEscaped) {
    EXPECT_EQ(DocumentAddress("/my help/a b.html", "#TWO WORDS"),
              "file:////my%20help/a%20b.html#TWO%20WORDS");
    EXPECT_EQ(DocumentAddress("C:\\help\\\xC3\xA4%.html", ""), "file:///C:\\help\\\xC3\xA4%.html");
}

TEST_F(Documents, AnAddressOfTheWebKeepsNoFragment) {
    EXPECT_EQ(DocumentAddress("http://example.org/a b", "#TOPIC"), "http://example.org/a%20b");
    EXPECT_EQ(DocumentAddress("https://example.org/", "#TOPIC"), "https://example.org/");
}

TEST_F(Documents, TheUsersBrowserComesFirst) {
    DocumentBrowserPath = "/opt/my browser";
    working = "/opt/my browser";
    EXPECT_EQ(ShowDocument(nullptr, "/help/a.html", "#TOPIC", true), 1);
    EXPECT_EQ(tried, Strings{"/opt/my browser"});
    EXPECT_EQ(addresses, Strings{"file:////help/a.html#TOPIC maximised"});
}

TEST_F(Documents, ABrowserOfTheUserThatDoesNotStartIsFollowedByTheOthers) {
    DocumentBrowserPath = "/opt/broken";
    working = Browsers()[0];
    EXPECT_EQ(Show(), 1);
    EXPECT_EQ(tried, (Strings{"/opt/broken", Browsers()[0]}));
}

TEST_F(Documents, AllSevenBrowsersAreTriedInTheirOrder) {
    working = Browsers()[6];
    EXPECT_EQ(Show(), 1);
    EXPECT_EQ(tried, Browsers());
    EXPECT_EQ(addresses, Strings(7, "file:////help/a.html#TOPIC"));
}

TEST_F(Documents, TheFirstBrowserThatStartsEndsTheSearch) {
    working = Browsers()[2];
    EXPECT_EQ(Show(), 1);
    EXPECT_EQ(tried.size(), 3u);
}

TEST_F(Documents, EachFlagStandsForOneBrowser) {
    for (std::size_t i = 0; i < 7; ++i) {
        tried.clear();
        DocumentBrowserFlags = 1u << i;
        working = Browsers()[i];
        EXPECT_EQ(Show(), 1);
        EXPECT_EQ(tried, Strings{Browsers()[i]}) << i;
    }
    tried.clear();
    DocumentBrowserFlags = 2 | 32 | 0xFFFFFF80;
    working = "";
    EXPECT_EQ(Show(), 1);
    EXPECT_EQ(tried, (Strings{Browsers()[1], Browsers()[5], ""}));
}

TEST_F(Documents, ThePlatformsOwnOpenerComesLast) {
    DocumentBrowserFlags = 0;
    working = "";
    EXPECT_EQ(Show(), 1);
    EXPECT_EQ(tried, Strings{""});
}

TEST_F(Documents, AMessageFollowsWhenNothingStarts) {
    desktop.ExpectMessage(DisplayError);
    EXPECT_EQ(Show(), 0);
    EXPECT_EQ(tried.size(), 8u);
}

TEST_F(Documents, HelpTopicsAreFragmentsInCapitals) {
    working = Browsers()[0];
    EXPECT_EQ(ShowHelpTopic(nullptr, "VOICEEDIT"), 1);
    EXPECT_EQ(ShowSettingHelp(nullptr, nullptr), 1);
    ConfigKey setting = ProgramSettings.rows[0];
    setting.name = "Tip Font";
    EXPECT_EQ(ShowSettingHelp(nullptr, &setting), 1);
    EXPECT_EQ(RunCommand(CommandHelp), 1);
    EXPECT_EQ(addresses, (Strings{"file:////program/html/referenc.html#VOICEEDIT",
                                  "file:////program/html/referenc.html#SETUP",
                                  "file:////program/html/referenc.html#SETUP_TIP%20FONT",
                                  "file:////program/html/referenc.html#INDEX"}));
}

TEST_F(Documents, TheManualOpensAtItsDocumentation) {
    working = Browsers()[0];
    EXPECT_EQ(RunCommand(CommandManual), 1);
    EXPECT_EQ(addresses, Strings{"file:////program/html/manual.html#DOCUMENTATION"});
}

class ManualWarning : public Documents {
protected:
    void SetUp() override {
        Documents::SetUp();
        working = Browsers()[0];
        WarnShowManual = 1;
    }
    void ExpectWarning(int answer, int checked) {
        desktop.Expect(ExpectedMessage{
            .text = "You are about to display the Tonewright manual document. Your web browser "
                    "will open. Tonewright will remain running, and you can return to it at any "
                    "time through the Windows task bar.",
            .buttons = {"Ok"},
            .answer = answer,
            .check1 = "Show me this message again next time.",
            .state1 = checked,
            .during = [this](MessageRequest &request) {
                EXPECT_EQ(request.state1, 1);
                EXPECT_TRUE(request.flags & MessageFlagNote1);
                EXPECT_EQ(request.note1, "Note: if you disable this message now, you can re-enable "
                                         "it at any time through the Setup window.");
                EXPECT_EQ(request.caption, "Message");
                EXPECT_TRUE(tried.empty()); // the browser comes after the warning
            }});
    }
};

TEST_F(ManualWarning, StaysOnWhenItsBoxStaysChecked) {
    ExpectWarning(ResultYes, 1);
    EXPECT_EQ(RunCommand(CommandManual), 1);
    EXPECT_EQ(WarnShowManual, 1u);
    EXPECT_EQ(tried.size(), 1u);
}

TEST_F(ManualWarning, IsSwitchedOffByItsBox) {
    ExpectWarning(ResultYes, 0);
    EXPECT_EQ(RunCommand(CommandManual), 1);
    EXPECT_EQ(WarnShowManual, 0u);
    EXPECT_EQ(RunCommand(CommandManual), 1); // without a further question
    EXPECT_EQ(tried.size(), 2u);
}

TEST_F(ManualWarning, TheManualOpensHoweverTheWarningIsClosed) {
    ExpectWarning(ResultCancel, 0);
    EXPECT_EQ(RunCommand(CommandManual), 1);
    EXPECT_EQ(WarnShowManual, 0u);
    EXPECT_EQ(tried.size(), 1u);
}

} // namespace
} // namespace tonewright
