#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <thread>

#include "editor/window/editor_screen.h"
#include "foundation/utf8.h"
#include "options/options.h"
#include "support/console_test.h"

// A key with the modifiers that are held with it.
struct HeldKey {
  HeldKey(Key::Code pressed, int held = 0) : key(pressed), state(held) {}
  Key::Code key;
  int state;
};

// The editor's screen, left by a key of the test's.
class TestedScreen : public EditorScreen {
 public:
  static constexpr Key::Code Stop = Key::F12;
  using EditorScreen::EditorScreen;

 protected:
  void onKey(Key::Code key, int shiftState) override {
    if (key == Stop) return leave();
    EditorScreen::onKey(key, shiftState);
  }
};

// An edit on a real console: a text is opened, events are queued, and what the text, the cursor and
// the cells have become is looked at.
class EditorTest : public ConsoleTest {
 protected:
  static constexpr int Shift = ShiftState::Shift, Ctrl = ShiftState::Ctrl, Alt = ShiftState::Alt;
  static constexpr unsigned char Plain = 0x1B, Marked = 0x30, Status = 0x30;

  void TearDown() override {
    ConsoleTest::TearDown();
    screen_.reset();
    editor_.reset();
  }

  void open(const std::string& bytes, const wchar_t* name = L"/home/me/notes",
            TextEncoding encoding = {TextFormat::Utf8}) {
    screen_.reset();
    editor_.reset();
    editor_ = std::make_unique<CTextEditor>(name);
    editor_->document.load(bytes, encoding);
    screen_ = std::make_unique<TestedScreen>(*editor_);
    runQueued();
  }
  CTextEditor& editor() { return *editor_; }

  // Runs the editor until all that is queued is used up.
  void runQueued() {
    queueKey(TestedScreen::Stop);
    runScreen();
  }
  // Until somebody queues the key that leaves it.
  void runScreen() { screen_->run(); }
  void press(std::initializer_list<HeldKey> keys) {
    for (const HeldKey& held : keys) queueKey(held.key, held.state);
    runQueued();
  }
  void press(HeldKey key, int times) {
    for (int i = 0; i < times; ++i) queueKey(key.key, key.state);
    runQueued();
  }
  void type(const std::string& text) {
    queueText(text);
    runQueued();
  }
  void mouse(EventKind kind, int x, int y, int button = 1, int state = 0) {
    queueMouse(kind, x, y, button, state);
    runQueued();
  }
  void click(int x, int y, int state = 0) {
    queueMouse(EventKind::Press, x, y, 1, state);
    queueMouse(EventKind::Release, x, y, 1, state);
    runQueued();
  }
  void goTo(int64_t line, int64_t index) {
    editor_->moveTo({line, index});
    runQueued();
  }

  // What a save would write.
  std::string bytes() const {
    std::string all;
    editor_->document.write(editor_->document.encoding(),
                            [&all](std::string_view piece) { return all += piece, 0; });
    return all;
  }
  std::string line(int64_t number) const {
    return toUtf8(editor_->document.text(number).c_str()).data();
  }
  // "line:index" of the cursor, both from 0.
  std::string place() const { return placeText(editor_->cursor()); }
  // "from-to" of what is marked, the cursor's end with a "*"; "" when nothing is.
  std::string block() const {
    const TextBlock& block = editor_->block;
    if (!block.active) return "";
    const bool atEnd = block.cursorAt == TextBlock::CursorAt::End;
    return placeText(block.start) + (atEnd ? "-" : "*-") + placeText(block.end) +
           (atEnd ? "*" : "");
  }
  static std::string placeText(TextPlace place) {
    return std::to_string(place.line) + ":" + std::to_string(place.index);
  }
  // Lines "1", "2" and so on.
  static std::string numbered(int count) {
    std::string text;
    for (int i = 1; i <= count; ++i) text += std::to_string(i) + (i < count ? "\n" : "");
    return text;
  }

  // Where the cursor stands on the screen, "x,y".
  static std::string screenCursor() {
    return std::to_string(textState.textX) + "," + std::to_string(textState.textY);
  }
  // A text row from 0, without the blanks at its end.
  std::string row(int number) const {
    std::string text = rowText(number + 1);
    return text.erase(text.find_last_not_of(' ') + 1);
  }
  // The attributes of cells of a text row, one hexadecimal pair each.
  std::string attrs(int number, int from, int count) const {
    std::string text;
    char pair[4];
    for (int x = from; x < from + count; ++x) {
      std::snprintf(pair, sizeof pair, "%02X", attrAt(x, number + 1));
      text += (x > from ? " " : "") + std::string(pair);
    }
    return text;
  }

 private:
  std::unique_ptr<CTextEditor> editor_;
  std::unique_ptr<TestedScreen> screen_;
};
