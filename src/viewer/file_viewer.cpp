#include "viewer/file_viewer.h"

#include <algorithm>

#include "console/console.h"
#include "editor/text/file_status_store.h"
#include "options/colours.h"
#include "options/options.h"
#include "viewer/view_percent.h"
#include "viewer/view_status.h"

namespace {

constexpr int StatusRow = 0;
constexpr int FirstPageRow = 1;
constexpr int RowsAround = 2;  // the status and the key bar
constexpr int FollowMs = 200;
constexpr int WheelRows = 3;

bool isPress(MouseKind kind) {
  return kind == MouseKind::LeftPress || kind == MouseKind::RightPress;
}

// The encoding that the user has chosen for this file before.
TextEncoding rememberedEncoding(const Westring& path) {
  const HISTREC* record = fileStatusStore().find(path);
  return record ? TextEncoding{record->format, record->page} : TextEncoding{};
}

}  // namespace

CViewer::CViewer(const Westring& path, CClock& clock)
    : path_(FileStatusStore::keyOfPath(path)),
      openResult_(file_.open(path, rememberedEncoding(path_))),
      page_(file_, console->columns(), console->rows() - RowsAround),
      colours_(file_),
      painter_(file_, page_, colours_),
      counter_(file_),
      repeat_(clock) {}

Key::Code CViewer::view(int64_t position) {
  window_.emplace(0, 0, console->columns() - 1, console->rows() - 1, colourOf(Colour::FileViewer),
                  NoFrame);
  setCursorShape(0);
  colours_.load(path_);
  goToStart(position);
  const int key = run();
  follow_.reset();
  window_.reset();
  remember();
  return key == ProgramEnds ? Key::Esc : Key::Code(key);
}

void CViewer::goToStart(int64_t position) {
  page_.home();
  const HISTREC* record = fileStatusStore().find(path_);
  if (position != AnyPosition) {
    if (position < file_.size()) showHit(hitAt(position));
  } else if (record && record->viewerPosition != HISTREC::Unset) {
    if (record->viewerPosition < file_.size()) page_.goTo(record->viewerPosition);
  } else if (record) {
    goToLine(record->topLine);
  }
}

void CViewer::remember() {
  const bool isNew = fileStatusStore().find(path_) == nullptr;
  HISTREC& record = fileStatusStore().record(path_);
  if (isNew) record.page = file_.encoding().page;
  record.viewerPosition = page_.top();
}

void CViewer::draw() {
  if (!dirty_) return;
  dirty_ = false;
  drawStatus();
  int y = FirstPageRow;
  for (const CellString& row : painter_.rows(hit_)) window_->put(0, y++, row);
  drawKeyBar();
}

void CViewer::drawStatus() {
  const EndShows end = page_.endShows() ? EndShows::Yes : EndShows::No;
  const Westring percent = viewPercent(page_.bottomEnd(), file_.size(), end);
  window_->put(0, StatusRow,
               viewStatus(path_, formatName(file_.encoding()), percent, page_.columns()),
               colourOf(Colour::MenuBar));
}

// Under the window of follow mode.
void CViewer::drawKeyBar() {
  const char* const labels[KeyBarFields] = {
      "1Help",   GlobalOptions::ViewerWrap ? "2UnWrap" : "2Wrap",
      "3",       page_.hex() ? "4ASCII" : "4Hex",
      "5",       "6",
      "7Search", "8Home",
      "9End",    "10Quit"};
  if (follow_) follow_->hide();
  drawKeyBarLine(labels);
  if (follow_) follow_->unhide();
}

void CViewer::onKey(Key::Code key, int) {
  repeat_.stop();
  runKey(key);
}

// Every command finds the file as it is by then.
void CViewer::runKey(Key::Code key) {
  if (file_.refresh() != FileChange::None || stale_) {
    page_.changed();
    if (hit_.from >= file_.size()) hit_ = Hit();
  }
  stale_ = false;
  dirty_ = true;
  for (const KeyRow* row = keyTable; row->run; ++row) {
    if (row->key == key) return row->run(*this);
  }
}

void CViewer::onMouse(const MouseMessage& mouse) {
  // A double click is part of a press that repeats already.
  if (mouse.kind == MouseKind::LeftDoubleClick && repeat_.running()) return;
  repeat_.stop();
  Key::Code key;
  if (mouse.kind == MouseKind::Wheel) return turnWheel(mouse.wheel);
  if (keyBar_.take(mouse, key)) {
    if (key != Key::NoKey && !follow_) runKey(key);
    return;
  }
  if (!isPress(mouse.kind)) return;
  key = keyOfPlace(mouse, console->columns(), console->rows());
  if (key == Key::NoKey) return;
  repeat_.start(key);
  runKey(key);
}

void CViewer::turnWheel(int direction) {
  const Key::Code key = direction > 0 ? Key::Up : Key::Down;
  for (int i = 0; i < WheelRows; ++i) runKey(key);
}

int CViewer::waitMs() const {
  const int repeat = repeat_.waitMs();
  if (!follow_) return repeat;
  return repeat == NoLimit ? FollowMs : std::min(repeat, FollowMs);
}

void CViewer::onTimeOut() {
  const Key::Code key = repeat_.takeDue();
  if (key != Key::NoKey) return runKey(key);
  if (follow_) followChanges();
}
