#pragma once

#include "console/key_codes.h"
#include "foundation/westring.h"

class Dialog;

enum class MessageKind : int {
  Key = 1,
  LeftPress = 2,
  LeftDoubleClick = 3,
  LeftRelease = 4,
  LeftDrag = 5,
  RightPress = 6,
  RightRelease = 7,
  Wheel = 8,        // value is the direction
  ListLength = 10,  // value is the new length
  ListContent = 11
};

struct Message {
  MessageKind kind = MessageKind::Key;
  Key::Code key = {};
  int x = 0;  // interior coordinates
  int y = 0;
  int value = 0;
};

enum class ElementType : int {
  StaticText = 0,
  StringField = 5,
  PushButton = 6,
  RadioButton = 7,
  CheckBox = 8,
  CheckBox3S = 9,
  ListBox = 10,
  ColourSelector = 11,
  ExitKey = 12,
  ProgressIndicator = 13
};

enum class Group { Same, New };
enum class Label { Left, Right };
enum class KeepFormat { No, Yes };
enum class Focus { Lost, Gained };

// What keys and clicks in a list that end do; any other code is the exit code of Enter and of a
// double click.
namespace ListExit {
inline constexpr Key::Code DialogDefault{
    0};                                 // Enter and double click end with the dialog's default
inline constexpr Key::Code AnyKey{-1};  // also a single click, and any key the list doesn't use
}  // namespace ListExit

// One control of a dialog (dialog.h), which owns it. Only the dialog's thread calls it.
class DialogElement {
 public:
  DialogElement(Dialog& dialog, int x, int y, Group group);
  virtual ~DialogElement();
  DialogElement(const DialogElement&) = delete;
  DialogElement& operator=(const DialogElement&) = delete;

  virtual bool handleMessage(const Message& message);  // true when handled
  virtual void activate();                             // by a hot key: takes the focus
  virtual ElementType type() const = 0;
  virtual void focusNotify(Focus focus);
  virtual void draw() = 0;
  virtual void commit() {}
  virtual void offerAnew() {}  // what it holds was refused

  int index() const { return index_; }
  int x() const { return x_; }
  int y() const { return y_; }
  bool enabled = true;
  Key::Code hotKey;
  bool tabStop = false;
  int group = 0;       // index of the head of its group
  int groupFocus = 0;  // on a head: the member that last had the focus

 protected:
  bool focused() const;
  char hotChar() const;  // 0 when it has none
  // The message lies on this element's row, in its first `width` columns.
  bool isWithin(const Message& message, int width) const;
  void putLabel(int x, int y, const Westring& label);  // with its hot character highlighted
  // The text cursor: on column `x` of this element's row when focused, else out of sight.
  void showCursor(int x);
  Dialog& dialog_;

 private:
  int index_;
  int x_;
  int y_;
};

// Size of the text cursor in a focused control, percent of the cell.
inline constexpr int DialogCursorSize = 15;
