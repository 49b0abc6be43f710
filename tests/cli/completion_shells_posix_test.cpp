// The completions of shells, in these shells themselves. packaging/linux/test has zsh,
// which needs a terminal.
#include "cli/run_cli.h"
#include "support/temp_folder.h"

#include <filesystem>

namespace tonewright {
namespace {

class ShellCompletion : public testing::Test {
protected:
    ShellCompletion() {
        for (const char *name :
             {"a.syx", "B.SRX", "two words.syx", "v.sy1", "notes.txt", "c.crg"}) {
            folder.WriteText(name, "");
        }
        std::filesystem::create_directory(folder.File("sub"));
    }

    // What a script of a shell prints, with the programs found by name and the folder the current
    // one.
    std::string Printed(const std::vector<std::string> &shell, const std::string &script) {
        const std::string programs = std::filesystem::path(CliProgram()).parent_path().string();
        std::vector<std::string> call = {"/usr/bin/env", "-C", folder.path.string(),
                                         "PATH=" + programs + ":/usr/bin:/bin"};
        call.insert(call.end(), shell.begin(), shell.end());
        call.push_back(script);
        const auto result = RunProgram(call);
        EXPECT_EQ(result.errors, "");
        return result.output;
    }

    // A command that reads a file of packaging/linux/completion, wherever the checkout lies.
    static std::string Source(const std::string &file) {
        return "source '" + SourceFile("packaging/linux/completion/" + file) + "'; ";
    }

    // What bash offers for the last of these words, in brackets. It takes words apart at equal
    // signs.
    std::string Bash(const std::string &function, const std::string &words) {
        return Printed(
            {"/bin/bash", "--norc", "-c"},
            Source("tonewright.bash") + "COMP_WORDS=(" + words +
                "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); " + function +
                " \"${COMP_WORDS[0]}\" \"${COMP_WORDS[-1]}\" \"${COMP_WORDS[-2]}\";"
                "((${#COMPREPLY[@]} == 0)) || printf '[%s]\\n' \"${COMPREPLY[@]}\" | sort");
    }

    std::string Cli(const std::string &words) {
        return Bash("_tonewright_cli", "tonewright-cli " + words);
    }

    TempFolder folder;
};

TEST_F(ShellCompletion, BashOffersCommandsOptionsAndValues) {
    EXPECT_EQ(Cli("ex"), "[export]\n");
    EXPECT_EQ(Cli("db p"), "[print]\n");
    EXPECT_EQ(Cli("find --t"), "[--trace]\n");
    EXPECT_EQ(Cli("settings get extras.W"), "[extras.WholeDetune]\n");
    EXPECT_EQ(Cli("db list --sort po"), "[position]\n");
    EXPECT_EQ(Cli("db list --sort = po"), "[position]\n");
    EXPECT_EQ(Cli("db list --sort ="), "[date]\n[name]\n[position]\n[source]\n");
    EXPECT_EQ(Cli("find --synth ''"),
              "[Yamaha\\ DX7\\,\\ TX7\\,\\ Korg\\ Volca\\ FM]\n[Yamaha\\ reface\\ DX]\n");
    EXPECT_EQ(Cli("edit a.syx 1 lfoW"), "[lfoWave=]\n");
    EXPECT_EQ(Cli("edit a.syx 1 name ="), "");
    EXPECT_EQ(Cli("edit a.syx 1 name = GLASS lfoW"), "[lfoWave=]\n");
}

TEST_F(ShellCompletion, BashOffersFilesOfTheRightKindAndFolders) {
    EXPECT_EQ(Cli("upload ''"), "[B.SRX]\n[a.syx]\n[sub]\n[two words.syx]\n");
    EXPECT_EQ(Cli("list tw"), "[two words.syx]\n");
    EXPECT_EQ(Cli("reface-settings load ''"), "[c.crg]\n[sub]\n");
    EXPECT_EQ(Cli("memory n"), "[notes.txt]\n");
    EXPECT_EQ(Cli("edit a.syx 1 name = A a"), "[a.syx]\n[algorithm=]\n");
}

// As they are typed: quoted, with a backslash, and with a quote that is open.
TEST_F(ShellCompletion, BashKnowsQuotedWords) {
    EXPECT_EQ(Cli(R"(edit '"two words.syx"' 1 lfoW)"), "[lfoWave=]\n");
    EXPECT_EQ(Cli(R"(edit 'two\ words.syx' 1 lfoW)"), "[lfoWave=]\n");
    EXPECT_EQ(Cli(R"(edit "'two words.syx'" 1 lfoW)"), "[lfoWave=]\n");
    EXPECT_EQ(Cli(R"(find --synth 'Yamaha\ re')"), "[Yamaha\\ reface\\ DX]\n");
    EXPECT_EQ(Cli(R"(find --synth = 'Yamaha\ re')"), "[Yamaha\\ reface\\ DX]\n");
    EXPECT_EQ(Cli(R"(find --synth '"Yamaha re')"), "[Yamaha reface DX]\n");
    EXPECT_EQ(Cli(R"(find --synth "'Yamaha re")"), "[Yamaha reface DX]\n");
}

TEST_F(ShellCompletion, BashTakesQuotesAwayAsACommandGetsWords) {
    const auto plain = [&](const std::string &word) {
        return Printed({"/bin/bash", "--norc", "-c"}, Source("tonewright.bash") +
                                                          "_tonewright_unquote " + word +
                                                          R"(; printf '%s|%s' "$plain" "$quote")");
    };
    EXPECT_EQ(plain(R"('a"b c"d')"), "ab cd|");
    EXPECT_EQ(plain(R"('"a\"b\c\\"')"), R"(a"b\c\|)");
    EXPECT_EQ(plain(R"("'a\\\"b'c\\'d")"), R"(a\"bc'd|)");
    EXPECT_EQ(plain(R"('a"b\"')"), "ab\"|\"");
    EXPECT_EQ(plain(R"("a'b")"), "ab|'");
    EXPECT_EQ(plain(R"('~/$HOME$(echo)')"), "~/$HOME$(echo)|");
}

TEST_F(ShellCompletion, BashCompletesTheWindowProgramToo) {
    EXPECT_EQ(Bash("_tonewright", "tonewright ''"), "[B.SRX]\n[a.syx]\n[sub]\n[two words.syx]\n");
    EXPECT_EQ(Bash("_tonewright", "tonewright --v"), "[--version]\n");
    EXPECT_EQ(Printed({"/bin/bash", "--norc", "-c"},
                      Source("tonewright.bash") + "complete -p tonewright tonewright-cli"),
              "complete -F _tonewright tonewright\ncomplete -F _tonewright_cli tonewright-cli\n");
}

TEST_F(ShellCompletion, FishOffersTheSame) {
    const auto fish = [&](const std::string &line) {
        return Printed({"HOME=" + folder.path.string(), "fish", "--no-config", "-c"},
                       Source("tonewright.fish") + "complete -C '" + line + "'");
    };
    EXPECT_EQ(fish("tonewright-cli ex"),
              "export\twrite the voice at PLACE into a file of its own\n");
    EXPECT_EQ(fish("tonewright-cli list tw"), "two words.syx\n");
    EXPECT_EQ(fish("tonewright-cli reface-settings load c"), "c.crg\n");
    EXPECT_EQ(fish("tonewright-cli edit a.syx 1 lfoW"), "lfoWave=\n");
    EXPECT_EQ(fish("tonewright-cli db list --sort=p"), "--sort=position\n");
    EXPECT_EQ(fish("tonewright-cli list ~/tw"), "~/two words.syx\n");
    EXPECT_EQ(fish("tonewright-cli list $HOME/tw"), "$HOME/two words.syx\n");
    EXPECT_EQ(fish(R"(tonewright-cli list "tw)"), "two words.syx\n");
    EXPECT_EQ(fish(R"(tonewright-cli list "$HOME/tw)"), "$HOME/two words.syx\n");
    EXPECT_EQ(fish("tonewright-cli list s"), "sub/\n");
    EXPECT_EQ(fish("tonewright-cli history --file=no"), "--file=notes.txt\n");
    EXPECT_EQ(fish("tonewright-cli history --file=$HOME/no"), "--file=$HOME/notes.txt\n");
    EXPECT_EQ(fish(R"(tonewright-cli edit "two words.syx" 1 lfoW)"), "lfoWave=\n");
    EXPECT_EQ(fish(R"(tonewright-cli find --synth "Yamaha re)"), "Yamaha reface DX\n");
    EXPECT_EQ(fish(R"(tonewright-cli find --synth=Yamaha\\ re)"), "--synth=Yamaha reface DX\n");
    EXPECT_EQ(fish("tonewright ~/tw"), "~/two words.syx\n");
    EXPECT_EQ(fish("tonewright --v"), "--version\tshow the program's version\n");
}

} // namespace
} // namespace tonewright
