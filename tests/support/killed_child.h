// A child process that does the same over and over and is killed in the middle of it, for tests of
// what it leaves on the disk.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <new>
#include <random>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tonewright {

// The number of the round that a child process is in, seen by its parent.
struct SharedRound {
    std::atomic<int> *number;

    SharedRound()
        : number(new (mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                           MAP_SHARED | MAP_ANONYMOUS, -1, 0)) std::atomic<int>(0)) {}
    ~SharedRound() { munmap(number, sizeof *number); }
    SharedRound(const SharedRound &) = delete;
    SharedRound &operator=(const SharedRound &) = delete;
};

// Starts a child that does `round` with ascending numbers from 0, kills it at a random moment some
// rounds later and returns the number of the round that was cut short. The first two rounds are
// always whole.
inline int KillDuring(std::mt19937 &random, const std::function<void(int number)> &round) {
    using Clock = std::chrono::steady_clock;
    constexpr int greatestRound = 100'000'000; // in case nobody kills the child
    SharedRound shared;
    const pid_t child = fork();
    if (child == 0) {
        for (int number = 0; number < greatestRound; ++number) {
            shared.number->store(number);
            round(number);
        }
        _exit(1);
    }
    EXPECT_GT(child, 0);
    const auto deadline = Clock::now() + std::chrono::seconds(20);
    const auto wait = [&](int number) {
        while (*shared.number < number && Clock::now() < deadline) {
            std::this_thread::yield();
        }
        EXPECT_GE(*shared.number, number) << "the child has got stuck";
        return Clock::now();
    };
    // A moment somewhere in the two rounds that follow, by the length of one.
    const auto start = wait(2);
    const auto length = wait(3) - start;
    const auto moment =
        Clock::now() + length * std::uniform_int_distribution<>(0, 2000)(random) / 1000;
    while (Clock::now() < moment) {
    }
    kill(child, SIGKILL);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    return *shared.number;
}

} // namespace tonewright
