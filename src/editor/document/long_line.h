#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "editor/document/text_run.h"

// A line that is too long to be decoded whole each time that something of it is wanted, or to be
// moved each time that it is changed: pieces of a few thousand bytes. Remembers how many characters
// and columns stand before each of them, as far as anything was asked for.
class LongLine {
 public:
  explicit LongLine(const TextRun& text);  // without lines

  size_t bytes() const { return static_cast<size_t>(bytes_); }  // of memory
  int64_t length();
  std::wstring slice(int64_t from, int64_t count);
  int64_t columnOf(int64_t index, int tabWidth);
  int64_t indexAt(int64_t column, int tabWidth);

  // The characters from `from` to before `to`, as few runs without lines as there are.
  std::vector<TextRun> runsBetween(int64_t from, int64_t to);
  // Puts the text of a run without lines in their place; returns how many characters it has.
  int64_t replace(int64_t from, int64_t to, const TextRun& text);
  // All of it with the line end, as newRun, in one block, which is that of the pieces from now on.
  TextRun gathered(std::wstring_view end);

 private:
  struct Piece {
    TextRun run;
    int64_t characters = 0;
    int64_t lead = 0;    // how many of them stand before the first tab
    int64_t behind = 0;  // columns behind that tab
  };
  // What stands before a piece.
  struct Mark {
    int64_t index = 0;
    int64_t column = 0;
  };

  void setTabWidth(int tabWidth);
  Piece measured(const TextRun& run, const std::wstring& text) const;
  Piece takePiece(TextRun& text) const;
  void addPieces(std::wstring_view text, std::vector<Piece>& pieces) const;
  bool addPiece();
  bool addMark();
  void exchange(size_t first, size_t behind, std::vector<Piece> pieces);
  size_t pieceOf(int64_t index);
  std::wstring piecePart(size_t number, int64_t from, int64_t to) const;

  std::vector<Piece> pieces_;
  TextRun rest_;                // behind them
  std::vector<Mark> marks_{1};  // of the first pieces, and of what follows these
  int64_t characters_ = 0;      // of the pieces
  int64_t bytes_;               // of all
  int tabWidth_ = 8;
};

// The rules of display columns for a text that begins at `column`: a tab reaches to the next
// multiple of the width, everything else takes one column.
int64_t columnBehind(std::wstring_view text, int64_t column, int tabWidth);
// How many characters of the text reach to the column `target`. A tab that reaches beyond it isn't
// counted.
size_t charactersTo(std::wstring_view text, int64_t column, int64_t target, int tabWidth);
