// What the keys of the viewer do.

#include "console/console.h"
#include "editor/dialogs/code_page_dialog.h"
#include "editor/dialogs/format_dialog.h"
#include "editor/text/search_values.h"
#include "options/options.h"
#include "ui/help_window.h"
#include "viewer/file_viewer.h"

namespace {

constexpr int Columns = 4, Bytes = 1;  // of a step sideways, in a text and in hex mode
constexpr int WideStep = 40;           // in both

}  // namespace

const CViewer::KeyRow CViewer::keyTable[] = {
    {Key::F1, [](CViewer&) { helpWindow()->show(HelpTopic::Viewer); }},
    {Key::F2, [](CViewer& viewer) { viewer.toggleWrap(); }},
    {Key::F4, [](CViewer& viewer) { viewer.page_.toggleHex(); }},
    {Key::F7, [](CViewer& viewer) { viewer.askAndSearch(searchValues().reverse); }},
    {'/', [](CViewer& viewer) { viewer.askAndSearch(false); }},
    {'?', [](CViewer& viewer) { viewer.askAndSearch(true); }},
    {Key::ShiftF7, [](CViewer& viewer) { viewer.search(searchValues().reverse); }},
    {Key::AltF7, [](CViewer& viewer) { viewer.search(!searchValues().reverse); }},
    {Key::F8, [](CViewer& viewer) { viewer.page_.home(); }},
    {Key::Home, [](CViewer& viewer) { viewer.page_.home(); }},
    {Key::CtrlPageUp, [](CViewer& viewer) { viewer.page_.home(); }},
    {Key::F9, [](CViewer& viewer) { viewer.page_.end(); }},
    {Key::End, [](CViewer& viewer) { viewer.page_.end(); }},
    {Key::CtrlPageDown, [](CViewer& viewer) { viewer.page_.end(); }},
    {Key::F10, [](CViewer& viewer) { viewer.leaveWith(Key::Esc); }},
    {Key::Esc, [](CViewer& viewer) { viewer.escape(); }},
    {Key::Up, [](CViewer& viewer) { viewer.page_.up(); }},
    {Key::Down, [](CViewer& viewer) { viewer.page_.down(); }},
    {Key::PageUp, [](CViewer& viewer) { viewer.page_.pageUp(); }},
    {Key::PageDown, [](CViewer& viewer) { viewer.page_.pageDown(); }},
    {Key::Space, [](CViewer& viewer) { viewer.page_.pageDown(); }},
    {Key::Left, [](CViewer& viewer) { viewer.page_.left(viewer.page_.hex() ? Bytes : Columns); }},
    {Key::Right, [](CViewer& viewer) { viewer.page_.right(viewer.page_.hex() ? Bytes : Columns); }},
    {Key::CtrlLeft, [](CViewer& viewer) { viewer.page_.left(WideStep); }},
    {Key::CtrlRight, [](CViewer& viewer) { viewer.page_.right(WideStep); }},
    {Key::alt('l'), [](CViewer& viewer) { viewer.askLine(); }},
    {Key::alt('o'), [](CViewer& viewer) { viewer.askOffset(); }},
    {Key::alt('e'), [](CViewer& viewer) { viewer.selectEncoding(); }},
    {Key::alt('t'), [](CViewer& viewer) { viewer.nextCodePage(); }},
    {Key::alt('c'), [](CViewer& viewer) { viewer.chooseCodePages(); }},
    {Key::alt('h'), [](CViewer& viewer) { viewer.toggleColours(); }},
    {Key::alt('f'), [](CViewer& viewer) { viewer.follow(); }},
    {Key::alt('1'), [](CViewer& viewer) { viewer.setTabWidth(1); }},
    {Key::alt('2'), [](CViewer& viewer) { viewer.setTabWidth(2); }},
    {Key::alt('3'), [](CViewer& viewer) { viewer.setTabWidth(3); }},
    {Key::alt('4'), [](CViewer& viewer) { viewer.setTabWidth(4); }},
    {Key::alt('5'), [](CViewer& viewer) { viewer.setTabWidth(5); }},
    {Key::alt('6'), [](CViewer& viewer) { viewer.setTabWidth(6); }},
    {Key::alt('7'), [](CViewer& viewer) { viewer.setTabWidth(7); }},
    {Key::alt('8'), [](CViewer& viewer) { viewer.setTabWidth(8); }},
    {Key::ctrl('l'), [](CViewer& viewer) { viewer.repaint(); }},
    {Key::ShiftF4, [](CViewer& viewer) { viewer.leaveWith(Key::ShiftF4); }},
    {Key::AltF4, [](CViewer& viewer) { viewer.leaveWith(Key::AltF4); }},
    {Key::AltUp, [](CViewer& viewer) { viewer.leaveWith(Key::AltUp); }},
    {Key::AltDown, [](CViewer& viewer) { viewer.leaveWith(Key::AltDown); }},
    {Key::NoKey, nullptr}};

void CViewer::leaveWith(Key::Code key) {
  leave(key.value());
}

void CViewer::escape() {
  if (!follow_) return leaveWith(Key::Esc);
  follow_.reset();
}

void CViewer::toggleWrap() {
  if (!page_.hex()) page_.toggleWrap();
}

void CViewer::toggleColours() {
  if (colours_.active()) {
    colours_.off();
  } else {
    colours_.load(path_);
  }
}

void CViewer::setTabWidth(int width) {
  GlobalOptions::TabWidth = width;
  page_.changed();
}

void CViewer::selectEncoding() {
  TextForm form{file_.encoding(), file_.textStart() > 0};
  TDEditor::CFormatSelectDlg dialog(" Select File Encoding ", form);
  if (dialog.ask(form)) setEncoding(form.encoding);
}

void CViewer::nextCodePage() {
  if (file_.encoding().format != TextFormat::CodePage) return;
  setEncoding({TextFormat::CodePage, TDEditor::stepCodePage()});
}

void CViewer::chooseCodePages() {
  const std::optional<int> page = TDEditor::askCodePage();
  if (page) setEncoding({TextFormat::CodePage, *page});
}

void CViewer::setEncoding(const TextEncoding& encoding) {
  file_.setEncoding(encoding);
  page_.changed();
}

// Also what the cells say is there already.
void CViewer::repaint() {
  const int columns = console->columns(), rows = console->rows();
  console->putCells(0, 0, columns, rows, console->getCells(0, 0, columns, rows).data());
}

void CViewer::follow() {
  if (follow_) return;
  follow_ = std::make_unique<FollowWindow>();
  goToEnd_ = true;
}

// Time has passed in follow mode.
void CViewer::followChanges() {
  const FileChange change = file_.refresh();
  if (file_.replaced()) follow_->tellReplaced();
  // Of a file that has lost its end the screen keeps what was there.
  if (change == FileChange::Shrunk) stale_ = true;
  const bool isNews = change != FileChange::None && change != FileChange::Shrunk;
  if (!isNews && !goToEnd_) return;
  goToEnd_ = stale_ = false;
  page_.changed();
  page_.end();
  dirty_ = true;
}
