#include "foundation/entry.h"

#include <cstring>
#include <cwchar>
#include <memory>

// An entry and its name are one block of bytes, so that a listing costs one allocation a line.
entry* newEntry(int nameLength) {
  const size_t nameBytes = (static_cast<size_t>(nameLength) + 1) * sizeof(wchar_t);
  auto* block = new unsigned char[sizeof(entry) + nameBytes];
  entry* item = std::construct_at(reinterpret_cast<entry*>(block));
  item->total = -1;
  item->name()[0] = 0;
  item->name()[nameLength] = 0;
  return item;
}

entry* newEntry(const wchar_t* name) {
  const size_t length = wcslen(name);
  entry* item = newEntry(static_cast<int>(length));
  wmemcpy(item->name(), name, length + 1);
  return item;
}

entry* copyEntry(const entry* source) {
  entry* item = newEntry(source->name());
  *item = *source;
  return item;
}

void freeEntry(entry* item) {
  delete[] reinterpret_cast<unsigned char*>(item);
}
