#include "editor/document/document_search.h"

#include <algorithm>
#include <vector>

#include "editor/document/run_search.h"
#include "editor/document/search_pattern.h"

namespace {
// How many replacements are made between two looks.
constexpr int64_t HitsBetweenLooks = 256;
constexpr std::wstring_view LineEndCharacters(L"\r\n\0", 3);

bool isFoundNowhere(const SearchQuery& query) {
  return query.text.empty() || query.text.find_first_of(LineEndCharacters) != std::wstring::npos;
}
}  // namespace

SearchEnd findText(const Document& document, const SearchQuery& query, TextPlace& place,
                   const StopAsked& stop) {
  if (isFoundNowhere(query)) return SearchEnd::NotFound;
  const SearchPattern pattern(query);
  RunSearch runs(document, pattern, stop);
  return runs.find(place);
}

bool isHit(const Document& document, const SearchQuery& query, TextPlace place) {
  if (isFoundNowhere(query)) return false;
  // One character before it and one behind it decide whether it is a whole word.
  const int64_t begin = std::max<int64_t>(place.index - 1, 0);
  const SearchPattern pattern(query);
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
// How many characters of a line are looked through at once.
constexpr int64_t WindowCharacters = 65536;
// How many lines are changed at once.
constexpr size_t MostChanges = 4096;

// All hits of a line at once, or of a part of one that is long: forward from one that is known.
// Each is a step of its own; they reach the document when `finish` is called.
class LineReplacement {
 public:
  LineReplacement(Document& document, EditHistory& history, const SearchPattern& pattern,
                  const TextSpan& replacement, int64_t command)
      : document_(document),
        history_(history),
        pattern_(pattern),
        replacement_(replacement.text()),
        command_(command) {}

  // Returns where the search goes on: in the same line, or at the start of the next one.
  // `knownText` is the text of the line, if somebody has it.
  TextPlace run(TextPlace place, const std::wstring* knownText) {
    const int64_t length = knownText ? std::ssize(*knownText) : document_.lineLength(place.line);
    const int64_t start = std::max<int64_t>(place.index - 1, 0);
    const int64_t size = WindowCharacters + pattern_.length();
    const std::wstring slice =
        knownText ? std::wstring() : document_.slice(place.line, start, size);
    const std::wstring_view old =
        knownText ? std::wstring_view(*knownText).substr(static_cast<size_t>(start)) : slice;
    Document::LineChange change = changeOf(place, start, old);
    if (length <= WindowCharacters) {
      changes_.push_back(std::move(change));
      if (changes_.size() == MostChanges) finish();
      return {place.line + 1, 0};
    }
    const TextSpan text = TextSpan::fromText(change.text, LineEndStyle::Lf);
    return document_.replace({change.line, change.from}, {change.line, change.to}, text).end;
  }

  int64_t count() const { return count_; }

  void finish() {
    document_.replaceInLines(changes_);
    changes_.clear();
  }

 private:
  // `old` begins at `start`, one character before the place if there is one.
  Document::LineChange changeOf(TextPlace place, int64_t start, std::wstring_view old) {
    Document::LineChange change{place.line, place.index, 0, {}};
    const wchar_t before = place.index == 0 ? L' ' : old[0];
    int64_t kept = place.index - start;  // up to where the old text has been taken over
    for (int64_t hit = kept; hit >= 0 && hit < WindowCharacters; ++count_) {
      change.text += old.substr(static_cast<size_t>(kept), static_cast<size_t>(hit - kept));
      pushStep({place.line, change.from + std::ssize(change.text)},
               old.substr(static_cast<size_t>(hit), pattern_.text().size()));
      change.text += replacement_;
      kept = hit + pattern_.length();
      hit = pattern_.findBehind(old, kept, change.text.empty() ? before : change.text.back());
    }
    change.to = start + kept;
    return change;
  }

  void pushStep(TextPlace from, std::wstring_view removed) {
    if (removed != lastRemoved_) {
      lastRemoved_ = removed;
      lastSpan_ = TextSpan::fromText(lastRemoved_, LineEndStyle::Lf);
    }
    const TextPlace to{from.line, from.index + std::ssize(replacement_)};
    history_.push({lastSpan_, from, to, from, to, command_});
  }

  Document& document_;
  EditHistory& history_;
  const SearchPattern& pattern_;
  const std::wstring replacement_;
  const int64_t command_;
  int64_t count_ = 0;
  std::vector<Document::LineChange> changes_;
  std::wstring lastRemoved_;  // most hits are spelt alike and share their text
  TextSpan lastSpan_;
};
}  // namespace

ReplaceAllResult replaceAll(Document& document, EditHistory& history, const SearchQuery& query,
                            const TextSpan& replacement, TextPlace place, int64_t command,
                            const StopAsked& stop) {
  ReplaceAllResult result;
  if (isFoundNowhere(query)) return result;
  const SearchPattern pattern(query);
  RunSearch runs(document, pattern, stop);
  LineReplacement lines(document, history, pattern, replacement, command);
  const bool takesLines = pattern.isForward() && replacement.lineEnds() == 0;
  int64_t lookAt = HitsBetweenLooks;
  result.end = runs.find(place);
  while (result.end == SearchEnd::Found) {
    const int64_t line = place.line;
    if (takesLines) {
      place = lines.run(place, runs.hitLine());
      result.count = lines.count();
    } else {
      place = replaceHit(document, history, query, replacement, place, command);
      ++result.count;
    }
    if (result.count >= lookAt) {
      lookAt = result.count + HitsBetweenLooks;
      if (stop && stop()) {
        result.end = SearchEnd::Stopped;
        break;
      }
    }
    const bool isLineDone = takesLines && place.line != line;
    result.end = isLineDone ? runs.findFrom(place.line, place) : runs.find(place);
  }
  lines.finish();
  return result;
}
