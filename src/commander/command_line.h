#pragma once

#include "foundation/westring.h"

// The line under the panels: its text, cursor and history stepping. Draws nothing.
class CommandLine {
 public:
  static constexpr int MaxLength = 511;  // characters

  enum class Direction { Older, Newer };

  const Westring& text() const { return text_; }
  bool empty() const { return text_.empty(); }
  int cursor() const { return cursor_; }
  void clear();
  void setText(const Westring& text);  // cut to MaxLength; the cursor goes to the end

  // Nothing when the result would be longer than MaxLength.
  bool insert(wchar_t character);
  bool insert(const Westring& text);

  void moveLeft();
  void moveRight();
  void moveHome() { cursor_ = 0; }
  void moveEnd() { cursor_ = text_.length(); }
  void moveWordLeft();
  void moveWordRight();
  void deleteWordLeft();
  void deleteWordRight();
  void deleteCharacter();
  void backspace();

  // Steps through the command history; the unfinished line comes back behind the oldest entry.
  void stepHistory(Direction direction);
  // The next history line that begins with the text left of the cursor takes the line's place; the
  // cursor stays. Looks at each item once.
  void completeFromHistory(Direction direction);

  // First visible character so that the cursor stands within `width` cells.
  int scrollFor(int width);

 private:
  static constexpr int ScrollRoom = 40;  // characters kept visible at the end of a long line
  void replace(int from, int to, const Westring& by);
  const Westring* historyItem(int index) const;

  Westring text_;
  int cursor_ = 0;
  int scroll_ = 0;
  int historyIndex_ = 0;  // 0: not stepping; 1 is the newest
  Westring unfinished_;
};
