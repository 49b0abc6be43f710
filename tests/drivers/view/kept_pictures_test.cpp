// Pictures that are kept: which are painted again, and how many stay.
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "drivers/view/kept_pictures.h"

#include <gtest/gtest.h>

#include <vector>

namespace tonewright {
namespace {

const PictureKey Key = {.family = Dx7DriverId,
                        .algorithm = 3,
                        .width = 30,
                        .height = 20,
                        .density = 1,
                        .ink = 0xFF000000,
                        .paper = 0xFFFFFFFF,
                        .lineWeight = 2,
                        .withNumber = true};

// Asks for a picture; true when it had to be painted.
bool IsPainted(const PictureKey &key, QSize size = {30, 20}) {
    bool painted = false;
    const QImage image = KeptPicture(key, [&] {
        painted = true;
        return size.isEmpty() ? QImage() : QImage(size, QImage::Format_RGB32);
    });
    EXPECT_EQ(image.size(), size);
    return painted;
}

TEST(KeptPictures, EachPictureIsPaintedOnce) {
    EXPECT_TRUE(IsPainted(Key));
    EXPECT_FALSE(IsPainted(Key));
    std::vector<PictureKey> others(9, Key);
    others[0].family = RefaceDriverId;
    others[1].algorithm = 4;
    others[2].width = 31;
    others[3].height = 21;
    others[4].density = 2;
    others[5].ink = 0xFFFFFFFF;
    others[6].paper = 0xFF000000;
    others[7].lineWeight = 3;
    others[8].withNumber = false;
    for (const PictureKey &other : others) {
        EXPECT_TRUE(IsPainted(other));
        EXPECT_FALSE(IsPainted(other));
    }
    EXPECT_FALSE(IsPainted(Key));
}

TEST(KeptPictures, WhatGivesNoPictureIsRememberedToo) {
    PictureKey key = Key;
    key.width = 0;
    EXPECT_TRUE(IsPainted(key, QSize(0, 0)));
    EXPECT_FALSE(IsPainted(key, QSize(0, 0)));
}

TEST(KeptPictures, ALargePictureIsPaintedEachTime) {
    PictureKey key = Key;
    key.width = 5000;
    const QSize twoMegabytes(512, 1024), more(512, 1025);
    EXPECT_TRUE(IsPainted(key, more));
    EXPECT_TRUE(IsPainted(key, more));
    EXPECT_TRUE(IsPainted(key, twoMegabytes));
    EXPECT_FALSE(IsPainted(key, twoMegabytes));
}

TEST(KeptPictures, ThePictureAskedForLongestAgoGoesFirst) {
    PictureKey key = Key;
    key.width = 6000;
    const auto ask = [&key](int algorithm) {
        key.algorithm = algorithm;
        return IsPainted(key, {512, 512}); // a megabyte, so that 31 stay
    };
    for (int algorithm = 0; algorithm < 31; ++algorithm) {
        EXPECT_TRUE(ask(algorithm));
    }
    EXPECT_FALSE(ask(0));
    EXPECT_TRUE(ask(31));
    EXPECT_FALSE(ask(0));
    EXPECT_TRUE(ask(1));
}

} // namespace
} // namespace tonewright
