#include "history/history_store.h"

#include <algorithm>
#include <cwctype>

#include "foundation/names.h"
#include "foundation/utf8.h"
#include "history/history_file.h"

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

void append(FnStringStore& store, Westring text) {
  store.add(new Westring(std::move(text)));
}

Westring& historyPath() {
  static Westring path;
  return path;
}

// A memory that can't be written is no reason to disturb the user.
void appendToFile(const std::string& line) {
  if (line.empty() || historyPath().empty()) return;
  static_cast<void>(HistoryFile(historyPath()).append(line));
}

void fill(FnStringStore& store, const std::vector<std::string_view>& texts) {
  store.clear();
  std::string bytes;
  for (const std::string_view text : texts) {
    bytes = text;
    append(store, decodeFileName(bytes.c_str()));
  }
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
  appendToFile(historyLineOfField(static_cast<int>(which), copy));
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
  appendToFile(historyLineOfCommand(command));
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

void keepHistoryIn(const Westring& path) {
  historyPath() = path;
}

void loadHistory(int mostCommands) {
  if (historyPath().empty()) return;
  const HistoryFile file(historyPath());
  std::string bytes;
  if (file.read(bytes) != 0) return;
  const auto most = static_cast<size_t>(std::max(mostCommands, 1));
  const HistoryContent content = readHistoryLines(bytes, most);
  fill(commandHistory(), content.commands);
  for (int number = 0; number < FieldHistoryCount; ++number) {
    fill(*fieldHistory(static_cast<FieldHistory>(number)), content.fields[number]);
  }
  if (content.commandLines <= most) return;
  static_cast<void>(file.rewrite([most](const std::string& now) -> std::optional<std::string> {
    const HistoryContent latest = readHistoryLines(now, most);
    if (latest.commandLines <= most) return std::nullopt;
    return historyText(latest);
  }));
}
