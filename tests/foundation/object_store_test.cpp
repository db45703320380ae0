#include "foundation/object_store.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {
// Counts what it disposes of, and remembers in which order.
class NumberStore : public TObjectStoreAbstract<int> {
 public:
  explicit NumberStore(std::vector<int>* freed = nullptr) : freed_(freed) {}
  ~NumberStore() override { clear(); }
  void fill(int count) {
    for (int i = 0; i < count; ++i) add(new int(i));
  }
  std::vector<int> numbers() const {
    std::vector<int> result;
    for (int i = 0; i < count(); ++i) result.push_back(*peek(i));
    return result;
  }

 protected:
  void deleteEntry(int* item) override {
    if (freed_ != nullptr) freed_->push_back(item != nullptr ? *item : -1);
    delete item;
  }

 private:
  std::vector<int>* freed_;
};

using Numbers = std::vector<int>;
}  // namespace

TEST(ObjectStore, FirstOnAnEmptyStoreIsNullAtZero) {
  NumberStore store;
  store.setCurrent(7);
  EXPECT_EQ(store.first(), nullptr);
  EXPECT_EQ(store.current(), 0);
  EXPECT_EQ(store.last(), nullptr);
  EXPECT_EQ(store.current(), -1);
}

TEST(ObjectStore, NextGoesOnPastTheEnd) {
  NumberStore store;
  store.fill(1);
  EXPECT_NE(store.first(), nullptr);
  EXPECT_EQ(store.next(), nullptr);
  EXPECT_EQ(store.next(), nullptr);
  EXPECT_EQ(store.current(), 2);
  EXPECT_EQ(store.previous(), nullptr);
  EXPECT_EQ(*store.previous(), 0);
  EXPECT_EQ(store.previous(), nullptr);
  EXPECT_EQ(store.current(), -1);
}

TEST(ObjectStore, AtMovesTheCursorAndPeekDoesNot) {
  NumberStore store;
  store.fill(3);
  EXPECT_EQ(*store.at(1), 1);
  EXPECT_EQ(*store.peek(2), 2);
  EXPECT_EQ(store.current(), 1);
  EXPECT_EQ(store.at(-5), nullptr);
  EXPECT_EQ(store.current(), -5);
  EXPECT_EQ(store.currentEntry(), nullptr);
  EXPECT_EQ(store.peek(3), nullptr);
}

TEST(ObjectStore, AddPutsTheCursorOnTheNewElement) {
  NumberStore store;
  store.fill(3);
  EXPECT_EQ(store.current(), 2);
  EXPECT_EQ(*store.currentEntry(), 2);
}

TEST(ObjectStore, GrowsByThirteenTenths) {
  NumberStore store;
  Numbers capacities;
  for (int i = 0; i < 34; ++i) {
    store.add(new int(i));
    if (capacities.empty() || capacities.back() != store.capacity()) {
      capacities.push_back(store.capacity());
    }
  }
  EXPECT_EQ(capacities, (Numbers{10, 13, 16, 20, 26, 33, 42}));
  EXPECT_EQ(*store.peek(0), 0);
  EXPECT_EQ(*store.peek(33), 33);
}

TEST(ObjectStore, InsertGoesToTheCursor) {
  NumberStore store;
  store.fill(3);
  store.at(1);
  EXPECT_EQ(store.insert(new int(9)), 4);
  EXPECT_EQ(store.numbers(), (Numbers{0, 9, 1, 2}));
  EXPECT_EQ(store.current(), 1);
}

TEST(ObjectStore, InsertBeyondTheEndAppends) {
  NumberStore store;
  store.fill(2);
  store.at(50);
  EXPECT_EQ(store.insert(new int(9)), 3);
  EXPECT_EQ(store.numbers(), (Numbers{0, 1, 9}));
  EXPECT_EQ(store.current(), 2);
  store.at(-3);
  store.insert(new int(8));
  EXPECT_EQ(store.numbers(), (Numbers{8, 0, 1, 9}));
}

TEST(ObjectStore, DetachOfTheLastLeavesTheCursorAtTheEnd) {
  Numbers freed;
  NumberStore store(&freed);
  store.fill(3);
  store.last();
  int* item = store.detach();
  EXPECT_EQ(*item, 2);
  EXPECT_EQ(store.count(), 2);
  EXPECT_EQ(store.current(), 2);
  EXPECT_EQ(store.currentEntry(), nullptr);
  EXPECT_EQ(store.detach(), nullptr);
  EXPECT_TRUE(freed.empty());
  delete item;
}

TEST(ObjectStore, DetachInTheMiddleNamesTheFollower) {
  NumberStore store;
  store.fill(3);
  store.first();
  delete store.detach();
  EXPECT_EQ(*store.currentEntry(), 1);
}

TEST(ObjectStore, RemoveDisposesAndClosesTheGap) {
  Numbers freed;
  NumberStore store(&freed);
  store.fill(3);
  store.at(1);
  store.remove();
  EXPECT_EQ(freed, (Numbers{1}));
  EXPECT_EQ(store.numbers(), (Numbers{0, 2}));
  store.at(9);
  store.remove();
  EXPECT_EQ(store.count(), 2);
}

TEST(ObjectStore, ClearDisposesInOrderAndKeepsTheArray) {
  Numbers freed;
  NumberStore store(&freed);
  store.fill(12);
  int capacity = store.capacity();
  store.clear();
  EXPECT_EQ(freed.size(), 12U);
  EXPECT_TRUE(std::is_sorted(freed.begin(), freed.end()));
  EXPECT_EQ(store.count(), 0);
  EXPECT_EQ(store.current(), 12);
  EXPECT_EQ(store.capacity(), capacity);
  store.clear();
  EXPECT_EQ(store.count(), 0);
}

TEST(ObjectStore, NullElementsAreHeldAndFreed) {
  TObjectStore<int> store;
  store.add(nullptr);
  store.add(new int(1));
  EXPECT_EQ(store.count(), 2);
  EXPECT_EQ(store.first(), nullptr);
  EXPECT_EQ(*store.next(), 1);
}

TEST(ObjectStore, TheHookIsToldThePlaceOfWhatEnds) {
  struct PlaceStore : ObjectStore {
    ~PlaceStore() override { clear(); }
    void freeEntry(void*, int index) override { places.emplace_back(index, current()); }
    std::vector<std::pair<int, int>> places;  // told, and the cursor
  };
  PlaceStore store;
  int item = 0;
  for (int i = 0; i < 4; ++i) store.add(&item);
  store.at(2);
  store.remove();
  store.clear();
  using Places = std::vector<std::pair<int, int>>;
  EXPECT_EQ(store.places, (Places{{2, 2}, {0, 0}, {1, 1}, {2, 2}}));
}

TEST(ObjectStore, TheDestructorDisposesOfAll) {
  Numbers freed;
  {
    NumberStore store(&freed);
    store.fill(3);
  }
  EXPECT_EQ(freed, (Numbers{0, 1, 2}));
}
