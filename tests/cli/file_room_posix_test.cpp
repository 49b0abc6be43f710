// The files that the command-line program writes by itself, where there is no room for them.
#include "midi_home.h"

#include "support/posix_limits.h"

namespace tonewright {
namespace {

class CliWithoutRoom : public CliMidi {
protected:
    // Runs the program while no file may grow beyond `size` bytes, and expects it to fail for that
    // in these words and to leave nothing but the `entries` of the folder that are there already.
    void ExpectNoRoom(rlim_t size, const std::vector<std::string> &arguments,
                      const std::string &reason) const {
        const auto entries = Entries();
        const ProgramResult result = [&] {
            const FileSizeLimit limit(size, SIG_DFL); // as from a shell
            return Cli(arguments);
        }();
        EXPECT_EQ(result.exitStatus, 1) << size;
        if (size > 0) { // else the words have no room either: what is told comes by a file
            EXPECT_EQ(result.errors, "tonewright-cli: " + reason + "\n") << size;
        }
        EXPECT_EQ(Entries(), entries) << size;
    }
    std::vector<std::string> Entries() const {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(folder.path)) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }
    // Nothing, half a file, and all of it but a byte.
    static std::vector<rlim_t> TooSmallFor(std::size_t size) { return {0, size / 2, size - 1}; }
};

TEST_F(CliWithoutRoom, TheMemoryOfTheInstrumentsStaysAsItWas) {
    const std::string bank = Bank();
    const std::vector<std::string> upload = {"upload", bank, "--out", "dx7", "--memory", Memory()};
    for (const rlim_t size : TooSmallFor(InstrumentFileSize)) { // one that is not there yet
        ExpectNoRoom(size, upload, Memory() + ": could not be written: File too large");
    }
    ExpectDone({"upload-voice", bank, "1", "--out", "volca", "--memory", Memory()});
    const Bytes former = ReadTestFile(Memory());
    for (const rlim_t size : TooSmallFor(InstrumentFileSize)) {
        ExpectNoRoom(size, upload, Memory() + ": could not be written: File too large");
        EXPECT_EQ(ReadTestFile(Memory()), former) << size;
    }
    const FileSizeLimit limit(InstrumentFileSize, SIG_DFL);
    ExpectDone(upload);
    EXPECT_NE(ReadTestFile(Memory()), former);
}

TEST_F(CliWithoutRoom, APictureOfTheWindowStaysAsItWas) {
    const std::string bank = Bank(), picture = folder.File("window.png");
    const std::vector<std::string> paint = {"picture", bank, picture, "--screen", "640x480"};
    ExpectDone(paint);
    const std::size_t size = ReadTestFile(picture).size();
    std::filesystem::remove(picture);
    for (const rlim_t limited : TooSmallFor(size)) {
        ExpectNoRoom(limited, paint, picture + ": cannot be written");
    }
    folder.WriteText("window.png", "former");
    for (const rlim_t limited : TooSmallFor(size)) {
        ExpectNoRoom(limited, paint, picture + ": cannot be written");
        EXPECT_EQ(ReadTestText(picture), "former") << limited;
    }
    {
        const FileSizeLimit limit(size, SIG_DFL);
        ExpectDone(paint);
    }
    EXPECT_EQ(ReadTestFile(picture).size(), size);
}

TEST_F(CliWithoutRoom, APrintedPageStaysAsItWas) {
    const std::string bank = Bank(), pdf = folder.File("voices.pdf");
    const std::vector<std::string> print = {"print", bank, pdf};
    const std::string reason = pdf + ": could not be written: File too large";
    ExpectDone(print);
    const std::size_t size = ReadTestFile(pdf).size();
    std::filesystem::remove(pdf);
    for (const rlim_t limited : {rlim_t{0}, rlim_t{size / 2}}) {
        ExpectNoRoom(limited, print, reason);
    }
    folder.WriteText("voices.pdf", "former");
    for (const rlim_t limited : {rlim_t{0}, rlim_t{size / 2}}) {
        ExpectNoRoom(limited, print, reason);
        EXPECT_EQ(ReadTestText(pdf), "former") << limited;
    }
}

TEST_F(CliWithoutRoom, ARenderedSoundStaysAsItWas) {
    const std::string voice = folder.Write("voice.sy1", TestVoiceFile());
    const std::string sound = folder.File("voice.wav");
    const std::vector<std::string> render = {"render", voice, "1", sound};
    const std::string reason = sound + ": could not be written: File too large";
    ExpectDone(render);
    const std::size_t size = ReadTestFile(sound).size();
    std::filesystem::remove(sound);
    for (const rlim_t limited : TooSmallFor(size)) {
        ExpectNoRoom(limited, render, reason);
    }
    folder.WriteText("voice.wav", "former");
    for (const rlim_t limited : TooSmallFor(size)) {
        ExpectNoRoom(limited, render, reason);
        EXPECT_EQ(ReadTestText(sound), "former") << limited;
    }
    const std::string disk = folder.File("disk");
    std::filesystem::create_directory(disk);
    RunOnSmallDisk(disk, [&] {
        const std::string out = disk + "/voice.wav";
        ExpectFailure({"render", voice, "1", out},
                      out + ": could not be written: No space left on device");
        EXPECT_TRUE(std::filesystem::is_empty(disk));
    });
}

TEST_F(CliWithoutRoom, AnEditedFileStaysAsItWas) {
    // The backup is what fails first, and nobody says to go on without it.
    const std::string question = "Warning: there has been an error creating a backup for your file."
                                 "\n\nClick on Yes to proceed, or click on No to abort this save. "
                                 "[y/n] no\ntonewright-cli: ";
    const std::string bank = Bank(), voice = folder.Write("voice.sy1", TestVoiceFile());
    const std::string refaceBank = RefaceBank();
    for (const std::string &path : {bank, voice, refaceBank}) {
        const Bytes former = ReadTestFile(path);
        for (const char *option : {"--careful", "--no-careful"}) {
            for (const rlim_t size : TooSmallFor(former.size())) {
                const auto entries = Entries();
                const ProgramResult result = [&] {
                    const FileSizeLimit limit(size, SIG_DFL);
                    return Cli({"edit", path, "1", "lfoSpeed=7", path, option});
                }();
                EXPECT_EQ(result.exitStatus, 1) << path << option << size;
                if (size > question.size() + path.size()) {
                    EXPECT_EQ(result.errors, question + path + ": not written, as answered\n");
                }
                EXPECT_EQ(Entries(), entries) << path << option << size;
                EXPECT_EQ(ReadTestFile(path), former) << path << option << size;
            }
        }
    }
}

TEST_F(CliWithoutRoom, AFileOfSettingsStaysAsItWasInCarefulMode) {
    const std::string file = folder.File("a.crg");
    const std::vector<std::string> save = {"reface-settings", "save", file, "--careful"};
    ExpectDone(save);
    const std::size_t size = ReadTestFile(file).size();
    std::filesystem::remove(file);
    for (const rlim_t limited : TooSmallFor(size)) {
        ExpectNoRoom(limited, save, file + ": could not be written: File too large");
    }
    folder.WriteText("a.crg", "former"); // whose backup there is room for
    ExpectDone(save);
    folder.WriteText("a.crg", "former");
    for (const rlim_t limited : {rlim_t{size / 2}, rlim_t{size - 1}}) {
        ExpectNoRoom(limited, save, file + ": could not be written: File too large");
        EXPECT_EQ(ReadTestText(file), "former") << limited;
    }
}

} // namespace
} // namespace tonewright
