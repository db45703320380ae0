#pragma once

#include "console/cell.h"
#include "foundation/westring.h"

// A coloured line in the making. Keeps its length; `data` has no terminator.
class CellString {
 public:
  static constexpr int InlineSize = 20;

  explicit CellString(unsigned char attr = 7);
  CellString(const wchar_t* text, unsigned char attr);
  CellString(const CellString& other);
  CellString(CellString&& other) noexcept;
  ~CellString();
  static CellString withRoom(int cells, unsigned char attr = 7);
  CellString& operator=(const CellString& other);
  CellString& operator=(CellString&& other) noexcept;

  int length() const { return length_; }
  int capacity() const { return capacity_; }
  const Cell* data() const { return data_; }
  Cell& operator[](int index) { return data_[index]; }
  const Cell& operator[](int index) const { return data_[index]; }
  unsigned char attr() const { return attr_; }
  void setAttr(unsigned char attr) { attr_ = attr; }

  // A negative `maxChars` takes all of the text.
  CellString& append(const wchar_t* text, unsigned char attr, int maxChars = -1);
  CellString& append(const wchar_t* text) { return append(text, attr_); }
  CellString& append(const Westring& text, unsigned char attr) { return append(text.data(), attr); }
  CellString& append(wchar_t character, unsigned char attr);
  CellString& append(const CellString& other);

 private:
  void reserve(int cells);

  Cell inlineCells_[InlineSize];
  Cell* data_;
  int length_ = 0;
  int capacity_ = InlineSize;
  unsigned char attr_;
};

CellString mid(const CellString& text, int position, int count);  // negative or too large: the rest
CellString left(const CellString& text, int count);
CellString padded(const CellString& text, int width);  // spaces in its attr; cut when longer
CellString operator+(const CellString& a, const CellString& b);
