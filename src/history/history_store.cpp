#include "history/history_store.h"

#include <algorithm>
#include <cwctype>
#include <string_view>
#include <unordered_map>

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

// Tells at once whether it holds a text, however many there are.
class CommandStore : public FnStringStore {
 public:
  CommandStore() = default;
  ~CommandStore() override { clear(); }

  // An equal text gives way to the new one.
  void addLast(const Westring& text) {
    buildIndex();
    if (const auto found = index_.find(text.data()); found != index_.end()) {
      int place = count() - 1;  // what is typed again was mostly typed lately
      while (at(place) != found->second) --place;
      remove();
    }
    append(*this, text);
    index_.emplace(last()->data(), last());
  }

 protected:
  void deleteEntry(Westring* item) override {
    index_.erase(item->data());
    delete item;
  }

 private:
  // Only when it is needed: a start has enough to do.
  void buildIndex() {
    if (!index_.empty()) return;
    for (int i = 0; i < count(); ++i) index_.emplace(peek(i)->data(), peek(i));
  }

  std::unordered_map<std::wstring_view, const Westring*> index_;  // of all texts, or empty
};

CommandStore& commandStore() {
  static CommandStore store;
  return store;
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
  return commandStore();
}

void addCommand(const Westring& text) {
  Westring command = ltrim(text);
  if (command.empty()) return;
  commandStore().addLast(command);
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
