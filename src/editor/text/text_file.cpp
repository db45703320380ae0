#include "editor/text/text_file.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr size_t TrialBytes = 32768;
constexpr uint32_t BehindLastCharacter = 0x110000;
constexpr uint32_t Blank = 0x20;
constexpr uint32_t LineFeed = 0x0A;

struct Range {
  uint32_t first, last;
};
// Units without a character, halves of pairs and those for private use.
constexpr Range ImplausibleUnits[] = {
    {0, 0},         {2043, 2304},   {6688, 6911},   {7296, 7423},   {11093, 11263},
    {42648, 42751}, {42893, 43002}, {43360, 43519}, {43616, 44031}, {55204, 63743},
};

bool isPlausible(uint32_t unit) {
  return std::none_of(
      std::begin(ImplausibleUnits), std::end(ImplausibleUnits),
      [unit](const Range& range) { return unit >= range.first && unit <= range.last; });
}

bool isContinuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

// Bytes behind a byte that begins a sequence of UTF-8; -1 for one that doesn't.
int continuations(unsigned char lead) {
  if ((lead & 0xE0) == 0xC0) return 1;
  if ((lead & 0xF0) == 0xE0) return 2;
  return (lead & 0xF8) == 0xF0 ? 3 : -1;
}

enum class Utf8Trial { Ascii, Failed, Utf8 };

Utf8Trial tryUtf8(std::string_view bytes) {
  Utf8Trial result = Utf8Trial::Ascii;
  for (size_t at = 0; at < std::min(bytes.size(), TrialBytes);) {
    const auto lead = static_cast<unsigned char>(bytes[at++]);
    if (lead == 0) return Utf8Trial::Failed;
    if (lead < 0x80) continue;
    const int count = continuations(lead);
    if (count < 0) return Utf8Trial::Failed;
    for (int i = 0; i < count; ++i, ++at) {
      if (at >= bytes.size()) return Utf8Trial::Failed;
      if (!isContinuation(static_cast<unsigned char>(bytes[at]))) return Utf8Trial::Failed;
    }
    result = Utf8Trial::Utf8;
  }
  return result;
}

enum class ByteOrder { Little, Big };

uint32_t unitAt(std::string_view bytes, size_t at, size_t width, ByteOrder order) {
  uint32_t unit = 0;
  for (size_t i = 0; i < width; ++i) {
    const size_t place = order == ByteOrder::Big ? at + i : at + width - 1 - i;
    unit = unit << 8 | static_cast<unsigned char>(bytes[place]);
  }
  return unit;
}

// All characters are such, and some look like text.
bool looksLikeUtf32(std::string_view bytes, ByteOrder order) {
  constexpr size_t width = 4;
  bool found = false;
  for (size_t at = 0; at + width <= bytes.size(); at += width) {
    const uint32_t unit = unitAt(bytes, at, width, order);
    if (unit >= BehindLastCharacter) return false;
    found = found || unit == Blank || unit == LineFeed;
  }
  return found;
}

// All units are plausible, and there are words and lines.
bool looksLikeUtf16(std::string_view bytes, ByteOrder order) {
  constexpr size_t width = 2;
  bool blank = false;
  bool lineFeed = false;
  for (size_t at = 0; at + width <= bytes.size(); at += width) {
    const uint32_t unit = unitAt(bytes, at, width, order);
    if (!isPlausible(unit)) return false;
    blank = blank || unit == Blank;
    lineFeed = lineFeed || unit == LineFeed;
  }
  return blank && lineFeed;
}

TextFormat formatOf(std::string_view beginning) {
  const Utf8Trial utf8 = tryUtf8(beginning);
  if (utf8 == Utf8Trial::Utf8) return TextFormat::Utf8;
  const std::string_view bytes = beginning.substr(0, TrialBytes);
  if (looksLikeUtf32(bytes, ByteOrder::Little)) return TextFormat::Utf32Le;
  if (looksLikeUtf32(bytes, ByteOrder::Big)) return TextFormat::Utf32Be;
  if (looksLikeUtf16(bytes, ByteOrder::Little)) return TextFormat::Utf16Le;
  if (looksLikeUtf16(bytes, ByteOrder::Big)) return TextFormat::Utf16Be;
  return utf8 == Utf8Trial::Ascii ? TextFormat::Utf8 : TextFormat::CodePage;
}

}  // namespace

CTextFile CTextFile::detect(std::string_view beginning, const TextEncoding& chosen) {
  // In this order: the mark of UTF-32 begins as that of UTF-16 does.
  for (const TextFormat format : {TextFormat::Utf32Le, TextFormat::Utf32Be, TextFormat::Utf16Le,
                                  TextFormat::Utf16Be, TextFormat::Utf8}) {
    const CTextFile marked = readAs({format}, beginning);
    if (marked.hasMark()) return marked;
  }
  if (chosen.format != TextFormat::Undetermined) return {chosen};
  return {{formatOf(beginning)}};
}

CTextFile CTextFile::readAs(const TextEncoding& encoding, std::string_view beginning) {
  const std::string_view mark = markOf(encoding.format);
  return {encoding, beginning.starts_with(mark) ? mark.size() : 0};
}
