#include "editor/document/document_search.h"

#include <algorithm>
#include <optional>

#include "editor/document/candidate_scan.h"
#include "editor/document/text_rules.h"
#include "foundation/fold.h"

namespace {
// How many bytes are looked at between two looks for a key.
constexpr size_t BytesBetweenLooks = size_t{1} << 20;
// How many replacements are made between two looks, each counting with the length of its line.
constexpr int64_t HitsBetweenLooks = 256;
constexpr int64_t CharactersOfAHit = 16384;
// Longer lines are looked at a stretch at a time.
constexpr size_t ShortBytes = 65536;
constexpr std::wstring_view LineEndCharacters(L"\r\n\0", 3);
constexpr std::string_view LineEndBytes("\r\n\0", 3);

// A query, ready to be compared with many lines.
class Pattern {
 public:
  explicit Pattern(const SearchQuery& query) : query_(query), text_(query.text) {
    if (folds()) std::transform(text_.begin(), text_.end(), text_.begin(), foldChar);
  }

  const std::wstring& text() const { return text_; }
  int64_t length() const { return static_cast<int64_t>(text_.size()); }
  bool folds() const { return query_.letters == SearchCase::Ignored; }
  bool isForward() const { return query_.direction == SearchDirection::Forward; }

  // `at` is one where the text fits in.
  bool isHit(std::wstring_view line, int64_t at) const {
    return isHitBehind(line, at, at == 0 ? L' ' : line[static_cast<size_t>(at) - 1]);
  }

  // The nearest hit from `at` on in the direction; -1 when there is none.
  int64_t findIn(std::wstring_view line, int64_t at) const {
    const int64_t last = static_cast<int64_t>(line.size()) - length();
    if (isForward()) {
      for (; at <= last; ++at)
        if (isHit(line, at)) return at;
      return -1;
    }
    for (at = std::min(at, last); at >= 0; --at)
      if (isHit(line, at)) return at;
    return -1;
  }

  // The same, forward, when another text ends at `at` now, with `before`.
  int64_t findBehind(std::wstring_view line, int64_t at, wchar_t before) const {
    const bool fits = at + length() <= static_cast<int64_t>(line.size());
    return fits && isHitBehind(line, at, before) ? at : findIn(line, at + 1);
  }

 private:
  bool isHitBehind(std::wstring_view line, int64_t at, wchar_t before) const {
    for (size_t i = 0; i < text_.size(); ++i) {
      const wchar_t c = line[static_cast<size_t>(at) + i];
      if ((folds() ? foldChar(c) : c) != text_[i]) return false;
    }
    if (query_.words == SearchWords::Any) return true;
    const size_t behind = static_cast<size_t>(at) + text_.size();
    return !isEditWordCharacter(before) &&
           (behind == line.size() || !isEditWordCharacter(line[behind]));
  }

  const SearchQuery& query_;
  std::wstring text_;
};

// A line of any length, a stretch at a time: each has what a hit at its edge needs beside it.
class LongLineSearch {
 public:
  LongLineSearch(const Document& document, int64_t line, const Pattern& pattern)
      : document_(document), line_(line), pattern_(pattern), length_(document.lineLength(line)) {}

  // The nearest hit from `at` on in the direction; -1 when there is none, or when `isStopped` says
  // so, which is asked after each stretch.
  int64_t find(int64_t at, const std::function<bool(size_t)>& isStopped) const {
    return pattern_.isForward() ? findForward(at, isStopped) : findBackward(at, isStopped);
  }

 private:
  static constexpr int64_t Stretch = 65536;

  int64_t findForward(int64_t at, const std::function<bool(size_t)>& isStopped) const {
    for (; at + pattern_.length() <= length_; at += Stretch) {
      const int64_t hit = findIn(at, std::min(at + Stretch, length_), at);
      if (hit >= 0 || isStopped(Stretch)) return hit;
    }
    return -1;
  }

  int64_t findBackward(int64_t at, const std::function<bool(size_t)>& isStopped) const {
    at = std::min(at, length_ - pattern_.length());
    for (; at >= 0; at -= Stretch) {
      const int64_t hit = findIn(std::max<int64_t>(at - Stretch + 1, 0), at + 1, at);
      if (hit >= 0 || isStopped(Stretch)) return hit;
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
  const Pattern& pattern_;
  const int64_t length_;
};

// The lines before or behind a first one, a run at a time.
class RunSearch {
 public:
  RunSearch(const Document& document, const Pattern& pattern, const StopAsked& stop)
      : document_(document), pattern_(pattern), stop_(stop) {}

  SearchEnd find(TextPlace& place) {
    if (place.line < 0 || place.line >= document_.lineCount()) return SearchEnd::NotFound;
    const int64_t index = indexIn(place.line, place.index);
    if (index < 0)
      return isStopped_ ? SearchEnd::Stopped
                        : findFrom(place.line + (pattern_.isForward() ? 1 : -1), place);
    place.index = index;
    return SearchEnd::Found;
  }

 private:
  // From the start of `line` on, or from its end backward.
  SearchEnd findFrom(int64_t line, TextPlace& place) {
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

  bool looksForStop(size_t bytes) {
    looked_ += bytes;
    if (looked_ < BytesBetweenLooks) return isStopped_;
    looked_ = 0;
    isStopped_ = isStopped_ || (stop_ && stop_());
    return isStopped_;
  }

  const CandidateScan& scanFor(const TextStorage& storage) {
    if (!scan_ || scan_->storage() != storage)
      scan_.emplace(pattern_.text(), pattern_.folds(), storage);
    return *scan_;
  }

  int64_t indexIn(int64_t line, int64_t at) {
    if (document_.lineBytes(line) <= static_cast<int64_t>(ShortBytes))
      return pattern_.findIn(document_.text(line), at);
    return LongLineSearch(document_, line, pattern_).find(at, [this](size_t characters) {
      return looksForStop(characters);
    });
  }

  bool isIn(int64_t line, TextPlace& place) {
    const int64_t index = indexIn(line, pattern_.isForward() ? 0 : INT64_MAX);
    if (index >= 0) place = {line, index};
    return index >= 0;
  }

  // The line of the byte at `offset`, as bytes of the run.
  static LineBytes lineAround(const TextRun& run, size_t offset) {
    const std::string_view all = run.bytes();
    const size_t before =
        offset == 0 ? std::string_view::npos : all.find_last_of(LineEndBytes, offset - 1);
    const size_t begin = before == std::string_view::npos ? 0 : before + 1;
    const LineEnd end = findLineEnd(all, offset, run.storage.unitFormat());
    return {all.substr(begin, end.at - begin), all.substr(end.at, end.length)};
  }

  // Whether the line of a candidate holds a hit.
  bool isHitAround(const Document::RunPlace& found, size_t offset, const LineBytes& bytes,
                   TextPlace& place) {
    const TextRun& run = *found.run;
    const auto lineInRun = [&] { return run.lines > 0 ? run.lineOf(offset) : 0; };
    if (bytes.text.size() > ShortBytes) return isIn(found.firstLine + lineInRun(), place);
    const int64_t index =
        pattern_.findIn(decodeBytes(bytes.text, run.storage), pattern_.isForward() ? 0 : INT64_MAX);
    if (index >= 0) place = {found.firstLine + lineInRun(), index};
    return index >= 0;
  }

  bool scanForward(const Document::RunPlace& found, int64_t line, TextPlace& place) {
    const TextRun& run = *found.run;
    const CandidateScan& scan = scanFor(run.storage);
    const std::string_view all = run.bytes();
    size_t at = run.offsetOf(line - found.firstLine);
    if (run.lines == 0) at = 0;
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
      const auto next = static_cast<size_t>(bytes.end.data() - all.data()) +
                        std::max<size_t>(bytes.end.size(), 1);
      if (looksForStop(next - at)) return false;
      at = next;
    }
    return false;
  }

  bool scanBackward(const Document::RunPlace& found, int64_t line, TextPlace& place) {
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

  bool walkForward(const Document::RunPlace& found, int64_t line, TextPlace& place) {
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

  bool walkBackward(const Document::RunPlace& found, int64_t line, TextPlace& place) {
    for (; line >= found.firstLine; --line) {
      if (isIn(line, place)) return true;
      if (looksForStop(static_cast<size_t>(document_.lineBytes(line)) + 1)) return false;
    }
    return false;
  }

  const Document& document_;
  const Pattern& pattern_;
  const StopAsked& stop_;
  std::optional<CandidateScan> scan_;
  size_t looked_ = 0;
  bool isStopped_ = false;
};

bool isFoundNowhere(const SearchQuery& query) {
  return query.text.empty() || query.text.find_first_of(LineEndCharacters) != std::wstring::npos;
}
}  // namespace

SearchEnd findText(const Document& document, const SearchQuery& query, TextPlace& place,
                   const StopAsked& stop) {
  if (isFoundNowhere(query)) return SearchEnd::NotFound;
  const Pattern pattern(query);
  RunSearch runs(document, pattern, stop);
  return runs.find(place);
}

bool isHit(const Document& document, const SearchQuery& query, TextPlace place) {
  if (isFoundNowhere(query)) return false;
  // One character before it and one behind it decide whether it is a whole word.
  const int64_t begin = std::max<int64_t>(place.index - 1, 0);
  const Pattern pattern(query);
  const std::wstring around =
      document.slice(place.line, begin, place.index - begin + pattern.length() + 1);
  const int64_t at = place.index - begin;
  if (at + pattern.length() > static_cast<int64_t>(around.size())) return false;
  return pattern.isHit(around, at);
}

TextPlace stepOn(TextPlace place, SearchDirection direction) {
  return {place.line, place.index + (direction == SearchDirection::Forward ? 1 : -1)};
}

TextPlace replaceHit(Document& document, EditHistory& history, const SearchQuery& query,
                     const TextSpan& replacement, TextPlace place, int64_t command) {
  const TextPlace behind{place.line, place.index + static_cast<int64_t>(query.text.size())};
  Document::Replaced replaced = document.replace(place, behind, replacement);
  history.push({std::move(replaced.removed), place, replaced.end, place, replaced.end, command});
  return query.direction == SearchDirection::Forward ? replaced.end
                                                     : TextPlace{place.line, place.index - 1};
}

namespace {
// All hits of a line at once, forward from one that is known; each is a step of its own.
class LineReplacement {
 public:
  LineReplacement(Document& document, EditHistory& history, const Pattern& pattern,
                  const TextSpan& replacement, int64_t command)
      : document_(document),
        history_(history),
        pattern_(pattern),
        replacement_(replacement.text()),
        command_(command) {}

  // Returns how many there were; `place` is the start of the last one then.
  int64_t run(TextPlace& place) {
    const int64_t line = place.line;
    const std::wstring old = document_.text(line);
    std::wstring fresh;
    int64_t count = 0;
    int64_t kept = place.index;  // up to where the old text has been taken over
    for (int64_t hit = place.index; hit >= 0;) {
      fresh.append(old, static_cast<size_t>(kept), static_cast<size_t>(hit - kept));
      starts_.push_back(place.index + static_cast<int64_t>(fresh.size()));
      removed_.push_back(old.substr(static_cast<size_t>(hit), pattern_.text().size()));
      fresh += replacement_;
      kept = hit + pattern_.length();
      ++count;
      hit = pattern_.findBehind(old, kept, beforeNext(old, fresh, place.index));
    }
    document_.replace(place, {line, kept}, TextSpan::fromText(fresh, LineEndStyle::Lf));
    pushSteps(line);
    place.index = starts_.back();
    starts_.clear();
    removed_.clear();
    return count;
  }

 private:
  // What stands before the place behind the last replacement.
  static wchar_t beforeNext(const std::wstring& old, const std::wstring& fresh, int64_t start) {
    if (!fresh.empty()) return fresh.back();
    return start == 0 ? L' ' : old[static_cast<size_t>(start) - 1];
  }

  void pushSteps(int64_t line) {
    for (size_t i = 0; i < starts_.size(); ++i) {
      if (removed_[i] != lastRemoved_) {
        lastRemoved_ = removed_[i];
        lastSpan_ = TextSpan::fromText(lastRemoved_, LineEndStyle::Lf);
      }
      const TextPlace from{line, starts_[i]};
      const TextPlace to{line, starts_[i] + static_cast<int64_t>(replacement_.size())};
      history_.push({lastSpan_, from, to, from, to, command_});
    }
  }

  Document& document_;
  EditHistory& history_;
  const Pattern& pattern_;
  const std::wstring replacement_;
  const int64_t command_;
  std::vector<int64_t> starts_;
  std::vector<std::wstring> removed_;
  std::wstring lastRemoved_;  // most hits are spelt alike and share their text
  TextSpan lastSpan_;
};
}  // namespace

ReplaceAllResult replaceAll(Document& document, EditHistory& history, const SearchQuery& query,
                            const TextSpan& replacement, TextPlace place, int64_t command,
                            const StopAsked& stop) {
  ReplaceAllResult result;
  if (isFoundNowhere(query)) return result;
  const Pattern pattern(query);
  RunSearch runs(document, pattern, stop);
  LineReplacement line(document, history, pattern, replacement, command);
  const bool takesLines = pattern.isForward() && replacement.lineEnds() == 0;
  int64_t untilLook = HitsBetweenLooks;
  while ((result.end = runs.find(place)) == SearchEnd::Found) {
    result.last = place;
    if (takesLines) {
      result.count += line.run(place);
      result.last = place;
      place.index = document.lineLength(place.line);
    } else {
      place = replaceHit(document, history, query, replacement, place, command);
      ++result.count;
    }
    untilLook -= 1 + document.lineLength(result.last.line) / CharactersOfAHit;
    if (untilLook > 0) continue;
    untilLook = HitsBetweenLooks;
    if (stop && stop()) {
      result.end = SearchEnd::Stopped;
      break;
    }
  }
  return result;
}
