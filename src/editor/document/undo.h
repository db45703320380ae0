#pragma once

#include <array>
#include <cstdint>
#include <deque>

#include "editor/document/document.h"
#include "editor/text/file_status_store.h"

// One step that can be taken back.
struct UndoItem {
  TextSpan text;     // what the step removed
  TextPlace before;  // the cursor before and after the step
  TextPlace after;
  TextPlace from;  // what the step put in
  TextPlace to;
  // Steps in a row with the same number, other than 0, are one command: a run of typed characters
  // above 0, which count singly towards the limit of a stack; a replacement of all hits below 0,
  // whose steps count as one and are forgotten together.
  int64_t command = 0;
};

// The steps that can be taken back, or made again, the newest on top.
class TUndoStack {
 public:
  static constexpr int Limit = 1000;

  bool empty() const { return items_.empty(); }
  int64_t size() const { return static_cast<int64_t>(items_.size()); }
  const UndoItem& top() const { return items_.back(); }
  const UndoItem& operator[](int64_t index) const { return items_[static_cast<size_t>(index)]; }
  void push(UndoItem item);  // the oldest goes when there are too many
  void pop();
  void clear();
  void recode(const TextEncoding& from, const TextEncoding& to);

 private:
  std::deque<UndoItem> items_;
  int counted_ = 0;  // towards the limit
};

// Ten places that move with the text. Index -1: not set.
inline constexpr int64_t UnsetBookmark = -1;
using Bookmarks = std::array<TextPlace, HISTREC::BookmarkCount>;
Bookmarks unsetBookmarks();
// Moves the bookmarks by a step that was made.
void adjustBookmarks(Bookmarks& bookmarks, const UndoItem& step);

enum class UndoOutcome {
  Nothing,  // there was no step
  Moved,    // the cursor only went to the place of the step
  Done
};

// Both stacks of a document, and its bookmarks.
struct EditHistory {
  TUndoStack undo;
  TUndoStack redo;
  Bookmarks bookmarks = unsetBookmarks();

  // A step that was just made: nothing can be made again after it.
  void push(UndoItem step);
  // One step back, or forward again. A cursor that isn't at the place of the step only goes there.
  UndoOutcome undoStep(Document& document, TextPlace& cursor);
  UndoOutcome redoStep(Document& document, TextPlace& cursor);
  // A whole command at once, wherever the cursor is. When it is stopped, the rest of its steps stay
  // where they are.
  UndoOutcome undoCommand(Document& document, TextPlace& cursor, const StopAsked& stop = {});
  UndoOutcome redoCommand(Document& document, TextPlace& cursor, const StopAsked& stop = {});
  void clearSteps();
  // The document is read in another code page now: so are the texts of the steps. When a character
  // may take more than one byte in either page the steps end, since their places don't fit.
  void recode(const TextEncoding& from, const TextEncoding& to);

  // Numbers for UndoItem::command that no step has yet.
  int64_t newTypingRun() { return ++lastCommand; }
  int64_t newReplaceAll() { return -++lastCommand; }
  int64_t lastCommand = 0;
};

// The steps for a closed file that was written in `encoding`, in at most `mostBytes`; the oldest
// that don't fit are left out.
StoredUndo storeSteps(const EditHistory& history, const TextEncoding& encoding, size_t mostBytes);
// Replaces both stacks.
void restoreSteps(const StoredUndo& stored, EditHistory& history);
