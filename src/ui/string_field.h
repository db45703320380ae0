#pragma once

#include "history/history_store.h"
#include "ui/dialog_element.h"

// A line of the caller's text, `width` columns of it shown. The first printable key replaces the
// text as it stood; shifted cursor keys select; Alt-Down offers the field's history.
class StringField : public DialogElement {
 public:
  static constexpr int LongestText = 32767;

  // `maxLength` characters at most are typed or pasted; below 0: LongestText.
  StringField(Dialog& dialog, int x, int y, Group group, Westring* text, int width, int maxLength,
              FieldHistory history);
  ~StringField() override;  // commits, unless the dialog ended with Esc

  bool handleMessage(const Message& message) override;
  void activate() override;
  ElementType type() const override { return ElementType::StringField; }
  void draw() override;
  void commit() override;  // adds the text to the field's history
  void offerAnew() override { fresh_ = true; }

  int cursor() const { return cursor_; }
  int scroll() const { return scroll_; }

 protected:
  void setText(const Westring& text);
  Westring* text_;

 private:
  bool handleKey(Key::Code key);
  bool takeKey(Key::Code key);
  bool takeCharacter(Key::Code key);
  bool moveByKey(Key::Code key);
  void updateSelection(Key::Code key, int oldCursor);
  void clampToText();
  void scrollToCursor();
  int selectionStart() const;
  int selectionEnd() const;
  void removeSelection();
  void deleteForward();  // the selection, or else the character at the cursor
  void erase(int from, int to);
  void insert(const Westring& piece);
  void insertCharacter(wchar_t character);
  void empty();
  void copySelection() const;
  void paste();
  bool pressed(const Message& message);
  void placeCursor(const Message& message);
  bool openHistory();

  int width_;
  int maxLength_;
  int cursor_;
  int scroll_ = 0;
  bool quoteNext_ = false;
  bool fresh_ = true;
  bool selecting_ = false;
  int anchor_ = 0;  // the selection's end that stays; the cursor is the other
  FieldHistory history_;
};
