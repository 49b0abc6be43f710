// What the callback of a sound card must not do: it neither allocates nor frees, locks, writes nor
// calls the system at all. This program has these functions itself, and a filter of the system's
// calls; it is built without sanitizers, which have them too.
#include "synth/player.h"

#include "random_events.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <dlfcn.h>
#include <iterator>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <mutex>
#include <pthread.h>
#include <shared_mutex>
#include <string>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern "C" {
// What the functions of the C library are called inside of it.
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void *block);
}

namespace {

// Volatile, since a compiler takes it that an allocation reads and writes nothing of the program.
thread_local volatile bool InCallback = false;
thread_local const char *volatile Caught = nullptr;

void Catch(const char *name) {
    if (InCallback) {
        Caught = name;
    }
}

template <typename Function> Function *Next(const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

void *malloc(std::size_t size) noexcept {
    Catch("malloc");
    return __libc_malloc(size);
}

void *calloc(std::size_t count, std::size_t size) noexcept {
    Catch("calloc");
    return __libc_calloc(count, size);
}

void *realloc(void *block, std::size_t size) noexcept {
    Catch("realloc");
    return __libc_realloc(block, size);
}

void *aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    Catch("aligned_alloc");
    return __libc_memalign(alignment, size);
}

// Libraries differ in which of the two they ask for memory of an alignment.
int posix_memalign(void **block, std::size_t alignment, std::size_t size) noexcept {
    Catch("aligned_alloc");
    *block = __libc_memalign(alignment, size);
    return *block ? 0 : ENOMEM;
}

void free(void *block) noexcept {
    Catch("free");
    __libc_free(block);
}

int pthread_mutex_lock(pthread_mutex_t *mutex) noexcept {
    Catch("pthread_mutex_lock");
    return Next<int(pthread_mutex_t *)>("pthread_mutex_lock")(mutex);
}

int pthread_rwlock_rdlock(pthread_rwlock_t *lock) noexcept {
    Catch("pthread_rwlock_rdlock");
    return Next<int(pthread_rwlock_t *)>("pthread_rwlock_rdlock")(lock);
}

int pthread_rwlock_wrlock(pthread_rwlock_t *lock) noexcept {
    Catch("pthread_rwlock_wrlock");
    return Next<int(pthread_rwlock_t *)>("pthread_rwlock_wrlock")(lock);
}

ssize_t write(int file, const void *bytes, std::size_t size) {
    Catch("write");
    return Next<ssize_t(int, const void *, std::size_t)>("write")(file, bytes, size);
}

} // extern "C"

namespace tonewright {
namespace {

// The name of what the function calls that it must not, or none.
template <typename Function> std::string CaughtIn(Function &&function) {
    Caught = nullptr;
    InCallback = true;
    function();
    InCallback = false;
    return Caught ? Caught : "";
}

TEST(CallbackTrap, CatchesWhatIsForbidden) {
    EXPECT_EQ(CaughtIn([] {}), "");
    std::vector<int> *numbers = nullptr;
    EXPECT_EQ(CaughtIn([&] { numbers = new std::vector<int>; }), "malloc");
    EXPECT_EQ(CaughtIn([&] { numbers->resize(100); }), "malloc");
    EXPECT_EQ(CaughtIn([&] { delete numbers; }), "free");
    struct alignas(64) Aligned {
        char bytes[64];
    };
    Aligned *volatile aligned = nullptr; // or both calls would be left out
    EXPECT_EQ(CaughtIn([&] { aligned = new Aligned; }), "aligned_alloc");
    delete aligned;
    std::mutex mutex;
    EXPECT_EQ(CaughtIn([&] { const std::lock_guard lock(mutex); }), "pthread_mutex_lock");
    std::shared_mutex shared;
    EXPECT_EQ(CaughtIn([&] { const std::shared_lock lock(shared); }), "pthread_rwlock_rdlock");
    EXPECT_EQ(CaughtIn([] { (void)!write(STDOUT_FILENO, "", 0); }), "write");
}

// Sends and plays everything; `played` is asked about each part.
template <typename Played> void PlayEverything(Played &&played) {
    constexpr int Instruments = 3;
    std::mt19937 random(3);
    const std::vector<PreparedVoice> voices = RandomVoices(random, 20);
    for (const int polyphony : {1, 16, 64}) {
        const OwnedSynthPlayer player = MakeSynthPlayer(Instruments, 48000.0, polyphony);
        std::vector<float> frames(2 * 4096);
        played([&] {
            for (int part = 0; part < 300; ++part) {
                for (unsigned i = random() % 40; i > 0; --i) {
                    InCallback = false;
                    SendAnything(*player, Instruments, voices, random);
                    InCallback = true;
                }
                const int count = static_cast<int>(part % 50 == 0 ? 4096 : random() % 400);
                RenderFrames(*player, frames.data(), count);
            }
            // More than the queue holds.
            for (int i = 0; i < 10000; ++i) {
                SendEvent(*player, i % Instruments, {.kind = SynthEventKind::NoteOn, .number = 60});
            }
            RenderFrames(*player, frames.data(), 4096);
        });
    }
}

TEST(CallbackTrap, FindsNothingInThePlayer) {
    PlayEverything([](const auto &play) { EXPECT_EQ(CaughtIn(play), ""); });
}

// How a child ends in which every call of the system but that of its end is deadly.
template <typename Function> int EndOfChildWithoutSystem(Function &&function) {
    const pid_t child = fork();
    if (child == 0) {
        sock_filter filter[] = {
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_exit_group, 1, 0),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        };
        const sock_fprog program = {.len = std::size(filter), .filter = filter};
        if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
            prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
            _exit(1);
        }
        function();
        _exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

TEST(CallbackTrap, CatchesACallOfTheSystem) {
    const int status = EndOfChildWithoutSystem([] { syscall(SYS_getppid); });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGSYS);
}

TEST(CallbackTrap, FindsNoCallOfTheSystemInThePlayer) {
    PlayEverything([](const auto &play) { EXPECT_EQ(EndOfChildWithoutSystem(play), 0); });
}

} // namespace
} // namespace tonewright
