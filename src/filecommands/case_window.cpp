#include "filecommands/case_window.h"

#include <string>

#include "console/console.h"
#include "foundation/text_format.h"
#include "foundation/utf8.h"
#include "options/colours.h"

namespace {

constexpr int Columns = 60, Lines = 5;
constexpr int UpperQuarter = -4;
constexpr int PathRow = 0, ChangingRow = 2;
constexpr int BarColumn = 1, BarWidth = 56;
constexpr int DirectoryWidth = 56, MembersWidth = 36;
constexpr char Title[] = " Changing file case ";

}  // namespace

void CaseWindow::open(const Westring& directory, int count) {
  files_ = count;
  bar_ = std::make_unique<Dialog>(-1, UpperQuarter, Columns, Lines, colourOf(Colour::Messages));
  bar_->putFrameTitle(Title);
  bar_->putCentred(PathRow, shortenPath(directory, DirectoryWidth).data());
  bar_->addProgress(BarColumn, ChangingRow, BarWidth, &fraction_);
}

bool CaseWindow::isTime() {
  const int64_t now = clock_.nanoseconds();
  if (now - lastFrame_ < FrameNs) return false;
  lastFrame_ = now;
  return true;
}

void CaseWindow::showDone(int done) {
  fraction_ = static_cast<float>(done) / static_cast<float>(files_);
  pending_ = true;
  if (isTime()) complete();
}

void CaseWindow::showMembers(const char* directory, int64_t count) {
  directory_ = directory;
  count_ = count;
  pending_ = true;
  if (!members_ || isTime()) complete();
}

void CaseWindow::drawMembers() {
  if (!members_) {
    const unsigned char attr = colourOf(Colour::Messages);
    members_ = std::make_unique<Win>(-1, UpperQuarter, Columns, Lines, attr, attr);
    members_->putFrameTitle(Title);
  }
  members_->clear();
  const Westring path = shortenPath(decodeFileName(directory_.c_str()), MembersWidth);
  members_->putCentred(PathRow, (L"Processing files in " + path).data());
  members_->putCentred(ChangingRow, Westring(std::to_string(count_).c_str()).data());
}

void CaseWindow::closeMembers() {
  members_.reset();
  directory_.clear();
}

void CaseWindow::complete() {
  if (!pending_) return;
  pending_ = false;
  BatchScope batch;
  if (!directory_.empty()) {
    drawMembers();
  } else if (bar_) {
    bar_->redraw(-1);
  }
}

void CaseWindow::close() {
  members_.reset();
  bar_.reset();
}
