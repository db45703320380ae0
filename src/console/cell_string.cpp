#include "console/cell_string.h"

#include <algorithm>
#include <climits>
#include <cwchar>
#include <new>
#include <utility>

CellString::CellString(unsigned char attr) : data_(inlineCells_), attr_(attr) {}

CellString::CellString(const wchar_t* text, unsigned char attr) : CellString(attr) {
  append(text, attr);
}

CellString::CellString(const CellString& other) : CellString(other.attr_) {
  append(other);
}

CellString::CellString(CellString&& other) noexcept : CellString(other.attr_) {
  *this = std::move(other);
}

CellString::~CellString() {
  if (data_ != inlineCells_) delete[] data_;
}

CellString CellString::withRoom(int cells, unsigned char attr) {
  CellString result(attr);
  if (cells > InlineSize) {
    result.data_ = new Cell[static_cast<size_t>(cells)];
    result.capacity_ = cells;
  }
  return result;
}

CellString& CellString::operator=(const CellString& other) {
  if (this == &other) return *this;
  if (capacity_ < other.length_) {
    Cell* fresh = new Cell[static_cast<size_t>(other.length_)];
    if (data_ != inlineCells_) delete[] data_;
    data_ = fresh;
    capacity_ = other.length_;
  }
  std::copy_n(other.data_, other.length_, data_);
  length_ = other.length_;
  attr_ = other.attr_;
  return *this;
}

CellString& CellString::operator=(CellString&& other) noexcept {
  if (this == &other) return *this;
  if (other.data_ == other.inlineCells_) {
    // The inline cells always fit, whatever buffer this string has.
    std::copy_n(other.data_, other.length_, data_);
  } else {
    if (data_ != inlineCells_) delete[] data_;
    data_ = std::exchange(other.data_, other.inlineCells_);
    capacity_ = std::exchange(other.capacity_, InlineSize);
  }
  length_ = std::exchange(other.length_, 0);
  attr_ = other.attr_;
  return *this;
}

void CellString::reserve(int cells) {
  if (cells <= capacity_) return;
  if (cells > INT_MAX / 2) throw std::bad_alloc();
  const int room = cells + cells / 2;
  Cell* fresh = new Cell[static_cast<size_t>(room)];
  std::copy_n(data_, length_, fresh);
  if (data_ != inlineCells_) delete[] data_;
  data_ = fresh;
  capacity_ = room;
}

CellString& CellString::append(const wchar_t* text, unsigned char attr, int maxChars) {
  if (text == nullptr) return *this;
  const size_t wanted = maxChars < 0 ? wcslen(text) : wcsnlen(text, static_cast<size_t>(maxChars));
  if (wanted > static_cast<size_t>(INT_MAX / 2 - length_)) throw std::bad_alloc();
  const int count = static_cast<int>(wanted);
  reserve(length_ + count);
  for (int i = 0; i < count; ++i) data_[length_ + i] = Cell{text[i], attr};
  length_ += count;
  return *this;
}

CellString& CellString::append(wchar_t character, unsigned char attr) {
  reserve(length_ + 1);
  data_[length_++] = Cell{character, attr};
  return *this;
}

CellString& CellString::append(const CellString& other) {
  const int count = other.length_;
  if (count > INT_MAX / 2 - length_) throw std::bad_alloc();
  reserve(length_ + count);  // moves other.data_ too when the string is appended to itself
  std::copy_n(other.data_, count, data_ + length_);
  length_ += count;
  return *this;
}

CellString mid(const CellString& text, int position, int count) {
  position = std::clamp(position, 0, text.length());
  const int rest = text.length() - position;
  if (count < 0 || count > rest) count = rest;
  CellString result = CellString::withRoom(count, text.attr());
  for (int i = 0; i < count; ++i) {
    const Cell& cell = text[position + i];
    result.append(cell.ch, cell.attr);
  }
  return result;
}

CellString left(const CellString& text, int count) {
  return mid(text, 0, count);
}

CellString padded(const CellString& text, int width) {
  width = std::max(width, 0);
  CellString result = left(text, width);
  while (result.length() < width) result.append(L' ', text.attr());
  return result;
}

CellString operator+(const CellString& a, const CellString& b) {
  CellString result(a);
  result.append(b);
  return result;
}
