#include "tools/help_screen.h"

#include <algorithm>

#include "console/console.h"
#include "options/colours.h"

namespace {

constexpr int Centred = -1;
constexpr int InTheMiddle = -2;
constexpr int Width = 74;
constexpr int RowsAround = 5;  // of the screen that the window leaves
constexpr int TitleColumn = 3, HintColumn = 58;
constexpr int FrameAbove = -1;
constexpr int WheelLines = 3;
constexpr int PartsOfHeight = 3;
constexpr wchar_t UpMark[] = {0x25B2, 0}, DownMark[] = {0x25BC, 0}, NoMark[] = {0x2551, 0};

// The key that a button held on a row of the window stands for; NoKey in the middle.
Key::Code keyOfRow(int row, int height, MouseKind kind) {
  const bool pages = kind == MouseKind::RightPress;
  if (row * PartsOfHeight < height) return pages ? Key::PageUp : Key::Up;
  if (row * PartsOfHeight >= height * (PartsOfHeight - 1)) return pages ? Key::PageDown : Key::Down;
  return Key::NoKey;
}

}  // namespace

HelpScreen::HelpScreen(std::vector<Westring> lines, std::function<void()> onIndex, CClock& clock)
    : lines_(std::move(lines)),
      onIndex_(std::move(onIndex)),
      repeat_(clock),
      window_(Centred, InTheMiddle, Width, console->rows() - RowsAround, colourOf(Colour::Messages),
              colourOf(Colour::Messages)) {
  setCursorShape(0);
  window_.put(TitleColumn, FrameAbove, L" Help ");
  window_.putFrameTitle(" Tandem Deck V" TD_VERSION " ");
  window_.put(HintColumn, rows(), L" Esc to Exit ");
}

int HelpScreen::lastTop() const {
  return std::max(static_cast<int>(lines_.size()) - rows(), 0);
}

// ---- the picture

// On the right frame, beside the text.
void HelpScreen::drawMark(int row, const wchar_t* mark) {
  console->writeWide(window_.right(), window_.originY() + row, mark, window_.attr());
}

void HelpScreen::draw() {
  for (int row = 0; row < rows(); ++row) {
    const size_t line = top_ + row;
    const Westring text = line < lines_.size() ? lines_[line] : Westring();
    window_.put(0, row, padRight(text, HelpFile::LongestLine));
  }
  drawMark(0, top_ > 0 ? UpMark : NoMark);
  drawMark(rows() - 1, top_ < lastTop() ? DownMark : NoMark);
}

// ---- keys and mouse

void HelpScreen::scrollBy(int lines) {
  top_ = std::clamp(top_ + lines, 0, lastTop());
}

void HelpScreen::takeKey(Key::Code key) {
  switch (key) {
    case Key::Up:
      return scrollBy(-1);
    case Key::Down:
      return scrollBy(1);
    case Key::PageUp:
      return scrollBy(-rows());
    case Key::PageDown:
      return scrollBy(rows());
    case Key::Home:
      return scrollBy(-top_);
    case Key::End:
      return scrollBy(lastTop() - top_);
    case Key::F1:
      return onIndex_ ? onIndex_() : void();
    case Key::Esc:
      return leave();
    default:
      return;
  }
}

void HelpScreen::onKey(Key::Code key, int) {
  repeat_.stop();
  takeKey(key);
}

void HelpScreen::onTimeOut() {
  takeKey(repeat_.takeDue());
}

void HelpScreen::press(const MouseMessage& mouse) {
  if (!window_.contains(mouse.x, mouse.y)) return leave();
  const int height = window_.bottom() - window_.top() + 1;
  const Key::Code key = keyOfRow(mouse.y - window_.top(), height, mouse.kind);
  takeKey(key);
  repeat_.start(key);
}

void HelpScreen::onMouse(const MouseMessage& mouse) {
  repeat_.stop();
  switch (mouse.kind) {
    case MouseKind::LeftPress:
    case MouseKind::RightPress:
      return press(mouse);
    case MouseKind::Wheel:
      return scrollBy(mouse.wheel > 0 ? -WheelLines : WheelLines);
    default:
      return;
  }
}
