#pragma once

#include "ui/list_box.h"

// A list whose entries show themselves in their own attribute. F and B step the foreground and the
// background of the selected entry, with Shift backwards, in the caller's byte array. Needs a free
// column on both sides for its marks.
class ColourSelector : public ListBoxString {
 public:
  ColourSelector(Dialog& dialog, int x, int y, Group group, int width, int rows,
                 const char* const* items, int count, unsigned char* attributes, int* selected,
                 Key::Code exitOnEnter);

  ElementType type() const override { return ElementType::ColourSelector; }

 protected:
  void drawItem(int row, int item, unsigned char attr) override;
  bool handleKey(Key::Code key) override;

 private:
  unsigned char* attributes_;
};

// What a key of the selector makes of an attribute; the attribute itself for any other key.
unsigned char steppedAttribute(unsigned char attr, Key::Code key);
