#include "archive/archive_entry_store.h"

#include <gtest/gtest.h>

#include "archive/archive_fixture.h"
#include "support/fault_hook.h"

namespace {

class ArchiveEntryStoreTest : public testing::Test {
 protected:
  ArchiveEntryStore& open(const std::string& name, const std::string& bytes) {
    opening_ = opened(place, name, bytes);
    EXPECT_NE(opening_.archive, nullptr);
    return *opening_.archive;
  }
  ArchiveEntryStore& openZip(const SampleMembers& members) {
    return open("file.zip", zipArchive(members));
  }

  TempDir place;

 private:
  ArchiveOpening opening_;
};

TEST_F(ArchiveEntryStoreTest, AnArchiveOfOneDeepFileShowsEachDirectoryAbove) {
  ArchiveEntryStore& archive = openZip({{"a/b/c.txt", "text"}});
  EXPECT_EQ(listing(archive, L""), (Names{"a/"}));
  EXPECT_EQ(listing(archive, L"a"), (Names{"../", "b/"}));
  EXPECT_EQ(listing(archive, L"a/b"), (Names{"../", "c.txt"}));
  entry* item = nullptr;
  ASSERT_EQ(archive.first(L"", item), 0);
  EXPECT_EQ(item->date, SampleWords.date);
  EXPECT_EQ(item->time, SampleWords.time);
  EXPECT_EQ(item->size, 0u);
  EXPECT_EQ(item->total, -1);
  freeEntry(item);
}

TEST_F(ArchiveEntryStoreTest, UpHasTheDateOfTheArchiveFile) {
  ArchiveEntryStore& archive = openZip({{"a/b", ""}});
  const DosTime now = timeToDos(archive.file().modified.tv_sec);
  entry* item = nullptr;
  ASSERT_EQ(archive.first(L"a", item), 0);
  EXPECT_EQ(utf8(item->name()), "..");
  EXPECT_EQ(item->date, now.date);
  EXPECT_EQ(item->time, now.time);
  freeEntry(item);
}

TEST_F(ArchiveEntryStoreTest, ADirectoryThatIsntHeldIsNone) {
  ArchiveEntryStore& archive = openZip({{"a/b", ""}, {"c", ""}});
  entry* item = nullptr;
  EXPECT_EQ(archive.first(L"b", item), Status::EndOfFile);
  EXPECT_EQ(item, nullptr);
  EXPECT_EQ(archive.first(L"c", item), Status::EndOfFile) << "a file";
  EXPECT_EQ(archive.first(L"A", item), Status::EndOfFile) << "names are exact";
  EXPECT_EQ(archive.next(item), Status::NoMoreFiles);
}

TEST_F(ArchiveEntryStoreTest, AnEmptyDirectoryHasTheWayUpOnly) {
  ArchiveEntryStore& archive = openZip({{"empty/", ""}});
  EXPECT_EQ(listing(archive, L""), (Names{"empty/"}));
  EXPECT_EQ(listing(archive, L"empty"), (Names{"../"}));
}

TEST_F(ArchiveEntryStoreTest, AnEmptyZipOpensAndListsNothing) {
  ArchiveEntryStore& archive = openZip({});
  EXPECT_EQ(listing(archive, L""), Names{});
  EXPECT_EQ(archive.type(), ArchiveType::Zip);
}

TEST_F(ArchiveEntryStoreTest, NeighboursThatSortAroundASlashDontMix) {
  ArchiveEntryStore& archive =
      openZip({{"a-b/1", ""}, {"a/2", ""}, {"a b/3", ""}, {"a.b/4", ""}, {"a/c/5", ""}});
  EXPECT_EQ(listing(archive, L""), (Names{"a/", "a b/", "a-b/", "a.b/"}));
  EXPECT_EQ(listing(archive, L"a"), (Names{"../", "2", "c/"}));
  EXPECT_EQ(listing(archive, L"a b"), (Names{"../", "3"}));
}

TEST_F(ArchiveEntryStoreTest, FilesStandByNameWithoutRegardToCase) {
  ArchiveEntryStore& archive = openZip({{"beta", ""}, {"Alpha", ""}, {"alpha", ""}, {"Gamma", ""}});
  EXPECT_EQ(listing(archive, L""), (Names{"Alpha", "alpha", "beta", "Gamma"}));
}

TEST_F(ArchiveEntryStoreTest, OfEqualNamesTheLastIsListedAndAllAreCounted) {
  ArchiveEntryStore& archive = openZip({{"x", "1"}, {"y", ""}, {"x", "four"}});
  entry* item = nullptr;
  ASSERT_EQ(archive.first(L"", item), 0);
  EXPECT_EQ(utf8(item->name()), "x");
  EXPECT_EQ(item->size, 4u);
  freeEntry(item);
  EXPECT_EQ(listing(archive, L""), (Names{"x", "y"}));
  EXPECT_EQ(archive.facts().size, 5u);
}

TEST_F(ArchiveEntryStoreTest, AFileAndADirectoryOfOneNameAreBothListed) {
  ArchiveEntryStore& archive = openZip({{"a", "1"}, {"a/b", ""}});
  EXPECT_EQ(listing(archive, L""), (Names{"a", "a/"}));
}

TEST_F(ArchiveEntryStoreTest, MembersHaveNoModeAndNoOwner) {
  ArchiveEntryStore& archive = openZip({{"a", "1"}});
  entry* item = nullptr;
  ASSERT_EQ(archive.first(L"", item), 0);
  EXPECT_EQ(item->mode, 0);
  EXPECT_EQ(item->owner, 0u);
  EXPECT_EQ(item->group, 0u);
  EXPECT_EQ(item->total, -1);
  freeEntry(item);
}

TEST_F(ArchiveEntryStoreTest, FactsHaveTheFormatAndBothSums) {
  ArchiveEntryStore& archive =
      open("file.tar",
           tarArchive({{"a", "12345"}, {"b", std::string(600, 'x')}}, HeaderForm::Published));
  const ArchiveFacts facts = archive.facts();
  EXPECT_EQ(facts.size, 605u);
  EXPECT_EQ(facts.packed, 512u + 512 + 512 + 1024);
  EXPECT_EQ(utf8(facts.type), "TAR");
}

TEST_F(ArchiveEntryStoreTest, SumsStopAtTheLargestNumber) {
  ArchiveEntryStore& archive = open(
      "file.rar", rar4Archive({{"d/a", "", uint64_t{1} << 63}, {"d/b", "", 1}}, HeaderForm::Wide));
  EXPECT_EQ(archive.facts().size, static_cast<uint64_t>(INT64_MAX));
  EXPECT_EQ(archive.records().sizeBelow(L"d"), static_cast<uint64_t>(INT64_MAX));
}

TEST_F(ArchiveEntryStoreTest, ADirectorysSizeIsThatOfAllBelow) {
  ArchiveEntryStore& archive =
      openZip({{"a/1", "1"}, {"a/b/2", "22"}, {"a/b/c/3", "333"}, {"ab/4", "4444"}});
  EXPECT_EQ(archive.records().sizeBelow(L"a"), 6u);
  EXPECT_EQ(archive.records().sizeBelow(L"a/b"), 5u);
  EXPECT_EQ(archive.records().sizeBelow(L""), 10u);
  EXPECT_EQ(archive.records().sizeBelow(L"b"), 0u);
}

TEST_F(ArchiveEntryStoreTest, WhatLiesBelowADirectoryIsCounted) {
  const ArchiveEntryStore& archive = openZip({{"a/b/c/one", "1"},
                                              {"a/b/two", "22"},
                                              {"a/b/two", "22"},
                                              {"a/x/", ""},
                                              {"a-b/three", "333"},
                                              {"four", "4444"}});
  const struct {
    const wchar_t* directory;
    uint64_t directories, files, bytes;
  } table[] = {{L"", 5, 4, 12},   {L"a", 3, 2, 5},   {L"a/b", 1, 2, 5}, {L"a/b/c", 0, 1, 1},
               {L"a/x", 0, 0, 0}, {L"a-b", 0, 1, 3}, {L"none", 0, 0, 0}};
  for (const auto& row : table) {
    const ArchiveCount count = archive.countBelow(row.directory);
    EXPECT_EQ(count.directories, row.directories) << utf8(row.directory);
    EXPECT_EQ(count.files, row.files) << utf8(row.directory);
    EXPECT_EQ(count.bytes, row.bytes) << utf8(row.directory);
  }
}

TEST_F(ArchiveEntryStoreTest, AFileIsFoundByItsExactPath) {
  const ArchiveEntryStore& archive =
      openZip({{"a/one", "1"}, {"a/one", "22"}, {"a/ONE", "333"}, {"top", "4444"}, {"dir/", ""}});
  const struct {
    const wchar_t* path;
    int64_t size;  // -1 for none
  } table[] = {{L"a/one", 2}, {L"a/ONE", 3}, {L"a/One", -1}, {L"top", 4},   {L"a", -1},
               {L"dir", -1},  {L"dir/", -1}, {L"", -1},      {L"b/one", -1}};
  for (const auto& row : table) {
    const ArchiveRecord* found = archive.fileOf(row.path);
    EXPECT_EQ(found ? static_cast<int64_t>(found->size) : -1, row.size) << utf8(row.path);
  }
}

TEST_F(ArchiveEntryStoreTest, EachDirectoryIsVisitedOnceBehindItsParent) {
  const ArchiveEntryStore& archive = openZip({{"a/b/c/one", ""},
                                              {"a/b/two", ""},
                                              {"a/x/", ""},
                                              {"a-b/three", ""},
                                              {"a/b2/f", ""},
                                              {"f", ""}});
  Names visited;
  archive.forEachDirectory([&](const Westring& path) { visited.push_back(utf8(path)); });
  EXPECT_EQ(visited, (Names{"a", "a/b", "a/b/c", "a/b2", "a/x", "a-b"}));
}

TEST_F(ArchiveEntryStoreTest, DotSlashIsKnownOfTheEntryThatItStoodBefore) {
  ArchiveEntryStore& archive = openZip({{"./a", ""}, {"b", ""}, {"./d/e", ""}});
  entry* item = nullptr;
  ASSERT_EQ(archive.first(L"", item), 0);
  freeEntry(item);
  EXPECT_TRUE(archive.dotSlash());
  ASSERT_EQ(archive.next(item), 0);
  freeEntry(item);
  EXPECT_FALSE(archive.dotSlash());
  ASSERT_EQ(archive.next(item), 0);
  EXPECT_EQ(utf8(item->name()), "d");
  freeEntry(item);
  EXPECT_TRUE(archive.dotSlash());
}

TEST_F(ArchiveEntryStoreTest, OnlyRegularFilesAreOpened) {
  ASSERT_EQ(mkfifo(place.path("pipe").c_str(), 0600), 0);
  ArchiveWatcher nobody;
  EXPECT_EQ(openArchiveFile(L"/pipe", place.wide("pipe"), nobody).archive, nullptr);
  EXPECT_EQ(openArchiveFile(L"/dir", place.wide(), nobody).archive, nullptr);
  EXPECT_EQ(openArchiveFile(L"/none", place.wide("none"), nobody).archive, nullptr);
}

TEST_F(ArchiveEntryStoreTest, WhatTheFileWasIsKept) {
  ArchiveEntryStore& archive = openZip({{"a", ""}});
  struct stat info {};
  ASSERT_EQ(stat(place.path("file.zip").c_str(), &info), 0);
  EXPECT_TRUE(archive.file() == FileStamp::of(info));
}

TEST_F(ArchiveEntryStoreTest, AnotherContentMakesItOutOfDate) {
  ArchiveEntryStore& archive = openZip({{"a", ""}});
  EXPECT_TRUE(archive.isCurrent());
  place.write("file.zip", zipArchive({{"a", ""}, {"b", ""}}));
  EXPECT_FALSE(archive.isCurrent());
  std::filesystem::remove(place.path("file.zip"));
  EXPECT_FALSE(archive.isCurrent());
}

TEST_F(ArchiveEntryStoreTest, AStoppedReadingIsNoArchiveAndSaysSo) {
  struct Stopping : ArchiveWatcher {
    bool stopped() override { return true; }
  };
  SampleMembers many;
  for (int i = 0; i < 3000; ++i) many.push_back({"name" + std::to_string(i), ""});
  place.write("many.zip", zipArchive(many));
  Stopping watcher;
  const Westring path = place.wide("many.zip");
  const ArchiveOpening opening = openArchiveFile(path, path, watcher);
  EXPECT_EQ(opening.archive, nullptr);
  EXPECT_TRUE(opening.stopped);
  EXPECT_TRUE(opening.messages.empty());
}

TEST_F(ArchiveEntryStoreTest, AnErrorOfTheDiskIsToldAsDamage) {
  SampleMembers members;
  for (int i = 0; i < 200; ++i)
    members.push_back({"n" + std::to_string(i), std::string(9000, 'x')});
  place.write("file.tar", tarArchive(members, HeaderForm::Published));
  int reads = 0;
  System::setHook(
      [](const char* call, const char*, void* context) {
        auto& count = *static_cast<int*>(context);
        return std::string(call) == "readAt" && ++count > 2 ? EIO : 0;
      },
      &reads);
  ArchiveWatcher nobody;
  const ArchiveOpening opening = openArchiveFile(L"/file.tar", place.wide("file.tar"), nobody);
  System::setHook(nullptr, nullptr);
  ASSERT_NE(opening.archive, nullptr);
  EXPECT_LT(opening.archive->records().count(), 200u);
  EXPECT_GT(opening.archive->records().count(), 0u);
  ASSERT_EQ(opening.messages.size(), 1u);
  EXPECT_EQ(utf8(opening.messages[0].text()), "Archive is damaged");
}

TEST_F(ArchiveEntryStoreTest, AFlatArchiveOfManyDirectoriesIsListedWithoutLookingAtEachPair) {
  SampleMembers members;
  constexpr int Count = 100000;
  for (int i = 0; i < Count; ++i) members.push_back({"d" + std::to_string(i) + "/", ""});
  ArchiveEntryStore& archive = open("file.zip", zipArchive(members));
  EXPECT_EQ(listing(archive, L"").size(), static_cast<size_t>(Count));
  EXPECT_EQ(listing(archive, L"d777"), (Names{"../"}));
}

TEST_F(ArchiveEntryStoreTest, TwoThousandLevelsAreWalkedToTheBottom) {
  std::string path;
  constexpr int Levels = 2000;
  SampleMembers members;
  for (int i = 0; i < Levels; ++i) {
    path += "d/";
    members.push_back({path, ""});
  }
  ArchiveEntryStore& archive = open("file.zip", zipArchive(members));
  std::string inner = "d";
  for (int i = 1; i < Levels; ++i) {
    ASSERT_EQ(listing(archive, decodeFileName(inner.c_str())), (Names{"../", "d/"}));
    inner += "/d";
  }
  EXPECT_EQ(listing(archive, decodeFileName(inner.c_str())), (Names{"../"}));
}

}  // namespace
