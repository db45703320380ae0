#pragma once

#include <string_view>

#include "editor/text/text_encoding.h"

// Finding line ends in bytes, as fast as memory gives them. What is looked at begins with a unit of
// the format; a tail that is shorter than a unit ends no line.

enum class EndKind { None, Cr, Lf };

class UnitScan {
 public:
  static constexpr size_t None = static_cast<size_t>(-1);

  explicit UnitScan(TextFormat format = TextFormat::Utf8);

  size_t width() const { return width_; }
  EndKind kindAt(std::string_view bytes, size_t position) const;
  size_t findEnd(std::string_view bytes, size_t from) const;  // the first at or behind `from`
  size_t findLastEnd(std::string_view bytes) const;
  size_t countEnds(std::string_view bytes, EndKind kind) const;
  size_t countCrLf(std::string_view bytes) const;  // CRs with an LF behind them

 private:
  size_t width_;
  uint32_t cr_;  // as the machine loads it
  uint32_t lf_;
};
