#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "editor/document/run_tree.h"
#include "editor/text/line_ends.h"

// A piece of text with its line ends, as it was cut out of a document or came from elsewhere. It
// never changes and is cheap to copy, whatever its size: the text is shared with the document it
// came from, which may change or go, on another thread, too. Untouched lines keep the bytes and the
// line ends of their file.
class TextSpan {
 public:
  TextSpan() = default;  // no text

  // Lines end at LF, CR LF and a lone CR, and get the line end of `style`. NULs are dropped, since
  // they would end lines, too.
  static TextSpan fromText(std::wstring_view text, LineEndStyle style);
  // One line end as it is: at most one each of CR and LF.
  static TextSpan lineEnd(std::wstring_view end);

  bool empty() const { return lines_.empty() && last_.length == 0; }
  int64_t lineEnds() const { return lines_.lines(); }
  int64_t firstLength() const;  // characters up to the first line end
  int64_t lastLength() const;   // characters behind the last line end
  size_t bytes() const { return lines_.bytes() + last_.length; }  // of memory, about
  std::wstring text() const;                                      // with LF for each line end

  // The text of both, one behind the other.
  TextSpan joined(const TextSpan& other) const;
  // The same lines with the texts that `change` gives for theirs; where it gives none, the line
  // stays as it is, and so does one of more than `mostBytes`, which isn't looked at. The line ends
  // stay.
  using LineChange = std::function<std::optional<std::wstring>(const std::wstring& line)>;
  TextSpan changed(size_t mostBytes, const LineChange& change) const;
  // The bytes of a code page read as those of another one; characters that the old page lacks stay.
  TextSpan recoded(const TextEncoding& from, const TextEncoding& to) const;

  // Whether a numbered code page is needed to read it, which only the application thread may use.
  bool needsCodePage() const;

  // All of it as bytes that `fromStored` makes the same text of, in any document; whatever else
  // those bytes are, they give some text.
  std::string stored() const;
  static TextSpan fromStored(std::string_view bytes);

 private:
  friend class Document;
  TextSpan(RunTree lines, TextRun last) : lines_(std::move(lines)), last_(std::move(last)) {}

  RunTree lines_;
  TextRun last_;  // without a line end
};
