#include <algorithm>

#include "console/console_impl.h"
#include "foundation/utf8.h"

namespace {
constexpr int TabMask = 7;

bool printable(wchar_t character) {
  return character >= 32 && (character < 127 || character > 159);
}

// Output at the cursor on a copy of the cursor's row, which goes to the screen when the row is
// left.
class Teletype {
 public:
  Teletype(CConsole& screen, unsigned char attr)
      : screen_(screen), attr_(attr), size_(screen.getSize()) {
    const CursorPos at = screen.getCursorPos();
    x_ = std::clamp(at.x, 0, size_.columns - 1);
    y_ = std::clamp(at.y, 0, size_.rows - 1);
    row_ = screen_.getCells(0, y_, size_.columns, 1);
  }

  void put(wchar_t character) {
    switch (character) {
      case L'\t':
        x_ = (x_ | TabMask) + 1;
        break;
      case L'\r':
        x_ = 0;
        break;
      case L'\b':
        if (x_ > 0) --x_;
        break;
      case L'\n':
        nextRow();
        break;
      default:
        if (!printable(character)) return;
        row_[static_cast<size_t>(x_)] = Cell{character, attr_};
        ++x_;
    }
    if (x_ >= size_.columns) nextRow();
  }

  void finish() {
    writeBack();
    screen_.setCursorPos(x_, y_);
  }

 private:
  void writeBack() { screen_.putCells(0, y_, size_.columns, 1, row_.data()); }

  void nextRow() {
    writeBack();
    x_ = 0;
    if (y_ + 1 < size_.rows) {
      ++y_;
    } else {
      screen_.scrollUp(0, 0, size_.columns, size_.rows, 1, attr_);
    }
    row_ = screen_.getCells(0, y_, size_.columns, 1);
  }

  CConsole& screen_;
  unsigned char attr_;
  GridSize size_;
  int x_ = 0;
  int y_ = 0;
  std::vector<Cell> row_;
};
}  // namespace

void CConsole::writeTty(const char* utf8Text) {
  if (impl_->terminal) {
    impl_->terminal->write(utf8Text);
    return;
  }
  const Westring text = fromUtf8(utf8Text);
  beginBatch();
  const int size = cursorSize();
  setCursorSize(0);
  Teletype teletype(*this, defaultAttr());
  for (const wchar_t* p = text.data(); *p != 0; ++p) teletype.put(*p);
  teletype.finish();
  setCursorSize(size);
  endBatch();
}
