#include "editor/window/journal_keeper.h"

#include <utility>

#include "editor/text/edit_directory.h"

void JournalKeeper::begin(Document& document, JournalBase base) {
  journal_.begin(std::move(base));
  document.setObserver(this);
}

void JournalKeeper::onReplaced(TextPlace from, TextPlace to, const TextSpan& inserted) {
  JournalStep step;
  step.from = from;
  step.to = to;
  noted(journal_.add(std::move(step), [inserted] { return inserted.stored(); }));
}

void JournalKeeper::add(JournalStep::Kind kind, int64_t value) {
  JournalStep step;
  step.kind = kind;
  step.value = value;
  noted(journal_.add(std::move(step)));
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

void JournalKeeper::onEncoding(const TextEncoding& encoding) {
  add(JournalStep::Kind::Encoding, encodingNumber(encoding));
}

int JournalKeeper::untoldError() {
  const int error = std::exchange(error_, 0);
  if (error == 0 || told_ || !editDirectoryFaults().isToBeTold(error)) return 0;
  told_ = true;
  return error;
}

int JournalKeeper::noted(int error) {
  if (error != 0) error_ = error;
  return error;
}
