#include "archive/member_name.h"

#include <gtest/gtest.h>

#include "archive/archive_fixture.h"

namespace {

struct StoredName {
  std::string stored;
  bool shown;
  std::string directory;
  std::string name;
  bool dotSlash = false;
  bool exact = true;
};

TEST(MemberName, PathsAreSplitOrRefused) {
  const StoredName rows[] = {
      {"a", true, "", "a"},
      {"a/b/c", true, "a/b", "c"},
      {"a/b/", true, "a/b", ""},
      {"a\\b", true, "a", "b", false, false},
      {"./a", true, "", "a", true},
      {"./a/b", true, "a", "b", true},
      {"./", true, "", "", true},
      {"/etc/passwd", true, "etc", "passwd", false, false},
      {"//host/x", true, "host", "x", false, false},
      {"...", true, "", "..."},
      {"..a/.b", true, "..a", ".b"},
      {"C:\\x", true, "C:", "x", false, false},
      {"..", false, "", ""},
      {"../a", false, "", ""},
      {"a/../b", false, "a", ""},
      {"a/b/..", false, "a/b", ""},
      {"a\\..\\b", false, "a", ""},
      {"/..", false, "", ""},
      {"a/./b", false, "a", ""},
      {"././a", false, "", ""},
      {".", false, "", ""},
      {"a//b", false, "a", ""},
      {"a/b//", false, "a/b", ""},
      {"", false, "", ""},
      {std::string("a\0b", 3), false, "", ""},
      {std::string(4096, 'n'), true, "", std::string(4096, 'n')},
      {std::string(4097, 'n'), false, "", ""},
      {std::string(1 << 20, 'n'), false, "", ""},
  };
  for (const StoredName& row : rows) {
    SCOPED_TRACE(row.stored.substr(0, 40));
    MemberName name;
    ArchiveMember member;
    member.name = row.stored;
    ASSERT_EQ(name.take(member), row.shown);
    EXPECT_EQ(utf8(name.directory()), row.directory);
    if (!row.shown) continue;
    EXPECT_EQ(utf8(name.name()), row.name);
    EXPECT_EQ(name.dotSlash(), row.dotSlash);
    EXPECT_EQ(name.isExact(), row.exact);
  }
}

TEST(MemberName, BytesThatAreNoUtf8StayAsTheyAre) {
  MemberName name;
  ArchiveMember member;
  member.name = "a\xE4/\xC3\xBC";
  ASSERT_TRUE(name.take(member));
  EXPECT_EQ(utf8(name.directory()), "a\xE4");
  EXPECT_EQ(utf8(name.name()), "\xC3\xBC");
  EXPECT_TRUE(name.isExact());
}

TEST(MemberName, TheFirstPackersPageIsDecodedAndKnownAsInexact) {
  MemberName name;
  ArchiveMember member;
  member.name = "\x81.txt";
  member.form = NameForm::Page437;
  ASSERT_TRUE(name.take(member));
  EXPECT_EQ(utf8(name.name()), "ü.txt");
  EXPECT_FALSE(name.isExact());
}

TEST(ArchiveRecords, StoredBytesAreKeptWhereTheShownNameDiffers) {
  ArchiveRecords records;
  ArchiveMember member;
  member.name = "a\\b";
  EXPECT_EQ(records.add(member), ArchiveRecords::Taken::Listed);
  member.name = "c";
  EXPECT_EQ(records.add(member), ArchiveRecords::Taken::Listed);
  records.sort();
  EXPECT_EQ(records.at(0).stored, "");
  EXPECT_EQ(records.at(1).stored, "a\\b");
}

TEST(ArchiveRecords, WhereNamesAreHiddenIsKnown) {
  ArchiveRecords records;
  ArchiveMember member;
  member.name = "a/b/../../x";
  EXPECT_EQ(records.add(member), ArchiveRecords::Taken::Hidden);
  member.name = "c/d";
  EXPECT_EQ(records.add(member), ArchiveRecords::Taken::Listed);
  records.sort();
  EXPECT_EQ(records.hiddenCount(), 1u);
  EXPECT_TRUE(records.hidesBelow(L"a"));
  EXPECT_TRUE(records.hidesBelow(L"a/b"));
  EXPECT_FALSE(records.hidesBelow(L"c"));
  EXPECT_TRUE(records.hidesBelow(L""));
}

TEST(ArchiveRecords, TheOrderOfDirectoriesHasTheSlashLowest) {
  EXPECT_TRUE(directoryBefore(L"a", L"a/b"));
  EXPECT_TRUE(directoryBefore(L"a/b", L"a b"));
  EXPECT_TRUE(directoryBefore(L"a/z", L"a-"));
  EXPECT_FALSE(directoryBefore(L"a", L"a"));
  EXPECT_TRUE(directoryBefore(L"", L"a"));
  EXPECT_TRUE(isWithin(L"a/b", L"a"));
  EXPECT_FALSE(isWithin(L"ab", L"a"));
}

TEST(ArchiveRecords, NamesThatBeginAlikeAreSortedByWhatFollows) {
  ArchiveRecords records;
  const std::vector<std::string> names = {"prefix-long-9", "PREFIX-long-10", "prefix-long-",
                                          "prefix-long-ä", "prefix-long-é",  "prefix-long-a"};
  for (const std::string& text : names) {
    ArchiveMember member;
    member.name = text;
    EXPECT_EQ(records.add(member), ArchiveRecords::Taken::Listed);
  }
  records.sort();
  Names sorted;
  for (uint32_t i = 0; i < records.count(); ++i) sorted.push_back(utf8(records.at(i).name));
  EXPECT_EQ(sorted, (Names{"prefix-long-", "PREFIX-long-10", "prefix-long-9", "prefix-long-a",
                           "prefix-long-ä", "prefix-long-é"}));
}

}  // namespace
