#include "foundation/object_store.h"

#include <algorithm>

#include "foundation/checked_capacity.h"

namespace {
constexpr int FirstCapacity = 10;
}

ObjectStore::ObjectStore() : items_(new void*[FirstCapacity]), capacity_(FirstCapacity) {}

ObjectStore::~ObjectStore() {
  delete[] items_;
}

void* ObjectStore::first() {
  current_ = 0;
  return currentEntry();
}

void* ObjectStore::next() {
  return at(current_ + 1);
}

void* ObjectStore::previous() {
  return at(current_ - 1);
}

void* ObjectStore::last() {
  return at(count_ - 1);
}

void* ObjectStore::currentEntry() const {
  return peek(current_);
}

void* ObjectStore::at(int index) {
  current_ = index;
  return peek(index);
}

void* ObjectStore::peek(int index) const {
  return index >= 0 && index < count_ ? items_[index] : nullptr;
}

void ObjectStore::add(void* item) {
  grow();
  current_ = count_;
  items_[count_++] = item;
}

int ObjectStore::insert(void* item) {
  grow();
  current_ = std::clamp(current_, 0, count_);
  std::copy_backward(items_ + current_, items_ + count_, items_ + count_ + 1);
  items_[current_] = item;
  return ++count_;
}

void* ObjectStore::detach() {
  void* item = currentEntry();
  if (current_ < 0 || current_ >= count_) return nullptr;
  std::copy(items_ + current_ + 1, items_ + count_, items_ + current_);
  --count_;
  return item;
}

void ObjectStore::remove() {
  int index = current_;
  if (index < 0 || index >= count_) return;
  freeEntry(detach(), index);
}

void ObjectStore::clear() {
  for (current_ = 0; current_ < count_; ++current_) freeEntry(items_[current_], current_);
  count_ = 0;
}

void ObjectStore::grow() {
  if (count_ < capacity_) return;
  int capacity = checkedCapacity(capacity_ * 13LL / 10);
  void** items = new void*[static_cast<size_t>(capacity)];
  std::copy_n(items_, count_, items);
  delete[] items_;
  items_ = items;
  capacity_ = capacity;
}
