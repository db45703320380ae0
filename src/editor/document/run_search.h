#pragma once

#include <cstdint>
#include <optional>

#include "editor/document/candidate_scan.h"
#include "editor/document/document.h"
#include "editor/document/search_pattern.h"

// One search through a document, which may go on after changes. Lines are looked for by their bytes
// where their encoding allows it, a run at a time.
class RunSearch {
 public:
  // All of them outlive the search.
  RunSearch(const Document& document, const SearchPattern& pattern, const StopAsked& stop)
      : document_(document), pattern_(pattern), stop_(stop) {}

  // As findText.
  SearchEnd find(TextPlace& place);
  // From the start of `line` on, or from its end backward.
  SearchEnd findFrom(int64_t line, TextPlace& place);
  // The text of the line of the last hit, if it came by; until the next search.
  const std::wstring* hitLine() const { return hitLine_ ? &*hitLine_ : nullptr; }

 private:
  bool looksForStop(size_t bytes);
  const CandidateScan& scanFor(const TextStorage& storage);
  int64_t indexIn(int64_t line, int64_t at);
  bool isIn(int64_t line, TextPlace& place);
  static LineBytes lineAround(const TextRun& run, size_t offset);
  bool isHitAround(const Document::RunPlace& found, size_t offset, const LineBytes& bytes,
                   TextPlace& place);
  bool scanForward(const Document::RunPlace& found, int64_t line, TextPlace& place);
  bool scanBackward(const Document::RunPlace& found, int64_t line, TextPlace& place);
  bool walkForward(const Document::RunPlace& found, int64_t line, TextPlace& place);
  bool walkBackward(const Document::RunPlace& found, int64_t line, TextPlace& place);

  const Document& document_;
  const SearchPattern& pattern_;
  const StopAsked& stop_;
  LineStart knownStart(const TextRun& run) const;

  std::optional<CandidateScan> scan_;
  std::optional<std::wstring> hitLine_;
  // A line start in what was scanned last; the next search goes on from there.
  TextRun scanned_;
  LineStart known_;
  size_t looked_ = 0;
  bool isStopped_ = false;
};
