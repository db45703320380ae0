#pragma once

#include <functional>

#include "search/found_entries.h"
#include "ui/list_box.h"

// The list of what a search has found. A ListLength message, whatever its value, calls `onNews`,
// on the dialog's thread.
class EntryListBox : public ListBoxBase {
 public:
  EntryListBox(Dialog& dialog, int x, int y, Group group, int width, int rows,
               const FFEntryStore& store, int* selected, Key::Code exitOnEnter,
               std::function<void()> onNews);

  bool handleMessage(const Message& message) override;
  void setCount(int count);

 protected:
  void drawItem(int row, int item, unsigned char attr) override;

 private:
  const FFEntryStore& store_;
  std::function<void()> onNews_;
};

// The line of a result, its path cut to `pathWidth`. Pure.
Westring foundLine(const entry& item, int pathWidth);
