#include "ui/string_field.h"

#include <algorithm>

#include "console/clipboard.h"
#include "ui/dialog.h"
#include "ui/word_motion.h"

namespace {

constexpr wchar_t HistoryArrow = 0x2193;
constexpr int HistoryRows = 6;
constexpr int FrameCells = 2;

unsigned char swappedNibbles(unsigned char attr) {
  return static_cast<unsigned char>(attr << 4 | attr >> 4);
}

bool isSelectingKey(Key::Code key) {
  switch (key) {
    case Key::ShiftHome:
    case Key::ShiftEnd:
    case Key::ShiftLeft:
    case Key::ShiftRight:
    case Key::CtrlShiftLeft:
    case Key::CtrlShiftRight:
      return true;
    default:
      return false;
  }
}

}  // namespace

StringField::StringField(Dialog& dialog, int x, int y, Group newGroup, Westring* text, int width,
                         int maxLength, FieldHistory history)
    : DialogElement(dialog, x, y, newGroup),
      text_(text),
      width_(std::max(width, 1)),
      maxLength_(maxLength < 0 ? LongestText : maxLength),
      cursor_(text->length()),
      history_(history) {}

StringField::~StringField() {
  const Key::Code ended = dialog_.exitCode();
  if (ended != Key::Esc && ended != Dialog::ProgramEnds) StringField::commit();
}

void StringField::commit() {
  if (history_ != FieldHistory::None && !text_->empty()) addField(history_, *text_);
}

void StringField::activate() {
  dialog_.setFocus(index());
}

bool StringField::handleMessage(const Message& message) {
  switch (message.kind) {
    case MessageKind::Key:
      return handleKey(message.key);
    case MessageKind::LeftPress:
      return pressed(message);
    case MessageKind::LeftRelease:
    case MessageKind::LeftDrag: {
      if (!focused() || !isWithin(message, width_)) return false;
      const int oldCursor = cursor_;
      placeCursor(message);
      updateSelection(Key::ShiftRight, oldCursor);
      fresh_ = false;
      draw();
      return true;
    }
    default:
      return false;
  }
}

bool StringField::pressed(const Message& message) {
  if (isWithin(message, width_)) {
    dialog_.setFocus(index());
    placeCursor(message);
    selecting_ = false;
    fresh_ = false;
    draw();
    return true;
  }
  const bool onArrow = message.y == y() && message.x == x() + width_;
  if (!onArrow || !fieldHistory(history_)) return false;
  dialog_.setFocus(index());
  return openHistory();
}

void StringField::placeCursor(const Message& message) {
  cursor_ = std::min(scroll_ + message.x - x(), text_->length());
}

bool StringField::handleKey(Key::Code key) {
  clampToText();
  const int oldCursor = cursor_;
  const bool handled = takeKey(key);
  if (handled) fresh_ = false;
  clampToText();
  updateSelection(key, oldCursor);
  return handled;
}

// Only cursor keys extend a selection: Shift-Delete and Shift-Insert cut and paste.
void StringField::updateSelection(Key::Code key, int oldCursor) {
  if (isSelectingKey(key)) {
    if (!selecting_) anchor_ = oldCursor;
    selecting_ = true;
  } else if (key != Key::ctrl('c') && key != Key::CtrlInsert) {
    selecting_ = false;
  }
}

bool StringField::takeKey(Key::Code key) {
  if (quoteNext_) {
    quoteNext_ = false;
    if (key.isCharacter()) {
      insertCharacter(key.character());
      return true;
    }
  }
  if (moveByKey(key)) return true;
  switch (key) {
    case Key::CtrlBackspace:
      erase(wordLeft(*text_, cursor_), cursor_);
      return true;
    case Key::CtrlDelete:
      erase(cursor_, wordRight(*text_, cursor_, configuredWordRightStop()));
      return true;
    case Key::Backspace:
      if (cursor_ > 0) erase(cursor_ - 1, cursor_);
      return true;
    case Key::Delete:
      deleteForward();
      return true;
    case Key::ctrl('c'):
    case Key::CtrlInsert:
      copySelection();
      return true;
    case Key::ctrl('x'):
    case Key::ShiftDelete:
      copySelection();
      removeSelection();
      return true;
    case Key::ctrl('v'):
    case Key::ShiftInsert:
      paste();
      return true;
    case Key::ctrl('q'):
      quoteNext_ = true;
      return true;
    case Key::AltDown:
      return openHistory();
    default:
      return takeCharacter(key);
  }
}

bool StringField::takeCharacter(Key::Code key) {
  if (!key.isText()) return false;
  insertCharacter(key.character());
  return true;
}

bool StringField::moveByKey(Key::Code key) {
  switch (key) {
    case Key::Home:
    case Key::ShiftHome:
      cursor_ = 0;
      return true;
    case Key::End:
    case Key::ShiftEnd:
      cursor_ = text_->length();
      return true;
    case Key::Left:
    case Key::ShiftLeft:
      --cursor_;
      return true;
    case Key::Right:
    case Key::ShiftRight:
      ++cursor_;
      return true;
    case Key::CtrlLeft:
    case Key::CtrlShiftLeft:
      cursor_ = wordLeft(*text_, cursor_);
      return true;
    case Key::CtrlRight:
    case Key::CtrlShiftRight:
      cursor_ = wordRight(*text_, cursor_, configuredWordRightStop());
      return true;
    default:
      return false;
  }
}

// The caller may change its text at any time.
void StringField::clampToText() {
  const int length = text_->length();
  cursor_ = std::clamp(cursor_, 0, length);
  anchor_ = std::clamp(anchor_, 0, length);
  scroll_ = std::clamp(scroll_, 0, length);
}

// A text that fits is shown whole, with room for the caret behind it.
void StringField::scrollToCursor() {
  if (text_->length() <= width_) {
    scroll_ = 0;
  } else if (cursor_ < scroll_) {
    scroll_ = cursor_;
  } else if (cursor_ >= scroll_ + width_) {
    scroll_ = cursor_ - width_ + 1;
  }
}

int StringField::selectionStart() const {
  return selecting_ ? std::min(anchor_, cursor_) : cursor_;
}

int StringField::selectionEnd() const {
  return selecting_ ? std::max(anchor_, cursor_) : cursor_;
}

void StringField::removeSelection() {
  erase(selectionStart(), selectionEnd());
  selecting_ = false;
}

void StringField::deleteForward() {
  if (selectionStart() < selectionEnd()) {
    removeSelection();
  } else {
    erase(cursor_, cursor_ + 1);
  }
}

void StringField::erase(int from, int to) {
  if (to > text_->length()) to = text_->length();
  if (from >= to) return;
  Westring result = left(*text_, from);
  result += text_->data() + to;
  *text_ = result;
  cursor_ = from;
}

void StringField::insert(const Westring& piece) {
  Westring result = left(*text_, cursor_);
  result += piece;
  result += text_->data() + cursor_;
  *text_ = result;
  cursor_ += piece.length();
}

void StringField::empty() {
  *text_ = L"";
  cursor_ = 0;
}

// The length counts with the selection still there: a full field loses the selection and gains
// nothing.
void StringField::insertCharacter(wchar_t character) {
  if (character == 0) return;
  if (fresh_) empty();
  const int length = text_->length();
  removeSelection();
  if (length < maxLength_) insert(Westring(character, 1));
}

void StringField::copySelection() const {
  if (selectionStart() == selectionEnd()) return;
  const int length = selectionEnd() - selectionStart();
  clipboardSetText(mid(*text_, selectionStart(), length));
}

void StringField::paste() {
  const Westring pasted = clipboardGetText();
  if (pasted.empty()) return;
  if (fresh_) empty();
  if (text_->length() + pasted.length() > maxLength_) return;
  removeSelection();
  insert(pasted);
}

void StringField::setText(const Westring& text) {
  const bool atEnd = cursor_ >= text_->length();
  *text_ = text;
  if (atEnd) cursor_ = text_->length();
}

void StringField::draw() {
  clampToText();
  scrollToCursor();
  const unsigned char attr = dialog_.fieldAttr();
  const int length = text_->length();
  std::vector<Cell> cells(width_ + 1, Cell{L' ', attr});
  for (int column = 0; column < width_ && scroll_ + column < length; ++column) {
    const int at = scroll_ + column;
    const bool selected = at >= selectionStart() && at < selectionEnd();
    cells[column] = {text_->data()[at], selected ? swappedNibbles(attr) : attr};
  }
  cells[width_].ch = 0;
  dialog_.putCells(x(), y(), cells.data());
  if (fieldHistory(history_)) {
    const wchar_t arrow[] = {HistoryArrow, 0};
    dialog_.put(x() + width_, y(), arrow);
  }
  showCursor(x() + cursor_ - scroll_);
}

bool StringField::openHistory() {
  FnStringStore* history = fieldHistory(history_);
  if (!history) return false;
  int selected = std::max(history->count() - 1, 0);
  const int listLeft = std::max(dialog_.originX() + x() - 1, 0);
  const int listTop = dialog_.originY() + y() + 1;
  Dialog list(listLeft, listTop, listLeft + width_ + FrameCells - 1,
              listTop + HistoryRows + FrameCells - 1, dialog_.attr());
  list.addList(0, 0, Group::New, width_, HistoryRows, history, &selected, Key::Enter);
  const bool chosen = list.run() == Key::Enter;
  const Westring* choice = chosen ? history->peek(selected) : nullptr;
  if (choice) {
    *text_ = left(*choice, maxLength_);
    cursor_ = text_->length();
    fresh_ = false;
    selecting_ = false;
  }
  return true;
}
