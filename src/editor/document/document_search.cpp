#include "editor/document/document_search.h"

#include <algorithm>

#include "editor/document/text_rules.h"
#include "foundation/fold.h"

namespace {
// How much text is compared between two looks for a key.
constexpr int64_t CharactersBetweenLooks = int64_t{1} << 18;
// How many replacements are made between two looks.
constexpr int64_t HitsBetweenLooks = 256;

// A query, ready to be compared with many lines.
class Pattern {
 public:
  explicit Pattern(const SearchQuery& query) : query_(query), text_(query.text) {
    if (folds()) std::transform(text_.begin(), text_.end(), text_.begin(), foldChar);
  }

  int64_t length() const { return static_cast<int64_t>(text_.size()); }
  bool folds() const { return query_.letters == SearchCase::Ignored; }

  bool isHit(std::wstring_view line, int64_t at) const {
    for (size_t i = 0; i < text_.size(); ++i) {
      const wchar_t c = line[static_cast<size_t>(at) + i];
      if ((folds() ? foldChar(c) : c) != text_[i]) return false;
    }
    return query_.words == SearchWords::Any || isWholeWord(line, at);
  }

  // The nearest hit from `at` on in the direction; -1 when there is none.
  int64_t findIn(std::wstring_view line, int64_t at) const {
    const int64_t last = static_cast<int64_t>(line.size()) - length();
    if (query_.direction == SearchDirection::Forward) {
      for (; at <= last; ++at)
        if (isHit(line, at)) return at;
      return -1;
    }
    for (at = std::min(at, last); at >= 0; --at)
      if (isHit(line, at)) return at;
    return -1;
  }

 private:
  bool isWholeWord(std::wstring_view line, int64_t at) const {
    const auto start = static_cast<size_t>(at);
    const size_t behind = start + text_.size();
    return (start == 0 || !isEditWordCharacter(line[start - 1])) &&
           (behind == line.size() || !isEditWordCharacter(line[behind]));
  }

  const SearchQuery& query_;
  std::wstring text_;
};
}  // namespace

SearchEnd findText(const Document& document, const SearchQuery& query, TextPlace& place,
                   const StopAsked& stop) {
  if (query.text.empty()) return SearchEnd::NotFound;
  const Pattern pattern(query);
  const bool isForward = query.direction == SearchDirection::Forward;
  int64_t compared = 0;
  for (TextPlace at = place; at.line >= 0 && at.line < document.lineCount();) {
    const std::wstring line = document.text(at.line);
    at.index = pattern.findIn(line, at.index);
    if (at.index >= 0) {
      place = at;
      return SearchEnd::Found;
    }
    at = {at.line + (isForward ? 1 : -1), isForward ? 0 : INT64_MAX};
    compared += static_cast<int64_t>(line.size()) + 1;
    if (compared >= CharactersBetweenLooks) {
      compared = 0;
      if (stop && stop()) return SearchEnd::Stopped;
    }
  }
  return SearchEnd::NotFound;
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

ReplaceAllResult replaceAll(Document& document, EditHistory& history, const SearchQuery& query,
                            const TextSpan& replacement, TextPlace place, int64_t command,
                            const StopAsked& stop) {
  ReplaceAllResult result;
  int64_t untilLook = HitsBetweenLooks;
  while ((result.end = findText(document, query, place, stop)) == SearchEnd::Found) {
    result.last = place;
    place = replaceHit(document, history, query, replacement, place, command);
    ++result.count;
    if (--untilLook > 0) continue;
    untilLook = HitsBetweenLooks;
    if (stop && stop()) {
      result.end = SearchEnd::Stopped;
      break;
    }
  }
  return result;
}
