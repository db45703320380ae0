#pragma once

#include <memory>
#include <vector>

#include "console/events.h"
#include "foundation/string_collections.h"
#include "foundation/threads.h"
#include "history/history_store.h"
#include "ui/win.h"

class Dialog;

enum class MessageKind : int {
  Key = 1,
  LeftPress = 2,
  LeftDoubleClick = 3,
  LeftRelease = 4,
  LeftDrag = 5,
  RightPress = 6,
  RightRelease = 7,
  Wheel = 8,        // code is the direction
  ListLength = 10,  // code is the new length
  ListContent = 11
};

struct Message {
  MessageKind kind = MessageKind::Key;
  int code = 0;
  int x = 0;  // interior coordinates
  int y = 0;
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

// One control of a dialog. Owned by the dialog.
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

  int index() const { return index_; }
  int x() const { return x_; }
  int y() const { return y_; }
  bool enabled = true;
  int hotKey = 0;
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

struct ButtonSpec {
  int exitCode;
  const char* text;
};

// A framed window of up to 100 controls, one of which has the focus. Controls edit the caller's
// variables in place, which must outlive the dialog. `run` returns the code that ended it: a
// button's exit code, 13, 27 or an exit key. Application thread; sendMessage may come from any
// thread.
class Dialog : public Win {
 public:
  static constexpr int MaxElements = 100;

  Dialog(int left, int top, int right, int bottom, int attr);
  ~Dialog() override;

  virtual bool canChangeFocus(int oldIndex, int& newIndex);
  virtual void focusChanged() {}

  // attr 0: the window's. x < 0: centred. The text is copied.
  int addText(int x, int y, const char* text, unsigned char attr = 0);
  int addText(int x, int y, const Westring& text, unsigned char attr = 0);
  int addButton(int x, int y, Group group, int exitCode, const char* text);
  // A row with two cells between the buttons; x < 0 centres it, y < 0 counts from the bottom.
  // Returns the index of the first.
  int addButtons(int x, int y, Group group, const std::vector<ButtonSpec>& buttons);
  int addOkCancel(int x, int y, Group group);
  int addString(int x, int y, Group group, Westring* text, int width, int maxLength,
                FieldHistory history = FieldHistory::None);
  int addInteger(int x, int y, Group group, int* value, int width, KeepFormat keepFormat,
                 FieldHistory history = FieldHistory::None);
  int addCheck(int x, int y, Group group, bool* value, const char* label,
               Label side = Label::Right);
  int addCheck3(int x, int y, Group group, unsigned char* value, const char* label,
                Label side = Label::Right);
  int addRadio(int x, int y, Group group, int* value, int myValue, const char* label);
  int addExitKey(int key);
  int addProgress(int x, int y, int width, const float* fraction);
  // List boxes (list_box.h); `selected` is kept equal to the cursor's item. `exitOnEnter`: at least
  // 1 the exit code of Enter and double click, 0 the dialog's default, -1 any key the list doesn't
  // use ends.
  int addList(int x, int y, Group group, int width, int rows, const char* const* items, int count,
              int* selected, int exitOnEnter);
  int addList(int x, int y, Group group, int width, int rows, EstringStore* items, int* selected,
              int exitOnEnter);
  int addList(int x, int y, Group group, int width, int rows, FnStringStore* items, int* selected,
              int exitOnEnter);
  int addColourSelector(int x, int y, Group group, int width, int rows, const char* const* items,
                        int count, unsigned char* attributes, int* selected, int exitOnEnter);
  // Any other control; the dialog takes it over. It must have been made for this dialog, just now.
  int add(std::unique_ptr<DialogElement> element);

  int run();
  // The hot character of element i stands at index i, 0 for none; the text is copied.
  void setHotChars(const char* chars, int count);
  void setFocus(int index);
  void redraw(int index);  // negative: all
  void setDefaultButton(int index);
  void setAttr(int slot, unsigned char attr);  // 0 text, 1 field, 2 focus
  void commitAll();
  bool sendMessage(int index, const Message& message);

  int elementCount() const { return static_cast<int>(elements_.size()); }
  DialogElement* element(int index) const { return elements_[index].get(); }
  int focus() const { return focus_; }
  int exitCode() const { return exitCode_; }
  void setExitCode(int code) { exitCode_ = code; }
  int defaultExit() const { return defaultExit_; }
  void setDefaultExit(int code) { defaultExit_ = code; }
  unsigned char textAttr() const { return textAttr_; }
  unsigned char fieldAttr() const { return fieldAttr_; }
  unsigned char focusAttr() const { return focusAttr_; }
  char hotCharOf(int index) const;
  int currentGroup() const { return currentGroup_; }
  void setCurrentGroup(int head) { currentGroup_ = head; }

 private:
  void readMessage(Message& message);
  void dispatch(const Message& message);
  void forgetButtons();  // releases whose presses went elsewhere don't count
  void settleFocus();
  int enterCode() const;
  void takeKey(int key);
  bool activateByKey(int key);
  void offerAsCharacter(int key);
  void offerMouse(const Message& message);
  bool offerTo(int index, const Message& message);
  void trackOutsideClick(const Message& message);
  int steppedIndex(int index, int step) const;
  int nextInGroup(int from, int step) const;
  void moveInGroup(int step);
  void moveBetweenGroups(int step);

  std::vector<std::unique_ptr<DialogElement>> elements_;
  int defaultExit_ = 0;
  int exitCode_ = 0;
  int focus_ = 0;
  int currentGroup_ = 0;
  unsigned char textAttr_;
  unsigned char fieldAttr_;
  unsigned char focusAttr_;
  std::vector<char> hotChars_;
  MutexSem lock_;
  bool leftDown_ = false;  // its press came in this run, so its release counts
  bool leftDownOutside_ =
      false;                // that press lay outside the window and nothing but drags followed
  bool rightDown_ = false;  // as leftDown_
};
