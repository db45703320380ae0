#include "history/history_store.h"

#include <cwctype>

#include "foundation/names.h"

namespace {

template <class Same>
void removeEqual(FnStringStore& store, Same same) {
  for (int i = 0; i < store.count();) {
    if (same(*store.at(i))) {
      store.remove();
    } else {
      ++i;
    }
  }
}

void append(FnStringStore& store, const Westring& text) {
  store.add(new Westring(text));
}

}  // namespace

FnStringStore* fieldHistory(FieldHistory which) {
  static FnStringStore stores[FieldHistoryCount];
  int number = static_cast<int>(which);
  return number >= 0 && number < FieldHistoryCount ? &stores[number] : nullptr;
}

void addField(FieldHistory which, const Westring& text) {
  FnStringStore* store = fieldHistory(which);
  if (!store) return;
  Westring copy = text;  // the text may be one of the store's own
  removeEqual(*store, [&](const Westring& old) { return old == copy; });
  append(*store, copy);
}

FnStringStore& commandHistory() {
  static FnStringStore store;
  return store;
}

void addCommand(const Westring& text) {
  Westring command = ltrim(text);
  if (command.empty()) return;
  removeEqual(commandHistory(), [&](const Westring& old) { return sameName(old, command); });
  append(commandHistory(), command);
}

FnStringStore& directoryHistory() {
  static FnStringStore store;
  return store;
}

void addDirectory(const Westring& path) {
  Westring copy = path;
  if (copy.empty()) return;
  FnStringStore& store = directoryHistory();
  removeEqual(store, [&](const Westring& old) { return sameName(old, copy); });
  append(store, copy);
  while (store.count() > DirectoryHistoryLimit) {
    store.first();
    store.remove();
  }
}

void removeNewestDirectory(const Westring& left) {
  FnStringStore& store = directoryHistory();
  const Westring* newest = store.last();
  if (newest && sameName(*newest, left)) store.remove();
}
