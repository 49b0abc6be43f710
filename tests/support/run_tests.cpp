#include "support/run_tests.h"

#include "support/reset_program.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>

namespace tonewright {
namespace {

constexpr int UsualLimit = 60; // seconds

std::chrono::seconds LimitOfATest() {
    const char *limit = std::getenv("TEST_LIMIT");
    return std::chrono::seconds(limit ? std::atoi(limit) : UsualLimit);
}

// Ends the program when one test takes too long: a box that nobody answers waits for ever.
class Watchdog {
public:
    Watchdog() {
        if (limit.count() > 0) {
            watcher = std::thread([this] { Watch(); });
        }
    }
    ~Watchdog() {
        Tell([this] { ended = true; });
        if (watcher.joinable()) {
            watcher.join();
        }
    }
    void Begin(const std::string &name) {
        Tell([&] {
            running = name;
            ++turn;
        });
    }
    void End() { Begin(""); }

private:
    template <typename Change> void Tell(Change change) {
        {
            const std::lock_guard lock(mutex);
            change();
        }
        changed.notify_all();
    }
    void Watch() {
        std::unique_lock lock(mutex);
        while (!ended) {
            const int seen = turn;
            const auto isOver = [&] { return ended || turn != seen; };
            if (running.empty()) {
                changed.wait(lock, isOver);
            } else if (!changed.wait_for(lock, limit, isOver)) {
                std::fprintf(stderr, "%s has taken more than %d s: giving up\n", running.c_str(),
                             static_cast<int>(limit.count()));
                std::abort();
            }
        }
    }

    const std::chrono::seconds limit = LimitOfATest();
    std::mutex mutex;
    std::condition_variable changed;
    std::string running; // name of the test; empty between two
    int turn = 0;
    bool ended = false;
    std::thread watcher;
};

class Between : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo &test) override {
        watchdog.Begin(std::string(test.test_suite_name()) + "." + test.name());
    }
    void OnTestEnd(const testing::TestInfo &) override {
        ResetProgram();
        watchdog.End();
    }

    Watchdog watchdog;
};

// Adds a line on what ran to the file that TEST_COUNTS names.
void NoteCount(const char *program) {
    const char *path = std::getenv("TEST_COUNTS");
    if (!path) {
        return;
    }
    const testing::UnitTest &tests = *testing::UnitTest::GetInstance();
    const std::string name = std::filesystem::path(program).filename().string();
    std::ofstream(path, std::ios::app)
        << name << ": " << tests.test_to_run_count() << " tests, " << tests.failed_test_count()
        << " failed, seed " << tests.random_seed() << ", " << tests.elapsed_time() << " ms\n";
}

} // namespace

int RunTests(int *argc, char **argv) {
    if (!std::getenv("GTEST_SHUFFLE")) {
        testing::GTEST_FLAG(shuffle) = true;
    }
    qputenv("XDG_CONFIG_DIRS", "/dev/null");
    qputenv("TONEWRIGHT_SOUND", "0"); // but where a test means it
    testing::InitGoogleTest(argc, argv);
    ResetProgram();
    testing::UnitTest::GetInstance()->listeners().Append(new Between);
    const int result = RUN_ALL_TESTS();
    NoteCount(argv[0]);
    return result;
}

} // namespace tonewright
