#include "foundation/sorted_collection.h"

#include <algorithm>
#include <cstddef>

namespace {
constexpr long FirstCapacity = 100;
}

SortedCollection::SortedCollection() : items_(new void*[FirstCapacity]), capacity_(FirstCapacity) {}

SortedCollection::~SortedCollection() {
  delete[] items_;
}

int SortedCollection::search(void* key, long& index) {
  long low = 0;
  long high = count_ - 1;
  while (low <= high) {
    index = (low + high) / 2;
    int order = compareEntry(key, items_[index]);
    if (order == 0) return 0;
    if (order < 0) {
      high = index - 1;
    } else {
      low = index + 1;
    }
  }
  index = low;
  return -1;
}

void* SortedCollection::find(void* key) {
  long index = 0;
  if (search(key, index) != 0) return nullptr;
  current_ = index;
  return items_[index];
}

void* SortedCollection::findAtOrAfter(void* key) {
  search(key, current_);
  return peek(current_);
}

void* SortedCollection::findAtOrBefore(void* key) {
  if (search(key, current_) != 0) --current_;
  return peek(current_);
}

void* SortedCollection::first() {
  current_ = 0;
  return peek(current_);
}

void* SortedCollection::next() {
  return peek(++current_);
}

void* SortedCollection::peek(long index) const {
  return index >= 0 && index < count_ ? items_[index] : nullptr;
}

int SortedCollection::insert(void* item) {
  long index = count_;
  if (!unsorted && search(keyOfEntry(item), index) == 0 && !duplicates) return -1;
  grow();
  std::copy_backward(items_ + index, items_ + count_, items_ + count_ + 1);
  items_[index] = item;
  ++count_;
  return 0;
}

void SortedCollection::removeCurrent() {
  void* item = peek(current_);
  if (current_ < 0 || current_ >= count_) return;
  std::copy(items_ + current_ + 1, items_ + count_, items_ + current_);
  --count_;
  freeEntry(item);
}

void SortedCollection::clear() {
  for (long i = 0; i < count_; ++i) freeEntry(items_[i]);
  count_ = 0;
}

void SortedCollection::sort() {
  std::stable_sort(items_, items_ + count_,
                   [this](void* a, void* b) { return compareEntry(keyOfEntry(a), b) < 0; });
  unsorted = false;
  if (!duplicates) dropDuplicates();
}

void SortedCollection::dropDuplicates() {
  long kept = 0;
  for (long i = 0; i < count_; ++i) {
    if (kept > 0 && compareEntry(keyOfEntry(items_[i]), items_[kept - 1]) == 0) {
      freeEntry(items_[i]);
    } else {
      items_[kept++] = items_[i];
    }
  }
  count_ = kept;
}

void SortedCollection::grow() {
  if (count_ < capacity_) return;
  long capacity = capacity_ * 13 / 10;
  void** items = new void*[static_cast<size_t>(capacity)];
  std::copy_n(items_, count_, items);
  delete[] items_;
  items_ = items;
  capacity_ = capacity;
}
