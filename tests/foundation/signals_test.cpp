#include "foundation/signals.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>

#include "foundation/break_state.h"
#include "foundation/file.h"
#include "support/as_user.h"
#include "support/temp_dir.h"

namespace {

TEST(Signals, ARequestToEndActsAsBreakAndIsRemembered) {
  for (int signal : {SIGTERM, SIGHUP, SIGINT}) {
    EXPECT_EQ(runInChild([&] {
                installSignals();
                EXPECT_FALSE(endRequested());
                const BreakScope scope;
                raise(signal);
                EXPECT_TRUE(endRequested());
                EXPECT_TRUE(breakRequested());
              }),
              0)
        << signal;
  }
}

TEST(Signals, WhatTheParentSetToBeIgnoredStaysIgnored) {
  EXPECT_EQ(runInChild([] {
              signal(SIGHUP, SIG_IGN);
              installSignals();
              raise(SIGHUP);
              EXPECT_FALSE(endRequested());
            }),
            0);
}

TEST(Signals, AFileSizeLimitIsAnErrorAndNotTheEnd) {
  const TempDir dir;
  EXPECT_EQ(runInChild([&] {
              installSignals();
              const rlimit limit{10000, 10000};
              setrlimit(RLIMIT_FSIZE, &limit);
              File file;
              EXPECT_EQ(file.open(dir.wide("file"), OpenFlag::Write | OpenFlag::Create), 0);
              const std::string text(20000, 'x');
              EXPECT_EQ(file.write(text.data(), text.size()), EFBIG);
              EXPECT_EQ(file.close(), EFBIG);
            }),
            0);
}

TEST(Signals, AClosedPipeIsAnErrorAndNotTheEnd) {
  EXPECT_EQ(runInChild([] {
              installSignals();
              int ends[2];
              ASSERT_EQ(pipe(ends), 0);
              ::close(ends[0]);
              EXPECT_EQ(::write(ends[1], "x", 1), -1);
              EXPECT_EQ(errno, EPIPE);
            }),
            0);
}

TEST(Signals, AWatcherWakesWhoWaitsWithoutLimit) {
  EXPECT_EQ(runInChild([] {
              installSignals();
              EventSem woken;
              const EndWatcher watcher([&] { woken.post(); });
              raise(SIGTERM);
              EXPECT_EQ(woken.wait(WaitForever), 0);
              EXPECT_TRUE(endRequested());
            }),
            0);
}

TEST(Signals, AForgottenRequestWakesNobody) {
  EXPECT_EQ(runInChild([] {
              for (int i = 0; i < 1000; ++i) requestEnd();
              forgetEndRequest();
              std::atomic<int> calls{0};
              EventSem woken;
              {
                const EndWatcher watcher([&] {
                  ++calls;
                  woken.post();
                });
                requestEnd();
                EXPECT_EQ(woken.wait(WaitForever), 0);
              }
              EXPECT_EQ(calls, 1);
            }),
            0);
}

TEST(Signals, AWatcherThatSawNothingEnds) {
  int calls = 0;
  {
    const EndWatcher watcher([&] { ++calls; });
  }
  EXPECT_EQ(calls, 0);
}

}  // namespace
