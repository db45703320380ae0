#include "archive_actions/packed_files.h"

#include <gtest/gtest.h>

#include "archive/archive_fixture.h"
#include "support/fault_hook.h"
#include "support/files.h"
#include "support/wait_until.h"

namespace {

class PackedFilesTest : public testing::Test {
 protected:
  void SetUp() override {
    disk.makeDir("dir");
    disk.makeDir("dir/below");
    disk.write("dir/a", "one");
    disk.write("dir/below/b", "three");
    start_ = fileTimeNow();
  }
  const PackedFiles& packed(const SampleMembers& members) {
    opening_ = opened(place, "pack.tar", tarArchive(members, HeaderForm::Published));
    packed_ = std::make_unique<PackedFiles>(*opening_.archive, start_);
    return *packed_;
  }
  bool holds(const SampleMembers& members) {
    return packed(members).holds(placeOf(disk.path("dir").c_str()), L"dir");
  }
  bool remove(const SampleMembers& members) {
    return packed(members).remove(placeOf(disk.path("dir").c_str()), L"dir");
  }
  const SampleMembers whole_ = {{"dir/a", "one"}, {"dir/below/b", "three"}};
  TempDir disk, place;

 private:
  struct timespec start_ {};
  ArchiveOpening opening_;
  std::unique_ptr<PackedFiles> packed_;
};

}  // namespace

TEST_F(PackedFilesTest, ADirectoryIsThereWithAllThatLiesBelowIt) {
  EXPECT_TRUE(holds(whole_));
  EXPECT_FALSE(holds({{"dir/a", "one"}})) << "a directory is missing";
  EXPECT_FALSE(holds({{"dir/a", "one"}, {"dir/below/other", "three"}}));
  EXPECT_FALSE(holds({{"dir/a", "one"}, {"dir/below/b", "four"}})) << "another size";
  EXPECT_FALSE(holds({{"other/a", "one"}}));
}

TEST_F(PackedFilesTest, AnEmptyDirectoryMustBeThereByItself) {
  disk.makeDir("dir/empty");
  EXPECT_FALSE(holds(whole_));
  SampleMembers members = whole_;
  members.push_back({"dir/empty/", ""});
  EXPECT_TRUE(holds(members));
}

TEST_F(PackedFilesTest, WhatTheArchiveHoldsIsRemoved) {
  EXPECT_TRUE(remove(whole_));
  EXPECT_FALSE(disk.exists("dir"));
}

TEST_F(PackedFilesTest, OfADirectoryThatIsntWholeNothingIsRemoved) {
  disk.write("dir/below/later", "x");
  const auto before = contents(disk.path("dir"));
  EXPECT_FALSE(remove(whole_));
  EXPECT_EQ(contents(disk.path("dir")), before);
}

TEST_F(PackedFilesTest, ALinkGoesAndWhatItLeadsToStays) {
  disk.write("target", "text");
  disk.link("../target", "dir/link");
  EXPECT_FALSE(remove(whole_));
  SampleMembers members = whole_;
  members.push_back({"dir/link", ""});
  EXPECT_TRUE(remove(members));
  EXPECT_EQ(disk.read("target"), "text");
}

TEST_F(PackedFilesTest, AFifoIsInNoArchiveAndStays) {
  ASSERT_EQ(mkfifo(disk.path("dir/fifo").c_str(), 0600), 0);
  SampleMembers members = whole_;
  members.push_back({"dir/fifo", ""});
  EXPECT_FALSE(remove(members));
  EXPECT_TRUE(disk.exists("dir/a"));
}

TEST_F(PackedFilesTest, WhatCannotBeRemovedStaysAndIsSaid) {
  const FaultHook fault("unlinkAt", EROFS);
  const auto before = contents(disk.path("dir"));
  EXPECT_FALSE(remove(whole_));
  EXPECT_EQ(contents(disk.path("dir")), before);
}

TEST_F(PackedFilesTest, AFileThatWasChangedSinceTheStartStays) {
  const PackedFiles& files = packed(whole_);
  const struct timespec before = fileTimeNow();
  // The time of a file goes in steps.
  ASSERT_TRUE(waitUntil([&] {
    disk.write("dir/a", "two");
    return statusOf(disk.path("dir/a")).st_ctim.tv_sec > before.tv_sec ||
           statusOf(disk.path("dir/a")).st_ctim.tv_nsec > before.tv_nsec;
  }));
  EXPECT_FALSE(files.remove(placeOf(disk.path("dir").c_str()), L"dir"));
  EXPECT_EQ(disk.read("dir/a"), "two");
}
