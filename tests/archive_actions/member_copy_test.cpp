#include "archive_actions/member_copy.h"

#include <gtest/gtest.h>

#include "support/files.h"
#include "support/temp_dir.h"

namespace {

class MemberCopyTest : public testing::Test {
 protected:
  void SetUp() override {
    PrivateDirectory directory;
    ASSERT_EQ(directory.make(place.wide()), 0);
    path_ = toUtf8(directory.path()).data() + std::string("/member");
    writeFile(path_, "text");
    setTime(path_, Then);
    ASSERT_EQ(copy.adopt(std::move(directory), decodeFileName(path_.c_str())), 0);
  }
  MemberCopy::State state() {
    int error = 0;
    return copy.compare(error);
  }
  static constexpr time_t Then = 1600000000;  // even

  TempDir place;
  MemberCopy copy;
  std::string path_;
};

}  // namespace

TEST_F(MemberCopyTest, WhatWasOnlyReadIsTheSame) {
  EXPECT_EQ(readFile(path_), "text");
  EXPECT_EQ(state(), MemberCopy::State::Same);
}

TEST_F(MemberCopyTest, ATimeLessThanTwoSecondsLaterIsTheSame) {
  setTime(path_, Then + 1, 999'999'999);
  EXPECT_EQ(state(), MemberCopy::State::Same);
  setTime(path_, Then + 2);
  EXPECT_EQ(state(), MemberCopy::State::Changed);
}

TEST_F(MemberCopyTest, AnEditIsSeenThoughSizeAndTimeAreTheOldOnes) {
  writeFile(path_, "edit");
  setTime(path_, Then);
  EXPECT_EQ(state(), MemberCopy::State::Changed);
}

TEST_F(MemberCopyTest, ACopyThatIsGoneOrALinkCannotBeRead) {
  ASSERT_EQ(unlink(path_.c_str()), 0);
  EXPECT_EQ(state(), MemberCopy::State::Unreadable);
  ASSERT_EQ(symlink("/etc/passwd", path_.c_str()), 0);
  EXPECT_EQ(state(), MemberCopy::State::Unreadable);
}

TEST_F(MemberCopyTest, AKeptCopyStaysUnderANameThatNoCleanUpTakes) {
  std::string kept;
  {
    MemberCopy other = std::move(copy);
    kept = toUtf8(other.keep()).data();
  }
  EXPECT_EQ(readFile(kept), "text");
  EXPECT_NE(kept.find(".kept/member"), std::string::npos) << kept;
  EXPECT_EQ(place.names().size(), 1u);
}

TEST_F(MemberCopyTest, TheDirectoryGoesWithTheCopy) {
  { const MemberCopy other = std::move(copy); }
  EXPECT_EQ(place.names(), std::vector<std::string>{});
}
