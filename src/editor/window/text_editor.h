#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "editor/document/document.h"
#include "editor/document/text_rules.h"
#include "editor/document/text_span.h"
#include "editor/document/undo.h"
#include "editor/text/text_place.h"
#include "editor/window/edited_file.h"
#include "editor/window/text_block.h"
#include "ui/win.h"

class EditorPainter;

// Which part of the text the screen shows, and where the cursor stands in it. Columns are display
// columns from the line's start.
struct EditorView {
  static constexpr int64_t NoColumn = -1;

  int64_t top = 0;   // the line in the first text row
  int64_t left = 0;  // the column in the screen's first one; a multiple of 4
  TextPlace cursor;
  int64_t wantedColumn = NoColumn;  // that vertical moves come back to
};

// How a change of the text is taken back.
enum class StepKind {
  Single,  // by itself
  Typed    // also together with what was typed just before and after it
};

// The document, the view and all else that lives for the length of one edit, with the operations
// that every command is made of. It knows no keys: commands are functions that take one of these
// (edit_command.h), and EditorScreen runs them. The first text row is row 1 of the screen, below
// the status line; the key bar is the last. Application thread.
class CTextEditor {
 public:
  explicit CTextEditor(const Westring& path);
  ~CTextEditor();
  CTextEditor(const CTextEditor&) = delete;
  CTextEditor& operator=(const CTextEditor&) = delete;

  // ---- what there is

  Document document;
  EditedFile file;
  EditorView view;
  TextBlock block;
  EditHistory history;  // what can be taken back or made again; the bookmarks
  bool isModified = false;
  bool stickyMark = false;  // movements mark without Shift
  bool quoteNext = false;   // the next key is text, whatever it is
  // The steps to be taken back come from an earlier edit, and the file has changed since.
  bool stepsAreForeign = false;

  TextPlace cursor() const { return view.cursor; }
  int64_t cursorColumn() const;  // from the line's start
  int columns() const { return columns_; }
  int textRows() const { return textRows_; }

  // ---- moving

  // The cursor goes there; the view follows as little as it must. The wanted column ends.
  void moveTo(TextPlace place);
  // The same to the character at a display column; `wantedColumn` is left alone.
  void moveToColumn(int64_t line, int64_t column);
  // A new top line; the cursor stays where it is in the text.
  void scrollTo(int64_t topLine);
  // The view sideways, so that the start of a span in one line shows, and its end if both fit.
  void makeVisible(TextPlace from, TextPlace to);
  // Before a key is read: the view sideways, so that the cursor shows.
  void scrollSideways();
  // After a load or a change of the screen: cursor and view where they are possible.
  void makeSafe();

  // ---- the block

  bool hasBlock() const { return block.active && !block.empty(); }
  void setBlock(TextPlace start, TextPlace end, TextBlock::CursorAt cursorAt);
  void dropBlock();  // what was marked isn't any more; the text stays
  // From the block's fixed end, or from `anchor` without one, to the cursor.
  void extendBlock(TextPlace anchor);
  TextSpan blockText() const;
  // What a text that comes in replaces: the block, or nothing at the cursor.
  TextRange replacedRange() const;

  // ---- changing the text

  // Replaces a span as one step that can be taken back: the one way in which commands change the
  // text. An active block is dropped, the cursor goes behind what was put in unless told otherwise,
  // what could be redone can't be any more. Nothing happens when nothing would.
  void change(TextPlace from, TextPlace to, const TextSpan& inserted,
              StepKind kind = StepKind::Single, std::optional<TextPlace> cursorAfter = {});
  // What is typed from now on is a command of its own.
  void endTyping() { typing_ = 0; }
  // `change` of the replaced range.
  void changeBlock(const TextSpan& inserted, StepKind kind = StepKind::Single);
  // `change` to nothing, unless that would join lines to one that is too long.
  void deleteSpan(TextPlace from, TextPlace to);
  // Whether `count` characters may come into a line in the place of the replaced range.
  bool hasRoomFor(int64_t count) const;
  // A text whose lines end as those of the document do.
  TextSpan spanOf(std::wstring_view text) const;

  // ---- the picture

  void redraw();                                  // all of it, at the next `paint`
  void redrawFrom(int64_t line);                  // a text that changed there
  void redrawLines(int64_t first, int64_t last);  // whose text is the same
  void paint();                                   // brings the cells up to date now
  EditorPainter& painter() { return *painter_; }

  // ---- the end

  void end() { hasEnded_ = true; }  // nothing more is asked
  bool hasEnded() const { return hasEnded_; }

 private:
  void showCursorRow();
  int64_t typedCommand(TextPlace before);

  int columns_;
  int textRows_;
  Win window_;
  std::unique_ptr<EditorPainter> painter_;
  bool hasEnded_ = false;
  int64_t typing_ = 0;  // the command of the run of typed characters
};
