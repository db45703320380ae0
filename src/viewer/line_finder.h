#pragma once

#include <cstdint>

#include "editor/text/text_encoding.h"
#include "viewer/file_bytes.h"
#include "viewer/unit_scan.h"

// A line as the viewer shows it. `error` is 0, or why these bytes can't be read: such a line has no
// text.
struct ViewedLine {
  int64_t start = 0;
  int64_t textEnd = 0;  // where its line end begins, or the next line
  int64_t next = 0;     // the start of the line behind it, or the size
  int error = 0;
};

// Where lines begin, found from any position, forward and backward alike. A line ends with at most
// one CR and one LF in either order (a NUL ends none). So that no file is slow, lines also begin:
// - at a multiple m of `searched` when the `searched` bytes before m hold no line end, moved to
//   the next start of a character;
// - at a multiple m when the `searched` bytes before it are nothing but CR and LF by turns, where
//   otherwise the far beginning of this run would decide which of them belong together;
// - where bytes that can't be read begin, and behind them.
// So no line is longer than twice `searched` and a character.
class LineFinder {
 public:
  explicit LineFinder(FileBytes& bytes, const ViewLimits& limits = {})
      : bytes_(bytes), searched_(limits.searched) {}

  // Also to be called when the file has changed. `textStart` is the length of its mark.
  void begin(TextFormat format, int64_t textStart);

  int64_t textStart() const { return textStart_; }
  ViewedLine lineAt(int64_t start);  // `start` is one of a line; all 0 but positions at the end
  // The start of the line that holds the byte; behind the end, of the last line.
  int64_t startOf(int64_t position);

  // The first start of a character at or behind the position.
  int64_t characterStart(int64_t position);
  // Whether the bytes before the position are CR and LF by turns for `searched` bytes.
  bool alternatesBefore(int64_t position);
  int64_t searched() const { return searched_; }

 private:
  EndKind kindAt(int64_t position);
  int64_t multipleBelow(int64_t position) const { return position - position % searched_; }
  int64_t groupEnd(int64_t lineEnd);
  bool isSecondOfGroup(int64_t position);
  int64_t runStart(int64_t position, int64_t lowest);
  bool isFree(int64_t from, int64_t to);
  int64_t behindLastEnd(int64_t from, int64_t to);
  void noteFree(int64_t from, int64_t to);

  FileBytes& bytes_;
  int64_t searched_;
  UnitScan scan_;
  TextFormat format_ = TextFormat::Utf8;
  int64_t textStart_ = 0;
  // Bytes that are known to hold no line end and to be readable: the last long stretch of them.
  int64_t freeFrom_ = 0;
  int64_t freeTo_ = 0;
};
