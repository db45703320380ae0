#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "editor/document/document_search.h"
#include "editor/document/text_rules.h"
#include "foundation/fold.h"

// A query, ready to be compared with many lines.
class SearchPattern {
 public:
  explicit SearchPattern(const SearchQuery& query) : query_(query), text_(query.text) {
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
