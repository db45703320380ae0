#pragma once

// An owning array of pointers with a built-in cursor. Positional calls return the element, or null
// outside 0..count-1. No lock of its own.
class ObjectStore {
 public:
  ObjectStore();
  virtual ~ObjectStore();
  ObjectStore(const ObjectStore&) = delete;
  ObjectStore& operator=(const ObjectStore&) = delete;

  void* first();
  void* next();  // the cursor goes on even beyond the end
  void* previous();
  void* last();
  void* currentEntry() const;
  void* at(int index);          // moves the cursor to index, whatever it is
  void* peek(int index) const;  // the cursor stays
  void add(void* item);         // takes ownership; the cursor goes to the new element
  int insert(void* item);       // at the cursor; returns the new count
  void* detach();               // the caller owns the element; the cursor stays
  void remove();                // disposes of the element at the cursor
  void clear();

  int count() const { return count_; }
  int capacity() const { return capacity_; }
  int current() const { return current_; }
  void setCurrent(int index) { current_ = index; }

 protected:
  virtual void freeEntry(void* item, int index) = 0;
  // A derived destructor calls clear() itself, while its freeEntry is still in force.

 private:
  void grow();

  int current_ = 0;
  int count_ = 0;
  void** items_;
  int capacity_;
};

// Gives ObjectStore its type. `deleteEntry` decides what disposal means.
template <class T>
class TObjectStoreAbstract : public ObjectStore {
 public:
  T* first() { return cast(ObjectStore::first()); }
  T* next() { return cast(ObjectStore::next()); }
  T* previous() { return cast(ObjectStore::previous()); }
  T* last() { return cast(ObjectStore::last()); }
  T* currentEntry() const { return cast(ObjectStore::currentEntry()); }
  T* at(int index) { return cast(ObjectStore::at(index)); }
  T* peek(int index) const { return cast(ObjectStore::peek(index)); }
  void add(T* item) { ObjectStore::add(item); }
  int insert(T* item) { return ObjectStore::insert(item); }
  T* detach() { return cast(ObjectStore::detach()); }

 protected:
  void freeEntry(void* item, int) override { deleteEntry(cast(item)); }
  virtual void deleteEntry(T* item) = 0;

 private:
  static T* cast(void* item) { return static_cast<T*>(item); }
};

template <class T>
class TObjectStore : public TObjectStoreAbstract<T> {
 public:
  ~TObjectStore() override { this->clear(); }

 protected:
  void deleteEntry(T* item) override { delete item; }
};
