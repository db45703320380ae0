#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "editor/text/text_encoding.h"

// The lines of a whole file in memory, found from its beginning by the plainest of loops: what
// LineFinder must find from anywhere.
class NaiveLines {
 public:
  struct Gap {
    int64_t from;
    int64_t to;
  };

  NaiveLines(std::string bytes, TextFormat format, int64_t textStart, int64_t searched,
             std::vector<Gap> gaps = {})
      : bytes_(std::move(bytes)), gaps_(std::move(gaps)), format_(format), searched_(searched) {
    const auto size = static_cast<int64_t>(bytes_.size());
    for (int64_t at = textStart; at < size; at = next(at)) starts_.push_back(at);
  }

  const std::vector<int64_t>& starts() const { return starts_; }

 private:
  int64_t unit() const { return unitBytes(format_); }

  const Gap* gapAt(int64_t position) const {
    for (const Gap& gap : gaps_) {
      if (position >= gap.from && position < gap.to) return &gap;
    }
    return nullptr;
  }

  // 13, 10, or 0 for all else.
  int endAt(int64_t at) const {
    if (at < 0 || at + unit() > static_cast<int64_t>(bytes_.size()) || gapAt(at)) return 0;
    uint64_t value = 0;
    for (int64_t i = 0; i < unit(); ++i) {
      const int64_t from = isBigEndian(format_) ? at + i : at + unit() - 1 - i;
      value = value << 8 | static_cast<unsigned char>(bytes_[static_cast<size_t>(from)]);
    }
    return value == 13 || value == 10 ? static_cast<int>(value) : 0;
  }

  bool noEndBefore(int64_t multiple) const {
    if (multiple < searched_ || multiple % searched_ != 0) return false;
    for (int64_t at = multiple - searched_; at < multiple; at += unit()) {
      if (endAt(at) || gapAt(at)) return false;
    }
    return true;
  }

  bool turnsBefore(int64_t multiple) const {
    if (multiple < searched_ || multiple % searched_ != 0) return false;
    for (int64_t at = multiple - searched_; at < multiple; at += unit()) {
      if (!endAt(at) || (at > multiple - searched_ && endAt(at) == endAt(at - unit())))
        return false;
    }
    return true;
  }

  int64_t characterFrom(int64_t at) const {
    const auto byte = [this](int64_t i) { return static_cast<unsigned char>(bytes_[i]); };
    const auto size = static_cast<int64_t>(bytes_.size());
    if (gapAt(at)) return at;
    if (format_ == TextFormat::Utf8) {
      for (int64_t i = at; i < at + 4; ++i) {
        if (i >= size) return size;
        if ((byte(i) & 0xC0) != 0x80 || gapAt(i)) return i;
      }
    }
    if (unit() == 2 && at + 2 <= size) {
      if ((byte(isBigEndian(format_) ? at : at + 1) & 0xFC) == 0xDC) return at + 2;
    }
    return at;
  }

  int64_t next(int64_t start) const {
    if (const Gap* gap = gapAt(start)) return gap->to;
    const auto size = static_cast<int64_t>(bytes_.size());
    const int64_t first = start - start % unit();
    for (int64_t at = start; at < size; at += unit()) {
      if (at > first && gapAt(at)) return at;
      if (at > first && noEndBefore(at) && characterFrom(at) > start) return characterFrom(at);
      if (!endAt(at)) continue;
      const int64_t second = at + unit();
      const bool two = endAt(second) && endAt(second) != endAt(at) && !turnsBefore(second);
      return second + (two ? unit() : 0);
    }
    return size;
  }

  std::string bytes_;
  std::vector<Gap> gaps_;
  TextFormat format_;
  int64_t searched_;
  std::vector<int64_t> starts_;
};
