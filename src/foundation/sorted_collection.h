#pragma once

// An owning array of pointers in key order, searched by bisection. With `duplicates` an equal key
// is accepted; with `unsorted` insert appends and the order is the caller's business (see sort()).
class SortedCollection {
 public:
  SortedCollection();
  virtual ~SortedCollection();
  SortedCollection(const SortedCollection&) = delete;
  SortedCollection& operator=(const SortedCollection&) = delete;

  bool duplicates = false;
  bool unsorted = false;

  int search(void* key, long& index);  // 0 found, -1 not; index receives the place
  void* find(void* key);               // sets the cursor when found
  void* findAtOrAfter(void* key);      // sets the cursor; null at the end
  void* findAtOrBefore(void* key);     // sets the cursor; null when there is none
  void* first();
  void* next();
  void* peek(long index) const;
  int insert(void* item);  // 0 taken; -1 refused as a duplicate, ownership stays with the caller
  void removeCurrent();
  void clear();
  // Orders what was inserted with `unsorted` and clears that flag, in n log n. Of equal keys the
  // first one stays, the others are disposed of, unless `duplicates` is set.
  void sort();

  long count() const { return count_; }
  long capacity() const { return capacity_; }
  long current() const { return current_; }
  void setCurrent(long index) { current_ = index; }

 protected:
  virtual void* keyOfEntry(void* item) = 0;
  // Below 0 when the key goes before the element.
  virtual int compareEntry(void* key, void* item) = 0;
  virtual void freeEntry(void* item) = 0;
  // A derived destructor calls clear() itself, while its freeEntry is still in force.

 private:
  void grow();
  void dropDuplicates();

  void** items_;
  long count_ = 0;
  long capacity_;
  long current_ = 0;
};

template <class T, class K>
class TSortedCollection : public SortedCollection {
 public:
  ~TSortedCollection() override { this->clear(); }
  int search(K* key, long& index) { return SortedCollection::search(key, index); }
  T* find(K* key) { return cast(SortedCollection::find(key)); }
  T* findAtOrAfter(K* key) { return cast(SortedCollection::findAtOrAfter(key)); }
  T* findAtOrBefore(K* key) { return cast(SortedCollection::findAtOrBefore(key)); }
  T* first() { return cast(SortedCollection::first()); }
  T* next() { return cast(SortedCollection::next()); }
  T* peek(long index) const { return cast(SortedCollection::peek(index)); }
  int insert(T* item) { return SortedCollection::insert(item); }

 protected:
  void* keyOfEntry(void* item) override { return keyOf(cast(item)); }
  int compareEntry(void* key, void* item) override {
    return compareKeys(static_cast<K*>(key), keyOf(cast(item)));
  }
  void freeEntry(void* item) override { deleteEntry(cast(item)); }
  virtual void deleteEntry(T* item) { delete item; }
  virtual K* keyOf(T* item) = 0;
  virtual int compareKeys(K* a, K* b) = 0;

 private:
  static T* cast(void* item) { return static_cast<T*>(item); }
};
