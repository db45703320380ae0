#include "viewer/syntax_positions.h"

#include <algorithm>

void SyntaxPositions::bringTo(int64_t lineStart) {
  if (!syntax_.active()) return;
  if (rewrites_ != file_.rewrites()) {
    rewrites_ = file_.rewrites();
    store_.reset();
  }
  const SyntaxStart start = store_.startFor(lineStart);
  states_ = start.states;
  syntax_.setState(start.stack);
  int64_t position = std::max(start.position, file_.textStart());
  if (states_ == SyntaxStart::States::Guessed) {
    const int64_t line = file_.startOf(position);
    position = line < position ? file_.nextLine(line) : line;
  }
  while (position < lineStart) {
    const ViewedLine line = file_.lineAt(position);
    if (line.next <= position) return;  // the file has lost its end
    syntax_.skip(file_.text(line, CSyntax::ColouredCharacters));
    position = line.next;
    reached(position);
  }
}

void SyntaxPositions::reached(int64_t lineStart) {
  // At the end of the file a line may go on that is still being written.
  if (!syntax_.active() || states_ == SyntaxStart::States::Guessed) return;
  if (lineStart < file_.size()) store_.remember(lineStart, syntax_.state());
}
