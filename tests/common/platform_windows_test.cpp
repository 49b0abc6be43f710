// What the operating system is asked for, on Windows.
#include "common/command_line_windows.h"
#include "common/desktop.h"
#include "common/folders.h"
#include "common/platform.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

using namespace tonewright;

namespace {

std::string FolderOfNumber(int number) {
    wchar_t path[MAX_PATH] = {};
    return SHGetFolderPathW(nullptr, number, nullptr, SHGFP_TYPE_CURRENT, path) == S_OK
               ? Utf8OfPath(path)
               : "";
}

} // namespace

TEST(Platform, FoldersAreThoseOfTheSystem) {
    EXPECT_NE(PlatformApplicationDataFolder("other"), "");
    EXPECT_EQ(PlatformApplicationDataFolder("other"), FolderOfNumber(26)); // roaming
    EXPECT_NE(PlatformProgramsFolder("other"), "");
    EXPECT_EQ(PlatformProgramsFolder("other"), FolderOfNumber(42)); // of 32-bit programs
    EXPECT_NE(PlatformFontFolder(), "");
    EXPECT_EQ(PlatformFontFolder(), FolderOfNumber(20));
}

TEST(Platform, TheExecutableIsThisTestProgram) {
    const std::filesystem::path path = PathOfUtf8(PlatformExecutablePath());
    EXPECT_TRUE(path.is_absolute());
    EXPECT_TRUE(std::filesystem::is_regular_file(path));
    EXPECT_EQ(path.filename(), "common_tests.exe");
    EXPECT_EQ(PlatformSystemConfigurationFolders(),
              std::vector<std::string>{Utf8OfPath(path.parent_path())});
}

TEST(Platform, ABrowserIsThePathThatIsRegisteredForItsName) {
    const char *name = "tonewright-test-browser.exe";
    const std::wstring key = LR"(SOFTWARE\Microsoft\Windows\CurrentVersion\App Paths\)"
                             L"tonewright-test-browser.exe";
    EXPECT_EQ(PlatformBrowserProgram(name), name);
    const std::wstring path = L"C:\\\u00DCbung\\browser.exe";
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), nullptr, REG_SZ, path.c_str(),
                              static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
    EXPECT_EQ(PlatformBrowserProgram(name), "C:\\\xC3\x9C"
                                            "bung\\browser.exe");
    RegDeleteKeyW(HKEY_CURRENT_USER, key.c_str());
}

TEST(Platform, LinesEndAsEditorsWriteThem) {
    EXPECT_EQ(PlatformLines("one\n\ntwo"), "one\r\n\r\ntwo");
    EXPECT_EQ(PlatformLines(""), "");
}

TEST(Platform, ArgumentsAreThoseOfTheProcessInUtf8) {
    const std::vector<char *> arguments = PlatformArguments(0, nullptr);
    int count = 0;
    LPWSTR *words = CommandLineToArgvW(GetCommandLineW(), &count);
    ASSERT_EQ(arguments.size(), static_cast<std::size_t>(count) + 1);
    for (int i = 0; i < count; ++i) {
        EXPECT_EQ(arguments[static_cast<std::size_t>(i)], Utf8OfPath(words[i]));
    }
    LocalFree(words);
    EXPECT_EQ(arguments.back(), nullptr);
}

TEST(Platform, TheCommandLineIsWhatWasTyped) {
    const std::string line = Utf8OfPath(GetCommandLineW());
    const std::string rest = PlatformCommandLine(0, nullptr);
    EXPECT_TRUE(line.ends_with(rest));
    EXPECT_NE(line, rest);
}

TEST(BehindProgramName, IsAllThatFollowsItsBlanks) {
    EXPECT_EQ(BehindProgramName(L""), L"");
    EXPECT_EQ(BehindProgramName(L"tonewright"), L"");
    EXPECT_EQ(BehindProgramName(L"tonewright "), L"");
    EXPECT_EQ(BehindProgramName(L"tonewright my  bank.syx "), L"my  bank.syx ");
    EXPECT_EQ(BehindProgramName(L"\"C:\\Program Files\\tonewright.exe\" \t C:\\a\\\"b c\".syx"),
              L"C:\\a\\\"b c\".syx");
    EXPECT_EQ(BehindProgramName(L"C:\\\"my programs\"\\tonewright.exe a\tb"), L"a\tb");
}

TEST(QuotedWord, IsReadAsTheArgumentAgain) {
    const std::vector<std::string> arguments = {
        "",
        "plain",
        "two words",
        "C:\\folder\\",
        "C:\\my folder\\",
        "a\"b",
        "\"",
        "a\\\"b",
        "a\\\\\"",
        "\\\\server\\a b\\\\",
        "\t",
        "\xC3\x9C"
        "bung \xE9\x9F\xB3",
    };
    std::wstring line = QuotedWord("program");
    for (const std::string &argument : arguments) {
        line += L" " + QuotedWord(argument);
    }
    int count = 0;
    LPWSTR *words = CommandLineToArgvW(line.c_str(), &count);
    ASSERT_EQ(static_cast<std::size_t>(count), arguments.size() + 1);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        EXPECT_EQ(Utf8OfPath(words[i + 1]), arguments[i]);
    }
    LocalFree(words);
}

TEST(ShowInExplorer, SelectsTheFileOrShowsTheFolder) {
    ScriptedDesktop desktop;
    EXPECT_EQ(ShowInExplorer("C:\\My banks\\", "bank.syx"), 0);
    EXPECT_EQ(ShowInExplorer("C:\\My banks\\", nullptr), 0);
    ASSERT_EQ(desktop.opened.size(), 2u);
    EXPECT_EQ(desktop.opened[0].program, "explorer.exe");
    EXPECT_EQ(desktop.opened[0].address, "/select,\"C:\\My banks\\bank.syx\"");
    EXPECT_EQ(desktop.opened[1].program, "explorer.exe");
    EXPECT_EQ(desktop.opened[1].address, "\"C:\\My banks\"");
}
