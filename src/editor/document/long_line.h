#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "editor/document/text_run.h"

// A line that is too long to be decoded whole each time that something of it is wanted. Remembers
// where every 4,096th byte or so stands, in characters and columns, as far as anything was asked
// for. The bytes are the caller's and stay as they are.
class LongLine {
 public:
  LongLine(std::string_view bytes, const TextStorage& storage);

  size_t bytes() const { return bytes_.size(); }
  int64_t length();
  std::wstring slice(int64_t from, int64_t count);
  int64_t columnOf(int64_t index, int tabWidth);
  int64_t indexAt(int64_t column, int tabWidth);
  // The bytes of wide characters from `index` on are others now.
  void changedFrom(int64_t index, std::string_view bytes);

 private:
  // What stands before a byte.
  struct Mark {
    size_t byte = 0;
    int64_t index = 0;
    int64_t column = 0;
  };

  void setTabWidth(int tabWidth);
  bool isWhole() const { return marks_.back().byte == bytes_.size(); }
  std::wstring piece(size_t mark) const;  // the characters from this mark to the next
  size_t nextStart(size_t byte) const;
  void addMark();
  size_t markBefore(int64_t index);

  std::string_view bytes_;
  TextStorage storage_;
  std::wstring decoded_;  // all of it, where a character's start can't be told from the bytes
  int tabWidth_ = 8;
  std::vector<Mark> marks_{1};
};

// The rules of display columns for a text that begins at `column`: a tab reaches to the next
// multiple of the width, everything else takes one column.
int64_t columnBehind(std::wstring_view text, int64_t column, int tabWidth);
// How many characters of the text reach to the column `target`. A tab that reaches beyond it isn't
// counted.
size_t charactersTo(std::wstring_view text, int64_t column, int64_t target, int tabWidth);
