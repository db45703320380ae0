#pragma once

#include <cstdint>

#include "console/cell_string.h"
#include "syntax/state_store.h"
#include "syntax/syntax.h"
#include "viewer/viewed_file.h"

// The colours of the lines of a file. What is open at a line is found from the nearest place where
// it is known; far from any it is guessed by the lines a little above. Application thread.
class ViewColours {
 public:
  explicit ViewColours(ViewedFile& file) : file_(file) {}

  // Chooses the definitions for a file of that name, read anew from the disk. Tells about a file of
  // definitions that can't be read.
  void load(const Westring& path);
  void off() { syntax_.off(); }
  bool active() const { return syntax_.active(); }

  // `cells` show a part of the line, which is one of the file's lineAt, from its cell `cell` on:
  // they get their colours. When off they stay as they are.
  void paint(const ViewedLine& line, int64_t cell, CellString& cells);

 private:
  static constexpr int64_t Nowhere = -1;
  static constexpr int CellsAhead = 4096;  // of a wrapped line, for the rows below

  std::wstring colouredPart(const ViewedLine& line);
  void colourLine(const ViewedLine& line, int64_t wanted);
  void seeChanges();
  void bringTo(int64_t position);
  void pass(const ViewedLine& line);

  ViewedFile& file_;
  CSyntax syntax_;
  CSyntaxStateStore states_;
  int64_t position_ = Nowhere;  // of the line before which the engine stands
  bool isCertain_ = true;       // what it has open there isn't guessed
  CellString painted_;          // the line that was coloured last
  int64_t paintedStart_ = Nowhere;
  int paintedCells_ = 0;  // so many of its cells are right, and all if it has no more
  // For which the above holds.
  int64_t version_ = Nowhere;
  int64_t rewrites_ = Nowhere;
  int tabWidth_ = 0;
};
