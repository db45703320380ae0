#include "language/association_set.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/utf8.h"

namespace {
std::string found(const Westring* text) {
  return text == nullptr ? "-" : toUtf8(*text).data();
}
}  // namespace

TEST(AssociationSet, TheFirstMatchInFileOrderWins) {
  AssociationSet set;
  set.addPair(L"*.tar.gz", L"untar");
  set.addPair(L"*.gz", L"gunzip");
  set.addPair(L"*", L"view");
  const EntryPtr archive(newEntry(L"a.tar.gz"));
  const EntryPtr packed(newEntry(L"a.gz"));
  const EntryPtr other(newEntry(L"a"));
  EXPECT_EQ(found(set.find(archive.get())), "untar");
  EXPECT_EQ(found(set.find(packed.get())), "gunzip");
  EXPECT_EQ(found(set.find(other.get())), "view");
}

TEST(AssociationSet, NoMatchGivesNothing) {
  AssociationSet set;
  const EntryPtr item(newEntry(L"a"));
  EXPECT_EQ(set.find(item.get()), nullptr);
  set.addPair(L"*.c", L"edit");
  EXPECT_EQ(set.find(item.get()), nullptr);
  EXPECT_EQ(set.findByName(L"a"), nullptr);
}

TEST(AssociationSet, ALookUpByNameSeesASizeOfZero) {
  AssociationSet set;
  set.addPair(L"%size>10", L"big");
  set.addPair(L"*.txt", L"text");
  const EntryPtr item(newEntry(L"a.txt"));
  item->size = 1000;
  EXPECT_EQ(found(set.find(item.get())), "big");
  EXPECT_EQ(found(set.findByName(L"a.txt")), "text");
}

TEST(AssociationSet, ThePatternMayBeAnyExpression) {
  AssociationSet set;
  set.addPair(L"(*.c|*.h)&!test*", L"source");
  EXPECT_EQ(found(set.findByName(L"main.h")), "source");
  EXPECT_EQ(found(set.findByName(L"test.h")), "-");
}

TEST(AssociationSet, TheFiveSetsAreApart) {
  AssociationSets& sets = associationSets();
  sets.viewers.addPair(L"*.png", L"show");
  EXPECT_EQ(found(sets.viewers.findByName(L"a.png")), "show");
  EXPECT_EQ(found(sets.editors.findByName(L"a.png")), "-");
  EXPECT_EQ(found(sets.associations.findByName(L"a.png")), "-");
  sets.viewers.clear();
  EXPECT_EQ(found(sets.viewers.findByName(L"a.png")), "-");
}
