#include "editor/document/document_search.h"

#include <algorithm>
#include <vector>

#include "editor/document/run_search.h"
#include "editor/document/search_pattern.h"

namespace {
// How many replacements are made between two looks, each counting with the length of its line.
constexpr int64_t HitsBetweenLooks = 256;
constexpr int64_t CharactersOfAHit = 16384;
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
// All hits of a line at once, forward from one that is known; each is a step of its own.
class LineReplacement {
 public:
  LineReplacement(Document& document, EditHistory& history, const SearchPattern& pattern,
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
  const SearchPattern& pattern_;
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
  const SearchPattern pattern(query);
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
