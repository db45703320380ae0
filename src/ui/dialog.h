#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "foundation/string_collections.h"
#include "foundation/threads.h"
#include "history/history_store.h"
#include "ui/dialog_element.h"
#include "ui/input_loop.h"
#include "ui/win.h"

struct ButtonSpec {
  Key::Code exitCode;
  const char* text;
};

// A framed window of up to 100 controls, one of which has the focus. Controls edit the caller's
// variables in place, which must outlive the dialog. `run` returns the code that ended it: a
// button's exit code, Key::Enter, Key::Esc, an exit key, or ProgramEnds, at which nothing is done
// and nothing more is asked. Belongs to the thread that makes it; sendMessage may come from any
// thread.
class Dialog : public Win {
 public:
  static constexpr int MaxElements = 100;
  static constexpr Key::Code ProgramEnds{-2};

  Dialog(int left, int top, int right, int bottom, int attr);
  ~Dialog() override;

  virtual bool canChangeFocus(int oldIndex, int& newIndex);
  virtual void focusChanged() {}

  // attr 0: the window's. x < 0: centred. The text is copied.
  int addText(int x, int y, const char* text, unsigned char attr = 0);
  int addText(int x, int y, const Westring& text, unsigned char attr = 0);
  int addButton(int x, int y, Group group, Key::Code exitCode, const char* text);
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
  int addExitKey(Key::Code key);
  int addProgress(int x, int y, int width, const float* fraction);
  // List boxes (list_box.h); `selected` is kept equal to the cursor's item. `exitOnEnter`: a
  // ListExit, or the exit code of Enter and double click.
  int addList(int x, int y, Group group, int width, int rows, const char* const* items, int count,
              int* selected, Key::Code exitOnEnter);
  int addList(int x, int y, Group group, int width, int rows, EstringStore* items, int* selected,
              Key::Code exitOnEnter);
  int addList(int x, int y, Group group, int width, int rows, FnStringStore* items, int* selected,
              Key::Code exitOnEnter);
  int addColourSelector(int x, int y, Group group, int width, int rows, const char* const* items,
                        int count, unsigned char* attributes, int* selected, Key::Code exitOnEnter);
  // Any other control; the dialog takes it over. It must have been made for this dialog, just now.
  int add(std::unique_ptr<DialogElement> element);

  Key::Code run();
  // The hot character of element i stands at index i, 0 for none; the text is copied.
  void setHotChars(const char* chars, int count);
  void setFocus(int index);
  // The caller has refused what this element holds: it gets the focus, and the first key that is
  // typed into a field replaces its text as it did in the beginning.
  void askAgain(int index);
  void redraw(int index);  // negative: all
  void setDefaultButton(int index);
  void setAttr(int slot, unsigned char attr);  // 0 text, 1 field, 2 focus
  void commitAll();
  // Passes a message to an element and returns its answer. From another thread than the dialog's it
  // waits for nobody: the message is handed over and the answer is true. The run loop passes it on
  // before its next wait, so never while a control runs a window of its own. Of the messages about
  // a list that weren't passed on yet the newest of each kind counts.
  bool sendMessage(int index, const Message& message);

  // For a control that waits by itself: the run loop takes this input before its next wait.
  void giveBack(const Input& input) { givenBack_ = input; }

  int elementCount() const { return static_cast<int>(elements_.size()); }
  DialogElement* element(int index) const { return elements_[index].get(); }
  int focus() const { return focus_; }
  Key::Code exitCode() const { return exitCode_; }
  void setExitCode(Key::Code code) { exitCode_ = code; }
  Key::Code defaultExit() const { return defaultExit_; }
  void setDefaultExit(Key::Code code) { defaultExit_ = code; }
  unsigned char textAttr() const { return textAttr_; }
  unsigned char fieldAttr() const { return fieldAttr_; }
  unsigned char focusAttr() const { return focusAttr_; }
  char hotCharOf(int index) const;
  int currentGroup() const { return currentGroup_; }
  void setCurrentGroup(int head) { currentGroup_ = head; }

 private:
  Input waitForInput();
  void takeInput(const Input& input);
  void dispatch(const Message& message);
  bool deliver(int index, const Message& message);
  void handOver(int index, const Message& message);
  void passOnHandedOver();
  void forgetButtons();  // releases whose presses went elsewhere don't count
  void settleFocus();
  void drawFocused();
  Key::Code enterCode() const;
  void takeKey(Key::Code key);
  bool activateByKey(Key::Code key);
  void offerAsCharacter(Key::Code key);
  void offerMouse(const Message& message);
  bool offerTo(int index, const Message& message);
  void trackOutsideClick(const Message& message);
  int steppedIndex(int index, int step) const;
  int nextInGroup(int from, int step) const;
  void moveInGroup(int step);
  void moveBetweenGroups(int step);

  std::vector<std::unique_ptr<DialogElement>> elements_;
  Key::Code defaultExit_;  // NoKey without buttons
  Key::Code exitCode_;     // NoKey while the dialog runs
  int focus_ = 0;
  int currentGroup_ = 0;
  unsigned char textAttr_;
  unsigned char fieldAttr_;
  unsigned char focusAttr_;
  std::vector<char> hotChars_;
  struct HandedOver {
    int index;
    Message message;
  };
  const pthread_t ownThread_ = pthread_self();
  MutexSem lock_;                       // guards handedOver_, held for moments only
  std::vector<HandedOver> handedOver_;  // from other threads, the oldest first
  std::optional<Input> givenBack_;
  bool leftDown_ = false;  // its press came in this run, so its release counts
  bool leftDownOutside_ =
      false;                // that press lay outside the window and nothing but drags followed
  bool rightDown_ = false;  // as leftDown_
};
