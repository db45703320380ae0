#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "viewer/viewed_file.h"

// Where the characters of a line stand on the screen, in cells from its beginning: a tab goes on to
// the next multiple of the tab width, any other character takes one cell. Places in long lines are
// remembered, so that no row costs the whole line twice. Application thread.
class LineCells {
 public:
  explicit LineCells(ViewedFile& file) : file_(file) {}

  // Of all these `line` is one of the file's lineAt.
  // How many cells the line has, but no more than `most`.
  int64_t length(const ViewedLine& line, int64_t most);
  // The cell of the character at a byte of the line; behind the text its length.
  int64_t cellOf(const ViewedLine& line, int64_t position);
  // The byte of the character that covers the cell; behind the text its end.
  int64_t positionOf(const ViewedLine& line, int64_t cell);
  // What at most `count` cells show from `cell` on; tabs are spaces.
  std::wstring text(const ViewedLine& line, int64_t cell, int64_t count);

 private:
  struct Mark {
    int64_t position;
    int64_t cell;
  };
  struct Known {
    int64_t start = -1;
    int64_t textEnd = -1;
    std::vector<Mark>
        marks;  // of the parts that were walked through; the last is as far as it went
  };
  static constexpr int LinesKnown = 8;

  Known& known(const ViewedLine& line);
  bool extend(Known& line);
  Mark markBefore(const ViewedLine& line, int64_t position);
  Mark markAtCell(const ViewedLine& line, int64_t cell);
  int64_t widthAt(wchar_t character, int64_t cell) const;
  int64_t cellsOf(const std::wstring& text, int64_t cell) const;

  ViewedFile& file_;
  int64_t version_ = 0;  // of the file, for which the rest holds
  int64_t tabWidth_ = 8;
  std::array<Known, LinesKnown> lines_;  // most recently used first
};
