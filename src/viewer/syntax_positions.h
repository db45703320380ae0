#pragma once

#include <cstdint>

#include "syntax/state_store.h"
#include "syntax/syntax.h"
#include "viewer/viewed_file.h"

// Finds out what is open at a line of the file, for colouring from there on: from the nearest place
// where it is known, or, when that is far away, as if nothing were open shortly before. With
// colours off nothing is read. Application thread.
class SyntaxPositions {
 public:
  SyntaxPositions(ViewedFile& file, CSyntax& syntax) : file_(file), syntax_(syntax) {}

  // Gives the syntax the state of the line that starts there.
  void bringTo(int64_t lineStart);
  // The lines from the one of bringTo up to this one were coloured: what is open here is known now.
  void reached(int64_t lineStart);

 private:
  ViewedFile& file_;
  CSyntax& syntax_;
  CSyntaxStateStore store_;
  int64_t rewrites_ = 0;  // of the file, for which the store holds
  SyntaxStart::States states_ = SyntaxStart::States::Guessed;
};
