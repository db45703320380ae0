#include "ui/dialog.h"

#include <utility>

#include "console/text_state.h"
#include "foundation/fold.h"
#include "options/colours.h"
#include "ui/help_window.h"
#include "ui/input_loop.h"
#include "ui/push_button.h"

namespace {

constexpr int LastByteKey = 0xFF;
constexpr unsigned char FieldSlot = 1, FocusSlot = 2;

Dialog* running = nullptr;  // the innermost dialog that runs; application thread only

bool isExtended(Key::Code key) {
  return key.has(Key::ExtendedKey) && !key.has(Key::WideCharacter);
}

// False for a mouse message that means nothing in a dialog.
bool translateMouse(const MouseMessage& mouse, Message& message) {
  switch (mouse.kind) {
    case MouseKind::LeftPress:
      message.kind = MessageKind::LeftPress;
      break;
    case MouseKind::RightPress:
      message.kind = MessageKind::RightPress;
      break;
    case MouseKind::LeftDrag:
      message.kind = MessageKind::LeftDrag;
      break;
    case MouseKind::LeftDoubleClick:
      message.kind = MessageKind::LeftDoubleClick;
      break;
    case MouseKind::LeftRelease:
      message.kind = MessageKind::LeftRelease;
      break;
    case MouseKind::RightRelease:
      message.kind = MessageKind::RightRelease;
      break;
    case MouseKind::Wheel:
      message.kind = MessageKind::Wheel;
      break;
    case MouseKind::RightDrag:
      return false;
  }
  message.value = mouse.wheel;
  message.x = mouse.x;
  message.y = mouse.y;
  return true;
}

}  // namespace

Dialog::Dialog(int left, int top, int right, int bottom, int attr)
    : Win(left, top, right, bottom, attr, attr),
      textAttr_(this->attr()),
      fieldAttr_(colourOf(Colour::InputFields)),
      focusAttr_(colourOf(Colour::InputFields)) {}

Dialog::~Dialog() {
  elements_.clear();
  setCursorShape(0);
}

bool Dialog::canChangeFocus(int, int&) {
  return true;
}

Key::Code Dialog::run() {
  exitCode_ = Key::NoKey;
  Dialog* const outer = std::exchange(running, this);
  forgetButtons();
  setCursorShape(0);
  if (elements_.empty()) addExitKey(Key::Esc);
  while (exitCode_ == Key::NoKey) {
    passOnHandedOver();
    if (exitCode_ == Key::NoKey) drawFocused();
    if (exitCode_ == Key::NoKey) takeInput(waitForInput());
  }
  running = outer;
  if (outer) outer->forgetButtons();
  return exitCode_;
}

Input Dialog::waitForInput() {
  const std::optional<Input> earlier = std::exchange(givenBack_, std::nullopt);
  return earlier ? *earlier : nextInput();
}

void Dialog::drawFocused() {
  BatchScope batch;
  settleFocus();
  elements_[focus_]->draw();
}

void Dialog::forgetButtons() {
  leftDown_ = leftDownOutside_ = rightDown_ = false;
}

void Dialog::settleFocus() {
  const int wanted = elements_[elements_[focus_]->group]->groupFocus;
  if (wanted != focus_) setFocus(wanted);
  if (!elements_[focus_]->enabled) moveInGroup(1);
  if (!elements_[focus_]->enabled) moveBetweenGroups(1);
}

void Dialog::takeInput(const Input& input) {
  Message message;
  switch (input.kind) {
    case Input::Kind::Key:
      message.key = input.key;
      return dispatch(message);
    case Input::Kind::Mouse:
      if (!translateMouse(input.mouse, message)) return;
      message.x -= originX();
      message.y -= originY();
      return dispatch(message);
    case Input::Kind::End:
      exitCode_ = ProgramEnds;
      return;
    case Input::Kind::Shift:
    case Input::Kind::TimeOut:
      return;
  }
}

void Dialog::dispatch(const Message& message) {
  switch (message.kind) {
    case MessageKind::Key:
      leftDownOutside_ = false;
      if (!elements_[focus_]->handleMessage(message)) takeKey(message.key);
      break;
    case MessageKind::RightPress:
      rightDown_ = true;
      break;
    case MessageKind::RightRelease:
      if (rightDown_) exitCode_ = enterCode();
      rightDown_ = false;
      break;
    default:
      offerMouse(message);
      break;
  }
}

Key::Code Dialog::enterCode() const {
  return defaultExit_ != Key::NoKey ? defaultExit_ : Key::Enter;
}

void Dialog::takeKey(Key::Code key) {
  switch (key) {
    case Key::Tab:
      moveBetweenGroups(1);
      break;
    case Key::ShiftTab:
      moveBetweenGroups(-1);
      break;
    case Key::Enter:
      exitCode_ = enterCode();
      break;
    case Key::Esc:
      exitCode_ = Key::Esc;
      break;
    case Key::Up:
    case Key::Left:
      moveInGroup(-1);
      break;
    case Key::Down:
    case Key::Right:
      moveInGroup(1);
      break;
    default:
      if (activateByKey(key)) return;
      if (key == Key::F1) return helpWindow()->showForCommand();
      offerAsCharacter(key);
      break;
  }
}

// A keypad operator that the dialog has no use for is a character of the text being typed.
void Dialog::offerAsCharacter(Key::Code key) {
  const Key::Code character(key.value() & LastByteKey);
  if (key.has(Key::GrayKey)) offerTo(focus_, {.kind = MessageKind::Key, .key = character});
}

bool Dialog::activateByKey(Key::Code key) {
  auto activateHotKey = [this](Key::Code wanted) {
    for (auto& element : elements_) {
      if (element->hotKey != wanted) continue;
      element->activate();
      return true;
    }
    return false;
  };
  if (activateHotKey(key)) return true;
  if (key.value() <= LastByteKey) {
    return key != Key::NoKey && activateHotKey(Key::Code(lowerAscii(key.value())));
  }
  if (!isExtended(key)) return false;
  const int character = hotKeyChar(key).value();
  if (character > LastByteKey) return false;
  for (int i = 0; i < elementCount() && i < static_cast<int>(hotChars_.size()); ++i) {
    const unsigned char hot = static_cast<unsigned char>(hotChars_[i]);
    if (hot == 0 || lowerAscii<int>(hot) != lowerAscii(character)) continue;
    elements_[i]->activate();
    return true;
  }
  return false;
}

// A release whose press came before this run belongs to what lay here then and does nothing.
void Dialog::offerMouse(const Message& message) {
  if (message.kind == MessageKind::LeftPress) leftDown_ = true;
  if (message.kind == MessageKind::LeftRelease) {
    if (!leftDown_) return;
    leftDown_ = false;
  }
  // A wheel turn has no place: it goes to the focused element first.
  const int asked = message.kind == MessageKind::Wheel ? focus_ : -1;
  bool handled = asked >= 0 && offerTo(asked, message);
  for (int i = 0; i < elementCount() && !handled; ++i) handled = i != asked && offerTo(i, message);
  if (message.kind == MessageKind::Wheel || message.kind == MessageKind::LeftDrag) return;
  if (handled || contains(message.x + originX(), message.y + originY())) {
    leftDownOutside_ = false;
  } else {
    trackOutsideClick(message);
  }
}

bool Dialog::offerTo(int index, const Message& message) {
  return elements_[index]->enabled && elements_[index]->handleMessage(message);
}

void Dialog::trackOutsideClick(const Message& message) {
  if (message.kind == MessageKind::LeftRelease && leftDownOutside_) exitCode_ = Key::Esc;
  leftDownOutside_ = message.kind == MessageKind::LeftPress;
}

int Dialog::steppedIndex(int index, int step) const {
  const int count = elementCount();
  return (index + step + count) % count;
}

// The next enabled member of the group of `from`; `from` itself when there is none.
int Dialog::nextInGroup(int from, int step) const {
  for (int i = steppedIndex(from, step); i != from; i = steppedIndex(i, step)) {
    if (elements_[i]->enabled && elements_[i]->group == elements_[from]->group) return i;
  }
  return from;
}

void Dialog::moveInGroup(int step) {
  setFocus(nextInGroup(focus_, step));
}

void Dialog::moveBetweenGroups(int step) {
  const int present = elements_[focus_]->group;
  for (int i = steppedIndex(focus_, step); i != focus_; i = steppedIndex(i, step)) {
    if (elements_[i]->group == present || !elements_[i]->enabled) continue;
    const DialogElement& head = *elements_[elements_[i]->group];
    int target = head.tabStop ? i : head.groupFocus;
    if (!elements_[target]->enabled) target = nextInGroup(target, step);
    setFocus(target);
    return;
  }
  // Buttons alone: the keys go to the next one rather than nowhere.
  if (elements_[focus_]->type() == ElementType::PushButton) moveInGroup(step);
}

void Dialog::setFocus(int index) {
  auto valid = [this](int i) { return i >= 0 && i < elementCount() && i != focus_; };
  if (!valid(index) || !canChangeFocus(focus_, index) || !valid(index)) return;
  BatchScope batch;
  const int old = focus_;
  DialogElement& head = *elements_[elements_[index]->group];
  const int oldInGroup = head.groupFocus;
  focus_ = index;
  head.groupFocus = index;
  elements_[index]->focusNotify(Focus::Gained);
  elements_[old]->focusNotify(Focus::Lost);
  if (oldInGroup != old && oldInGroup != index) elements_[oldInGroup]->focusNotify(Focus::Lost);
  focusChanged();
}

void Dialog::askAgain(int index) {
  setFocus(index);
  elements_[index]->offerAnew();
}

void Dialog::redraw(int index) {
  BatchScope batch;
  if (index < 0) {
    for (auto& element : elements_) element->draw();
  } else if (index < elementCount()) {
    elements_[index]->draw();
  }
}

void Dialog::setDefaultButton(int index) {
  if (index < 0 || index >= elementCount()) return;
  const auto* button = dynamic_cast<const PushButton*>(elements_[index].get());
  if (!button) return;
  defaultExit_ = button->exitCode();
  redraw(-1);
}

void Dialog::setAttr(int slot, unsigned char attr) {
  if (slot == FocusSlot) {
    focusAttr_ = attr;
  } else if (slot == FieldSlot) {
    fieldAttr_ = attr;
  } else {
    textAttr_ = attr;
  }
}

void Dialog::commitAll() {
  for (auto& element : elements_) element->commit();
}

bool Dialog::sendMessage(int index, const Message& message) {
  if (pthread_equal(pthread_self(), ownThread_)) return deliver(index, message);
  handOver(index, message);
  return true;
}

bool Dialog::deliver(int index, const Message& message) {
  return index >= 0 && index < elementCount() && elements_[index]->handleMessage(message);
}

void Dialog::handOver(int index, const Message& message) {
  const bool ofList =
      message.kind == MessageKind::ListLength || message.kind == MessageKind::ListContent;
  const MutexLock guard(lock_);
  for (HandedOver& earlier : handedOver_) {
    if (!ofList || earlier.index != index || earlier.message.kind != message.kind) continue;
    earlier.message = message;
    return;
  }
  handedOver_.push_back({index, message});
  if (handedOver_.size() == 1) console->events().wake();
}

void Dialog::passOnHandedOver() {
  std::vector<HandedOver> messages;
  {
    const MutexLock guard(lock_);
    messages.swap(handedOver_);
  }
  for (const HandedOver& each : messages) deliver(each.index, each.message);
}

void Dialog::setHotChars(const char* chars, int count) {
  hotChars_.assign(chars, chars + count);
}

char Dialog::hotCharOf(int index) const {
  return index >= 0 && index < static_cast<int>(hotChars_.size()) ? hotChars_[index] : '\0';
}
