#include "filecommands/delete_window.h"

#include "console/console.h"
#include "foundation/text_format.h"
#include "foundation/utf8.h"
#include "options/colours.h"

namespace {

constexpr int PathWidth = 70;
constexpr int FrameAndMargin = 4;
constexpr int WindowRows = 4;
constexpr int UpperQuarter = -4;
constexpr int TitleRow = 0, PathRow = 1;

}  // namespace

void DeleteWindow::show(const char* path, DeleteWindowUse use) {
  if (!window_ && use == DeleteWindowUse::IfOpen) return;
  path_ = path;
  pending_ = true;
  if (!window_ || clock_.nanoseconds() - lastFrame_ >= FrameNs) draw();
}

void DeleteWindow::complete() {
  if (pending_ && window_) draw();
}

void DeleteWindow::draw() {
  const Westring path = shortenPath(decodeFileName(path_.c_str()), PathWidth);
  BatchScope batch;
  if (path.length() > width_) {
    width_ = path.length();
    window_.reset();
  }
  if (!window_) {
    const unsigned char attr = colourOf(Colour::Messages);
    window_ = std::make_unique<Win>(-1, UpperQuarter, width_ + (width_ & 1) + FrameAndMargin,
                                    WindowRows, attr, attr);
    window_->putCentred(TitleRow, L"Deleting the file");
  }
  window_->put(0, PathRow, Westring(L' ', window_->innerWidth()));
  window_->putCentred(PathRow, path.data());
  pending_ = false;
  lastFrame_ = clock_.nanoseconds();
}

void DeleteWindow::close() {
  window_.reset();
  width_ = FirstWidth;
  pending_ = false;
}
