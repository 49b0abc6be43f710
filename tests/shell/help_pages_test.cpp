// The help pages have an entry for every topic that a window of the program asks for.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

const std::string HtmlFolder = SOURCE_DIR "/resources/html/";

// What the Help buttons and the help key of the windows open.
constexpr std::string_view WindowTopics[] = {
    "INDEX",    "SELECT",   "COMMUNICATING", "AUDITION", "VOICEEDIT",
    "DATABASE", "EXIFEDIT", "SETUP",         "THEME",    "COLORS",
};

// "SETUP_" and the key in upper case, of every key that has the number of a control.
constexpr std::string_view SettingTopics[] = {
    "SETUP_CREATEBACKUPS",
    "SETUP_CURRENTMIDICHANNEL",
    "SETUP_DATABASEMAKEPRETTYNAMES",
    "SETUP_DATABASENODUPLICATES",
    "SETUP_DOWNLOADONOPEN",
    "SETUP_FILETIPSHOW",
    "SETUP_MAXUNDOLEVEL",
    "SETUP_MIDDLEBUTTONAUDITION",
    "SETUP_OPENRECENTDOCUMENT",
    "SETUP_REMEMBERFILEHISTORYCOUNT",
    "SETUP_REMEMBERFILEHISTORYCOVER",
    "SETUP_REMEMBERFILEHISTORYENABLE",
    "SETUP_SHOWSTARTUPWINDOW",
    "SETUP_SHOWTIPOFTHEDAY",
    "SETUP_SOFTBUTTONS",
    "SETUP_VERBOSERIGHTCLICKMENU",
    "SETUP_WARNDATABASECHANGED",
    "SETUP_WARNSHOWMANUAL",
};

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

// The words of the first paragraph in the section of a topic, without mark-up; empty if the page
// has no such section, or it has no paragraph.
std::string FirstParagraph(const std::string &page, std::string_view topic) {
    const auto section = page.find("<section id=\"" + std::string(topic) + "\">");
    if (section == std::string::npos) {
        return {};
    }
    const auto sectionEnd = page.find("</section>", section);
    const auto begin = page.find("<p>", section);
    const auto end = page.find("</p>", begin);
    if (begin == std::string::npos || end == std::string::npos || end > sectionEnd) {
        return {};
    }
    std::string words;
    bool inTag = false;
    for (const char character : page.substr(begin, end - begin)) {
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

std::vector<std::string> Links(const std::string &page) {
    std::vector<std::string> links;
    constexpr std::string_view Start = "href=\"";
    for (auto place = page.find(Start); place != std::string::npos;
         place = page.find(Start, place)) {
        place += Start.size();
        links.push_back(page.substr(place, page.find('"', place) - place));
    }
    return links;
}

constexpr std::size_t ShortestUsefulParagraph = 60;

TEST(HelpPages, EveryWindowThatOffersHelpHasAParagraph) {
    const std::string page = ReadPage("referenc.html");
    for (const auto topic : WindowTopics) {
        EXPECT_GE(FirstParagraph(page, topic).size(), ShortestUsefulParagraph) << topic;
    }
}

TEST(HelpPages, EverySettingWithAControlHasAParagraph) {
    const std::string page = ReadPage("referenc.html");
    for (const auto topic : SettingTopics) {
        EXPECT_GE(FirstParagraph(page, topic).size(), ShortestUsefulParagraph) << topic;
    }
}

TEST(HelpPages, TheManualHasThePlaceWhereItIsOpened) {
    EXPECT_GE(FirstParagraph(ReadPage("manual.html"), "DOCUMENTATION").size(),
              ShortestUsefulParagraph);
}

TEST(HelpPages, EveryLinkLeadsToAPlaceThatExists) {
    for (const std::string name : {"manual.html", "referenc.html"}) {
        const std::string page = ReadPage(name);
        const auto links = Links(page);
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

TEST(HelpPages, NoPageHasAnAnchorTwice) {
    for (const std::string name : {"manual.html", "referenc.html"}) {
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
    for (const std::string name : {"manual.html", "referenc.html", "tonewright.css"}) {
        const std::string page = ReadPage(name);
        for (const char *word : {"<script", "http:", "https:", "@import", "url(", "<iframe"}) {
            EXPECT_EQ(page.find(word), std::string::npos) << name << ": " << word;
        }
    }
}

} // namespace
