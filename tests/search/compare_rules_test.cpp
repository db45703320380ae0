#include "search/compare_rules.h"

#include <gtest/gtest.h>

#include "support/exact_text.h"

namespace {

DosTime at(int hour, int minute, int second, int day = 15) {
  return {static_cast<uint16_t>((2020 - 1980) << 9 | 6 << 5 | day),
          static_cast<uint16_t>(hour << 11 | minute << 5 | second / 2)};
}

class Listing {
 public:
  entry* add(const wchar_t* name, uint64_t size = 10, DosTime words = at(12, 0, 0)) {
    owned_.emplace_back(newEntry(name));
    entry* item = owned_.back().get();
    item->size = size;
    item->date = words.date;
    item->time = words.time;
    item->tagged = 1;  // whatever was tagged before doesn't stay
    all_.push_back(item);
    return item;
  }
  entry* addDirectory(const wchar_t* name) {
    entry* item = add(name);
    item->attributes = Attribute::Directory;
    return item;
  }
  std::span<entry* const> all() const { return all_; }
  std::wstring tagged() const {
    std::wstring names;
    for (const entry* item : all_) {
      if (item->tagged) names += std::wstring(names.empty() ? L"" : L" ") + item->name();
    }
    return names;
  }

 private:
  std::vector<EntryPtr> owned_;
  std::vector<entry*> all_;
};

struct Sides {
  Listing left;
  Listing right;

  void compare(const CompareRules& rules) {
    ComparedNames names = matchNames(left.all(), right.all());
    for (ComparedPair& pair : names.pairs) markByRules(pair, rules);
    tagCompared(left.all(), right.all(), names, rules);
  }
};

}  // namespace

TEST(CompareRules, WithoutAnyRuleNothingIsTagged) {
  Sides sides;
  sides.left.add(L"a", 1);
  sides.right.add(L"a", 2, at(13, 0, 0));
  sides.left.add(L"only");
  sides.right.add(L"other");
  sides.compare({});
  EXPECT_EQ(sides.left.tagged(), L"");
  EXPECT_EQ(sides.right.tagged(), L"");
}

TEST(CompareRules, EachDateRuleTagsItsSide) {
  for (const auto& [rule, left, right] : {std::tuple{DateRule::Ignore, L"", L""},
                                          {DateRule::TagNewer, L"new", L"old"},
                                          {DateRule::TagOlder, L"old", L"new"},
                                          {DateRule::TagDifferent, L"new old", L"new old"}}) {
    Sides sides;
    sides.left.add(L"new", 1, at(12, 1, 0));
    sides.right.add(L"new", 1, at(12, 0, 0));
    sides.left.add(L"old", 1, at(12, 0, 0));
    sides.right.add(L"old", 1, at(12, 1, 0));
    sides.left.add(L"same", 1);
    sides.right.add(L"same", 1);
    sides.compare({.date = rule});
    EXPECT_EQ(sides.left.tagged(), left) << static_cast<int>(rule);
    EXPECT_EQ(sides.right.tagged(), right) << static_cast<int>(rule);
  }
}

TEST(CompareRules, EachSizeRuleTagsItsSide) {
  for (const auto& [rule, left, right] :
       {std::tuple{SizeRule::Ignore, L"", L""},
        {SizeRule::TagLarger, L"large", L"small"},
        {SizeRule::TagSmaller, L"small", L"large"},
        {SizeRule::TagDifferent, L"large small", L"large small"}}) {
    Sides sides;
    sides.left.add(L"large", 5);
    sides.right.add(L"large", 4);
    sides.left.add(L"small", 4);
    sides.right.add(L"small", 5);
    sides.left.add(L"same", 5);
    sides.right.add(L"same", 5);
    sides.compare({.size = rule});
    EXPECT_EQ(sides.left.tagged(), left) << static_cast<int>(rule);
    EXPECT_EQ(sides.right.tagged(), right) << static_cast<int>(rule);
  }
}

TEST(CompareRules, DatesOneStepApartAreOfOneAge) {
  struct Row {
    DosTime left, right;
    bool newer, different;
  };
  for (const Row& row :
       {Row{at(12, 0, 59), at(12, 1, 0), false, false},  // packed they are 3 apart
        Row{at(23, 59, 58, 14), at(0, 0, 0, 15), false, false},
        Row{at(12, 0, 0), at(12, 0, 4), true, false}, Row{at(12, 0, 0), at(12, 0, 6), true, true},
        Row{at(12, 0, 0), at(12, 0, 0), false, false}}) {
    Sides sides;
    sides.left.add(L"f", 1, row.left);
    sides.right.add(L"f", 1, row.right);
    sides.compare({.date = DateRule::TagNewer});
    EXPECT_EQ(sides.right.tagged(), row.newer ? L"f" : L"") << row.right.time;
    EXPECT_EQ(sides.left.tagged(), L"");
    sides.compare({.date = DateRule::TagDifferent});
    EXPECT_EQ(sides.left.tagged(), row.different ? L"f" : L"") << row.right.time;
    EXPECT_EQ(sides.right.tagged(), row.different ? L"f" : L"") << row.right.time;
  }
}

TEST(CompareRules, AFileAgainstADirectoryOfThatNameIsUnmatched) {
  Sides sides;
  sides.left.add(L"file here");
  sides.right.addDirectory(L"file here");
  sides.left.addDirectory(L"file there");
  sides.right.add(L"file there");
  sides.compare({.size = SizeRule::TagDifferent, .unmatched = true});
  EXPECT_EQ(sides.left.tagged(), L"file here");
  EXPECT_EQ(sides.right.tagged(), L"file there");
}

TEST(CompareRules, DescriptionFilesAndDirectoriesAreNeverTagged) {
  Sides sides;
  sides.left.add(L"DESCRIPT.ION");
  sides.right.add(L"descript.ion");
  sides.left.addDirectory(L"folder");
  sides.compare({.unmatched = true});
  EXPECT_EQ(sides.left.tagged() + sides.right.tagged(), L"");
}

TEST(CompareRules, NamesAreComparedExactly) {
  Sides sides;
  sides.left.add(L"Readme");
  sides.right.add(L"README");
  sides.compare({.unmatched = true});
  EXPECT_EQ(sides.left.tagged(), L"Readme");
  EXPECT_EQ(sides.right.tagged(), L"README");
}

TEST(CompareRules, OnlyWhatPassesTheMaskIsTagged) {
  Sides sides;
  for (const wchar_t* name : {L"a.c", L"b.h"}) {
    sides.left.add(name, 1);
    sides.right.add(name, 2);
  }
  sides.left.add(L"only.c");
  sides.left.add(L"only.h");
  sides.compare({.size = SizeRule::TagDifferent, .unmatched = true, .mask = L"*.c"});
  EXPECT_EQ(sides.left.tagged(), L"a.c only.c");
  EXPECT_EQ(sides.right.tagged(), L"a.c");
}

TEST(CompareRules, ContentsDecideUntilBothSidesAreMarked) {
  Sides sides;
  sides.left.add(L"f", 1, at(13, 0, 0));
  sides.right.add(L"f", 2);
  ComparedNames names = matchNames(sides.left.all(), sides.right.all());
  ComparedPair& pair = names.pairs.at(0);
  EXPECT_TRUE(sizesDiffer(pair));
  markByRules(pair, {.date = DateRule::TagNewer});
  EXPECT_TRUE(contentsDecide(pair));
  markByRules(pair, {.size = SizeRule::TagLarger});
  EXPECT_FALSE(contentsDecide(pair));
}

TEST(CompareRules, AHundredThousandNamesAreMatchedInOnePass) {
  Sides sides;
  constexpr int Count = 100000;
  for (int i = 0; i < Count; ++i) {
    sides.left.add(std::to_wstring(i).c_str());
    sides.right.add(std::to_wstring(Count - 1 - i).c_str());
  }
  const ComparedNames names = matchNames(sides.left.all(), sides.right.all());
  EXPECT_EQ(names.pairs.size(), static_cast<size_t>(Count));
  EXPECT_TRUE(names.leftOnly.empty() && names.rightOnly.empty());
}
