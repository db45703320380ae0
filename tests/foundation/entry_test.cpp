#include "foundation/entry.h"

#include <gtest/gtest.h>

#include <cwchar>

#include "foundation/names.h"

namespace {

TEST(Entry, ANewOneIsBlankAndItsTotalIsUnset) {
  const EntryPtr item(newEntry(L"name"));
  EXPECT_TRUE(sameName(item->name(), L"name"));
  EXPECT_EQ(item->size, 0u);
  EXPECT_EQ(item->total, -1);
  EXPECT_EQ(item->attributes, 0);
  EXPECT_EQ(item->tagged, 0);
}

TEST(Entry, HasRoomForANameOfTheLengthAskedFor) {
  for (const int length : {0, 1, 20, 255}) {
    const EntryPtr item(newEntry(length));
    const std::wstring name(static_cast<size_t>(length), L'n');
    wcscpy(item->name(), name.c_str());
    item->size = 7;
    EXPECT_EQ(item->name(), name);
    const EntryPtr copy(copyEntry(item.get()));
    EXPECT_EQ(copy->name(), name);
  }
}

TEST(Entry, ACopyHoldsEverything) {
  const EntryPtr item(newEntry(L"..name"));
  item->size = 1ull << 40;
  item->total = 7;
  item->owner = 3000000000u;
  item->group = 70000;
  item->attributes = Attribute::Hidden | Attribute::Link;
  item->tagged = 1;
  item->sortGroup = SortGroup::File;
  const EntryPtr copy(copyEntry(item.get()));
  EXPECT_TRUE(sameName(copy->name(), L"..name"));
  EXPECT_EQ(copy->size, 1ull << 40);
  EXPECT_EQ(copy->total, 7);
  EXPECT_EQ(copy->owner, 3000000000u);
  EXPECT_EQ(copy->group, 70000u);
  EXPECT_TRUE(copy->isHidden());
  EXPECT_TRUE(copy->isLink());
  EXPECT_FALSE(copy->isDirectory());
  EXPECT_EQ(copy->tagged, 1);
  EXPECT_EQ(copy->sortGroup, SortGroup::File);
}

TEST(Entry, RoomForANameIsTerminatedAtBothEnds) {
  const EntryPtr item(newEntry(300));
  EXPECT_EQ(item->name()[0], 0);
  EXPECT_EQ(item->name()[300], 0);
  const EntryPtr empty(newEntry(L""));
  EXPECT_EQ(empty->name()[0], 0);
}

TEST(Entry, AStoreFreesWhatItHolds) {
  EntryStore store;
  store.add(newEntry(L"a"));
  store.add(newEntry(L"b"));
  EXPECT_EQ(store.count(), 2);
  store.clear();
  EXPECT_EQ(store.count(), 0);
  store.add(newEntry(L"c"));
}

}  // namespace
