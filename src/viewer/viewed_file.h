#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "editor/text/text_encoding.h"
#include "viewer/file_bytes.h"
#include "viewer/line_finder.h"

// A file of any size as the viewer looks at it: bytes, lines and text by byte positions. Nothing of
// it is known but what lies around the positions that were asked for. Application thread.
class ViewedFile {
 public:
  explicit ViewedFile(const ViewLimits& limits = {})
      : limits_(limits), bytes_(limits), lines_(bytes_, limits) {}

  // Opens the file and finds out its encoding; one that is remembered counts unless the file has a
  // mark. 0, or what errorText tells.
  int open(const Westring& path, const TextEncoding& remembered = {});
  void close();
  bool isOpen() const { return bytes_.isOpen(); }

  int64_t size() const { return bytes_.size(); }
  // Looks whether the file has grown, shrunk or changed; positions may lie behind the end then, and
  // count as the end.
  FileChange refresh();
  bool replaced() const { return bytes_.replaced(); }  // the path names another file by now

  // Another number whenever lines and characters may have become others, and whenever it isn't only
  // that the file has grown.
  int64_t version() const { return version_; }
  int64_t rewrites() const { return rewrites_; }

  const TextEncoding& encoding() const { return encoding_; }
  void setEncoding(const TextEncoding& encoding);
  int64_t textStart() const { return lines_.textStart(); }  // behind the mark

  // `start` must be the start of a line: textStart(), one of startOf, or another line's `next`.
  ViewedLine lineAt(int64_t start) { return lines_.lineAt(start); }
  int64_t nextLine(int64_t start) { return lines_.lineAt(start).next; }
  int64_t startOf(int64_t position) { return lines_.startOf(position); }
  // The line before the one at `start`; textStart() when there is none.
  int64_t previousLine(int64_t start) { return lines_.startOf(start - 1); }

  // At most `most` characters from the beginning of the line, a NUL as a space. Empty for a line
  // that can't be read. Costs by what is asked for, not by the line.
  std::wstring text(const ViewedLine& line, int64_t most);
  // The characters in from..to, which are positions between characters: what stands before a hit in
  // its line, or how long it is.
  int64_t characters(int64_t from, int64_t to);

  // One part of a text after the other: appends the text from `from` on, but not behind `to`, and
  // returns the position behind what was appended. `most` says about how many characters are
  // wanted; at most 4,096 come at once.
  int64_t appendText(int64_t from, int64_t to, int64_t most, std::wstring& out);

  Stretch bytesFrom(int64_t position) { return bytes_.from(position); }
  // Up to `count` bytes, fewer at the end and where they can't be read; `error` tells why then.
  std::string bytesAt(int64_t position, int64_t count, int& error);

  const ViewLimits& limits() const { return limits_; }
  FileBytes& bytes() { return bytes_; }
  LineFinder& lines() { return lines_; }

 private:
  std::string_view bytesTogether(int64_t position, int64_t count, std::string& joined);

  const ViewLimits limits_;
  FileBytes bytes_;
  LineFinder lines_;
  TextEncoding encoding_;
  int64_t version_ = 0;
  int64_t rewrites_ = 0;
};
