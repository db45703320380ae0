#include "panels/commands/panel_sort.h"

#include <algorithm>
#include <random>
#include <vector>

#include "panel_fixture.h"
#include "panels/model/entry_order.h"

namespace {

using Names = std::vector<std::string>;

class PanelSortTest : public PanelTest {
 protected:
  void add(const wchar_t* name, uint64_t size = 0, unsigned char group = SortGroup::File,
           uint16_t date = 0, uint16_t time = 0) {
    EntryPtr item = makeEntry(name, size, group);
    item->date = date;
    item->time = time;
    panel.entries.add(std::move(item));
  }
  Names sorted(int code) {
    panel.sort = code;
    sortEntries(panel);
    return listed(panel);
  }

  Panel panel;
};

}  // namespace

TEST_F(PanelSortTest, GroupsStandInTheirOrder) {
  add(L"file");
  add(L".hidden", 0, SortGroup::HiddenFile);
  add(L"dir", 0, SortGroup::Directory);
  add(L"..", 0, SortGroup::Parent);
  EXPECT_EQ((Names{"..", "dir", ".hidden", "file"}), sorted(SortCode::Name));
  EXPECT_EQ((Names{"..", "dir", ".hidden", "file"}), sorted(SortCode::Name + SortCode::Reverse));
}

TEST_F(PanelSortTest, NamesIgnoreCaseAndUnderscoreComesFirst) {
  add(L"beta");
  add(L"Alpha");
  add(L"_z");
  add(L"ALPHA");
  add(L"!");
  EXPECT_EQ((Names{"_z", "!", "ALPHA", "Alpha", "beta"}), sorted(SortCode::Name));
}

TEST_F(PanelSortTest, ReverseTurnsEachGroupAround) {
  add(L"a");
  add(L"c");
  add(L"b");
  EXPECT_EQ((Names{"c", "b", "a"}), sorted(SortCode::Name + SortCode::Reverse));
}

TEST_F(PanelSortTest, ExtensionIsBehindTheLastDotAndNoneComesFirst) {
  add(L"b.txt");
  add(L"a.tar.gz");
  add(L"plain");
  add(L"a.TXT");
  add(L"c.c");
  EXPECT_EQ((Names{"plain", "c.c", "a.tar.gz", "a.TXT", "b.txt"}), sorted(SortCode::Extension));
  EXPECT_EQ((Names{"b.txt", "a.TXT", "a.tar.gz", "c.c", "plain"}),
            sorted(SortCode::Extension + SortCode::Reverse));
}

TEST_F(PanelSortTest, TimeIsNewestFirstThenByName) {
  add(L"old", 0, SortGroup::File, 10, 5);
  add(L"late", 0, SortGroup::File, 20, 9);
  add(L"b", 0, SortGroup::File, 20, 7);
  add(L"a", 0, SortGroup::File, 20, 7);
  EXPECT_EQ((Names{"late", "a", "b", "old"}), sorted(SortCode::Time));
  EXPECT_EQ((Names{"old", "b", "a", "late"}), sorted(SortCode::Time + SortCode::Reverse));
}

TEST_F(PanelSortTest, SizeIsLargestFirstBeyond32And63Bits) {
  add(L"small", 1);
  add(L"huge", 0xFFFFFFFFFFFFFFFFu);
  add(L"big", 0x100000000u);
  add(L"also", 1);
  EXPECT_EQ((Names{"huge", "big", "also", "small"}), sorted(SortCode::Size));
}

TEST_F(PanelSortTest, ReverseSizeKeepsTheParentFirstAndDirectoriesBeforeFiles) {
  add(L"f1", 10);
  add(L"d1", 5, SortGroup::Directory);
  add(L"f2", 20);
  add(L"..", 0, SortGroup::Parent);
  add(L"d2", 7, SortGroup::Directory);
  EXPECT_EQ((Names{"..", "d1", "d2", "f1", "f2"}), sorted(SortCode::Size + SortCode::Reverse));
  EXPECT_EQ((Names{"..", "d2", "d1", "f2", "f1"}), sorted(SortCode::Size));
}

TEST_F(PanelSortTest, UnsortedKeepsTheOrderOfTheFileSystem) {
  add(L"z");
  add(L"a", 0, SortGroup::Directory);
  add(L"m");
  EXPECT_EQ((Names{"z", "a", "m"}), sorted(SortCode::Unsorted));
  EXPECT_EQ((Names{"z", "a", "m"}), sorted(SortCode::Unsorted + SortCode::Reverse));
}

TEST_F(PanelSortTest, EqualNamesKeepTheirOrder) {
  add(L"same", 1);
  add(L"same", 2);
  add(L"same", 3);
  sorted(SortCode::Name);
  EXPECT_EQ(1u, panel.entries[0]->size);
  EXPECT_EQ(3u, panel.entries[2]->size);
}

TEST_F(PanelSortTest, ReverseCodesComeAndGo) {
  for (int code = 0; code < 5; ++code) {
    EXPECT_EQ(code + 5, reversedSort(code));
    EXPECT_EQ(code, reversedSort(code + 5));
  }
}

// The keys that make it fast must not show: the order is that of compareEntries.
TEST_F(PanelSortTest, EveryCodeAgreesWithThePlainCompare) {
  std::mt19937 random(4711);
  const wchar_t letters[] = {L'a',  L'A', L'b', L'_', L'.',   L'1',    L'z', 0x100,
                             0x15F, 0xE9, -61,  -1,   0x4E00, 0x1F600, L'-', L'~'};
  const unsigned char groups[] = {SortGroup::Directory, SortGroup::HiddenFile, SortGroup::File};
  for (int i = 0; i < 3000; ++i) {
    std::wstring name = i % 3 == 0 ? L"a common prefix of names " : L"";
    for (unsigned n = 1 + random() % 12; n > 0; --n) name += letters[random() % std::size(letters)];
    add(name.c_str(), random() % 5, groups[random() % 3], static_cast<uint16_t>(random() % 3),
        static_cast<uint16_t>(random() % 3));
  }
  for (int code = 0; code < 10; ++code) {
    std::shuffle(panel.entries.begin(), panel.entries.end(), random);
    std::vector<entry*> expected(panel.entries.begin(), panel.entries.end());
    std::stable_sort(expected.begin(), expected.end(), [code](const entry* a, const entry* b) {
      return compareEntries(a, b, code) < 0;
    });
    panel.sort = code;
    sortEntries(panel);
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), panel.entries.begin())) << code;
  }
}

TEST_F(PanelSortTest, CompareIsAnOrderForEveryCode) {
  const wchar_t* names[] = {L"a",  L"A",  L"a\u0100b", L"a\u0100c", L"a\u0100",  L"a_", L"_",
                            L".a", L"a.", L"a.b",      L"A.B",      L"b.\u0100", L"b."};
  for (const wchar_t* name : names) add(name);
  for (int code = 0; code < 10; ++code) {
    for (const entry* a : panel.entries) {
      for (const entry* b : panel.entries) {
        const int ab = compareEntries(a, b, code);
        const int ba = compareEntries(b, a, code);
        EXPECT_EQ(ab > 0, ba < 0) << code;
        for (const entry* c : panel.entries) {
          if (ab < 0 && compareEntries(b, c, code) < 0) {
            EXPECT_LT(compareEntries(a, c, code), 0);
          }
        }
      }
    }
  }
}

TEST_F(PanelSortTest, SetSortKeepsTheCursorOnItsNameAndStoresTheCode) {
  fill(left(), {"a", "b", "c", "d"});
  left().cursor = 1;
  setSort(left(), SortCode::Name + SortCode::Reverse);
  EXPECT_EQ("b", currentName(left()));
  EXPECT_EQ(2, left().currentIndex());
  EXPECT_EQ(SortCode::Name + SortCode::Reverse, GlobalOptions::LeftSort);
  fill(right(), {"a"});
  setSort(right(), SortCode::Size);
  EXPECT_EQ(SortCode::Size, GlobalOptions::RightSort);
  EXPECT_EQ(SortCode::Name + SortCode::Reverse, GlobalOptions::LeftSort);
}

TEST_F(PanelSortTest, SetSortOfATemporaryPanelStoresNoOption) {
  fill(panel, {"b", "a"});
  setSort(panel, SortCode::Extension);
  EXPECT_EQ(SortCode::Name, GlobalOptions::LeftSort);
  EXPECT_EQ(SortCode::Name, GlobalOptions::RightSort);
  EXPECT_EQ((Names{"a", "b"}), listed(panel));
}

TEST_F(PanelSortTest, SetSortOfATreeStoresTheCodeOnly) {
  fill(left(), {"b", "a"});
  left().style = PanelStyle::Tree;
  setSort(left(), SortCode::Name);
  EXPECT_EQ((Names{"b", "a"}), listed(left()));
}

TEST_F(PanelSortTest, UnsortedReadsAgainAndKeepsTags) {
  TempDir dir;
  for (const char* name : {"one", "two", "three"}) dir.write(name, "x");
  left().path = left().lastPath = dir.wide();
  setSort(left(), SortCode::Unsorted);
  ASSERT_EQ(4, left().count());
  const Names order = listed(left());
  entryNamed(left(), "two")->tagged = 1;
  setSort(left(), SortCode::Name);
  EXPECT_EQ((Names{"..", "one", "three", "two"}), listed(left()));
  setSort(left(), SortCode::Unsorted);
  EXPECT_EQ(order, listed(left()));
  EXPECT_EQ((Names{"two"}), taggedNames(left()));
}
