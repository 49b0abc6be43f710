// When the wizard is shown, how its pages are turned, and how its controls stand for settings.
#include "shell/wizard.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "shell/settings_file.h"
#include "shell/shell_window.h"
#include "shell_fixture.h"

#include <vector>

namespace tonewright {
namespace {

class Wizard : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        MakeProgramFolders();
        TheShellWindow.AskForWizard = [this] {
            ++questions;
            flagAtQuestion = ShowWelcomeWizard;
            fileAtQuestion = ReadTestText(settingsPath);
            return answer;
        };
        TheShellWindow.ShowWizard = [this](const WizardRequest &request) {
            requests.push_back(request);
            return WizardDismissed;
        };
        desktop.sounds.clear();
    }
    static WizardRequest FirstRun() {
        return {.firstPage = 9101, .pageCount = 2, .firstRun = &ShowWelcomeWizard};
    }

    std::string settingsPath = home.File("Quillbrook/Tonewright 17.ini");
    int answer = ResultYes;
    int questions = 0;
    std::uint32_t flagAtQuestion = 99;
    std::string fileAtQuestion;
    std::vector<WizardRequest> requests;
};

TEST_F(Wizard, TheFlagIsClearedOnTheDiskBeforeTheQuestionIsShown) {
    EXPECT_EQ(RunWizard(FirstRun()), WizardDismissed);
    EXPECT_EQ(questions, 1);
    EXPECT_EQ(flagAtQuestion, 0u);
    EXPECT_EQ(fileAtQuestion, "[Tonewright]\nShowWelcomeWizard = 0\n");
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].firstPage, 9101u);
}

TEST_F(Wizard, TheOtherSettingsOfTheFileStay) {
    WriteTestText(settingsPath, ";c\n[Tonewright]\nSysexWait = 7\nShowWelcomeWizard = 1\nx\n");
    RunWizard(FirstRun());
    EXPECT_EQ(fileAtQuestion, ";c\n[Tonewright]\nSysexWait = 7\nShowWelcomeWizard = 0\nx\n");
}

// The reader of the file takes the last of them, whatever section it stands in, and beginnings of
// names as well.
TEST_F(Wizard, NoOtherLineOfTheFileBringsItBack) {
    for (const std::string other :
         {"ShowWelcomeWizard = 1\n", "showx\nShowW = 1\n", "[Other]\nShowWelcomeWizard = 1\n"}) {
        WriteTestText(settingsPath, "[Tonewright]\nSysexWait = 7\nShowWelcomeWizard = 1\n" + other);
        ConfigRead();
        ASSERT_EQ(ShowWelcomeWizard, 1u) << other;
        RunWizard(FirstRun());
        EXPECT_EQ(flagAtQuestion, 0u) << other;
        WriteTestText(settingsPath, fileAtQuestion); // and the program is killed
        ConfigRead();
        EXPECT_EQ(ShowWelcomeWizard, 0u) << other;
        EXPECT_EQ(SysexWait, 7u) << other;
    }
}

TEST_F(Wizard, NeverRunsTwiceOnItsOwn) {
    answer = ResultNo;
    EXPECT_EQ(RunWizard(FirstRun()), 0);
    EXPECT_EQ(RunWizard(FirstRun()), 0);
    EXPECT_EQ(questions, 1);
    EXPECT_TRUE(requests.empty());
}

TEST_F(Wizard, EitherAnswerPlaysTheDefaultSound) {
    for (const int either : {ResultYes, ResultNo}) {
        answer = either;
        ShowWelcomeWizard = 1;
        desktop.sounds.clear();
        RunWizard(FirstRun());
        EXPECT_EQ(desktop.sounds.size(), 1u) << either;
    }
    desktop.sounds.clear();
    RunWizard(FirstRun()); // the flag is cleared
    RunWelcomeWizard();
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(Wizard, FromTheMenuThereIsNoQuestionAndTheFlagStays) {
    ShowWelcomeWizard = 1;
    EXPECT_EQ(RunWelcomeWizard(), WizardDismissed);
    EXPECT_EQ(questions, 0);
    EXPECT_EQ(ShowWelcomeWizard, 1u);
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].firstPage, 7400u);
    EXPECT_EQ(requests[0].pageCount, 4);
    EXPECT_EQ(requests[0].startPage, 0);
    EXPECT_EQ(requests[0].rows.data(), ProgramSettings.rows.data());
    EXPECT_EQ(RunFirstWizard(), WizardDismissed);
    EXPECT_EQ(questions, 1);
    EXPECT_EQ(requests.size(), 2u);
}

// ---- pages

TEST(WizardPages, AreTurnedBetweenTheFirstAndTheLast) {
    WizardPages pages{.current = 0, .count = 2};
    EXPECT_FALSE(HasPrevious(pages));
    EXPECT_TRUE(HasNext(pages));
    EXPECT_EQ(PageLabel(pages), "Page 1 / 2");
    EXPECT_STREQ(DismissCaption(pages), "Close");
    GoPrevious(pages);
    EXPECT_EQ(pages.current, 0);
    GoNext(pages);
    EXPECT_EQ(PageLabel(pages), "Page 2 / 2");
    EXPECT_TRUE(HasPrevious(pages));
    EXPECT_FALSE(HasNext(pages));
    EXPECT_STREQ(DismissCaption(pages), "Finish");
    GoNext(pages);
    EXPECT_EQ(pages.current, 1);
    GoPrevious(pages);
    EXPECT_EQ(pages.current, 0);
}

// ---- values

std::uint32_t Flag, Number;
std::string Text;
const ConfigKey Rows[] = {
    SettingRow("Flag", &Flag, 0, SettingBool, {}),
    SettingRow("Number", &Number, 0, SettingInteger, {}),
    SettingRow("Text", &Text, "", SettingText, {}),
};

class WizardValues : public testing::Test {
protected:
    void SetUp() override {
        Flag = Number = 0;
        Text.clear();
    }
    static bool Checked(const std::string &title) {
        return IsChecked(ReadControlRecord(title), Rows).value_or(false);
    }
    static bool IsBound(const std::string &title) {
        return IsChecked(ReadControlRecord(title), Rows).has_value();
    }
    static void Store(const std::string &title, bool checked) {
        StoreChecked(ReadControlRecord(title), checked, Rows);
    }
    static void Select(const std::string &title, int index, const std::string &text) {
        StoreSelected(ReadControlRecord(title), index, text, Rows);
    }
};

TEST_F(WizardValues, ACheckBoxIsCheckedWhenItsVariableHasTheCheckedValue) {
    EXPECT_FALSE(Checked("type=checkbox;variable=Flag"));
    Flag = 1;
    EXPECT_TRUE(Checked("type=checkbox;variable=Flag"));
    EXPECT_TRUE(Checked("type=checkbox;variable=fLAG"));
    EXPECT_FALSE(Checked("type=checkbox;variable=Flag;checkedvalue=2"));
    Number = 2;
    EXPECT_TRUE(Checked("type=checkbox;variable=Number;checkedvalue=2"));
    EXPECT_FALSE(Checked("type=checkbox;variable=Fla")) << "a name counts whole";
    EXPECT_FALSE(IsBound("type=checkbox;variable=Text"));
    EXPECT_FALSE(IsBound("type=checkbox"));
    Flag = 0;
    EXPECT_TRUE(IsBound("type=checkbox;variable=Flag"));
}

TEST_F(WizardValues, AControlOfAnotherKindIsBoundToNothing) {
    Flag = Number = 1;
    Text = "a";
    for (const char *kind :
         {"", "type=slider;", "type=static;", "type=listbox;", "type=alphagraphic;"}) {
        EXPECT_FALSE(IsBound(std::string(kind) + "variable=Flag")) << kind;
        EXPECT_FALSE(IsBound(std::string(kind) + "variable=Number")) << kind;
        EXPECT_FALSE(IsBound(std::string(kind) + "variable=Text;checkedstring=a")) << kind;
    }
}

TEST_F(WizardValues, ACheckBoxStoresOneOfItsTwoValues) {
    Store("type=checkbox;variable=Flag", true);
    EXPECT_EQ(Flag, 1u);
    Store("type=checkbox;variable=Flag", false);
    EXPECT_EQ(Flag, 0u);
    Store("type=checkbox;variable=Number;checkedvalue=7;uncheckedvalue=9", false);
    EXPECT_EQ(Number, 9u);
    Store("type=checkbox;variable=Number;checkedvalue=7;uncheckedvalue=9", true);
    EXPECT_EQ(Number, 7u);
}

TEST_F(WizardValues, ARadioButtonComparesANumberOrATextWithoutRegardToCase) {
    Number = 3;
    EXPECT_TRUE(Checked("type=radiobutton;variable=Number;checkedvalue=3"));
    EXPECT_FALSE(Checked("type=radiobutton;variable=Number;checkedvalue=4;checkedstring=3"));
    Text = "Slate Medium";
    EXPECT_TRUE(Checked("type=radiobutton;variable=Text;checkedstring=SLATE medium"));
    EXPECT_FALSE(Checked("type=radiobutton;variable=Text;checkedstring=SLATE"));
    EXPECT_FALSE(Checked("type=checkbox;variable=Text;checkedstring=SLATE medium"));
}

TEST_F(WizardValues, ARadioButtonStoresOnlyWhenItIsChecked) {
    Number = 5;
    Text = "before";
    Store("type=radiobutton;variable=Number;checkedvalue=3", false);
    Store("type=radiobutton;variable=Text;checkedstring=x", false);
    EXPECT_EQ(Number, 5u);
    EXPECT_EQ(Text, "before");
    Store("type=radiobutton;variable=Number;checkedvalue=3", true);
    Store("type=radiobutton;variable=Text;checkedstring=" + std::string(300, 'x'), true);
    EXPECT_EQ(Number, 3u);
    EXPECT_EQ(Text, std::string(260, 'x'));
}

TEST_F(WizardValues, AListStoresItsIndexOrItsText) {
    Select("type=listbox;variable=Number", 2, "two");
    Select("type=listbox;variable=Text", 2, "two");
    EXPECT_EQ(Number, 2u);
    EXPECT_EQ(Text, "two");
    Select("type=listbox;variable=Number", -1, "");
    Select("type=listbox;variable=Text", -1, "");
    EXPECT_EQ(Number, 2u) << "nothing was selected";
    EXPECT_EQ(Text, "two");
    const ControlRecord number = ReadControlRecord("type=listbox;variable=Number");
    const ControlRecord text = ReadControlRecord("type=listbox;variable=Text");
    EXPECT_EQ(SelectedIndex(number, Rows), 2u);
    EXPECT_EQ(SelectedText(number, Rows), std::nullopt);
    EXPECT_EQ(SelectedText(text, Rows), "two");
    EXPECT_EQ(SelectedIndex(text, Rows), std::nullopt);
}

TEST_F(WizardValues, AListThatFillsItselfIsPassedOver) {
    const std::string title = "type=listbox;subclass=fonts;variable=";
    Select(title + "Number", 2, "two");
    Select(title + "Text", 2, "two");
    EXPECT_EQ(Number, 0u);
    EXPECT_EQ(Text, "");
    EXPECT_EQ(SelectedIndex(ReadControlRecord(title + "Number"), Rows), std::nullopt);
    EXPECT_EQ(SelectedText(ReadControlRecord(title + "Text"), Rows), std::nullopt);
}

TEST_F(WizardValues, UnknownVariablesAndOtherKindsArePassedOver) {
    for (const char *kind : {"checkbox", "radiobutton", "listbox", "static", "slider"}) {
        const std::string title = std::string("text=t;type=") + kind;
        for (const char *variable : {"", ";variable=Nothing", ";variable="}) {
            EXPECT_FALSE(Checked(title + variable));
            Store(title + variable, true);
            Select(title + variable, 1, "one");
        }
    }
    Store("type=static;variable=Flag", true);
    Store("variable=Flag", true);
    Select("type=checkbox;variable=Number", 1, "one");
    Store("type=checkbox;variable=Text", true);
    EXPECT_EQ(Flag, 0u);
    EXPECT_EQ(Number, 0u);
    EXPECT_EQ(Text, "");
}

TEST_F(WizardValues, ACheckBoxForAScreenSaverStoresNothing) {
    Store("type=checkbox;variable=Flag;screensaver=saver.scr", true);
    EXPECT_EQ(Flag, 0u);
}

} // namespace
} // namespace tonewright
