#include "history/history_store.h"

#include <gtest/gtest.h>

#include "foundation/names.h"

namespace {

std::vector<std::wstring> wideTextsOf(const FnStringStore& store) {
  std::vector<std::wstring> texts;
  for (int i = 0; i < store.count(); ++i) texts.emplace_back(store.peek(i)->data());
  return texts;
}

using WideTexts = std::vector<std::wstring>;

// Each test starts with empty stores: they belong to the process.
class HistoryStore : public testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < FieldHistoryCount; ++i) fieldHistory(static_cast<FieldHistory>(i))->clear();
    commandHistory().clear();
    directoryHistory().clear();
  }
};

}  // namespace

TEST_F(HistoryStore, AFieldEntryGoesToTheEndOfItsOwnHistoryOnly) {
  addField(FieldHistory::Filter, L"*.txt");
  addField(FieldHistory::Filter, L"*.cpp");
  EXPECT_EQ(wideTextsOf(*fieldHistory(FieldHistory::Filter)), (WideTexts{L"*.txt", L"*.cpp"}));
  EXPECT_EQ(fieldHistory(FieldHistory::SearchText)->count(), 0);
}

TEST_F(HistoryStore, FieldEntriesCompareWithoutRegardToCase) {
  addField(FieldHistory::Destination, L"/Tmp");
  addField(FieldHistory::Destination, L"/usr");
  addField(FieldHistory::Destination, L"/tMP");
  EXPECT_EQ(wideTextsOf(*fieldHistory(FieldHistory::Destination)), (WideTexts{L"/usr", L"/tMP"}));
}

TEST_F(HistoryStore, AnEntryOfTheStoreItselfCanBeAddedAgain) {
  addField(FieldHistory::Filter, L"first");
  addField(FieldHistory::Filter, L"second");
  addField(FieldHistory::Filter, *fieldHistory(FieldHistory::Filter)->peek(0));
  EXPECT_EQ(wideTextsOf(*fieldHistory(FieldHistory::Filter)), (WideTexts{L"second", L"first"}));
}

TEST_F(HistoryStore, TheClassThatKeepsNothingHasNoStoreAndTakesNothing) {
  EXPECT_EQ(fieldHistory(FieldHistory::None), nullptr);
  addField(FieldHistory::None, L"text");
  for (int i = 0; i < FieldHistoryCount; ++i) {
    EXPECT_EQ(fieldHistory(static_cast<FieldHistory>(i))->count(), 0) << i;
  }
}

TEST_F(HistoryStore, ANumberOutsideTheTwelveHasNoStore) {
  EXPECT_EQ(fieldHistory(static_cast<FieldHistory>(12)), nullptr);
  EXPECT_EQ(fieldHistory(static_cast<FieldHistory>(-1)), nullptr);
  EXPECT_NE(fieldHistory(static_cast<FieldHistory>(0)), nullptr);
  EXPECT_NE(fieldHistory(static_cast<FieldHistory>(11)), nullptr);
}

TEST_F(HistoryStore, ARepeatedCommandKeepsOneEntryAtTheNewestPlace) {
  addCommand(L"make");
  addCommand(L"ls");
  addCommand(L"make");
  EXPECT_EQ(wideTextsOf(commandHistory()), (WideTexts{L"ls", L"make"}));
}

TEST_F(HistoryStore, AnEmptiedHistoryKnowsNoCommandAnyMore) {
  addCommand(L"make");
  commandHistory().clear();
  addCommand(L"make");
  commandHistory().first();
  commandHistory().remove();
  addCommand(L"make");
  addCommand(L"make");
  EXPECT_EQ(wideTextsOf(commandHistory()), (WideTexts{L"make"}));
}

TEST_F(HistoryStore, AmongAHundredThousandAnEqualCommandIsFoundEachTime) {
  constexpr int many = 100000;
  for (int i = 0; i < many; ++i) addCommand(Westring(Estring(static_cast<long>(i))));
  for (int i = 0; i < many; ++i) addCommand(Westring(Estring(static_cast<long>(many - 1))));
  EXPECT_EQ(commandHistory().count(), many);
}

TEST_F(HistoryStore, CommandsCompareExactly) {
  addCommand(L"make");
  addCommand(L"Make");
  EXPECT_EQ(wideTextsOf(commandHistory()), (WideTexts{L"make", L"Make"}));
}

TEST_F(HistoryStore, LeadingWhiteSpaceOfACommandIsDropped) {
  addCommand(L"  \tls");
  addCommand(L"ls");
  addCommand(L"   ");
  EXPECT_EQ(wideTextsOf(commandHistory()), (WideTexts{L"ls"}));
}

TEST_F(HistoryStore, TheCommandHistoryHasNoLimitInARun) {
  for (int i = 0; i < 1200; ++i) addCommand(Westring(Estring(static_cast<long>(i))));
  EXPECT_EQ(commandHistory().count(), 1200);
}

TEST_F(HistoryStore, TheOldestDirectoryGoesWhenTheHundredArePassed) {
  for (int i = 0; i < DirectoryHistoryLimit + 1; ++i) {
    addDirectory(L"/d" + Westring(Estring(static_cast<long>(i))));
  }
  EXPECT_EQ(directoryHistory().count(), DirectoryHistoryLimit);
  EXPECT_TRUE(sameName(*directoryHistory().peek(0), L"/d1"));
  EXPECT_TRUE(sameName(*directoryHistory().peek(DirectoryHistoryLimit - 1), L"/d100"));
}

TEST_F(HistoryStore, DirectoriesThatDifferInCaseAreTwo) {
  addDirectory(L"/a/foo");
  addDirectory(L"/a/Foo");
  addDirectory(L"/a/foo");
  EXPECT_EQ(wideTextsOf(directoryHistory()), (WideTexts{L"/a/Foo", L"/a/foo"}));
}

TEST_F(HistoryStore, GoingUpRemovesTheNewestEntryOnlyIfItIsTheDirectoryLeft) {
  addDirectory(L"/a");
  addDirectory(L"/a/b");
  removeNewestDirectory(L"/a");
  EXPECT_EQ(wideTextsOf(directoryHistory()), (WideTexts{L"/a", L"/a/b"}));
  removeNewestDirectory(L"/a/b");
  EXPECT_EQ(wideTextsOf(directoryHistory()), (WideTexts{L"/a"}));
}

TEST_F(HistoryStore, GoingUpWithAnEmptyHistoryDoesNothing) {
  removeNewestDirectory(L"/a");
  EXPECT_EQ(directoryHistory().count(), 0);
}
