#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "foundation/entry.h"
#include "foundation/memory_pool.h"
#include "foundation/object_store.h"
#include "foundation/place.h"
#include "foundation/threads.h"
#include "foundation/westring.h"

// What `total` of a found entry may hold instead of the position of the text.
namespace FoundMark {
inline constexpr int64_t Stopped = -1;  // the search was stopped while this file was read
inline constexpr int64_t NoText = -2;   // none was asked for
inline constexpr int64_t NotOpened = -3;
}  // namespace FoundMark

// A file that a search has found, on its way into the list.
struct FoundFile {
  std::string path;
  struct stat info {};  // of what a link leads to, where it leads to something
  bool isLink = false;
  int64_t position = FoundMark::NoText;
};

// A row of the list as it was at some moment.
struct FoundRow {
  EntryPtr item;  // its name is the whole path
  FileId id;      // of the file itself, when it was listed
  bool valid() const { return item != nullptr; }
  Westring path() const { return item->name(); }
  bool isRealDirectory() const { return item->isDirectory() && !item->isLink(); }
};

// The list of a search: entries with the whole path as their name, in a pool. One for the program;
// it outlives the search and its dialog. Its own lock guards it, held for moments: any thread.
class FFEntryStore : private TObjectStore<entry> {
 public:
  static constexpr size_t MostBytes = size_t{1} << 30;

  explicit FFEntryStore(size_t mostBytes = MostBytes) : mostBytes_(mostBytes) {}
  ~FFEntryStore() override { removeAll(); }

  void setMostBytes(size_t bytes) { mostBytes_ = bytes; }  // while nothing searches

  bool add(const FoundFile& file);  // at the end; false when the pool is full
  int count() const;
  uint64_t bytes() const;         // of all files, at most 2^63-1
  FoundRow row(int index) const;  // not valid outside of the list
  void removeAll();

  // Takes an entry off the list, which a search may be adding to: the one at `index`, if it still
  // is that path.
  void remove(int index, const Westring& path);
  // Takes off all of whom `gone` says so, in one pass. It must not call the system.
  void removeIf(const std::function<bool(const entry*)>& gone);
  // Lets `sort` put them in another order.
  void reorder(const std::function<void(std::vector<entry*>&)>& sort);
  // What is known by now of the file at `index`, if it still is that path.
  void update(int index, const Westring& path, const struct stat& info);

 private:
  void deleteEntry(entry*) override {}  // the pool has it
  std::vector<entry*> all() const;
  void setAll(const std::vector<entry*>& entries);
  void addBytes(const entry* item);

  mutable MutexSem lock_;
  size_t mostBytes_;
  MemoryPool pool_;
  size_t poolBytes_ = 0;
  uint64_t bytes_ = 0;
};

FFEntryStore& foundEntries();
