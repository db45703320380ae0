#pragma once

#include <string>
#include <vector>

#include "editor/document/document.h"

// A text as a list of lines, each with its line end: what the document is compared with. Nothing
// here is fast, or shared with the document.
struct NaiveLine {
  std::wstring text;
  std::wstring end;

  friend bool operator==(const NaiveLine&, const NaiveLine&) = default;
};
using NaiveText = std::vector<NaiveLine>;  // never empty; the last one has no line end

class NaiveDocument {
 public:
  NaiveText lines{1};
  LineEndStyle style = LineEndStyle::Lf;

  void load(std::string_view bytes, const TextEncoding& encoding);
  std::string bytes(const TextEncoding& encoding) const;  // "refused" when it can't hold the text

  TextPlace end() const;
  NaiveText cut(TextPlace from, TextPlace to) const;
  // Returns the end of what was put in.
  TextPlace replace(TextPlace from, TextPlace to, const NaiveText& text);
  void setLineEnds(LineEndStyle newStyle);
  void recode(int from, int to);
};

NaiveText naiveText(std::wstring_view text, LineEndStyle style);
