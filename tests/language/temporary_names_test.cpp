#include "language/temporary_names.h"

#include <gtest/gtest.h>
#include <unistd.h>

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

}  // namespace
