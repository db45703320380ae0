#include "search_dialogs/entry_list_box.h"

#include <utility>

#include "foundation/text_format.h"
#include "panels/picture/entry_text.h"

namespace {

constexpr int SizeWidth = 10, DateWidth = 8, TimeWidth = 6;
constexpr int PathColumn = 28;
constexpr wchar_t HiddenMark = 0x2591;

}  // namespace

EntryListBox::EntryListBox(Dialog& dialog, int x, int y, Group newGroup, int width, int rows,
                           const FFEntryStore& store, int* selected, Key::Code exitOnEnter,
                           std::function<void()> onNews)
    : ListBoxBase(dialog, x, y, newGroup, width, rows, store.count(), selected, exitOnEnter),
      store_(store),
      onNews_(std::move(onNews)) {}

bool EntryListBox::handleMessage(const Message& message) {
  if (message.kind != MessageKind::ListLength) return ListBoxBase::handleMessage(message);
  onNews_();
  return true;
}

void EntryListBox::setCount(int count) {
  ListBoxBase::handleMessage({.kind = MessageKind::ListLength, .value = count});
}

void EntryListBox::drawItem(int row, int item, unsigned char attr) {
  const FoundRow found = item < itemCount() ? store_.row(item) : FoundRow();
  putRow(row, found.valid() ? foundLine(*found.item, width() - PathColumn) : Westring(), attr);
}

Westring foundLine(const entry& item, int pathWidth) {
  const Westring path = shortenPath(item.name(), pathWidth);
  if (item.total == FoundMark::NotOpened) {
    return padRight(Westring(L"Error opening"), PathColumn) + path;
  }
  Westring size;
  if (item.isDirectory()) {
    size += CutMark;
    size += L"SUBDIR";
    size += CutMarkLeft;
  } else {
    size = sizeText(item, SizeWidth);
  }
  Westring line = padLeft(size, SizeWidth);
  line += L" ";
  line += padLeft(dateText(item.date), DateWidth);
  line += L" ";
  line += padLeft(timeText(item.time), TimeWidth);
  line += L" ";
  line += item.isHidden() ? HiddenMark : L' ';
  return line + path;
}
