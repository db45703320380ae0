#include "ui/list_box.h"

#include <algorithm>

#include "options/colours.h"
#include "ui/dialog.h"
#include "ui/plain_elements.h"

ListBoxBase::ListBoxBase(Dialog& dialog, int x, int y, Group newGroup, int width, int rows,
                         int itemCount, int* selected, Key::Code exitOnEnter)
    : DialogElement(dialog, x, y, newGroup),
      width_(std::max(width, 1)),
      rows_(std::max(rows, 1)),
      itemCount_(itemCount),
      selected_(selected),
      exitOnEnter_(exitOnEnter) {
  *selected_ = std::clamp(*selected_, 0, std::max(itemCount_ - 1, 0));
  cursorRow_ = std::min(*selected_, rows_ - 1);
  topItem_ = *selected_ - cursorRow_;
}

bool ListBoxBase::handleMessage(const Message& message) {
  switch (message.kind) {
    case MessageKind::Key:
      return handleKey(message.key);
    case MessageKind::ListLength:
      setLength(message.value);
      return true;
    case MessageKind::ListContent:
      drawnTop_ = -1;
      draw();
      return true;
    case MessageKind::Wheel:
      return enabled && wheel(message.value);
    default:
      return enabled && handleMouse(message);
  }
}

bool ListBoxBase::handleKey(Key::Code key) {
  if (moveByKey(key)) {
    storeAndDraw();
    return true;
  }
  if (key == Key::Enter) {
    enter();
    return true;
  }
  if (exitOnEnter_ != ListExit::AnyKey) return false;
  dialog_.setExitCode(key);
  return true;
}

bool ListBoxBase::moveByKey(Key::Code key) {
  switch (key) {
    case Key::Up:
      moveTo(selectedItem() - 1);
      return true;
    case Key::Down:
      moveTo(selectedItem() + 1);
      return true;
    case Key::PageUp:
      pageUp();
      return true;
    case Key::PageDown:
      pageDown();
      return true;
    case Key::Home:
      moveTo(0);
      return true;
    case Key::End:
      topItem_ = std::max(itemCount_ - rows_, 0);
      moveTo(itemCount_ - 1);
      return true;
    default:
      return false;
  }
}

// The page follows the cursor by as little as it must.
void ListBoxBase::moveTo(int item) {
  item = std::clamp(item, 0, std::max(itemCount_ - 1, 0));
  if (item < topItem_) topItem_ = item;
  if (item >= topItem_ + rows_) topItem_ = item - rows_ + 1;
  cursorRow_ = item - topItem_;
}

void ListBoxBase::pageUp() {
  if (topItem_ < rows_) {
    topItem_ = 0;
    cursorRow_ = 0;
  } else {
    topItem_ -= rows_;
  }
}

void ListBoxBase::pageDown() {
  const int target = std::clamp(selectedItem() + rows_, 0, std::max(itemCount_ - 1, 0));
  topItem_ = std::clamp(topItem_ + rows_, 0, std::max(itemCount_ - rows_, 0));
  cursorRow_ = target - topItem_;
}

void ListBoxBase::enter() {
  if (exitOnEnter_ != ListExit::DialogDefault && exitOnEnter_ != ListExit::AnyKey) {
    dialog_.setExitCode(exitOnEnter_);
  } else {
    const bool hasDefault = dialog_.defaultExit() != Key::NoKey;
    dialog_.setExitCode(hasDefault ? dialog_.defaultExit() : Key::Enter);
  }
}

void ListBoxBase::storeAndDraw() {
  *selected_ = selectedItem();
  draw();
}

void ListBoxBase::setLength(int count) {
  const bool grownBelow = count >= itemCount_ && itemCount_ >= topItem_ + rows_;
  itemCount_ = std::max(count, 0);
  if (!grownBelow) drawnTop_ = -1;
  draw();
}

// Brings page and cursor in line with the caller's variable, which it may have changed.
void ListBoxBase::reconcile() {
  *selected_ = std::clamp(*selected_, 0, std::max(itemCount_ - 1, 0));
  if (selectedItem() == *selected_) return;
  cursorRow_ = *selected_ - topItem_;
  if (cursorRow_ < 0) {
    topItem_ = *selected_;
    cursorRow_ = 0;
  } else if (cursorRow_ >= rows_) {
    topItem_ = *selected_ - rows_ + 1;
    cursorRow_ = *selected_ - topItem_;
  }
}

void ListBoxBase::draw() {
  BatchScope batch;
  reconcile();
  if (topItem_ == drawnTop_) {
    if (drawnRow_ != cursorRow_) drawRow(drawnRow_);
    drawRow(cursorRow_);
  } else {
    for (int row = 0; row < rows_; ++row) drawRow(row);
  }
  drawnTop_ = topItem_;
  drawnRow_ = cursorRow_;
}

void ListBoxBase::drawCursorRow() {
  drawRow(cursorRow_);
}

void ListBoxBase::drawRow(int row) {
  const bool atCursor = row == cursorRow_ && focused();
  drawItem(row, topItem_ + row, colourOf(atCursor ? Colour::Highlight : Colour::Panel));
}

void ListBoxBase::putRow(int row, const Westring& text, unsigned char attr) {
  dialog_.put(x(), y() + row, padRight(text, width_), attr);
}

ListBoxString::ListBoxString(Dialog& dialog, int x, int y, Group newGroup, int width, int rows,
                             const char* const* items, int count, int* selected,
                             Key::Code exitOnEnter)
    : ListBoxBase(dialog, x, y, newGroup, width, rows, count, selected, exitOnEnter),
      items_(items) {}

Westring ListBoxString::itemText(int item) const {
  return item < itemCount() ? dialogLabel(items_[item]) : Westring();
}

void ListBoxString::drawItem(int row, int item, unsigned char attr) {
  putRow(row, itemText(item), attr);
}

ListBoxEstring::ListBoxEstring(Dialog& dialog, int x, int y, Group newGroup, int width, int rows,
                               const EstringStore* items, int* selected, Key::Code exitOnEnter)
    : ListBoxBase(dialog, x, y, newGroup, width, rows, items->count(), selected, exitOnEnter),
      items_(items) {}

void ListBoxEstring::drawItem(int row, int item, unsigned char attr) {
  const Estring* text = item < itemCount() ? items_->peek(item) : nullptr;
  putRow(row, text ? dialogLabel(text->data()) : Westring(), attr);
}

ListBoxFnString::ListBoxFnString(Dialog& dialog, int x, int y, Group newGroup, int width, int rows,
                                 const FnStringStore* items, int* selected, Key::Code exitOnEnter)
    : ListBoxBase(dialog, x, y, newGroup, width, rows, items->count(), selected, exitOnEnter),
      items_(items) {}

void ListBoxFnString::drawItem(int row, int item, unsigned char attr) {
  const Westring* text = item < itemCount() ? items_->peek(item) : nullptr;
  putRow(row, text ? *text : Westring(), attr);
}
