#include "editor/document/document.h"

#include <algorithm>

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
  clear();
  encoding_ = encoding;
  textStart_ = textStart;
  ScannedText text = scanText(std::move(bytes), textStart, {encoding, false}, progress);
  style_ = text.style == LineEndStyle::Unknown ? LineEndStyle::Lf : text.style;
  invalidLines_ = text.isStopped ? 0 : text.invalidLines;
  if (text.isStopped) return false;
  if (text.lines.lines > 0) lines_ = RunTree({std::move(text.lines)});
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
  if (line < lines_.lines()) {
    lines_.setLine(line, newRun(work_.text, work_.end));
  } else {
    last_ = newRun(work_.text);
  }
  work_ = {};
}

void Document::openWorkLine(int64_t line) {
  if (work_.line == line) return;
  store();
  if (LongLine* marks = look(line)) {
    work_.text = marks->slice(0, INT64_MAX);
    work_.end = lineEnd(line);
  } else {
    work_.text = std::move(seen_.text);
    work_.end = std::move(seen_.end);
  }
  work_.line = line;
  forgetSeen();
}

TextSpan Document::span(TextPlace from, TextPlace to) const {
  from = clamped(from);
  to = std::max(clamped(to), from);
  if (from.line == to.line) {
    const bool isLastLine = from.line == lines_.lines() && work_.line != from.line;
    if (isLastLine && from.index == 0 && to == end()) return {RunTree(), last_};
    return {RunTree(), newRun(slice(from.line, from.index, to.index - from.index))};
  }
  store();
  TextRun last =
      to.line == lines_.lines() && to == end() ? last_ : newRun(slice(to.line, 0, to.index));
  RunTree lines = lines_;
  lines.cutFrom(to.line);
  lines = lines.cutFrom(from.line);
  if (from.index > 0)
    lines.setLine(0, newRun(slice(from.line, from.index, INT64_MAX), lineEnd(from.line)));
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
  const std::wstring put = text.last_.wholeText();
  work_.text.replace(static_cast<size_t>(from.index), static_cast<size_t>(to.index - from.index),
                     put);
  workLineChanged(from.index);
  replaced.end = {from.line, from.index + static_cast<int64_t>(put.size())};
  return replaced;
}

Document::Replaced Document::replaceLines(TextPlace from, TextPlace to, const TextSpan& text) {
  Replaced replaced{span(from, to), {}};
  store();
  const bool reachesLast = to.line == lines_.lines();
  const std::wstring head = slice(from.line, 0, from.index);
  const std::wstring tail = slice(to.line, to.index, INT64_MAX);
  const std::wstring tailEnd = reachesLast ? std::wstring() : lineEnd(to.line);

  RunTree tailLine = lines_.cutFrom(to.line);
  RunTree behind = reachesLast ? RunTree() : tailLine.cutFrom(1);
  lines_.cutFrom(from.line);
  forgetSeen();

  TextSpan put(RunTree(), head.empty() ? TextRun() : newRun(head));
  put = put.joined(text);
  replaced.end = {from.line + put.lineEnds(), put.lastLength()};
  const bool keepsTail = to.index == 0 && put.last_.length == 0;
  lines_.append(std::move(put.lines_));
  if (reachesLast) {
    if (!keepsTail) last_ = gluedRuns(put.last_, newRun(tail));
  } else if (keepsTail) {
    lines_.append(std::move(tailLine));
  } else {
    lines_.append(RunTree({newRun(put.last_.wholeText() + tail, tailEnd)}));
  }
  lines_.append(std::move(behind));
  return replaced;
}
