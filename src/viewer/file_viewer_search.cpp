// Going somewhere in the file: to what was searched, to a line, to an offset.

#include "editor/dialogs/goto_dialogs.h"
#include "editor/dialogs/note_window.h"
#include "editor/dialogs/search_dialog.h"
#include "editor/text/byte_pattern.h"
#include "ui/alert.h"
#include "viewer/file_search.h"
#include "viewer/file_viewer.h"

namespace {

// How many there are of what was asked for.
void tellOnly(int64_t count, const char* things) {
  Estring text;
  text.format("Only %lld %s in this file", static_cast<long long>(count), things);
  alert(text.data(), Westring());
}

}  // namespace

void CViewer::askAndSearch(bool reverse) {
  SearchValues values = searchValues();
  values.reverse = reverse;
  if (!TDEditor::askSearch(values, TDEditor::SearchDialogUse::Search)) return;
  searchValues() = values;
  if (!hitShows()) hit_ = Hit();
  search(values.reverse);
}

// Goes on from the last hit, wherever it is, or begins with what shows.
void CViewer::search(bool reverse) {
  SearchValues values = searchValues();
  values.reverse = reverse;
  if (values.text.empty()) return;
  SearchHit found;
  {
    TDEditor::CSearchWatch watch;
    found = searchFile(file_, values, searchStart(reverse), [&watch] { return watch.pressed(); });
  }
  if (found.result == SearchHit::Result::Found) showHit({found.position, found.end()});
  if (found.result == SearchHit::Result::NotFound) alert("String not found", Westring());
}

int64_t CViewer::searchStart(bool reverse) {
  if (hit_.exists()) return reverse ? hit_.from : hit_.to;
  if (!reverse) return page_.top();
  return page_.endShows() ? file_.size() : page_.layout().back().line.start;
}

bool CViewer::hitShows() {
  return hit_.exists() && hit_.from >= page_.top() && hit_.from < page_.bottomEnd();
}

// What is at the position: what was searched last, if it lies there, or one character.
Hit CViewer::hitAt(int64_t position) {
  const SearchValues& values = searchValues();
  const CaseRule rule = values.caseSensitive ? CaseRule::Exact : CaseRule::Folded;
  const BytePattern pattern(values.text.data(), file_.encoding(), rule);
  int error = 0;
  const std::string bytes = file_.bytesAt(position, pattern.longest(), error);
  BytePattern::Match match;
  for (size_t key = 0; pattern.valid() && key < bytes.size(); ++key) {
    key = pattern.key().find(bytes, key);
    if (key >= bytes.size() || !pattern.matches(bytes, key, match)) continue;
    if (match.before == static_cast<int64_t>(key)) return {position, position + match.length};
  }
  return {position, file_.lines().characterStart(position + 1)};
}

void CViewer::showHit(const Hit& hit) {
  hit_ = hit;
  page_.show(hit.from, hit.to);
}

void CViewer::askLine() {
  const std::optional<int64_t> number = TDEditor::askLine();
  if (!number) return;
  const LineCounter::Place place = goToLine(*number - 1);
  if (place.result == LineCounter::Place::Result::TooFew) tellOnly(place.lines, "lines");
}

LineCounter::Place CViewer::goToLine(int64_t line) {
  TDEditor::CSearchWatch watch;
  const LineCounter::Place place = counter_.find(line, [&watch] { return watch.pressed(); });
  if (place.result == LineCounter::Place::Result::Found) page_.goTo(place.position);
  return place;
}

void CViewer::askOffset() {
  const std::optional<int64_t> offset = TDEditor::askOffset();
  if (!offset) return;
  if (*offset >= file_.size()) return tellOnly(file_.size(), "bytes");
  page_.goTo(*offset);
  hit_ = {*offset, file_.lines().characterStart(*offset + 1)};
  page_.showColumns(hit_.from, hit_.to);
}
