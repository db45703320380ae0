#include "editor/window/journal_keeper.h"

namespace {
StoredPlace stored(TextPlace place) {
  return {place.line, place.index};
}
}  // namespace

void JournalKeeper::begin(Document& document, JournalBase base) {
  journal_.begin(std::move(base));
  document.setObserver(this);
}

void JournalKeeper::onReplaced(TextPlace from, TextPlace to, const TextSpan& inserted) {
  JournalStep step;
  step.from = stored(from);
  step.to = stored(to);
  journal_.add(std::move(step), [inserted] { return inserted.stored(); });
}

void JournalKeeper::add(JournalStep::Kind kind, int64_t value) {
  JournalStep step;
  step.kind = kind;
  step.value = value;
  journal_.add(std::move(step));
}

void JournalKeeper::onLineEnds(LineEndStyle style) {
  add(JournalStep::Kind::LineEnds, static_cast<int64_t>(style));
}

void JournalKeeper::onRecoded(int page) {
  add(JournalStep::Kind::Recode, page);
}

void JournalKeeper::onMark(bool hasMark) {
  add(JournalStep::Kind::Mark, hasMark ? 1 : 0);
}
