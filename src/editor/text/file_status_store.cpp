#include "editor/text/file_status_store.h"

#include <cwchar>

#include "foundation/names.h"
#include "foundation/path_info.h"

namespace {

size_t bytesOf(const std::vector<StoredUndoItem>& items) {
  size_t result = 0;
  for (const StoredUndoItem& item : items) result += sizeof item + item.text.capacity();
  return result;
}

// The oldest of `items` go until `excess` bytes are gone; what is left of it comes back.
size_t dropOldest(std::vector<StoredUndoItem>& items, size_t excess) {
  size_t gone = 0;
  size_t count = 0;
  while (count < items.size() && gone < excess) {
    gone += sizeof items[count] + items[count].text.capacity();
    ++count;
  }
  items.erase(items.begin(), items.begin() + static_cast<std::ptrdiff_t>(count));
  return gone < excess ? excess - gone : 0;
}

}  // namespace

size_t StoredUndo::bytes() const {
  return bytesOf(undo) + bytesOf(redo);
}

Westring FileStatusStore::keyOfPath(const Westring& path) {
  return path[0] == L'/' ? path : addSlash(currentDir()) + path;
}

int FileStatusStore::compareKeys(Westring* a, Westring* b) {
  return wcscmp(a->data(), b->data());
}

HISTREC* FileStatusStore::find(const Westring& key) {
  Westring wanted(key);
  return TSortedCollection::find(&wanted);
}

HISTREC& FileStatusStore::record(const Westring& key) {
  HISTREC* found = find(key);
  if (found == nullptr) {
    found = new HISTREC(key);
    insert(found);
  }
  found->lastUse_ = ++uses_;
  while (count() > MostRecords) remove(*oldest([](const HISTREC&) { return true; }));
  return *found;
}

void FileStatusStore::stored(HISTREC& record) {
  record.lastUse_ = ++uses_;
  size_t total = 0;
  for (long i = 0; i < count(); ++i) total += peek(i)->steps.bytes();
  while (total > MostStepBytes) {
    HISTREC* victim = oldest([](const HISTREC& candidate) { return !candidate.steps.empty(); });
    if (victim == &record) break;
    total -= victim->steps.bytes();
    victim->steps = {};
  }
  if (total <= MostStepBytes) return;
  const size_t rest = dropOldest(record.steps.undo, total - MostStepBytes);
  dropOldest(record.steps.redo, rest);
}

HISTREC* FileStatusStore::oldest(bool (*counts)(const HISTREC&)) {
  HISTREC* result = nullptr;
  for (long i = 0; i < count(); ++i) {
    HISTREC* candidate = peek(i);
    if (!counts(*candidate)) continue;
    if (result == nullptr || candidate->lastUse_ < result->lastUse_) result = candidate;
  }
  return result;
}

void FileStatusStore::remove(HISTREC& record) {
  TSortedCollection::find(&record.name);
  removeCurrent();
}

FileStatusStore& fileStatusStore() {
  static FileStatusStore store;
  return store;
}
