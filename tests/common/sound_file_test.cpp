// Sound files, whole and broken.
#include "common/sound_file.h"

#include "support/paths.h"
#include "support/sound_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

using namespace tonewright;

TEST(DecodeSound, ReadsFormatAndFrames) {
    const auto sound =
        DecodeSound(TestSoundFile(TestSoundFormat(1, 2, 44100, 4, 16), {1, 2, 3, 4, 5, 6, 7, 8}));
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->format.channels, 2);
    EXPECT_EQ(sound->format.framesPerSecond, 44100);
    EXPECT_EQ(sound->format.bitsPerSample, 16);
    EXPECT_EQ(FrameSize(sound->format), 4);
    EXPECT_EQ(sound->frames, (SoundBytes{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(DecodeSound, ReadsOneByteSamplesWithAPadByteBehindThem) {
    const auto sound =
        DecodeSound(TestSoundFile(TestSoundFormat(1, 1, 11025, 1, 8), {0x80, 0x90, 0x70}));
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->frames, (SoundBytes{0x80, 0x90, 0x70}));
}

TEST(DecodeSound, PassesOverOtherChunks) {
    SoundBytes file;
    AddText(file, "RIFF????WAVE");
    AddChunk(file, "LIST", {1, 2, 3});
    AddChunk(file, "fmt ", TestSoundFormat(1, 1, 8000, 2, 16));
    AddChunk(file, "fact", {});
    AddChunk(file, "data", {1, 2});
    AddChunk(file, "data", {3, 4});
    const auto sound = DecodeSound(file);
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->frames, (SoundBytes{1, 2}));
}

TEST(DecodeSound, TakesAnExtendedFormatThatIsPcm) {
    SoundBytes format = TestSoundFormat(0xFFFE, 1, 8000, 3, 24);
    AddNumber(format, 22, 2);
    AddNumber(format, 24, 2);
    AddNumber(format, 4, 4);
    AddNumber(format, 1, 2);
    format.resize(40);
    EXPECT_TRUE(DecodeSound(TestSoundFile(format, {1, 2, 3})));
    format[24] = 3; // floating point
    EXPECT_FALSE(DecodeSound(TestSoundFile(format, {1, 2, 3})));
    format.resize(25);
    EXPECT_FALSE(DecodeSound(TestSoundFile(format, {1, 2, 3})));
}

TEST(DecodeSound, LeavesOutAFrameThatIsCut) {
    const auto sound =
        DecodeSound(TestSoundFile(TestSoundFormat(1, 1, 8000, 2, 16), {1, 2, 3, 4, 5}));
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->frames, (SoundBytes{1, 2, 3, 4}));
}

TEST(DecodeSound, RefusesFormatsThatItDoesNotKnow) {
    const struct {
        std::uint32_t code, channels, rate, frameSize, bits;
    } formats[] = {
        {3, 1, 8000, 4, 32},           // floating point
        {1, 0, 8000, 0, 16},           // no channel
        {1, 9, 8000, 18, 16},          // too many
        {1, 1, 0, 2, 16},              // no rate
        {1, 1, 0xFFFFFFFF, 2, 16},     // too fast
        {1, 1, 8000, 2, 12},           // odd samples
        {1, 1, 8000, 0, 0},            // no samples
        {1, 2, 8000, 2, 16},           // frames that do not hold their channels
        {1, 0xFFFF, 8000, 0xFFFF, 16}, // nonsense
    };
    for (const auto &f : formats) {
        EXPECT_FALSE(DecodeSound(TestSoundFile(
            TestSoundFormat(f.code, f.channels, f.rate, f.frameSize, f.bits), SoundBytes(64))))
            << f.code << ' ' << f.channels << ' ' << f.rate << ' ' << f.frameSize << ' ' << f.bits;
    }
}

TEST(DecodeSound, RefusesAFileWithoutFrames) {
    EXPECT_FALSE(DecodeSound(TestSoundFile(TestSoundFormat(1, 1, 8000, 2, 16), {})));
    EXPECT_FALSE(DecodeSound(TestSoundFile(TestSoundFormat(1, 1, 8000, 2, 16), {1})));
}

TEST(DecodeSound, RefusesAFileThatIsCutAnywhere) {
    const SoundBytes file = TestSound(8);
    ASSERT_TRUE(DecodeSound(file));
    for (std::size_t size = 0; size < file.size(); ++size) {
        EXPECT_FALSE(DecodeSound(std::span(file).first(size))) << size;
    }
}

TEST(DecodeSound, RefusesAChunkThatClaimsToBeLongerThanTheFile) {
    SoundBytes file = TestSound(8);
    for (std::size_t i = 40; i < 44; ++i) {
        file[i] = 0xFF; // size of "data"
    }
    EXPECT_FALSE(DecodeSound(file));
    file = TestSound(8);
    for (std::size_t i = 16; i < 20; ++i) {
        file[i] = 0xFF; // size of "fmt "
    }
    EXPECT_FALSE(DecodeSound(file));
}

TEST(DecodeSound, RefusesOtherFiles) {
    SoundBytes file = TestSound(8);
    file[0] = 'X';
    EXPECT_FALSE(DecodeSound(file));
    file = TestSound(8);
    file[8] = 'X';
    EXPECT_FALSE(DecodeSound(file));
    EXPECT_FALSE(DecodeSound({}));
}

TEST(ReadSoundFile, ReadsAFileAndNothingElse) {
    const TempFolder temp;
    const auto sound = ReadSoundFile(temp.Write("bell.wav", TestSound(8)).c_str());
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->frames, TestSoundFrames(8));
    EXPECT_FALSE(ReadSoundFile(temp.File("missing.wav").c_str()));
    EXPECT_FALSE(ReadSoundFile(temp.Folder().c_str()));
    EXPECT_FALSE(ReadSoundFile(temp.WriteText("text.wav", "no sound").c_str()));
    EXPECT_FALSE(ReadSoundFile(""));
}

TEST(ReadSoundFile, ReadsTheProgramsOwnSound) {
    const auto sound = ReadSoundFile(SourceFile("resources/sounds/confirm.wav").c_str());
    ASSERT_TRUE(sound);
    const auto frames = sound->frames.size() / static_cast<std::size_t>(FrameSize(sound->format));
    EXPECT_LT(frames, static_cast<std::size_t>(sound->format.framesPerSecond)) << "over a second";
}
