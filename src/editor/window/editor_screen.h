#pragma once

#include "editor/window/edit_command.h"
#include "editor/window/text_editor.h"
#include "ui/key_bar_press.h"
#include "ui/screen.h"

// Runs an edit: gives keys to their commands and the mouse to what stands under it, and does what
// is due before and after each of them.
class EditorScreen : public Screen {
 public:
  explicit EditorScreen(CTextEditor& editor) : editor_(editor) {}

 protected:
  void draw() override;
  void onKey(Key::Code key, int shiftState) override;
  void onMouse(const MouseMessage& mouse) override;
  void onTimeOut() override;
  void onEnd() override;
  int waitMs() const override;

 private:
  enum class Repeat { Nothing, PageUp, PageDown, ScrollUp, ScrollDown };

  void afterInput();
  void performKey(Key::Code key, int shiftState);
  void afterCommand(BlockUse use, int shiftState, TextPlace anchor);
  void runBookmark(Key::Code key);

  void mouseInText(const MouseMessage& mouse, TextPlace anchor);
  void press(const MouseMessage& mouse, TextPlace anchor);
  void dragTo(const MouseMessage& mouse);
  void dragStep();
  void pointAt(const MouseMessage& mouse);
  void repeatStep();

  CTextEditor& editor_;
  KeyBarPress keyBar_;
  Repeat repeat_ = Repeat::Nothing;  // what goes on while a button is held
  bool selecting_ = false;           // the left button went down in the text
  MouseMessage dragged_;             // where it has come to
};
