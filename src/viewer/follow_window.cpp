#include "viewer/follow_window.h"

#include "options/colours.h"

namespace {

constexpr wchar_t On[] = L"Follow Mode ON - ESC to cancel";
constexpr wchar_t Replaced[] = L"File was replaced - ESC to cancel";

}  // namespace

FollowWindow::FollowWindow()
    : Win(0, console->rows() - 1, console->columns() - 1, console->rows() - 1,
          colourOf(Colour::Messages), NoFrame) {
  putCentred(0, On);
}

void FollowWindow::tellReplaced() {
  BatchScope batch;
  clear();
  putCentred(0, Replaced);
}
