#include "foundation/sorted_collection.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>

namespace {
struct Item {
  int key;
  int serial;
};

class ItemCollection : public TSortedCollection<Item, int> {
 public:
  explicit ItemCollection(int* compares = nullptr) : compares_(compares) {}

  int put(int key, int serial = 0) {
    auto item = std::make_unique<Item>(Item{key, serial});
    int result = insert(item.get());
    if (result == 0) item.release();
    return result;
  }
  std::vector<int> keys() const {
    std::vector<int> result;
    for (long i = 0; i < count(); ++i) result.push_back(peek(i)->key);
    return result;
  }

 protected:
  int* keyOf(Item* item) override { return &item->key; }
  int compareKeys(int* a, int* b) override {
    if (compares_ != nullptr) ++*compares_;
    return (*a > *b) - (*a < *b);
  }

 private:
  int* compares_;
};

using Keys = std::vector<int>;
}  // namespace

TEST(SortedCollection, KeepsItsElementsInOrder) {
  ItemCollection items;
  for (int key : {5, 1, 9, 3}) EXPECT_EQ(items.put(key), 0);
  EXPECT_EQ(items.keys(), (Keys{1, 3, 5, 9}));
}

TEST(SortedCollection, RefusesADuplicate) {
  ItemCollection items;
  EXPECT_EQ(items.put(1), 0);
  EXPECT_EQ(items.put(1), -1);
  EXPECT_EQ(items.count(), 1);
}

TEST(SortedCollection, ADuplicateLandsBeforeTheOneThatWasHit) {
  ItemCollection items;
  items.duplicates = true;
  items.put(1, 1);
  items.put(1, 2);
  EXPECT_EQ(items.count(), 2);
  EXPECT_EQ(items.peek(0)->serial, 2);
}

TEST(SortedCollection, AmongEqualKeysOneOfThemIsFound) {
  ItemCollection items;
  items.duplicates = true;
  for (int serial = 0; serial < 4; ++serial) items.put(7, serial);
  for (const int beside : {5, 6, 8}) items.put(beside);
  long index = -1;
  int key = 7;
  EXPECT_EQ(items.search(&key, index), 0);
  EXPECT_GE(index, 2);
  EXPECT_LT(index, 6);
}

TEST(SortedCollection, AbsentKeysAtTheEndsGiveZeroAndCount) {
  ItemCollection items;
  long index = 77;
  int key = 5;
  EXPECT_EQ(items.search(&key, index), -1);
  EXPECT_EQ(index, 0);
  for (int i : {10, 20, 30}) items.put(i);
  EXPECT_EQ(items.search(&key, index), -1);
  EXPECT_EQ(index, 0);
  key = 99;
  EXPECT_EQ(items.search(&key, index), -1);
  EXPECT_EQ(index, 3);
  key = 25;
  EXPECT_EQ(items.search(&key, index), -1);
  EXPECT_EQ(index, 2);
  key = 30;
  EXPECT_EQ(items.search(&key, index), 0);
  EXPECT_EQ(index, 2);
}

TEST(SortedCollection, FindSetsTheCursorWhenFound) {
  ItemCollection items;
  for (int i : {10, 20, 30}) items.put(i);
  int key = 30;
  EXPECT_EQ(items.find(&key)->key, 30);
  EXPECT_EQ(items.current(), 2);
  key = 15;
  EXPECT_EQ(items.find(&key), nullptr);
  EXPECT_EQ(items.current(), 2);
}

TEST(SortedCollection, FindAtOrAfterIsNullAboveAll) {
  ItemCollection items;
  for (int i : {10, 20, 30}) items.put(i);
  int key = 15;
  EXPECT_EQ(items.findAtOrAfter(&key)->key, 20);
  EXPECT_EQ(items.current(), 1);
  key = 31;
  EXPECT_EQ(items.findAtOrAfter(&key), nullptr);
  EXPECT_EQ(items.current(), 3);
}

TEST(SortedCollection, FindAtOrBeforeIsNullBelowAll) {
  ItemCollection items;
  for (int i : {10, 20, 30}) items.put(i);
  int key = 25;
  EXPECT_EQ(items.findAtOrBefore(&key)->key, 20);
  EXPECT_EQ(items.current(), 1);
  key = 20;
  EXPECT_EQ(items.findAtOrBefore(&key)->key, 20);
  key = 9;
  EXPECT_EQ(items.findAtOrBefore(&key), nullptr);
}

TEST(SortedCollection, WalksFromTheFirst) {
  ItemCollection items;
  EXPECT_EQ(items.first(), nullptr);
  for (int i : {20, 10}) items.put(i);
  EXPECT_EQ(items.first()->key, 10);
  EXPECT_EQ(items.next()->key, 20);
  EXPECT_EQ(items.next(), nullptr);
  EXPECT_EQ(items.current(), 2);
}

TEST(SortedCollection, The101stElementTakesCapacity130) {
  ItemCollection items;
  for (int i = 0; i < 100; ++i) items.put(i);
  EXPECT_EQ(items.capacity(), 100);
  items.put(100);
  EXPECT_EQ(items.capacity(), 130);
  EXPECT_EQ(items.count(), 101);
}

TEST(SortedCollection, InsertDoesNotMoveTheCursor) {
  ItemCollection items;
  items.put(1);
  items.first();
  items.put(0);
  EXPECT_EQ(items.current(), 0);
}

TEST(SortedCollection, RemoveCurrentClosesTheGap) {
  ItemCollection items;
  for (int i : {10, 20, 30}) items.put(i);
  items.setCurrent(1);
  items.removeCurrent();
  EXPECT_EQ(items.keys(), (Keys{10, 30}));
  items.setCurrent(2);
  items.removeCurrent();
  items.setCurrent(-1);
  items.removeCurrent();
  EXPECT_EQ(items.count(), 2);
}

TEST(SortedCollection, ClearLeavesTheCursor) {
  ItemCollection items;
  for (int i : {10, 20, 30}) items.put(i);
  items.setCurrent(2);
  items.clear();
  EXPECT_EQ(items.count(), 0);
  EXPECT_EQ(items.current(), 2);
  EXPECT_EQ(items.put(5), 0);
}

TEST(SortedCollection, UnsortedAppendsUntilItIsSorted) {
  ItemCollection items;
  items.unsorted = true;
  for (int key : {5, 1, 9, 5, 3, 1}) EXPECT_EQ(items.put(key), 0);
  EXPECT_EQ(items.keys(), (Keys{5, 1, 9, 5, 3, 1}));
  items.sort();
  EXPECT_FALSE(items.unsorted);
  EXPECT_EQ(items.keys(), (Keys{1, 3, 5, 9}));
  int key = 9;
  EXPECT_NE(items.find(&key), nullptr);
}

TEST(SortedCollection, SortingKeepsTheFirstOfEqualElements) {
  ItemCollection items;
  items.unsorted = true;
  items.put(1, 1);
  items.put(0, 2);
  items.put(1, 3);
  items.sort();
  EXPECT_EQ(items.count(), 2);
  EXPECT_EQ(items.peek(1)->serial, 1);
}

TEST(SortedCollection, SortingKeepsDuplicatesWhereTheyAreAllowed) {
  ItemCollection items;
  items.duplicates = true;
  items.unsorted = true;
  items.put(1, 1);
  items.put(1, 2);
  items.put(0, 3);
  items.sort();
  EXPECT_EQ(items.keys(), (Keys{0, 1, 1}));
  EXPECT_EQ(items.peek(1)->serial, 1);
}

TEST(SortedCollection, FillingUnsortedAndSortingIsNLogN) {
  constexpr int Many = 100000;
  constexpr int ComparesPerElement = 20;  // the binary logarithm of Many is 17
  int compares = 0;
  ItemCollection items(&compares);
  items.unsorted = true;
  std::mt19937 random(7);
  for (int i = 0; i < Many; ++i) items.put(static_cast<int>(random()));
  EXPECT_EQ(compares, 0);
  items.sort();
  EXPECT_LT(compares, Many * ComparesPerElement);
  for (long i = 1; i < items.count(); ++i) ASSERT_LT(items.peek(i - 1)->key, items.peek(i)->key);
}
