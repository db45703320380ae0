#include "search/found_entries.h"

#include <algorithm>
#include <limits>
#include <memory>

#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/utf8.h"

namespace {

// Stands in the pool before each entry.
struct alignas(16) Identity {
  FileId id;
};

Identity* identityOf(const entry* item) {
  auto* bytes = reinterpret_cast<char*>(const_cast<entry*>(item));
  return reinterpret_cast<Identity*>(bytes - sizeof(Identity));
}

bool isHiddenPath(const wchar_t* path) {
  const wchar_t* slash = wcsrchr(path, L'/');
  return slash && slash[1] == L'.';
}

void describe(entry* item, const struct stat& info, bool isLink) {
  const int64_t total = item->total;
  fillEntry(item, info);
  item->total = total;
  item->attributes &= static_cast<uint16_t>(~Attribute::Hidden);
  if (isHiddenPath(item->name())) item->attributes |= Attribute::Hidden;
  if (isLink) item->attributes |= Attribute::Link;
  item->sortGroup = item->isDirectory() ? SortGroup::Directory
                    : item->isHidden()  ? SortGroup::HiddenFile
                                        : SortGroup::File;
}

}  // namespace

bool FFEntryStore::add(const FoundFile& file) {
  const Westring path = decodeFileName(file.path.c_str());
  const size_t nameBytes = (static_cast<size_t>(path.length()) + 1) * sizeof(wchar_t);
  const size_t used = sizeof(Identity) + sizeof(entry) + nameBytes;
  const size_t size = (used + alignof(Identity) - 1) / alignof(Identity) * alignof(Identity);
  const MutexLock guard(lock_);
  if (poolBytes_ + size > mostBytes_) return false;
  auto* block = static_cast<char*>(pool_.allocate(size));
  if (!block) return false;
  poolBytes_ += size;
  std::construct_at(reinterpret_cast<Identity*>(block))->id = idOf(file.info);
  entry* item = std::construct_at(reinterpret_cast<entry*>(block + sizeof(Identity)));
  wmemcpy(item->name(), path.data(), static_cast<size_t>(path.length()) + 1);
  describe(item, file.info, file.isLink);
  item->total = file.position;
  TObjectStore<entry>::add(item);
  addBytes(item);
  return true;
}

int FFEntryStore::count() const {
  const MutexLock guard(lock_);
  return TObjectStore<entry>::count();
}

uint64_t FFEntryStore::bytes() const {
  const MutexLock guard(lock_);
  return bytes_;
}

FoundRow FFEntryStore::row(int index) const {
  const MutexLock guard(lock_);
  const entry* item = peek(index);
  if (!item) return {};
  return {EntryPtr(copyEntry(item)), identityOf(item)->id};
}

void FFEntryStore::removeAll() {
  const MutexLock guard(lock_);
  clear();
  pool_.reset();
  poolBytes_ = 0;
  bytes_ = 0;
}

void FFEntryStore::remove(int index, const Westring& path) {
  const MutexLock guard(lock_);
  const entry* item = peek(index);
  if (!item || !sameName(item->name(), path.data())) return;
  bytes_ -= std::min(bytes_, item->size);
  setCurrent(index);
  TObjectStore<entry>::remove();
}

void FFEntryStore::removeIf(const std::function<bool(const entry*)>& gone) {
  const MutexLock guard(lock_);
  std::vector<entry*> entries = all();
  entries.erase(std::remove_if(entries.begin(), entries.end(), gone), entries.end());
  setAll(entries);
}

void FFEntryStore::reorder(const std::function<void(std::vector<entry*>&)>& sort) {
  const MutexLock guard(lock_);
  std::vector<entry*> entries = all();
  sort(entries);
  setAll(entries);
}

void FFEntryStore::update(int index, const Westring& path, const struct stat& info) {
  const MutexLock guard(lock_);
  entry* item = peek(index);
  if (!item || !sameName(item->name(), path.data())) return;
  bytes_ -= std::min(bytes_, item->size);
  describe(item, info, item->isLink());
  identityOf(item)->id = idOf(info);
  addBytes(item);
}

std::vector<entry*> FFEntryStore::all() const {
  std::vector<entry*> entries;
  entries.reserve(static_cast<size_t>(TObjectStore<entry>::count()));
  for (int i = 0; i < TObjectStore<entry>::count(); ++i) entries.push_back(peek(i));
  return entries;
}

void FFEntryStore::setAll(const std::vector<entry*>& entries) {
  clear();
  bytes_ = 0;
  for (entry* item : entries) {
    TObjectStore<entry>::add(item);
    addBytes(item);
  }
}

void FFEntryStore::addBytes(const entry* item) {
  constexpr auto Most = static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
  bytes_ = item->size > Most - std::min(bytes_, Most) ? Most : bytes_ + item->size;
}

FFEntryStore& foundEntries() {
  static FFEntryStore store;
  return store;
}
