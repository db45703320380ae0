#pragma once

#include "foundation/string_collections.h"
#include "ui/dialog_element.h"

// A scrolling selector. Subclasses say where the strings come from. A worker thread may change the
// list of an open dialog through Dialog::sendMessage (ListLength, ListContent).
class ListBoxBase : public DialogElement {
 public:
  // `selected` is the caller's and is kept equal to the cursor's entry; 0 in an empty list.
  ListBoxBase(Dialog& dialog, int x, int y, Group group, int width, int rows, int itemCount,
              int* selected, Key::Code exitOnEnter);

  bool handleMessage(const Message& message) override;
  ElementType type() const override { return ElementType::ListBox; }
  void draw() override;

  int itemCount() const { return itemCount_; }
  int topItem() const { return topItem_; }
  int cursorRow() const { return cursorRow_; }

 protected:
  // Paints a visible row with an entry, which lies past the end of the list for a blank row.
  virtual void drawItem(int row, int item, unsigned char attr) = 0;
  virtual bool handleKey(Key::Code key);
  void putRow(int row, const Westring& text, unsigned char attr);  // padded or cut to the width
  bool isSelected(int item) const { return item == topItem_ + cursorRow_; }
  int selectedItem() const { return topItem_ + cursorRow_; }
  int width() const { return width_; }
  void drawCursorRow();

 private:
  bool moveByKey(Key::Code key);
  void moveTo(int item);
  void pageDown();
  void pageUp();
  void storeAndDraw();
  void reconcile();
  void drawRow(int row);
  void setLength(int count);
  void enter();
  bool handleMouse(const Message& message);
  void clicked(const Message& message);
  void autoScroll(int step);
  bool wheel(int direction);

  int width_;
  int rows_;
  int itemCount_;
  int topItem_ = 0;
  int cursorRow_ = 0;
  int drawnTop_ = -1;  // the last paint; -1 forces a full one
  int drawnRow_ = -1;
  int* selected_;
  Key::Code exitOnEnter_;
};

// Over an array of strings in the console's code page, which stays the caller's.
class ListBoxString : public ListBoxBase {
 public:
  ListBoxString(Dialog& dialog, int x, int y, Group group, int width, int rows,
                const char* const* items, int count, int* selected, Key::Code exitOnEnter);

 protected:
  void drawItem(int row, int item, unsigned char attr) override;
  Westring itemText(int item) const;  // empty past the end

 private:
  const char* const* items_;
};

// Over a store of byte strings in the console's code page; the store's cursor stays where it is.
class ListBoxEstring : public ListBoxBase {
 public:
  ListBoxEstring(Dialog& dialog, int x, int y, Group group, int width, int rows,
                 const EstringStore* items, int* selected, Key::Code exitOnEnter);

 protected:
  void drawItem(int row, int item, unsigned char attr) override;

 private:
  const EstringStore* items_;
};

// Over a store of wide strings; the store's cursor stays where it is.
class ListBoxFnString : public ListBoxBase {
 public:
  ListBoxFnString(Dialog& dialog, int x, int y, Group group, int width, int rows,
                  const FnStringStore* items, int* selected, Key::Code exitOnEnter);

 protected:
  void drawItem(int row, int item, unsigned char attr) override;

 private:
  const FnStringStore* items_;
};
