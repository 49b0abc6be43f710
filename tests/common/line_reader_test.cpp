// Lines of files of any size and content.
#include "common/line_reader.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

Strings Lines(const std::string &text) {
    const TempFolder folder;
    auto reader = OpenLines(folder.WriteText("file", text).c_str());
    Strings lines;
    std::string_view line;
    while (reader && NextLine(*reader, line)) {
        lines.emplace_back(line);
    }
    // In memory the text has the same lines.
    LineReader inMemory = LinesOf(text);
    Strings linesInMemory;
    while (NextLine(inMemory, line)) {
        linesInMemory.emplace_back(line);
    }
    EXPECT_EQ(linesInMemory, lines);
    return lines;
}

TEST(LineReader, LinesKeepTheirLineFeedAndTheLastOneNeedsNone) {
    EXPECT_EQ(Lines("one\n\ntwo\r\nthree"), (Strings{"one\n", "\n", "two\r\n", "three"}));
    EXPECT_EQ(Lines("one\n"), Strings{"one\n"});
    EXPECT_EQ(Lines(""), Strings{});
}

TEST(LineReader, ALineEndsAfter259Bytes) {
    const std::string full(259, 'a');
    EXPECT_EQ(Lines(full), Strings{full});
    EXPECT_EQ(Lines(full + "\n"), (Strings{full, "\n"}));
    EXPECT_EQ(Lines(full + "b\n"), (Strings{full, "b\n"}));
    EXPECT_EQ(Lines(full.substr(1) + "\nb"), (Strings{full.substr(1) + "\n", "b"}));
}

TEST(LineReader, AReaderMayHaveALimitOfItsOwn) {
    const TempFolder folder;
    auto reader =
        OpenLines(folder.WriteText("file", std::string(1000, 'a') + "bc\n").c_str(), 1001);
    std::string_view line;
    ASSERT_TRUE(reader);
    EXPECT_TRUE(NextLine(*reader, line));
    EXPECT_EQ(line, std::string(1000, 'a') + "b");
    EXPECT_TRUE(NextLine(*reader, line));
    EXPECT_EQ(line, "c\n");
    EXPECT_FALSE(NextLine(*reader, line));
}

TEST(LineReader, ALongLineEndsInFrontOfACharacterThatDoesNotFit) {
    const std::string almost(258, 'a');
    EXPECT_EQ(Lines(almost + "\xC3\xA4z"), (Strings{almost, "\xC3\xA4z"}));
    // Bytes that make no character are cut anywhere.
    EXPECT_EQ(Lines(almost + "\xA4\xA4z"), (Strings{almost + "\xA4", "\xA4z"}));
}

TEST(LineReader, ZeroBytesAreBytes) {
    const std::string text("a\0b\n\0", 5);
    EXPECT_EQ(Lines(text), (Strings{text.substr(0, 4), text.substr(4)}));
}

TEST(LineReader, AFileBeyondItsBufferComesWhole) {
    std::string text;
    for (int number = 0; number < 50000; ++number) {
        text += std::to_string(number) + "\n";
    }
    text += std::string(1000, 'x');
    std::string joined;
    std::size_t count = 0;
    for (const std::string &line : Lines(text)) {
        joined += line;
        ++count;
    }
    EXPECT_EQ(joined, text);
    EXPECT_EQ(count, 50000u + 4);
}

TEST(LineReader, AMissingFileAndAFolderAreNotRead) {
    const TempFolder folder;
    EXPECT_FALSE(OpenLines(folder.File("gone").c_str()));
    EXPECT_FALSE(OpenLines(folder.path.string().c_str()));
    EXPECT_FALSE(OpenLines(""));
}

TEST(LineReader, PassesOverLineFeedsInFrontOfTheNextLine) {
    const TempFolder folder;
    const std::string feeds(100'000, '\n'); // more than the buffer
    auto reader = OpenLines(folder.WriteText("file", "a\n" + feeds + "b\n\n").c_str());
    ASSERT_TRUE(reader);
    Strings lines;
    std::string_view line;
    while (NextLine(*reader, line)) {
        lines.emplace_back(line);
        SkipEmptyLines(*reader);
    }
    ASSERT_GE(lines.size(), 2u);
    EXPECT_LE(lines.size(), 4u); // one for each time that the buffer was filled
    EXPECT_EQ(lines.front(), "a\n");
    EXPECT_EQ(lines.back(), "b\n");
}

} // namespace
} // namespace tonewright
