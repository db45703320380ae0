#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editor/document/counted.h"
#include "editor/text/line_ends.h"
#include "editor/text/text_encoding.h"

// What the bytes of a text stand for. A text that no format of files holds as it is, such as raw
// bytes between characters, is kept as wide characters.
struct TextStorage {
  TextEncoding encoding{TextFormat::Utf8, 0};
  bool isWide = false;

  TextFormat unitFormat() const;  // the one whose units hold the line ends
  friend bool operator==(const TextStorage&, const TextStorage&) = default;
};

std::wstring decodeBytes(std::string_view bytes, const TextStorage& storage);

// Bytes that never change.
struct BytesBlock : Counted {
  std::string bytes;
  // Where each MarkedLines-th line begins, from the first line on. None for a block of few lines.
  std::vector<size_t> marks;
};
using SharedBlock = Shared<const BytesBlock>;
inline constexpr int64_t MarkedLines = 64;

// The text of a line and its line end, as bytes of a block.
struct LineBytes {
  std::string_view text;
  std::string_view end;
};

// A line of a run, and the offset of its first byte.
struct LineStart {
  int64_t line = 0;
  size_t offset = 0;
};

// A piece of a block: a number of whole lines, each with its line end; or, with 0 lines, a text
// without a line end. Lines count from 0, offsets from the piece's first byte.
struct TextRun {
  SharedBlock block;
  size_t begin = 0;
  size_t length = 0;
  int64_t lines = 0;
  int64_t firstLine = 0;  // the number of its first line in the block
  TextStorage storage;
  std::optional<LineEndStyle> ends;  // what all lines end with now, instead of their own line ends

  std::string_view bytes() const {
    return block ? std::string_view(block->bytes).substr(begin, length) : std::string_view();
  }
  // Start and number of a line, by its number (all of the run's length for the number of its lines)
  // or by the offset of a byte in it. A line start that is known spares a walk if it stands before.
  LineStart startOf(int64_t line, LineStart known = {}) const;
  int64_t lineOf(size_t offset, LineStart known = {}) const;
  size_t offsetOf(int64_t line) const { return startOf(line).offset; }
  LineBytes lineAt(int64_t line) const { return lineFrom(offsetOf(line)); }
  LineBytes lineFrom(size_t offset) const;  // where a line begins
  TextRun part(LineStart from, LineStart to) const;
  TextRun part(int64_t fromLine, int64_t toLine) const {
    return part(startOf(fromLine), startOf(toLine));
  }
  // What stands before and behind a line; without lines, each may be empty.
  void partsAround(int64_t line, TextRun& before, TextRun& behind) const;
  // A text that stands in bytes(), as a run without lines.
  TextRun textOf(std::string_view text) const;
  std::wstring text(int64_t line) const;
  std::wstring lineEnd(int64_t line) const { return endText(lineAt(line)); }
  std::wstring endText(const LineBytes& line) const;  // its line end
  std::wstring wholeText() const;                     // of a run without lines
  // Whether `next` goes on in the block where this one ends.
  bool goesOnWith(const TextRun& next) const;
};

// The lines of a run one after the other. The run stays where it is.
class LineWalk {
 public:
  explicit LineWalk(const TextRun& run) : run_(run), all_(run.bytes()) {}
  // Goes to the first or the next line; false behind the last one.
  bool next();
  int64_t line() const { return line_; }
  LineBytes bytes() const;
  std::wstring text() const { return decodeBytes(bytes().text, run_.storage); }
  std::wstring lineEnd() const { return run_.endText(bytes()); }
  TextRun asRun() const;

 private:
  const TextRun& run_;
  std::string_view all_;
  int64_t line_ = -1;
  size_t begin_ = 0;
  LineEnd end_;
};

std::wstring_view lineEndText(LineEndStyle style);
// Whether both line ends, one behind the other, would be read as the end of one line.
bool lineEndsMerge(std::wstring_view first, std::wstring_view second);

// What new text is written in; it holds all but raw bytes and what no format knows.
inline constexpr TextEncoding PlainEncoding{TextFormat::Utf8, 0};
// Appends the text. False when it can't be written so; some of it may have been appended then.
bool appendPlain(std::wstring_view text, std::string& bytes);

// A text in a block of its own: one line with its line end, or, if that is empty, without lines.
TextRun newRun(std::wstring_view text, std::wstring_view end = {});
// The texts of runs without lines one behind the other, and the line end, as newRun. As bytes of
// the longest one where that is possible.
TextRun joinedRuns(const std::vector<TextRun>& texts, std::wstring_view end = {});

// The bytes of a text taken apart.
struct ScannedText {
  TextRun lines;  // those with a line end
  TextRun rest;   // what follows them
  LineEndStyle style = LineEndStyle::Unknown;
  int64_t invalidLines = 0;  // of UTF-8
  bool isStopped = false;
};
// Asked now and then, with the number of bytes that are done; false stops.
using ScanProgress = std::function<bool(int64_t bytes)>;
ScannedText scanText(std::string bytes, size_t from, const TextStorage& storage,
                     const ScanProgress& progress = {});
