#include "editor/document/undo.h"

#include <algorithm>

#include "editor/text/code_page_codec.h"

void TUndoStack::push(UndoItem item) {
  if (items_.empty() || item.command >= 0 || items_.back().command != item.command) ++counted_;
  items_.push_back(std::move(item));
  while (counted_ > Limit) {
    const int64_t command = items_.front().command;
    do items_.pop_front();
    while (command < 0 && !items_.empty() && items_.front().command == command);
    --counted_;
  }
}

void TUndoStack::pop() {
  const int64_t command = items_.back().command;
  items_.pop_back();
  if (items_.empty() || command >= 0 || items_.back().command != command) --counted_;
}

void TUndoStack::clear() {
  items_.clear();
  counted_ = 0;
}

void TUndoStack::recode(const TextEncoding& from, const TextEncoding& to) {
  for (UndoItem& item : items_) item.text = item.text.recoded(from, to);
}

Bookmarks unsetBookmarks() {
  Bookmarks bookmarks;
  bookmarks.fill({0, UnsetBookmark});
  return bookmarks;
}

void adjustBookmarks(Bookmarks& bookmarks, const UndoItem& step) {
  const int64_t removedLines = step.text.lineEnds() + 1;
  for (TextPlace& mark : bookmarks) {
    if (mark.index == UnsetBookmark) continue;
    if (mark.line > step.from.line) {
      mark.line += step.to.line + 1 - step.from.line - removedLines;
      // One inside what was removed goes no higher than where that stood.
      if (mark.line < step.from.line) mark.line = step.from.line;
    } else if (mark.line == step.from.line && mark.index > step.from.index) {
      mark.line = std::max(step.to.line + 1 - removedLines, step.from.line);
      mark.index += step.to.index - step.from.index - step.text.lastLength();
      mark.index = std::max<int64_t>(mark.index, 0);
    }
  }
}

namespace {
// The text of the step goes back where it was; what it put in becomes the text of the inverse.
UndoItem takeBack(Document& document, const UndoItem& step) {
  UndoItem inverse;
  inverse.before = step.after;
  inverse.after = step.before;
  inverse.command = step.command;
  inverse.from = document.clamped(step.from);
  const TextPlace to = std::max(document.clamped(step.to), inverse.from);
  Document::Replaced replaced = document.replace(inverse.from, to, step.text);
  inverse.text = std::move(replaced.removed);
  inverse.to = replaced.end;
  return inverse;
}

void moveStep(Document& document, TextPlace& cursor, Bookmarks& bookmarks, TUndoStack& source,
              TUndoStack& target) {
  UndoItem inverse = takeBack(document, source.top());
  cursor = document.clamped(inverse.after);
  adjustBookmarks(bookmarks, inverse);
  source.pop();
  target.push(std::move(inverse));
}

UndoOutcome oneStep(Document& document, TextPlace& cursor, Bookmarks& bookmarks, TUndoStack& source,
                    TUndoStack& target) {
  if (source.empty()) return UndoOutcome::Nothing;
  const TextPlace place = document.clamped(source.top().after);
  if (cursor != place) {
    cursor = place;
    return UndoOutcome::Moved;
  }
  moveStep(document, cursor, bookmarks, source, target);
  return UndoOutcome::Done;
}

constexpr int64_t StepsBetweenLooks = 256;
constexpr int64_t LongLineLength = 65536;

UndoOutcome oneCommand(Document& document, TextPlace& cursor, Bookmarks& bookmarks,
                       TUndoStack& source, TUndoStack& target, const StopAsked& stop) {
  if (source.empty()) return UndoOutcome::Nothing;
  const int64_t command = source.top().command;
  int64_t steps = 0;
  bool isStopped = false;
  do {
    const int64_t length = document.lineLength(source.top().from.line);
    moveStep(document, cursor, bookmarks, source, target);
    // A step in a line as long as a file moves all of it.
    isStopped = (++steps % StepsBetweenLooks == 0 || length > LongLineLength) && stop && stop();
  } while (!isStopped && command != 0 && !source.empty() && source.top().command == command);
  return UndoOutcome::Done;
}
}  // namespace

void EditHistory::push(UndoItem step) {
  adjustBookmarks(bookmarks, step);
  redo.clear();
  undo.push(std::move(step));
}

UndoOutcome EditHistory::undoStep(Document& document, TextPlace& cursor) {
  return oneStep(document, cursor, bookmarks, undo, redo);
}
UndoOutcome EditHistory::redoStep(Document& document, TextPlace& cursor) {
  return oneStep(document, cursor, bookmarks, redo, undo);
}
UndoOutcome EditHistory::undoCommand(Document& document, TextPlace& cursor, const StopAsked& stop) {
  return oneCommand(document, cursor, bookmarks, undo, redo, stop);
}
UndoOutcome EditHistory::redoCommand(Document& document, TextPlace& cursor, const StopAsked& stop) {
  return oneCommand(document, cursor, bookmarks, redo, undo, stop);
}

void EditHistory::recode(const TextEncoding& from, const TextEncoding& to) {
  const auto isSingleByte = [](const TextEncoding& encoding) {
    return CodePageCodec::of(resolvedPage(encoding.page)).table() != nullptr;
  };
  if (!isSingleByte(from) || !isSingleByte(to)) {
    clearSteps();
    return;
  }
  undo.recode(from, to);
  redo.recode(from, to);
}

void EditHistory::clearSteps() {
  undo.clear();
  redo.clear();
}

namespace {
// The newest steps that `room` has bytes for, oldest first.
std::vector<StoredUndoItem> storeStack(const TUndoStack& stack, size_t& room) {
  std::vector<StoredUndoItem> items;
  for (int64_t i = stack.size() - 1; i >= 0; --i) {
    const UndoItem& item = stack[i];
    if (item.text.bytes() > room) break;
    StoredUndoItem copy{item.text.stored(), item.before, item.after,
                        item.from,          item.to,     item.command};
    const size_t bytes = copy.text.size() + sizeof copy;
    if (bytes > room) break;
    room -= bytes;
    items.push_back(std::move(copy));
  }
  std::reverse(items.begin(), items.end());
  return items;
}

void restoreStack(const std::vector<StoredUndoItem>& items, TUndoStack& stack,
                  int64_t& lastCommand) {
  stack.clear();
  for (const StoredUndoItem& item : items) {
    lastCommand = std::max({lastCommand, item.group, -item.group});
    stack.push({TextSpan::fromStored(item.text), item.before, item.after, item.rangeStart,
                item.rangeEnd, item.group});
  }
}
}  // namespace

StoredUndo storeSteps(const EditHistory& history, const TextEncoding& encoding, size_t mostBytes) {
  StoredUndo steps;
  steps.encoding = encoding;
  steps.undo = storeStack(history.undo, mostBytes);
  steps.redo = storeStack(history.redo, mostBytes);
  return steps;
}

void restoreSteps(const StoredUndo& steps, EditHistory& history) {
  restoreStack(steps.undo, history.undo, history.lastCommand);
  restoreStack(steps.redo, history.redo, history.lastCommand);
}
