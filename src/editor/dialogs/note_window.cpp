#include "editor/dialogs/note_window.h"

#include <cwchar>

#include "options/colours.h"

namespace {
constexpr int Rows = 3, Middle = -2;
constexpr int FrameAndMargin = 4;

int columnsFor(const wchar_t* text) {
  return static_cast<int>(wcslen(text)) + FrameAndMargin;
}
}  // namespace

namespace TDEditor {

CNoteWindow::CNoteWindow(const wchar_t* text)
    : Win(-1, Middle, columnsFor(text), Rows, colourOf(Colour::Messages),
          colourOf(Colour::Messages)) {
  putCentred(0, text);
}

CSearchWatch::CSearchWatch(CClock& clock)
    : clock_(clock), escape_(clock), showFrom_(clock.nanoseconds() + QuietNs) {}

bool CSearchWatch::pressed() {
  if (!window_ && clock_.nanoseconds() >= showFrom_) {
    window_ = std::make_unique<CNoteWindow>(Searching);
  }
  return escape_.pressed();
}

void CSearchWatch::closeWindow() {
  window_.reset();
  showFrom_ = clock_.nanoseconds() + QuietNs;
}

}  // namespace TDEditor
