#include "tools/tree_scan_window.h"

#include "foundation/text_format.h"
#include "options/colours.h"

namespace {

constexpr int Columns = 24, Rows = 4;
constexpr int UpperThird = -3;
constexpr int TitleRow = 0, CountRow = 1;
constexpr int64_t RedrawNs = 50'000'000;

}  // namespace

TreeScanWindow::TreeScanWindow(CClock& clock)
    : clock_(clock),
      escape_(clock),
      window_(-1, UpperThird, Columns, Rows, colourOf(Colour::Messages),
              colourOf(Colour::Messages)) {
  window_.putCentred(TitleRow, L"Scanning directories");
}

void TreeScanWindow::counted(int64_t count) {
  const int64_t now = clock_.nanoseconds();
  if (drawn_ && now - lastDraw_ < RedrawNs) return;
  drawn_ = true;
  lastDraw_ = now;
  const Westring text = groupDigits(static_cast<unsigned long long>(count));
  window_.putCentred(CountRow, text.data());
}
