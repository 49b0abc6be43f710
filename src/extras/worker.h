// A thread that works for a window: one job after the other, each of which can be cancelled, while
// the window stays quick.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace tonewright {

class Worker {
public:
    // Has a function run in the thread of the window, later; called in the worker's thread.
    using Deliver = std::function<void(std::function<void()>)>;
    using Cancelled = std::function<bool()>; // asked by a job from time to time
    // Runs in the worker's thread; what it returns, if anything, is delivered.
    using Job = std::function<std::function<void()>(const Cancelled &cancelled)>;

    explicit Worker(Deliver deliver);
    ~Worker(); // End
    Worker(const Worker &) = delete;
    Worker &operator=(const Worker &) = delete;

    // Does the job when those before it are done. The thread begins with the first one; false when
    // the system has none to give, or after End.
    bool Begin(Job job);
    // Asks the running job to end, and those that wait, each of which still runs to hear of it.
    void Cancel();
    // Asks the running job to end and waits for it; its result is not delivered, and no job begins
    // any more.
    void End();

private:
    struct Waiting {
        Job job;
        bool cancelled = false;
    };
    void Run();

    const Deliver deliver;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Waiting> waiting;
    std::atomic<bool> cancelled = false; // the running job
    bool ended = false;
    std::thread thread;
};

} // namespace tonewright
