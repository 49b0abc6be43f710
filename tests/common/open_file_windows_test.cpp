// Files on Windows: what makes them, counts their names and renames them, beside other programs.
#include "common/open_file.h"

#include "common/whole_file.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <io.h>
#include <memory>
#include <string>
#include <thread>
#include <windows.h>

using namespace tonewright;

namespace {

bool IsInherited(std::FILE *file) {
    DWORD flags = 0;
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
    return !GetHandleInformation(handle, &flags) || (flags & HANDLE_FLAG_INHERIT) != 0;
}

// A file that somebody else reads, who keeps it from being replaced meanwhile.
struct ReadElsewhere {
    HANDLE handle;

    explicit ReadElsewhere(const std::string &path)
        : handle(CreateFileW(PathOfUtf8(path).c_str(), GENERIC_READ,
                             FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                             FILE_ATTRIBUTE_NORMAL, nullptr)) {}
    ~ReadElsewhere() { CloseHandle(handle); }
    ReadElsewhere(const ReadElsewhere &) = delete;
    ReadElsewhere &operator=(const ReadElsewhere &) = delete;
};

} // namespace

TEST(CreateFileLike, MakesAFileWhereThereIsNone) {
    const TempFolder folder;
    const std::string path = folder.File("\xC3\x9C"
                                         "bung.syx");
    {
        const FilePointer file = CreateFileLike(path.c_str(), "", NewFileUsers::AsModel);
        ASSERT_TRUE(file);
        EXPECT_FALSE(IsInherited(file.get()));
        EXPECT_EQ(std::fputs("a\nb\x1A", file.get()), 0);
    }
    EXPECT_EQ(ReadTestFile(path), (std::vector<std::uint8_t>{'a', '\n', 'b', 0x1A}));
    EXPECT_TRUE(OpenFile(path.c_str(), "r+b")); // it is not read-only
}

TEST(CreateFileLike, LeavesAFileThatExists) {
    const TempFolder folder;
    const std::string path = folder.WriteText("bank.syx", "former");
    errno = 0;
    EXPECT_FALSE(CreateFileLike(path.c_str(), path.c_str(), NewFileUsers::AsModelOrFewer));
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(ReadTestText(path), "former");
}

TEST(CreateFileLike, TellsWhyThereIsNone) {
    const TempFolder folder;
    errno = 0;
    EXPECT_FALSE(CreateFileLike(folder.File("gone\\bank.syx").c_str(), "", NewFileUsers::AsModel));
    EXPECT_EQ(errno, ENOENT);
}

TEST(OpenFile, NoProgramThatIsStartedInheritsIt) {
    const TempFolder folder;
    const std::string path = folder.WriteText("bank.syx", "former");
    for (const char *mode : {"rb", "r+b", "a+b", "w+b", "wb"}) {
        const FilePointer file = OpenFile(path.c_str(), mode);
        ASSERT_TRUE(file) << mode;
        EXPECT_FALSE(IsInherited(file.get())) << mode;
    }
}

TEST(OpenFile, ModesDoAsTheySay) {
    const TempFolder folder;
    const std::string path = folder.File("bank.syx");
    for (const char *mode : {"rb", "r+b"}) {
        errno = 0;
        EXPECT_FALSE(OpenFile(path.c_str(), mode)) << mode;
        EXPECT_EQ(errno, ENOENT) << mode;
    }
    std::fputs("one\n", OpenFile(path.c_str(), "wb").get());
    EXPECT_EQ(ReadTestText(path), "one\n");
    std::fputs("two", OpenFile(path.c_str(), "a+b").get());
    EXPECT_EQ(ReadTestText(path), "one\ntwo");
    std::fputs("O", OpenFile(path.c_str(), "r+b").get());
    EXPECT_EQ(ReadTestText(path), "One\ntwo");
    EXPECT_LT(std::fputs("x", OpenFile(path.c_str(), "rb").get()), 0);
    EXPECT_TRUE(OpenFile(path.c_str(), "w+b"));
    EXPECT_EQ(ReadTestText(path), "");
}

TEST(OpenFile, ADeviceIsRefused) {
    errno = 0;
    EXPECT_FALSE(OpenFile("NUL", "rb"));
    EXPECT_EQ(errno, EINVAL);
}

TEST(IsMoreThanItsName, AFileWithASecondNameIs) {
    const TempFolder folder;
    const std::string path = folder.WriteText("bank.syx", "former");
    EXPECT_FALSE(IsMoreThanItsName(path.c_str()));
    EXPECT_FALSE(IsMoreThanItsName(folder.File("gone").c_str()));
    const std::string other = folder.File("other.syx");
    ASSERT_TRUE(CreateHardLinkW(PathOfUtf8(other).c_str(), PathOfUtf8(path).c_str(), nullptr));
    EXPECT_TRUE(IsMoreThanItsName(path.c_str()));
    EXPECT_TRUE(IsMoreThanItsName(other.c_str()));
    // Which is why it is written in place.
    EXPECT_TRUE(WriteFileWhole(path.c_str(), "new"));
    EXPECT_EQ(ReadTestText(other), "new");
}

TEST(RenameOver, TakesThePlaceOfAFileOrOfNone) {
    const TempFolder folder;
    const std::string target = folder.File("bank.syx");
    ASSERT_TRUE(RenameOver(folder.WriteText("new", "one").c_str(), target.c_str()));
    EXPECT_EQ(ReadTestText(target), "one");
    ASSERT_TRUE(RenameOver(folder.WriteText("new", "two").c_str(), target.c_str()));
    EXPECT_EQ(ReadTestText(target), "two");
    EXPECT_FALSE(std::filesystem::exists(PathOfUtf8(folder.File("new"))));
}

TEST(RenameOver, FailsWhileAnotherProgramHoldsTheFile) {
    const TempFolder folder;
    const std::string target = folder.WriteText("bank.syx", "former");
    const std::string source = folder.WriteText("new", "new");
    {
        const ReadElsewhere reader(target);
        errno = 0;
        EXPECT_FALSE(RenameOver(source.c_str(), target.c_str()));
        EXPECT_EQ(errno, EACCES);
    }
    EXPECT_EQ(ReadTestText(target), "former");
    EXPECT_EQ(ReadTestText(source), "new");
}

TEST(RenameOver, WaitsForAProgramThatLooksAtTheFileForAMoment) {
    const TempFolder folder;
    const std::string target = folder.WriteText("bank.syx", "former");
    const std::string source = folder.WriteText("new", "new");
    for (const std::string &held : {target, source}) {
        auto reader = std::make_unique<ReadElsewhere>(held);
        std::thread scanner([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(60));
            reader.reset();
        });
        EXPECT_TRUE(RenameOver(source.c_str(), target.c_str())) << held << errno;
        scanner.join();
        EXPECT_EQ(ReadTestText(target), "new");
        WriteTestText(source, "new");
    }
}

TEST(RenameOver, TellsWhyItFails) {
    const TempFolder folder;
    const std::string source = folder.WriteText("new", "new");
    errno = 0;
    EXPECT_FALSE(RenameOver(folder.File("gone").c_str(), folder.File("bank.syx").c_str()));
    EXPECT_EQ(errno, ENOENT);
    errno = 0;
    EXPECT_FALSE(RenameOver(source.c_str(), folder.File("gone\\bank.syx").c_str()));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(ReadTestText(source), "new");
}
