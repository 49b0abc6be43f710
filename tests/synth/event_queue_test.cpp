// What goes from the thread that writes to the one that reads: events in their order, and voices.
#include "synth/event_queue.h"
#include "synth/voice_mailbox.h"

#include <gtest/gtest.h>

#include <memory>

namespace tonewright {
namespace {

SynthEvent Numbered(int number) {
    return {.kind = SynthEventKind::Bend, .value = static_cast<std::uint16_t>(number)};
}

TEST(EventQueue, GivesEventsInTheirOrder) {
    const auto queue = std::make_unique<EventQueue>();
    EXPECT_EQ(Waiting(*queue), 0u);
    const SynthEvent note = {.kind = SynthEventKind::NoteOn, .number = 60, .value = 100};
    EXPECT_TRUE(Push(*queue, note));
    EXPECT_TRUE(Push(*queue, Numbered(1)));
    EXPECT_TRUE(Push(*queue, Numbered(2)));
    ASSERT_EQ(Waiting(*queue), 3u);
    EXPECT_EQ(Waiting(*queue, 0), note);
    EXPECT_EQ(Waiting(*queue, 2), Numbered(2));
    Pop(*queue, 2);
    ASSERT_EQ(Waiting(*queue), 1u);
    EXPECT_EQ(Waiting(*queue, 0), Numbered(2));
    Pop(*queue);
    EXPECT_EQ(Waiting(*queue), 0u);
}

TEST(EventQueue, TakesNoMoreThanItHolds) {
    const auto queue = std::make_unique<EventQueue>();
    constexpr int Capacity = static_cast<int>(EventQueue::Capacity);
    for (int turn = 0; turn < 3; ++turn) {
        for (int i = 0; i < Capacity; ++i) {
            EXPECT_TRUE(HasRoom(*queue));
            EXPECT_TRUE(Push(*queue, Numbered(turn + i)));
        }
        EXPECT_FALSE(HasRoom(*queue));
        EXPECT_FALSE(Push(*queue, Numbered(9)));
        ASSERT_EQ(Waiting(*queue), EventQueue::Capacity);
        for (int i = 0; i < Capacity; ++i) {
            ASSERT_EQ(Waiting(*queue, static_cast<std::size_t>(i)), Numbered(turn + i));
        }
        Pop(*queue, EventQueue::Capacity - 5);
        EXPECT_TRUE(HasRoom(*queue));
        Pop(*queue, 5);
    }
}

PreparedVoice Transposed(int transpose) {
    PreparedVoice voice;
    voice.transpose = transpose;
    return voice;
}

TEST(VoiceMailbox, GivesTheNewestVoiceOnce) {
    const auto mailbox = std::make_unique<VoiceMailbox>();
    EXPECT_EQ(WaitingVoice(*mailbox), nullptr);
    EXPECT_EQ(TakeVoice(*mailbox, 0), nullptr);
    for (int voice = 1; voice <= 3; ++voice) {
        PutVoice(*mailbox, Transposed(voice), 0);
    }
    ASSERT_NE(WaitingVoice(*mailbox), nullptr);
    EXPECT_EQ(WaitingVoice(*mailbox)->transpose, 3);
    const PreparedVoice *taken = TakeVoice(*mailbox, 0);
    ASSERT_NE(taken, nullptr);
    EXPECT_EQ(taken->transpose, 3);
    EXPECT_EQ(WaitingVoice(*mailbox), nullptr);
    EXPECT_EQ(TakeVoice(*mailbox, 0), nullptr);
}

TEST(VoiceMailbox, KeepsAVoiceOfALaterEraBack) {
    const auto mailbox = std::make_unique<VoiceMailbox>();
    PutVoice(*mailbox, Transposed(1), 4);
    EXPECT_EQ(TakeVoice(*mailbox, 3), nullptr);
    EXPECT_NE(WaitingVoice(*mailbox), nullptr);
    EXPECT_NE(TakeVoice(*mailbox, 4), nullptr);
}

TEST(VoiceMailbox, LeavesTheVoiceInUseAndTheFormerOneAlone) {
    const auto mailbox = std::make_unique<VoiceMailbox>();
    const PreparedVoice *former = nullptr;
    const PreparedVoice *newest = nullptr;
    for (int voice = 1; voice <= 20; ++voice) {
        PutVoice(*mailbox, Transposed(100 + voice), 0);
        PutVoice(*mailbox, Transposed(voice), 0);
        if (former) {
            EXPECT_EQ(former->transpose, voice - 2);
            EXPECT_EQ(newest->transpose, voice - 1);
        }
        former = newest;
        newest = TakeVoice(*mailbox, 0);
        ASSERT_NE(newest, nullptr);
        EXPECT_EQ(newest->transpose, voice);
    }
}

} // namespace
} // namespace tonewright
