// Requests to end the program, in a child process that gets them.
#include "shell/end_signals.h"

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tonewright {
namespace {

// How a child process that does this ends; its exit status, or minus the signal that ended it.
int EndOf(const std::function<int()> &body) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(body());
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

bool Waits(int requests) {
    pollfd file = {.fd = requests, .events = POLLIN, .revents = 0};
    return poll(&file, 1, 0) == 1;
}

TEST(EndSignals, TheFirstOfEachKindIsARequestThatWaits) {
    EXPECT_EQ(EndOf([] {
                  const int requests = CatchEndSignals();
                  if (requests < 0 || Waits(requests)) {
                      return 1;
                  }
                  raise(SIGTERM);
                  raise(SIGHUP);
                  raise(SIGINT);
                  return Waits(requests) ? 0 : 2;
              }),
              0);
}

// A program that is held up, and so does not look at its requests, can be ended all the same.
TEST(EndSignals, TheSecondOfAKindEndsTheProgram) {
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        EXPECT_EQ(EndOf([signal] {
                      CatchEndSignals();
                      raise(signal);
                      raise(signal);
                      return 0;
                  }),
                  -signal);
    }
}

TEST(EndSignals, OnceTheyAreReleasedTheFirstOneEndsTheProgram) {
    EXPECT_EQ(EndOf([] {
                  CatchEndSignals();
                  ReleaseEndSignals();
                  raise(SIGTERM);
                  return 0;
              }),
              -SIGTERM);
}

TEST(EndSignals, WhatWasIgnoredStaysIgnored) {
    EXPECT_EQ(EndOf([] {
                  std::signal(SIGHUP, SIG_IGN);
                  const int requests = CatchEndSignals();
                  raise(SIGHUP);
                  ReleaseEndSignals();
                  raise(SIGHUP);
                  return Waits(requests) ? 1 : 0;
              }),
              0);
}

} // namespace
} // namespace tonewright
