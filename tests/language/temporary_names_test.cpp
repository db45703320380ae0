#include "language/temporary_names.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "foundation/utf8.h"
#include "support/temp_dir.h"

namespace {

class TemporaryNames : public testing::Test {
 protected:
  void SetUp() override {
    setenv("TMP", place_.path().c_str(), 1);
    unsetenv("TEMP");
  }
  void TearDown() override {
    removeTemporaries();
    unsetenv("TMP");
  }

  std::string ownName(int sequence) const {
    return "TD#" + std::to_string(getpid() & 0xFFFF) + "." + std::to_string(sequence);
  }
  static std::string bytes(const Westring& path) { return toUtf8(path).data(); }

  TempDir place_;
};

TEST_F(TemporaryNames, TheDirectoryIsThatOfTmpThenOfTempThenTmp) {
  EXPECT_EQ(bytes(temporaryDirectory()), place_.path());
  unsetenv("TMP");
  setenv("TEMP", place_.path().c_str(), 1);
  EXPECT_EQ(bytes(temporaryDirectory()), place_.path());
  unsetenv("TEMP");
  EXPECT_EQ(bytes(temporaryDirectory()), "/tmp");
}

TEST_F(TemporaryNames, TheFirstFreeNumberIsTaken) {
  place_.write(ownName(0), "");
  place_.link("nowhere", ownName(1));
  Westring path;
  EXPECT_EQ(makeTemporaryDirectory(path), 0);
  EXPECT_EQ(bytes(path), place_.path(ownName(2)));
}

TEST_F(TemporaryNames, DirectoriesAndListsAreForThisUserAlone) {
  Westring directory;
  ASSERT_EQ(makeTemporaryDirectory(directory), 0);
  EXPECT_EQ(place_.mode(ownName(0)), 0700u);
  std::optional<Westring> list = writeListFile({L"one", L"two words"});
  ASSERT_TRUE(list.has_value());
  EXPECT_EQ(place_.mode(ownName(1)), 0600u);
  EXPECT_EQ(place_.read(ownName(1)), "one\r\ntwo words\r\n");
}

TEST_F(TemporaryNames, WhatWasMadeHereIsRemovedWithAllItHolds) {
  Westring directory;
  ASSERT_EQ(makeTemporaryDirectory(directory), 0);
  place_.makeDir(ownName(0) + "/deep");
  place_.write(ownName(0) + "/deep/file", "x");
  ASSERT_TRUE(writeListFile({L"one"}).has_value());
  removeTemporaries();
  EXPECT_TRUE(place_.names().empty());
}

TEST_F(TemporaryNames, WhatAnotherProcessOfTheSameLowBitsMadeStays) {
  place_.makeDir(ownName(0));
  place_.write(ownName(0) + "/theirs", "x");
  place_.write(ownName(1), "x");
  Westring directory;
  ASSERT_EQ(makeTemporaryDirectory(directory), 0);
  EXPECT_EQ(bytes(directory), place_.path(ownName(2)));
  removeTemporaries();
  EXPECT_EQ(place_.names(), (std::vector<std::string>{ownName(0), ownName(1)}));
  EXPECT_EQ(place_.read(ownName(0) + "/theirs"), "x");
}

TEST_F(TemporaryNames, WhatWasRemovedOnceIsForgotten) {
  Westring directory;
  ASSERT_EQ(makeTemporaryDirectory(directory), 0);
  removeTemporaries();
  place_.makeDir(ownName(0));
  removeTemporaries();
  EXPECT_TRUE(place_.exists(ownName(0)));
}

TEST_F(TemporaryNames, TheyAreFoundAgainAfterTheirPlaceHasChanged) {
  const TempDir elsewhere("/tmp");
  Westring directory;
  ASSERT_EQ(makeTemporaryDirectory(directory), 0);
  setenv("TMP", elsewhere.path().c_str(), 1);
  removeTemporaries();
  EXPECT_TRUE(place_.names().empty());
}

TEST_F(TemporaryNames, ALinkIsUnlinkedAndItsTargetStays) {
  Westring directory;
  ASSERT_EQ(makeTemporaryDirectory(directory), 0);
  place_.makeDir("kept");
  place_.write("kept/file", "x");
  ASSERT_EQ(rmdir(bytes(directory).c_str()), 0);
  place_.link("kept", ownName(0));
  removeTemporaries();
  EXPECT_FALSE(place_.exists(ownName(0)));
  EXPECT_TRUE(place_.exists("kept/file"));
}

TEST_F(TemporaryNames, WithoutAPlaceToWriteThereIsNoList) {
  setenv("TMP", place_.path("gone").c_str(), 1);
  EXPECT_FALSE(writeListFile({L"one"}).has_value());
}

TEST_F(TemporaryNames, WhatDeadProcessesLeftADayAgoGoes) {
  // The largest number that no process has.
  unsigned dead = 0xFFFF;
  const auto lives = [](unsigned low) {
    for (unsigned process = low; process <= 4194304; process += 0x10000) {
      if (process > 0 && (kill(static_cast<pid_t>(process), 0) == 0 || errno != ESRCH)) return true;
    }
    return false;
  };
  while (lives(dead)) --dead;
  const std::string start = "TD#" + std::to_string(dead) + ".";
  const auto made = [this](const std::string& name, time_t age) {
    const timespec when{time(nullptr) - age, 0};
    const timespec times[2] = {when, when};
    utimensat(AT_FDCWD, place_.path(name).c_str(), times, AT_SYMLINK_NOFOLLOW);
  };
  constexpr time_t old = 25 * 3600, young = 23 * 3600;
  place_.makeDir(start + "0");
  place_.write(start + "0/member", "");
  made(start + "0", old);
  const std::vector<std::string> kept = {start + "1",
                                         start + "2x",
                                         start + "03",
                                         ownName(0),
                                         "TD#" + std::to_string(dead + 0x10000) + ".0",
                                         "TDother"};
  for (const std::string& name : kept) {
    place_.write(name, "");
    made(name, name == start + "1" ? young : old);
  }
  const TempDir elsewhere("/tmp");
  elsewhere.write("file", "");
  place_.link(elsewhere.path(), start + "4");
  made(start + "4", old);
  removeLeftOverTemporaries();
  std::vector<std::string> expected = kept;
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(place_.names(), expected);
  EXPECT_TRUE(elsewhere.exists("file"));
}

}  // namespace
