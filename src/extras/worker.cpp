// The worker's queue and its thread.
#include "extras/worker.h"

#include <system_error>
#include <utility>

namespace tonewright {

Worker::Worker(Deliver deliver) : deliver(std::move(deliver)) {}

Worker::~Worker() {
    End();
}

bool Worker::Begin(Job job) {
    const std::lock_guard lock(mutex);
    if (ended) {
        return false;
    }
    if (!thread.joinable()) {
        try {
            thread = std::thread([this] { Run(); });
        } catch (const std::system_error &) {
            return false;
        }
    }
    waiting.push_back({.job = std::move(job)});
    changed.notify_one();
    return true;
}

void Worker::Cancel() {
    const std::lock_guard lock(mutex);
    cancelled = true;
    for (Waiting &one : waiting) {
        one.cancelled = true;
    }
}

void Worker::End() {
    {
        const std::lock_guard lock(mutex);
        ended = true;
        cancelled = true;
        waiting.clear();
    }
    changed.notify_one();
    if (thread.joinable()) {
        thread.join();
    }
}

void Worker::Run() {
    std::unique_lock lock(mutex);
    while (true) {
        changed.wait(lock, [this] { return ended || !waiting.empty(); });
        if (ended) {
            return;
        }
        const Waiting next = std::move(waiting.front());
        waiting.pop_front();
        cancelled = next.cancelled;
        lock.unlock();
        std::function<void()> result = next.job([this] { return cancelled.load(); });
        lock.lock();
        if (result && !ended) {
            // Under the lock, so that nothing is delivered behind End.
            deliver(std::move(result));
        }
    }
}

} // namespace tonewright
