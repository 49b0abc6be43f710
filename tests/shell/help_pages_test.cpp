// The help pages have an entry for every topic that a window of the program asks for.
#include "common/reference_topic.h"
#include "common/setting_rows.h"
#include "drivers/reface_dx/settings.h"
#include "extras/dump_reader.h"
#include "extras/rescue.h"
#include "shell/command_table.h"
#include "support/family_names.h"
#include "support/paths.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

const std::string HtmlFolder = tonewright::SourceFile("resources/html/");

// "SETUP_" and the name in capitals, of every setting that has the number of a control.
std::vector<std::string> SettingTopics() {
    std::vector<std::string> topics;
    for (const tonewright::ConfigKey &row : tonewright::ProgramSettings.rows) {
        if (row.control != 0) {
            topics.push_back(std::string("SETUP_") + row.name);
            std::ranges::transform(topics.back(), topics.back().begin(),
                                   [](unsigned char c) { return std::toupper(c); });
        }
    }
    return topics;
}

// The topics of the entries of a menu, and that of the menu with such entries.
std::vector<std::string> MenuTopics() {
    std::vector<std::string> topics = {"EXTRAS"};
    for (const tonewright::CommandRow &row : tonewright::Commands()) {
        if (row.topic.name) {
            topics.push_back(row.topic.name);
        }
    }
    return topics;
}

constexpr const char *Pages[] = {"manual.html", "referenc.html", "cli.html", "sound.html"};

std::string ReadPage(const std::string &name) {
    std::ifstream file(HtmlFolder + name, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << name;
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

bool HasAnchor(const std::string &page, const std::string &anchor) {
    return page.find(" id=\"" + anchor + "\"") != std::string::npos;
}

std::string WithoutMarkup(std::string_view text) {
    std::string words;
    bool inTag = false;
    for (const char character : text) {
        if (character == '<') {
            inTag = true;
        } else if (character == '>') {
            inTag = false;
        } else if (!inTag) {
            words += character;
        }
    }
    return words;
}

// The section of a topic, with its mark-up; empty if the page has no such section.
std::string Section(const std::string &page, std::string_view topic) {
    const auto begin = page.find("<section id=\"" + std::string(topic) + "\">");
    const auto end = page.find("</section>", begin);
    return begin == std::string::npos || end == std::string::npos ? std::string()
                                                                  : page.substr(begin, end - begin);
}

// The words of the first paragraph in the section of a topic, without mark-up; empty if the page
// has no such section, or it has no paragraph.
std::string FirstParagraph(const std::string &page, std::string_view topic) {
    const std::string section = Section(page, topic);
    const auto begin = section.find("<p>");
    const auto end = section.find("</p>", begin);
    return begin == std::string::npos || end == std::string::npos
               ? std::string()
               : WithoutMarkup(std::string_view(section).substr(begin, end - begin));
}

// The words of a section in one line.
std::string Words(const std::string &page, std::string_view topic) {
    std::string words = WithoutMarkup(Section(page, topic));
    std::ranges::replace(words, '\n', ' ');
    words.erase(std::unique(words.begin(), words.end(),
                            [](char a, char b) { return a == ' ' && b == ' '; }),
                words.end());
    return words;
}

// The values of an attribute, "href", throughout a page or a tag.
std::vector<std::string> Values(const std::string &page, const std::string &attribute) {
    std::vector<std::string> values;
    const std::string start = " " + attribute + "=\"";
    for (auto place = page.find(start); place != std::string::npos;
         place = page.find(start, place)) {
        place += start.size();
        values.push_back(page.substr(place, page.find('"', place) - place));
    }
    return values;
}

// The tags of a page with what stands in them: "img src=...", "/p".
std::vector<std::string> Tags(const std::string &page) {
    std::vector<std::string> tags;
    for (auto place = page.find('<'); place != std::string::npos; place = page.find('<', place)) {
        const auto end = page.find('>', place);
        tags.push_back(page.substr(place + 1, end - place - 1));
        std::ranges::replace(tags.back(), '\n', ' ');
        place = end;
    }
    return tags;
}

// Width and height of a PNG, as text.
std::vector<std::string> SizeOfPicture(const std::string &name) {
    constexpr std::size_t WidthOffset = 16; // of the first block
    const std::string bytes = ReadPage(name);
    std::vector<std::string> size;
    for (const std::size_t offset : {WidthOffset, WidthOffset + 4}) {
        unsigned value = 0;
        for (std::size_t at = offset; at < offset + 4; ++at) {
            value = value << 8 | static_cast<unsigned char>(bytes.at(at));
        }
        size.push_back(std::to_string(value));
    }
    return size;
}

constexpr std::size_t ShortestUsefulParagraph = 60;

TEST(HelpPages, EveryWindowThatOffersHelpHasAParagraph) {
    const std::string page = ReadPage("referenc.html");
    for (const auto topic : tonewright::ReferenceTopics) {
        EXPECT_GE(FirstParagraph(page, topic).size(), ShortestUsefulParagraph) << topic;
    }
}

TEST(HelpPages, EverySettingWithAControlHasAParagraph) {
    const std::string page = ReadPage("referenc.html");
    for (const std::string &topic : SettingTopics()) {
        EXPECT_GE(FirstParagraph(page, topic).size(), ShortestUsefulParagraph) << topic;
    }
}

TEST(HelpPages, EveryEntryOfAMenuWithATopicHasAParagraphThatNamesIt) {
    const std::string page = ReadPage("referenc.html");
    const auto topics = MenuTopics();
    EXPECT_EQ(topics.size(), 11u);
    for (const std::string &topic : topics) {
        EXPECT_GE(FirstParagraph(page, topic).size(), ShortestUsefulParagraph) << topic;
    }
    for (const tonewright::CommandRow &row : tonewright::Commands()) {
        if (row.toggles) {
            std::string label = row.label;
            std::erase(label, '&');
            EXPECT_NE(Words(page, row.topic.name).find(label), std::string::npos) << label;
        }
    }
}

TEST(HelpPages, NothingIsPromisedForLater) {
    for (const char *name : Pages) {
        const std::string page = ReadPage(name);
        EXPECT_EQ(page.find("class=\"later\""), std::string::npos) << name;
        EXPECT_EQ(page.find("still to come"), std::string::npos) << name;
    }
}

// The words of a window, a menu or a message as a user reads them there.
struct Named {
    std::string_view topic;
    std::vector<std::string_view> words;
};

TEST(HelpPages, TheTopicsOfTheInstrumentNameWhatTheUserSees) {
    const std::string page = ReadPage("referenc.html");
    for (const Named &named : {
             Named{"SELECT",
                   {"Edit, Select synthesizer", "Synthesizer", "Unknown", tonewright::Dx7Name,
                    tonewright::RefaceName, "Detect MIDI ports automatically", "MIDI in",
                    "MIDI out", "MIDI channel"}},
             Named{"COMMUNICATING",
                   {"Edit, MIDI devices", "Edit, Find synthesizer", "Edit, Download current voices",
                    "Edit, Upload current voices", "Upload to synthesizer",
                    "Invalid system common."}},
             Named{"AUDITION",
                   {"Velocity", "Octave", "Shift", "The selected voice could not be uploaded.",
                    "The MIDI output could not be opened."}},
         }) {
        const std::string text = Words(page, named.topic);
        for (const std::string_view words : named.words) {
            EXPECT_NE(text.find(words), std::string::npos) << named.topic << ": " << words;
        }
    }
}

// As they stand in the context menu, the windows and the names of files.
TEST(HelpPages, TheTopicsOfTheDatabaseNameWhatTheUserSees) {
    const std::string page = ReadPage("referenc.html");
    for (const Named &named : {
             Named{"DATABASE",
                   {"Add to current database", "Shift", "Insert a voice from the current database",
                    "Audition", "Delete", "Cancel", "Voices.syx_db", "Voices.srx_db",
                    "Voices.syx_db_backup", "the whole database is deleted", "Careful mode",
                    "tonewright-cli db"}},
             Named{"EXIFEDIT",
                   {"PM", "Get current time", "Start calendar on Monday", "1970 to 2037"}},
             Named{"EXTRAS_CAREFULMODE",
                   {"cannot be added to the current database", "names the voices and the reason"}},
         }) {
        const std::string text = Words(page, named.topic);
        for (const std::string_view words : named.words) {
            EXPECT_NE(text.find(words), std::string::npos) << named.topic << ": " << words;
        }
    }
}

TEST(HelpPages, TheTopicsOfTheEditorAndTheSettingsNameWhatTheUserSees) {
    const std::string page = ReadPage("referenc.html");
    for (const Named &named : {
             Named{"VOICEEDIT",
                   {"OK", "Return", "Cancel", "Esc", "Audition...", "careful mode", "Untitled",
                    "Pitch EG", "Pitch bend", "1.15 becomes 1.14", "tonewright-cli edit"}},
             Named{"CONFIGURE",
                   {"Edit, Configure synthesizer", "Save As...", "Open...", ".crg",
                    "AutoConfig.crg", "Untitled.Twl", "300 becomes 44", "414.8 to 466.8",
                    "Invalid system common.", "tonewright-cli reface-settings"}},
             Named{"EXTRAS_CAREFULMODE", {"editor of a voice", "before your changes are dropped"}},
             Named{"EXTRAS_REFACEZERO64",
                   {"Transpose", "Pitch bend", "40 to 88", "64 is its zero", "RefaceZero64"}},
         }) {
        const std::string text = Words(page, named.topic);
        for (const std::string_view words : named.words) {
            EXPECT_NE(text.find(words), std::string::npos) << named.topic << ": " << words;
        }
    }
    const std::string settings = Words(page, "CONFIGURE");
    for (const tonewright::RefaceSettingRow &row : tonewright::RefaceSettingRows) {
        std::string label = row.label;
        std::erase(label, ':');
        EXPECT_NE(settings.find(label), std::string::npos) << label;
    }
}

TEST(HelpPages, TheReferenceHasEveryKindOfDumpAndEveryRemark) {
    const std::string page = ReadPage("referenc.html");
    const std::string kinds = Words(page, "DUMPKINDS"), remarks = Words(page, "DUMPFAULTS");
    for (int kind = 0; kind <= static_cast<int>(tonewright::DumpKind::Unknown); ++kind) {
        const std::string text =
            tonewright::TextOfDump({.kind = static_cast<tonewright::DumpKind>(kind)});
        EXPECT_NE(kinds.find(text.substr(0, text.find(','))), std::string::npos) << text;
    }
    int remarked = 0;
    for (int bit = 0; bit < 32; ++bit) {
        const std::string text = tonewright::TextOfFaults({.channel = 5, .faults = 1u << bit});
        EXPECT_NE(remarks.find(text), std::string::npos) << text;
        remarked += !text.empty();
    }
    EXPECT_GE(remarked, 12);
    const std::string judged =
        tonewright::RemarksOfDump({.kind = tonewright::DumpKind::Dx7Headerless, .confidence = 90});
    EXPECT_EQ(judged, "90% sure");
    EXPECT_NE(remarks.find(judged), std::string::npos);
}

TEST(HelpPages, TheManualTellsOfBothFamiliesAndOfTheInstrument) {
    const std::string page = ReadPage("manual.html");
    for (const Named &named : {
             Named{"DOCUMENTATION", {"Yamaha DX7", "Korg Volca FM", "Yamaha reface DX", "MIDI"}},
             Named{"WINDOW", {"Unknown or unrecognized synthesizer"}},
             Named{"OPENING", {".syx", ".srx"}},
             Named{"LIST", {"six operators", "four operators"}},
             Named{"EXCHANGE", {".sy1", ".sr1"}},
             Named{"DROPPING", {".sy1", ".sr1"}},
             Named{"CONNECTING", {"MIDI devices", "Select synthesizer"}},
             Named{"EDITING", {"double click", "Audition...", "Return"}},
             Named{"DUMPS", {"Extras, Open any dump...", "New bank from these", "Put at row"}},
             Named{"RESCUE", {"identify", "rescue"}},
             Named{"ARCHIVE",
                   {"Extras, Archive...", "Add folder...", "Update", "Forget folder...",
                    "Put into the list", "New bank from these", "Archive.sqlite"}},
             Named{"CONFIGURING", {"Edit, Configure synthesizer", "AutoConfig.crg"}},
             Named{"FETCHING", {"Download current voices"}},
             Named{"SENDING", {"Upload current voices", "Upload to synthesizer"}},
             Named{"HEARING", {"middle mouse button", "Audition"}},
             Named{"FORMATS", {".syx", ".sy1", ".srx", ".sr1", ".syx_db", ".srx_db"}},
             Named{"PLACES", {"Voices.syx_db", "Voices.srx_db"}},
         }) {
        const std::string text = Words(page, named.topic);
        for (const std::string_view words : named.words) {
            EXPECT_NE(text.find(words), std::string::npos) << named.topic << ": " << words;
        }
    }
}

TEST(HelpPages, ThePageOnHearingWithoutAnInstrumentNamesWhatTheUserSees) {
    const std::string page = ReadPage("sound.html");
    for (const Named &named : {
             Named{"SOUND", {"a DX7, a volca fm and a reface DX"}},
             Named{"FIRSTNOTE",
                   {"Extras, Built-in instruments...", "Offer the built-in instruments",
                    "Edit, Select synthesizer", "\"Built-in DX7\"", tonewright::Dx7Name,
                    "\"Built-in reface DX\"", tonewright::RefaceName}},
             Named{"PLAYING", {"Level", "Volume", "Panic", "Octave", "Velocity"}},
             Named{"SILENCE",
                   {"Sound device", "Buffer", "Notes at once", "TONEWRIGHT_SOUND=0",
                    "Audition plays the voice that was sent"}},
             Named{"UNCERTAIN",
                   {"0.28 dB a second", "372.3", "0.96 cents", "0.59 cents", "0.22", "0.45",
                    "25 and 43 percent", "algorithms 4 and 6"}},
         }) {
        const std::string text = Words(page, named.topic);
        for (const std::string_view words : named.words) {
            EXPECT_NE(text.find(words), std::string::npos) << named.topic << ": " << words;
        }
    }
}

TEST(HelpPages, TheManualHasThePlaceWhereItIsOpened) {
    EXPECT_GE(FirstParagraph(ReadPage("manual.html"), "DOCUMENTATION").size(),
              ShortestUsefulParagraph);
}

TEST(HelpPages, EveryLinkLeadsToAPlaceThatExists) {
    for (const std::string name : Pages) {
        const std::string page = ReadPage(name);
        const auto links = Values(page, "href");
        EXPECT_GT(links.size(), 10U) << name;
        for (const std::string &link : links) {
            const auto hash = link.find('#');
            const std::string file = link.substr(0, hash);
            EXPECT_TRUE(file.empty() || std::filesystem::exists(HtmlFolder + file))
                << name << ": " << link;
            if (hash != std::string::npos) {
                EXPECT_TRUE(HasAnchor(file.empty() ? page : ReadPage(file), link.substr(hash + 1)))
                    << name << ": " << link;
            }
        }
    }
}

// The parts of a page lie within each other, whatever stands in them.
TEST(HelpPages, EveryTagIsClosedInItsPlace) {
    constexpr std::string_view Alone[] = {"!DOCTYPE", "meta", "link", "img", "br"};
    for (const std::string name : Pages) {
        std::vector<std::string> open;
        for (const std::string &tag : Tags(ReadPage(name))) {
            const std::string word = tag.substr(0, tag.find(' '));
            if (tag.starts_with('/')) {
                ASSERT_FALSE(open.empty()) << name << ": " << tag;
                ASSERT_EQ("/" + open.back(), tag) << name;
                open.pop_back();
            } else if (!tag.ends_with('/') && std::ranges::find(Alone, word) == std::end(Alone)) {
                open.push_back(word);
            }
        }
        EXPECT_TRUE(open.empty()) << name << ": " << open.back();
    }
}

TEST(HelpPages, EveryPictureIsThereInItsSizeWithItsWordsAndIsShown) {
    constexpr std::uintmax_t MostBytes = 1'500'000; // of all of them
    std::vector<std::string> shown;
    for (const std::string name : Pages) {
        for (const std::string &tag : Tags(ReadPage(name))) {
            if (!tag.starts_with("img ")) {
                continue;
            }
            const auto source = Values(tag, "src"), words = Values(tag, "alt");
            ASSERT_EQ(source.size(), 1u) << tag;
            ASSERT_EQ(words.size(), 1u) << tag;
            EXPECT_GE(words[0].size(), 20u) << tag;
            ASSERT_TRUE(std::filesystem::exists(HtmlFolder + source[0])) << tag;
            const auto size = SizeOfPicture(source[0]);
            EXPECT_EQ(Values(tag, "width"), std::vector<std::string>{size[0]}) << tag;
            EXPECT_EQ(Values(tag, "height"), std::vector<std::string>{size[1]}) << tag;
            shown.push_back(source[0]);
        }
    }
    EXPECT_GE(shown.size(), 10u);
    std::uintmax_t bytes = 0;
    for (const auto &entry : std::filesystem::directory_iterator(HtmlFolder + "pictures")) {
        const std::string picture = "pictures/" + entry.path().filename().string();
        EXPECT_NE(std::ranges::find(shown, picture), shown.end()) << picture;
        bytes += entry.file_size();
    }
    EXPECT_LE(bytes, MostBytes);
}

TEST(HelpPages, TheManualShowsTheToolsAsAFirstStartDoes) {
    const std::string page = ReadPage("manual.html");
    int tools = 0;
    for (const auto &entry : std::filesystem::directory_iterator(
             tonewright::SourceFile("themes/slate/pictures/medium"))) {
        const std::string picture = tonewright::ReadRawText(entry.path().string());
        const auto begin = picture.find('>') + 1;
        EXPECT_NE(page.find(picture.substr(begin, picture.find("</svg>") - begin)), page.npos)
            << entry.path();
        ++tools;
    }
    EXPECT_EQ(tools, 8);
}

TEST(HelpPages, TheManualHasEveryEntryOfEveryMenu) {
    const std::string menus = Section(ReadPage("manual.html"), "MENUS");
    for (const tonewright::CommandRow &row : tonewright::Commands()) {
        if (row.menu != tonewright::Menu::None) {
            std::string label = row.label;
            std::erase(label, '&');
            EXPECT_NE(menus.find("<td>" + label + "</td>"), std::string::npos) << label;
        }
    }
}

TEST(HelpPages, TheReferenceHasEveryLineOfTheSettingsFiles) {
    const std::string page = ReadPage("referenc.html");
    for (const tonewright::SettingsList *list : tonewright::SettingsLists) {
        for (const tonewright::ConfigKey &row : list->rows) {
            const std::string name = std::string("<code>") + row.name + "</code>";
            EXPECT_NE(page.find(name), std::string::npos) << name;
        }
    }
}

TEST(HelpPages, NoPageHasAnAnchorTwice) {
    for (const std::string name : Pages) {
        const std::string page = ReadPage(name);
        constexpr std::string_view Start = " id=\"";
        for (auto place = page.find(Start); place != std::string::npos;
             place = page.find(Start, place + 1)) {
            const std::string anchor =
                page.substr(place, page.find('"', place + Start.size()) + 1 - place);
            EXPECT_EQ(page.find(anchor, place + 1), std::string::npos) << name << ":" << anchor;
        }
    }
}

TEST(HelpPages, NothingIsFetchedAndNothingRuns) {
    for (const std::string name : {"manual.html", "referenc.html", "cli.html", "tonewright.css"}) {
        const std::string page = ReadPage(name);
        for (const char *word : {"<script", "http:", "https:", "@import", "url(", "<iframe"}) {
            EXPECT_EQ(page.find(word), std::string::npos) << name << ": " << word;
        }
    }
}

} // namespace
