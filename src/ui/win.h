#pragma once

#include <vector>

#include "console/cell_string.h"
#include "console/console.h"

inline constexpr int NoFrame = -1;
inline constexpr int KeepAttr = -1;     // take the current text attribute, leave the interior alone
inline constexpr int DefaultAttr = -1;  // the window's own attribute
enum class Shadow { Allowed, None };

// A rectangle of the screen that remembers what lay beneath it and puts it back when it closes.
// Windows close in reverse order of opening. Output is relative to the interior's origin and
// clipped at the interior's left and right edge, so that the frame stays whole; rows -1 and
// innerHeight() reach the frame's own lines, for titles. A rectangle is moved and clipped into the
// screen. Byte text is in the console's code page. Application thread; a progress window belongs to
// its thread while it is open and uses only the wide forms, which leave the process-wide text state
// alone.
class Win {
 public:
  // left < 0: centred, `right` is the outer width. top < 0: placed by the fraction
  // (height - screen height) / top, `bottom` is the outer height. Inclusive screen cells otherwise.
  Win(int left, int top, int right, int bottom, int attr, int frameAttr,
      Shadow shadow = Shadow::Allowed);
  virtual ~Win();
  Win(const Win&) = delete;
  Win& operator=(const Win&) = delete;

  void putCells(int x, int y, const Cell* cells);
  void putCells(const Cell* cells);
  void put(int x, int y, const wchar_t* text, int attr = DefaultAttr);
  void put(int x, int y, const Westring& text, int attr = DefaultAttr);
  void put(int x, int y, const char* text, int attr = DefaultAttr);  // also moves the cursor
  void put(const wchar_t* text, int attr = DefaultAttr);             // at the text position
  void put(const char* text, int attr = DefaultAttr);
  void put(int x, int y, const CellString& text);
  void putCentred(int y, const wchar_t* text, int attr = DefaultAttr);
  void putCentred(int y, const char* text, int attr = DefaultAttr);
  void putWrapped(int x, int y, const wchar_t* text);
  void putWrapped(int x, int y, const char* utf8Text);
  // Text with the first occurrence of each of `hotKeys` highlighted.
  void putHotKeys(int x, int y, const char* text, const char* hotKeys, int attr = DefaultAttr);
  void putHotKeys(int x, int y, const wchar_t* text, const char* hotKeys, int attr = DefaultAttr);
  void clear();
  void clear(int topRows, int bottomRows);  // leaves these rows alone
  void clearToEndOfLine(int attr = DefaultAttr);
  void scroll(int x, int y, int w, int h, int n);  // positive up, negative down
  void setPos(int x, int y);
  void hide();    // what lies beneath shows
  void unhide();  // shows it as it was

  int left() const { return left_; }
  int top() const { return top_; }
  int right() const { return right_; }
  int bottom() const { return bottom_; }
  int originX() const { return originX_; }
  int originY() const { return originY_; }
  int innerWidth() const { return right_ - left_ + 1 - 2 * (originX_ - left_); }
  int innerHeight() const { return bottom_ - top_ + 1 - 2 * (originY_ - top_); }
  int curX() const { return curX_; }
  int curY() const { return curY_; }
  unsigned char attr() const { return attr_; }
  bool hasShadow() const { return hasShadow_; }
  bool hasFrame() const { return hasFrame_; }
  bool hidden() const { return hidden_; }
  bool contains(int screenX, int screenY) const;
  // Text on the frame itself, at the middle of the top row.
  void putFrameTitle(const char* text);

 protected:
  int savedWidth() const { return right_ - left_ + 1 + 2 * hasShadow_; }
  int savedHeight() const { return bottom_ - top_ + 1 + hasShadow_; }

 private:
  void place(int left, int top, int right, int bottom);
  void drawShadow();
  void drawFrame(unsigned char attr);
  int centredColumn(int length) const;
  void highlight(int x, int y, const Westring& text, const char* hotKeys, int attr);
  void exchangeWithScreen();  // what shows and what is kept

  std::vector<Cell> saved_;
  int left_ = 0, top_ = 0, right_ = 0, bottom_ = 0;
  int originX_ = 0, originY_ = 0;
  int curX_ = 0, curY_ = 0;
  unsigned char attr_ = 7;
  bool hasShadow_ = false;
  bool hasFrame_ = false;
  bool hidden_ = false;
};

unsigned char shadowAttr(unsigned char attr);
