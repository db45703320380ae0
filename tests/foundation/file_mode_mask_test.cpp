#include "foundation/file_mode_mask.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "support/as_user.h"
#include "support/fault_hook.h"

namespace {
int changes = 0;
}

// Stands in for the system's own, and counts.
extern "C" mode_t umask(mode_t mask) noexcept {
  ++changes;
  return static_cast<mode_t>(syscall(SYS_umask, mask));
}

namespace {

void startWith(mode_t mask) {
  umask(mask);
  changes = 0;
}

}  // namespace

TEST(FileModeMask, ItIsToldWithoutBeingChanged) {
  for (const mode_t mask : {0, 022, 077, 027}) {
    EXPECT_EQ(runInChild([&] {
                startWith(mask);
                EXPECT_EQ(fileModeMask(), mask);
                EXPECT_EQ(changes, 0);
              }),
              0);
  }
}

TEST(FileModeMask, ItIsAskedOnce) {
  EXPECT_EQ(runInChild([] {
              startWith(027);
              EXPECT_EQ(fileModeMask(), 027U);
              const FaultHook hook;
              EXPECT_EQ(fileModeMask(), 027U);
              EXPECT_EQ(hook.calls(), 0);
            }),
            0);
}

TEST(FileModeMask, WhereNothingShowsItItIsAskedAndPutBack) {
  for (const char* call : {"open", "read"}) {
    EXPECT_EQ(runInChild([&] {
                startWith(027);
                const FaultHook hook(call, ENOENT);
                EXPECT_EQ(fileModeMask(), 027U);
                EXPECT_EQ(changes, 2);
                EXPECT_EQ(umask(0), 027U);
              }),
              0);
  }
}
