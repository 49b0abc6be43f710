// Voices as bytes.
#include "extras/voice_parcel.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

KeptVoice VoiceOf(VoiceForm form, std::size_t size, std::uint8_t fill) {
    return {.form = form, .bytes = Bytes(size, fill)};
}

TEST(VoiceParcel, HoldsAByteForTheFormAndTheBytesOfEachVoice) {
    const std::vector<KeptVoice> voices = {
        VoiceOf(VoiceForm::Dx7Packed, 128, 1), VoiceOf(VoiceForm::Dx7Single, 155, 2),
        VoiceOf(VoiceForm::Dx7Stored, 156, 3), VoiceOf(VoiceForm::Reface, 150, 4)};
    const Bytes parcel = PackVoices(voices);
    ASSERT_EQ(parcel.size(), 4u + 128 + 155 + 156 + 150);
    EXPECT_EQ(parcel[0], 0);
    EXPECT_EQ(parcel[1], 1);
    EXPECT_EQ(parcel[129], 1);
    EXPECT_EQ(parcel[129 + 156], 2);
    EXPECT_EQ(parcel[129 + 156 + 157], 3);
    EXPECT_EQ(parcel.back(), 4);
    EXPECT_EQ(UnpackVoices(parcel), voices);
}

TEST(VoiceParcel, NothingIsUnpackedOfBytesThatAreNoVoices) {
    Bytes parcel = PackVoices(std::vector{VoiceOf(VoiceForm::Dx7Packed, 128, 7)});
    EXPECT_EQ(UnpackVoices({}), std::nullopt);
    parcel.pop_back();
    EXPECT_EQ(UnpackVoices(parcel), std::nullopt); // a byte is missing
    parcel.push_back(7);
    ASSERT_TRUE(UnpackVoices(parcel));
    parcel.push_back(0);
    EXPECT_EQ(UnpackVoices(parcel), std::nullopt); // a form without a voice
    parcel.pop_back();
    parcel[0] = 4;
    EXPECT_EQ(UnpackVoices(parcel), std::nullopt); // no form
    parcel[0] = 1;
    EXPECT_EQ(UnpackVoices(parcel), std::nullopt); // one that is longer
}

} // namespace
} // namespace tonewright
