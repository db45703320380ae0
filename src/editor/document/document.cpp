#include "editor/document/document.h"

#include <algorithm>

#include "editor/document/run_builder.h"

namespace {
// Of the line that is being edited, in one piece.
constexpr size_t MostWorkCharacters = 65536;
}  // namespace

Document::Document() = default;
Document::~Document() = default;

void Document::clear() {
  lines_ = {};
  last_ = {};
  work_ = {};
  forgetSeen();
}

bool Document::load(std::string bytes, const TextEncoding& encoding, size_t textStart,
                    const Progress& progress) {
  ScannedText text = scanText(std::move(bytes), textStart, {encoding, false}, progress);
  if (text.isStopped) return false;
  RunTree lines;
  if (text.lines.lines > 0) lines = RunTree({std::move(text.lines)});
  clear();
  encoding_ = encoding;
  textStart_ = textStart;
  style_ = text.style == LineEndStyle::Unknown ? LineEndStyle::Lf : text.style;
  invalidLines_ = text.invalidLines;
  lines_ = std::move(lines);
  if (text.rest.length > 0) last_ = std::move(text.rest);
  return true;
}

int64_t Document::lineCount() const {
  return lines_.lines() + 1;
}

void Document::forgetSeen() const {
  seen_ = {};
  seenLong_.clear();
}

// Puts the work line back among the others.
void Document::store() const {
  if (work_.line < 0) return;
  const int64_t line = work_.line;
  const bool isLast = line == lines_.lines();
  const std::wstring_view end = isLast ? std::wstring_view() : work_.end;
  const TextRun run = work_.pieces ? work_.pieces->gathered(end) : newRun(work_.text, end);
  if (isLast) {
    last_ = run;
  } else {
    lines_.setLine(line, run);
  }
  if (work_.pieces) keepSeen(line, std::move(work_.pieces));
  work_ = {};
}

void Document::openWorkLine(int64_t line) {
  if (work_.line == line) return;
  store();
  if (look(line)) {
    const auto seen = std::find_if(seenLong_.begin(), seenLong_.end(),
                                   [line](const SeenLongLine& one) { return one.line == line; });
    work_.pieces = std::move(seen->pieces);
    seenLong_.erase(seen);
    work_.end = lineEnd(line);
  } else {
    work_.text = std::move(seen_.text);
    work_.end = std::move(seen_.end);
    seen_ = {};
  }
  work_.line = line;
}

// What a line holds from one character to another, as runs without lines.
std::vector<TextRun> Document::runsBetween(int64_t line, int64_t from, int64_t to) const {
  if (LongLine* pieces = look(line)) return pieces->runsBetween(from, to);
  return {newRun(slice(line, from, to - from))};
}

// The same as one run.
TextRun Document::textBetween(int64_t line, int64_t from, int64_t to) const {
  return joinedRuns(runsBetween(line, from, to));
}

TextSpan Document::span(TextPlace from, TextPlace to) const {
  from = clamped(from);
  to = std::max(clamped(to), from);
  if (from.line == to.line) {
    const bool isLastLine = from.line == lines_.lines() && work_.line != from.line;
    if (isLastLine && from.index == 0 && to == end()) return {RunTree(), last_};
    return {RunTree(), textBetween(from.line, from.index, to.index)};
  }
  store();
  TextRun last =
      to.line == lines_.lines() && to == end() ? last_ : textBetween(to.line, 0, to.index);
  RunTree lines = lines_;
  lines.cutFrom(to.line);
  lines = lines.cutFrom(from.line);
  if (from.index > 0)
    lines.setLine(0, joinedRuns(runsBetween(from.line, from.index, INT64_MAX), lineEnd(from.line)));
  return {std::move(lines), std::move(last)};
}

Document::Replaced Document::replace(TextPlace from, TextPlace to, const TextSpan& text) {
  from = clamped(from);
  to = std::max(clamped(to), from);
  if (from == to && text.empty()) return {{}, from};
  const bool isInLine = from.line == to.line && text.lineEnds() == 0;
  Replaced replaced = isInLine ? replaceInLine(from, to, text) : replaceLines(from, to, text);
  if (observer_) observer_->onReplaced(from, to, text);
  return replaced;
}

Document::Replaced Document::replaceInLine(TextPlace from, TextPlace to, const TextSpan& text) {
  Replaced replaced{span(from, to), {}};
  openWorkLine(from.line);
  replaced.end = {from.line, from.index + putInWorkLine(from.index, to.index, text.last_)};
  return replaced;
}

// Returns how many characters were put in.
int64_t Document::putInWorkLine(int64_t from, int64_t to, const TextRun& text) {
  if (!work_.pieces && work_.text.size() + text.length > MostWorkCharacters) {
    work_.pieces = std::make_unique<LongLine>(newRun(work_.text));
    work_.text = {};
  }
  if (work_.pieces) return work_.pieces->replace(from, to, text);
  const std::wstring put = text.wholeText();
  work_.text.replace(static_cast<size_t>(from), static_cast<size_t>(to - from), put);
  return static_cast<int64_t>(put.size());
}

Document::Replaced Document::replaceLines(TextPlace from, TextPlace to, const TextSpan& text) {
  Replaced replaced{span(from, to), {}};
  store();
  const bool reachesLast = to.line == lines_.lines();
  // Of the line in the making.
  std::vector<TextRun> runs = runsBetween(from.line, 0, from.index);
  const std::vector<TextRun> tail = runsBetween(to.line, to.index, INT64_MAX);
  const std::wstring tailEnd = reachesLast ? std::wstring() : lineEnd(to.line);

  RunTree tailLine = lines_.cutFrom(to.line);
  RunTree behind = reachesLast ? RunTree() : tailLine.cutFrom(1);
  lines_.cutFrom(from.line);
  forgetSeen();

  replaced.end = {from.line + text.lineEnds(), text.lastLength()};
  if (text.lineEnds() == 0) replaced.end.index += from.index;
  RunTree put = text.lines_;
  if (!put.empty()) {
    if (from.index > 0) {
      const TextRun& first = *put.find(0).run;
      runs.push_back(first.textOf(first.lineAt(0).text));
      put.setLine(0, joinedRuns(runs, first.lineEnd(0)));
    }
    lines_.append(std::move(put));
    runs.clear();
  }
  runs.push_back(text.last_);
  const bool keepsTail = to.index == 0 && replaced.end.index == 0;
  runs.insert(runs.end(), tail.begin(), tail.end());
  if (reachesLast) {
    if (!keepsTail) last_ = joinedRuns(runs);
  } else if (keepsTail) {
    lines_.append(std::move(tailLine));
  } else {
    lines_.append(RunTree({joinedRuns(runs, tailEnd)}));
  }
  lines_.append(std::move(behind));
  return replaced;
}

void Document::replaceInLines(const std::vector<LineChange>& changes) {
  if (changes.empty()) return;
  store();
  const int64_t first = changes.front().line;
  RunTree lines = lines_.cutFrom(first);
  RunTree behind = lines.cutFrom(changes.back().line + 1 - first);
  lines_.append(changedLines(lines, first, changes));
  lines_.append(std::move(behind));
  forgetSeen();
  if (changes.back().line == lines_.lines()) {
    const LineChange& change = changes.back();
    openWorkLine(change.line);
    putInWorkLine(change.from, change.to, newRun(change.text));
  }
  if (!observer_) return;
  for (const LineChange& change : changes) {
    const TextSpan text(RunTree(), newRun(change.text));
    observer_->onReplaced({change.line, change.from}, {change.line, change.to}, text);
  }
}

// The lines, which begin with number `first`, with the changes that are theirs.
RunTree Document::changedLines(const RunTree& lines, int64_t first,
                               const std::vector<LineChange>& changes) {
  RunBuilder builder;
  auto change = changes.begin();
  lines.forEach([&](const TextRun& run) {
    LineStart kept;  // up to where the run has been taken over
    for (; change != changes.end() && change->line < first + run.lines; ++change) {
      const LineStart start = run.startOf(change->line - first, kept);
      if (start.line > kept.line) builder.addRun(run.part(kept, start));
      const LineBytes line = run.lineFrom(start.offset);
      std::wstring text = decodeBytes(line.text, run.storage);
      text.replace(static_cast<size_t>(change->from),
                   static_cast<size_t>(change->to - change->from), change->text);
      builder.addLine(text, run.endText(line));
      kept = {start.line + 1, start.offset + line.text.size() + line.end.size()};
    }
    if (kept.line < run.lines) builder.addRun(run.part(kept, {run.lines, run.length}));
    first += run.lines;
    return true;
  });
  return builder.finish();
}
