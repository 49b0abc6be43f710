// A thread that works for a window, and what is delivered of it.
#include "extras/worker.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <vector>

namespace tonewright {
namespace {

// The thread of a window: what is delivered waits until it is run.
class WorkerTest : public testing::Test {
protected:
    void RunDelivered(std::size_t count) {
        std::unique_lock lock(mutex);
        ASSERT_TRUE(arrived.wait_for(lock, std::chrono::seconds(30),
                                     [&] { return delivered.size() >= count; }));
        const auto works = std::exchange(delivered, {});
        lock.unlock();
        for (const auto &work : works) {
            work();
        }
    }
    std::size_t Delivered() {
        const std::lock_guard lock(mutex);
        return delivered.size();
    }

    std::mutex mutex;
    std::condition_variable arrived;
    std::vector<std::function<void()>> delivered;
    Worker worker{[this](std::function<void()> work) {
        const std::lock_guard lock(mutex);
        delivered.push_back(std::move(work));
        arrived.notify_all();
    }};
};

TEST_F(WorkerTest, DoesOneJobAfterTheOtherInAThreadOfItsOwn) {
    std::vector<std::string> said;
    for (const char *name : {"first", "second", "third"}) {
        EXPECT_TRUE(worker.Begin([&said, name, here = std::this_thread::get_id()](const auto &) {
            const bool elsewhere = std::this_thread::get_id() != here;
            return [&said, name, elsewhere] {
                said.push_back(std::string(name) + (elsewhere ? "" : " in the same thread"));
            };
        }));
    }
    RunDelivered(3);
    EXPECT_EQ(said, (std::vector<std::string>{"first", "second", "third"}));
}

TEST_F(WorkerTest, AJobWithoutAResultDeliversNothing) {
    worker.Begin([](const auto &) { return nullptr; });
    worker.Begin([](const auto &) { return [] {}; });
    RunDelivered(1);
    EXPECT_EQ(Delivered(), 0u);
}

TEST_F(WorkerTest, CancelReachesTheJobThatRunsAndThoseThatWaitAndNoLaterOne) {
    std::promise<void> begun;
    std::vector<std::string> said;
    worker.Begin([&](const Worker::Cancelled &cancelled) {
        begun.set_value();
        while (!cancelled()) {
            std::this_thread::yield();
        }
        return [&] { said.push_back("running"); };
    });
    const auto note = [&said](const char *name) {
        return [&said, name](const Worker::Cancelled &cancelled) {
            const bool was = cancelled();
            return [&said, name, was] {
                said.push_back(std::string(name) + (was ? " cancelled" : " not cancelled"));
            };
        };
    };
    begun.get_future().wait();
    worker.Begin(note("waiting"));
    worker.Cancel();
    worker.Begin(note("later"));
    RunDelivered(3);
    EXPECT_EQ(said,
              (std::vector<std::string>{"running", "waiting cancelled", "later not cancelled"}));
}

TEST_F(WorkerTest, CancelOfAnIdleWorkerDoesNotReachTheNextJob) {
    worker.Cancel();
    bool was = true;
    worker.Begin([&was](const Worker::Cancelled &cancelled) {
        return [&was, now = cancelled()] { was = now; };
    });
    RunDelivered(1);
    EXPECT_FALSE(was);
}

TEST_F(WorkerTest, EndWaitsForTheJobDeliversNothingOfItAndBeginsNoOther) {
    std::promise<void> begun;
    bool ended = false, other = false;
    worker.Begin([&](const Worker::Cancelled &cancelled) {
        begun.set_value();
        while (!cancelled()) {
            std::this_thread::yield();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        ended = true;
        return [] {};
    });
    begun.get_future().wait();
    worker.Begin([&](const auto &) {
        other = true;
        return [] {};
    });
    worker.End();
    EXPECT_TRUE(ended);
    EXPECT_FALSE(other);
    EXPECT_EQ(Delivered(), 0u);
    EXPECT_FALSE(worker.Begin([](const auto &) { return [] {}; }));
    worker.End(); // once more
}

} // namespace
} // namespace tonewright
