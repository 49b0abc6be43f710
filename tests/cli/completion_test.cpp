// What the command complete offers for the word that is being typed.
#include "cli/run_cli.h"
#include "support/temp_folder.h"

#include <algorithm>
#include <sstream>

namespace tonewright {
namespace {

std::vector<std::string> LinesOf(const std::string &text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

// Its lines for these words of a call.
std::vector<std::string> Offered(std::vector<std::string> words) {
    words.insert(words.begin(), {"complete", "--"});
    const auto result = Cli(words);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors, "");
    return LinesOf(result.output);
}

// The words of the same, which have no files among them.
std::vector<std::string> Words(const std::vector<std::string> &call) {
    std::vector<std::string> words;
    for (const std::string &line : Offered(call)) {
        EXPECT_TRUE(line.starts_with("word\t")) << line;
        words.push_back(line.substr(5, line.find('\t', 5) - 5));
    }
    return words;
}

using Lines = std::vector<std::string>;

bool Has(const Lines &lines, const std::string &line) {
    return std::ranges::find(lines, line) != lines.end();
}

// The lines of a help that show a command or an option, each up to its first double blank.
Lines Usages(const Lines &call) {
    Lines usages;
    for (const std::string &line : LinesOf(Cli(call).output)) {
        if (line.starts_with("  ") && line[2] != ' ') {
            usages.push_back(line.substr(2, line.find("  ", 2) - 2));
        }
    }
    return usages;
}

// Expects the line of a help that shows this command or option to name all these words.
void ExpectHelpNames(const Lines &call, const std::string &usage, const Lines &words) {
    const Lines help = LinesOf(Cli(call).output);
    const auto line = std::ranges::find_if(
        help, [&](const std::string &text) { return text.starts_with("  " + usage); });
    ASSERT_NE(line, help.end()) << usage;
    for (const std::string &word : words) {
        EXPECT_NE(line->find(word, 2 + usage.size()), line->npos) << *line << " lacks " << word;
    }
}

TEST(Completion, OffersEveryCommandOfTheHelp) {
    Lines firsts, groups;
    for (const std::string &usage : Usages({"--help"})) {
        const std::string first = usage.substr(0, usage.find(' '));
        if (first.starts_with("-")) {
            continue;
        }
        if (!Has(firsts, first)) {
            firsts.push_back(first);
        }
        if (first == "db" || first == "reface-settings" || first == "archive") {
            const std::string rest = usage.substr(first.size() + 1);
            EXPECT_TRUE(Has(Words({first, ""}), rest.substr(0, rest.find(' ')))) << usage;
        }
    }
    EXPECT_GE(firsts.size(), 25u);
    EXPECT_EQ(Words({""}), firsts);
    EXPECT_EQ(Words({"db", ""}).size(), 8u);
    EXPECT_EQ(Words({"archive", ""}).size(), 9u);
}

TEST(Completion, OffersTheOptionsThatACommandTakes) {
    for (const Lines &command : {Lines{"list"}, {"edit"}, {"db", "print"}, {"find"}, {"history"}}) {
        Lines help = command, call = command, options;
        help.push_back("--help");
        for (const std::string &usage : Usages(help)) {
            options.push_back(usage.substr(0, usage.find(' ')));
        }
        call.push_back("-");
        EXPECT_GE(options.size(), 3u);
        EXPECT_EQ(Words(call), options);
    }
    EXPECT_EQ(Words({"--"}), (Lines{"--help", "--version"}));
    EXPECT_EQ(Words({"list", "a.syx", "--n"}), Lines{"--no"});
    EXPECT_EQ(Offered({"list", "--", "--n"}), Lines{"files\tsyx\tsrx\tsy1\tsr1"});
}

TEST(Completion, OffersOnlyWhatBeginsLikeTheWord) {
    EXPECT_EQ(Offered({"ex"}),
              Lines{"word\texport\twrite the voice at PLACE into a file of its own"});
    EXPECT_EQ(Words({"db", "in"}), Lines{"insert"});
    EXPECT_EQ(Words({"nonsense"}), Lines{});
    EXPECT_EQ(Words({"nonsense", ""}), Lines{});
}

TEST(Completion, FilesAreThoseThatTheCommandTakesAtThatPlace) {
    const std::string banks = "files\tsyx\tsrx", voices = "files\tsy1\tsr1";
    const std::string both = "files\tsyx\tsrx\tsy1\tsr1";
    EXPECT_EQ(Offered({"check", "a.syx", "b.syx", "c"}), Lines{both});
    EXPECT_EQ(Offered({"picture", ""}), Lines{banks});
    EXPECT_EQ(Offered({"print", ""}), Lines{banks});
    EXPECT_EQ(Offered({"upload", ""}), Lines{banks});
    EXPECT_EQ(Offered({"picture", "a.syx", ""}), Lines{"files\tpng"});
    EXPECT_EQ(Offered({"picture", "a.syx", "b.png", ""}), Lines{});
    EXPECT_EQ(Offered({"import", "--yes", "a.syx", "3", ""}), Lines{voices});
    EXPECT_EQ(Offered({"import", "a.syx", ""}), Lines{});
    EXPECT_EQ(Offered({"export", "a.syx", "3", ""}), Lines{voices});
    EXPECT_EQ(Offered({"db", "export", "3", ""}), Lines{voices});
    EXPECT_EQ(Offered({"db", "insert", ""}), Lines{banks});
    EXPECT_EQ(Offered({"move", ""}), Lines{banks});
    EXPECT_EQ(Offered({"memory", "studio", "dx7", ""}), Lines{both});
    EXPECT_EQ(Offered({"move", "a.syx", "3", "4", ""}), Lines{banks});
    EXPECT_EQ(Offered({"reface-settings", "load", ""}), Lines{"files\tcrg"});
    EXPECT_EQ(Offered({"config", ""}), Lines{"files\tini"});
    EXPECT_EQ(Offered({"colours", ""}), Lines{"files\tccl"});
    EXPECT_EQ(Offered({"memory", ""}), Lines{"files"});
}

TEST(Completion, ValuesOfOptionsAreThoseThatTheyTake) {
    const Lines orders = Words({"db", "list", "--sort", ""});
    EXPECT_EQ(orders.size(), 4u);
    const TempFolder folder;
    const std::string catalogue = folder.File("c.syx_db");
    ASSERT_EQ(Cli({"db", "add", ExampleFile("tonewright.syx"), "--database", catalogue}).exitStatus,
              0);
    for (const std::string &order : orders) {
        EXPECT_EQ(Cli({"db", "list", "--database", catalogue, "--sort", order}).exitStatus, 0)
            << order;
    }
    EXPECT_EQ(Words({"db", "list", "--sort=p"}), Lines{"--sort=position"});
    EXPECT_EQ(Words({"archive", "find", "--instrument", ""}), (Lines{"dx7", "reface"}));
    EXPECT_EQ(Offered({"archive", "find", "--folder", ""}), Lines{"files"});
    EXPECT_EQ(Offered({"archive", "add", "a", ""}), Lines{"files"});
    ExpectHelpNames({"db", "list", "--help"}, "--sort", orders);
    const Lines papers = Words({"print", "--paper", ""});
    EXPECT_EQ(papers, (Lines{"A4", "Letter"}));
    for (const std::string &paper : papers) {
        EXPECT_EQ(
            Cli({"print", ExampleFile("tonewright.syx"), folder.File("a.pdf"), "--paper", paper})
                .exitStatus,
            0)
            << paper;
    }
    ExpectHelpNames({"print", "--help"}, "--paper", papers);

    const Lines kinds = Words({"render", "--bits", ""});
    EXPECT_EQ(kinds, (Lines{"16", "24", "32f"}));
    for (const std::string &kind : kinds) {
        EXPECT_EQ(Cli({"render", ExampleFile("tonewright.syx"), "1", folder.File("a.wav"), "--bits",
                       kind})
                      .exitStatus,
                  0)
            << kind;
    }
    ExpectHelpNames({"render", "--help"}, "--bits", kinds);
    EXPECT_EQ(Words({"find", "--synth", ""}),
              (Lines{"Yamaha DX7, TX7, Korg Volca FM", "Yamaha reface DX"}));
    EXPECT_EQ(Offered({"db", "list", "--database", ""}), Lines{"files\tsyx_db\tsrx_db"});
    EXPECT_EQ(Offered({"history", "--file", ""}), Lines{"files"});
    EXPECT_EQ(Offered({"find", "--in", ""}), Lines{});
    EXPECT_EQ(Offered({"list", "--yes", ""}), Lines{"files\tsyx\tsrx\tsy1\tsr1"}); // takes no value
}

TEST(Completion, SettingsAreThoseThatCanBeReadOrSet) {
    EXPECT_EQ(Words({"settings", ""}), (Lines{"list", "get", "set"}));
    ExpectHelpNames({"--help"}, "settings WHAT", Words({"settings", ""}));
    Lines keys;
    for (const std::string &line : LinesOf(Cli({"settings", "list"}).output)) {
        keys.push_back(line.substr(0, line.find('\t')));
    }
    EXPECT_GT(keys.size(), 40u);
    EXPECT_EQ(Words({"settings", "get", ""}), keys);
    EXPECT_EQ(Words({"settings", "get", "Ver"}), (Lines{"VerboseRightClickMenu", "VersionNumber"}));
    EXPECT_EQ(Words({"settings", "set", "Ver"}), Lines{"VerboseRightClickMenu"});
    EXPECT_EQ(Words({"settings", "set", "extras.C"}), Lines{"extras.CarefulMode"});
    EXPECT_EQ(Words({"settings", "list", ""}), Lines{});
}

TEST(Completion, ParametersAreThoseOfTheFilesFamily) {
    Lines names;
    for (const std::string &line :
         LinesOf(Cli({"show", ExampleFile("tonewright.syx"), "1"}).output)) {
        names.push_back(line.substr(0, line.find('\t')) + '=');
    }
    EXPECT_GT(names.size(), 100u);
    EXPECT_EQ(Words({"edit", "a.syx", "1", ""}), names);
    EXPECT_EQ(Words({"edit", "a.srx", "1", "lfoM"}), Lines{"lfoModDepth="});
    EXPECT_EQ(Words({"edit", "a.txt", "1", ""}), Lines{});
    EXPECT_EQ(Words({"edit", "a.syx", "1", "name="}), Lines{});
    // Another one, or the file to write.
    const Lines next = Offered({"edit", "a.syx", "1", "name=A", "al"});
    EXPECT_EQ(next, (Lines{"word\talgorithm=\t", "files\tsyx\tsrx\tsy1\tsr1"}));
    EXPECT_EQ(Words({"reface-settings", "get", "tempo", "tem"}), Lines{"tempo"});
    EXPECT_EQ(Words({"reface-settings", "set", "tem"}), Lines{"tempo="});
}

} // namespace
} // namespace tonewright
