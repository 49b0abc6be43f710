// How much memory the undo store holds. A program of its own, because it counts every allocation.
#include "core/current.h"
#include "shell/undo.h"

#include "common/settings.h"
#include "drivers/dx7/voice_codec.h"

#include <cstddef>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

namespace {

std::size_t LiveBytes = 0;

// Every block begins with its size, in a place that keeps what follows aligned.
constexpr std::size_t Prefix = alignof(std::max_align_t);

} // namespace

// All forms that hand out or take back a single block: in a checking build those that are not
// replaced call the checker, not these.
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
    auto *block = static_cast<std::byte *>(std::malloc(Prefix + size));
    if (!block) {
        return nullptr;
    }
    *reinterpret_cast<std::size_t *>(block) = size;
    LiveBytes += size;
    return block + Prefix;
}

void *operator new(std::size_t size) {
    void *pointer = operator new(size, std::nothrow);
    if (!pointer) {
        throw std::bad_alloc();
    }
    return pointer;
}

void operator delete(void *pointer) noexcept {
    if (pointer) {
        std::byte *block = static_cast<std::byte *>(pointer) - Prefix;
        LiveBytes -= *reinterpret_cast<std::size_t *>(block);
        std::free(block);
    }
}

void operator delete(void *pointer, std::size_t) noexcept {
    operator delete(pointer);
}

void operator delete(void *pointer, const std::nothrow_t &) noexcept {
    operator delete(pointer);
}

namespace tonewright {
namespace {

TEST(UndoMemory, ThirtyTwoLevelsHoldLessThanOneMegabyte) {
    CurrentDriverId = Dx7DriverId;
    VoiceList list;
    for (int row = 0; row < 32; ++row) {
        ListSetVoice(list, ListAdd(list),
                     MakeVoiceObject(Dx7DriverId, std::vector<std::uint8_t>(156)));
    }
    MaxUndoLevel = 32;
    ASSERT_EQ(UndoInit(nullptr), 1);
    const std::size_t before = LiveBytes;
    for (int push = 0; push < 40; ++push) {
        ASSERT_EQ(UndoPush(nullptr, list), 1);
    }
    EXPECT_EQ(UndoCount(), 32);
    const std::size_t held = LiveBytes - before;
    EXPECT_GE(held, 32u * (36 + 32 * 208)); // the levels themselves
    EXPECT_LT(held, 1u << 20);
    UndoEnd();
    EXPECT_EQ(LiveBytes, before);
}

TEST(UndoMemory, TheLargestStoreTakesNoMemoryInAdvance) {
    MaxUndoLevel = 65536;
    const std::size_t before = LiveBytes;
    ASSERT_EQ(UndoInit(nullptr), 1);
    EXPECT_LT(LiveBytes - before, 4u << 20);
    UndoEnd();
}

} // namespace
} // namespace tonewright
