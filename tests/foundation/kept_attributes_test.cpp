#include "foundation/kept_attributes.h"

#include <fcntl.h>

#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <cerrno>

#include "foundation/dos_time.h"
#include "foundation/system.h"
#include "support/as_user.h"
#include "support/fault_hook.h"
#include "support/files.h"
#include "support/temp_dir.h"

namespace {

class KeptTimes : public testing::Test {
 protected:
  void SetUp() override { zone("Europe/Berlin"); }
  void TearDown() override { zone("UTC"); }
  static void zone(const char* name) {
    setenv("TZ", name, 1);
    timeZoneChanged();
  }
  static time_t copied(time_t seconds, long nanoseconds = 0) {
    return copiedTime({seconds, nanoseconds}).tv_sec;
  }
};

}  // namespace

TEST_F(KeptTimes, ATimeIsRoundedDownToTwoSeconds) {
  EXPECT_EQ(copied(1700000000, 999), 1700000000);
  EXPECT_EQ(copied(1700000001, 999), 1700000000);
  EXPECT_EQ(copiedTime({1700000001, 999}).tv_nsec, 0);
}

TEST_F(KeptTimes, TheRepeatedHourOfAutumnStaysWhereItWas) {
  constexpr time_t FirstHalfPastTwo = 1698539400;  // 2023-10-29 02:30:00 summer time
  EXPECT_EQ(copied(FirstHalfPastTwo), FirstHalfPastTwo);
  EXPECT_EQ(copied(FirstHalfPastTwo + 3600), FirstHalfPastTwo + 3600);
  EXPECT_EQ(copied(FirstHalfPastTwo + 3601), FirstHalfPastTwo + 3600);
}

TEST_F(KeptTimes, TimesThatTheWordsCantHoldStayWhole) {
  for (const time_t t : {time_t{-1}, time_t{0}, time_t{315000001}, time_t{4355000001}}) {
    EXPECT_EQ(copied(t), t);
    EXPECT_EQ(copiedTime({t, 7}).tv_nsec, 7);
  }
}

TEST_F(KeptTimes, TheFirstAndTheLastSecondsOfTheWordsAreInside) {
  zone("UTC");
  EXPECT_EQ(copied(315532800), 315532800);
  EXPECT_EQ(copied(315532801), 315532800);
  EXPECT_EQ(copied(4354819199), 4354819198);
  EXPECT_EQ(copiedTime({4354819198, 5}).tv_nsec, 0);
  EXPECT_EQ(copied(4354819200), 4354819200);
  EXPECT_EQ(copiedTime({4354819200, 5}).tv_nsec, 5);
  EXPECT_EQ(copied(315532799), 315532799);
}

TEST(KeptMode, SetIdBitsOnlyStayWithTheSameOwnerAndGroup) {
  struct stat source {};
  source.st_mode = S_IFREG | 06755;
  source.st_uid = 1000;
  source.st_gid = 100;
  EXPECT_EQ(keptMode(source, 1000, 100), 06755U);
  EXPECT_EQ(keptMode(source, 0, 100), 0755U);
  EXPECT_EQ(keptMode(source, 1000, 0), 0755U);
}

TEST(KeptMode, ACopyInTheMakingIsNeverMoreOpenThanItsSource) {
  EXPECT_EQ(modeInTheMaking(0644), 0640U);
  EXPECT_EQ(modeInTheMaking(0600), 0600U);
  EXPECT_EQ(modeInTheMaking(0400), 0400U);
  EXPECT_EQ(modeInTheMaking(04777), 0660U);
  EXPECT_EQ(directoryModeInTheMaking(0555), 0700U);
  EXPECT_EQ(directoryModeInTheMaking(02777), 0700U);
}

TEST(KeptMode, RootCopyingAnothersSetUidProgramDropsTheBit) {
  if (!isRoot()) GTEST_SKIP() << "only root can own files of others";
  TempDir dir;
  dir.write("program", "code");
  ASSERT_EQ(chown(dir.path("program").c_str(), OrdinaryUser, OrdinaryUser), 0);
  dir.chmod("program", 04755);
  const struct stat source = statusOf(dir.path("program"));
  dir.write("copy", "code");
  const Descriptor fd(::open(dir.path("copy").c_str(), O_RDWR | O_CLOEXEC));
  keepMode(fd.get(), source);
  EXPECT_EQ(dir.mode("copy"), 0755U);
}

TEST(KeptAttributes, OwnerModeAndEachAttributeAreCompared) {
  TempDir dir;
  dir.write("a", "");
  dir.write("b", "another content");
  const auto same = [&] {
    const Descriptor a(open(dir.path("a").c_str(), O_RDONLY));
    const Descriptor b(open(dir.path("b").c_str(), O_PATH));
    bool result = false;
    EXPECT_EQ(compareAttributes(a.get(), b.get(), result), 0);
    return result;
  };
  EXPECT_TRUE(same());
  dir.chmod("a", 0600);
  dir.chmod("b", 0640);
  EXPECT_FALSE(same());
  dir.chmod("b", 0600);
  EXPECT_TRUE(same());
  ASSERT_EQ(setxattr(dir.path("a").c_str(), "user.note", "one", 3, 0), 0);
  EXPECT_FALSE(same());
  ASSERT_EQ(setxattr(dir.path("b").c_str(), "user.note", "two", 3, 0), 0);
  EXPECT_FALSE(same());
  ASSERT_EQ(setxattr(dir.path("b").c_str(), "user.note", "one", 3, 0), 0);
  EXPECT_TRUE(same());
  FaultHook unreadable("getAttribute", EACCES);
  EXPECT_FALSE(same());
}
