#include "editor/text/file_status_store.h"

#include <gtest/gtest.h>

#include "editor/text/search_values.h"
#include "foundation/path_info.h"

namespace {

constexpr size_t Megabyte = size_t{1} << 20;

StoredUndoItem stepOf(size_t bytes) {
  StoredUndoItem item;
  item.text.assign(bytes, 'x');
  return item;
}

size_t stepBytes(const FileStatusStore& store) {
  size_t total = 0;
  for (long i = 0; i < store.count(); ++i) total += store.peek(i)->steps.bytes();
  return total;
}

TEST(FileStatusStore, ANewRecordForcesNothing) {
  FileStatusStore store;
  EXPECT_EQ(store.find(L"/a"), nullptr);
  const HISTREC& record = store.record(L"/a");
  EXPECT_STREQ(record.name.data(), L"/a");
  EXPECT_EQ(record.topLine, 0);
  EXPECT_EQ(record.viewerPosition, HISTREC::Unset);
  EXPECT_EQ(record.format, TextFormat::Undetermined);
  for (const TextPlace& place : record.bookmarks) EXPECT_EQ(place.index, HISTREC::Unset);
  EXPECT_TRUE(record.steps.empty());
}

TEST(FileStatusStore, ARecordIsFoundAgain) {
  FileStatusStore store;
  store.record(L"/a").viewerPosition = int64_t{1} << 40;
  store.record(L"/b");
  ASSERT_NE(store.find(L"/a"), nullptr);
  EXPECT_EQ(store.find(L"/a")->viewerPosition, int64_t{1} << 40);
  EXPECT_EQ(&store.record(L"/a"), store.find(L"/a"));
  EXPECT_EQ(store.count(), 2);
}

TEST(FileStatusStore, CaseAndRawBytesTellNamesApart) {
  FileStatusStore store;
  store.record(L"/Name");
  const wchar_t raw[] = {L'/', wchar_t(-1), 0};
  store.record(raw);
  EXPECT_EQ(store.find(L"/name"), nullptr);
  EXPECT_NE(store.find(raw), nullptr);
  EXPECT_EQ(store.count(), 2);
}

TEST(FileStatusStore, ARelativeNameCountsFromTheWorkingDirectory) {
  const Westring here = currentDir();
  EXPECT_STREQ(FileStatusStore::keyOfPath(L"../x").data(), (here + L"/../x").data());
  EXPECT_STREQ(FileStatusStore::keyOfPath(L"/a/../x").data(), L"/a/../x");
}

TEST(FileStatusStore, TheRecordUsedLongestAgoGoesFirst) {
  FileStatusStore store;
  for (int i = 0; i < FileStatusStore::MostRecords; ++i) {
    store.record(Westring((L"/" + std::to_wstring(i)).c_str()));
  }
  store.record(L"/0");
  store.record(L"/another");
  EXPECT_EQ(store.count(), FileStatusStore::MostRecords);
  EXPECT_NE(store.find(L"/0"), nullptr);
  EXPECT_NE(store.find(L"/another"), nullptr);
  EXPECT_EQ(store.find(L"/1"), nullptr);
}

TEST(FileStatusStore, StepsOfOtherFilesGoFirstAndTheirRecordsStay) {
  FileStatusStore store;
  for (const wchar_t* name : {L"/old", L"/middle", L"/new"}) {
    HISTREC& record = store.record(name);
    record.steps.undo.push_back(stepOf(30 * Megabyte));
    store.stored(record);
  }
  EXPECT_LE(stepBytes(store), FileStatusStore::MostStepBytes);
  EXPECT_TRUE(store.find(L"/old")->steps.empty());
  EXPECT_FALSE(store.find(L"/middle")->steps.empty());
  EXPECT_FALSE(store.find(L"/new")->steps.empty());
}

TEST(FileStatusStore, OfOneFileTheOldestStepsGoFirst) {
  FileStatusStore store;
  HISTREC& record = store.record(L"/large");
  for (int i = 0; i < 7; ++i) {
    record.steps.undo.push_back(stepOf(10 * Megabyte));
    record.steps.undo.back().group = i;
  }
  record.steps.redo.push_back(stepOf(Megabyte));
  store.stored(record);
  EXPECT_LE(stepBytes(store), FileStatusStore::MostStepBytes);
  ASSERT_EQ(record.steps.undo.size(), 6u);
  EXPECT_EQ(record.steps.undo.front().group, 1);
  EXPECT_EQ(record.steps.redo.size(), 1u);
}

TEST(FileStatusStore, AStepThatIsTooLargeByItselfIsNotKept) {
  FileStatusStore store;
  HISTREC& record = store.record(L"/large");
  record.steps.redo.push_back(stepOf(FileStatusStore::MostStepBytes + 1));
  store.stored(record);
  EXPECT_TRUE(record.steps.empty());
}

TEST(FileStatusStore, ThereIsOneForTheRun) {
  EXPECT_EQ(&fileStatusStore(), &fileStatusStore());
  EXPECT_FALSE(searchValues().caseSensitive);
  searchValues().wholeWord = true;
  EXPECT_TRUE(searchValues().wholeWord);
  searchValues() = {};
}

}  // namespace
