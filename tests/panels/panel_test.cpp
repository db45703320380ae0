#include "panels/model/panel.h"

#include <string>

#include "panel_fixture.h"
#include "support/fault_hook.h"

TEST(EntryListTest, HoldsTheStartCapacityWithoutGrowing) {
  EntryList list;
  for (int i = 0; i < EntryList::StartCapacity; ++i) list.add(makeEntry(L"x"));
  EXPECT_EQ(4096, list.capacity());
  list.add(makeEntry(L"y"));
  EXPECT_EQ(8192, list.capacity());
  EXPECT_EQ(4097, list.count());
  EXPECT_STREQ(L"y", list[4096]->name());
}

TEST(EntryListTest, InsertsInFrontAlsoWhenFull) {
  EntryList list;
  for (int i = 0; i < EntryList::StartCapacity; ++i) list.add(makeEntry(L"x"));
  list.insertFirst(makeEntry(L".."));
  EXPECT_STREQ(L"..", list[0]->name());
  EXPECT_STREQ(L"x", list[4096]->name());
  EXPECT_EQ(4097, list.count());
}

TEST(EntryListTest, GivesAnEntryAwayAndClearsTheRest) {
  EntryList list;
  list.add(makeEntry(L"a"));
  list.add(makeEntry(L"b"));
  const EntryPtr taken = list.take(0);
  list.clear();
  EXPECT_STREQ(L"a", taken->name());
  EXPECT_EQ(0, list.count());
}

TEST(EntryListTest, ExchangesItsContents) {
  EntryList one;
  EntryList two;
  one.add(makeEntry(L"a"));
  one.swap(two);
  EXPECT_EQ(0, one.count());
  EXPECT_STREQ(L"a", two[0]->name());
}

TEST(LinkTargetCache, ReadsEachLinkOncePerRead) {
  TempDir dir;
  dir.link("somewhere", "link");
  CLinkTargetCache cache;
  FaultHook counter;
  EXPECT_EQ("somewhere", bytes(cache.targetOf(dir.wide("link"))));
  const int calls = counter.calls("readlink");
  EXPECT_GT(calls, 0);
  EXPECT_EQ("somewhere", bytes(cache.targetOf(dir.wide("link"))));
  EXPECT_EQ(calls, counter.calls("readlink"));
}

TEST(LinkTargetCache, TellsPathsApartThatDifferInCase) {
  TempDir dir;
  dir.link("upper", "LINK");
  dir.link("lower", "link");
  CLinkTargetCache cache;
  EXPECT_EQ("upper", bytes(cache.targetOf(dir.wide("LINK"))));
  EXPECT_EQ("lower", bytes(cache.targetOf(dir.wide("link"))));
}

TEST(LinkTargetCache, HasNothingToTellOfWhatIsNoLink) {
  CLinkTargetCache cache;
  EXPECT_EQ("", bytes(cache.targetOf(L"/")));
}

TEST(SubdirectoryNames, KeepNamesThatDifferInCase) {
  Panel panel;
  EXPECT_EQ(1, panel.subdirectories->addCopy(L"Foo"));
  EXPECT_EQ(1, panel.subdirectories->addCopy(L"foo"));
  EXPECT_EQ(2, panel.subdirectories->count());
}
