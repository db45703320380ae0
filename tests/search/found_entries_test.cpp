#include "search/found_entries.h"

#include <gtest/gtest.h>

#include "support/exact_text.h"

namespace {

FoundFile fileOf(const std::string& path, off_t size = 10, ino_t inode = 7) {
  FoundFile file;
  file.path = path;
  file.info.st_mode = S_IFREG | 0644;
  file.info.st_size = size;
  file.info.st_ino = inode;
  return file;
}

}  // namespace

TEST(FoundEntries, ARowTellsWhatWasFound) {
  FFEntryStore store;
  FoundFile file = fileOf("/a/.hidden", 5, 99);
  file.position = 42;
  EXPECT_TRUE(store.add(file));
  const FoundRow row = store.row(0);
  ASSERT_TRUE(row.valid());
  EXPECT_EQ(exact(row.path()), L"/a/.hidden");
  EXPECT_EQ(row.item->size, 5u);
  EXPECT_EQ(row.item->total, 42);
  EXPECT_TRUE(row.item->isHidden());
  EXPECT_EQ(row.id.inode, 99u);
  EXPECT_FALSE(store.row(1).valid());
  EXPECT_FALSE(store.row(-1).valid());
}

TEST(FoundEntries, TheSumFollowsWhatComesAndGoes) {
  FFEntryStore store;
  for (int i = 0; i < 10; ++i) store.add(fileOf("/f" + std::to_string(i), i));
  EXPECT_EQ(store.bytes(), 45u);
  store.remove(9, L"/f9");
  EXPECT_EQ(store.bytes(), 36u);
  struct stat info = fileOf("", 100).info;
  store.update(0, L"/f0", info);
  EXPECT_EQ(store.bytes(), 136u);
  store.removeIf([](const entry* item) { return item->size == 100; });
  EXPECT_EQ(store.bytes(), 36u);
  EXPECT_EQ(store.count(), 8);
  store.removeAll();
  EXPECT_EQ(store.count(), 0);
  EXPECT_EQ(store.bytes(), 0u);
}

TEST(FoundEntries, SizesThatLieStayBelowTheLimit) {
  FFEntryStore store;
  for (int i = 0; i < 3; ++i) store.add(fileOf("/f", INT64_MAX));
  EXPECT_EQ(store.bytes(), static_cast<uint64_t>(INT64_MAX));
}

TEST(FoundEntries, ARowThatHasMovedIsNotTakenOff) {
  FFEntryStore store;
  store.add(fileOf("/a"));
  store.add(fileOf("/b"));
  store.remove(0, L"/b");
  EXPECT_EQ(store.count(), 2);
  store.remove(1, L"/b");
  EXPECT_EQ(store.count(), 1);
  EXPECT_EQ(exact(store.row(0).path()), L"/a");
}

TEST(FoundEntries, AFullPoolTakesNothingMore) {
  FFEntryStore store(1000);
  int taken = 0;
  while (store.add(fileOf("/some/path"))) ++taken;
  EXPECT_GT(taken, 1);
  EXPECT_EQ(store.count(), taken);
}

TEST(FoundEntries, ManyAreTakenOffInOnePass) {
  FFEntryStore store;
  constexpr int Count = 200000;
  for (int i = 0; i < Count; ++i) store.add(fileOf("/f" + std::to_string(i), i));
  ASSERT_EQ(store.count(), Count);
  store.removeIf([](const entry* item) { return item->size % 2 == 0; });
  EXPECT_EQ(store.count(), Count / 2);
  EXPECT_EQ(exact(store.row(Count / 2 - 1).path()), L"/f199999");
}
