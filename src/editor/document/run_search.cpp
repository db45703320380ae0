#include "editor/document/run_search.h"

#include <algorithm>

namespace {
// How many bytes are looked at between two looks for a key.
constexpr size_t BytesBetweenLooks = size_t{1} << 20;
// Longer lines are looked at a stretch at a time.
constexpr size_t ShortBytes = 65536;
constexpr std::string_view LineEndBytes("\r\n\0", 3);

// A line of any length, a stretch at a time: each has what a hit at its edge needs beside it.
class LongLineSearch {
 public:
  LongLineSearch(const Document& document, int64_t line, const SearchPattern& pattern)
      : document_(document), line_(line), pattern_(pattern), length_(document.lineLength(line)) {}

  // The nearest hit from `at` on in the direction; -1 when there is none, or when `isStopped` says
  // so, which is asked after each stretch.
  int64_t find(int64_t at, const std::function<bool(size_t)>& isStopped) const {
    return pattern_.isForward() ? findForward(at, isStopped) : findBackward(at, isStopped);
  }

 private:
  // The first is small, since the next hit is often near.
  static constexpr int64_t FirstStretch = 1024;
  static constexpr int64_t LongestStretch = 65536;

  int64_t findForward(int64_t at, const std::function<bool(size_t)>& isStopped) const {
    for (int64_t stretch = FirstStretch; at + pattern_.length() <= length_;) {
      const int64_t hit = findIn(at, std::min(at + stretch, length_), at);
      if (hit >= 0 || isStopped(static_cast<size_t>(stretch))) return hit;
      at += stretch;
      stretch = std::min(2 * stretch, LongestStretch);
    }
    return -1;
  }

  int64_t findBackward(int64_t at, const std::function<bool(size_t)>& isStopped) const {
    at = std::min(at, length_ - pattern_.length());
    for (int64_t stretch = FirstStretch; at >= 0;) {
      const int64_t hit = findIn(std::max<int64_t>(at - stretch + 1, 0), at + 1, at);
      if (hit >= 0 || isStopped(static_cast<size_t>(stretch))) return hit;
      at -= stretch;
      stretch = std::min(2 * stretch, LongestStretch);
    }
    return -1;
  }

  // A hit that begins from `from` to before `to`, looked for from `at` on.
  int64_t findIn(int64_t from, int64_t to, int64_t at) const {
    const int64_t begin = std::max<int64_t>(from - 1, 0);
    const std::wstring text = document_.slice(line_, begin, to - begin + pattern_.length());
    const int64_t hit = pattern_.findIn(text, at - begin);
    return hit < 0 || hit + begin < from || hit + begin >= to ? -1 : hit + begin;
  }

  const Document& document_;
  const int64_t line_;
  const SearchPattern& pattern_;
  const int64_t length_;
};
}  // namespace

SearchEnd RunSearch::find(TextPlace& place) {
  hitLine_.reset();
  if (place.line < 0 || place.line >= document_.lineCount()) return SearchEnd::NotFound;
  const int64_t index = indexIn(place.line, place.index);
  if (index < 0)
    return isStopped_ ? SearchEnd::Stopped
                      : findFrom(place.line + (pattern_.isForward() ? 1 : -1), place);
  place.index = index;
  return SearchEnd::Found;
}

SearchEnd RunSearch::findFrom(int64_t line, TextPlace& place) {
  hitLine_.reset();
  while (line >= 0 && line < document_.lineCount()) {
    const Document::RunPlace found = document_.runAt(line);
    const bool isFound = CandidateScan::isPossible(found.run->storage)
                             ? (pattern_.isForward() ? scanForward(found, line, place)
                                                     : scanBackward(found, line, place))
                             : (pattern_.isForward() ? walkForward(found, line, place)
                                                     : walkBackward(found, line, place));
    if (isFound) return SearchEnd::Found;
    if (isStopped_) return SearchEnd::Stopped;
    const int64_t lines = std::max<int64_t>(found.run->lines, 1);
    line = pattern_.isForward() ? found.firstLine + lines : found.firstLine - 1;
  }
  return SearchEnd::NotFound;
}

bool RunSearch::looksForStop(size_t bytes) {
  looked_ += bytes;
  if (looked_ < BytesBetweenLooks) return isStopped_;
  looked_ = 0;
  isStopped_ = isStopped_ || (stop_ && stop_());
  return isStopped_;
}

const CandidateScan& RunSearch::scanFor(const TextStorage& storage) {
  if (!scan_ || scan_->storage() != storage)
    scan_.emplace(pattern_.text(), pattern_.folds(), storage);
  return *scan_;
}

int64_t RunSearch::indexIn(int64_t line, int64_t at) {
  if (document_.lineBytes(line) <= static_cast<int64_t>(ShortBytes))
    return pattern_.findIn(document_.text(line), at);
  return LongLineSearch(document_, line, pattern_).find(at, [this](size_t characters) {
    return looksForStop(characters);
  });
}

bool RunSearch::isIn(int64_t line, TextPlace& place) {
  const int64_t index = indexIn(line, pattern_.isForward() ? 0 : INT64_MAX);
  if (index >= 0) place = {line, index};
  return index >= 0;
}

// The line start that is known of a run; of its first line when it isn't the one scanned last.
LineStart RunSearch::knownStart(const TextRun& run) const {
  const bool isSame = run.block.get() == scanned_.block.get() && run.begin == scanned_.begin;
  return isSame ? known_ : LineStart();
}

// The line of the byte at `offset`, as bytes of the run.
LineBytes RunSearch::lineAround(const TextRun& run, size_t offset) {
  const std::string_view all = run.bytes();
  const size_t before =
      offset == 0 ? std::string_view::npos : all.find_last_of(LineEndBytes, offset - 1);
  const size_t begin = before == std::string_view::npos ? 0 : before + 1;
  const LineEnd end = findLineEnd(all, offset, run.storage.unitFormat());
  return {all.substr(begin, end.at - begin), all.substr(end.at, end.length)};
}

// Whether the line of a candidate holds a hit.
bool RunSearch::isHitAround(const Document::RunPlace& found, size_t offset, const LineBytes& bytes,
                            TextPlace& place) {
  const TextRun& run = *found.run;
  const auto lineOf = [&] {
    if (run.lines == 0) return found.firstLine;
    known_ = {run.lineOf(offset, knownStart(run)),
              static_cast<size_t>(bytes.text.data() - run.bytes().data())};
    scanned_ = run;
    return found.firstLine + known_.line;
  };
  if (bytes.text.size() > ShortBytes) return isIn(lineOf(), place);
  std::wstring text = decodeBytes(bytes.text, run.storage);
  const int64_t index = pattern_.findIn(text, pattern_.isForward() ? 0 : INT64_MAX);
  if (index < 0) return false;
  place = {lineOf(), index};
  hitLine_ = std::move(text);
  return true;
}

bool RunSearch::scanForward(const Document::RunPlace& found, int64_t line, TextPlace& place) {
  const TextRun& run = *found.run;
  const CandidateScan& scan = scanFor(run.storage);
  const std::string_view all = run.bytes();
  size_t at = run.lines == 0 ? 0 : run.startOf(line - found.firstLine, knownStart(run)).offset;
  while (at < all.size()) {
    const size_t limit = std::min(at + BytesBetweenLooks, all.size());
    const size_t offset = scan.first(all, at, limit);
    if (offset == CandidateScan::None) {
      if (looksForStop(limit - at)) return false;
      at = limit;
      continue;
    }
    const LineBytes bytes = lineAround(run, offset);
    if (isHitAround(found, offset, bytes, place)) return true;
    const auto next =
        static_cast<size_t>(bytes.end.data() - all.data()) + std::max<size_t>(bytes.end.size(), 1);
    if (looksForStop(next - at)) return false;
    at = next;
  }
  return false;
}

bool RunSearch::scanBackward(const Document::RunPlace& found, int64_t line, TextPlace& place) {
  const TextRun& run = *found.run;
  const CandidateScan& scan = scanFor(run.storage);
  const std::string_view all = run.bytes();
  size_t to = run.lines == 0 ? all.size() : run.offsetOf(line - found.firstLine + 1);
  while (to > 0) {
    const size_t from = to - std::min(BytesBetweenLooks, to);
    const size_t offset = scan.last(all, from, to);
    if (offset == CandidateScan::None) {
      if (looksForStop(to - from)) return false;
      to = from;
      continue;
    }
    const LineBytes bytes = lineAround(run, offset);
    if (isHitAround(found, offset, bytes, place)) return true;
    const auto begin = static_cast<size_t>(bytes.text.data() - all.data());
    if (looksForStop(to - begin)) return false;
    to = begin;
  }
  return false;
}

bool RunSearch::walkForward(const Document::RunPlace& found, int64_t line, TextPlace& place) {
  if (found.run->lines == 0) return isIn(line, place);
  const TextRun rest = found.run->part(line - found.firstLine, found.run->lines);
  for (LineWalk walk(rest); walk.next();) {
    const int64_t index = pattern_.findIn(walk.text(), 0);
    if (index >= 0) {
      place = {line + walk.line(), index};
      return true;
    }
    if (looksForStop(walk.bytes().text.size() + 1)) return false;
  }
  return false;
}

bool RunSearch::walkBackward(const Document::RunPlace& found, int64_t line, TextPlace& place) {
  for (; line >= found.firstLine; --line) {
    if (isIn(line, place)) return true;
    if (looksForStop(static_cast<size_t>(document_.lineBytes(line)) + 1)) return false;
  }
  return false;
}
