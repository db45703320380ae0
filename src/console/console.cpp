#include "console/console.h"

#include <algorithm>
#include <climits>

#include "console/console_impl.h"
#include "console/toolkit.h"
#include "foundation/code_page.h"
#include "foundation/utf8.h"

constinit ConsolePointer console;

namespace {
constexpr int MinFontSize = 4, MaxFontSize = 72;  // points
}

CConsole::CConsole() : impl_(makeImpl()) {
  impl_->start();
  console.standing_.store(this, std::memory_order_release);
}

std::unique_ptr<CConsole::Impl> CConsole::makeImpl() {
  ToolkitLock lock;
  return std::make_unique<Impl>();
}

CConsole::~CConsole() {
  impl_->stop();
  console.standing_.store(nullptr, std::memory_order_release);
  ToolkitLock lock;
  impl_.reset();
}

std::vector<Cell> CConsole::getCells(int x, int y, int w, int h) const {
  return impl_->grid.getCells(x, y, w, h);
}

void CConsole::getCells(int x, int y, int w, int h, Cell* cells) const {
  impl_->grid.getCells(x, y, w, h, cells);
}

void CConsole::putCells(int x, int y, int w, int h, const Cell* cells) {
  if (impl_->grid.putCells(x, y, w, h, cells)) impl_->changed();
}

void CConsole::fillAttr(int x, int y, int n, unsigned char attr) {
  if (impl_->grid.fillAttr(x, y, n, attr)) impl_->changed();
}

void CConsole::fillBlank(int x, int y, int w, int h, unsigned char attr) {
  if (impl_->grid.fillBlank(x, y, w, h, attr)) impl_->changed();
}

void CConsole::fillCell(int x, int y, int n, Cell cell) {
  if (impl_->grid.fillCell(x, y, n, cell)) impl_->changed();
}

void CConsole::writeCellString(int x, int y, const Cell* cells) {
  if (impl_->grid.writeCells(x, y, cells)) impl_->changed();
}

void CConsole::writeWide(int x, int y, const wchar_t* text, unsigned char attr) {
  if (impl_->grid.writeWide(x, y, text, attr)) impl_->changed();
}

void CConsole::writeBytes(int x, int y, const char* text, unsigned char attr) {
  writeWide(x, y, fromCodePage(text, codePage()).data(), attr);
}

void CConsole::setCursorSize(int percent) {
  if (!impl_->grid.setCursorSize(std::clamp(percent, 0, 100))) return;
  impl_->blinkPhase.store(0, std::memory_order_relaxed);
  impl_->changed();
}

void CConsole::setCursorPos(int x, int y) {
  impl_->blinkPhase.store(0, std::memory_order_relaxed);
  const auto paint = impl_->painter.cursorDrawn() ? CursorPaint::WhenMoved : CursorPaint::Always;
  if (impl_->grid.setCursorPos(x, y, paint)) impl_->changed();
}

CursorPos CConsole::getCursorPos() const {
  const CursorState cursor = impl_->grid.cursor();
  return {cursor.x, cursor.y};
}

int CConsole::cursorSize() const {
  return impl_->grid.cursor().size;
}
GridSize CConsole::getSize() const {
  return impl_->grid.size();
}
int CConsole::cellWidth() const {
  return impl_->painter.cellWidth();
}
int CConsole::cellHeight() const {
  return impl_->painter.cellHeight();
}

void CConsole::scrollDown(int x, int y, int w, int h, int n, unsigned char attr) {
  if (n > 0) impl_->scroll(x, y, w, h, n, attr);
}

void CConsole::scrollUp(int x, int y, int w, int h, int n, unsigned char attr) {
  if (n > 0) impl_->scroll(x, y, w, h, -n, attr);
}

void CConsole::setDefaultAttr(unsigned char attr) {
  impl_->defaultAttr = attr;
}
unsigned char CConsole::defaultAttr() const {
  return impl_->defaultAttr;
}

void CConsole::beginBatch() {
  ++impl_->batchDepth;
}

void CConsole::endBatch() {
  int depth = impl_->batchDepth.load();
  do {
    if (depth == 0) return;
  } while (!impl_->batchDepth.compare_exchange_weak(depth, depth - 1));
  if (depth == 1 && impl_->grid.dirty()) impl_->changed();
}

void CConsole::completePainting() {
  impl_->paintPending();
}

void CConsole::setGeometry(int columns, int rows, const Estring& family, int size) {
  ToolkitLock lock;
  if (!family.empty()) impl_->fontFamily = family;
  if (size != 0) impl_->fontSize = std::clamp(size, MinFontSize, MaxFontSize);
  columns = std::clamp(columns, MinColumns, MaxColumns);
  rows = std::clamp(rows, MinRows, MaxRows);
  if (lock.usable()) {
    impl_->rebuild(columns, rows);
  } else {
    impl_->grid.resize(columns, rows);
  }
}

void CConsole::setCodePage(int page) {
  if (page != 0) impl_->codePage = page;
}

int CConsole::codePage() const {
  return impl_->codePage;
}

bool CConsole::readEvent(TEvent& out, uint32_t timeoutMs) {
  const bool waits = timeoutMs != 0 && eventCount() == 0;
  if (waits) {
    if (displayLost()) return false;
    completePainting();
  }
  const auto event = impl_->events.get(timeoutMs);
  if (!event) return false;
  out = *event;
  return true;
}

void CConsole::attachTerminal(std::unique_ptr<TerminalSession> session) {
  // Deleted under the lock too: a handler that has it is never overtaken.
  ToolkitLock lock;
  impl_->terminal = impl_->window.setTerminal(std::move(session));
}

void CConsole::detachTerminal() {
  attachTerminal(nullptr);
}

int CConsole::eventCount() const {
  return impl_->events.eventCount();
}
CEventQueue& CConsole::events() {
  return impl_->events;
}
void CConsole::setClock(CClock* clock) {
  impl_->useClock(clock ? *clock : systemClock());
}
unsigned long CConsole::paintCount() const {
  return impl_->paintCount;
}
