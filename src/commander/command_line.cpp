#include "commander/command_line.h"

#include <algorithm>

#include "foundation/fold.h"
#include "history/history_store.h"
#include "ui/word_motion.h"

void CommandLine::clear() {
  text_ = L"";
  cursor_ = 0;
  scroll_ = 0;
  historyIndex_ = 0;
}

void CommandLine::setText(const Westring& text) {
  text_ = left(text, MaxLength);
  cursor_ = text_.length();
}

bool CommandLine::insert(wchar_t character) {
  return insert(Westring(character, 1));
}

bool CommandLine::insert(const Westring& text) {
  if (text_.length() + text.length() > MaxLength) return false;
  replace(cursor_, cursor_, text);
  cursor_ += text.length();
  return true;
}

void CommandLine::replace(int from, int to, const Westring& by) {
  Westring head = left(text_, from);
  Westring tail = right(text_, text_.length() - to);
  text_ = head + by + tail;
}

void CommandLine::moveLeft() {
  cursor_ = std::max(0, cursor_ - 1);
}

void CommandLine::moveRight() {
  cursor_ = std::min(text_.length(), cursor_ + 1);
}

void CommandLine::moveWordLeft() {
  cursor_ = wordLeft(text_, cursor_);
}

void CommandLine::moveWordRight() {
  cursor_ = wordRight(text_, cursor_, configuredWordRightStop());
}

void CommandLine::deleteWordLeft() {
  int from = wordLeft(text_, cursor_);
  replace(from, cursor_, L"");
  cursor_ = from;
}

void CommandLine::deleteWordRight() {
  replace(cursor_, wordRight(text_, cursor_, configuredWordRightStop()), L"");
}

void CommandLine::deleteCharacter() {
  if (cursor_ < text_.length()) replace(cursor_, cursor_ + 1, L"");
}

void CommandLine::backspace() {
  if (cursor_ == 0) return;
  replace(cursor_ - 1, cursor_, L"");
  --cursor_;
}

const Westring* CommandLine::historyItem(int index) const {
  const FnStringStore& store = commandHistory();
  return store.peek(store.count() - index);
}

void CommandLine::stepHistory(Direction direction) {
  int count = commandHistory().count();
  if (count == 0) return;
  if (historyIndex_ == 0) unfinished_ = text_;
  int places = count + 1;  // the unfinished line is one of them
  int step = direction == Direction::Older ? 1 : -1;
  historyIndex_ = (std::min(historyIndex_, count) + step + places) % places;
  const Westring* item = historyItem(historyIndex_);
  setText(historyIndex_ == 0 || !item ? unfinished_ : *item);
}

void CommandLine::completeFromHistory(Direction direction) {
  int count = commandHistory().count();
  if (count == 0) return;
  int step = direction == Direction::Older ? 1 : -1;
  int start = std::min(historyIndex_, count);
  for (int i = 1; i <= count; ++i) {
    // Over the items 1..count only; from outside, the walk begins at the near end.
    int index = start == 0 ? (step > 0 ? i : count + 1 - i)
                           : (start - 1 + step * i + 2 * count) % count + 1;
    const Westring* item = historyItem(index);
    if (!item || item->length() < cursor_) continue;
    Westring head = left(*item, cursor_);
    if (compareNoCase(head.data(), left(text_, cursor_).data()) != 0) continue;
    if (historyIndex_ == 0) unfinished_ = text_;
    historyIndex_ = index;
    text_ = left(*item, MaxLength);
    return;
  }
}

int CommandLine::scrollFor(int width) {
  cursor_ = std::min(cursor_, text_.length());
  scroll_ = std::max(0, std::min(scroll_, text_.length() - ScrollRoom));
  if (scroll_ > cursor_) scroll_ = cursor_;
  if (cursor_ - scroll_ >= width) scroll_ = cursor_ - width + 1;
  return scroll_;
}
